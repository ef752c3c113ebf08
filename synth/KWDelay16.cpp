#include "synth/KWDelay16.h"

#include <algorithm>

namespace ormund {

namespace {

constexpr float kFeedbackRange = 0.9900000095367432f;
constexpr double kSixteenth = 0.25; // of a beat
constexpr float kLongest = 4.0f;    // beats
constexpr float kSpare = 4.0f;      // samples
constexpr double kSnap = 0.00000001;
constexpr float kLargestInput = 8.0f; // beyond about 8.5 the clip expands and runs away
constexpr float kDenormalBias = 1e-18f;

} // namespace

KWDelay16::KWDelay16(KWSystemInfo& context, const AudioLoops& itsLoops)
    : info(context), loops(itsLoops)
{
    sampleRateChanged();
    info.addTempoListener(this);
}

KWDelay16::~KWDelay16() { info.removeTempoListener(this); }

void KWDelay16::setParameter(int index, float value)
{
    switch (index) {
    case LeftTime:
        setTime(left, value);
        break;
    case RightTime:
        setTime(right, value);
        break;
    case Feedback:
        feedback = value * kFeedbackRange;
        break;
    default:
        break;
    }
}

void KWDelay16::setTime(Channel& channel, float sixteenths)
{
    channel.sixteenths = sixteenths;
    channel.target =
        static_cast<double>(sixteenths) * kSixteenth * static_cast<double>(info.samplesPerBeat);
}

void KWDelay16::setMix(float value) { mixTarget = value; }

void KWDelay16::aim(double& current, double& step, double target)
{
    step = (target - current) * static_cast<double>(KWSystemInfo::controlPeriodInverse);
    if (step >= -kSnap && step <= kSnap) {
        step = 0;
        current = target;
    }
}

void KWDelay16::updateBlock()
{
    aim(mixCurrent, mixStep, static_cast<double>(mixTarget));
    aim(left.current, left.step, left.target);
    aim(right.current, right.step, right.target);
}

void KWDelay16::sampleRateChanged()
{
    reserve();
    rebuild();
}

void KWDelay16::reserve()
{
    const double slowestBeat = static_cast<double>(info.sampleRate) * 60.0 / kMinTempo;
    const int needed = static_cast<int>(slowestBeat * static_cast<double>(kLongest)) + 8;
    if (needed <= capacity)
        return;
    for (Channel* channel : {&left, &right}) {
        ZeroedArray<float> grown(static_cast<size_t>(needed));
        std::copy_n(channel->buffer.data(), capacity, grown.data());
        channel->buffer = std::move(grown);
    }
    capacity = needed;
}

void KWDelay16::rebuild()
{
    const auto fourBeats = static_cast<int>(info.samplesPerBeat * kLongest + kSpare);
    length = std::min(fourBeats, capacity);
    for (Channel* channel : {&left, &right}) {
        setTime(*channel, channel->sixteenths);
        if (channel->current >= length)
            channel->current = channel->target;
    }
    if (writeIndex >= length)
        writeIndex = 0;
}

void KWDelay16::process(float* leftSignal, float* rightSignal, int samples)
{
    for (int done = 0; done < samples; done += kMaxRun)
        processRun(leftSignal + done, rightSignal + done, std::min(kMaxRun, samples - done));
}

void KWDelay16::processRun(float* leftSignal, float* rightSignal, int samples)
{
    double wet[kMaxRun];
    for (int i = 0; i < samples; ++i) {
        mixCurrent += mixStep;
        wet[i] = mixCurrent;
    }
    processChannel(left, leftSignal, wet, samples);
    processChannel(right, rightSignal, wet, samples);
    writeIndex += samples;
    if (writeIndex >= length)
        writeIndex -= length;
}

void KWDelay16::processChannel(Channel& channel, float* signal, const double* wet, int samples)
{
    int write = writeIndex;
    while (samples > 0) {
        int read = 0;
        double weight = 0;
        int run = steadyRun(channel, write, samples, read, weight);
        if (run > 0) {
            loops.delay({.read = channel.buffer.data() + read,
                .write = channel.buffer.data() + write,
                .signal = signal,
                .lastTap = &channel.lastTap,
                .wet = wet,
                .weight = weight,
                .feedback = feedback,
                .samples = run});
        } else {
            run = channel.step == 0 ? 1 : samples;
            processMoving(channel, write, signal, wet, run);
        }
        signal += run;
        wet += run;
        samples -= run;
        write = write + run < length ? write + run : write + run - length;
    }
}

// How many samples can go in one run from `write` on: none while the time moves, while it is short
// enough for the run to read what it writes, or where the next read is the buffer's last sample.
int KWDelay16::steadyRun(
    const Channel& channel, int write, int samples, int& read, double& weight) const
{
    if (channel.step != 0 || channel.current <= kMaxRun || channel.current >= length)
        return 0;
    double position = write - channel.current;
    if (position < 0)
        position += length;
    read = static_cast<int>(position);
    // A resting time is a multiple of a quarter of `samplesPerBeat`, so this does not round, and is
    // the same for all samples of the run.
    weight = 1.0 - (position - read);
    return std::min({samples, length - write, length - 1 - read});
}

void KWDelay16::processMoving(
    Channel& channel, int write, float* signal, const double* wet, int samples)
{
    const float fed = feedback;
    float* const buffer = channel.buffer.data();
    for (int i = 0; i < samples; ++i) {
        channel.current += channel.step;
        const float x =
            std::clamp(channel.lastTap * fed + signal[i], -kLargestInput, kLargestInput);
        buffer[write] = (1.0f - std::abs(x) * 0.25f) * x + kDenormalBias;

        double position = write - channel.current;
        if (position < 0)
            position += length;
        // A change of rate or tempo in the middle of a glide may leave the buffer.
        if (!(position >= 0 && position < length))
            position = position < 0 ? 0 : length - 1;
        const auto here = static_cast<int>(position);
        const int next = here + 1 < length ? here + 1 : 0;
        // Deliberate: the weights stand the other way round, so a whole delay is a sample shorter.
        const double weight = 1.0 - (position - here);
        const double rise = static_cast<double>(buffer[next] - buffer[here]);
        channel.lastTap = static_cast<float>(static_cast<double>(buffer[here]) + rise * weight);

        signal[i] = static_cast<float>(static_cast<double>(signal[i]) * (1.0 - wet[i])
            + static_cast<double>(channel.lastTap) * wet[i]);
        write = write + 1 < length ? write + 1 : 0;
    }
}

} // namespace ormund
