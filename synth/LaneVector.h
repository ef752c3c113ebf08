// A register of lanes. Included by the loops alone, and compiled there once for every instruction
// set: all of it stays inside the file that includes it, for the linker would otherwise keep one
// copy for all.
#pragma once

#include "synth/Lanes.h"

#if defined(__AVX2__)
#include <immintrin.h>
#endif

namespace ormund {

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
constexpr int32_t kSignBit = INT32_MIN;
// A positive value with the sign of another.
inline VecF withSignOf(VecF sign, VecF value)
{
    return bits(bits(value) | (bits(sign) & kSignBit));
}
// The value with its sign turned where another is negative.
inline VecF flippedLike(VecF sign, VecF value)
{
    return bits(bits(value) ^ (bits(sign) & kSignBit));
}
inline VecF whereNegative(VecF sign, VecF then, VecF otherwise)
{
    return bits(sign) < 0 ? then : otherwise;
}
inline bool sameBits(VecF a, VecF b) { return __builtin_memcmp(&a, &b, sizeof a) == 0; }
inline void storeUnaligned(float* at, VecF value) { __builtin_memcpy(at, &value, sizeof value); }
inline VecF truncated(VecF value)
{
#if defined(__AVX2__)
    return _mm256_round_ps(value, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
#else
    return __builtin_convertvector(__builtin_convertvector(value, VecI), VecF);
#endif
}
// `value` from 0 to below twice the period, taken into the period.
inline VecF wrapped(VecF value, float period)
{
#if defined(__AVX2__)
    // A negative number, read as an integer without a sign, is larger than any positive one.
    const VecF down = value - period;
    return reinterpret_cast<VecF>(
        _mm256_min_epu32(reinterpret_cast<__m256i>(value), reinterpret_cast<__m256i>(down)));
#else
    return value - keepWhere(value >= period, VecF{} + period);
#endif
}
// Eight voices of kWidth samples, summed in the order of the voices: a sample a lane.
inline VecF sumOfVoices(const float (*voices)[kVoices])
{
#if defined(__AVX2__)
    VecF r[8], s[8];
    for (int i = 0; i < 8; ++i)
        r[i] = *reinterpret_cast<const VecF*>(voices[i]);
    // Pairs of samples, then fours, then halves.
    for (int i = 0; i < 8; i += 2) {
        s[i] = _mm256_unpacklo_ps(r[i], r[i + 1]);
        s[i + 1] = _mm256_unpackhi_ps(r[i], r[i + 1]);
    }
    for (int i = 0; i < 8; i += 4) {
        r[i] = _mm256_shuffle_ps(s[i], s[i + 2], 0x44);
        r[i + 1] = _mm256_shuffle_ps(s[i], s[i + 2], 0xee);
        r[i + 2] = _mm256_shuffle_ps(s[i + 1], s[i + 3], 0x44);
        r[i + 3] = _mm256_shuffle_ps(s[i + 1], s[i + 3], 0xee);
    }
    VecF sum = _mm256_permute2f128_ps(r[0], r[4], 0x20);
    for (int i = 1; i < 4; ++i)
        sum = sum + _mm256_permute2f128_ps(r[i], r[4 + i], 0x20);
    for (int i = 0; i < 4; ++i)
        sum = sum + _mm256_permute2f128_ps(r[i], r[4 + i], 0x31);
    return sum;
#else
    VecF sum;
    for (int i = 0; i < kWidth; ++i) {
        float one = voices[i][0];
        for (int voice = 1; voice < kVoices; ++voice)
            one += voices[i][voice];
        sum[i] = one;
    }
    return sum;
#endif
}
inline VecF smaller(VecF a, VecF b) { return a < b ? a : b; }
inline VecF larger(VecF a, VecF b) { return a > b ? a : b; }

} // namespace

} // namespace ormund
