#include "view/CViewContainer.h"

#include "view/CBitmap.h"
#include "view/CDrawContext.h"
#include "view/CFrame.h"

#include <algorithm>
#include <cstring>

namespace ormund {

CViewContainer::CViewContainer(const CRect& viewSize) : CView(viewSize) { }

CViewContainer::~CViewContainer() { CViewContainer::removeAll(true); }

bool CViewContainer::addView(CView* view)
{
    if (!view || view == this || view->isAttached() || isChild(view))
        return false;
    children.push_back(view);
    view->attached(this);
    view->invalid();
    return true;
}

bool CViewContainer::removeView(CView* view, bool withForget)
{
    const auto at = std::find(children.begin(), children.end(), view);
    if (at == children.end())
        return false;
    dropMouseViews(view);
    view->invalid();
    children.erase(at);
    view->removed(this);
    if (withForget)
        view->forget();
    return true;
}

void CViewContainer::removeAll(bool withForget)
{
    while (!children.empty())
        CViewContainer::removeView(children.back(), withForget);
}

bool CViewContainer::isChild(const CView* view) const
{
    return std::find(children.begin(), children.end(), view) != children.end();
}

CView* CViewContainer::getView(int index) const
{
    return index >= 0 && index < getNbViews() ? children[static_cast<size_t>(index)] : nullptr;
}

CView* CViewContainer::getViewAt(const CPoint& where) const
{
    for (size_t i = children.size(); i-- > 0;)
        if (children[i]->hitTest(where))
            return children[i];
    return nullptr;
}

void CViewContainer::draw(CDrawContext* context) { drawRect(context, size); }

void CViewContainer::drawRect(CDrawContext* context, const CRect& updateRect)
{
    CRect visiblePart = updateRect;
    visiblePart.bound(size);
    if (visiblePart.isEmpty())
        return;
    drawBackgroundRect(context, visiblePart);
    for (CView* child : children) {
        if (!child->checkUpdate(visiblePart))
            continue;
        CRect part = visiblePart;
        part.bound(child->getViewSize());
        child->drawRect(context, part);
    }
}

void CViewContainer::drawBackgroundRect(CDrawContext* context, const CRect& updateRect)
{
    if (CBitmap* bitmap = getBackground()) {
        const CPoint offset{updateRect.left - size.left, updateRect.top - size.top};
        bitmap->draw(context, updateRect, offset);
    } else if (backgroundColor.alpha > 0) {
        context->setFillColor(backgroundColor);
        context->fillRect(updateRect);
    }
}

bool CViewContainer::isDirty() const
{
    if (CView::isDirty())
        return true;
    for (const CView* child : children)
        if (child->isDirty())
            return true;
    return false;
}

void CViewContainer::setDirty(bool on)
{
    CView::setDirty(on);
    if (!on)
        for (CView* child : children)
            child->setDirty(false);
}

CMouseEventResult CViewContainer::onMouseDown(const CPoint& where, int buttons)
{
    // One gesture at a time.
    if (mouseDownView)
        return kMouseEventHandled;
    // A child may add or remove views while it handles the press, so the order is a copy and each
    // entry is looked up again.
    const std::vector<CView*> order(children.rbegin(), children.rend());
    for (CView* child : order) {
        if (!isChild(child) || !child->hitTest(where, buttons))
            continue;
        const CShared<CView> keep(child);
        const CMouseEventResult result = child->onMouseDown(where, buttons);
        if (result == kMouseEventHandled) {
            if (isChild(child))
                mouseDownView = child;
            return result;
        }
        if (result == kMouseDownEventHandledButDontNeedMovedOrUpEvents)
            return result;
    }
    return kMouseEventNotHandled;
}

CMouseEventResult CViewContainer::onMouseUp(const CPoint& where, int buttons)
{
    if (!mouseDownView)
        return kMouseEventNotHandled;
    const CShared<CView> keep(mouseDownView);
    if (!(buttons & kMouseButtons))
        mouseDownView = nullptr;
    keep->onMouseUp(where, buttons);
    return kMouseEventHandled;
}

CMouseEventResult CViewContainer::onMouseMoved(const CPoint& where, int buttons)
{
    if (mouseDownView) {
        const CShared<CView> keep(mouseDownView);
        // When the release got lost, the view sees a move without buttons and then the release.
        const bool released = !(buttons & kMouseButtons);
        if (released)
            mouseDownView = nullptr;
        keep->onMouseMoved(where, buttons);
        if (released)
            keep->onMouseUp(where, buttons);
        return kMouseEventHandled;
    }
    setMouseOverView(getViewAt(where), where, buttons);
    if (!mouseOverView)
        return kMouseEventNotHandled;
    const CShared<CView> keep(mouseOverView);
    return keep->onMouseMoved(where, buttons);
}

CMouseEventResult CViewContainer::onMouseExited(const CPoint& where, int buttons)
{
    setMouseOverView(nullptr, where, buttons);
    return kMouseEventHandled;
}

void CViewContainer::setMouseOverView(CView* view, const CPoint& where, int buttons)
{
    if (view == mouseOverView)
        return;
    const CShared<CView> left(mouseOverView);
    const CShared<CView> entered(view);
    mouseOverView = view;
    if (left)
        left->onMouseExited(where, buttons);
    if (entered && mouseOverView == view)
        entered->onMouseEntered(where, buttons);
}

bool CViewContainer::onWheel(const CPoint& where, CMouseWheelAxis axis, float distance, int buttons)
{
    const std::vector<CView*> order(children.rbegin(), children.rend());
    for (CView* child : order) {
        if (!isChild(child) || !child->hitTest(where, buttons))
            continue;
        const CShared<CView> keep(child);
        if (child->onWheel(where, axis, distance, buttons))
            return true;
    }
    return false;
}

void CViewContainer::setParentFrame(CFrame* frame)
{
    CView::setParentFrame(frame);
    for (CView* child : children)
        child->setParentFrame(frame);
}

void CViewContainer::attached(CView* parent)
{
    CView::attached(parent);
    for (CView* child : children)
        child->setParentFrame(getFrame());
}

void CViewContainer::removed(CView* parent) { CView::removed(parent); }

bool CViewContainer::isTypeOf(const char* className) const
{
    return std::strcmp(className, "CViewContainer") == 0 || CView::isTypeOf(className);
}

void CViewContainer::dropMouseViews(const CView* view)
{
    if (mouseDownView == view)
        mouseDownView = nullptr;
    if (mouseOverView == view)
        mouseOverView = nullptr;
}

} // namespace ormund
