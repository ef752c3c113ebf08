#include "tests/formats/FormatHost.h"

#include <lilv/lilv.h>
#include <lv2/atom/forge.h>
#include <lv2/atom/util.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/data-access/data-access.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/midi/midi.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/state/state.h>
#include <lv2/time/time.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <cmath>
#include <cstring>
#include <dlfcn.h>
#include <map>
#include <stdexcept>

namespace ormund {

namespace {
constexpr char kLv2Uri[] = "urn:kelda-works:ormund";
constexpr size_t kPortBytes = 65536;

// All identifiers of this program.
LV2_URID mapUri(LV2_URID_Map_Handle, const char* uri)
{
    static std::map<std::string, LV2_URID> known;
    return known.try_emplace(uri, static_cast<LV2_URID>(known.size() + 1)).first->second;
}
LV2_URID urid(const char* uri) { return mapUri(nullptr, uri); }

class Lv2Host final : public FormatHost {
public:
    Lv2Host()
    {
        world = lilv_world_new();
        LilvNode* bundle = lilv_new_file_uri(world, nullptr, ORMUND_BIN_DIR "/ormund.lv2/");
        lilv_world_load_bundle(world, bundle);
        lilv_node_free(bundle);
        LilvNode* uri = lilv_new_uri(world, kLv2Uri);
        plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world), uri);
        lilv_node_free(uri);
        if (!plugin)
            throw std::runtime_error("no LV2 plug-in");
        const LV2_Feature mapFeature{LV2_URID__map, &map};
        const LV2_Feature optionsFeature{LV2_OPTIONS__options, options};
        const LV2_Feature boundedFeature{LV2_BUF_SIZE__boundedBlockLength, nullptr};
        const LV2_Feature workerFeature{LV2_WORKER__schedule, &worker};
        const LV2_Feature* features[] = {
            &mapFeature, &optionsFeature, &boundedFeature, &workerFeature, nullptr};
        instance = lilv_plugin_instantiate(plugin, kRate, features);
        if (!instance)
            throw std::runtime_error("no LV2 instance");
        connect();
        lilv_instance_activate(instance);
        state = static_cast<const LV2_State_Interface*>(
            lilv_instance_get_extension_data(instance, LV2_STATE__interface));
        lv2_atom_forge_init(&forge, &map);
    }
    ~Lv2Host() override
    {
        closeEditor();
        if (library)
            dlclose(library);
        lilv_instance_deactivate(instance);
        lilv_instance_free(instance);
        lilv_world_free(world);
    }

    std::string midiPortName(bool isInput) override
    {
        LilvNode* symbol = lilv_new_string(world, isInput ? "lv2_events_in" : "lv2_events_out");
        const LilvPort* port = lilv_plugin_get_port_by_symbol(plugin, symbol);
        LilvNode* name = port ? lilv_port_get_name(plugin, port) : nullptr;
        std::string text = name ? lilv_node_as_string(name) : "";
        lilv_node_free(name);
        lilv_node_free(symbol);
        return text;
    }

    void setParameter(int index, float value) override
    {
        controls[firstControl + static_cast<size_t>(index)] = index == 0 ? 1.0f - value : value;
    }

    bool openEditor(unsigned long parent) override
    {
        const auto describe =
            reinterpret_cast<LV2UI_DescriptorFunction>(dlsym(uiLibrary(), "lv2ui_descriptor"));
        ui = describe ? describe(0) : nullptr;
        if (!ui)
            return false;
        resizer = {this, [](LV2UI_Feature_Handle handle, int newWidth, int newHeight) {
                       auto* self = static_cast<Lv2Host*>(handle);
                       self->width = newWidth;
                       self->height = newHeight;
                       return 0;
                   }};
        toucher = {
            this, [](LV2UI_Feature_Handle handle, uint32_t port, bool isDown) {
                auto* self = static_cast<Lv2Host*>(handle);
                self->edits.push_back({isDown ? Edit::Begin : Edit::End, self->indexOf(port), 0});
            }};
        dataAccess.data_access = lilv_instance_get_descriptor(instance)->extension_data;
        const LV2_Feature all[] = {{LV2_URID__map, &map}, {LV2_OPTIONS__options, options},
            {LV2_UI__parent, reinterpret_cast<void*>(parent)},
            {LV2_INSTANCE_ACCESS_URI, lilv_instance_get_handle(instance)},
            {LV2_DATA_ACCESS_URI, &dataAccess}, {LV2_UI__resize, &resizer},
            {LV2_UI__touch, &toucher}};
        std::vector<const LV2_Feature*> features;
        for (const LV2_Feature& feature : all)
            features.push_back(&feature);
        features.push_back(nullptr);
        LV2UI_Widget widget = nullptr;
        editor = ui->instantiate(
            ui, kLv2Uri, ORMUND_BIN_DIR "/ormund.lv2/", write, this, &widget, features.data());
        idler = static_cast<const LV2UI_Idle_Interface*>(ui->extension_data(LV2_UI__idleInterface));
        return editor && widget && idler;
    }
    void idleEditor() override { idler->idle(editor); }
    void closeEditor() override
    {
        if (editor)
            ui->cleanup(editor);
        editor = nullptr;
    }

