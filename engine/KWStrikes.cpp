#include "engine/KWStrikes.h"

#include "data/tracks/StepRules.h"
#include "data/tracks/Tracks.h"
#include "engine/KWNoteSchedule.h"

#include <cmath>

namespace ormund {

namespace {
constexpr float kFaintest = 0.4f; // of a ramp's velocities

constexpr size_t at(int index) { return static_cast<size_t>(index); }

float rampedVelocity(RatchetRamp ramp, int strike, int strikes)
{
    if (ramp == RatchetRamp::Flat || strikes < 2)
        return 1.0f;
    const float way = static_cast<float>(strike) / static_cast<float>(strikes - 1);
    return kFaintest + (1.0f - kFaintest) * (ramp == RatchetRamp::Up ? way : 1.0f - way);
}
} // namespace

void KWStrikes::tick(const KWClock::Out& clock, KWNoteSchedule& schedule)
{
    if (clock.play == 0 && !clock.manualStep) {
        waiting = 0;
        downNext = false;
    }
    int kept = 0;
    for (int i = 0; i < waiting; ++i) {
        Strike strike = strikes[at(i)];
        if (--strike.in > 0)
            strikes[at(kept++)] = strike;
        else
            schedule.addNote(0, strike.note, strike.velocity, strike.length, strike.channel);
    }
    waiting = kept;
}

int KWStrikes::nextIn() const
{
    int32_t next = INT32_MAX;
    for (int i = 0; i < waiting; ++i)
        next = std::min(next, strikes[at(i)].in);
    return next;
}

void KWStrikes::skipTicks(int ticks, double /*position*/)
{
    for (int i = 0; i < waiting; ++i)
        strikes[at(i)].in -= ticks;
}

void KWStrikes::add(const Strike& strike)
{
    if (waiting < kMost)
        strikes[at(waiting++)] = strike;
}

// From the lowest note up, each pitch once.
KWStrikes::Chord KWStrikes::sortedChord(const KWNotes::Out& notes)
{
    Chord chord;
    for (int i = 0; i < kChordNotes; ++i) {
        if (notes.velocity[at(i)] == 0)
            continue;
        const auto note = static_cast<uint8_t>(notes.note[at(i)]);
        int place = 0;
        while (place < chord.size && chord.note[at(place)] < note)
            ++place;
        if (place < chord.size && chord.note[at(place)] == note)
            continue;
        for (int k = chord.size++; k > place; --k) {
            chord.note[at(k)] = chord.note[at(k - 1)];
            chord.velocity[at(k)] = chord.velocity[at(k - 1)];
        }
        chord.note[at(place)] = note;
        chord.velocity[at(place)] = static_cast<uint8_t>(notes.velocity[at(i)]);
    }
    return chord;
}

bool KWStrikes::begin(const KWClock::Out& clock, const KWLanes::Out& lanes,
    const KWNotes::Out& notes, KWNoteSchedule& schedule)
{
    const int step = lanes.performance;
    const StepRatchet ratchet = stepRatchet(static_cast<int>(tracks.ratchet.step(step)));
    const float late = lateOfStep(static_cast<int>(tracks.late.step(step)));
    const StepStrum strum = stepStrum(static_cast<int>(tracks.strum.step(step)));
    const auto length = static_cast<uint32_t>(notes.duration);
    if (ratchet.strikes == 1 && late == 0 && strum.gap == 0) {
        bool any = false;
        for (int i = 0; i < kChordNotes; ++i)
            if (notes.velocity[at(i)] != 0) {
                schedule.addNote(
                    0, notes.note[at(i)], notes.velocity[at(i)], length, notes.channel);
                any = true;
            }
        return any;
    }

    const Chord chord = sortedChord(notes);
    if (chord.size == 0)
        return false;
    const double ticksPerStep = 1.0 / clock.stepsPerTick;
    const double gateTicks = static_cast<double>(notes.duration) / kTickSamples;
    // A strike is a tick long at least, so a short gate has room for fewer.
    const int count = std::clamp(static_cast<int>(gateTicks), 1, ratchet.strikes);
    const auto strikeLength = length / static_cast<uint32_t>(count);
    for (int s = 0; s < count; ++s) {
        const bool down =
            strum.way == StrumWay::Down || (strum.way == StrumWay::Alternating && downNext);
        downNext = strum.way == StrumWay::Alternating && !downNext;
        const double start =
            static_cast<double>(late) * ticksPerStep + gateTicks * s / static_cast<double>(count);
        const float level = rampedVelocity(ratchet.ramp, s, count);
        for (int i = 0; i < chord.size; ++i) {
            const int n = down ? chord.size - 1 - i : i;
            const int velocity =
                static_cast<int>(level * static_cast<float>(chord.velocity[at(n)]) + 0.5f);
            const double wait = start + static_cast<double>(strum.gap) * ticksPerStep * i;
            const Strike strike{static_cast<int32_t>(std::lround(wait)), strikeLength,
                chord.note[at(n)], static_cast<uint8_t>(std::max(velocity, 1)),
                static_cast<uint8_t>(notes.channel)};
            if (strike.in == 0)
                schedule.addNote(0, strike.note, strike.velocity, strike.length, strike.channel);
            else
                add(strike);
        }
    }
    return true;
}

} // namespace ormund
