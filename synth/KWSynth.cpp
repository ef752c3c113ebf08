#include "synth/KWSynth.h"

#include "base/OnlyCrossings.h"
#include "data/parameters/Tags.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {

constexpr float kTwoPi = 6.2831855f;
constexpr float kNeverZero = 1e-18f; // ticks
constexpr float kRampSnap = 0.0000001f;

} // namespace

KWSynth::KWSynth(KWSystemInfo& context, const AudioLoops& itsLoops)
    : info(context), loops(itsLoops), tempoDelay(context, itsLoops)
{
    static_assert(onlyCrossings<Settings>());
    sampleRateChanged();
}

void KWSynth::setParameter(int tag, float mapped)
{
    switch (tag) {
    case Tag::SynthLevel:
        settings.velocityScale = 0.0078125f * mapped;
        break;
    case Tag::SynthPan:
        settings.leftGain = std::sqrt(1.0f - mapped);
        settings.rightGain = std::sqrt(mapped);
        break;
    case Tag::SynthWave:
        setWave(mapped);
        break;
    case Tag::SynthDetune:
        settings.detune = mapped;
        break;
    case Tag::SynthAttack:
        settings.amplitude.attack = mapped;
        break;
    case Tag::SynthDecay:
        settings.amplitude.decay = mapped;
        break;
    case Tag::SynthSustain:
        settings.amplitude.sustain = mapped;
        break;
    case Tag::SynthRelease:
        settings.amplitude.release = mapped;
        break;
    case Tag::FilterCutoff:
        settings.cutoff = mapped;
        break;
    case Tag::SynthReso:
        setResonance(mapped);
        break;
    case Tag::SynthPeak:
        settings.peak = mapped;
        break;
    case Tag::FilterAttack:
        settings.filter.attack = mapped;
        break;
    case Tag::FilterDecay:
        settings.filter.decay = mapped;
        break;
    case Tag::FilterSustain:
        settings.filter.sustain = mapped;
        break;
    case Tag::FilterRelease:
        settings.filter.release = mapped;
        break;
    case Tag::DelayLeft:
        tempoDelay.setParameter(KWDelay16::LeftTime, mapped);
        break;
    case Tag::DelayRight:
        tempoDelay.setParameter(KWDelay16::RightTime, mapped);
        break;
    case Tag::DelayFeed:
        tempoDelay.setParameter(KWDelay16::Feedback, mapped);
        break;
    case Tag::DelayMix:
        tempoDelay.setMix(mapped);
        break;
    default:
        break;
    }
}

// From saw over square to a thin pulse. The first half cross-fades, the second moves the width.
void KWSynth::setWave(float wave)
{
    constexpr float kWidths[] = {0.5f, 0.5f, 0.9f, 0.9f};
    const float t = 2.0f * wave;
    const float from = kWidths[static_cast<int>(t + 0.0000001f)];
    const float to = kWidths[static_cast<int>(t + 0.99999899f)];
    const float part = t - static_cast<float>(static_cast<int>(t));
    settings.pulseWidth = from + (to - from) * part;
    const float pulse = std::min(t, 1.0f);
    settings.pulseWeight = pulse;
    settings.sawWeight = 1.0f - pulse;
}

void KWSynth::setResonance(float r)
{
    settings.damping = std::clamp(2.0f * (1.0f - r), 0.02f, 2.0f);
    settings.outputGain = 0.5f / (1.0f + 2.0f * (r * r * r));
}

void KWSynth::sampleRateChanged()
{
    const float rate = info.sampleRate;
    radiansPerHertz = kTwoPi / rate;
    inverseSampleRate = 1.0f / rate;
    bank.saw1.forgetFrequencies();
    bank.saw2.forgetFrequencies();
    tempoDelay.sampleRateChanged();
}

EnvelopeTimes KWSynth::timesOf(const EnvelopeSettings& set) const
{
    const float perMs = info.ticksPerMillisecond;
    const float attackMs = set.attack;
    return {.attackMs = attackMs,
        .attack = attackMs * perMs + kNeverZero,
        .decay = set.decay * perMs + kNeverZero,
        .release = set.release * perMs + kNeverZero,
        .sustain = set.sustain,
        .ticksPerMs = perMs};
}

