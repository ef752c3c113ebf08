// Compiled once for each format.
#include "host/formats/FormatPlugin.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

START_NAMESPACE_DISTRHO

namespace {
constexpr char kStateKey[] = "chunk";
constexpr int kMaxChoices = 255;

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

FormatPlugin::FormatPlugin()
    : Plugin(kFirst + kHostParameters, 0, 1), wrapped(*this, getSampleRate())
{
}

void FormatPlugin::initAudioPort(bool input, uint32_t index, AudioPort& port)
{
    Plugin::initAudioPort(input, index, port);
    port.name = index == 0 ? "Ormund Left" : "Ormund Right";
    port.groupId = kPortGroupStereo;
}

void FormatPlugin::initParameter(uint32_t index, Parameter& parameter)
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
    parameter.ranges.def = wrapped.parameter(tag);
    if (entry.isButton())
        parameter.hints |= kParameterIsInteger | kParameterIsBoolean;
    else
        listChoices(tag, parameter.enumValues);
    // The unit is the mapped value's, and the host shows the raw one.
    parameter.description = std::string(entry.unit).c_str();
}

void FormatPlugin::initState(uint32_t, State& state)
{
    state.key = kStateKey;
    state.label = "Settings";
    state.hints = kStateIsOnlyForDSP;
}

float FormatPlugin::getParameterValue(uint32_t index) const
{
    if (index == kBypass)
        return wrapped.isBypassed() ? 1.0f : 0.0f;
    return wrapped.parameter(static_cast<int>(index - kFirst));
}

void FormatPlugin::setParameterValue(uint32_t index, float value)
{
    if (index == kBypass)
        wrapped.setBypass(value >= 0.5f);
    else
        wrapped.setParameter(static_cast<int>(index - kFirst), value);
}

String FormatPlugin::getState(const char* key) const
{
    return String(std::strcmp(key, kStateKey) == 0 ? wrapped.state().c_str() : "");
}

void FormatPlugin::setState(const char* key, const char* value)
{
    if (value && std::strcmp(key, kStateKey) == 0)
        wrapped.setState(value);
}

void FormatPlugin::run(
    const float**, float** outputs, uint32_t frames, const MidiEvent* events, uint32_t count)
{
    for (uint32_t i = 0; i < count; ++i)
        wrapped.queueMidi(static_cast<int>(std::min(events[i].frame, frames)), events[i].data,
            static_cast<int>(std::min<uint32_t>(events[i].size, uint32_t{MidiEvent::kDataSize})));
    const SongPlace place = follower.follow(barPlace(), static_cast<int>(frames), getSampleRate());
    wrapped.run(&place, outputs, static_cast<int>(frames));
}

BarPlace FormatPlugin::barPlace() const
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

void FormatPlugin::midiOut(const VstMidiEvent& event)
{
    MidiEvent midi;
    midi.frame = static_cast<uint32_t>(std::max(event.deltaFrames, 0));
    const int kind = event.midiData[0] & 0xF0;
    midi.size = kind == 0xC0 || kind == 0xD0 ? 2 : 3;
    std::copy_n(event.midiData, 4, midi.data);
    midi.dataExt = nullptr;
    writeMidiEvent(midi);
}

Plugin* createPlugin() { return new FormatPlugin; }

END_NAMESPACE_DISTRHO
