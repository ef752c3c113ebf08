#include "tests/support/SequencerPlayer.h"

#include "data/parameters/Tags.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr int kMostBlock = 8192;
} // namespace

SequencerPlayer::SequencerPlayer(const Setup& setup)
    : sequencer(std::make_unique<Sequencer>(*setup.loops))
    , rate(static_cast<double>(setup.rate))
    , block(setup.block)
{
    transport.tempo = setup.tempo;
    transport.tempoValid = true;
    sequencer->setSampleRate(setup.rate);
    if (!setup.empty)
        return;
    sequencer->tracks.clearAll();
    sequencer->patternStore.fillWithDefaults();
    sequencer->patternStore.replay(*sequencer);
    sequencer->setParameter(Tag::SynthOn, 0.0f);
}

void SequencerPlayer::start(double beats)
{
    transport.position = beats;
    transport.playing = true;
}

void SequencerPlayer::cycle(double from, double to)
{
    transport.loopOn = true;
    transport.loopStart = from;
    transport.loopEnd = to;
}

void SequencerPlayer::send(int status, int data1, int data2, int at)
{
    pending.push_back({at,
        {static_cast<uint8_t>(status), static_cast<uint8_t>(data1), static_cast<uint8_t>(data2)}});
}

void SequencerPlayer::play(int64_t frames)
{
    float left[kMostBlock];
    float right[kMostBlock];
    while (frames > 0) {
        const int count = static_cast<int>(std::min<int64_t>(frames, block));
        for (const MidiEvent& event : sequencer->process(&transport, pending, left, right, count))
            out.push_back({frame + event.frame, event.bytes[0], event.bytes[1], event.bytes[2]});
        pending.clear();
        keepSound(left, right, count);
        frame += count;
        frames -= count;
        if (!transport.playing)
            continue;
        transport.position += count * transport.tempo / (60.0 * rate);
        if (transport.loopOn && transport.position >= transport.loopEnd)
            transport.position -= transport.loopEnd - transport.loopStart;
    }
}

void SequencerPlayer::playBeats(double count)
{
    play(static_cast<int64_t>(count * 60.0 / transport.tempo * rate));
}

std::vector<int> SequencerPlayer::stepTicks(int count)
{
    if (!transport.playing)
        start();
    while (static_cast<int>(noteOns().size()) < count && frame < 44100 * 60)
        play(block);
    return ticksOf(count);
}

} // namespace ormund
