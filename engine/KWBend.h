// The pitch bend track: a shape a step, sent as pitch bend and bending the synth.
#pragma once

#include "base/LastSeen.h"
#include "engine/IdleTicks.h"
#include "engine/KWClock.h"
#include "engine/KWLanes.h"
#include "engine/KWNotes.h"
#include "engine/KWPerformance.h"

namespace ormund {

class OutgoingList;
class Tracks;

class KWBend : public MovesByInputsOnly {
public:
    explicit KWBend(const Tracks& allTracks) : tracks(allTracks) { }
    void tick(const KWClock::Out&, const KWLanes::Out&, const KWPerformance::Out&,
        const KWNotes::Out&, OutgoingList& outgoing);
    float semitones() const { return latchedSemitones; } // for the synth

    // engine/IdleTicks.h
    int idleTicks(int most) const
    {
        const bool isStraight = !(sweep > 0) && event == finishedEvent && latchedSemitones == 0
            && latchedMidi == kCentre && sentMidi == kCentre && !unsent;
        return isStraight ? most : 0;
    }
    void skipTicks(int ticks, double /*position*/)
    {
        for (int i = 0; i < ticks; ++i)
            advanceEighths();
        eighth.set(static_cast<int>(eighthCounter));
    }

private:
    static constexpr float kCentre = 64.0f; // of what MIDI calls the bend
    static constexpr float kEighths = 8.0f; // the bend moves so many times a beat

    void advanceEighths()
    {
        eighthCounter += eighthsPerTick;
        if (eighthCounter >= kEighths)
            eighthCounter = 0;
    }

    const Tracks& tracks;
    LastSeen<float> trigger;
    float event = 0; // 1 and 0.5 by turns
    LastSeen<float> eventSeen;
    float finishedEvent = 0;
    float eighthsPerTick = 0;
    float eighthCounter = 0; // eighths of a quarter note
    LastSeen<int> eighth;
    float sweepRate = 0; // points a tick
    float sweep = 0;     // 0 to 32, 0 while nothing bends
    int shape = 0;
    float latchedMidi = kCentre;
    float latchedSemitones = 0;
    float sentMidi = kCentre;
    int channel = 0;     // to which that was sent
    bool unsent = false; // the list was full for the end of a bend on another channel
};

} // namespace ormund
