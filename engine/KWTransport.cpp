#include "engine/KWTransport.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {
constexpr double kJump = 0.5; // quarter notes off the host's position that count as a locate
// A host may still report a place just beyond the loop's end after its return.
constexpr double kCycleTolerance = 0.15;

double usableTempo(const BlockTransport& block, double stored)
{
    if (!block.tempoValid || !(block.tempo < kMaxTempo))
        return stored;
    return std::max(block.tempo, kMinTempo);
}
} // namespace

bool KWTransport::setRunning(bool running)
{
    const float wanted = running ? 1.0f : 0.0f;
    if (info.hostRunning == wanted)
        return false;
    info.hostRunning = wanted;
    return true;
}

bool KWTransport::evaluate(const BlockTransport* block, int frames)
{
    tempo = info.tempo;
    positionIncrement = 0;
    wrapArmed = false;
    if (!block)
        return false;
    tempo = usableTempo(*block, tempo);

    const double position = block->position;
    if (!block->playing || !(position >= 0 && position < HUGE_VAL)) {
        moveTo(0);
        return setRunning(false);
    }

    const double cycleEnd = block->loopEnd;
    const bool cycleOn =
        block->loopOn && std::isfinite(cycleEnd) && std::isfinite(block->loopStart);
    const bool justPastCycleEnd =
        cycleOn && position > cycleEnd && position - cycleEnd < kCycleTolerance;
    if (std::abs(info.songPositionPrecise - position) > kJump && !justPastCycleEnd)
        moveTo(position);

    if (frames > 0) {
        // A tempo that is new with this block is stored at its first tick, but the position must
        // move with it from the first sample, or the block's size would decide where the steps
        // fall.
        const bool isStored = tempo == info.tempo;
        const float perBeat = isStored ? info.samplesPerBeat.load() : info.samplesPerBeatAt(tempo);
        if (nominalOf.changed({frames, perBeat}))
            nominal = (frames / static_cast<double>(perBeat)) / frames;
        const double projected = frames * nominal + position;
        positionIncrement =
            justPastCycleEnd ? nominal : (projected - info.songPositionPrecise) / frames;
        if (cycleOn && cycleEnd <= projected && position < cycleEnd) {
            wrapArmed = true;
            wrapPosition = static_cast<float>(cycleEnd);
            wrapTarget = block->loopStart;
        }
    }
    return setRunning(true);
}

void KWTransport::advance(int samples)
{
    double position = info.songPositionPrecise;
    if (wrapArmed && static_cast<float>(position + samples * positionIncrement) >= wrapPosition) {
        for (int i = 0; i < samples; ++i) {
            position += positionIncrement;
            if (static_cast<float>(position) >= wrapPosition)
                position = wrapTarget;
        }
    } else {
        position += samples * positionIncrement;
    }
    moveTo(position);
}

} // namespace ormund
