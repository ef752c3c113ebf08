#include "bench/Floor.h"

#if defined(__AVX2__)

#include <algorithm>
#include <immintrin.h>

namespace ormund {

namespace {

using V = __m256;

V all(float value) { return _mm256_set1_ps(value); }
V magnitude(V x) { return _mm256_andnot_ps(all(-0.0f), x); }
V operatorLess(V a, V b) { return _mm256_cmp_ps(a, b, _CMP_LT_OQ); }

struct SawLanes {
    V harmonics, phaseStep, period, inversePeriod, phase, integrator;

    explicit SawLanes(const FloorState::Saw& s)
        : harmonics(_mm256_load_ps(s.harmonics.lane))
        , phaseStep(_mm256_load_ps(s.phaseStep.lane))
        , period(_mm256_load_ps(s.period.lane))
        , inversePeriod(_mm256_load_ps(s.inversePeriod.lane))
        , phase(_mm256_load_ps(s.phase.lane))
        , integrator(_mm256_load_ps(s.integrator.lane))
    {
    }

    void save(FloorState::Saw& s) const
    {
        _mm256_store_ps(s.phase.lane, phase);
        _mm256_store_ps(s.integrator.lane, integrator);
    }

    V next()
    {
        V x = phase * harmonics;
        const V turns =
            _mm256_round_ps(x * all(0.15915494f), _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
        x = x - (turns * all(6.2831855f) + all(3.1415927f));
        const V y = x * (all(1.2732395f) - magnitude(x) * all(0.4052847f));
        const V numerator = y + (magnitude(y) * y - y) * all(0.225f);
        const V z = phase * (all(1.2732395f) - phase * all(0.4052847f));
        const V denominator = (z + (z * z - z) * all(0.225f)) * period + all(0.00000011920929f);
        const V out = (integrator - inversePeriod) - numerator / denominator;
        integrator = out * all(0.995f);
        phase = phase + phaseStep;
        const V over = _mm256_cmp_ps(phase, all(3.1415927f), _CMP_GE_OQ);
        phase = phase - _mm256_and_ps(over, all(3.1415927f));
        return out;
    }
};

struct PulseLanes {
    V increment, edge, phase, width, previous;

    explicit PulseLanes(const FloorState::Pulse& p)
        : increment(_mm256_load_ps(p.increment.lane))
        , edge(_mm256_load_ps(p.edge.lane))
        , phase(_mm256_load_ps(p.phase.lane))
        , width(_mm256_load_ps(p.width.lane))
        , previous(_mm256_load_ps(p.previous.lane))
    {
    }

    void save(FloorState::Pulse& p) const
    {
        _mm256_store_ps(p.phase.lane, phase);
        _mm256_store_ps(p.previous.lane, previous);
    }

    V next()
    {
        const V sign = all(-0.0f);
        phase = phase + increment;
        phase = phase - _mm256_and_ps(operatorLess(all(1.0f), phase), all(2.0f));
        V d = phase - width;
        const V after = operatorLess(_mm256_setzero_ps(), d);
        V out = width + _mm256_blendv_ps(all(-1.0f), all(1.0f), after);
        const V toEdge = all(1.0f) - magnitude(phase);
        const V main = toEdge / increment - all(1.0f);
        const V mainRound = _mm256_and_ps(operatorLess(toEdge, increment), main * main);
        const V falling = operatorLess(_mm256_setzero_ps(), phase);
        out = out + _mm256_xor_ps(mainRound, _mm256_and_ps(falling, sign));
        d = d + _mm256_and_ps(operatorLess(d, all(-1.0f)), all(2.0f));
        const V ahead = operatorLess(_mm256_setzero_ps(), d);
        const V side = _mm256_blendv_ps(d * edge, d / increment, ahead) - all(1.0f);
        const V sideRound = _mm256_and_ps(operatorLess(magnitude(d), increment), side * side);
        out = out + _mm256_xor_ps(sideRound, _mm256_and_ps(ahead, sign));
        const V scaled = out * all(1.2062726f);
        const V smooth = scaled - previous * all(0.171f);
        previous = scaled;
        return smooth * all(0.4f);
    }
};

struct FilterLanes {
    V s1, s2, s3, feedback, band, low, previousLow, c, half, f, q;

    explicit FilterLanes(const FloorState& s)
        : s1(_mm256_load_ps(s.s1.lane))
        , s2(_mm256_load_ps(s.s2.lane))
        , s3(_mm256_load_ps(s.s3.lane))
        , feedback(_mm256_load_ps(s.feedback.lane))
        , band(_mm256_load_ps(s.band.lane))
        , low(_mm256_load_ps(s.low.lane))
        , previousLow(_mm256_load_ps(s.previousLow.lane))
        , c(_mm256_load_ps(s.c.lane))
        , half(_mm256_load_ps(s.half.lane))
        , f(_mm256_load_ps(s.f.lane))
        , q(_mm256_load_ps(s.q.lane))
    {
    }

    void save(FloorState& s) const
    {
        _mm256_store_ps(s.s1.lane, s1);
        _mm256_store_ps(s.s2.lane, s2);
        _mm256_store_ps(s.s3.lane, s3);
        _mm256_store_ps(s.feedback.lane, feedback);
        _mm256_store_ps(s.band.lane, band);
        _mm256_store_ps(s.low.lane, low);
        _mm256_store_ps(s.previousLow.lane, previousLow);
    }

