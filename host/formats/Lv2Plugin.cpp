#include "host/formats/Lv2Plugin.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <lv2/atom/util.h>
#include <lv2/midi/midi.h>

namespace ormund {

namespace {
constexpr uint32_t kMostFrames = 1 << 24;

const LV2_URID_Map* mapOf(const LV2_Feature* const* features)
{
    for (; features && *features; ++features)
        if (std::strcmp((*features)->URI, LV2_URID__map) == 0)
            return static_cast<const LV2_URID_Map*>((*features)->data);
    return nullptr;
}
} // namespace

Lv2Plugin::Urids::Urids(const LV2_URID_Map& map)
    : midi(map.map(map.handle, LV2_MIDI__MidiEvent))
    , string(map.map(map.handle, LV2_ATOM__String))
    , stateChanged(map.map(map.handle, LV2_STATE__StateChanged))
    , chunk(map.map(map.handle, lv2::kChunkKey))
{
}

Lv2Plugin::Lv2Plugin(double rate, const LV2_URID_Map& map)
    : urids(map), wrapper(*this, rate), time(rate, map), loops(rate)
{
    LV2_URID_Map ids = map;
    lv2_atom_forge_init(&forge, &ids);
    for (int number = 0; number < kFormatParameters; ++number)
        seen[static_cast<size_t>(number)] = wrapper.value(number);
}

const LV2_Descriptor Lv2Plugin::descriptor = {
    .URI = lv2::kLv2Uri,
    .instantiate = [](const LV2_Descriptor*, double rate, const char*,
                       const LV2_Feature* const* features) -> LV2_Handle {
        const LV2_URID_Map* map = mapOf(features);
        return map && map->map ? new Lv2Plugin(rate, *map) : nullptr;
    },
    .connect_port = [](LV2_Handle self, uint32_t port,
                        void* data) { of(self).connect(port, data); },
    .activate = [](LV2_Handle self) { of(self).wrapper.resume(); },
    .run = [](LV2_Handle self,
               uint32_t frames) { of(self).run(static_cast<int>(std::min(frames, kMostFrames))); },
    .deactivate = [](LV2_Handle self) { of(self).wrapper.suspend(); },
    .cleanup = [](LV2_Handle self) { delete &of(self); },
    .extension_data = [](const char* uri) { return extension(uri); },
};

const void* Lv2Plugin::extension(const char* uri)
{
    static const LV2_State_Interface state{
        [](LV2_Handle self, LV2_State_Store_Function store, LV2_State_Handle handle, uint32_t,
            const LV2_Feature* const*) { return of(self).save(store, handle); },
        [](LV2_Handle self, LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle, uint32_t,
            const LV2_Feature* const*) { return of(self).restore(retrieve, handle); }};
    return std::strcmp(uri, LV2_STATE__interface) == 0 ? &state : nullptr;
}

void Lv2Plugin::connect(uint32_t port, void* data)
{
    if (port == lv2::kLeft || port == lv2::kRight)
        outputs[port] = static_cast<float*>(data);
    else if (port == lv2::kEventsIn)
        in = static_cast<const LV2_Atom_Sequence*>(data);
    else if (port == lv2::kEventsOut)
        out = static_cast<LV2_Atom_Sequence*>(data);
    else if (lv2::isControl(port))
        controls[static_cast<size_t>(lv2::numberOf(port))] = static_cast<const float*>(data);
}

void Lv2Plugin::run(int frames)
{
    beginOutput();
    takeControls();
    int from = 0;
    if (in)
        LV2_ATOM_SEQUENCE_FOREACH(in, event)
        {
            const auto at = static_cast<int>(
                std::clamp<int64_t>(event->time.frames, from, std::max(frames, from)));
            if (event->body.type == urids.midi) {
                if (event->body.size >= 1 && event->body.size <= 3)
                    wrapper.queueMidi(at - from, reinterpret_cast<const uint8_t*>(event + 1),
                        static_cast<int>(event->body.size));
                continue;
            }
            if (const auto reported = time.read(event->body)) {
                if (at > from)
                    playPart(from, at);
                from = at;
                time.moveTo(*reported);
            }
        }
    playPart(from, frames);
    if (wrapper.takeEdit())
        sendStateChanged();
    if (isForging)
        lv2_atom_forge_pop(&forge, &sequence);
    isForging = false;
}

void Lv2Plugin::takeControls()
{
    const bool ignoresThem = stateRules.exchange(0) != 0;
    for (int number = 0; number < kFormatParameters; ++number) {
        const auto at = static_cast<size_t>(number);
        if (!controls[at] || !std::isfinite(*controls[at]))
            continue;
        const float value = lv2::swapped(number, std::clamp(*controls[at], 0.0f, 1.0f));
        if (value == seen[at])
            continue;
        seen[at] = value;
        if (!ignoresThem || !isInChunk(number))
            wrapper.setValue(number, value);
    }
}

void Lv2Plugin::playPart(int from, int to)
{
    partStart = from;
    const SongPlace place = loops.follow(time.place(), to - from);
    float* parts[2] = {};
    for (int channel = 0; channel < 2; ++channel)
        parts[channel] = outputs[channel] ? outputs[channel] + from : nullptr;
    wrapper.run(&place, parts, to - from);
    time.goOn(to - from);
    partStart = 0;
}

// --- what goes out
// --------------------------------------------------------------------------------

void Lv2Plugin::beginOutput()
{
    isForging = out && out->atom.size > sizeof(LV2_Atom_Sequence);
    if (!isForging)
        return;
    const uint32_t room = out->atom.size;
    lv2_atom_forge_set_buffer(&forge, reinterpret_cast<uint8_t*>(out), room);
    lv2_atom_forge_sequence_head(&forge, &sequence, 0);
}

bool Lv2Plugin::hasRoom(uint32_t bytes) const
{
    return isForging && forge.size - forge.offset >= bytes;
}

void Lv2Plugin::midiOut(const VstMidiEvent& event)
{
    const int kind = event.midiData[0] & 0xF0;
    const uint32_t size = kind == 0xC0 || kind == 0xD0 ? 2 : 3;
    if (!hasRoom(sizeof(LV2_Atom_Event) + lv2_atom_pad_size(size)))
        return;
    lv2_atom_forge_frame_time(&forge, partStart + std::max(event.deltaFrames, 0));
    lv2_atom_forge_atom(&forge, size, urids.midi);
    lv2_atom_forge_write(&forge, event.midiData, size);
}

// The host saves only what it knows to be edited.
void Lv2Plugin::sendStateChanged()
{
    if (!hasRoom(sizeof(LV2_Atom_Event) + sizeof(LV2_Atom_Object)))
        return;
    LV2_Atom_Forge_Frame object;
    lv2_atom_forge_frame_time(&forge, partStart);
    lv2_atom_forge_object(&forge, &object, 0, urids.stateChanged);
    lv2_atom_forge_pop(&forge, &object);
}

// --- the state
// ------------------------------------------------------------------------------------

LV2_State_Status Lv2Plugin::save(LV2_State_Store_Function store, LV2_State_Handle handle)
{
    const std::string text = wrapper.state();
    // With the zero behind it, which some hosts need though the type is a text.
    return store(handle, urids.chunk, text.c_str(), text.size() + 1, urids.string,
        LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status Lv2Plugin::restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle)
{
    size_t size = 0;
    uint32_t type = 0;
    uint32_t flags = 0;
    const auto* text =
        static_cast<const char*>(retrieve(handle, urids.chunk, &size, &type, &flags));
    if (!text)
        return LV2_STATE_ERR_NO_PROPERTY;
    if (type != urids.string)
        return LV2_STATE_ERR_BAD_TYPE;
    if (!wrapper.setState({text, strnlen(text, size)}))
        return LV2_STATE_ERR_UNKNOWN;
    stateRules = 1;
    return LV2_STATE_SUCCESS;
}

} // namespace ormund

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(uint32_t index)
{
    return index == 0 ? &ormund::Lv2Plugin::descriptor : nullptr;
}
