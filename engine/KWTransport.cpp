#include "engine/KWTransport.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {
// Samples. Not half of one: a line between two samples, at which no host can be, would be a tie.
constexpr double kReadAhead = 0.499996;
// Quarter notes off the host's place that are steered away in the longest and in the shortest
// block, and the part of a block in those between.
constexpr double kMostSteered = 0.5;
constexpr double kLeastSteered = 1.0 / 32;
constexpr double kSteeredPart = 0.25;
// Samples. What rounding makes of one place, and what a host makes of it that rounds.
constexpr double kSamePlace = 1e-3;
constexpr double kRoundedPlace = 1.0;
// A host may still report a place just beyond the loop's end after its return.
constexpr double kLateReturn = 0.15; // quarter notes
constexpr double kShortestLoop = 1e-6;
constexpr double kLongestLoop = 1e9;
// Beats a minute that a song may really have.
constexpr double kSlowestHost = 1.0;
constexpr double kFastestHost = 10000.0;

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

KWTransport::Loop KWTransport::usableLoop(const BlockTransport& block)
{
    const Loop given{block.loopStart, block.loopEnd};
    const bool isUsable = given.length() >= kShortestLoop && given.length() <= kLongestLoop;
    return block.loopOn && isUsable ? given : Loop();
}

// The host's own tempo also where the stored one is kept in bounds: the place moves with the host.
double KWTransport::paceOf(const BlockTransport& block) const
{
    const double rate = static_cast<double>(info.sampleRate);
    if (block.tempoValid && block.tempo >= kSlowestHost && block.tempo <= kFastestHost)
        return block.tempo / 60.0 / rate;
    return estimatedPace > 0 ? estimatedPace : tempo / 60.0 / rate;
}

void KWTransport::rememberPlace(const BlockTransport& block, int frames)
{
    const double rate = static_cast<double>(info.sampleRate);
    if (block.tempoValid) {
        estimatedPace = 0;
    } else if (lastPlace.valid) {
        const double moved = (block.position - lastPlace.place) / lastPlace.frames;
        const double beatsPerMinute = moved * 60.0 * rate;
        if (beatsPerMinute >= kSlowestHost && beatsPerMinute <= kFastestHost)
            estimatedPace = moved;
    }
    lastPlace = {frames > 0, block.position, frames};
}

bool KWTransport::evaluate(const BlockTransport* block, int frames)
{
    tempo = info.tempo;
    positionIncrement = 0;
    wrapArmed = false;
    countsIn = false;
    if (!block)
        return false;
    tempo = usableTempo(*block, tempo);

    if (!block->playing || !std::isfinite(block->position)) {
        lastPlace.valid = false;
        moveTo(0);
        return setRunning(false);
    }
    rememberPlace(*block, frames);
    pace = paceOf(*block);
    info.readAhead = kReadAhead * pace;
    if (block->position + info.readAhead < 0) {
        countsIn = true;
        countInPlace = block->position;
        moveTo(0);
        return setRunning(false);
    }
    loop = usableLoop(*block);
    const bool starts = setRunning(true);
    follow(block->position, frames, starts);
    return starts;
}

// How far the host is ahead. Of two that loop, one may have come round before the other.
double KWTransport::differenceFrom(double place) const
{
    const double off = place - info.songPosition;
    const bool hostIsAtEnd =
        place > loop.end - kTickSamples * pace && place < loop.end + kLateReturn;
    if (!loop.isOn() || !hostIsAtEnd || off < loop.length() / 2)
        return off;
    return off - loop.length();
}

void KWTransport::follow(double place, int frames, bool isFirst)
{
    const double length = frames * pace;
    const double off = differenceFrom(place);
    const double far = std::min(std::max(kLeastSteered, length * kSteeredPart), kMostSteered);
    positionIncrement = pace;
    if (isFirst || std::abs(off) > far)
        moveTo(place);
    else if (std::abs(off) <= kSamePlace * pace)
        moveTo(info.songPosition + off);
    else if (std::abs(off) > kRoundedPlace * pace && frames > 0)
        positionIncrement = std::max(pace + off / frames, 0.0);

    const double position = info.songPosition;
    const double reach = position + frames * positionIncrement + kTickSamples * pace;
    wrapArmed = loop.isOn() && position < loop.end && reach >= loop.end;
    advance(0);
}

bool KWTransport::advance(int samples)
{
    if (countsIn) {
        countInPlace += samples * pace;
        if (countInPlace + info.readAhead < 0)
            return false;
        countsIn = false;
        positionIncrement = pace;
        moveTo(countInPlace);
        return setRunning(true);
    }
    double position = info.songPosition + samples * positionIncrement;
    const double read = position + info.readAhead;
    // What lies beyond the end lies as far beyond the start.
    if (wrapArmed && read >= loop.end)
        position -= loop.length() * std::max(std::floor((read - loop.start) / loop.length()), 1.0);
    moveTo(position);
    return false;
}

} // namespace ormund
