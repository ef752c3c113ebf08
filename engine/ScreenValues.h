// All that the screen may read of a running engine, and the requests that the engine leaves for it.
#pragma once

#include "base/Crossing.h"

#include <array>

namespace ormund {

// Written by the audio thread at the end of each tick, polled by the screen.
struct ScreenValues {
    static constexpr int kModTracks = 8;

    // Steps, 0 to 31.
    Crossing<float> mainStep = 0.0f;
    Crossing<float> performanceStep = 0.0f;
    Crossing<float> velocityStep = 0.0f;
    Crossing<float> gateStep = 0.0f;
    std::array<Crossing<float>, kModTracks> modStep{};
    Crossing<float> songStep = 0.0f;        // 0 to 7
    Crossing<float> pattern = 0.0f;         // 0 to 15
    Crossing<float> waitingPattern = -1.0f; // that waits for its launch, -1 none
    Crossing<float> beatHalf = 0.0f;        // 1 in the first half of a beat
    Crossing<float> patternLocked = 0.0f;   // 0 or 1
    Crossing<float> masterStep = 0.0f;
    Crossing<float> playing = 0.0f;                     // 0 or 1
    std::array<Crossing<float>, kModTracks> modValue{}; // 0 to 1
    Crossing<float> bendSemitones = 0.0f;

    // Raised by the code that changes what is shown; the screen lowers them at idle.
    OneWayFlag redraw; // everything may have changed
    OneWayFlag presetNamesChanged;
    OneWayFlag presetListRebuild;
    OneWayFlag pagesChanged; // page or track selection
};

} // namespace ormund
