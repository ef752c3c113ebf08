// The base of all that is on the panel: a rectangle of the frame that draws itself, and that the
// mouse, the wheel and the keyboard may reach. Screen thread alone.
//
// A view is dirty when it wants to be painted at the next idle. invalidRect marks a part of the
// panel instead, and whatever lies there is painted.
#pragma once

#include "view/CReferenceCounter.h"
#include "view/Events.h"
#include "view/Geometry.h"

namespace ormund {

class CBitmap;
class CDrawContext;
class CFrame;

class CView : public CReferenceCounter {
public:
    explicit CView(const CRect& viewSize);
    ~CView() override;

    // Drawing. checkUpdate says whether the view has something to show inside `updateRect`.
    virtual void draw(CDrawContext* context);
    virtual void drawRect(CDrawContext* context, const CRect& updateRect);
    virtual bool checkUpdate(const CRect& updateRect) const;
    virtual bool isDirty() const { return dirty; }
    virtual void setDirty(bool on = true) { dirty = on; }
    virtual void invalidRect(const CRect& rect);
    void invalid() { invalidRect(size); }

    // Visibility. A change repaints the view's rectangle.
    virtual void setVisible(bool on);
    virtual bool isVisible() const { return visible; }

    // The mouse. `where` is in the frame's coordinates, `buttons` as Events.h has them.
    virtual CMouseEventResult onMouseDown(const CPoint& where, int buttons);
    virtual CMouseEventResult onMouseUp(const CPoint& where, int buttons);
    virtual CMouseEventResult onMouseMoved(const CPoint& where, int buttons);
    virtual CMouseEventResult onMouseEntered(const CPoint& where, int buttons);
    virtual CMouseEventResult onMouseExited(const CPoint& where, int buttons);
    virtual bool hitTest(const CPoint& where, int buttons = -1);

    // The wheel: 1 is one notch, positive away from the user. The form with an axis hands the
    // vertical one to the other form. True when the view took it.
    virtual bool onWheel(const CPoint& where, float distance, int buttons);
    virtual bool onWheel(const CPoint& where, CMouseWheelAxis axis, float distance, int buttons);

    // The keyboard, while the view has the focus. True when the view took the key.
    virtual bool onKeyDown(const CKeyEvent& event);
    virtual bool onKeyUp(const CKeyEvent& event);
    virtual void takeFocus() { }
    virtual void looseFocus() { }

    virtual void setMouseEnabled(bool on = true) { mouseEnabled = on; }
    virtual bool getMouseEnabled() const { return mouseEnabled; }
    virtual void setMouseableArea(const CRect& rect) { mouseableArea = rect; }
    const CRect& getMouseableArea() const { return mouseableArea; }

    // Moves and resizes; the mouseable area becomes the size. With `invalidate` the old and the
    // new place are painted.
    virtual void setViewSize(const CRect& rect, bool invalidate = true);
    const CRect& getViewSize() const { return size; }
    int getWidth() const { return size.width(); }
    int getHeight() const { return size.height(); }

    virtual void setTransparency(bool on) { transparent = on; }
    bool getTransparency() const { return transparent; }
    virtual void setBackground(CBitmap* bitmap); // takes a reference
    CBitmap* getBackground() const { return background; }

    virtual void setParentView(CView* view) { parentView = view; }
    CView* getParentView() const { return parentView; }
    virtual void setParentFrame(CFrame* frame) { parentFrame = frame; }
    CFrame* getFrame() const { return parentFrame; }
    // Called when the view joins a parent and when it leaves it.
    virtual void attached(CView* parent);
    virtual void removed(CView* parent);
    bool isAttached() const { return isAttachedNow; }

    virtual CView* newCopy() const { return nullptr; }
    virtual bool isTypeOf(const char* className) const;

protected:
    CRect size;
    CRect mouseableArea;

private:
    CFrame* parentFrame = nullptr;
    CView* parentView = nullptr;
    CBitmap* background = nullptr;
    bool dirty = true;
    bool visible = true;
    bool mouseEnabled = true;
    bool transparent = false;
    bool isAttachedNow = false;
};

} // namespace ormund
