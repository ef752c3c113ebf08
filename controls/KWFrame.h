// The editor's top view: routes the mouse to a modal control, draws it last, and drives the idle
// update of every control.
#pragma once

#include "view/CFrame.h"

#include <memory>
#include <vector>

namespace ormund {

class CFontDesc;
class KWControl;

// Screen thread only. There is no timer of its own: the host's idle call drives all hover delays
// and all polling.
class KWFrame : public CFrame {
public:
    KWFrame(const CRect& frameSize, void* systemWindow, VSTGUIEditorInterface* frameEditor,
        void* frameOwner);
    // Shows in the given window: memory in tests, on screenshots.
    KWFrame(const CRect& frameSize, std::unique_ptr<FrameWindow> frameWindow,
        VSTGUIEditorInterface* frameEditor, void* frameOwner);
    ~KWFrame() override;

    bool addView(CView* view) override;
    bool removeView(CView* view, bool withForget = true) override;
    void removeAll(bool withForget = true) override;
    void drawRect(CDrawContext* context, const CRect& updateRect) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    bool onWheel(const CPoint& where, CMouseWheelAxis axis, float distance, int buttons) override;
    void looseFocus() override;
    // Before the window goes: calls off what is modal and ends the press, so that no key sounds on
    // and no gesture stays open.
    void letGo();
    CView* getViewAt(const CPoint& where) const override;
    void idle() override;
    bool onKeyDown(const CKeyEvent& event) override;
    void setFocusView(CView* view) override;

    void showFocusRing(bool nowShown);
    // Called by a control that goes.
    void controlGone(const KWControl* control);

    KWControl* modalControl = nullptr;
    void* owner = nullptr;
    void* client = nullptr;
    CFontDesc* font = nullptr;
    int fontSize = 10;
    int hoverShowDelay = 2;
    int hoverHideDelay = 5;
    int invalidateAll = 0;
    // The ring shows only while the keyboard is in use.
    bool focusRingShown = false;

private:
    // To the next control that the keyboard moves, in reading order and round; or to the one
    // before.
    bool moveFocus(bool backward);
    bool isModalAttached() const;
    void drawFocusRing(CDrawContext* context);
    void invalidFocusRing();

    std::vector<KWControl*> controls; // the children that have an idle update, in drawing order
};

} // namespace ormund
