// Whether the step of the performance lane plays at all: its condition first, then its chance.
#pragma once

#include "base/Crossing.h"
#include "base/LastSeen.h"
#include "engine/IdleTicks.h"
#include "engine/KWClock.h"
#include "engine/KWLanes.h"

namespace ormund {

class Tracks;

// A step is decided once, in the tick that begins it. Audio thread.
class KWChance : public MovesByInputsOnly {
public:
    struct Settings { // written by setParameter, on any thread
        Crossing<uint32_t> seed = 0u;
        Crossing<int32_t> fill = 0;
    };
    struct Out {
        bool plays = true; // of this step
    };
    Settings settings;

    explicit KWChance(const Tracks& allTracks) : tracks(allTracks) { }

    // `pattern` is the current row.
    void tick(const KWClock::Out&, const KWLanes::Out&, int pattern);
    // Notes have been started in this tick.
    void noteStarted() { sounded = true; }
    const Out& out() const { return values; }

private:
    bool holdsCondition(int step, int pass) const;
    bool drawPlays(int step) const;

    const Tracks& tracks;
    Out values;
    LastSeen<int32_t> count{-1};
    LastSeen<float> play;
    LastSeen<float> reload;
    LastSeen<int> row{-1};
    // Drawn for every step, whatever it holds, so that an edit moves no other step's draw.
    uint32_t draws = 0;         // since play began
    bool sounded = false;       // this step started a note
    bool soundedBefore = false; // the step before it did
};

} // namespace ormund
