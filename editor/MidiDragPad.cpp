#include "editor/MidiDragPad.h"

#include <cstdlib>

namespace ormund {

CMouseEventResult MidiDragPad::onMouseDown(const CPoint& where, int buttons)
{
    const CMouseEventResult result = KWButton::onMouseDown(where, buttons);
    if (result == kMouseEventHandled && (buttons & kLButton)) {
        pressedAt = where;
        armed = true;
    }
    return result;
}

CMouseEventResult MidiDragPad::onMouseMoved(const CPoint& where, int buttons)
{
    const bool far = std::abs(where.x - pressedAt.x) > kDragDistance
        || std::abs(where.y - pressedAt.y) > kDragDistance;
    if (armed && far && (buttons & kLButton)) {
        armed = false;
        KWButton::onMouseUp(where, 0); // the pad comes up: the rest of the gesture is the drag's
        if (beginDrag)
            beginDrag();
        return kMouseEventHandled;
    }
    return KWButton::onMouseMoved(where, buttons);
}

CMouseEventResult MidiDragPad::onMouseUp(const CPoint& where, int buttons)
{
    const bool wasArmed = armed;
    armed = false;
    const CMouseEventResult result = KWButton::onMouseUp(where, buttons);
    if (wasArmed && size.pointInside(where) && clicked)
        clicked();
    return result;
}

} // namespace ormund
