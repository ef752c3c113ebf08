#include "view/CView.h"

#include "view/CBitmap.h"
#include "view/CDrawContext.h"
#include "view/CFrame.h"

#include <cstring>

namespace ormund {

CView::CView(const CRect& viewSize) : size(viewSize), mouseableArea(viewSize) { }

CView::~CView()
{
    if (parentFrame && parentFrame != this)
        parentFrame->viewGone(this);
    if (background)
        background->forget();
}

void CView::draw(CDrawContext* context)
{
    if (!background)
        return;
    if (transparent)
        background->drawTransparent(context, size);
    else
        background->draw(context, size);
}

void CView::drawRect(CDrawContext* context, const CRect&) { draw(context); }

bool CView::checkUpdate(const CRect& updateRect) const
{
    return isVisible() && size.rectOverlap(updateRect);
}

void CView::invalidRect(const CRect& rect)
{
    if (parentFrame && parentFrame != this)
        parentFrame->invalidRect(rect);
}

void CView::setVisible(bool on)
{
    if (visible == on)
        return;
    visible = on;
    invalid();
}

CMouseEventResult CView::onMouseDown(const CPoint&, int) { return kMouseEventNotImplemented; }
CMouseEventResult CView::onMouseUp(const CPoint&, int) { return kMouseEventNotImplemented; }
CMouseEventResult CView::onMouseMoved(const CPoint&, int) { return kMouseEventNotImplemented; }
CMouseEventResult CView::onMouseEntered(const CPoint&, int) { return kMouseEventNotImplemented; }
CMouseEventResult CView::onMouseExited(const CPoint&, int) { return kMouseEventNotImplemented; }

bool CView::hitTest(const CPoint& where, int)
{
    return isVisible() && getMouseEnabled() && mouseableArea.pointInside(where);
}

bool CView::onWheel(const CPoint&, float, int) { return false; }

bool CView::onWheel(const CPoint& where, CMouseWheelAxis axis, float distance, int buttons)
{
    return axis == kMouseWheelAxisY && onWheel(where, distance, buttons);
}

bool CView::onKeyDown(const CKeyEvent&) { return false; }
bool CView::onKeyUp(const CKeyEvent&) { return false; }

void CView::setViewSize(const CRect& rect, bool invalidate)
{
    if (invalidate && rect != size)
        invalid();
    size = rect;
    setMouseableArea(rect);
    if (invalidate)
        invalid();
}

void CView::setBackground(CBitmap* bitmap)
{
    if (bitmap)
        bitmap->remember();
    if (background)
        background->forget();
    background = bitmap;
    setDirty();
}

void CView::attached(CView* parent)
{
    parentView = parent;
    isAttachedNow = true;
    if (parent)
        setParentFrame(
            parent->isTypeOf("CFrame") ? static_cast<CFrame*>(parent) : parent->getFrame());
}

void CView::removed(CView*)
{
    isAttachedNow = false;
    parentView = nullptr;
}

bool CView::isTypeOf(const char* className) const { return std::strcmp(className, "CView") == 0; }

} // namespace ormund
