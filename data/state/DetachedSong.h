// A song without an engine: everything that a state is made of, and nobody who plays it.
#pragma once

#include "data/state/StateParts.h"

namespace ormund {

// What files are decoded into, and built from. One thread.
class DetachedSong final : public ParameterSink, public LoadInterlock {
public:
    DetachedSong() = default;
    DetachedSong(const DetachedSong&) = delete;
    DetachedSong& operator=(const DetachedSong&) = delete;

    void setParameter(int tag, float value) override
    {
        patterns.write(tag, parameters.store(tag, value).raw);
    }
    void stopBlocks(bool) override { }
    void resumeBlocks() override { }
    void stateLoaded(PresetKind) override { }

    KWSystemInfo info;
    Parameters parameters;
    Tracks tracks{info};
    PatternStore patterns;
    MidiMap midiMap;
    PresetPosition position;
    Crossing<int32_t> keepMap = 0;
    StateParts parts{info, parameters, tracks, patterns, midiMap, position, *this, *this, keepMap};
};

} // namespace ormund
