#pragma once

#include "host/effect/AEffGUIEditor.h"
#include "view/CFrame.h"

#include <memory>

namespace ormund {

class CBitmap;
class KWFrame;
class KWSystemInfo;

// An editor window that is one frame of the panel's size: makes the frame, shows it at a scale, and
// frees it. What stands in it belongs to the class that derives. Screen thread.
class KWEditorBase : public AEffGUIEditor, public VSTGUIEditorInterface {
public:
    KWEditorBase(AudioEffect* owner, int panelWidth, int panelHeight);
    ~KWEditorBase() override;

    // Null for an id that the skin does not have.
    virtual CBitmap* getBitmap(int id) const;
    virtual const KWSystemInfo* getTimingContext() const = 0;

    unsigned long systemHandle() const override;
    KWFrame* getFrame() const { return frame; }
    double getScale() const { return scale; }
    // One of the frame's scales. An open window follows at once.
    virtual void setScale(double wanted);

protected:
    // Without a window of its own it opens a child of `parent`.
    void makeFrame(void* parent, std::unique_ptr<FrameWindow> ownWindow);
    void freeFrame();

    KWFrame* frame = nullptr; // ours from makeFrame to freeFrame

private:
    void updateRect();

    int width, height; // panel pixels
    double scale = 1;
};

} // namespace ormund
