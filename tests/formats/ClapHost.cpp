#include "tests/formats/FormatHost.h"

#include <clap/entry.h>
#include <clap/ext/gui.h>
#include <clap/ext/note-ports.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>
#include <clap/plugin-factory.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <dlfcn.h>
#include <stdexcept>

namespace ormund {

namespace {
// A state is a row of texts with zeros between them; this one is the key, the chunk comes next.
constexpr std::string_view kKey{"chunk\0", 6};

struct Stream {
    std::string bytes;
    size_t piece;
    size_t read = 0;
};
int64_t writeStream(const clap_ostream_t* stream, const void* data, uint64_t size)
{
    auto* to = static_cast<Stream*>(stream->ctx);
    const size_t count = std::min<size_t>(size, to->piece);
    to->bytes.append(static_cast<const char*>(data), count);
    return static_cast<int64_t>(count);
}
int64_t readStream(const clap_istream_t* stream, void* to, uint64_t size)
{
    auto* from = static_cast<Stream*>(stream->ctx);
    const size_t count =
        std::min({static_cast<size_t>(size), from->piece, from->bytes.size() - from->read});
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
        host.host_data = this;
        host.get_extension = extension;
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
        closeEditor();
        plugin->stop_processing(plugin);
        plugin->deactivate(plugin);
        plugin->destroy(plugin);
        entry->deinit();
        dlclose(library);
    }

    void setParameter(int index, float value) override { automate(index, value, 0); }
    void automate(int index, float value, int at) override
    {
        InEvent event{};
        event.value.header = {sizeof(event.value), static_cast<uint32_t>(at),
            CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_PARAM_VALUE, 0};
        event.value.note_id = event.value.port_index = event.value.channel = event.value.key = -1;
        event.value.param_id = static_cast<clap_id>(index);
        event.value.value = static_cast<double>(value);
        in.push_back(event);
    }
    int64_t tail() override
    {
        struct Tail {
            uint32_t (*get)(const clap_plugin_t*);
        };
        const auto* known = static_cast<const Tail*>(plugin->get_extension(plugin, "clap.tail"));
        return known ? known->get(plugin) : 0;
    }

    std::string midiPortName(bool isInput) override
    {
        const auto* ports = static_cast<const clap_plugin_note_ports_t*>(
            plugin->get_extension(plugin, CLAP_EXT_NOTE_PORTS));
        clap_note_port_info_t info{};
        return ports && ports->get(plugin, 0, isInput, &info) ? info.name : "";
    }

    bool openEditor(unsigned long parent) override
    {
        gui = static_cast<const clap_plugin_gui_t*>(plugin->get_extension(plugin, CLAP_EXT_GUI));
        timer = static_cast<const clap_plugin_timer_support_t*>(
            plugin->get_extension(plugin, CLAP_EXT_TIMER_SUPPORT));
        if (!gui || !gui->create(plugin, CLAP_WINDOW_API_X11, false))
            return false;
        uint32_t size[2] = {};
        gui->get_size(plugin, &size[0], &size[1]);
        resized(size[0], size[1]);
        clap_window_t window{};
        window.api = CLAP_WINDOW_API_X11;
        window.x11 = parent;
        return gui->set_parent(plugin, &window) && gui->show(plugin);
    }
    void idleEditor() override
    {
        if (ticking)
            timer->on_timer(plugin, kTimer);
    }
    bool dragTo(int wide, int high) override
    {
        uint32_t size[2] = {static_cast<uint32_t>(wide), static_cast<uint32_t>(high)};
        if (!gui->can_resize(plugin) || !gui->adjust_size(plugin, &size[0], &size[1])
            || !gui->set_size(plugin, size[0], size[1]))
            return false;
        resized(size[0], size[1]);
        return true;
    }
    void closeEditor() override
    {
        if (gui)
            gui->destroy(plugin);
        gui = nullptr;
    }

    std::string saveBytes() override
    {
        Stream stream{{}, piece};
        const clap_ostream_t out{&stream, writeStream};
        return state->save(plugin, &out) ? stream.bytes : std::string();
    }
    bool loadBytes(const std::string& bytes) override
    {
        Stream stream{bytes, piece};
        const clap_istream_t from{&stream, readStream};
        return state->load(plugin, &from);
    }
    std::string chunkText() override
    {
        const std::string bytes = saveBytes();
        const size_t at = bytes.find(kKey);
        return at == std::string::npos ? "" : bytes.c_str() + at + kKey.size();
    }
    void restoreChunk(const std::string& text) override { loadBytes(onlyChunk(text)); }

