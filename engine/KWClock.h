// Turns the song position into one number, the master step: play state, step count and the chain of
// performance effects on time.
#pragma once

#include "base/Crossing.h"
#include "base/LastSeen.h"
#include "data/KWSystemInfo.h"
#include "engine/KWKeys.h"
#include "engine/StepChain.h"

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
    Settings settings;

    KWClock(KWSystemInfo& timeBase, ParameterSink& sink, const Crossing<float>& reloadCounter);

    // What follows from speed, swing, tempo and sample rate. Any thread; cheap.
    void deriveSpeed();
    // Lengths of the swing lines. While no block runs, or inside a tick.
    void sampleRateChanged();

    void tick(const KWSystemInfo&, const KWKeys::Out&);
    const Out& out() const { return values; }

private:
    float playWanted(float gate);
    float rawStep() const;

    KWSystemInfo& info;
    ParameterSink& sink;
    const Crossing<float>& reloadCounter;

    Crossing<double> stepsPerTick = 0.0;
    Crossing<float> msPerStep = 0.0f;
    Crossing<float> swingDelayTicks = 0.0f;

    Out values;
    LastSeen<float> gateEdge;
    LastSeen<float> playSent;
    LastSeen<float> startSeen;
    LastSeen<float> stepChangeSeen;
    int toggleState = 0;
    double ownClock = 0; // steps, for the keyboard's toggle

    SwingLine mainSwing;
    SwingLine retriggerSwing;
    SwingLine slowdownSwing;
    SwingLine looperSwing;
    HalfSpeedLink half;
    RetriggerLink retriggerLink{retriggerSwing};
    SlowdownLink slowdownLink{slowdownSwing};
    ManualLink manual;
    LooperLink looperLink{looperSwing};
};
