// Blocks, and what goes in and out of them.
#include "host/formats/Vst3Plugin.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {
constexpr int kNoteOff = 0x80;
constexpr int kNoteOn = 0x90;
constexpr int kMostBend = 16383;

uint8_t sevenBits(double part)
{
    return std::isfinite(part) ? static_cast<uint8_t>(std::lround(std::clamp(part, 0.0, 1.0) * 127))
                               : uint8_t{0};
}
} // namespace

void Vst3Plugin::process(const v3_process_data& data)
{
    takeChanges(data.input_params, data.nframes);
    takeEvents(data.input_events, data.nframes);
    float* channels[2] = {};
    if (data.outputs && data.num_output_buses > 0 && data.outputs->channel_buffers_32) {
        for (int i = 0; i < std::min(data.outputs->num_channels, 2); ++i)
            channels[i] = data.outputs->channel_buffers_32[i];
        data.outputs->channel_silence_bitset = 0;
    }
    out = data.output_events;
    const SongPlace place = placeOf(data.ctx, data.nframes);
    wrapper.run(&place, channels, data.nframes);
    out = nullptr;
}

void Vst3Plugin::takeChanges(v3_param_changes** changes, int frames)
{
    const int32_t count = changes ? v3_cpp_obj(changes)->get_param_count(changes) : 0;
    for (int32_t i = 0; i < count; ++i) {
        v3_param_value_queue** queue = v3_cpp_obj(changes)->get_param_data(changes, i);
        if (!queue)
            continue;
        const v3_param_id id = v3_cpp_obj(queue)->get_param_id(queue);
        const int32_t points = v3_cpp_obj(queue)->get_point_count(queue);
        for (int32_t k = 0; k < points; ++k) {
            int32_t frame = 0;
            double value = 0;
            if (v3_cpp_obj(queue)->get_point(queue, k, &frame, &value) == V3_OK
                && std::isfinite(value))
                takeChange(id, std::clamp(frame, 0, frames), std::clamp(value, 0.0, 1.0));
        }
    }
}

void Vst3Plugin::takeChange(uint32_t id, int frame, double value)
{
    if (id >= vst3::kIds)
        return;
    if (vst3::isMidi(id)) {
        const auto channel = static_cast<int>(id) / vst3::kControllers;
        const auto which = static_cast<int>(id) % vst3::kControllers;
        controllers[id] = static_cast<float>(value);
        uint8_t bytes[3] = {
            static_cast<uint8_t>(0xB0 | channel), static_cast<uint8_t>(which), sevenBits(value)};
        if (which == vst3::kPressure) {
            bytes[0] = static_cast<uint8_t>(0xD0 | channel);
            bytes[1] = sevenBits(value);
        } else if (which == vst3::kBend) {
            const auto bend = static_cast<int>(std::lround(value * kMostBend));
            bytes[0] = static_cast<uint8_t>(0xE0 | channel);
            bytes[1] = static_cast<uint8_t>(bend & 0x7F);
            bytes[2] = static_cast<uint8_t>(bend >> 7);
        }
        wrapper.queueMidi(frame, bytes, sizeof bytes);
    } else if (const int number = vst3::numberOf(id); number == kBypassNumber) {
        wrapper.setBypass(value >= 0.5);
    } else {
        wrapper.queueParameter(frame, tagOfNumber(number), static_cast<float>(value));
    }
}

