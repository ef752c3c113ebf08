// The performance track: commands that replace one value of the step by a random one.
#pragma once

#include "base/LastSeen.h"
#include "base/ParkMiller.h"
#include "engine/IdleTicks.h"
#include "engine/KWLanes.h"

#include <array>

namespace ormund {

class Tracks;

// Its values. Those from 10 on stand for the modulation tracks.
enum class StepCommand : int {
    None = 0,
    Pitch = 1,
    Velocity = 2,
    VelocityOn = 3,
    Gate = 4,
    Octave = 5,
    PitchBend = 6,
    MajorChord = 7,
    MinorChord = 8,
    Arpeggio = 9,
    FirstMod = 10,
    LastMod = 17,
};

class KWPerformance : public MovesByInputsOnly {
public:
    struct Out {                                 // written by tick(), read by later stages
        StepCommand command = StepCommand::None; // of this step
        std::array<float, 18> slots{};           // the last random value of each command
        float slot(StepCommand wanted) const { return slots[static_cast<size_t>(wanted)]; }
        float mod(int track) const { return slots[10 + static_cast<size_t>(track)]; }
    };

    explicit KWPerformance(const Tracks& allTracks) : tracks(allTracks) { }
    void tick(const KWLanes::Out&);
    const Out& out() const { return values; }

private:
    const Tracks& tracks;
    ParkMiller random{88172645};
    LastSeen<int> key{-1};
    Out values;
};

} // namespace ormund
