#include "controls/KWLocalLink.h"

#include "panel/Look.h"
#include "platform/OpenLink.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr double kRadius = 2.5;
}

KWLocalLink::KWLocalLink(const CRect& viewSize, CControlListener* controlListener, long controlTag,
    KWFrame* ownFrame, const char* documentPath)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
    , opener(openLink)
    , path(documentPath ? documentPath : "")
{
    textColor = look::kTextRaised;
}

void KWLocalLink::draw(CDrawContext* context)
{
    if (!isLive())
        return;
    if (CBitmap* const bitmap = getBackground()) {
        // The second frame, where there is one, is the pressed look.
        const int frames = bitmap->getHeight() / std::max(size.height(), 1);
        drawFrameOf(context, bitmap, size, pressed && frames > 1 ? size.height() : 0);
    } else {
        const CColor body = hovered ? look::kRaisedHover : look::kRaised;
        context->setFillColor(pressed ? look::kPressed : body);
        context->setFrameColor(hovered ? look::kFrameHover : look::kRaisedFrame);
        context->drawRoundRect(size, kRadius, kDrawFilledAndStroked);
        context->setFont(font, fontSize);
        context->setFontColor(textColor);
        context->drawString(text, size, false, kCenterText);
    }
    KWControl::draw(context);
}

CMouseEventResult KWLocalLink::onMouseDown(const CPoint& where, int)
{
    if (!isLive() || !size.pointInside(where))
        return kMouseEventNotHandled;
    pressed = true;
    setDirty(true);
    return kMouseEventHandled;
}

CMouseEventResult KWLocalLink::onMouseMoved(const CPoint&, int)
{
    return pressed ? kMouseEventHandled : kMouseEventNotHandled;
}

CMouseEventResult KWLocalLink::onMouseEntered(const CPoint& where, int buttons)
{
    hovered = true;
    setDirty(true);
    return KWControl::onMouseEntered(where, buttons);
}

CMouseEventResult KWLocalLink::onMouseExited(const CPoint& where, int buttons)
{
    hovered = false;
    setDirty(true);
    return KWControl::onMouseExited(where, buttons);
}

CMouseEventResult KWLocalLink::onMouseUp(const CPoint& where, int)
{
    const bool wasPressed = pressed;
    pressed = false;
    setDirty(true);
    if (wasPressed && isLive() && size.pointInside(where) && opener)
        opener(path);
    return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
}

} // namespace ormund
