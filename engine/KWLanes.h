// The step positions of the lanes: groups of tracks that share a loop and a playback mode.
#pragma once

#include "base/Crossing.h"
#include "base/LastSeen.h"
#include "base/ParkMiller.h"
#include "engine/IdleTicks.h"
#include "engine/KWClock.h"

#include <array>

namespace ormund {

class KWZoneHandlerContainer;
class Tracks;

enum class PlaybackMode : int32_t { Forward, Backward, Random, EachSecond, EachThird, EachFourth };

// One lane: a loop over the steps of a row, walked in one of six ways.
class Lane {
public:
    Lane(const KWZoneHandlerContainer& zone, int seed);

    void readLoop(int row); // at a step's boundary, so that a loop never changes within one
    int position(float masterStep, PlaybackMode mode);
    // The passes begin again: the next position is in the first.
    void restart() { restarts = true; }
    int pass() const { return passes; }     // through the loop, since the restart
    int32_t count() const { return steps; } // of the last position

private:
    const KWZoneHandlerContainer& loop;
    ParkMiller random;
    LastSeen<unsigned> step{~0u};
    // The place is kept until the count, the mode or the loop moves: twelve lanes, two divisions
    // each.
    LastSeen<unsigned> countSeen{~0u};
    LastSeen<PlaybackMode> modeSeen;
    bool loopRead = false;
    void countPass(int32_t next);

    bool restarts = true;
    int passes = 0;
    int32_t steps = 0;
    int place = 0;
    float drawn = 0; // 0 to 1
    unsigned start = 0;
    unsigned length = 32;
};

class KWLanes : public MovesByInputsOnly {
public:
    static constexpr int kModLanes = 8;
    static constexpr int kLanes = 4 + kModLanes;
    enum Index { Main, Performance, Velocity, Gate, FirstMod };

    struct Settings {                                 // written by setParameter, on any thread
        std::array<Crossing<int32_t>, kLanes> mode{}; // PlaybackMode
        Crossing<int32_t> separateLoops = 1;          // 0: all follow the main lane
    };
    struct Out { // written by tick(), read by later stages: steps, 0 to 31
        int main = 0;
        int performance = 0;
        int velocity = 0;
        int gate = 0;
        std::array<int, kModLanes> mods{};
        int32_t performanceCount = 0; // steps, as the lane counts them
        int performancePass = 0;      // through its loop, since play or the pattern began
    };
    Settings settings;

    explicit KWLanes(const Tracks& tracks);

    // `pattern` is the current row.
    void tick(const KWClock::Out&, int pattern);
    const Out& out() const { return values; }

private:
    std::array<Lane, kLanes> lanes;
    LastSeen<float> stepChange;
    LastSeen<float> reload;
    LastSeen<float> play;
    LastSeen<int> row{-1};
    Out values;
};

} // namespace ormund
