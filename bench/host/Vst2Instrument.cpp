#include "apps/host/HostedEffect.h"
#include "bench/host/Instrument.h"

#include <algorithm>
#include <vector>

namespace ormund {

namespace {
constexpr int kMostEvents = 64;
constexpr int kMostChannels = 32;

class Vst2Instrument final : public Instrument, private HostedEffect {
public:
    ~Vst2Instrument() override { close(); }

    bool load(const std::string& path, const std::string& state)
    {
        const Entry entry = loadModule(path);
        if (!entry || !open(entry, kRate, kMostFrames) || effect()->numOutputs > kMostChannels
            || effect()->numInputs > kMostChannels)
            return false;
        if (!state.empty()) {
            std::vector<char> bytes(state.begin(), state.end());
            dispatch(effSetChunk, 0, static_cast<VstIntPtr>(bytes.size()), bytes.data());
        }
        std::fill_n(inputs, kMostChannels, &silence[0]);
        std::fill_n(outputs, kMostChannels, &spare[0]);
        outputs[0] = left;
        outputs[1] = right;
        return true;
    }

    void send(int status, int data1, int data2) override
    {
        if (events.numEvents == kMostEvents)
            return;
        VstMidiEvent& midi = messages[events.numEvents];
        midi = {};
        midi.type = kVstMidiType;
        midi.byteSize = sizeof midi;
        midi.midiData[0] = static_cast<unsigned char>(status);
        midi.midiData[1] = static_cast<unsigned char>(data1);
        midi.midiData[2] = static_cast<unsigned char>(data2);
        events.events[events.numEvents++] = reinterpret_cast<VstEvent*>(&midi);
    }

    void prepare(const Transport& transport, int) override
    {
        time.sampleRate = kRate;
        time.tempo = transport.tempo;
        time.ppqPos = transport.beat;
        time.samplePos = transport.beat * 60.0 / transport.tempo * kRate;
        time.timeSigNumerator = time.timeSigDenominator = 4;
        time.flags = kVstPpqPosValid | kVstTempoValid | kVstTimeSigValid
            | (transport.rolling ? kVstTransportPlaying : 0);
    }
    void process(int frames) override
    {
        if (events.numEvents > 0)
            dispatch(effProcessEvents, 0, 0, events.list());
        effect()->processReplacing(effect(), inputs, outputs, frames);
        events.numEvents = 0;
    }
    int64_t messagesOut() const override { return received; }

private:
    VstIntPtr answer(
        VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) override
    {
        switch (opcode) {
        case audioMasterGetTime:
            return reinterpret_cast<VstIntPtr>(&time);
        case audioMasterProcessEvents:
            received += static_cast<const VstEvents*>(ptr)->numEvents;
            return 1;
        default:
            return HostedEffect::answer(opcode, index, value, ptr, opt);
        }
    }

    VstTimeInfo time{};
    VstMidiEvent messages[kMostEvents];
    VstEventList<kMostEvents> events;
    float silence[kMostFrames]{};
    float spare[kMostFrames]{}; // what further outputs write
    float* inputs[kMostChannels];
    float* outputs[kMostChannels];
    int64_t received = 0;
};
} // namespace

std::unique_ptr<Instrument> loadVst2(const std::string& path, const std::string& state)
{
    auto instrument = std::make_unique<Vst2Instrument>();
    if (!instrument->load(path, state))
        return nullptr;
    return instrument;
}

} // namespace ormund
