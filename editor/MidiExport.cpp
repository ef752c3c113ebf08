#include "editor/MidiExport.h"

#include "base/Product.h"
#include "data/music/MidiFile.h"
#include "data/parameters/Tags.h"
#include "data/state/StateReader.h"
#include "engine/Sequencer.h"
#include "host/plugin/KWUniClient.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

namespace ormund {

namespace {

constexpr double kRate = 44100;
constexpr int kBlock = 512;
constexpr int kBeatsPerBar = 4;
constexpr float kFollowHost = 1.0f; // the trigger mode in which the transport plays

// A sequencer of its own, whose transport rolls from the start, and a list of what it plays.
class Recorder {
public:
    Recorder(Sequencer& player, double tempo)
        : sequencer(player), samplesPerBeat(kRate * 60.0 / tempo)
    {
        song.tempo = tempo;
        song.tempoValid = true;
        file.beatsPerBar = kBeatsPerBar;
        file.tempos.push_back({0, tempo});
    }

    void play(double beats, bool roll)
    {
        std::array<float, kBlock> left{};
        std::array<float, kBlock> right{};
        song.playing = roll;
        const auto wanted = int64_t(beats * samplesPerBeat);
        for (int64_t done = 0; done < wanted; done += kBlock) {
            const int frames = int(std::min<int64_t>(kBlock, wanted - done));
            song.position = double(samples) / samplesPerBeat;
            for (const MidiEvent& event :
                sequencer.process(&song, {}, left.data(), right.data(), frames))
                keep(event);
            samples += frames;
        }
    }

    MidiFile file;
    double lastBeat = 0; // what begins behind it is left out, what still sounds ends there

private:
    void keep(const MidiEvent& event)
    {
        const double beat = double(samples + event.frame) / samplesPerBeat;
        const int kind = event.bytes[0] & 0xF0;
        const bool isNoteOff = kind == 0x80 || (kind == 0x90 && event.bytes[2] == 0);
        if (beat >= lastBeat && !isNoteOff)
            return;
        MidiFileEvent recorded;
        recorded.tick = file.tickOf(std::min(beat, lastBeat));
        recorded.bytes = {event.bytes[0], event.bytes[1], event.bytes[2]};
        recorded.size = kind == 0xC0 || kind == 0xD0 ? 2 : 3;
        file.events.push_back(recorded);
    }

    Sequencer& sequencer;
    BlockTransport song;
    double samplesPerBeat;
    int64_t samples = 0;
};

} // namespace

std::vector<uint8_t> exportMidi(KWUniClient& source, int bars)
{
    void* state = nullptr;
    const VstInt32 bytes = source.getChunk(&state, false);
    auto copy = std::make_unique<Sequencer>();
    copy->setSampleRate(float(kRate));
    KWChunk chunk;
    chunk.assign(state, size_t(bytes));
    StateReader(copy->state()).load(chunk, {.force = true});
    copy->setParameter(Tag::TriggerMode, kFollowHost);
    copy->setParameter(Tag::Record, 0);
    copy->setParameter(Tag::SynthOn, 0);

    Recorder recorder(*copy, source.info.tempo);
    recorder.lastBeat = double(std::max(bars, 1) * kBeatsPerBar);
    recorder.play(recorder.lastBeat, true);
    recorder.play(kBeatsPerBar * 4, false); // the rest of the sounding notes
    recorder.file.endTick = recorder.file.tickOf(recorder.lastBeat);
    recorder.file.name = product::kName;
    return recorder.file.write();
}

} // namespace ormund
