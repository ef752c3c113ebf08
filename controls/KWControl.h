// Base of all own controls: a gate that shows and hides it, hover views, modal display above the
// other controls, and an idle update in which it looks at what it shows.
#pragma once

#include "base/Crossing.h"
#include "controls/KWBitSet128.h"
#include "view/CControl.h"
#include "view/Geometry.h"

#include <string>
#include <vector>

namespace ormund {

class CBitmap;
class CDrawContext;
class CFontDesc;
class KWFrame;

// Screen thread only; what the engine owns is read by polling. A control never writes to the
// engine (the step views excepted): it changes its value and notifies its listener, with beginEdit
// and endEdit around each gesture.
class KWControl : public CControl {
public:
    enum Style : uint32_t {
        kNoBackground = 1u << 0,
        kFillBackground = 1u << 1,
        kDrawBitmap = 1u << 2,
        kDropShadow = 1u << 3,
    };
    static constexpr int kStopped = -1;

    // `parentFrame` may be null: then there are no hover delays and no modal display.
    KWControl(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame,
        CBitmap* background = nullptr);
    ~KWControl() override;

    // A hidden control neither draws nor reports dirty nor takes the mouse.
    bool isLive() const { return shown && (!gate || gate->test(gateBit)); }

    void draw(CDrawContext* context) override;
    bool isDirty() const override;
    void setVisible(bool visible) override;
    bool isVisible() const override { return isLive(); }
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseEntered(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseExited(const CPoint& where, int buttons) override;
    bool hitTest(const CPoint& where, int buttons = -1) override;

    // A modified click never resets; the classes that do have their own rule.
    bool checkDefaultValue(int) override { return false; }

    virtual void onModalStart() { }
    // Takes the mouse and the top of the drawing order. `where` is in frame coordinates.
    static constexpr int kPopupMode = 2; // of beginModal, for a list over a control
    virtual void beginModal(int mode, const CPoint* where, long forTag);
    virtual void endModal(int result);
    // Whether modal display ends when the window loses the system's focus. What a user has typed or
    // reads stays.
    virtual bool closesWithFocus() const { return false; }
    // The area that modal display covers.
    virtual void getViewRect(CRect& rect) const;
    virtual std::string getInfoText() const { return "no info"; }
    virtual bool acceptsDrop() const { return false; }
    // Once an idle. The base runs the hover timers.
    virtual void updateControl(void* context);
    virtual void setSizeAndArea(const CRect& rect);
    virtual void setPopupControl(KWControl*) { }
    // What a right-click menu was opened for: the control's tag and, on step views, the step.
    virtual void setMenuTag(long) { }
    virtual void setMenuStep(int) { }
    virtual int getMenuStep() const { return -1; }
    virtual void setMenuValue(float) { }
    virtual void addHoverView(CView* view);
    virtual void addHoverViewAlt(CView* view);
    // Whether the keyboard moves it, so that it can have the focus ring.
    virtual bool takesKeys() const { return true; }
    // The arrow keys of a focused control: up and right are 1, down and left -1; `fine` with Shift.
    // False where this key moves nothing.
    virtual bool stepValue(int steps, bool fine);
    bool onKeyDown(const CKeyEvent& event) override;
    // The focus ring's rectangle; empty for a control that shows none.
    virtual CRect focusRect() const { return size; }

    KWFrame* getKWFrame() const { return frame; }
    void setGate(const KWBitSet128* set, int bit)
    {
        gate = set;
        gateBit = bit;
    }

    CColor backColor;
    CColor textColor;
    KWControl* previousModal = nullptr;
    const KWBitSet128* gate = nullptr;
    int gateBit = 0;
    std::string label;
    CFontDesc* font = nullptr; // not owned; the frame's
    int fontSize = 10;
    uint32_t style = kNoBackground;
    int controlKind = 0;
    int hoverEnabled = 1;
    int shadowAlpha = 128;
    int shadowAlphaStep = -20;
    int shadowSize = 5;
    bool shown = true;
    bool disabledLook = false;
    bool editBrackets = true;

protected:
    // One change as one gesture.
    void notify();
    void openBracket();
    void closeBracket();
    // Like slow and fast wheel notches: the value moves by `distance` times `perNotch`.
    void wheelValue(float distance, float perNotch);
    float clampedToRange(float wanted) const;
    void showHoverViews();
    void hideHoverViews();
    void startHideTimer();
    void drawShadow(CDrawContext* context, const CRect& rect) const;
    // The strip frame at a vertical offset, blended where the view is transparent.
    void drawFrameOf(CDrawContext* context, CBitmap* bitmap, const CRect& rect, int offsetY) const;

    // Makes this the control that hears the keyboard.
    void takeKeyboard();

    KWFrame* frame = nullptr;
    std::vector<CView*> hoverViews;
    std::vector<CView*> hoverViewsAlt;
    int hoverHideTimer = kStopped;
    int hoverShowTimer = kStopped;
    bool hoverShown = false;
};

} // namespace ormund
