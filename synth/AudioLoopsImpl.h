// The sample-rate loops, written for a register of lanes (see LaneVector.h). The order of the
// operations is the sound: a compiler may not change it, and neither may a faster version.
#pragma once

#include "synth/AudioLoops.h"
#include "synth/LaneVector.h"

namespace ormund {

namespace {

constexpr float kPi = 3.1415927f;
constexpr float kTwoPi = 6.2831855f;
constexpr float kInverseTwoPi = 0.15915494f;
constexpr float kDenormalBias = 1e-18f;
constexpr float kPulseGain = 0.4f;

// A sine of -pi to pi by a parabola and its correction.
inline VecF parabola(VecF x) { return x * (1.2732395f - absolute(x) * 0.4052847f); }

struct SawRun {
    VecF harmonics, phaseStep, period, inversePeriod, phase, integrator;

    SawRun(const KWBlitSawOsc::State& s, int g)
        : harmonics(load(s.harmonics, g))
        , phaseStep(load(s.phaseStep, g))
        , period(load(s.period, g))
        , inversePeriod(load(s.inversePeriod, g))
        , phase(load(s.phase, g))
        , integrator(load(s.integrator, g))
    {
    }

    void save(KWBlitSawOsc::State& s, int g, VecI active) const
    {
        store(s.phase, g, active ? phase : load(s.phase, g));
        store(s.integrator, g, active ? integrator : load(s.integrator, g));
    }

    VecF next()
    {
        VecF x = phase * harmonics;
        x = x - (truncated(x * kInverseTwoPi) * kTwoPi + kPi);
        const VecF y = parabola(x);
        const VecF numerator = y + (absolute(y) * y - y) * 0.225f; // of the negative pulse
        const VecF z = phase * (1.2732395f - phase * 0.4052847f);
        const VecF denominator = (z + (z * z - z) * 0.225f) * period + 0.00000011920929f;
        const VecF out = (integrator - inversePeriod) - numerator / denominator;
        integrator = out * 0.995f;
        phase = wrapped(phase + phaseStep, kPi);
        return out;
    }
};

struct PulseRun {
    VecF increment, inverseIncrement, widthStep, fall, width, previous;

    PulseRun(const KWPulseOsc::State& s, int g)
        : increment(load(s.increment, g))
        , inverseIncrement(load(s.inverseIncrement, g))
        , widthStep(load(s.widthStep, g))
        , fall(load(s.fall, g))
        , width(load(s.width, g))
        , previous(load(s.previous, g))
    {
    }

    void save(KWPulseOsc::State& s, int g, VecI active) const
    {
        store(s.fall, g, active ? fall : load(s.fall, g));
        store(s.width, g, active ? width : load(s.width, g));
        store(s.previous, g, active ? previous : load(s.previous, g));
    }

    VecF next()
    {
        fall = fall - increment;
        fall = fall + keepWhere(fall < -1.0f, VecF{} + 2.0f);
        width = width + widthStep;
        VecF before = fall + width; // the way to the second edge, below 0 behind it
        VecF out = width - withSignOf(before, VecF{} + 1.0f);

        const VecF main = smaller((1.0f - absolute(fall)) / increment - 1.0f, VecF{});
        out = out + flippedLike(fall, main * main);

        before = before - keepWhere(before > 1.0f, VecF{} + 2.0f);
        const VecF apart = absolute(before);
        const VecF edge = whereNegative(before, apart / increment, apart * inverseIncrement) - 1.0f;
        out = out + flippedLike(before, keepWhere(apart < increment, edge * edge));

        const VecF scaled = out * 1.2062726f;
        const VecF smooth = scaled - previous * 0.171f;
        previous = scaled;
        return smooth * kPulseGain;
    }
};

struct FilterRun {
    VecF c, half, f, q;
    VecF s1, s2, s3, feedback, band, low, previousLow;

