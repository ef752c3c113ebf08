// What eight voices and their delay cost at the least: the arithmetic of one sample and nothing
// else. No parameters, no control rate, no envelopes, no silent voices, no runs to be cut.
#pragma once

#include "synth/Lanes.h"

#include <vector>

namespace ormund {

struct FloorState {
    FloorState();

    struct Saw {
        Lanes harmonics, phaseStep, period, inversePeriod, phase, integrator;
    };
    struct Pulse {
        Lanes increment, edge, phase, width, previous;
    };
    static constexpr int kLength = 88204;
    Saw saw[2];
    Pulse pulse[2];
    Lanes c, half, f, q, amplitude;
    Lanes s1, s2, s3, feedback, band, low, previousLow;
    float pulseWeight = 0.75f, sawWeight = 0.25f, gain = 0.4f, pan = 0.7f;
    std::vector<float> line[2];
    int write = 0;
    int delay[2] = {44100, 49612};
    float tap[2] = {};
};

using FloorLoop = void(FloorState&, float* left, float* right, int samples);

// A voice after the other, as one would write it first.
FloorLoop floorScalar;
// Eight lanes by hand; null where the processor has no AVX2.
FloorLoop* floorVector();
// Their filters alone, for each sample waits for the one before: nothing that plays these filters
// takes less.
FloorLoop* filterVector();

} // namespace ormund