void KWSynth::controlTick(float pitchOffset)
{
    Lanes velocities;
    std::copy_n(slots.velocities(), kVoices, velocities.lane);
    filterEnvelope.tick(velocities, timesOf(settings.filter));
    moveFilterTargets();

    Lanes levels;
    const float scale = settings.velocityScale;
    for (int voice = 0; voice < kVoices; ++voice)
        levels[voice] = velocities[voice] * scale;
    amplitudeEnvelope.tick(levels, timesOf(settings.amplitude));

    tuneVoices(pitchOffset);
    runGates();
    aimAmplitudes();
    if (!bank.resting)
        bank.filter.heal();
    const bool filterMoved = bank.filter.deriveCoefficients(radiansPerHertz, settings.damping);
    bank.resting = bank.resting && !filterMoved && !bank.anySounding;
    tempoDelay.updateBlock();
}

void KWSynth::moveFilterTargets()
{
    const float peak = settings.peak;
    const float cutoff = settings.cutoff;
    Lanes targets;
    for (int voice = 0; voice < kVoices; ++voice) {
        const float e = filterEnvelope.values()[voice];
        targets[voice] = peak * e + cutoff * (1.0f - e);
    }
    bank.filter.glide(targets, info.ticksPerMillisecond);
}

void KWSynth::tuneVoices(float pitchOffset)
{
    const float detune = settings.detune;
    for (int voice = 0; voice < kVoices; ++voice) {
        const float pitch = std::clamp(slots.notes()[voice] + pitchOffset, 0.0f, 127.0f);
        const float detuned = pitch + detune;
        if (pitch != pitch1[voice]) {
            pitch1[voice] = pitch;
            frequency1[voice] = info.frequencyOf(pitch);
        }
        if (detuned != pitch2[voice]) {
            pitch2[voice] = detuned;
            frequency2[voice] = info.frequencyOf(detuned);
        }
    }
}

// A voice's oscillators run for as long as its level is above 0. They start again when it rises
// from there; one that has ended is silent from this block on.
void KWSynth::runGates()
{
    const float rate = info.sampleRate;
    const float widthTarget = 2.0f * settings.pulseWidth - 1.0f;
    bank.anySounding = false;
    for (int voice = 0; voice < kVoices; ++voice) {
        const bool gate = amplitudeEnvelope.values()[voice] > 0;
        const bool wasSounding = bank.sounding[voice] != 0;
        bank.sounding[voice] = gate ? -1 : 0;
        if (!gate)
            continue;
        bank.anySounding = true;
        bank.saw1.setFrequency(voice, frequency1[voice], rate);
        bank.saw2.setFrequency(voice, frequency2[voice], rate);
        bank.pulse1.setFrequency(voice, frequency1[voice], inverseSampleRate);
        bank.pulse2.setFrequency(voice, frequency2[voice], inverseSampleRate);
        if (!wasSounding) {
            bank.saw1.restart(voice);
            bank.saw2.restart(voice);
            bank.pulse1.restart(voice);
            bank.pulse2.restart(voice);
        }
        bank.pulse1.moveWidth(voice, widthTarget);
        bank.pulse2.moveWidth(voice, widthTarget);
    }
}

void KWSynth::aimAmplitudes()
{
    const Lanes& target = amplitudeEnvelope.values();
    for (int voice = 0; voice < kVoices; ++voice) {
        const float step =
            (target[voice] - bank.amplitude[voice]) * KWSystemInfo::controlPeriodInverse;
        const bool arrived = step >= -kRampSnap && step <= kRampSnap;
        bank.amplitudeStep[voice] = arrived ? 0.0f : step;
        if (arrived)
            bank.amplitude[voice] = target[voice];
    }
}

void KWSynth::renderVoices(float* left, float* right, int samples)
{
    const VoiceMix mix = {.pulseWeight = settings.pulseWeight,
        .sawWeight = settings.sawWeight,
        .gain = settings.outputGain,
        .leftGain = settings.leftGain,
        .rightGain = settings.rightGain};
    loops.voices(bank, mix, left, right, samples);
}

void KWSynth::render(float* left, float* right, int samples)
{
    renderVoices(left, right, samples);
    tempoDelay.process(left, right, samples);
}

} // namespace ormund
