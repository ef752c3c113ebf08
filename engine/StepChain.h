// The performance effects on time, links of one chain: half speed, retrigger, slowdown, manual
// step, looper. Each takes the count of the link before it and hands one on. Audio thread.
#pragma once

#include "base/LastSeen.h"
#include "engine/SwingLine.h"

namespace ormund {

// What all links need to know of this tick.
struct StepSpeed {
    double stepsPerTick;
    float swingAmount; // 0 to 1
    int swingDelay;    // ticks
};

inline float wholePart(double count) { return static_cast<float>(static_cast<int>(count)); }

// Half the pace from the count at which it was switched. The count turns fractional here; the links
// behind truncate where they read.
class HalfSpeedLink {
public:
    float tick(float count, bool on);

private:
    LastSeen<bool> switched;
    float base = 0;
};

// Plays on from step 0 for as long as it is held, while the main count runs on below it. The button
// acts from the next step on.
class RetriggerLink {
public:
    explicit RetriggerLink(SwingRing& ring) : swing(ring, SwingRing::Retrigger) { }
    float tick(float count, bool on, const StepSpeed& speed);
    bool isActive() const { return latched; }

private:
    SwingLine swing;
    LastSeen<int> step;
    LastSeen<int> activeEdge;
    bool latched = false;
    double ownCount = 0;
};

// Steps that come ever later: the speed decays hyperbolically and never stops.
class SlowdownLink {
public:
    explicit SlowdownLink(SwingRing& ring) : swing(ring, SwingRing::Slowdown) { }
    // `curve` says how fast the speed decays.
    float tick(float count, bool on, float curve, const StepSpeed& speed);
    bool isActive() const { return active; }

private:
    SwingLine swing;
    LastSeen<int> step;
    LastSeen<int> activeEdge;
    bool active = false;
    float pace = 0; // steps a tick, fixed at the last step
    float decay = 0;
    float time = 0;
    float ownCount = 0;
    float base = 0;
};

// One step a key.
class ManualLink {
public:
    // `keyStep` is 0 with no key, `keyHeld` whether one is down, `restart` the restart value.
    float tick(float count, bool on, float keyStep, bool keyHeld, float restart);
    float manualCount() const { return ownCount; }

private:
    LastSeen<float> keySeen;
    LastSeen<float> restartEdge;
    float ownCount = 0;
};

// Repeats the next `steps` steps.
class LooperLink {
public:
    explicit LooperLink(SwingRing& ring) : swing(ring, SwingRing::Looper) { }
    float tick(float count, bool on, int steps, const StepSpeed& speed);
    bool isActive() const { return active; }
    // Instead of tick() while it is not active and its input is unchanged: only its own count goes
    // on. Gives the count that enters the ring.
    float skipTick(double stepsPerTick)
    {
        advance(stepsPerTick);
        if (ownCount >= length)
            ownCount = 0;
        return wholePart(ownCount);
    }

private:
    void advance(double stepsPerTick) { ownCount = static_cast<float>(ownCount + stepsPerTick); }

    SwingLine swing;
    LastSeen<int> step;
    LastSeen<bool> activeSeen;
    bool active = false;
    float length = 0; // steps
    float ownCount = 0;
    float base = 0;
};

} // namespace ormund
