// A register of lanes. Included by the loops alone, and compiled there once for every instruction
// set: all of it stays inside the file that includes it, for the linker would otherwise keep one
// copy for all.
#pragma once

#include "synth/Lanes.h"

namespace {

#if defined(__AVX2__)
constexpr int kWidth = 8;
#else
constexpr int kWidth = 4;
#endif

typedef float VecF __attribute__((vector_size(kWidth * 4)));
typedef int32_t VecI __attribute__((vector_size(kWidth * 4)));

inline VecF load(const Lanes& lanes, int first)
{
    return *reinterpret_cast<const VecF*>(lanes.lane + first);
}

inline VecI load(const LaneMask& lanes, int first)
{
    return *reinterpret_cast<const VecI*>(lanes.lane + first);
}

inline void store(Lanes& lanes, int first, VecF value)
{
    *reinterpret_cast<VecF*>(lanes.lane + first) = value;
}

inline VecF bits(VecI value) { return reinterpret_cast<VecF>(value); }
inline VecI bits(VecF value) { return reinterpret_cast<VecI>(value); }
inline VecF keepWhere(VecI mask, VecF value) { return bits(bits(value) & mask); }
inline VecF absolute(VecF value) { return bits(bits(value) & 0x7fffffff); }
// The value with its sign turned where the mask is set.
inline VecF negateWhere(VecI mask, VecF value)
{
    return bits(bits(value) ^ (mask & static_cast<int32_t>(0x80000000u)));
}
inline VecF truncated(VecF value)
{
    return __builtin_convertvector(__builtin_convertvector(value, VecI), VecF);
}

} // namespace
