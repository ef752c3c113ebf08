#include "tests/formats/FormatHost.h"
#include "tests/formats/Vst3Objects.h"

#include <cmath>
#include <dlfcn.h>
#include <set>
#include <stdexcept>

namespace ormund {

namespace {
constexpr char kModule[] =
    ORMUND_BIN_DIR "/ormund.vst3/Contents/" ORMUND_PROCESSOR "-linux/ormund.so";
constexpr std::string_view kKey{"chunk\0", 6};
constexpr int kPressureController = 128; // the numbers behind those of MIDI
constexpr int kBendController = 129;
constexpr int kProgramController = 130;

class Vst3Host;

struct HandlerTable : v3_funknown {
    v3_component_handler handler;
};
struct SecondHandlerTable : v3_funknown {
    v3_component_handler2 handler;
};
struct Handler : Vst3Object<HandlerTable> {
    Vst3Host* host = nullptr;
    struct Second : Vst3Object<SecondHandlerTable> {
        Vst3Host* host = nullptr;
        Second();
    } second;
    Handler();
};

// The frame of a window and, asked for another interface, the loop that runs its timers.
struct Frame : Vst3Object<v3_plugin_frame_cpp> {
    Vst3Host* host = nullptr;
    struct Loop : Vst3Object<v3_run_loop_cpp> {
        std::set<v3_timer_handler**> timers;
        Loop();
    } loop;
    Frame();
};

class Vst3Host final : public FormatHost {
public:
    Vst3Host()
    {
        handler.host = handler.second.host = this;
        frame_.host = this;
        library = dlopen(kModule, RTLD_NOW | RTLD_LOCAL);
        if (!library)
            throw std::runtime_error(dlerror());
        const auto enter = reinterpret_cast<bool (*)(void*)>(dlsym(library, "ModuleEntry"));
        const auto getFactory =
            reinterpret_cast<const void* (*)()>(dlsym(library, "GetPluginFactory"));
        if (!enter || !getFactory || !enter(library))
            throw std::runtime_error("no VST3 module");
        factory = static_cast<v3_plugin_factory**>(const_cast<void*>(getFactory()));
        v3_class_info info{};
        v3_cpp_obj(factory)->get_class_info(factory, 0, &info);
        create(info.class_id, v3_component_iid, component);
        auto** context = application.as<v3_funknown>();
        v3_cpp_obj_initialize(component, context);
        v3_cpp_obj_query_interface(component, v3_audio_processor_iid, &processor);
        v3_cpp_obj_query_interface(component, v3_edit_controller_iid, &controller);
        if (!processor || !controller)
            throw std::runtime_error("no VST3 processor or controller");
        v3_cpp_obj(controller)
            ->set_component_handler(controller, handler.as<v3_component_handler>());
        for (const int32_t direction : {V3_INPUT, V3_OUTPUT})
            for (const int32_t kind : {V3_AUDIO, V3_EVENT})
                if (v3_cpp_obj(component)->get_bus_count(component, kind, direction) > 0)
                    v3_cpp_obj(component)->activate_bus(component, kind, direction, 0, true);
        v3_process_setup setup{V3_REALTIME, V3_SAMPLE_32, kMostBlock, kRate};
        v3_cpp_obj(processor)->setup_processing(processor, &setup);
        v3_cpp_obj(component)->set_active(component, true);
        v3_cpp_obj(processor)->set_processing(processor, true);
        findParameters();
    }
    ~Vst3Host() override
    {
        closeEditor();
        v3_cpp_obj(processor)->set_processing(processor, false);
        v3_cpp_obj(component)->set_active(component, false);
        v3_cpp_obj(controller)->set_component_handler(controller, nullptr);
        v3_cpp_obj_unref(controller);
        v3_cpp_obj_unref(processor);
        v3_cpp_obj_terminate(component);
        v3_cpp_obj_unref(component);
        v3_cpp_obj_unref(factory);
        if (const auto leave = reinterpret_cast<bool (*)()>(dlsym(library, "ModuleExit")))
            leave();
        dlclose(library);
    }

