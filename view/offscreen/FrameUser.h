// Plays a user on a frame, for tests and pictures.
#pragma once

#include "view/CFrame.h"

namespace ormund {

// The mouse keeps its place, its buttons and its clock between calls.
class FrameUser {
public:
    explicit FrameUser(CFrame& playedFrame) : frame(playedFrame) { }

    void move(const CPoint& where, int modifiers = 0);
    void press(const CPoint& where, int button = kLButton, int modifiers = 0);
    void release(const CPoint& where, int button = kLButton, int modifiers = 0);
    void click(const CPoint& where, int button = kLButton, int modifiers = 0);
    void doubleClick(const CPoint& where, int modifiers = 0);
    // A press at `from`, moves in steps of at most four pixels, a release at `to`.
    void drag(const CPoint& from, const CPoint& to, int button = kLButton, int modifiers = 0);
    void wheel(const CPoint& where, float distance, int modifiers = 0);
    bool key(const CKeyEvent& event);
    // Time passes, so that the next press is no double click.
    void wait(uint32_t milliseconds) { clock += milliseconds; }

private:
    CFrame& frame;
    int held = 0;
    uint32_t clock = 1000;
};

} // namespace ormund
