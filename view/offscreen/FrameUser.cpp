#include "view/offscreen/FrameUser.h"

#include <algorithm>
#include <cstdlib>

namespace ormund {

void FrameUser::move(const CPoint& where, int modifiers)
{
    frame.windowMouseMoved(where, held | modifiers);
}

void FrameUser::press(const CPoint& where, int button, int modifiers)
{
    held |= button;
    frame.windowMouseDown(where, held | modifiers, button, clock);
}

void FrameUser::release(const CPoint& where, int button, int modifiers)
{
    held &= ~button;
    frame.windowMouseUp(where, held | modifiers);
}

void FrameUser::click(const CPoint& where, int button, int modifiers)
{
    wait(1000);
    press(where, button, modifiers);
    release(where, button, modifiers);
}

void FrameUser::doubleClick(const CPoint& where, int modifiers)
{
    click(where, kLButton, modifiers);
    wait(100);
    press(where, kLButton, modifiers);
    release(where, kLButton, modifiers);
}

void FrameUser::drag(const CPoint& from, const CPoint& to, int button, int modifiers)
{
    constexpr int kStep = 4;
    wait(1000);
    press(from, button, modifiers);
    const int steps =
        std::max(1, std::max(std::abs(to.x - from.x), std::abs(to.y - from.y)) / kStep);
    for (int i = 1; i <= steps; ++i)
        move({from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps},
            modifiers);
    release(to, button, modifiers);
}

void FrameUser::wheel(const CPoint& where, float distance, int modifiers)
{
    frame.windowWheel(where, kMouseWheelAxisY, distance, held | modifiers);
}

bool FrameUser::key(const CKeyEvent& event)
{
    const bool taken = frame.windowKeyDown(event);
    frame.windowKeyUp(event);
    return taken;
}

} // namespace ormund
