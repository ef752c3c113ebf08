#include "editor/MidiExport.h"

#include "data/music/MidiFile.h"
#include "host/plugin/KWUniClient.h"
#include "host/plugin/WrapperPort.h"

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

// A transport that rolls from the start, and a list of what is played to it.
class Recorder final : public WrapperPort {
public:
    explicit Recorder(double tempo) : samplesPerBeat(kRate * 60.0 / tempo)
    {
        time.sampleRate = kRate;
        time.tempo = tempo;
        time.timeSigNumerator = kBeatsPerBar;
        time.timeSigDenominator = 4;
        file.beatsPerBar = kBeatsPerBar;
        file.tempos.push_back({0, tempo});
    }

    const VstTimeInfo* timeRecord() override
    {
        time.flags = kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstTimeSigValid
            | (rolling ? kVstTransportPlaying : 0) | kVstTransportChanged;
        time.samplePos = double(samples);
        time.ppqPos = double(samples) / samplesPerBeat;
        time.barStartPos = std::floor(time.ppqPos / kBeatsPerBar) * kBeatsPerBar;
        return &time;
    }
    bool hasMidiOutput() const override { return true; }
    void midiOut(const VstMidiEvent& event, double /*songPosition*/) override
    {
        const double beat = double(samples + event.deltaFrames) / samplesPerBeat;
        const auto byte = [&](int i) { return uint8_t(event.midiData[i]); };
        const int kind = byte(0) & 0xF0;
        const bool isNoteOff = kind == 0x80 || (kind == 0x90 && byte(2) == 0);
        if (beat >= lastBeat && !isNoteOff)
            return;
        MidiFileEvent recorded;
        recorded.tick = file.tickOf(std::min(beat, lastBeat));
        recorded.bytes = {byte(0), byte(1), byte(2)};
        recorded.size = kind == 0xC0 || kind == 0xD0 ? 2 : 3;
        file.events.push_back(recorded);
    }

    void play(KWUniClient& engine, double beats, bool roll)
    {
        std::array<float, kBlock> left{};
        std::array<float, kBlock> right{};
        float* outputs[] = {left.data(), right.data()};
        rolling = roll;
        const auto wanted = int64_t(beats * samplesPerBeat);
        for (int64_t done = 0; done < wanted; done += kBlock) {
            const int frames = int(std::min<int64_t>(kBlock, wanted - done));
            engine.processBlock(outputs, frames);
            samples += frames;
        }
    }

    MidiFile file;
    double lastBeat = 0; // what begins behind it is left out, what still sounds ends there

private:
    VstTimeInfo time{};
    double samplesPerBeat;
    int64_t samples = 0;
    bool rolling = false;
};

} // namespace

std::vector<uint8_t> exportMidi(KWUniClient& source, int bars)
{
    void* state = nullptr;
    const VstInt32 bytes = source.getChunk(&state, false);
    auto copy = std::make_unique<KWUniClient>(nullptr);
    Recorder recorder(source.info.tempo);
    copy->setWrapperPort(&recorder);
    copy->setSampleRate(float(kRate));
    if (bytes > 0)
        copy->setChunk(state, bytes, false);
    copy->setParameter(Tag::TriggerMode, kFollowHost);
    copy->setParameter(Tag::Record, 0);
    copy->setParameter(Tag::SynthOn, 0);
    copy->resume();

    recorder.lastBeat = double(std::max(bars, 1) * kBeatsPerBar);
    recorder.play(*copy, recorder.lastBeat, true);
    recorder.play(*copy, kBeatsPerBar * 4, false); // the rest of the sounding notes
    recorder.file.endTick = recorder.file.tickOf(recorder.lastBeat);
    recorder.file.name = "Ormund";
    return recorder.file.write();
}

} // namespace ormund
