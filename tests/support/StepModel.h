// What a plain song must play under a host's transport, worked out from the transport alone.
// Nothing here knows the engine, so that the two can be compared. For tests.
#pragma once

#include <cstdint>
#include <vector>

namespace ormund {

// A part of a performance in which the host changes nothing.
struct PlayedStretch {
    int64_t frames = 0;
    bool playing = false;
    bool continues = false; // from the end of the stretch before; else from `place`
    double place = 0;       // quarter notes, below 0 in a count-in
    double tempo = 120;
    bool loopOn = false;
    double loopStart = 0; // quarter notes
    double loopEnd = 0;
};

struct SoundedStep {
    int64_t frame = 0; // of the tick that plays it
    int step = 0;      // in the track, from 0
    friend bool operator==(const SoundedStep&, const SoundedStep&) = default;
};

class StepModel {
public:
    static constexpr int kTrackLength = 16; // steps

    StepModel(double sampleRate, double stepsPerQuarter) : rate(sampleRate), speed(stepsPerQuarter)
    {
    }

    void add(PlayedStretch stretch);
    const std::vector<PlayedStretch>& stretches() const { return all; }
    double sampleRate() const { return rate; }
    double stepsPerBeat() const { return speed; }
    double beatsPerFrame(const PlayedStretch& stretch) const { return stretch.tempo / 60.0 / rate; }
    // Where the host stands `frame` samples into a stretch: quarter notes, a loop's end being its
    // start. Read `ahead` samples ahead.
    long double placeIn(const PlayedStretch& stretch, int64_t frame, long double ahead = 0) const;
    // The steps of a song in which every step of one track of kTrackLength starts a note: each at
    // the first tick that has reached it, and the one in which the transport starts or lands at
    // the first tick there.
    std::vector<SoundedStep> steps() const;

private:
    double rate;
    double speed;
    std::vector<PlayedStretch> all;
};

// How far a performance is from the model's.
struct StepFaults {
    int lost = 0;
    int added = 0;
    int late = 0; // or early, within `tolerance` samples
    int64_t furthest = 0;
};
// Steps further than `tolerance` samples from where they belong count as lost, and as added.
StepFaults compareSteps(const std::vector<SoundedStep>& wanted,
    const std::vector<SoundedStep>& heard, int64_t tolerance);

} // namespace ormund
