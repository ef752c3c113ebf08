#pragma once

#include "controls/KWButton.h"

#include <functional>

namespace ormund {

// The pad from which a MIDI file is dragged out of the window. A click without a drag asks for a
// place to save it instead.
class MidiDragPad : public KWButton {
public:
    using KWButton::KWButton;

    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;

    std::function<void()> beginDrag; // makes the file and hands it to the window system
    std::function<void()> clicked;

private:
    static constexpr int kDragDistance = 4; // pixels

    CPoint pressedAt;
    bool armed = false;
};

} // namespace ormund