    V next(V in)
    {
        const V bias = all(1e-18f);
        s1 = s1 + bias;
        s2 = s2 + bias;
        s3 = s3 + bias;
        band = band + bias;
        low = low + bias;
        s1 = s1 + c * ((in - (feedback + bias)) - s1);
        s2 = s2 + c * (s1 - s2);
        s3 = s3 + half * (s2 - s3);
        feedback = all(2.0f) * s3 - s2;
        band = band + f * (feedback - (band * q + low));
        low = low + band * f;
        const V out = low + (previousLow + bias);
        previousLow = low;
        return out;
    }
};

void voices(FloorState& s, float* out, int samples)
{
    SawLanes saw1(s.saw[0]), saw2(s.saw[1]);
    PulseLanes pulse1(s.pulse[0]), pulse2(s.pulse[1]);
    FilterLanes filter(s);
    const V amplitude = _mm256_load_ps(s.amplitude.lane);
    const auto nextTone = [&] {
        return amplitude
            * (all(s.pulseWeight) * (pulse1.next() + pulse2.next())
                + all(s.sawWeight) * (saw1.next() + saw2.next()));
    };
    // The oscillators run a sample ahead, so that their chain and the filter's overlap.
    V in = nextTone();
    for (int i = 0; i < samples; ++i) {
        const V now = in;
        in = nextTone();
        const V voice = filter.next(now) * all(s.gain);
        const __m128 four = _mm256_castps256_ps128(voice) + _mm256_extractf128_ps(voice, 1);
        const __m128 two = four + _mm_movehl_ps(four, four);
        out[i] = _mm_cvtss_f32(_mm_add_ss(two, _mm_shuffle_ps(two, two, 1)));
    }
    saw1.save(s.saw[0]);
    saw2.save(s.saw[1]);
    pulse1.save(s.pulse[0]);
    pulse2.save(s.pulse[1]);
    filter.save(s);
}

// Eight samples at once; what is read lies far before what is written.
void delay(FloorState& s, int side, float* signal, int write, int samples)
{
    int read = write - s.delay[side];
    if (read < 0)
        read += FloorState::kLength;
    float* const line = s.line[side].data();
    alignas(32) float taps[8 + 8];
    taps[7] = s.tap[side];
    for (int i = 0; i < samples; i += 8) {
        const V here = _mm256_loadu_ps(line + read + i);
        const V rise = _mm256_loadu_ps(line + read + i + 1) - here;
        const __m256d weight = _mm256_set1_pd(1.0);
        const auto at = [&](__m128 h, __m128 r) {
            return _mm256_cvtpd_ps(_mm256_cvtps_pd(h) + _mm256_cvtps_pd(r) * weight);
        };
        const V tap =
            _mm256_set_m128(at(_mm256_extractf128_ps(here, 1), _mm256_extractf128_ps(rise, 1)),
                at(_mm256_castps256_ps128(here), _mm256_castps256_ps128(rise)));
        _mm256_store_ps(taps + 8, tap);
        const V in = _mm256_loadu_ps(signal + i);
        const V x = _mm256_loadu_ps(taps + 7) * all(0.4f) + in;
        _mm256_storeu_ps(
            line + write + i, (all(1.0f) - magnitude(x) * all(0.25f)) * x + all(1e-18f));
        const auto mix = [](__m128 dry, __m128 wet) {
            return _mm256_cvtpd_ps(_mm256_cvtps_pd(dry) * _mm256_set1_pd(0.8)
                + _mm256_cvtps_pd(wet) * _mm256_set1_pd(0.2));
        };
        _mm256_storeu_ps(signal + i,
            _mm256_set_m128(mix(_mm256_extractf128_ps(in, 1), _mm256_extractf128_ps(tap, 1)),
                mix(_mm256_castps256_ps128(in), _mm256_castps256_ps128(tap))));
        taps[7] = taps[15];
    }
    s.tap[side] = taps[7];
}

// `samples` is a multiple of 64. A part costs one sample of the oscillators too many.
void floorAvx2(FloorState& s, float* left, float* right, int samples)
{
    constexpr int kPart = 64;
    for (int at = 0; at < samples; at += kPart, left += kPart, right += kPart) {
        float sum[kPart];
        voices(s, sum, kPart);
        for (int i = 0; i < kPart; i += 8) {
            const V x = _mm256_loadu_ps(sum + i);
            const V clipped = (all(1.0f) - magnitude(x) * all(0.25f)) * x * all(s.pan);
            _mm256_storeu_ps(left + i, clipped);
            _mm256_storeu_ps(right + i, clipped);
        }
        // The lines turn over a little early, so that no part has to be cut.
        if (s.write + kPart > FloorState::kLength)
            s.write = 0;
        const int write = std::min(s.write, FloorState::kLength - 2 * kPart);
        delay(s, 0, left, write, kPart);
        delay(s, 1, right, write, kPart);
        s.write += kPart;
    }
}

// Of `left` the first voice, `right` is left alone.
void filterAvx2(FloorState& s, float* left, float*, int samples)
{
    FilterLanes filter(s);
    for (int i = 0; i < samples; ++i)
        left[i] = _mm256_cvtss_f32(filter.next(all(0.1f)));
    filter.save(s);
}

} // namespace

FloorLoop* floorVector() { return __builtin_cpu_supports("avx2") ? floorAvx2 : nullptr; }
FloorLoop* filterVector() { return __builtin_cpu_supports("avx2") ? filterAvx2 : nullptr; }

} // namespace ormund

#else

namespace ormund {

FloorLoop* floorVector() { return nullptr; }
FloorLoop* filterVector() { return nullptr; }

} // namespace ormund

#endif
