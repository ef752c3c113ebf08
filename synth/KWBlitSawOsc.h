// A bank of eight sawtooth oscillators: a band-limited impulse train through a leaky integrator.
#pragma once

#include "synth/Lanes.h"

namespace ormund {

// Audio thread only. What the sample loops advance is `phase` and `integrator`; the rest is set at
// control rate.
class KWBlitSawOsc {
public:
    KWBlitSawOsc();

    // Does nothing for 0 Hz and for the frequency that the voice already has.
    void setFrequency(int voice, float hertz, float sampleRate);
    // A new note starts at the beginning of a period, with an empty integrator.
    void restart(int voice);
    // After a change of the sample rate: the next setFrequency() computes everything again.
    void forgetFrequencies();

    struct State {
        Lanes harmonics;     // odd, the most that fit below the Nyquist limit
        Lanes phaseStep;     // half turns of the pulse train a sample: pi * frequency / rate
        Lanes period;        // samples
        Lanes inversePeriod; // the mean of the pulse train, taken off again
        Lanes phase;         // 0 to pi
        Lanes integrator;
    };
    State state;

private:
    Lanes lastFrequency; // Hz
};

} // namespace ormund
