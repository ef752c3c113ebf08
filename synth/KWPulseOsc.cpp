#include "synth/KWPulseOsc.h"

#include "data/music/KWSystemInfo.h"

#include <algorithm>

namespace ormund {

namespace {

constexpr float kStartIncrement = 0.02f;

}

KWPulseOsc::KWPulseOsc()
{
    for (int voice = 0; voice < kVoices; ++voice)
        setFrequency(voice, kStartIncrement * 0.5f, 1.0f);
}

void KWPulseOsc::setFrequency(int voice, float hertz, float inverseSampleRate)
{
    // Above the sample rate itself (the top notes at the lowest rates) the phase would run away.
    const float increment = std::min(hertz * inverseSampleRate * 2.0f, 2.0f);
    if (increment == state.increment[voice])
        return;
    state.increment[voice] = increment;
    state.inverseIncrement[voice] = 1.0f / increment;
}

void KWPulseOsc::restart(int voice) { state.fall[voice] = 0; }

void KWPulseOsc::moveWidth(int voice, float target)
{
    const float step = (target - state.width[voice]) * KWSystemInfo::controlPeriodInverse;
    // Deliberate: a width that falls jumps, only one that rises is ramped.
    const bool jump = step < 0.0000000001f;
    state.widthStep[voice] = jump ? 0.0f : step;
    if (jump)
        state.width[voice] = target;
}

} // namespace ormund