    FilterRun(const VoiceFilter& filter, int g)
        : c(load(filter.coefficients.c, g))
        , half(load(filter.coefficients.half, g))
        , f(load(filter.coefficients.f, g))
        , q(load(filter.coefficients.q, g))
        , s1(load(filter.state.s1, g))
        , s2(load(filter.state.s2, g))
        , s3(load(filter.state.s3, g))
        , feedback(load(filter.state.feedback, g))
        , band(load(filter.state.band, g))
        , low(load(filter.state.low, g))
        , previousLow(load(filter.state.previousLow, g))
    {
    }

    void save(VoiceFilter::State& s, int g) const
    {
        store(s.s1, g, s1);
        store(s.s2, g, s2);
        store(s.s3, g, s3);
        store(s.feedback, g, feedback);
        store(s.band, g, band);
        store(s.low, g, low);
        store(s.previousLow, g, previousLow);
    }

    bool isAt(const FilterRun& other) const
    {
        return sameBits(s1, other.s1) && sameBits(s2, other.s2) && sameBits(s3, other.s3)
            && sameBits(feedback, other.feedback) && sameBits(band, other.band)
            && sameBits(low, other.low) && sameBits(previousLow, other.previousLow);
    }

    // The bias keeps a filter that rings out from ending in denormal numbers.
    VecF next(VecF in, float gain)
    {
        s1 = s1 + kDenormalBias;
        s2 = s2 + kDenormalBias;
        s3 = s3 + kDenormalBias;
        band = band + kDenormalBias;
        low = low + kDenormalBias;
        s1 = s1 + c * ((in - (feedback + kDenormalBias)) - s1);
        s2 = s2 + c * (s1 - s2);
        s3 = s3 + half * (s2 - s3);
        feedback = 2.0f * s3 - s2;
        band = band + f * (feedback - (band * q + low));
        low = low + band * f;
        const VecF out = (low + (previousLow + kDenormalBias)) * gain;
        previousLow = low;
        return out;
    }
};

typedef float VoiceOut[kMaxRun][kVoices];

// A register of voices for each sample of a run.
typedef VecF Signal[kMaxRun];

// A pass of their own for the saws leaves enough registers to the pulses and the filter.
void runSaws(VoiceBank& bank, float weight, int g, Signal& out, int samples)
{
    SawRun saw1(bank.saw1.state, g), saw2(bank.saw2.state, g);
    for (int i = 0; i < samples; ++i)
        out[i] = weight * (saw1.next() + saw2.next());
    const VecI active = load(bank.sounding, g);
    saw1.save(bank.saw1.state, g, active);
    saw2.save(bank.saw2.state, g, active);
}

// The pulses are added to `saws`; without oscillators the filters ring out. True when the last
// sample changed nothing: then no further one does.
template <bool kOscillators>
bool runPulsesAndFilter(
    VoiceBank& bank, const VoiceMix& mix, int g, const Signal& saws, VoiceOut& out, int samples)
{
    PulseRun pulse1(bank.pulse1.state, g), pulse2(bank.pulse2.state, g);
    FilterRun filter(bank.filter, g);
    const VecI active = load(bank.sounding, g);
    const VecF step = load(bank.amplitudeStep, g);
    VecF amplitude = load(bank.amplitude, g);
    const float pulseWeight = mix.pulseWeight, gain = mix.gain;
    const auto nextIn = [&](int i) -> VecF {
        amplitude = amplitude + step;
        if (!kOscillators)
            return VecF{};
        const VecF tone = pulseWeight * (pulse1.next() + pulse2.next()) + saws[i];
        return amplitude * keepWhere(active, tone);
    };
    // The filter is one long chain of dependent operations. With the pulses a sample ahead of it,
    // neither waits for the other.
    VecF in = nextIn(0);
    for (int i = 0; i < samples - 1; ++i) {
        const VecF now = in;
        in = nextIn(i + 1);
        *reinterpret_cast<VecF*>(&out[i][g]) = filter.next(now, gain);
    }
    const FilterRun before = filter;
    *reinterpret_cast<VecF*>(&out[samples - 1][g]) = filter.next(in, gain);
    store(bank.amplitude, g, amplitude);
    filter.save(bank.filter.state, g);
    if (kOscillators) {
        pulse1.save(bank.pulse1.state, g, active);
        pulse2.save(bank.pulse2.state, g, active);
    }
    return !kOscillators && sameBits(step, VecF{}) && filter.isAt(before);
}

void runVoices(VoiceBank& bank, const VoiceMix& mix, float* left, float* right, int samples)
{
    if (bank.resting && bank.restGain == mix.gain) {
        for (int i = 0; i < samples; ++i) {
            left[i] = mix.leftGain * bank.restLevel;
            right[i] = mix.rightGain * bank.restLevel;
        }
        return;
    }
    alignas(32) VoiceOut out;
    Signal saws;
    bool rests = true;
    for (int g = 0; g < kVoices; g += kWidth) {
        if (bank.anySounding) {
            runSaws(bank, mix.sawWeight, g, saws, samples);
            rests &= runPulsesAndFilter<true>(bank, mix, g, saws, out, samples);
        } else {
            rests &= runPulsesAndFilter<false>(bank, mix, g, saws, out, samples);
        }
    }
    // Whole registers of samples; what lies beyond the run is computed and left. It is silence, not
    // what the stack held: that could be denormals, which cost a hundred times as much.
    static_assert(kMaxRun % kWidth == 0);
    const int beyond = (kWidth - samples % kWidth) % kWidth;
    __builtin_memset(out + samples, 0, static_cast<size_t>(beyond) * sizeof out[0]);
    float sides[2][kMaxRun];
    for (int i = 0; i < samples; i += kWidth) {
        // Beyond 4 the clip would turn over. A sum that is no number becomes silence.
        VecF sum = sumOfVoices(&out[i]);
        sum = smaller(sum, VecF{} + 4.0f);
        sum = larger(sum, VecF{} - 4.0f);
        const VecF clipped = (1.0f - absolute(sum) * 0.25f) * sum;
        if (rests)
            bank.restLevel = clipped[(samples - 1) % kWidth];
        storeUnaligned(&sides[0][i], mix.leftGain * clipped);
        storeUnaligned(&sides[1][i], mix.rightGain * clipped);
    }
    bank.resting = rests;
    bank.restGain = mix.gain;
    __builtin_memcpy(left, sides[0], static_cast<size_t>(samples) * sizeof(float));
    __builtin_memcpy(right, sides[1], static_cast<size_t>(samples) * sizeof(float));
}

// A constant count lets the compiler drop all loop overhead for the usual whole run.
inline void runDelayLine(const DelayRun& run, const int samples)
{
    const float* __restrict const read = run.read;
    float* __restrict const write = run.write;
    float* __restrict const signal = run.signal;
    const double* __restrict const wet = run.wet;
    const double weight = run.weight;
    const float feedback = run.feedback;
    // What is read lies before all that is written, so all of it can be read first.
    float taps[kMaxRun + 1];
    taps[0] = *run.lastTap;
    for (int i = 0; i < samples; ++i) {
        const double rise = static_cast<double>(read[i + 1] - read[i]);
        taps[i + 1] = static_cast<float>(static_cast<double>(read[i]) + rise * weight);
    }
    for (int i = 0; i < samples; ++i) {
        float x = taps[i] * feedback + signal[i];
        x = x < 8.0f ? x : 8.0f;
        x = x > -8.0f ? x : -8.0f;
        write[i] = (1.0f - __builtin_fabsf(x) * 0.25f) * x + kDenormalBias;
    }
    for (int i = 0; i < samples; ++i) {
        const double dry = static_cast<double>(signal[i]) * (1.0 - wet[i]);
        signal[i] = static_cast<float>(dry + static_cast<double>(taps[i + 1]) * wet[i]);
    }
    *run.lastTap = taps[samples];
}

void runDelay(const DelayRun& run)
{
    if (run.samples == kMaxRun)
        runDelayLine(run, kMaxRun);
    else
        runDelayLine(run, run.samples);
}

} // namespace

} // namespace ormund
