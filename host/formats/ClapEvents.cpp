// Blocks, and what goes in and out of them.
#include "host/formats/ClapPlugin.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {
constexpr int kNoteOff = 0x80;
constexpr int kNoteOn = 0x90;
constexpr int kController = 0xB0;
constexpr int kAllNotesOff = 123;

double quartersOf(clap_beattime beats)
{
    return static_cast<double>(beats) / static_cast<double>(CLAP_BEATTIME_FACTOR);
}

// A host's list may say a record's kind and give less than that record.
template <class Event>
const Event* eventOf(const clap_event_header_t& header)
{
    return header.size >= sizeof(Event) ? reinterpret_cast<const Event*>(&header) : nullptr;
}

template <class Event>
Event makeEvent(uint16_t type, uint32_t frame)
{
    Event event{};
    event.header = {sizeof(Event), frame, CLAP_CORE_EVENT_SPACE_ID, type, 0};
    return event;
}

void send(const clap_output_events_t* out, const clap_event_header_t& header)
{
    if (out && out->try_push)
        out->try_push(out, &header);
}

bool isOurPort(int port) { return port == 0 || port == -1; }
} // namespace

void ClapPlugin::process(const clap_process_t& block)
{
    const auto frames = static_cast<int>(block.frames_count);
    out = block.out_events;
    sendEdits(block.out_events);
    takeEvents(block.in_events, block.frames_count);
    float* channels[2] = {};
    if (block.audio_outputs && block.audio_outputs_count > 0 && block.audio_outputs->data32)
        for (uint32_t i = 0; i < std::min(block.audio_outputs->channel_count, 2u); ++i)
            channels[i] = block.audio_outputs->data32[i];
    const SongPlace place = placeOf(block.transport, block.frames_count);
    wrapper->run(&place, channels, frames);
    out = nullptr;
}

void ClapPlugin::flush(const clap_input_events_t* in, const clap_output_events_t* outgoing)
{
    out = outgoing;
    sendEdits(outgoing);
    takeEvents(in, 0);
    float* none[2] = {};
    wrapper->run(nullptr, none, 0);
    out = nullptr;
}

void ClapPlugin::takeEvents(const clap_input_events_t* in, uint32_t frames)
{
    const uint32_t count = in && in->size && in->get ? in->size(in) : 0;
    for (uint32_t i = 0; i < count; ++i) {
        const clap_event_header_t* header = in->get(in, i);
        if (header && header->space_id == CLAP_CORE_EVENT_SPACE_ID)
            takeEvent(*header, static_cast<int>(std::min(header->time, frames)));
    }
}

void ClapPlugin::takeEvent(const clap_event_header_t& header, int frame)
{
    switch (header.type) {
    case CLAP_EVENT_NOTE_ON:
    case CLAP_EVENT_NOTE_OFF:
    case CLAP_EVENT_NOTE_CHOKE: {
        const auto* note = eventOf<clap_event_note_t>(header);
        if (!note || !isOurPort(note->port_index) || note->key > 127 || note->channel > 15)
            return;
        const bool starts = header.type == CLAP_EVENT_NOTE_ON;
        const auto channel = static_cast<uint8_t>(std::max<int>(note->channel, 0));
        const double level = std::isfinite(note->velocity) ? note->velocity : 0.0;
        // A note on of velocity 0 would be its end.
        const auto velocity =
            static_cast<uint8_t>(std::clamp(std::lround(level * 127), starts ? 1L : 0L, 127L));
        if (note->key >= 0) {
            const uint8_t bytes[] = {static_cast<uint8_t>((starts ? kNoteOn : kNoteOff) | channel),
                static_cast<uint8_t>(note->key), velocity};
            wrapper->queueMidi(frame, bytes, sizeof bytes);
        } else if (!starts) { // every key's
            const uint8_t bytes[] = {kController, kAllNotesOff, 0};
            wrapper->queueMidi(frame, bytes, sizeof bytes);
        }
        return;
    }
    case CLAP_EVENT_MIDI:
        if (const auto* midi = eventOf<clap_event_midi_t>(header);
            midi && midi->port_index == 0 && midi->data[0] >= kNoteOff && midi->data[0] < 0xF0)
            wrapper->queueMidi(frame, midi->data, sizeof midi->data);
        return;
    case CLAP_EVENT_PARAM_VALUE: {
        const auto* change = eventOf<clap_event_param_value_t>(header);
        if (!change || change->param_id >= kFormatParameters || !std::isfinite(change->value))
            return;
        const auto number = static_cast<int>(change->param_id);
        const auto value = static_cast<float>(std::clamp(change->value, 0.0, 1.0));
        if (number == kBypassNumber)
            wrapper->setBypass(value >= 0.5f);
        else
            wrapper->queueParameter(frame, tagOfNumber(number), value);
        return;
    }
    default:
        return;
    }
}

