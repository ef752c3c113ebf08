#include "synth/VoiceFilter.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kGlideMs = 8.0f;

}

void VoiceFilter::glide(const Lanes& newTarget, float ticksPerMs)
{
    const float ticks = ticksPerMs * kGlideMs;
    for (int voice = 0; voice < kVoices; ++voice) {
        if (newTarget[voice] != target[voice]) {
            target[voice] = newTarget[voice];
            ticksLeft[voice] = ticks;
            step[voice] = (current[voice] - newTarget[voice]) / ticks;
        }
        if (current[voice] != target[voice]) {
            current[voice] -= step[voice];
            ticksLeft[voice] -= 1.0f;
            if (ticksLeft[voice] <= 0) {
                current[voice] = target[voice];
                step[voice] = 0;
            }
        }
    }
}

void VoiceFilter::deriveCoefficients(float radiansPerHertz, float damping)
{
    for (int voice = 0; voice < kVoices; ++voice) {
        const float a = current[voice] * radiansPerHertz;
        const float c = std::clamp(a, 0.0f, 1.0f);
        const float f = std::clamp(a, 0.0f, 1.9f);
        const float b = 2.0f - f;
        coefficients.c[voice] = c;
        coefficients.half[voice] = c * 0.5f;
        coefficients.f[voice] = f;
        coefficients.q[voice] = ((f + 2.0f) * b * damping) / (2.0f * (f * damping + b));
    }
}

void VoiceFilter::heal()
{
    const auto sumOf = [this](int voice) {
        return state.s1[voice] + state.s2[voice] + state.s3[voice] + state.feedback[voice]
            + state.band[voice] + state.low[voice];
    };
    float total = 0;
    for (int voice = 0; voice < kVoices; ++voice)
        total += sumOf(voice);
    if (std::isfinite(total))
        return;
    for (int voice = 0; voice < kVoices; ++voice) {
        if (std::isfinite(sumOf(voice)))
            continue;
        for (Lanes* part : {&state.s1, &state.s2, &state.s3, &state.feedback, &state.band,
                 &state.low, &state.previousLow})
            (*part)[voice] = 0;
    }
}
