// Swing for one counter of the step chain: a ring of its past values, one a tick.
#pragma once

#include "base/ZeroedArray.h"

// Audio thread, but for setSampleRate, which runs while no block does or inside a tick; it
// allocates nothing.
class SwingLine {
public:
    SwingLine();

    // Half of the longest step at the slowest tempo, in ticks, is 3675 at 44.1 kHz.
    void setRateRatio(float rateRatio);

    // `count` is the counter's value of this tick, `delay` in ticks. Even steps pass; odd ones are
    // late by `delay` while `amount` is above 0. So the beat itself never moves.
    float tick(float count, float amount, int delay);

private:
    ZeroedArray<float> ring; // as long as the highest rate asks for
    int length;
    int write = 0;
};
