// A view with children, painted from the first to the last. Their coordinates are the frame's, as
// their parent's are. The container owns one reference to each.
#pragma once

#include "view/CView.h"

#include <vector>

namespace ormund {

class CViewContainer : public CView {
public:
    explicit CViewContainer(const CRect& viewSize);
    ~CViewContainer() override;

    // Takes over the caller's reference. False, and nothing taken, when the view has a parent.
    virtual bool addView(CView* view);
    // Without `withForget` the reference goes back to the caller. False when it is no child.
    virtual bool removeView(CView* view, bool withForget = true);
    virtual void removeAll(bool withForget = true);
    bool isChild(const CView* view) const;
    int getNbViews() const { return static_cast<int>(children.size()); }
    CView* getView(int index) const;
    const std::vector<CView*>& views() const { return children; }

    // The topmost child at a point that takes the mouse; null for none.
    virtual CView* getViewAt(const CPoint& where) const;
    // Kept for the one who asks; a frame always paints through an offscreen.
    virtual void useOffscreen(bool on) { offscreen = on; }
    bool usesOffscreen() const { return offscreen; }
    virtual void setBackgroundColor(const CColor& color) { backgroundColor = color; }

    void draw(CDrawContext* context) override;
    void drawRect(CDrawContext* context, const CRect& updateRect) override;
    // Draws the background bitmap, else the background colour.
    virtual void drawBackgroundRect(CDrawContext* context, const CRect& updateRect);
    bool isDirty() const override;
    void setDirty(bool on = true) override;

    // A press goes to the topmost child below it, and on to the next one below until one takes it.
    // That one sees moves and releases until no button is down.
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseExited(const CPoint& where, int buttons) override;
    bool onWheel(const CPoint& where, CMouseWheelAxis axis, float distance, int buttons) override;
    using CView::onWheel;

    void setParentFrame(CFrame* frame) override;
    void attached(CView* parent) override;
    void removed(CView* parent) override;
    bool isTypeOf(const char* className) const override;

    CView* getMouseDownView() const { return mouseDownView; }
    CView* getMouseOverView() const { return mouseOverView; }

protected:
    // Ends the child's part in a drag and in hovering; called before it goes.
    virtual void dropMouseViews(const CView* view);
    void setMouseOverView(CView* view, const CPoint& where, int buttons);

    std::vector<CView*> children;
    CView* mouseDownView = nullptr;
    CView* mouseOverView = nullptr;

private:
    CColor backgroundColor = kTransparentCColor;
    bool offscreen = false;
};

} // namespace ormund