void Vst3Plugin::takeEvents(v3_event_list** events, int frames)
{
    const uint32_t count = events ? v3_cpp_obj(events)->get_event_count(events) : 0;
    for (uint32_t i = 0; i < count; ++i) {
        v3_event event{};
        if (v3_cpp_obj(events)->get_event(events, static_cast<int32_t>(i), &event) != V3_OK
            || event.bus_index != 0)
            continue;
        const bool starts = event.type == V3_EVENT_NOTE_ON;
        if (!starts && event.type != V3_EVENT_NOTE_OFF)
            continue;
        const int channel = starts ? event.note_on.channel : event.note_off.channel;
        const int pitch = starts ? event.note_on.pitch : event.note_off.pitch;
        const uint8_t velocity = sevenBits(
            static_cast<double>(starts ? event.note_on.velocity : event.note_off.velocity));
        if (channel < 0 || channel >= vst3::kChannels || pitch < 0 || pitch > 127)
            continue;
        const uint8_t bytes[] = {static_cast<uint8_t>((starts ? kNoteOn : kNoteOff) | channel),
            static_cast<uint8_t>(pitch), velocity};
        wrapper.queueMidi(std::clamp(event.sample_offset, 0, frames), bytes, sizeof bytes);
    }
}

SongPlace Vst3Plugin::placeOf(const v3_process_context* context, int frames)
{
    SongPlace place;
    if (!context)
        return place;
    const auto has = [context](uint32_t flag) { return (context->state & flag) != 0; };
    if (has(V3_PROCESS_CTX_TEMPO_VALID) && std::isfinite(context->bpm) && context->bpm > 0)
        tempo = context->bpm;
    place.tempo = tempo;
    place.playing = has(V3_PROCESS_CTX_PLAYING);
    place.valid = true;
    place.quarters =
        has(V3_PROCESS_CTX_PROJECT_TIME_VALID) ? context->project_time_quarters : freeQuarters;
    if (has(V3_PROCESS_CTX_BAR_POSITION_VALID))
        place.barStart = context->bar_position_quarters;
    if (has(V3_PROCESS_CTX_TIME_SIG_VALID) && context->time_sig_numerator > 0
        && context->time_sig_denom > 0) {
        place.numerator = context->time_sig_numerator;
        place.denominator = context->time_sig_denom;
    }
    if (has(V3_PROCESS_CTX_CYCLE_VALID) && has(V3_PROCESS_CTX_CYCLE_ACTIVE)) {
        place.loopStart = context->cycle_start_quarters;
        place.loopEnd = context->cycle_end_quarters;
        place.loopOn = place.loopEnd > place.loopStart;
    }
    freeQuarters = place.after(frames, rate).quarters;
    return place;
}

// The format has events for notes; everything else goes out as a controller of its own numbering.
void Vst3Plugin::midiOut(const VstMidiEvent& midi)
{
    if (!out)
        return;
    const uint8_t* bytes = midi.midiData;
    const int kind = bytes[0] & 0xF0;
    const auto channel = static_cast<int16_t>(bytes[0] & 0x0F);
    v3_event event{};
    event.sample_offset = std::max(midi.deltaFrames, 0);
    const auto asController = [&event, channel](int number, int value, int more) {
        event.type = V3_EVENT_LEGACY_MIDI_CC_OUT;
        event.midi_cc_out = {static_cast<uint8_t>(number), static_cast<int8_t>(channel),
            static_cast<int8_t>(value), static_cast<int8_t>(more)};
    };
    switch (kind) {
    case kNoteOn:
    case kNoteOff:
        if (kind == kNoteOn && bytes[2] > 0) {
            event.type = V3_EVENT_NOTE_ON;
            event.note_on = {channel, bytes[1], 0, static_cast<float>(bytes[2]) / 127.0f, 0, -1};
        } else {
            event.type = V3_EVENT_NOTE_OFF;
            event.note_off = {channel, bytes[1], 0, -1, 0};
        }
        break;
    case 0xB0:
        asController(bytes[1], bytes[2], 0);
        break;
    case 0xC0:
        asController(vst3::kProgram, bytes[1], 0);
        break;
    case 0xD0:
        asController(vst3::kPressure, bytes[1], 0);
        break;
    case 0xE0:
        asController(vst3::kBend, bytes[1], bytes[2]);
        break;
    default:
        return;
    }
    v3_cpp_obj(out)->add_event(out, &event);
}

} // namespace ormund
