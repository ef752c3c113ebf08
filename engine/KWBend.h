// The pitch bend track: a shape a step, sent as pitch bend and bending the synth.
#pragma once

#include "base/LastSeen.h"
#include "engine/KWClock.h"
#include "engine/KWLanes.h"
#include "engine/KWNotes.h"
#include "engine/KWPerformance.h"

class OutgoingList;
class Tracks;

class KWBend {
public:
    explicit KWBend(const Tracks& allTracks) : tracks(allTracks) { }
    void tick(const KWClock::Out&, const KWLanes::Out&, const KWPerformance::Out&,
        const KWNotes::Out&, OutgoingList& outgoing);
    float semitones() const { return latchedSemitones; } // for the synth

private:
    const Tracks& tracks;
    LastSeen<float> trigger;
    float event = 0; // 1 and 0.5 by turns
    LastSeen<float> eventSeen;
    float finishedEvent = 0;
    float eighthCounter = 0; // eighths of a quarter note
    LastSeen<int> eighth;
    double sweepRate = 0; // points a tick
    double sweep = 0;     // 0 to 32, 0 at rest
    int shape = 0;
    float latchedMidi = 64;
    float latchedSemitones = 0;
    float sentMidi = 64;
};
