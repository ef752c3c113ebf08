// A bank of eight pulse oscillators: two sawtooths in opposition, each edge rounded by a parabola.
#pragma once

#include "synth/Lanes.h"

namespace ormund {

// Audio thread only. The sample loops advance `fall`, `width` and `previous`.
class KWPulseOsc {
public:
    KWPulseOsc();

    void setFrequency(int voice, float hertz, float inverseSampleRate);
    // The phase alone: the width goes on from where it is, and so does the smoothing filter.
    void restart(int voice);
    // Once a control block for a voice that sounds. `target` is 2 * width - 1, 0 to 1.
    void moveWidth(int voice, float target);

    struct State {
        Lanes increment; // two units are a period
        Lanes inverseIncrement;
        Lanes widthStep; // a sample
        Lanes fall;      // the phase, running down from 1 to -1: signs give the sides of an edge
        Lanes width;     // 2 * width - 1
        Lanes previous;  // the last sample before the smoothing filter
    };
    State state;
};

} // namespace ormund