void ClapPlugin::sendEdits(const clap_output_events_t* to)
{
    while (const auto edit = edits.take()) {
        if (edit->kind == HostEdit::Value) {
            auto event = makeEvent<clap_event_param_value_t>(CLAP_EVENT_PARAM_VALUE, 0);
            event.param_id = edit->number;
            event.note_id = event.port_index = event.channel = event.key = -1;
            event.value = static_cast<double>(edit->value);
            send(to, event.header);
        } else {
            auto event = makeEvent<clap_event_param_gesture_t>(edit->kind == HostEdit::Begin
                    ? CLAP_EVENT_PARAM_GESTURE_BEGIN
                    : CLAP_EVENT_PARAM_GESTURE_END,
                0);
            event.param_id = edit->number;
            send(to, event.header);
        }
    }
}

SongPlace ClapPlugin::placeOf(const clap_event_transport_t* transport, uint32_t frames)
{
    SongPlace place;
    if (!transport || transport->header.size < sizeof *transport)
        return place;
    const auto has = [transport](uint32_t flag) { return (transport->flags & flag) != 0; };
    if (has(CLAP_TRANSPORT_HAS_TEMPO) && std::isfinite(transport->tempo) && transport->tempo > 0)
        tempo = transport->tempo;
    place.tempo = tempo;
    place.playing = has(CLAP_TRANSPORT_IS_PLAYING);
    place.valid = true;
    if (has(CLAP_TRANSPORT_HAS_BEATS_TIMELINE)) {
        place.quarters = quartersOf(transport->song_pos_beats);
        place.barStart = quartersOf(transport->bar_start);
        place.loopStart = quartersOf(transport->loop_start_beats);
        place.loopEnd = quartersOf(transport->loop_end_beats);
        place.loopOn = has(CLAP_TRANSPORT_IS_LOOP_ACTIVE) && place.loopEnd > place.loopStart;
    } else if (has(CLAP_TRANSPORT_HAS_SECONDS_TIMELINE)) {
        place.quarters = static_cast<double>(transport->song_pos_seconds)
            / static_cast<double>(CLAP_SECTIME_FACTOR) * tempo / 60.0;
    } else {
        place.quarters = freeQuarters;
    }
    if (has(CLAP_TRANSPORT_HAS_TIME_SIGNATURE) && transport->tsig_num > 0
        && transport->tsig_denom > 0) {
        place.numerator = transport->tsig_num;
        place.denominator = transport->tsig_denom;
    }
    freeQuarters = place.after(static_cast<int>(frames), rate).quarters;
    return place;
}

void ClapPlugin::midiOut(const VstMidiEvent& event)
{
    const auto frame = static_cast<uint32_t>(std::max(event.deltaFrames, 0));
    const uint8_t* bytes = event.midiData;
    const int kind = bytes[0] & 0xF0;
    if (!sendsClapNotes) {
        auto midi = makeEvent<clap_event_midi_t>(CLAP_EVENT_MIDI, frame);
        std::copy_n(bytes, 3, midi.data);
        send(out, midi.header);
    } else if (kind == kNoteOn || kind == kNoteOff) {
        const bool starts = kind == kNoteOn && bytes[2] > 0;
        auto note =
            makeEvent<clap_event_note_t>(starts ? CLAP_EVENT_NOTE_ON : CLAP_EVENT_NOTE_OFF, frame);
        note.note_id = -1;
        note.port_index = 0;
        note.channel = bytes[0] & 0x0F;
        note.key = bytes[1];
        note.velocity = bytes[2] / 127.0;
        send(out, note.header);
    }
}

void ClapPlugin::changedByItself() { host->request_callback(host); }

} // namespace ormund
