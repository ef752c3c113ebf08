// A synth with its own time base, played tick by tick into memory.
#pragma once

#include "base/ParkMiller.h"
#include "data/parameters/Parameters.h"
#include "synth/KWSynth.h"

#include <complex>
#include <functional>
#include <vector>

namespace ormund {

// The same numbers everywhere.
class Dice {
public:
    explicit Dice(int32_t seed) : random(seed) { }
    float unit() { return random.nextMagnitude(); }
    int below(int count) { return static_cast<int>(unit() * 0.9999f * static_cast<float>(count)); }
    unsigned note(int from, int count) { return static_cast<unsigned>(from + below(count)); }

private:
    ParkMiller random;
};

struct Stereo {
    std::vector<float> left, right;
    bool operator==(const Stereo&) const = default;
};

class SynthPlayer {
public:
    // A steady saw tone: full sustain, no attack, filter wide open, no resonance, delay mix 0, a
    // level low enough that the clip bends nothing.
    explicit SynthPlayer(float sampleRate = 44100, const AudioLoops& loops = fastestLoops());

    // As a control does, 0 to 1.
    void set(int tag, float value)
    {
        synth.setParameter(tag, mapValue(parameterEntry(tag)->mapping, sanitisedRaw(value)));
    }
    void noteOn(unsigned note, unsigned velocity = 100) { voices().noteEvent(note, velocity); }
    void noteOff(unsigned note) { voices().noteEvent(note, 0); }
    KWSimpleMidiManager<float, kVoices>& voices() { return synth.voices(); }

    // The next run's length, given what is left of the control block.
    using Split = std::function<int(int left)>;
    static int wholeBlocks(int left) { return left; }

    Stereo play(int ticks, float pitchOffset = 0, const Split& split = wholeBlocks);
    void skip(int ticks) { play(ticks); }
    float millisecondsPerTick() const { return 1.0f / info.ticksPerMillisecond; }

    KWSystemInfo info;
    KWSynth synth;
};

double rms(const std::vector<float>&);
double peak(const std::vector<float>&);
// The amplitude of the part at `hertz`, Hann window.
double amplitudeAt(const std::vector<float>&, double hertz, double sampleRate);
// The frequency of the part near `hertz`, from the turn of its phase between two windows.
double frequencyNear(const std::vector<float>&, double hertz, double sampleRate);

} // namespace ormund
