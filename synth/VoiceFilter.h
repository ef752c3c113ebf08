// The filters of eight voices: three one-pole stages in a feedback loop, then a state-variable
// stage.
#pragma once

#include "synth/Lanes.h"

namespace ormund {

// Audio thread only. The cutoffs move at control rate, in straight lines of 8 ms.
class VoiceFilter {
public:
    // `target` in Hz. A new target starts the line again from where the cutoff is.
    void glide(const Lanes& target, float ticksPerMs);
    // `radiansPerHertz` is 2 pi / sample rate, `damping` 0.02 to 2.
    // False when they stay as they were.
    bool deriveCoefficients(float radiansPerHertz, float damping);
    // A voice whose filter is no longer finite starts from silence.
    void heal();

    struct Coefficients {
        Lanes c;    // of the first two poles
        Lanes half; // of the third
        Lanes f;    // of the state-variable stage
        Lanes q;
    };
    struct State {
        Lanes s1, s2, s3, feedback, band, low, previousLow;
    };
    Coefficients coefficients;
    State state;
    const Lanes& cutoffs() const { return current; }

private:
    Lanes current; // Hz
    Lanes step;    // Hz a tick, taken off
    Lanes target;  // Hz
    Lanes ticksLeft;
    // What the coefficients were derived from.
    bool cutoffMoved = true;
    float derivedRadians = 0;
    float derivedDamping = 0;
};

} // namespace ormund