    // The host keeps the bypass and the buttons by itself.
    std::string saveBytes() override { return chunkText(); }
    bool loadBytes(const std::string& bytes) override
    {
        saved = bytes;
        return state->restore(lilv_instance_get_handle(instance), retrieve, this, 0, nullptr)
            == LV2_STATE_SUCCESS;
    }
    std::string chunkText() override
    {
        saved.clear();
        state->save(lilv_instance_get_handle(instance), store, this, 0, nullptr);
        return saved;
    }
    void restoreChunk(const std::string& text) override { loadBytes(text); }

protected:
    void runBlock(int count) override
    {
        writeInput();
        auto* out = reinterpret_cast<LV2_Atom_Sequence*>(output.data());
        out->atom = {kPortBytes - sizeof(LV2_Atom), urid(LV2_ATOM__Chunk)};
        lilv_instance_run(instance, static_cast<uint32_t>(count));
        LV2_ATOM_SEQUENCE_FOREACH(out, event)
        {
            const auto* object = reinterpret_cast<const LV2_Atom_Object*>(&event->body);
            if (event->body.type == urid(LV2_ATOM__Object)
                && object->body.otype == urid(LV2_STATE__StateChanged))
                ++markedDirty;
            if (event->body.type != urid(LV2_MIDI__MidiEvent))
                continue;
            const auto* bytes = reinterpret_cast<const uint8_t*>(event + 1);
            events.push_back({frame + event->time.frames, bytes[0], bytes[1],
                event->body.size > 2 ? bytes[2] : 0});
        }
    }

private:
    void connect()
    {
        const uint32_t ports = lilv_plugin_get_num_ports(plugin);
        controls.resize(ports);
        std::vector<float> defaults(ports);
        lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, defaults.data());
        LilvNode* audio = lilv_new_uri(world, LV2_CORE__AudioPort);
        LilvNode* atom = lilv_new_uri(world, LV2_ATOM__AtomPort);
        LilvNode* isInput = lilv_new_uri(world, LV2_CORE__InputPort);
        float* channels[] = {leftBlock, rightBlock};
        int channel = 0;
        for (uint32_t i = 0; i < ports; ++i) {
            const LilvPort* port = lilv_plugin_get_port_by_index(plugin, i);
            void* at = &controls[i];
            controls[i] = defaults[i];
            if (lilv_port_is_a(plugin, port, audio))
                at = channels[channel++];
            else if (lilv_port_is_a(plugin, port, atom))
                at = lilv_port_is_a(plugin, port, isInput) ? input.data() : output.data();
            else if (std::string("lv2_enabled")
                == lilv_node_as_string(lilv_port_get_symbol(plugin, port)))
                firstControl = i; // the engine's follow
            lilv_instance_connect_port(instance, i, at);
        }
        for (LilvNode* node : {audio, atom, isInput})
            lilv_node_free(node);
    }

    void writeInput()
    {
        lv2_atom_forge_set_buffer(&forge, input.data(), input.size());
        LV2_Atom_Forge_Frame sequence;
        LV2_Atom_Forge_Frame object;
        lv2_atom_forge_sequence_head(&forge, &sequence, 0);
        lv2_atom_forge_frame_time(&forge, 0);
        lv2_atom_forge_object(&forge, &object, 0, urid(LV2_TIME__Position));
        const double perBar = beatsPerBar * 4.0 / beatType; // quarter notes
        const double bar = std::floor(beat / perBar + 1e-9);
        const auto number = [this](const char* key, double value) {
            lv2_atom_forge_key(&forge, urid(key));
            lv2_atom_forge_double(&forge, value);
        };
        number(LV2_TIME__speed, playing ? 1 : 0);
        number(LV2_TIME__bar, bar);
        number(LV2_TIME__barBeat, std::max((beat - bar * perBar) * beatType / 4, 0.0));
        number(LV2_TIME__beatUnit, beatType);
        number(LV2_TIME__beatsPerBar, beatsPerBar);
        number(LV2_TIME__beatsPerMinute, tempo);
        number(LV2_TIME__frame, std::round(beat * 60 / tempo * kRate));
        lv2_atom_forge_pop(&forge, &object);
        for (const MidiOut& midi : pending) {
            const uint8_t bytes[] = {static_cast<uint8_t>(midi.status),
                static_cast<uint8_t>(midi.data1), static_cast<uint8_t>(midi.data2)};
            lv2_atom_forge_frame_time(&forge, midi.frame);
            lv2_atom_forge_atom(&forge, sizeof bytes, urid(LV2_MIDI__MidiEvent));
            lv2_atom_forge_write(&forge, bytes, sizeof bytes);
        }
        lv2_atom_forge_pop(&forge, &sequence);
    }

    // The window is in the binary of the engine, which reads it directly.
    void* uiLibrary()
    {
        if (!library)
            library = dlopen(ORMUND_BIN_DIR "/ormund.lv2/ormund.so", RTLD_NOW | RTLD_LOCAL);
        if (!library)
            throw std::runtime_error(dlerror());
        return library;
    }
    int indexOf(uint32_t port) const { return static_cast<int>(port - firstControl); }
    static void write(
        LV2UI_Controller controller, uint32_t port, uint32_t, uint32_t protocol, const void* buffer)
    {
        if (protocol != 0)
            return;
        auto* self = static_cast<Lv2Host*>(controller);
        std::memcpy(&self->controls[port], buffer, sizeof(float));
        self->edits.push_back({Edit::Value, self->indexOf(port), self->controls[port]});
    }

    static LV2_State_Status store(
        LV2_State_Handle handle, uint32_t, const void* value, size_t size, uint32_t, uint32_t)
    {
        auto* self = static_cast<Lv2Host*>(handle);
        self->saved.assign(static_cast<const char*>(value), size);
        self->saved.resize(std::strlen(self->saved.c_str()));
        return LV2_STATE_SUCCESS;
    }
    static const void* retrieve(
        LV2_State_Handle handle, uint32_t, size_t* size, uint32_t* type, uint32_t* flags)
    {
        auto* self = static_cast<Lv2Host*>(handle);
        *size = self->saved.size() + 1;
        *type = urid(LV2_ATOM__String);
        *flags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
        return self->saved.c_str();
    }

    LV2_URID_Map map{nullptr, mapUri};
    // Nothing is asked of it without an editor.
    LV2_Worker_Schedule worker{nullptr,
        [](LV2_Worker_Schedule_Handle, uint32_t, const void*) { return LV2_WORKER_ERR_UNKNOWN; }};
    int32_t mostBlock = kMostBlock;
    float rate = kRate;
    LV2_Options_Option options[3] = {{LV2_OPTIONS_INSTANCE, 0, urid(LV2_BUF_SIZE__maxBlockLength),
                                         sizeof(int32_t), urid(LV2_ATOM__Int), &mostBlock},
        {LV2_OPTIONS_INSTANCE, 0, urid(LV2_PARAMETERS__sampleRate), sizeof(float),
            urid(LV2_ATOM__Float), &rate},
        {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    LilvWorld* world = nullptr;
    const LilvPlugin* plugin = nullptr;
    LilvInstance* instance = nullptr;
    const LV2_State_Interface* state = nullptr;
    LV2_Atom_Forge forge{};
    std::vector<float> controls;
    size_t firstControl = 0; // the bypass, which says the opposite: enabled
    void* library = nullptr;
    const LV2UI_Descriptor* ui = nullptr;
    const LV2UI_Idle_Interface* idler = nullptr;
    LV2UI_Handle editor = nullptr;
    LV2UI_Resize resizer{};
    LV2UI_Touch toucher{};
    LV2_Extension_Data_Feature dataAccess{};
    alignas(8) std::array<uint8_t, kPortBytes> input{};
    alignas(8) std::array<uint8_t, kPortBytes> output{};
    std::string saved;
};
} // namespace

std::unique_ptr<FormatHost> makeLv2Host() { return std::make_unique<Lv2Host>(); }

} // namespace ormund
