// The top view of an editor: owns the window and all views, collects what is dirty and paints it
// once per idle, and routes what the user does. Screen thread alone; several may live at once.
#pragma once

#include "view/CViewContainer.h"
#include "view/DirtyRegion.h"
#include "view/FrameWindow.h"
#include "view/TextStores.h"

#include <memory>

namespace ormund {

// What a frame reports to the editor that it belongs to.
class VSTGUIEditorInterface {
public:
    virtual ~VSTGUIEditorInterface() = default;
    // The user does something in the frame, as opposed to the host's other windows.
    virtual void frameActivity(CFrame*) { }
    // A key that no view took. True when the editor did.
    virtual bool frameKeyDown(const CKeyEvent&) { return false; }
    virtual bool frameKeyUp(const CKeyEvent&) { return false; }
};

class CFrame : public CViewContainer {
public:
    // Of kDrawnScales.
    static double nearestScale(double wanted);

    // `size` is in panel pixels. With a system window the frame opens a child of it at the
    // desktop's scale; without one it paints into memory at scale 1.
    CFrame(const CRect& frameSize, void* systemWindow, VSTGUIEditorInterface* frameEditor);
    // Shows in the given window, at scale 1 until setScale.
    CFrame(const CRect& frameSize, std::unique_ptr<FrameWindow> frameWindow,
        VSTGUIEditorInterface* frameEditor);
    ~CFrame() override;

    // Takes in what the user did, then paints what is dirty. The host's timer calls it.
    virtual void idle();
    // Paints what is dirty and shows it.
    void repaint();
    // Everything is painted at the next repaint.
    void invalidAll() { invalidRect(size); }
    void invalidRect(const CRect& rect) override;
    const DirtyRegion& dirtyRegion() const { return region; }

    // The panel's size; the window follows. False for an empty size.
    virtual bool setSize(int width, int height);
    // One of kDrawnScales, or the nearest of them.
    virtual void setScale(double newScale);
    double getScale() const { return scale; }

    // In panel pixels, far outside when the pointer is not in the window; true when inside.
    virtual bool getCurrentMouseLocation(CPoint& where) const;
    int getCurrentMouseButtons() const { return mouseButtons; }

    // The window's entry points. Coordinates in panel pixels; `buttons` are all that are down
    // after the event, with the modifiers. windowMouseDown adds kDoubleClick by itself; `time` is
    // in milliseconds and `button` the one pressed.
    //
    // One gesture at a time: until the button that began it is released, other buttons and the
    // wheel do nothing, and the views do not get them.
    void windowMouseDown(const CPoint& where, int buttons, int button, uint32_t time);
    void windowMouseUp(const CPoint& where, int buttons);
    void windowMouseMoved(const CPoint& where, int buttons);
    void windowMouseLeft(const CPoint& where, int buttons);
    void windowWheel(const CPoint& where, CMouseWheelAxis axis, float distance, int buttons);
    bool windowKeyDown(const CKeyEvent& event);
    bool windowKeyUp(const CKeyEvent& event);
    void windowLostFocus();
    // As if the hand let go beside everything: for a window, a view or a focus that goes during a
    // press. What the press began is closed, and nothing is chosen.
    void endPress();
    // What the mouse does before the views hear of it.
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;

    // Keys go to the view with the focus.
    bool onKeyDown(const CKeyEvent& event) override;
    bool onKeyUp(const CKeyEvent& event) override;

    // The window lost the system's focus.
    void looseFocus() override;
    // The view that hears the keyboard; null for none.
    virtual void setFocusView(CView* view);
    CView* getFocusView() const { return focusView; }
    unsigned long systemHandle() const { return window->systemHandle(); }
    bool hasSystemFocus() const { return window->hasFocus(); }
    void takeSystemFocus() { window->takeFocus(); }

    void setCursor(CCursor cursor);
    CCursor getCursor() const { return cursorShown; }
    bool dragFiles(const std::vector<std::string>& paths) { return window->dragFiles(paths); }

    VSTGUIEditorInterface* getEditor() const { return editor; }
    FrameWindow& getWindow() const { return *window; }

    void setViewSize(const CRect& rect, bool invalidate = true) override;
    bool isTypeOf(const char* className) const override;

protected:
    void dropMouseViews(const CView* view) override;

private:
    friend class CView;
    void viewGone(const CView* view);
    void collectDirty();
    void applyWindowSize();
    // The modifiers, and of the buttons the one that began the gesture.
    int heardOf(int buttons) const { return buttons & (~kMouseButtons | pressButton); }

    TextStores texts;
    std::unique_ptr<FrameWindow> window;
    VSTGUIEditorInterface* editor;
    DirtyRegion region;
    double scale = 1;
    CPoint mouseAt{-10000, -10000};
    int mouseButtons = 0;
    int pressButton = 0; // the one that began the gesture; 0 between gestures
    CView* focusView = nullptr;
    CCursor cursorShown = CCursor::Arrow;
    uint32_t lastPressTime = 0;
    CPoint lastPressAt{-10000, -10000};
    int lastPressButton = 0;
};

} // namespace ormund