    void setParameter(int index, float value) override { automate(index, value, 0); }
    void automate(int index, float value, int at) override
    {
        changes.values.emplace_back(first + static_cast<v3_param_id>(index), value, at);
    }
    std::string textOf(int index, float value) override
    {
        v3_str_128 text{};
        v3_cpp_obj(controller)
            ->get_parameter_string_for_value(controller, first + static_cast<v3_param_id>(index),
                static_cast<double>(value), text);
        return narrow(text);
    }
    std::optional<float> valueOf(int index, const std::string& text) override
    {
        std::vector<int16_t> wide(text.begin(), text.end());
        wide.push_back(0);
        double value = 0;
        if (v3_cpp_obj(controller)
                ->get_parameter_value_for_string(
                    controller, first + static_cast<v3_param_id>(index), wide.data(), &value)
            != V3_OK)
            return {};
        return static_cast<float>(value);
    }
    int64_t tail() override { return v3_cpp_obj(processor)->get_tail_samples(processor); }

    std::string midiPortName(bool isInput) override
    {
        v3_bus_info info{};
        v3_cpp_obj(component)->get_bus_info(
            component, V3_EVENT, isInput ? V3_INPUT : V3_OUTPUT, 0, &info);
        return narrow(info.bus_name);
    }

    std::string saveBytes() override
    {
        Vst3Stream stream;
        stream.most = static_cast<int>(piece);
        v3_cpp_obj(component)->get_state(component, stream.as<v3_bstream>());
        return stream.bytes;
    }
    bool loadBytes(const std::string& bytes) override
    {
        Vst3Stream stream;
        stream.most = static_cast<int>(piece);
        stream.bytes = bytes;
        return v3_cpp_obj(component)->set_state(component, stream.as<v3_bstream>()) == V3_OK;
    }
    std::string chunkText() override
    {
        const std::string bytes = saveBytes();
        const size_t at = bytes.find(kKey);
        return at == std::string::npos ? "" : bytes.c_str() + at + kKey.size();
    }
    void restoreChunk(const std::string& text) override { loadBytes(onlyChunk(text)); }

    bool openEditor(unsigned long parent) override
    {
        view = v3_cpp_obj(controller)->create_view(controller, "editor");
        if (!view)
            return false;
        v3_view_rect rect{};
        v3_cpp_obj(view)->set_frame(view, frame_.as<v3_plugin_frame>());
        v3_cpp_obj(view)->get_size(view, &rect);
        width = rect.right - rect.left;
        height = rect.bottom - rect.top;
        connect(true);
        return v3_cpp_obj(view)->attached(
                   view, reinterpret_cast<void*>(parent), V3_VIEW_PLATFORM_TYPE_X11)
            == V3_OK;
    }
    void idleEditor() override
    {
        for (v3_timer_handler** timer : frame_.loop.timers)
            v3_cpp_obj(timer)->on_timer(timer);
    }
    bool dragTo(int wide, int high) override
    {
        v3_view_rect rect{0, 0, wide, high};
        if (v3_cpp_obj(view)->can_resize(view) != V3_TRUE
            || v3_cpp_obj(view)->check_size_constraint(view, &rect) != V3_OK)
            return false;
        resized(view, &rect);
        return true;
    }
    void closeEditor() override
    {
        if (!view)
            return;
        v3_cpp_obj(view)->removed(view);
        connect(false);
        v3_cpp_obj(view)->set_frame(view, nullptr);
        v3_cpp_obj_unref(view);
        view = nullptr;
    }