    std::string textOf(int index, float value) override
    {
        char text[256] = {};
        return params()->value_to_text(plugin, static_cast<clap_id>(index),
                   static_cast<double>(value), text, sizeof text)
            ? text
            : "";
    }
    std::optional<float> valueOf(int index, const std::string& text) override
    {
        double value = 0;
        if (!params()->text_to_value(plugin, static_cast<clap_id>(index), text.c_str(), &value))
            return {};
        return static_cast<float>(value);
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
        transport.song_pos_beats = beatTime(beat);
        transport.tempo = tempo;
        if (loopTo > loopFrom) {
            transport.flags |= CLAP_TRANSPORT_IS_LOOP_ACTIVE;
            transport.loop_start_beats = beatTime(loopFrom);
            transport.loop_end_beats = beatTime(loopTo);
        }
        transport.tsig_num = static_cast<uint16_t>(beatsPerBar);
        transport.tsig_denom = static_cast<uint16_t>(beatType);

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
    static constexpr clap_id kTimer = 7;

    static clap_beattime beatTime(double beats)
    {
        return std::llround(beats * static_cast<double>(CLAP_BEATTIME_FACTOR));
    }
    const clap_plugin_params_t* params() const
    {
        return static_cast<const clap_plugin_params_t*>(
            plugin->get_extension(plugin, CLAP_EXT_PARAMS));
    }

    void resized(uint32_t newWidth, uint32_t newHeight)
    {
        width = static_cast<int>(newWidth);
        height = static_cast<int>(newHeight);
    }
    static const void* extension(const clap_host_t*, const char* id)
    {
        static const clap_host_gui_t window{[](const clap_host_t*) {},
            [](const clap_host_t* asking, uint32_t wide, uint32_t high) {
                static_cast<ClapHost*>(asking->host_data)->resized(wide, high);
                return true;
            },
            [](const clap_host_t*) { return true; }, [](const clap_host_t*) { return true; },
            [](const clap_host_t*, bool) {}};
        static const clap_host_timer_support_t timers{
            [](const clap_host_t* asking, uint32_t, clap_id* timerId) {
                *timerId = kTimer;
                return static_cast<ClapHost*>(asking->host_data)->ticking = true;
            },
            [](const clap_host_t* asking, clap_id) {
                static_cast<ClapHost*>(asking->host_data)->ticking = false;
                return true;
            }};
        static const clap_host_state_t states{[](const clap_host_t* asking) {
            ++static_cast<ClapHost*>(asking->host_data)->markedDirty;
        }};
        if (std::strcmp(id, CLAP_EXT_GUI) == 0)
            return &window;
        if (std::strcmp(id, CLAP_EXT_STATE) == 0)
            return &states;
        return std::strcmp(id, CLAP_EXT_TIMER_SUPPORT) == 0 ? &timers : nullptr;
    }

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
        if (header->type == CLAP_EVENT_PARAM_GESTURE_BEGIN)
            self->edits.push_back({Edit::Begin, gestureIndex(header), 0});
        else if (header->type == CLAP_EVENT_PARAM_GESTURE_END)
            self->edits.push_back({Edit::End, gestureIndex(header), 0});
        else if (header->type == CLAP_EVENT_PARAM_VALUE) {
            const auto* moved = reinterpret_cast<const clap_event_param_value_t*>(header);
            self->edits.push_back(
                {Edit::Value, static_cast<int>(moved->param_id), static_cast<float>(moved->value)});
        }
        return true;
    }
    static int gestureIndex(const clap_event_header_t* header)
    {
        return static_cast<int>(
            reinterpret_cast<const clap_event_param_gesture_t*>(header)->param_id);
    }

    void* library = nullptr;
    const clap_plugin_entry_t* entry = nullptr;
    const clap_plugin_t* plugin = nullptr;
    const clap_plugin_state_t* state = nullptr;
    clap_host_t host{};
    const clap_plugin_gui_t* gui = nullptr;
    const clap_plugin_timer_support_t* timer = nullptr;
    bool ticking = false;
    std::vector<InEvent> in;
};
} // namespace

std::unique_ptr<FormatHost> makeClapHost() { return std::make_unique<ClapHost>(); }

} // namespace ormund
