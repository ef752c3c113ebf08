// Turns the song position into one number, the master step: play state, step count and the chain of
// performance effects on time.
#pragma once

#include "base/Crossing.h"
#include "base/LastSeen.h"
#include "data/music/KWSystemInfo.h"
#include "engine/KWKeys.h"
#include "engine/StepChain.h"

#include <algorithm>

namespace ormund {

class ParameterSink;

class KWClock {
public:
    struct Settings { // written by setParameter, on any thread
        Crossing<int32_t> play = 0;
        Crossing<int32_t> triggerMode = 0; // 0 key held, 1 key toggles, 2 the host's transport
        Crossing<int32_t> halfSpeed = 0;
        Crossing<int32_t> retrigger = 0;
        Crossing<int32_t> slowdown = 0;
        Crossing<float> slowdownCurve = 0.0f;
        Crossing<int32_t> manualStep = 0;
        Crossing<int32_t> padsOnStep = 0; // half speed and manual step wait for a step
        Crossing<int32_t> looper = 0;
        Crossing<int32_t> looperSteps = 2;
        Crossing<float> stepsPerBeat = 4.0f;
        Crossing<float> swingAmount = 0.0f; // 0 to 1
        Crossing<float> swingShape = 0.0f;  // the amount, bent
    };
    struct Out { // written by tick(), read by later stages
        float masterStep = 0;
        float stepChange = 0; // moves at each step and at each new key
        float stepParity = 0; // 0 or 1
        float play = 0;       // 0 or 1
        float retrigger = 0;  // the button, 0 or 1
        float reload = 0;     // the count of loads
        bool manualStep = false;
        double stepsPerTick = 0;
        float msPerStep = 0;
        float samplesPerMs = 0;
        float ticksPerBeat = 0;
        friend bool operator==(const Out&, const Out&) = default;
    };
    // What moves in every tick; lanes with a speed of their own need it.
    struct Phase {
        double stepPart = 0; // of the master step, 0 to below 1
        double songStep = 0; // the place of the song, read ahead, in steps
        double stepsPerBeat = 0;
        double beats = 0;         // quarter notes since the start of the song, or of the own clock
        bool followsSong = false; // the part is the song's: no effect on time is on
    };
    Settings settings;

    KWClock(KWSystemInfo& timeBase, ParameterSink& sink, const Crossing<float>& reloadCounter);

    // What follows from speed, swing, tempo and sample rate. Any thread; cheap.
    void deriveSpeed();
    // Lengths of the swing lines. While no block runs, or inside a tick.
    void sampleRateChanged();

    void tick(const KWSystemInfo&, const KWKeys::Out&);
    // Again behind the patterns: one that was chosen in this tick has brought its own speed, and
    // its first step lasts as long as the others.
    void readSpeed();
    const Out& out() const { return values; }
    const Phase& phase() const { return place; }

    // engine/IdleTicks.h
    int idleTicks(int most) const;
    // In the step that the last tick found, but for places so close to its ends that rounding might
    // decide. The own clock does not follow the position.
    bool isIdleAt(double at) const
    {
        constexpr double kRoundingMargin = 1e-6; // steps
        const double steps = static_cast<double>(settings.stepsPerBeat) * at;
        const double step = static_cast<double>(raw);
        // The position of a stopped host stays 0.
        return ownClockRuns
            || (steps >= (raw > 0 ? step + kRoundingMargin : 0)
                && steps < step + 1 - kRoundingMargin);
    }
    void skipTicks(int ticks, double at);

private:
    static constexpr double kMostSteps = 2e9;
    static constexpr double kOwnClockWrap = 32000.0;

    float playWanted(float gate);
    void followPart(float count);
    static float stepOf(double steps) { return wholePart(std::min(steps, kMostSteps)); }
    float hostStep() const
    {
        return stepOf(static_cast<double>(settings.stepsPerBeat) * info.placeRead());
    }
    double nextOwnClock() const
    {
        const double next = values.play > 0 ? ownClock + values.stepsPerTick : ownClock;
        return next > kOwnClockWrap ? next - kOwnClockWrap : next;
    }

    KWSystemInfo& info;
    ParameterSink& sink;
    const Crossing<float>& reloadCounter;

    Crossing<double> stepsPerTick = 0.0;
    Crossing<float> msPerStep = 0.0f;
    Crossing<float> swingDelayTicks = 0.0f;

    Out values;
    Phase place;
    LastSeen<float> partCount;
    LastSeen<float> padStep;
    bool halfOn = false;
    bool manualOn = false;
    LastSeen<float> gateEdge;
    LastSeen<float> playSent;
    LastSeen<float> startSeen;
    int toggleState = 0;
    double ownClock = 0; // steps, for the keyboard's toggle

    // What the last tick found.
    bool ownClockRuns = false;
    float raw = 0;         // the song position in whole steps
    bool isSteady = false; // no link plays a count of its own

    SwingRing ring;
    SwingLine mainSwing{ring, SwingRing::Main};
    HalfSpeedLink half;
    RetriggerLink retriggerLink{ring};
    SlowdownLink slowdownLink{ring};
    ManualLink manual;
    LooperLink looperLink{ring};
};

} // namespace ormund