    void edited(Edit::Kind kind, v3_param_id id, double value)
    {
        edits.push_back({kind, static_cast<int>(id - first), static_cast<float>(value)});
    }
    void resized(v3_plugin_view** which, v3_view_rect* rect)
    {
        width = rect->right - rect->left;
        height = rect->bottom - rect->top;
        v3_cpp_obj(which)->on_size(which, rect);
    }

protected:
    void runBlock(int count) override
    {
        Vst3Events in;
        Vst3Events out;
        for (const MidiOut& midi : pending)
            addEvent(midi, in);
        float* channels[] = {leftBlock, rightBlock};
        v3_audio_bus_buffers bus{};
        bus.num_channels = 2;
        bus.channel_buffers_32 = channels;
        v3_process_context context{};
        context.state = V3_PROCESS_CTX_PROJECT_TIME_VALID | V3_PROCESS_CTX_TEMPO_VALID
            | V3_PROCESS_CTX_TIME_SIG_VALID | (playing ? uint32_t{V3_PROCESS_CTX_PLAYING} : 0u);
        context.sample_rate = kRate;
        context.project_time_in_samples = std::llround(beat * 60 / tempo * kRate);
        context.project_time_quarters = beat;
        context.bpm = tempo;
        if (loopTo > loopFrom) {
            context.state |= V3_PROCESS_CTX_CYCLE_VALID | V3_PROCESS_CTX_CYCLE_ACTIVE;
            context.cycle_start_quarters = loopFrom;
            context.cycle_end_quarters = loopTo;
        }
        context.time_sig_numerator = beatsPerBar;
        context.time_sig_denom = beatType;
        Vst3Changes outChanges;
        v3_process_data data{};
        data.nframes = count;
        data.num_output_buses = 1;
        data.outputs = &bus;
        data.input_params = changes.as<v3_param_changes>();
        data.output_params = outChanges.as<v3_param_changes>();
        data.input_events = in.as<v3_event_list>();
        data.output_events = out.as<v3_event_list>();
        data.ctx = &context;
        v3_cpp_obj(processor)->process(processor, &data);
        changes.values.clear();
        for (const v3_event& event : out.all)
            takeEvent(event);
    }

private:
    static std::string narrow(const int16_t* wide)
    {
        std::string text;
        for (; *wide; ++wide)
            text += static_cast<char>(*wide);
        return text;
    }
    template <class Interface>
    void create(const v3_tuid& id, const v3_tuid& iid, Interface**& object)
    {
        void* made = nullptr;
        v3_cpp_obj(factory)->create_instance(factory, id, iid, &made);
        object = static_cast<Interface**>(made);
        if (!object)
            throw std::runtime_error("no VST3 instance");
    }

    void findParameters()
    {
        const int32_t count = v3_cpp_obj(controller)->get_parameter_count(controller);
        v3_param_info info{};
        for (int32_t i = 0; i < count; ++i) {
            v3_cpp_obj(controller)->get_parameter_info(controller, i, &info);
            if (info.flags & V3_PARAM_IS_BYPASS) {
                first = info.param_id;
                return;
            }
        }
        throw std::runtime_error("no VST3 bypass");
    }

    // Controller and view talk through the two ends of a connection.
    void connect(bool on)
    {
        v3_connection_point** here = nullptr;
        v3_connection_point** there = nullptr;
        v3_cpp_obj_query_interface(controller, v3_connection_point_iid, &here);
        v3_cpp_obj_query_interface(view, v3_connection_point_iid, &there);
        if (here && there) {
            const auto join = [on](v3_connection_point** from, v3_connection_point** to) {
                on ? v3_cpp_obj(from)->connect(from, to) : v3_cpp_obj(from)->disconnect(from, to);
            };
            join(here, there);
            join(there, here);
        }
        for (v3_connection_point** point : {here, there})
            if (point)
                v3_cpp_obj_unref(point);
    }

    void addEvent(const MidiOut& midi, Vst3Events& in)
    {
        if ((midi.status & 0xF0) == 0xB0) { // a controller is a parameter here
            v3_midi_mapping** mapping = nullptr;
            v3_cpp_obj_query_interface(controller, v3_midi_mapping_iid, &mapping);
            v3_param_id id = 0;
            if (mapping
                && v3_cpp_obj(mapping)->get_midi_controller_assignment(
                       mapping, 0, 0, static_cast<int16_t>(midi.data1), &id)
                    == V3_OK)
                changes.values.emplace_back(
                    id, midi.data2 / 127.0, static_cast<int32_t>(midi.frame));
            if (mapping)
                v3_cpp_obj_unref(mapping);
            return;
        }
        v3_event event{};
        event.sample_offset = static_cast<int32_t>(midi.frame);
        const bool isOn = (midi.status & 0xF0) == 0x90 && midi.data2 > 0;
        event.type = isOn ? V3_EVENT_NOTE_ON : V3_EVENT_NOTE_OFF;
        const auto key = static_cast<int16_t>(midi.data1);
        const float velocity = static_cast<float>(midi.data2) / 127.0f;
        if (isOn)
            event.note_on = {0, key, 0, velocity, 0, -1};
        else
            event.note_off = {0, key, velocity, -1, 0};
        in.all.push_back(event);
    }

