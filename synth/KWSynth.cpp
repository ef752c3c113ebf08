#include "synth/KWSynth.h"

#include "base/OnlyCrossings.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {

constexpr float kTwoPi = 6.2831855f;
constexpr float kNeverZero = 1e-18f; // ticks
constexpr float kRampSnap = 0.0000001f;

// 0 to 1; no number counts as 0.
float unit(float value) { return value > 0 ? std::min(value, 1.0f) : 0.0f; }

float envelopeMs(float value) { return value * value * value * 1000.0f; }

float filterHertz(float value) { return value * value * 16000.0f + 45.0f; }

int shownSixteenths(float value) { return static_cast<int>(value * 15.0f + 1.5f); }

} // namespace

KWSynth::KWSynth(KWSystemInfo& context, const AudioLoops& itsLoops)
    : info(context), loops(itsLoops), tempoDelay(context, itsLoops)
{
    static_assert(onlyCrossings<Settings>());
    sampleRateChanged();
}

void KWSynth::setParameter(int tag, float value)
{
    value = unit(value);
    switch (tag) {
    case 17:
        settings.velocityScale = 0.0078125f * value;
        break;
    case 18:
        setPan(value);
        break;
    case 19:
        setWave(value);
        break;
    case 20:
        settings.detune = value * 0.5f;
        break;
    case 21:
        settings.amplitude.attack = envelopeMs(value);
        break;
    case 22:
        settings.amplitude.decay = envelopeMs(value);
        break;
    case 23:
        settings.amplitude.sustain = value;
        break;
    case 24:
        settings.amplitude.release = envelopeMs(value);
        break;
    case 25:
        settings.cutoff = filterHertz(value);
        break;
    case 26:
        setResonance(value);
        break;
    case 27:
        settings.peak = filterHertz(value);
        break;
    case 28:
        settings.filter.attack = envelopeMs(value);
        break;
    case 29:
        settings.filter.decay = envelopeMs(value);
        break;
    case 30:
        settings.filter.sustain = value;
        break;
    case 31:
        settings.filter.release = envelopeMs(value);
        break;
    case 32:
        tempoDelay.setParameter(KWDelay16::LeftTime, value);
        leftShown = shownSixteenths(value);
        break;
    case 33:
        tempoDelay.setParameter(KWDelay16::RightTime, value);
        rightShown = shownSixteenths(value);
        break;
    case 34:
        tempoDelay.setParameter(KWDelay16::Feedback, value * 0.9f);
        break;
    case 35:
        tempoDelay.setMix(value * 0.5f);
        break;
    default:
        break;
    }
}

void KWSynth::setPan(float value)
{
    const float place = static_cast<float>(static_cast<int>(value * 999.99994f)) * 0.001f;
    settings.leftGain = std::sqrt(1.0f - place);
    settings.rightGain = std::sqrt(place);
}

// From saw over square to a thin pulse. The first half cross-fades, the second moves the width.
void KWSynth::setWave(float value)
{
    constexpr float kWidths[] = {0.5f, 0.5f, 0.9f, 0.9f};
    const float wave = static_cast<float>(static_cast<int>(value * 100.0f)) * 0.01f;
    const float t = 2.0f * wave;
    const float from = kWidths[static_cast<int>(t + 0.0000001f)];
    const float to = kWidths[static_cast<int>(t + 0.99999899f)];
    const float part = t - static_cast<float>(static_cast<int>(t));
    settings.pulseWidth = from + (to - from) * part;
    const float pulse = std::min(t, 1.0f);
    settings.pulseWeight = pulse;
    settings.sawWeight = 1.0f - pulse;
}

void KWSynth::setResonance(float value)
{
    const float r = value * 0.98f;
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
