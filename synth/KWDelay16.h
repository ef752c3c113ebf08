// The stereo delay behind the voices. Its times are whole sixteenth notes of the tempo.
#pragma once

#include "base/Crossing.h"
#include "base/ZeroedArray.h"
#include "data/music/KWSystemInfo.h"
#include "synth/AudioLoops.h"

namespace ormund {

// process() and updateBlock() belong to the audio thread, setParameter() and setMix() to any.
// The buffers are reserved for the slowest tempo whenever the rate changes, so that a change of
// tempo, which comes inside a block, never allocates. They are neither cleared nor shrunk.
class KWDelay16 final : public KWBPMChangeInterface {
public:
    // Registers itself for tempo changes of `context`, which must outlive it.
    explicit KWDelay16(KWSystemInfo& context, const AudioLoops& loops = fastestLoops());
    ~KWDelay16() override;
    KWDelay16(const KWDelay16&) = delete;
    KWDelay16& operator=(const KWDelay16&) = delete;

    enum Parameter { LeftTime = 0, RightTime = 1, Feedback = 2 };
    // Times: 1 to 16 sixteenths; feedback: 0 to 1, of which 0.99 comes back. Other indices do
    // nothing.
    void setParameter(int index, float value);
    // The share of the delayed signal, 0 to 1.
    void setMix(float value);

    // Once a control block, before its samples: times and mix reach their targets by its end.
    void updateBlock();
    // In place, any number of samples.
    void process(float* left, float* right, int samples);

    // After a change of the sample rate. May allocate: not while a block runs.
    void sampleRateChanged();
    // The length and the times for the present tempo and rate; allocates nothing.
    void rebuild();
    void tempoChanged() override { rebuild(); }

    // Samples.
    int bufferLength() const { return length; }
    double leftDelay() const { return left.current; }
    double rightDelay() const { return right.current; }

private:
    struct Channel {
        Crossing<float> sixteenths = 1.0f;
        Crossing<double> target = 0.0; // samples
        double current = 0;
        double step = 0; // a sample
        float lastTap = 0;
        ZeroedArray<float> buffer;
    };

    void reserve();
    void setTime(Channel& channel, float sixteenths);
    static void aim(double& current, double& step, double target);
    void processRun(float* leftSignal, float* rightSignal, int samples);
    void processChannel(Channel& channel, float* signal, const double* wet, int samples);
    void processMoving(Channel& channel, int write, float* signal, const double* wet, int samples);
    int steadyRun(const Channel& channel, int write, int samples, int& read, double& weight) const;

    KWSystemInfo& info;
    const AudioLoops& loops;
    Channel left;
    Channel right;
    Crossing<float> feedback = 0.0f;
    Crossing<float> mixTarget = 0.0f;
    double mixCurrent = 0;
    double mixStep = 0;
    int writeIndex = 0;
    int length = 0;   // samples in use: four beats and four samples
    int capacity = 0; // samples reserved
};

} // namespace ormund
