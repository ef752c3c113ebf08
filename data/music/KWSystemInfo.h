// The time base and what else all parts of one instance share: tempo, rate, the note table, the
// range of random edits and the list of tracks.
#pragma once

#include "base/Crossing.h"

#include <array>
#include <vector>

namespace ormund {

class KWInitInterface;

constexpr int kTickSamples = 32;
constexpr float kMinSampleRate = 11050.0f;
constexpr float kMaxSampleRate = 196000.0f;
constexpr double kMinTempo = 45.0;
constexpr double kMaxTempo = 500.0; // a tempo of this or more is ignored

// Notified on the audio thread, inside a tick, that the tempo has changed.
class KWBPMChangeInterface {
public:
    virtual ~KWBPMChangeInterface() = default;
    virtual void tempoChanged() = 0;
};

// Written by the audio thread (tempo, position) and by the host's thread while no block runs
// (rate); the fields that the screen or a parameter change may read meanwhile are Crossing.
class KWSystemInfo {
public:
    KWSystemInfo();
    KWSystemInfo(const KWSystemInfo&) = delete;
    KWSystemInfo& operator=(const KWSystemInfo&) = delete;

    // Beats per minute. Below 45 counts as 45; 500 and more, and no number at all, change nothing.
    void setTempo(double beatsPerMinute);
    // Hz, 11050 to 196000 exclusive of neither; any other value changes nothing and gives false.
    bool setSampleRate(float hertz);
    static bool isUsableRate(float hertz)
    {
        return hertz >= kMinSampleRate && hertz <= kMaxSampleRate;
    }

    // What a tempo would make of a beat at the present rate.
    float samplesPerBeatAt(double beatsPerMinute) const;

    // Hz of a MIDI pitch from -36 to 127.99; between two notes linear in hertz. Clamped to the
    // table.
    float frequencyOf(float pitch) const;

    void addTempoListener(KWBPMChangeInterface* listener);
    void removeTempoListener(KWBPMChangeInterface* listener);
    void notifyTempoListeners();

    Crossing<double> tempo = 120.0;
    Crossing<float> sampleRate = 44100.0f;
    Crossing<float> samplesPerBeat = 0.0f;
    Crossing<float> ticksPerBeat = 0.0f;
    Crossing<float> ticksPerMillisecond = 0.0f;
    Crossing<float> samplesPerMillisecond = 0.0f;
    Crossing<float> rateRatio = 1.0f; // sampleRate / 44100

    static constexpr float controlPeriod = static_cast<float>(kTickSamples);
    static constexpr float controlPeriodInverse = 1.0f / controlPeriod;

    // Samples since the last tick. It starts at a whole period, so the first sample runs a tick.
    int controlCounter = kTickSamples;
    int voiceCount = 4;      // slots of the held-key table
    double songPosition = 0; // quarter notes
    // Hosts round or cut their places to whole samples, so one that is meant to be on a line may
    // lie just below it. Wherever a place is compared with a line it is read nearly half a sample
    // ahead.
    double readAhead = 0; // quarter notes
    double placeRead() const { return songPosition + readAhead; }
    float firstTick = 1;                // 1 until the end of the first tick
    Crossing<float> hostRunning = 0.0f; // 1 while the host's transport runs
    Crossing<float> pitchWheel = 0.0f;  // incoming wheel, -1 to 1

    // Every write of a step or of a parameter.
    ChangeCount changes;

    // The range that random edits draw from, raw values of "random_min" and "random_max".
    Crossing<float> randomMin = 0.22f;
    Crossing<float> randomMax = 0.68f;
    // All tracks in the order in which the global buttons reach them. Filled at construction only.
    std::vector<KWInitInterface*> tracks;

private:
    void deriveTempo();

    struct Note {
        float frequency;  // Hz
        float difference; // to the next note
    };
    static constexpr int kNotes = 165;
    static constexpr float kLowestPitch = 36.0f; // index 0 is pitch -36
    std::array<Note, kNotes> noteTable;
    std::vector<KWBPMChangeInterface*> tempoListeners;
};

} // namespace ormund
