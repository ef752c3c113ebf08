#include "bench/Floor.h"

#include <cmath>

namespace ormund {

FloorState::FloorState()
{
    constexpr float kRate = 44100.0f;
    constexpr float kPi = 3.1415927f;
    for (int bank = 0; bank < 2; ++bank) {
        for (int voice = 0; voice < kVoices; ++voice) {
            const float hertz =
                65.4f * std::exp2(static_cast<float>(voice) * 0.4f) * (bank ? 1.01f : 1.0f);
            saw[bank].period[voice] = kRate / hertz;
            saw[bank].inversePeriod[voice] = hertz / kRate;
            saw[bank].phaseStep[voice] = kPi * hertz / kRate;
            saw[bank].harmonics[voice] = 2.0f * std::floor(kRate / hertz * 0.5f) + 1.0f;
            pulse[bank].increment[voice] = 2.0f * hertz / kRate;
            pulse[bank].edge[voice] = -1.0f / pulse[bank].increment[voice];
            pulse[bank].width[voice] = 0.6f;
        }
    }
    for (int voice = 0; voice < kVoices; ++voice) {
        c[voice] = f[voice] = 0.3f;
        half[voice] = 0.15f;
        q[voice] = 0.5f;
        amplitude[voice] = 0.2f;
    }
    for (auto& samples : line)
        samples.resize(kLength + 1);
}

namespace {

float sine(float x) { return x * (1.2732395f - std::abs(x) * 0.4052847f); }

float saw(FloorState::Saw& s, int v)
{
    float x = s.phase[v] * s.harmonics[v];
    x -= static_cast<float>(static_cast<int>(x * 0.15915494f)) * 6.2831855f + 3.1415927f;
    const float y = sine(x);
    const float z = sine(s.phase[v]);
    const float pulse = (y + (std::abs(y) * y - y) * 0.225f)
        / ((z + (z * z - z) * 0.225f) * s.period[v] + 0.00000011920929f);
    const float out = (s.integrator[v] - s.inversePeriod[v]) - pulse;
    s.integrator[v] = out * 0.995f;
    s.phase[v] += s.phaseStep[v];
    if (s.phase[v] >= 3.1415927f)
        s.phase[v] -= 3.1415927f;
    return out;
}

float pulse(FloorState::Pulse& p, int v)
{
    float phase = p.phase[v] + p.increment[v];
    if (phase > 1)
        phase -= 2;
    p.phase[v] = phase;
    float d = phase - p.width[v];
    float out = d <= 0 ? p.width[v] - 1 : p.width[v] + 1;
    const float toEdge = 1 - std::abs(phase);
    if (toEdge < p.increment[v]) {
        const float t = toEdge / p.increment[v] - 1;
        out += phase > 0 ? -t * t : t * t;
    }
    if (d < -1)
        d += 2;
    if (std::abs(d) < p.increment[v]) {
        const float t = (d > 0 ? d / p.increment[v] : d * p.edge[v]) - 1;
        out += d > 0 ? -t * t : t * t;
    }
    const float scaled = out * 1.2062726f;
    const float smooth = scaled - p.previous[v] * 0.171f;
    p.previous[v] = scaled;
    return smooth * 0.4f;
}

float voiceOut(FloorState& s, int v)
{
    constexpr float kBias = 1e-18f;
    const float tone = s.pulseWeight * (pulse(s.pulse[0], v) + pulse(s.pulse[1], v))
        + s.sawWeight * (saw(s.saw[0], v) + saw(s.saw[1], v));
    const float s1 = s.s1[v] + kBias, s2 = s.s2[v] + kBias, s3 = s.s3[v] + kBias;
    const float band = s.band[v] + kBias, low = s.low[v] + kBias;
    const float in = s.amplitude[v] * tone;
    s.s1[v] = s1 + s.c[v] * ((in - (s.feedback[v] + kBias)) - s1);
    s.s2[v] = s2 + s.c[v] * (s.s1[v] - s2);
    s.s3[v] = s3 + s.half[v] * (s.s2[v] - s3);
    s.feedback[v] = 2.0f * s.s3[v] - s.s2[v];
    s.band[v] = band + s.f[v] * (s.feedback[v] - (band * s.q[v] + low));
    s.low[v] = low + s.band[v] * s.f[v];
    const float out = (s.low[v] + (s.previousLow[v] + kBias)) * s.gain;
    s.previousLow[v] = s.low[v];
    return out;
}

float delayed(FloorState& s, int side, float in)
{
    const float x = s.tap[side] * 0.4f + in;
    s.line[side][static_cast<size_t>(s.write)] = (1 - std::abs(x) * 0.25f) * x + 1e-18f;
    double position = s.write - static_cast<double>(s.delay[side]);
    if (position < 0)
        position += FloorState::kLength;
    const auto here = static_cast<size_t>(position);
    const size_t next = here + 1 < FloorState::kLength ? here + 1 : 0;
    const double rise = static_cast<double>(s.line[side][next] - s.line[side][here]);
    s.tap[side] = static_cast<float>(static_cast<double>(s.line[side][here])
        + rise * (1.0 - (position - static_cast<double>(here))));
    return static_cast<float>(
        static_cast<double>(in) * 0.8 + static_cast<double>(s.tap[side]) * 0.2);
}

} // namespace

void floorScalar(FloorState& s, float* left, float* right, int samples)
{
    for (int i = 0; i < samples; ++i) {
        float sum = 0;
        for (int v = 0; v < kVoices; ++v)
            sum += voiceOut(s, v);
        const float clipped = (1 - std::abs(sum) * 0.25f) * sum;
        left[i] = delayed(s, 0, s.pan * clipped);
        right[i] = delayed(s, 1, s.pan * clipped);
        if (++s.write == FloorState::kLength)
            s.write = 0;
    }
}

} // namespace ormund
