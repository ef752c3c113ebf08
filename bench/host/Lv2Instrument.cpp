#include "bench/host/Instrument.h"

#include <lilv/lilv.h>
#include <lv2/atom/forge.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/midi/midi.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/time/time.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <array>
#include <cmath>
#include <map>
#include <vector>

namespace ormund {

namespace {
constexpr size_t kPortBytes = 8192;

LV2_URID urid(const char* uri)
{
    static std::map<std::string, LV2_URID> known;
    return known.try_emplace(uri, static_cast<LV2_URID>(known.size() + 1)).first->second;
}

// What is installed; read once for all instances.
LilvWorld* world()
{
    static LilvWorld* const all = [] {
        LilvWorld* loaded = lilv_world_new();
        lilv_world_load_all(loaded);
        return loaded;
    }();
    return all;
}

struct alignas(8) AtomPort {
    std::array<uint8_t, kPortBytes> bytes{};
    LV2_Atom_Sequence* sequence() { return reinterpret_cast<LV2_Atom_Sequence*>(bytes.data()); }
};

class Lv2Instrument final : public Instrument {
public:
    bool load(const std::string& uri)
    {
        LilvNode* node = lilv_new_uri(world(), uri.c_str());
        const LilvPlugin* plugin =
            lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world()), node);
        lilv_node_free(node);
        if (!plugin)
            return false;
        const LV2_Feature mapFeature{LV2_URID__map, &map};
        const LV2_Feature unmapFeature{LV2_URID__unmap, &unmap};
        const LV2_Feature optionsFeature{LV2_OPTIONS__options, options};
        const LV2_Feature boundedFeature{LV2_BUF_SIZE__boundedBlockLength, nullptr};
        const LV2_Feature workerFeature{LV2_WORKER__schedule, &worker};
        const LV2_Feature* features[] = {
            &mapFeature, &unmapFeature, &optionsFeature, &boundedFeature, &workerFeature, nullptr};
        instance = lilv_plugin_instantiate(plugin, kRate, features);
        if (!instance)
            return false;
        lv2_atom_forge_init(&forge, &map);
        work = static_cast<const LV2_Worker_Interface*>(
            lilv_instance_get_extension_data(instance, LV2_WORKER__interface));
        connect(plugin);
        lilv_instance_activate(instance);
        return true;
    }
    ~Lv2Instrument() override
    {
        if (!instance)
            return;
        lilv_instance_deactivate(instance);
        lilv_instance_free(instance);
    }

    void send(int status, int data1, int data2) override
    {
        pending.push_back({static_cast<uint8_t>(status), static_cast<uint8_t>(data1),
            static_cast<uint8_t>(data2)});
    }

