#include "bench/host/Instrument.h"
#include "host/effect/EffectTypes.h"

#include <cstring>
#include <dlfcn.h>
#include <vector>

namespace {
constexpr int kMostEvents = 64;
constexpr int kMostChannels = 32;

class Vst2Instrument final : public Instrument {
public:
    using Entry = AEffect* (*)(audioMasterCallback);

    bool load(const std::string& path, const std::string& state)
    {
        module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!module)
            return false;
        void* entry = dlsym(module, "VSTPluginMain");
        if (!entry)
            entry = dlsym(module, "main");
        if (!entry)
            return false;
        current = this;
        effect = reinterpret_cast<Entry>(entry)(callback);
        if (!effect || effect->magic != kEffectMagic || effect->numOutputs > kMostChannels
            || effect->numInputs > kMostChannels)
            return false;
        dispatch(effOpen);
        dispatch(effSetSampleRate, 0, 0, nullptr, kRate);
        dispatch(effSetBlockSize, 0, kMostFrames);
        if (!state.empty()) {
            std::vector<char> bytes(state.begin(), state.end());
            dispatch(effSetChunk, 0, static_cast<VstIntPtr>(bytes.size()), bytes.data());
        }
        dispatch(effMainsChanged, 0, 1);
        dispatch(effStartProcess);
        spare.resize(kMostFrames);
        for (int i = 0; i < kMostChannels; ++i) {
            inputs[i] = silence;
            outputs[i] = spare.data();
        }
        outputs[0] = left;
        outputs[1] = right;
        return true;
    }
    ~Vst2Instrument() override
    {
        if (effect) {
            current = this;
            dispatch(effStopProcess);
            dispatch(effMainsChanged, 0, 0);
            dispatch(effClose);
        }
        if (module)
            dlclose(module);
    }

    void send(int status, int data1, int data2) override
    {
        if (events.numEvents == kMostEvents)
            return;
        VstMidiEvent& event = midi[events.numEvents];
        event = {};
        event.type = kVstMidiType;
        event.byteSize = sizeof event;
        event.midiData[0] = static_cast<unsigned char>(status);
        event.midiData[1] = static_cast<unsigned char>(data1);
        event.midiData[2] = static_cast<unsigned char>(data2);
        events.events[events.numEvents++] = reinterpret_cast<VstEvent*>(&event);
    }

    void prepare(const Transport& transport, int) override
    {
        current = this;
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
        effect->processReplacing(effect, inputs, outputs, frames);
        events.numEvents = 0;
    }
    int64_t messagesOut() const override { return received; }

private:
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
        void* ptr = nullptr, float opt = 0)
    {
        return effect->dispatcher(effect, opcode, index, value, ptr, opt);
    }

    static VstIntPtr callback(AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void* ptr, float)
    {
        switch (opcode) {
        case audioMasterVersion:
            return kVstVersion;
        case audioMasterGetTime:
            return reinterpret_cast<VstIntPtr>(&current->time);
        case audioMasterProcessEvents:
            current->received += static_cast<const VstEvents*>(ptr)->numEvents;
            return 1;
        case audioMasterGetSampleRate:
            return kRate;
        case audioMasterGetBlockSize:
            return kMostFrames;
        case audioMasterGetCurrentProcessLevel:
            return kVstProcessLevelRealtime;
        case audioMasterWantMidi:
            return 1;
        default:
            return 0;
        }
    }

    static inline Vst2Instrument* current = nullptr; // whose call is in progress
    void* module = nullptr;
    AEffect* effect = nullptr;
    VstTimeInfo time{};
    VstMidiEvent midi[kMostEvents];
    VstEventList<kMostEvents> events;
    float silence[kMostFrames]{};
    std::vector<float> spare; // what further outputs write
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
