// The step positions of the lanes: groups of tracks that share a loop and a playback mode.
#pragma once

#include "base/Crossing.h"
#include "base/LastSeen.h"
#include "base/ParkMiller.h"
#include "data/parameters/ChoiceLists.h"
#include "data/parameters/Tags.h"
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
    // `count` of the lane's own steps.
    int position(int64_t count, PlaybackMode mode);
    // The passes begin again: the next position is in the first.
    void restart() { restarts = true; }
    int pass() const { return passes; }     // through the loop, since the restart
    int32_t count() const { return steps; } // of the last position
    unsigned loopLength() const { return length; }

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

class KWLanes {
public:
    static constexpr int kModLanes = 8;
    static constexpr int kLanes = kStepLanes;
    enum Index { Main, Performance, Velocity, Gate, FirstMod };

    struct Settings {                                  // written by setParameter, on any thread
        std::array<Crossing<int32_t>, kLanes> mode{};  // PlaybackMode
        std::array<Crossing<int32_t>, kLanes> speed{}; // places from the plain one, kLaneSpeedTable
        Crossing<int32_t> separateLoops = 1;           // 0: all follow the main lane
    };
    struct Out { // written by tick(), read by later stages: steps, 0 to 31
        int main = 0;
        int performance = 0;
        int velocity = 0;
        int gate = 0;
        std::array<int, kModLanes> mods{};
        std::array<int32_t, kModLanes> modCount{}; // steps, as the lane counts them
        int32_t performanceCount = 0;
        int performancePass = 0; // through its loop, since play or the pattern began
        // How long a step of the lane is, in steps of the clock.
        float gateStepLength = 1;
        std::array<float, kModLanes> modStepLength{};
        friend bool operator==(const Out&, const Out&) = default;
    };
    Settings settings;

    explicit KWLanes(const Tracks& tracks);

    // `pattern` is the current row.
    void tick(const KWClock::Out&, const KWClock::Phase&, int pattern);
    const Out& out() const { return values; }
    // How often the main lane's loop has been walked at this place of the clock.
    int64_t mainRound(const KWClock::Out&, const KWClock::Phase&) const;

    // engine/IdleTicks.h. A lane with a speed of its own moves between two steps.
    int idleTicks(int most) const { return idleFrom < idleUntil ? most : 0; }
    bool isIdleAt(double position) const
    {
        if (!ownSpeeds)
            return true;
        constexpr double kRoundingMargin = 1e-6; // steps
        const double steps = stepsPerBeat * position;
        return steps > idleFrom && steps < idleUntil - kRoundingMargin;
    }
    void skipTicks(int /*ticks*/, double /*position*/) { }

private:
    int64_t countOf(int speed, const KWClock::Out&, const KWClock::Phase&);

    std::array<Lane, kLanes> lanes;
    LastSeen<float> stepChange;
    LastSeen<float> reload;
    LastSeen<float> play;
    LastSeen<int> row{-1};
    Out values;
    bool ownSpeeds = false;
    double stepsPerBeat = 0;
    // No lane moves between these, in steps of the song; equal while that is not known.
    double idleFrom = 0;
    double idleUntil = 1;
};

} // namespace ormund
