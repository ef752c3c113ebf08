// Combines the tracks at the lanes' positions into up to four notes and decides whether the step
// starts them. All of it is computed on every tick; only the trigger starts notes.
#pragma once

#include "base/Crossing.h"
#include "base/LastSeen.h"
#include "data/music/ChordTable.h"
#include "engine/IdleTicks.h"
#include "engine/KWClock.h"
#include "engine/KWKeys.h"
#include "engine/KWLanes.h"
#include "engine/KWPerformance.h"

#include <array>

namespace ormund {

class Tracks;

class KWNotes : public MovesByInputsOnly {
public:
    struct Settings {                       // written by setParameter, on any thread
        Crossing<int32_t> rootKey = 60;     // MIDI note
        Crossing<int32_t> scale = 0;        // 0 to 33
        Crossing<int32_t> outOctave = -12;  // semitones
        Crossing<int32_t> outTranspose = 0; // semitones
        Crossing<int32_t> masterGateOn = 0;
        Crossing<float> masterGate = 0.0f; // 0 to 1
        Crossing<float> gateMultiply = 1.0f;
        Crossing<int32_t> velocityGateOn = 0;
        Crossing<float> velocityThreshold = 0.0f; // 0.1 to 0.9
        Crossing<int32_t> mute = 0;
        Crossing<int32_t> channel = 1; // 1 to 16
    };
    struct Out {            // written by tick(), read by later stages
        float gate = 0;     // of the step, as a part of it
        float duration = 0; // samples
        float unmuted = 1;  // 0 while muted, latched at the performance lane's steps
        int channel = 0;    // 0 to 15
        std::array<int, kChordNotes> note{};     // 0 to 127
        std::array<int, kChordNotes> velocity{}; // 0 to 127, 0 starts nothing
    };
    Settings settings;

    explicit KWNotes(const Tracks& tracks);

    // `plays` is whether the step of the performance lane does.
    void tick(int pattern, const KWClock::Out&, const KWKeys::Out&, const KWLanes::Out&,
        const KWPerformance::Out&, bool plays);
    // engine/IdleTicks.h
    int idleTicks(int most) const { return arpeggioRuns ? 0 : most; }
    void skipTicks(int ticks, double /*position*/)
    {
        for (int i = 0; i < ticks; ++i)
            advanceSubStep(arpeggioLane.value());
    }
    // Whether the notes start in this tick: the trigger value has moved.
    bool triggers() { return triggered.changed(triggerValue); }
    const Out& out() const { return values; }

private:
    // What the arpeggio makes of one step.
    struct Arpeggio {
        bool runs = false;
        float note = 0;    // semitones above the root
        float subGate = 0; // 0 to 1
    };

    void advanceSubStep(int lane)
    {
        subStep = static_cast<float>(subStep + stepsPerTick * subStepPace);
        // Asked in every tick: the last sub-step often ends in the very tick that begins the next
        // step.
        const bool stepped = arpeggioLane.changed(lane);
        if (stepped || subStep >= 4.0f)
            subStep = 0;
    }
    void copyVelocityRow(int pattern, const KWClock::Out&);
    Arpeggio arpeggio(int degree, int scale, float base, const KWClock::Out&, const KWLanes::Out&,
        const KWPerformance::Out&);

    const Tracks& tracks;
    Out values;

    std::array<float, 32> workingVelocity{};
    LastSeen<int> rowPattern{-1};
    LastSeen<float> rowPlay;
    LastSeen<float> rowReload;
    LastSeen<uint32_t> rowGeneration;

    LastSeen<int> arpeggioLane;
    float subStep = 0; // 0 to 4
    double stepsPerTick = 0;
    double subStepPace = 4.0;
    bool arpeggioRuns = false;
    LastSeen<int> muteLane{-1};
    LastSeen<float> playLatchSum;
    float playLatch = 0;
    float triggerValue = 0;
    LastSeen<float> triggered;
};

} // namespace ormund
