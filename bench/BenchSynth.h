// Eight sounding voices with the settings of a new instance, for the synth's benchmarks.
#pragma once

#include "data/parameters/Parameters.h"
#include "synth/KWSynth.h"

namespace ormund {

struct BenchSynth {
    explicit BenchSynth(const AudioLoops& loops = fastestLoops()) : synth(info, loops)
    {
        constexpr float kDefaults[] = {0.5299f, 0.4879f, 0.89f, 0.4698f, 0.0f, 1.0f, 0.3299f, 0.0f,
            0.5499f, 0.5898f, 0.6599f, 0.0f, 0.9799f, 0.0f, 0.0f, 0.4398f, 0.5298f, 0.433f,
            0.3488f};
        int tag = KWSynth::kFirstTag;
        for (const float value : kDefaults) {
            synth.setParameter(tag, mapValue(parameterEntry(tag)->mapping, value));
            ++tag;
        }
        for (const unsigned note : {36u, 43u, 48u, 52u, 55u, 60u, 64u, 71u})
            synth.voices().noteEvent(note, 100);
    }

    KWSystemInfo info;
    KWSynth synth;
};

} // namespace ormund
