// The plug-in as the framework sees it. Compiled once for each format.
#include "host/formats/KWFormatWrapper.h"

#include <DistrhoPlugin.hpp>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

START_NAMESPACE_DISTRHO

namespace {
constexpr uint32_t kBypass = 0;
constexpr uint32_t kFirst = 1; // the host parameters follow
constexpr char kStateKey[] = "chunk";
constexpr int kMaxChoices = 255;

#if defined(DISTRHO_PLUGIN_TARGET_LV2)
constexpr BarRule kBarRule = BarRule::Meter;
#elif defined(DISTRHO_PLUGIN_TARGET_VST3)
constexpr BarRule kBarRule = BarRule::WholeQuarters;
#else
constexpr BarRule kBarRule = BarRule::Numerator;
#endif

std::string symbolOf(std::string_view name)
{
    std::string symbol;
    for (const char c : name)
        symbol += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return symbol;
}

void listChoices(int tag, ParameterEnumerationValues& list)
{
    const int count = std::min(choiceCount(tag), kMaxChoices);
    if (count < 2)
        return;
    auto* values = new ParameterEnumerationValue[static_cast<size_t>(count)];
    for (int i = 0; i < count; ++i) {
        const std::string text(choiceText(tag, i));
        values[i].label = text.c_str();
        values[i].value = parameterFromText(tag, text).value_or(0.0f);
    }
    list.count = static_cast<uint8_t>(count);
    list.values = values;
}
} // namespace

class FormatPlugin final : public Plugin, private KWFormatWrapper::Format {
public:
    FormatPlugin() : Plugin(kFirst + kHostParameters, 0, 1), wrapper(*this, getSampleRate()) { }

protected:
    const char* getLabel() const override { return "Ormund"; }
    const char* getDescription() const override
    {
        return "Performance step sequencer with an eight-voice synth";
    }
    const char* getMaker() const override { return "Kelda Works"; }
    const char* getLicense() const override { return "https://spdx.org/licenses/ISC"; }
    uint32_t getVersion() const override { return d_version(1, 0, 6); }
    int64_t getUniqueId() const override { return KWUniClient::kUniqueId; }

    void initAudioPort(bool input, uint32_t index, AudioPort& port) override
    {
        Plugin::initAudioPort(input, index, port);
        port.name = index == 0 ? "Ormund Left" : "Ormund Right";
        port.groupId = kPortGroupStereo;
    }

    void initParameter(uint32_t index, Parameter& parameter) override
    {
        if (index == kBypass) {
            parameter.initDesignation(kParameterDesignationBypass);
            return;
        }
        const int tag = static_cast<int>(index - kFirst);
        const ParameterEntry& entry = *parameterEntry(tag);
        const std::string name(entry.name);
        parameter.name = name.c_str();
        parameter.symbol = symbolOf(name).c_str();
        parameter.hints = kParameterIsAutomatable;
        parameter.ranges.min = 0.0f;
        parameter.ranges.max = 1.0f;
        parameter.ranges.def = wrapper.parameter(tag);
        if (entry.isButton())
            parameter.hints |= kParameterIsInteger | kParameterIsBoolean;
        else
            listChoices(tag, parameter.enumValues);
        // The unit is the mapped value's, and the host shows the raw one.
        parameter.description = std::string(entry.unit).c_str();
    }

    void initState(uint32_t, State& state) override
    {
        state.key = kStateKey;
        state.label = "Settings";
        state.hints = kStateIsOnlyForDSP;
    }

    float getParameterValue(uint32_t index) const override
    {
        if (index == kBypass)
            return wrapper.isBypassed() ? 1.0f : 0.0f;
        return wrapper.parameter(static_cast<int>(index - kFirst));
    }

    void setParameterValue(uint32_t index, float value) override
    {
        if (index == kBypass)
            wrapper.setBypass(value >= 0.5f);
        else
            wrapper.setParameter(static_cast<int>(index - kFirst), value);
    }

    String getState(const char* key) const override
    {
        return String(std::strcmp(key, kStateKey) == 0 ? wrapper.state().c_str() : "");
    }

    void setState(const char* key, const char* value) override
    {
        if (value && std::strcmp(key, kStateKey) == 0)
            wrapper.setState(value);
    }

    void sampleRateChanged(double rate) override { wrapper.setSampleRate(rate); }
    void activate() override { wrapper.resume(); }
    void deactivate() override { wrapper.suspend(); }

    void run(const float**, float** outputs, uint32_t frames, const MidiEvent* events,
        uint32_t count) override
    {
        for (uint32_t i = 0; i < count; ++i)
            wrapper.queueMidi(static_cast<int>(std::min(events[i].frame, frames)), events[i].data,
                static_cast<int>(std::min<uint32_t>(events[i].size, MidiEvent::kDataSize)));
        const SongPlace place =
            follower.follow(barPlace(), static_cast<int>(frames), getSampleRate());
        wrapper.run(&place, outputs, static_cast<int>(frames));
    }

private:
    BarPlace barPlace() const
    {
        const TimePosition& now = getTimePosition();
        const TimePosition::BarBeatTick& bbt = now.bbt;
        BarPlace place;
        place.playing = now.playing;
        place.frame = static_cast<int64_t>(now.frame);
        place.valid = bbt.valid && bbt.ticksPerBeat > 0;
        if (place.valid) {
            place.bar = bbt.bar;
            place.beat = bbt.beat - 1 + bbt.tick / bbt.ticksPerBeat;
            place.beatsPerBar = static_cast<double>(bbt.beatsPerBar);
            place.beatType = static_cast<double>(bbt.beatType);
            place.tempo = bbt.beatsPerMinute;
        }
        return place;
    }

    void midiOut(const VstMidiEvent& event) override
    {
        MidiEvent midi;
        midi.frame = static_cast<uint32_t>(std::max(event.deltaFrames, 0));
        const int kind = event.midiData[0] & 0xF0;
        midi.size = kind == 0xC0 || kind == 0xD0 ? 2 : 3;
        std::copy_n(event.midiData, 4, midi.data);
        midi.dataExt = nullptr;
        writeMidiEvent(midi);
    }

    // Asking for the state changes nothing, but the effect interface does not say so.
    mutable KWFormatWrapper wrapper;
    SongFollower follower{kBarRule};

    DISTRHO_DECLARE_NON_COPYABLE(FormatPlugin)
};

Plugin* createPlugin() { return new FormatPlugin; }

END_NAMESPACE_DISTRHO
