// The loops that run at sample rate, once for every instruction set. All give the same samples.
#pragma once

#include "synth/KWBlitSawOsc.h"
#include "synth/KWPulseOsc.h"
#include "synth/VoiceFilter.h"

namespace ormund {

constexpr int kMaxRun = 32; // samples, a control block

// All that a run of samples reads and writes of the voices.
struct VoiceBank {
    KWBlitSawOsc saw1, saw2;
    KWPulseOsc pulse1, pulse2;
    VoiceFilter filter;
    Lanes amplitude;
    Lanes amplitudeStep; // a sample
    LaneMask sounding;   // lanes whose oscillators run
    bool anySounding = false;
    // Silent voices whose filters have rung out: another sample would change no bit of them, so
    // what comes out, before the panning, is `restLevel` until a coefficient or the gain moves.
    bool resting = false;
    float restGain = 0;
    float restLevel = 0;
};

struct VoiceMix {
    float pulseWeight = 0;
    float sawWeight = 0;
    float gain = 0; // after the filter
    float leftGain = 0;
    float rightGain = 0;
};

// One channel's delay line while neither its time nor its length moves, and while the run wraps
// neither in reading nor in writing. `read` must not reach what the run writes.
struct DelayRun {
    const float* read = nullptr; // samples + 1 of them
    float* write = nullptr;
    float* signal = nullptr; // in place
    float* lastTap = nullptr;
    const double* wet = nullptr; // a mix for each sample
    double weight = 0;           // of the sample after the one read
    float feedback = 0;
    int samples = 0; // at most kMaxRun
};

struct AudioLoops {
    // Advances every voice by 1 to kMaxRun samples and writes their sum, clipped and panned.
    void (*voices)(VoiceBank&, const VoiceMix&, float* left, float* right, int samples);
    void (*delay)(const DelayRun&);
};

// For every processor this is built for.
extern const AudioLoops kBaselineLoops;
#if defined(ORMUND_AVX2_LOOPS)
extern const AudioLoops kAvx2Loops;
#endif

// What this processor runs fastest.
const AudioLoops& fastestLoops();

} // namespace ormund
