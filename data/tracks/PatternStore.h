// What a pattern holds besides its rows: 34 raw parameter values.
#pragma once

#include "base/Crossing.h"
#include "data/parameters/Parameters.h"

#include <array>

namespace ormund {

class ParameterSink;

// Written by setParameter on any thread, replayed by the audio thread.
class PatternStore {
public:
    PatternStore(); // all patterns at the parameters' defaults

    // Remembers the value in the pattern if the tag is stored there; else ignored, as is a pattern
    // that does not exist.
    void write(int tag, int pattern, float raw);
    void write(int tag, float raw) { write(tag, currentPattern, raw); }
    float at(int pattern, int position) const; // 0 outside
    void setAt(int pattern, int position, float raw);
    void fillWithDefaults();
    // Sets all 34 of the current pattern, in order; the place without a parameter goes out as
    // tag -1.
    void replay(ParameterSink& sink) const;
    void replay(int pattern, ParameterSink& sink) const;

    // One buffer for the whole process. While another instance is using it these do nothing.
    void copy() const;        // the current pattern
    bool paste();             // false while nothing was copied; the caller replays
    static void forgetCopy(); // for tests

    Crossing<int32_t> currentPattern = 0;

private:
    std::array<std::array<Crossing<float>, kPatternValues>, kPatterns> values;
};

} // namespace ormund
