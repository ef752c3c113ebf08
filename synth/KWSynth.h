// The eight-voice synth and the delay behind it.
#pragma once

#include "base/Crossing.h"
#include "data/music/KWSystemInfo.h"
#include "data/parameters/Tags.h"
#include "synth/AudioLoops.h"
#include "synth/Envelope.h"
#include "synth/KWDelay16.h"
#include "synth/KWSimpleMidiManager.h"

namespace ormund {

// Two rates: controlTick() decides once every 32 samples, render() only multiplies and adds.
// Both belong to the audio thread; setParameter() may come from any. Nothing allocates after
// construction but sampleRateChanged().
class KWSynth {
public:
    explicit KWSynth(KWSystemInfo& context, const AudioLoops& loops = fastestLoops());

    // The tags that setParameter() takes.
    static constexpr int kFirstTag = Tag::SynthLevel;
    static constexpr int kLastTag = Tag::DelayMix;

    // `mapped` as the parameter's row maps it; another tag does nothing.
    void setParameter(int tag, float mapped);

    // Where notes go. They are heard from the next control tick on.
    KWSimpleMidiManager<float, kVoices>& voices() { return slots; }

    // Every 32 samples, before the first of them. Semitones.
    void controlTick(float pitchOffset);
    // The voices alone: writes 1 to 32 samples, and never past the control block that the last
    // controlTick() began. How a control block is cut into runs changes no sample.
    void renderVoices(float* left, float* right, int samples);
    // The voices through the delay.
    void render(float* left, float* right, int samples);

    // After KWSystemInfo has taken a new rate. May allocate when the rate has risen: not while a
    // block runs.
    void sampleRateChanged();

    KWDelay16& delay() { return tempoDelay; }

    // Hz and level of the voices as the last control tick left them.
    const Lanes& cutoffs() const { return bank.filter.cutoffs(); }
    const Lanes& levels() const { return amplitudeEnvelope.values(); }

private:
    // Milliseconds, and the sustain as a fraction.
    struct EnvelopeSettings {
        Crossing<float> attack = 0.0f;
        Crossing<float> decay = 0.0f;
        Crossing<float> sustain = 0.0f;
        Crossing<float> release = 0.0f;
    };
    struct Settings { // written by setParameter, on any thread
        Crossing<float> velocityScale = 0.0f;
        Crossing<float> leftGain = 0.0f;
        Crossing<float> rightGain = 0.0f;
        Crossing<float> pulseWeight = 0.0f;
        Crossing<float> sawWeight = 0.0f;
        Crossing<float> pulseWidth = 0.5f;
        Crossing<float> detune = 0.0f; // semitones
        EnvelopeSettings amplitude;
        EnvelopeSettings filter;
        Crossing<float> cutoff = 0.0f;  // Hz
        Crossing<float> peak = 0.0f;    // Hz
        Crossing<float> damping = 2.0f; // 0.02 to 2
        Crossing<float> outputGain = 0.5f;
    };

    void setWave(float wave);
    void setResonance(float resonance);
    EnvelopeTimes timesOf(const EnvelopeSettings&) const;
    void moveFilterTargets();
    void tuneVoices(float pitchOffset);
    void runGates();
    void aimAmplitudes();

    KWSystemInfo& info;
    const AudioLoops& loops;
    Settings settings;

    // Audio thread only.
    KWSimpleMidiManager<float, kVoices> slots;
    VoiceBank bank;
    Envelope filterEnvelope{Envelope::Shape::Unit};
    Envelope amplitudeEnvelope{Envelope::Shape::Level};
    Lanes pitch1 = filled(-1.0f); // whose frequencies these are
    Lanes pitch2 = filled(-1.0f); // detuned
    Lanes frequency1;             // Hz
    Lanes frequency2;             // Hz
    float radiansPerHertz = 0;
    float inverseSampleRate = 0;
    KWDelay16 tempoDelay;
};

} // namespace ormund
