#pragma once

#include "base/Crossing.h"
#include "panel/ControlCatalogue.h"

#include <array>

namespace ormund {

// What the editor works out from the running engine once an idle, for the controls to watch. They
// compare and mark themselves dirty; nothing here is pushed. Screen thread.
struct ScreenState {
    static constexpr float kNowhere = -10000.0f;

    std::array<Crossing<float>, kLanes> markerX;    // pixels from the bar's left end, or kNowhere
    std::array<Crossing<float>, 8> controllerValue; // 0 to 127
    Crossing<float> pattern = 0.0f;
    Crossing<float> lockedPattern = 0.0f;
    Crossing<float> lockState = 0.0f;
    Crossing<float> waitingPattern = -1.0f;
    Crossing<float> beatHalf = 0.0f;
    Crossing<float> keyboardBase = 24.0f;
};

} // namespace ormund
