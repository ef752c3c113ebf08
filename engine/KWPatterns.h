// Chooses the current pattern: from the song row, a locked number or the keyboard. A change takes
// effect in the tick that detects it or waits for its launch, and replays the pattern's stored
// parameters.
#pragma once

#include "base/Crossing.h"
#include "base/LastSeen.h"
#include "data/tracks/Tracks.h"
#include "engine/KWClock.h"
#include "engine/KWKeys.h"

namespace ormund {

class ParameterSink;
class PatternStore;

class KWPatterns {
public:
    struct Settings { // written by setParameter, on any thread
        Crossing<int32_t> songOn = 0;
        Crossing<float> stepsPerUnit = 1.0f;
        Crossing<int32_t> lockedPattern = 0; // 0 to 15
        Crossing<float> lockButton = 0.0f;   // 1 while the mouse is down on the lock area
        Crossing<int32_t> launch = 0;        // enum Launch
    };
    struct Out {           // written by tick(), read by later stages
        int pattern = 0;   // 0 to 15
        int songIndex = 0; // position in the song row
        bool locked = false;
        int waiting = -1; // the pattern that waits for its launch
        friend bool operator==(const Out&, const Out&) = default;
    };
    Settings settings;

    KWPatterns(Tracks& tracks, PatternStore& store, ParameterSink& sink);

    // `mainRound`: how often the main lane's loop has been walked.
    void tick(const KWClock::Out&, const KWClock::Phase&, const KWKeys::Out&, int64_t mainRound);
    const Out& out() const { return values; }
    // engine/IdleTicks.h; a loop can be drawn without a counted change.
    int idleTicks(int most) const { return isSettled ? most : 0; }
    bool isIdleAt(double /*position*/) const
    {
        return tracks.sequenceLoop.generation() == loopSeen;
    }
    void skipTicks(int /*ticks*/, double /*position*/) { }

private:
    void select(int pattern);
    bool isLaunchPlace(const KWClock::Out&, const KWClock::Phase&, int64_t mainRound);

    Tracks& tracks;
    PatternStore& store;
    ParameterSink& sink;

    struct Cells {
        LastSeen<float> parity;
        LastSeen<float> lockEdge;
        int lockState = 0;
        LastSeen<float> playSeen;
        LastSeen<float> reloadSeen;
        float playFlag = 0;
        LastSeen<float> counterRestart;
        LastSeen<float> positionRestart;
        float stepCounter = 0;
        float advance = 0;
        int positionRun = 0;
        LastSeen<int> wantedSeen;
        bool wantedForgotten = false;
        bool waits = false;
        LastSeen<float> launchStep;
        LastSeen<int64_t> launchRound;
        LastSeen<float> pulseReload;
        LastSeen<float> pulse;
        float patternCell = 0;
        LastSeen<int> patternSeen;
        friend bool operator==(const Cells&, const Cells&) = default;
    };
    Out values;
    Cells cells;
    uint32_t loopSeen = 0;
    bool isSettled = false; // the last tick left all cells as they were
};

} // namespace ormund
