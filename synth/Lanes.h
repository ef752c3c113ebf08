// Eight voices side by side: a value per voice, aligned so that a register holds four or eight.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ormund {

constexpr int kVoices = 8;

template <typename T>
struct alignas(32) LaneArray {
    T lane[kVoices] = {};

    T& operator[](int voice) { return lane[static_cast<size_t>(voice)]; }
    const T& operator[](int voice) const { return lane[static_cast<size_t>(voice)]; }
};

using Lanes = LaneArray<float>;

inline Lanes filled(float value)
{
    return {{value, value, value, value, value, value, value, value}};
}

// All bits of a lane set or none.
using LaneMask = LaneArray<int32_t>;

} // namespace ormund
