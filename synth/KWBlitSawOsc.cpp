#include "synth/KWBlitSawOsc.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {

constexpr float kPi = 3.1415927f;
constexpr float kStartFrequency = 440.0f;
constexpr float kStartRate = 44100.0f;

} // namespace

KWBlitSawOsc::KWBlitSawOsc()
{
    // Silent lanes are computed with the others, so they need sane numbers from the start.
    for (int voice = 0; voice < kVoices; ++voice)
        setFrequency(voice, kStartFrequency, kStartRate);
}

void KWBlitSawOsc::setFrequency(int voice, float hertz, float sampleRate)
{
    if (hertz == 0 || hertz == lastFrequency[voice])
        return;
    lastFrequency[voice] = hertz;
    const float period = sampleRate / hertz;
    const float inverse = 1.0f / period;
    state.period[voice] = period;
    state.inversePeriod[voice] = inverse;
    // Above the sample rate itself (the top notes at the lowest rates) the phase would run away.
    state.phaseStep[voice] = std::min(inverse * kPi, kPi);
    state.harmonics[voice] = 2.0f * std::floor(period * 0.5f) + 1.0f;
}

void KWBlitSawOsc::restart(int voice)
{
    state.phase[voice] = 0;
    state.integrator[voice] = 0;
}

void KWBlitSawOsc::forgetFrequencies() { lastFrequency = {}; }

} // namespace ormund
