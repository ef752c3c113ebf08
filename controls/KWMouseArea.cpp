#include "controls/KWMouseArea.h"

#include <algorithm>

namespace ormund {

KWMouseArea::KWMouseArea(
    const CRect& viewSize, CControlListener* controlListener, long controlTag, KWFrame* ownFrame)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
{
    setTransparency(true);
}

void KWMouseArea::read(const CPoint& where, int buttons, bool limited)
{
    state.leftButton = buttons & kLButton ? 1.0f : 0.0f;
    state.rightButton = buttons & kRButton ? 1.0f : 0.0f;
    state.shift = buttons & kShift ? 1.0f : 0.0f;
    state.control = buttons & kControl ? 1.0f : 0.0f;
    state.x = static_cast<float>(where.x - size.left) / static_cast<float>(std::max(getWidth(), 1));
    state.y = static_cast<float>(where.y - size.top) / static_cast<float>(std::max(getHeight(), 1));
    if (limited) {
        state.x = std::clamp(state.x, 0.0f, 1.0f);
        state.y = std::clamp(state.y, 0.0f, 1.0f);
    }
    setValue(state.x);
}

CMouseEventResult KWMouseArea::onMouseDown(const CPoint& where, int buttons)
{
    if (!isLive() || !size.pointInside(where))
        return kMouseEventNotHandled;
    read(where, buttons, false);
    if (!tracking)
        openBracket();
    tracking = true;
    tellListener();
    return kMouseEventHandled;
}

CMouseEventResult KWMouseArea::onMouseMoved(const CPoint& where, int buttons)
{
    if (!tracking)
        return kMouseEventNotHandled;
    read(where, buttons, clamp);
    tellListener();
    setDirty(true);
    return kMouseEventHandled;
}

CMouseEventResult KWMouseArea::onMouseUp(const CPoint&, int)
{
    if (!tracking)
        return kMouseEventNotHandled;
    state.leftButton = 0;
    state.rightButton = 0;
    state.shift = 0;
    state.control = 0;
    tellListener();
    tracking = false;
    setDirty(true);
    closeBracket();
    startHideTimer();
    return kMouseEventHandled;
}

} // namespace ormund
