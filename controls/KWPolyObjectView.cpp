#include "controls/KWPolyObjectView.h"

#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <utility>

namespace ormund {

KWPolyObjectView::KWPolyObjectView(
    const CRect& viewSize, CControlListener* controlListener, long controlTag, KWFrame* ownFrame)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
{
}

CRect KWPolyObjectView::objectRect(int index) const
{
    const KWPolyObjectSet::Object& object = objectSet->objects[static_cast<size_t>(index)];
    CRect rect;
    rect.left = size.left + object.left;
    rect.right = rect.left + object.width;
    rect.bottom = size.bottom - object.bottom;
    rect.top = rect.bottom - object.height;
    if (rect.left > rect.right)
        std::swap(rect.left, rect.right);
    if (rect.top > rect.bottom)
        std::swap(rect.top, rect.bottom);
    return rect;
}

int KWPolyObjectView::objectAt(const CPoint& where) const
{
    if (!objectSet)
        return -1;
    for (int i = static_cast<int>(objectSet->objects.size()) - 1; i >= 0; --i) {
        if (objectRect(i).pointInside(where))
            return i;
    }
    return -1;
}

void KWPolyObjectView::draw(CDrawContext* context)
{
    if (!isLive() || !objectSet || objectSet->objects.empty())
        return;
    if (solidFill) {
        if (background) {
            drawFrameOf(context, background, size, 0);
        } else {
            context->setFillColor(kWhiteCColor);
            context->drawRect(size, kDrawFilled);
        }
    }
    for (size_t i = 0; strip && i < objectSet->objects.size(); ++i) {
        const KWPolyObjectSet::Object& object = objectSet->objects[i];
        const CRect rect = objectRect(static_cast<int>(i));
        const CPoint offset(object.frameX, object.frameY);
        if (i < objectSet->alpha.size())
            strip->drawAlphaBlend(context, rect, offset, objectSet->alpha[i]);
        else if (getTransparency())
            strip->drawTransparent(context, rect, offset);
        else
            strip->draw(context, rect, offset);
    }
    KWControl::draw(context);
}

CMouseEventResult KWPolyObjectView::onMouseDown(const CPoint& where, int buttons)
{
    if (!isLive() || !objectSet || !enabled || !size.pointInside(where))
        return kMouseEventNotHandled;
    lastPoint = where;
    const int index = objectAt(where);
    if (index < 0)
        return kMouseEventNotHandled;
    currentObject = index;
    gesture = Gesture();
    gesture.pressed = 1;
    gesture.rightPressed = buttons & kRButton ? 1.0f : 0.0f;
    gesture.objectIndex = static_cast<float>(index);
    openBracket();
    tellListener();
    return kMouseEventHandled;
}

CMouseEventResult KWPolyObjectView::onMouseMoved(const CPoint& where, int)
{
    if (currentObject < 0 && enabled)
        return kMouseEventNotHandled;
    gesture.deltaX = static_cast<float>(where.x - lastPoint.x);
    gesture.deltaY = static_cast<float>(where.y - lastPoint.y);
    lastPoint = where;
    tellListener();
    setDirty(true);
    return kMouseEventHandled;
}

CMouseEventResult KWPolyObjectView::onMouseUp(const CPoint&, int)
{
    currentObject = -1;
    gesture = Gesture();
    tellListener();
    closeBracket();
    return kMouseEventHandled;
}

void KWPolyObjectView::updateControl(void* context)
{
    if (objectSet && objectSet->revision != lastRevision) {
        lastRevision = objectSet->revision;
        setDirty(true);
    }
    KWControl::updateControl(context);
}

} // namespace ormund
