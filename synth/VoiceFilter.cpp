#include "synth/VoiceFilter.h"

#include <cmath>
#include <initializer_list>

namespace ormund {

namespace {

constexpr float kGlideMs = 8.0f;

}

// Chosen, not branched upon, so that all voices go in one register.
void VoiceFilter::glide(const Lanes& newTarget, float ticksPerMs)
{
    const float ticks = ticksPerMs * kGlideMs;
    const Lanes before = current;
    for (int voice = 0; voice < kVoices; ++voice) {
        const float wanted = newTarget[voice];
        const bool isNew = wanted != target[voice];
        const float fresh = (current[voice] - wanted) / ticks;
        const float move = isNew ? fresh : step[voice];
        const float left = isNew ? ticks : ticksLeft[voice];
        const bool away = current[voice] != wanted;
        const bool arrives = left - 1.0f <= 0;
        const float next = arrives ? wanted : current[voice] - move;
        target[voice] = wanted;
        step[voice] = away && arrives ? 0.0f : move;
        ticksLeft[voice] = away ? left - 1.0f : left;
        current[voice] = away ? next : current[voice];
    }
    for (int voice = 0; voice < kVoices; ++voice)
        cutoffMoved |= current[voice] != before[voice];
}

bool VoiceFilter::deriveCoefficients(float radiansPerHertz, float damping)
{
    if (!cutoffMoved && radiansPerHertz == derivedRadians && damping == derivedDamping)
        return false;
    cutoffMoved = false;
    derivedRadians = radiansPerHertz;
    derivedDamping = damping;
    for (int voice = 0; voice < kVoices; ++voice) {
        const float a = current[voice] * radiansPerHertz;
        const float positive = a > 0.0f ? a : 0.0f;
        const float c = positive < 1.0f ? positive : 1.0f;
        const float f = positive < 1.9f ? positive : 1.9f;
        const float b = 2.0f - f;
        coefficients.c[voice] = c;
        coefficients.half[voice] = c * 0.5f;
        coefficients.f[voice] = f;
        coefficients.q[voice] = ((f + 2.0f) * b * damping) / (2.0f * (f * damping + b));
    }
    return true;
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

} // namespace ormund
