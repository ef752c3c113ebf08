#include "synth/Envelope.h"

namespace ormund {

void Envelope::tick(const Lanes& triggers, const EnvelopeTimes& times)
{
    bool triggered = false;
    for (int voice = 0; voice < kVoices; ++voice)
        triggered |= triggers[voice] != lastTrigger[voice];
    if (!triggered && !moving)
        return;
    moving = false;
    for (int voice = 0; voice < kVoices; ++voice) {
        if (triggers[voice] != lastTrigger[voice])
            retrigger(voice, triggers[voice], times);
        else
            move(voice, triggers[voice], times);
        moving |= stage[voice] == Stage::Attack || stage[voice] == Stage::Decay
            || stage[voice] == Stage::Release;
    }
}

void Envelope::retrigger(int voice, float trigger, const EnvelopeTimes& times)
{
    lastTrigger[voice] = trigger;
    if (!(trigger > 0)) {
        release(voice, times);
        return;
    }
    stage[voice] = Stage::Attack;
    counter[voice] = 0;
    if (times.attackMs == 0) {
        value[voice] = shape == Shape::Level ? trigger : 1.0f;
        stage[voice] = Stage::Decay;
    } else if (shape == Shape::Level && value[voice] > 0) {
        // Deliberate: the value itself, not its share of the level, so a soft note starts lower.
        counter[voice] = times.ticksPerMs * value[voice] * times.attackMs;
    }
}

void Envelope::move(int voice, float trigger, const EnvelopeTimes& times)
{
    const float peak = shape == Shape::Level ? trigger : 1.0f;
    const float sustained = times.sustain * peak;
    float& n = counter[voice];
    switch (stage[voice]) {
    case Stage::Attack:
        n += 1.0f;
        if (n < times.attack) {
            value[voice] = n / times.attack * peak;
        } else {
            stage[voice] = Stage::Decay;
            n = 0;
            value[voice] = peak;
        }
        break;
    case Stage::Decay:
        n += 1.0f;
        if (n < times.decay) {
            value[voice] = sustained + (peak - sustained) * (1.0f - n / times.decay);
        } else {
            stage[voice] = Stage::Sustain;
            n = 0;
            value[voice] = sustained;
        }
        break;
    case Stage::Release:
        value[voice] -= n;
        if (!(value[voice] > 0)) {
            value[voice] = 0;
            stage[voice] = Stage::Finished;
        }
        break;
    case Stage::Before:
    case Stage::Sustain:
    case Stage::Finished:
        break;
    }
}

void Envelope::release(int voice, const EnvelopeTimes& times)
{
    stage[voice] = Stage::Release;
    counter[voice] = value[voice] / times.release;
}

} // namespace ormund
