// A button in eight behaviours, drawn from a strip: for each state normal, pressed, hover.
#pragma once

#include "controls/KWControl.h"
#include "controls/KWDisplay.h"
#include "controls/KWOptionMenuExtraCallBack.h"

#include <string>

namespace ormund {

// Something that can be on or off and does not live in a float.
class KWStateSource {
public:
    virtual ~KWStateSource() = default;
    virtual bool isOn() const = 0;
};

class KWButton : public KWControl, public KWOptionMenuExtraCallBack {
public:
    enum Type {
        kMomentary = 0,
        kCycle = 1,
        kTrigger = 2,
        kTriggerToo = 3,
        kHeld = 4,            // until the last mouse button is up
        kMomentaryMoving = 5, // reports each move as well
        kToggleTwo = 6,       // 1 with the left button, 2 with the right
        kOnRelease = 7,
        kMenuOpener = 8,
    };
    enum FrameMask : uint32_t { kPressedFrame = 1u << 0, kHoverFrame = 1u << 1 };

    KWButton(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame,
        const char* text, bool initialState, int type);

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseEntered(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseExited(const CPoint& where, int buttons) override;
    void updateControl(void* context) override;
    void setPopupControl(KWControl* popup) override { popupControl = popup; }
    bool stepValue(int steps, bool fine) override;
    bool onKeyDown(const CKeyEvent& event) override;

    // The button stays lit while its menu is open.
    void menuOpened() override;
    void menuClosed() override;

    ValueToString stateToText = nullptr;
    const KWStateSource* stateSource = nullptr;
    CHoriTxtAlign alignment = kCenterText;
    std::string textOn;
    std::string textAlt;
    const Crossing<float>* valueSource = nullptr;
    uint32_t frameMask = 0;
    int buttonType = kMomentary;
    int stateCount = 2;
    bool mouseWhenHidden = false;
    bool hidden = false;

private:
    void readSources();
    void drawPlain(CDrawContext* context);
    void cycle();

    KWControl* popupControl = nullptr;
    bool mouseDown = false;
    bool hovered = false;
};

} // namespace ormund
