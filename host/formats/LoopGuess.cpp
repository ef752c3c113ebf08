#include "host/formats/LoopGuess.h"

#include <cmath>

namespace ormund {

namespace {
constexpr double kGrid = 0.25; // quarter notes
constexpr double kToleranceFrames = 2;
constexpr double kShortestBack = 0.2; // quarter notes
} // namespace

SongPlace LoopGuess::follow(SongPlace place, int frames)
{
    if (!place.playing || !place.valid || !last.playing) {
        loopEnd = loopStart;
    } else if (place.quarters < lastEnd - kShortestBack) {
        learn(place);
    } else if (turned) {
        loopEnd = loopStart; // it went straight on
    }
    last = place;
    place.loopOn = loopEnd > loopStart && place.quarters < loopEnd;
    place.loopStart = loopStart;
    place.loopEnd = loopEnd;
    lastEnd = last.after(frames, rate).quarters;
    turned = place.loopOn && lastEnd >= loopEnd;
    return place;
}

void LoopGuess::learn(const SongPlace& place)
{
    const double tolerance = kToleranceFrames / rate * place.tempo / 60.0;
    const double length = lastEnd - place.quarters;
    const double end = std::floor((lastEnd + tolerance) / kGrid) * kGrid;
    const double steps = std::round(length / kGrid) * kGrid;
    const bool isLoop = std::abs(length - steps) <= tolerance && end > last.quarters - tolerance
        && end - steps >= -tolerance;
    loopEnd = isLoop ? end : 0;
    loopStart = isLoop ? end - steps : 0;
}

} // namespace ormund