    void prepare(const Transport& transport, int) override
    {
        runWork();
        for (AtomPort& port : inputs)
            writeInput(port, transport);
        for (AtomPort& port : outputs)
            port.sequence()->atom = {kPortBytes - sizeof(LV2_Atom), urid(LV2_ATOM__Chunk)};
        pending.clear();
    }
    void process(int frames) override
    {
        lilv_instance_run(instance, static_cast<uint32_t>(frames));
        produced = true;
    }
    int64_t messagesOut() const override
    {
        countOutput();
        return received;
    }

private:
    void connect(const LilvPlugin* plugin)
    {
        const uint32_t ports = lilv_plugin_get_num_ports(plugin);
        controls.resize(ports);
        lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, controls.data());
        inputs.reserve(ports);
        outputs.reserve(ports);
        LilvNode* audio = lilv_new_uri(world(), LV2_CORE__AudioPort);
        LilvNode* signal = lilv_new_uri(world(), LV2_CORE__CVPort);
        LilvNode* atom = lilv_new_uri(world(), LV2_ATOM__AtomPort);
        LilvNode* isInput = lilv_new_uri(world(), LV2_CORE__InputPort);
        float* channels[] = {left, right};
        int channel = 0;
        for (uint32_t i = 0; i < ports; ++i) {
            const LilvPort* port = lilv_plugin_get_port_by_index(plugin, i);
            const bool in = lilv_port_is_a(plugin, port, isInput);
            void* at = &controls[i];
            if (std::isnan(controls[i]))
                controls[i] = 0;
            if (lilv_port_is_a(plugin, port, audio) || lilv_port_is_a(plugin, port, signal))
                at = in ? silence : channel < 2 ? channels[channel++] : spare;
            else if (lilv_port_is_a(plugin, port, atom))
                at = (in ? inputs : outputs).emplace_back().bytes.data();
            lilv_instance_connect_port(instance, i, at);
        }
        for (LilvNode* node : {audio, signal, atom, isInput})
            lilv_node_free(node);
    }

    void writeInput(AtomPort& port, const Transport& transport)
    {
        lv2_atom_forge_set_buffer(&forge, port.bytes.data(), port.bytes.size());
        LV2_Atom_Forge_Frame sequence;
        LV2_Atom_Forge_Frame object;
        lv2_atom_forge_sequence_head(&forge, &sequence, 0);
        lv2_atom_forge_frame_time(&forge, 0);
        lv2_atom_forge_object(&forge, &object, 0, urid(LV2_TIME__Position));
        const auto number = [this](const char* key, float value) {
            lv2_atom_forge_key(&forge, urid(key));
            lv2_atom_forge_float(&forge, value);
        };
        const auto whole = [this](const char* key, double value) {
            lv2_atom_forge_key(&forge, urid(key));
            lv2_atom_forge_long(&forge, static_cast<int64_t>(value));
        };
        const double bar = std::floor(transport.beat / 4 + 1e-9);
        number(LV2_TIME__speed, transport.rolling ? 1.0f : 0.0f);
        whole(LV2_TIME__bar, bar);
        number(LV2_TIME__barBeat, static_cast<float>(std::max(transport.beat - bar * 4, 0.0)));
        lv2_atom_forge_key(&forge, urid(LV2_TIME__beatUnit));
        lv2_atom_forge_int(&forge, 4);
        number(LV2_TIME__beatsPerBar, 4);
        number(LV2_TIME__beatsPerMinute, static_cast<float>(transport.tempo));
        whole(LV2_TIME__frame, std::round(transport.beat * 60 / transport.tempo * kRate));
        lv2_atom_forge_pop(&forge, &object);
        for (const auto& bytes : pending) {
            lv2_atom_forge_frame_time(&forge, 0);
            lv2_atom_forge_atom(&forge, 3, urid(LV2_MIDI__MidiEvent));
            lv2_atom_forge_write(&forge, bytes.data(), 3);
        }
        lv2_atom_forge_pop(&forge, &sequence);
    }

    // What the plug-in wants done outside a block, done between two of them.
    void runWork()
    {
        countOutput();
        if (!work)
            return;
        std::vector<std::vector<uint8_t>> wanted;
        wanted.swap(requests);
        LV2_Handle handle = lilv_instance_get_handle(instance);
        for (const auto& request : wanted)
            work->work(
                handle, respond, this, static_cast<uint32_t>(request.size()), request.data());
        std::vector<std::vector<uint8_t>> answers;
        answers.swap(responses);
        for (const auto& answer : answers)
            work->work_response(handle, static_cast<uint32_t>(answer.size()), answer.data());
        if (work->end_run)
            work->end_run(handle);
    }
    static LV2_Worker_Status schedule(
        LV2_Worker_Schedule_Handle handle, uint32_t size, const void* data)
    {
        const auto* bytes = static_cast<const uint8_t*>(data);
        static_cast<Lv2Instrument*>(handle)->requests.emplace_back(bytes, bytes + size);
        return LV2_WORKER_SUCCESS;
    }
    static LV2_Worker_Status respond(
        LV2_Worker_Respond_Handle handle, uint32_t size, const void* data)
    {
        const auto* bytes = static_cast<const uint8_t*>(data);
        static_cast<Lv2Instrument*>(handle)->responses.emplace_back(bytes, bytes + size);
        return LV2_WORKER_SUCCESS;
    }

    void countOutput() const
    {
        if (!produced)
            return;
        produced = false;
        for (const AtomPort& port : outputs) {
            const auto* sequence = reinterpret_cast<const LV2_Atom_Sequence*>(port.bytes.data());
            LV2_ATOM_SEQUENCE_FOREACH(sequence, event)
            received += event->body.type == urid(LV2_MIDI__MidiEvent);
        }
    }

    static LV2_URID mapUri(LV2_URID_Map_Handle, const char* uri) { return urid(uri); }
    static const char* unmapUri(LV2_URID_Unmap_Handle, LV2_URID) { return ""; }

    LV2_URID_Map map{nullptr, mapUri};
    LV2_URID_Unmap unmap{nullptr, unmapUri};
    LV2_Worker_Schedule worker{this, schedule};
    int32_t mostFrames = kMostFrames;
    float rate = kRate;
    LV2_Options_Option options[4] = {{LV2_OPTIONS_INSTANCE, 0, urid(LV2_BUF_SIZE__maxBlockLength),
                                         sizeof(int32_t), urid(LV2_ATOM__Int), &mostFrames},
        {LV2_OPTIONS_INSTANCE, 0, urid(LV2_BUF_SIZE__nominalBlockLength), sizeof(int32_t),
            urid(LV2_ATOM__Int), &mostFrames},
        {LV2_OPTIONS_INSTANCE, 0, urid(LV2_PARAMETERS__sampleRate), sizeof(float),
            urid(LV2_ATOM__Float), &rate},
        {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    LilvInstance* instance = nullptr;
    const LV2_Worker_Interface* work = nullptr;
    LV2_Atom_Forge forge{};
    std::vector<float> controls;
    std::vector<AtomPort> inputs;
    std::vector<AtomPort> outputs;
    std::vector<std::array<uint8_t, 3>> pending;
    std::vector<std::vector<uint8_t>> requests;
    std::vector<std::vector<uint8_t>> responses;
    float silence[kMostFrames]{};
    float spare[kMostFrames]{};
    mutable bool produced = false;
    mutable int64_t received = 0;
};
} // namespace

std::unique_ptr<Instrument> loadLv2(const std::string& uri)
{
    auto instrument = std::make_unique<Lv2Instrument>();
    if (!instrument->load(uri))
        return nullptr;
    return instrument;
}

} // namespace ormund