    void takeEvent(const v3_event& event)
    {
        const int64_t at = frame + event.sample_offset;
        const auto sevenBits = [](float part) { return static_cast<int>(std::lround(part * 127)); };
        switch (event.type) {
        case V3_EVENT_NOTE_ON:
            events.push_back({at, 0x90 | event.note_on.channel, event.note_on.pitch,
                sevenBits(event.note_on.velocity)});
            break;
        case V3_EVENT_NOTE_OFF:
            // As the engine ends its notes.
            events.push_back({at, 0x90 | event.note_off.channel, event.note_off.pitch, 0});
            break;
        case V3_EVENT_LEGACY_MIDI_CC_OUT: {
            const v3_event_legacy_midi_cc_out& out = event.midi_cc_out;
            if (out.cc_number == kBendController)
                events.push_back({at, 0xE0 | out.channel, out.value, out.value2});
            else if (out.cc_number == kPressureController)
                events.push_back({at, 0xD0 | out.channel, out.value, 0});
            else if (out.cc_number == kProgramController)
                events.push_back({at, 0xC0 | out.channel, out.value, 0});
            else
                events.push_back({at, 0xB0 | out.channel, out.cc_number, out.value});
            break;
        }
        default:
            break;
        }
    }

    void* library = nullptr;
    Vst3Application application;
    Handler handler;
    Frame frame_;
    Vst3Changes changes;
    v3_plugin_factory** factory = nullptr;
    v3_component** component = nullptr;
    v3_audio_processor** processor = nullptr;
    v3_edit_controller** controller = nullptr;
    v3_plugin_view** view = nullptr;
    v3_param_id first = 0; // the bypass; the engine's follow
};

Handler::Second::Second()
{
    handler.set_dirty = [](void* self, v3_bool) -> v3_result {
        ++vst3Self<Second>(self).host->markedDirty;
        return V3_OK;
    };
}

Handler::Handler()
{
    query_interface = [](void* self, const v3_tuid iid, void** object) -> v3_result {
        const bool isSecond = v3_tuid_match(iid, v3_component_handler2_iid);
        *object = isSecond ? vst3Self<Handler>(self).second.as<v3_component_handler2>() : nullptr;
        return isSecond ? V3_OK : V3_NO_INTERFACE;
    };
    handler.begin_edit = [](void* self, v3_param_id id) -> v3_result {
        vst3Self<Handler>(self).host->edited(FormatHost::Edit::Begin, id, 0);
        return V3_OK;
    };
    handler.perform_edit = [](void* self, v3_param_id id, double value) -> v3_result {
        vst3Self<Handler>(self).host->edited(FormatHost::Edit::Value, id, value);
        return V3_OK;
    };
    handler.end_edit = [](void* self, v3_param_id id) -> v3_result {
        vst3Self<Handler>(self).host->edited(FormatHost::Edit::End, id, 0);
        return V3_OK;
    };
    handler.restart_component = [](void*, int32_t) -> v3_result { return V3_OK; };
}

Frame::Frame()
{
    query_interface = [](void* self, const v3_tuid iid, void** object) -> v3_result {
        const bool isLoop = v3_tuid_match(iid, v3_run_loop_iid);
        *object = isLoop ? vst3Self<Frame>(self).loop.as<v3_run_loop>() : nullptr;
        return isLoop ? V3_OK : V3_NO_INTERFACE;
    };
    frame.resize_view = [](void* self, v3_plugin_view** which, v3_view_rect* rect) -> v3_result {
        vst3Self<Frame>(self).host->resized(which, rect);
        return V3_OK;
    };
}

Frame::Loop::Loop()
{
    loop.register_event_handler = [](void*, v3_event_handler**, int) -> v3_result {
        return V3_FALSE;
    };
    loop.unregister_event_handler = [](void*, v3_event_handler**) -> v3_result { return V3_FALSE; };
    loop.register_timer = [](void* self, v3_timer_handler** timer, uint64_t) -> v3_result {
        vst3Self<Loop>(self).timers.insert(timer);
        return V3_OK;
    };
    loop.unregister_timer = [](void* self, v3_timer_handler** timer) -> v3_result {
        vst3Self<Loop>(self).timers.erase(timer);
        return V3_OK;
    };
}
} // namespace

std::unique_ptr<FormatHost> makeVst3Host() { return std::make_unique<Vst3Host>(); }

} // namespace ormund
