#include "engine/KWBend.h"

#include "data/music/BendShapes.h"
#include "data/tracks/Tracks.h"
#include "engine/EventQueues.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr float kPoints = 32.0f;
constexpr float kSemitones = 2.0f;  // range of the synth's bend
constexpr float kLeastGate = 1e-6f; // a random gate may be 0
constexpr int kPitchBendStatus = 0xE0;
} // namespace

void KWBend::tick(const KWClock::Out& clock, const KWLanes::Out& lanes,
    const KWPerformance::Out& performance, const KWNotes::Out& notes, OutgoingList& outgoing)
{
    const float value = tracks.pitchBend.step(lanes.performance);
    const bool isRandom = performance.command == StepCommand::PitchBend;
    const float position = value > 0 || isRandom ? static_cast<float>(lanes.performance + 1) : 0.0f;
    if (trigger.changed(position) && position > 0)
        event = event == 1.0f ? 0.5f : 1.0f;

    eighthsPerTick = kEighths / clock.ticksPerBeat;
    advanceEighths();
    if (eventSeen.changed(event)) {
        eighthCounter = 0;
        // The shape lasts as long as the note, in the default multiple.
        const float steps = 4.0f * std::max(notes.gate, kLeastGate);
        sweepRate = static_cast<float>(static_cast<double>(kPoints / steps) * clock.stepsPerTick);
        const float row =
            isRandom ? performance.slot(StepCommand::PitchBend) : std::max(value - 1.0f, 0.0f);
        shape = static_cast<int>(row);
    }
    if (sweep > 0) {
        sweep += sweepRate;
        if (sweep >= kPoints) {
            sweep = 0;
            finishedEvent = event;
        }
    } else if (event != finishedEvent) {
        sweep = std::min(sweepRate, kPoints - 1.0f);
    }

    if (eighth.changed(static_cast<int>(eighthCounter))) {
        const float bend = sweep > 0 ? bendShapePoint(shape, static_cast<int>(sweep)) : 0.0f;
        latchedMidi = std::min(bend * kCentre + kCentre, 127.0f);
        latchedSemitones = bend * kSemitones;
    }
    // A channel that is left behind is left straight.
    unsent = channel != notes.channel && sentMidi != kCentre
        && !outgoing.append(kPitchBendStatus | channel, 0, static_cast<int>(kCentre));
    if (unsent)
        return;
    if (channel != notes.channel)
        sentMidi = kCentre;
    channel = notes.channel;
    if (latchedMidi != sentMidi
        && outgoing.append(kPitchBendStatus | channel, 0, static_cast<int>(latchedMidi)))
        sentMidi = latchedMidi;
}

} // namespace ormund
