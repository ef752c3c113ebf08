#include "controls/KWViewContainer.h"

#include "controls/KWFrame.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>
#include <utility>

namespace ormund {

namespace {
constexpr int kContainerKind = 1;
constexpr CPoint kFarAway{-10000, -10000};
} // namespace

KWViewContainer::KWViewContainer(const CRect& viewSize, CControlListener* controlListener,
    long controlTag, KWFrame* ownFrame, CBitmap* backgroundBitmap)
    : KWControl(viewSize, controlListener, controlTag, ownFrame, backgroundBitmap)
{
    controlKind = kContainerKind;
}

KWViewContainer::~KWViewContainer()
{
    for (const Item& item : children)
        item.view->forget();
}

void KWViewContainer::drawBackground(CDrawContext* context)
{
    if (!(style & kNoBackground)) {
        if ((style & kDrawBitmap) && getBackground()) {
            drawFrameOf(context, getBackground(), size, 0);
        } else if (style & kFillBackground) {
            context->setFillColor(backColor);
            context->drawRect(size, kDrawFilled);
        }
    }
    if (style & kDropShadow)
        drawShadow(context, size);
}

void KWViewContainer::draw(CDrawContext* context)
{
    if (!isLive())
        return;
    drawBackground(context);
    for (const Item& item : children) {
        if (item.active && item.view->isVisible())
            item.view->draw(context);
    }
    KWControl::draw(context);
    setDirty(false);
}

void KWViewContainer::drawRect(CDrawContext* context, const CRect& updateRect)
{
    if (!isLive())
        return;
    drawBackground(context);
    for (const Item& item : children) {
        if (item.active && item.view->isVisible() && item.view->checkUpdate(updateRect))
            item.view->drawRect(context, updateRect);
    }
    KWControl::draw(context);
    setDirty(false);
}

bool KWViewContainer::isDirty() const
{
    if (!isLive())
        return false;
    return KWControl::isDirty() || std::any_of(children.begin(), children.end(), [](const Item& i) {
        return i.active && i.view->isDirty();
    });
}

void KWViewContainer::setDirty(bool nowDirty)
{
    KWControl::setDirty(nowDirty);
    if (!nowDirty)
        setChildrenDirty(false);
}

CMouseEventResult KWViewContainer::onMouseDown(const CPoint& where, int buttons)
{
    if (!isLive())
        return kMouseEventNotHandled;
    mouseChild = nullptr;
    for (const Item& item : children) {
        if (!item.active || !item.view->hitTest(where, buttons))
            continue;
        const CMouseEventResult result = item.view->onMouseDown(where, buttons);
        if (result == kMouseDownEventHandledButDontNeedMovedOrUpEvents)
            return result;
        if (result == kMouseEventHandled) {
            mouseChild = item.view;
            return kMouseEventHandled;
        }
    }
    if (frame && frame->modalControl == this) {
        if (!size.pointInside(where))
            endModal(0);
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    return kMouseEventNotHandled;
}

CMouseEventResult KWViewContainer::onMouseUp(const CPoint& where, int buttons)
{
    if (!mouseChild)
        return kMouseEventNotHandled;
    CView* const pressed = mouseChild;
    if ((buttons & kMouseButtons) == 0)
        mouseChild = nullptr;
    return pressed->onMouseUp(where, buttons);
}

CMouseEventResult KWViewContainer::onMouseMoved(const CPoint& where, int buttons)
{
    return mouseChild ? mouseChild->onMouseMoved(where, buttons) : kMouseEventNotHandled;
}

CMouseEventResult KWViewContainer::onMouseEntered(const CPoint& where, int buttons)
{
    KWControl::onMouseEntered(where, buttons);
    hoverChild = childAt(where);
    return hoverChild ? hoverChild->onMouseEntered(where, buttons) : kMouseEventHandled;
}

CMouseEventResult KWViewContainer::onMouseExited(const CPoint& where, int buttons)
{
    KWControl::onMouseExited(where, buttons);
    CView* const left = std::exchange(hoverChild, nullptr);
    return left ? left->onMouseExited(where, buttons) : kMouseEventHandled;
}

bool KWViewContainer::onWheel(const CPoint& where, float distance, int buttons)
{
    CView* const child = isLive() ? childAt(where) : nullptr;
    return child && child->onWheel(where, distance, buttons);
}

// `where` is the wanted corner; the container moves left or up where it would cross the frame's
// right or bottom edge.
void KWViewContainer::beginModal(int mode, const CPoint* where, long forTag)
{
    if (!frame)
        return;
    if (where) {
        const CRect& bounds = frame->getViewSize();
        const int left = std::max(bounds.left, std::min(where->x, bounds.right - size.width()));
        const int top = std::max(bounds.top, std::min(where->y, bounds.bottom - size.height()));
        CRect moved = size;
        setViewSize(moved.moveTo(left, top), true);
    }
    modalResult = mode;
    isOpen = true;
    setVisible(true);
    if (!isAttached() && frame->addView(this)) {
        remember(); // the frame's own reference, given back at endModal
        joinedFrame = true;
    }
    KWControl::beginModal(mode, where, forTag);
}

void KWViewContainer::endModal(int result)
{
    modalResult = result;
    isOpen = false;
    onMouseExited(kFarAway, 0);
    mouseChild = nullptr;
    setVisible(false);
    KWControl::endModal(result);
    if (joinedFrame) {
        joinedFrame = false;
        frame->removeView(this, true);
    }
}

void KWViewContainer::updateControl(void* context)
{
    KWControl::updateControl(context);
    for (const Item& item : children) {
        if (item.control)
            item.control->updateControl(context);
    }
    if (mouseChild || !frame || !isLive())
        return;
    CPoint where;
    const bool inside = frame->getCurrentMouseLocation(where);
    const int buttons = frame->getCurrentMouseButtons();
    CView* const under = inside ? childAt(where) : nullptr;
    if (under == hoverChild)
        return;
    CView* const left = std::exchange(hoverChild, under);
    if (left)
        left->onMouseExited(where, buttons);
    if (under)
        under->onMouseEntered(where, buttons);
}

void KWViewContainer::setViewSize(const CRect& rect, bool invalidate)
{
    KWControl::setViewSize(rect, invalidate);
    for (const Item& item : children) {
        if (!item.placed)
            continue;
        CRect moved = item.view->getViewSize();
        item.view->setViewSize(moved.moveTo(rect.left + item.x, rect.top + item.y), false);
    }
}

void KWViewContainer::addItem(CView* view, int x, int y)
{
    Item item;
    item.view = view;
    item.control = dynamic_cast<KWControl*>(view);
    if (x != kKeepPlace) {
        item.placed = true;
        item.x = x;
        item.y = y;
        CRect moved = view->getViewSize();
        view->setViewSize(moved.moveTo(size.left + x, size.top + y), false);
    }
    view->attached(this);
    children.push_back(item);
}

void KWViewContainer::setChildrenVisible(bool nowShown)
{
    for (const Item& item : children)
        item.view->setVisible(nowShown);
}

void KWViewContainer::setChildrenDirty(bool nowDirty)
{
    for (const Item& item : children)
        item.view->setDirty(nowDirty);
}

// The topmost, as it is the one that is seen.
CView* KWViewContainer::childAt(const CPoint& where) const
{
    for (auto item = children.rbegin(); item != children.rend(); ++item) {
        if (item->active && item->view->hitTest(where))
            return item->view;
    }
    return nullptr;
}

} // namespace ormund
