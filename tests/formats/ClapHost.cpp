#include "tests/formats/FormatHost.h"

#include <clap/entry.h>
#include <clap/ext/state.h>
#include <clap/plugin-factory.h>

#include <cmath>
#include <cstring>
#include <dlfcn.h>
#include <stdexcept>

namespace {
// A state is a row of texts with zeros between them; this one is the key, the chunk comes next.
constexpr std::string_view kKey{"chunk\0", 6};

struct Stream {
    std::string bytes;
    size_t read = 0;
};
int64_t writeStream(const clap_ostream_t* stream, const void* data, uint64_t size)
{
    static_cast<Stream*>(stream->ctx)->bytes.append(static_cast<const char*>(data), size);
    return static_cast<int64_t>(size);
}
int64_t readStream(const clap_istream_t* stream, void* to, uint64_t size)
{
    auto* from = static_cast<Stream*>(stream->ctx);
    const size_t count = std::min<size_t>(size, from->bytes.size() - from->read);
    std::memcpy(to, from->bytes.data() + from->read, count);
    from->read += count;
    return static_cast<int64_t>(count);
}

union InEvent {
    clap_event_header_t header;
    clap_event_midi_t midi;
    clap_event_param_value_t value;
};
uint32_t inCount(const clap_input_events_t* list)
{
    return static_cast<uint32_t>(static_cast<std::vector<InEvent>*>(list->ctx)->size());
}
const clap_event_header_t* inEvent(const clap_input_events_t* list, uint32_t index)
{
    return &(*static_cast<std::vector<InEvent>*>(list->ctx))[index].header;
}

class ClapHost final : public FormatHost {
public:
    ClapHost()
    {
        const std::string path = ORMUND_BIN_DIR "/ormund.clap";
        library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!library)
            throw std::runtime_error(dlerror());
        entry = static_cast<const clap_plugin_entry_t*>(dlsym(library, "clap_entry"));
        entry->init(path.c_str());
        const auto* factory =
            static_cast<const clap_plugin_factory_t*>(entry->get_factory(CLAP_PLUGIN_FACTORY_ID));
        host.clap_version = CLAP_VERSION;
        host.name = "test";
        host.vendor = host.url = host.version = "";
        host.get_extension = [](const clap_host_t*, const char*) -> const void* { return nullptr; };
        host.request_restart = host.request_process =
            host.request_callback = [](const clap_host_t*) {};
        plugin =
            factory->create_plugin(factory, &host, factory->get_plugin_descriptor(factory, 0)->id);
        plugin->init(plugin);
        plugin->activate(plugin, kRate, 1, kMostBlock);
        plugin->start_processing(plugin);
        state =
            static_cast<const clap_plugin_state_t*>(plugin->get_extension(plugin, CLAP_EXT_STATE));
    }
    ~ClapHost() override
    {
        plugin->stop_processing(plugin);
        plugin->deactivate(plugin);
        plugin->destroy(plugin);
        entry->deinit();
        dlclose(library);
    }

    void setBypass(bool on) override
    {
        InEvent event{};
        event.value.header = {
            sizeof(event.value), 0, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_PARAM_VALUE, 0};
        event.value.note_id = event.value.port_index = event.value.channel = event.value.key = -1;
        event.value.value = on ? 1 : 0;
        in.push_back(event);
    }

    std::string chunkText() override
    {
        Stream stream;
        const clap_ostream_t out{&stream, writeStream};
        if (!state->save(plugin, &out))
            return {};
        const size_t at = stream.bytes.find(kKey);
        return at == std::string::npos ? "" : stream.bytes.c_str() + at + kKey.size();
    }
    void restoreChunk(const std::string& text) override
    {
        // What the plug-in saves, with another chunk in it and no parameters.
        Stream stream;
        for (const std::string& word : {std::string("__dpf_state_begin__"), std::string("chunk"),
                 text, std::string("__dpf_state_end__")})
            stream.bytes += word + '\0';
        stream.bytes += '\xfe';
        stream.bytes += '\0';
        const clap_istream_t from{&stream, readStream};
        state->load(plugin, &from);
    }

protected:
    void runBlock(int count) override
    {
        for (const MidiOut& midi : pending) {
            InEvent event{};
            event.midi.header = {sizeof(event.midi), static_cast<uint32_t>(midi.frame),
                CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_MIDI, 0};
            event.midi.data[0] = static_cast<uint8_t>(midi.status);
            event.midi.data[1] = static_cast<uint8_t>(midi.data1);
            event.midi.data[2] = static_cast<uint8_t>(midi.data2);
            in.push_back(event);
        }
        clap_event_transport_t transport{};
        transport.header = {
            sizeof(transport), 0, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_TRANSPORT, 0};
        transport.flags = CLAP_TRANSPORT_HAS_TEMPO | CLAP_TRANSPORT_HAS_BEATS_TIMELINE
            | CLAP_TRANSPORT_HAS_TIME_SIGNATURE
            | (playing ? uint32_t{CLAP_TRANSPORT_IS_PLAYING} : 0u);
        transport.song_pos_beats = std::llround(beat * static_cast<double>(CLAP_BEATTIME_FACTOR));
        transport.tempo = tempo;
        transport.tsig_num = transport.tsig_denom = 4;

        float* channels[] = {leftBlock, rightBlock};
        clap_audio_buffer_t output{};
        output.data32 = channels;
        output.channel_count = 2;
        const clap_input_events_t inList{&in, inCount, inEvent};
        const clap_output_events_t outList{this, push};
        clap_process_t process{};
        process.steady_time = frame;
        process.frames_count = static_cast<uint32_t>(count);
        process.transport = &transport;
        process.audio_outputs = &output;
        process.audio_outputs_count = 1;
        process.in_events = &inList;
        process.out_events = &outList;
        plugin->process(plugin, &process);
        in.clear();
    }

private:
    static bool push(const clap_output_events_t* list, const clap_event_header_t* header)
    {
        auto* self = static_cast<ClapHost*>(list->ctx);
        const int64_t at = self->frame + header->time;
        if (header->type == CLAP_EVENT_MIDI) {
            const auto* midi = reinterpret_cast<const clap_event_midi_t*>(header);
            self->events.push_back({at, midi->data[0], midi->data[1], midi->data[2]});
        } else if (header->type == CLAP_EVENT_NOTE_ON || header->type == CLAP_EVENT_NOTE_OFF) {
            const auto* note = reinterpret_cast<const clap_event_note_t*>(header);
            self->events.push_back({at, 0x90 + note->channel, note->key,
                header->type == CLAP_EVENT_NOTE_ON
                    ? static_cast<int>(std::lround(note->velocity * 127))
                    : 0});
        }
        return true;
    }

    void* library = nullptr;
    const clap_plugin_entry_t* entry = nullptr;
    const clap_plugin_t* plugin = nullptr;
    const clap_plugin_state_t* state = nullptr;
    clap_host_t host{};
    std::vector<InEvent> in;
};
} // namespace

std::unique_ptr<FormatHost> makeClapHost() { return std::make_unique<ClapHost>(); }
