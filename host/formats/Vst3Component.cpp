// Busses, setup, state, and the factory that the host finds the plug-in by.
#include "base/Product.h"
#include "host/formats/SavedState.h"
#include "host/formats/Vst3Plugin.h"

#include <cstdio>
#include <cstring>

namespace ormund {

namespace {
constexpr char kCategory[] = "Audio Module Class";
constexpr char kSubCategories[] = "Instrument|Synth";
constexpr char kInterface[] = "VST 3.7.4";

template <size_t Size>
void copyText(char (&to)[Size], const char* from)
{
    std::snprintf(to, Size, "%s", from);
}

template <class Info>
v3_result fillClass(int32_t index, Info* info)
{
    *info = {};
    if (index != 0)
        return V3_INVALID_ARG;
    std::memcpy(info->class_id, Vst3Plugin::kClass, sizeof(v3_tuid));
    info->cardinality = 0x7FFFFFFF;
    copyText(info->category, kCategory);
    return V3_OK;
}

bool isBus(int32_t media, int32_t direction, int32_t index)
{
    return index == 0 && (media == V3_EVENT || (media == V3_AUDIO && direction == V3_OUTPUT));
}
} // namespace

// Sessions know it by these bytes.
const v3_tuid Vst3Plugin::kClass = {
    0x20, 0x46, 0x50, 0x44, 0x73, 0x61, 0x6c, 0x63, 0x52, 0x4f, 0x57, 0x4b, 0, 0, 0, 0};

Vst3Plugin::Vst3Plugin() : wrapper(*this, rate) { }

uint32_t Vst3Plugin::release()
{
    const uint32_t left = --refs;
    if (left == 0)
        delete this;
    return left;
}

void* Vst3Plugin::query(const v3_tuid iid)
{
    const auto is = [iid](const v3_tuid& other) { return v3_tuid_match(iid, other); };
    void* found = nullptr;
    if (is(v3_funknown_iid) || is(v3_plugin_base_iid) || is(v3_component_iid))
        found = &component;
    else if (is(v3_audio_processor_iid))
        found = &processor;
    else if (is(v3_process_context_requirements_iid))
        found = &requirements;
    else if (is(v3_edit_controller_iid))
        found = &controller;
    else if (is(v3_midi_mapping_iid))
        found = &mapping;
    else if (is(v3_unit_information_iid))
        found = &units;
    if (found)
        addRef();
    return found;
}

v3_component_cpp Vst3Plugin::componentTable()
{
    using This = Facet<v3_component_cpp>;
    v3_component_cpp all{};
    This::addUnknown(all);
    all.base.initialize = [](void*, v3_funknown**) -> v3_result { return V3_OK; };
    all.base.terminate = [](void* self) -> v3_result {
        This::of(self).setActive(false);
        This::of(self).setHandler(nullptr);
        return V3_OK;
    };
    // The controller is this object too.
    all.comp.get_controller_class_id = [](void*, v3_tuid) -> v3_result {
        return V3_NOT_IMPLEMENTED;
    };
    all.comp.set_io_mode = [](void*, int32_t) -> v3_result { return V3_NOT_IMPLEMENTED; };
    all.comp.get_bus_count = [](void*, int32_t media, int32_t direction) -> int32_t {
        return isBus(media, direction, 0) ? 1 : 0;
    };
    all.comp.get_bus_info = [](void*, int32_t media, int32_t direction, int32_t index,
                                v3_bus_info* info) -> v3_result {
        if (!isBus(media, direction, index))
            return V3_INVALID_ARG;
        *info = {};
        info->media_type = media;
        info->direction = direction;
        info->channel_count = media == V3_AUDIO ? 2 : vst3::kChannels;
        copyWide(info->bus_name, media == V3_AUDIO ? product::kName : product::kMidiName);
        info->bus_type = V3_MAIN;
        info->flags = V3_DEFAULT_ACTIVE;
        return V3_OK;
    };
    all.comp.get_routing_info = [](void*, v3_routing_info*, v3_routing_info*) -> v3_result {
        return V3_NOT_IMPLEMENTED;
    };
    all.comp.activate_bus = [](void*, int32_t media, int32_t direction, int32_t index,
                                v3_bool) -> v3_result {
        return isBus(media, direction, index) ? V3_OK : V3_INVALID_ARG;
    };
    all.comp.set_active = [](void* self, v3_bool on) -> v3_result {
        This::of(self).setActive(on != 0);
        return V3_OK;
    };
    all.comp.set_state = [](void* self, v3_bstream** stream) -> v3_result {
        return stream ? This::of(self).setState(stream) : V3_INVALID_ARG;
    };
    all.comp.get_state = [](void* self, v3_bstream** stream) -> v3_result {
        return stream ? This::of(self).getState(stream) : V3_INVALID_ARG;
    };
    return all;
}

v3_audio_processor_cpp Vst3Plugin::processorTable()
{
    using This = Facet<v3_audio_processor_cpp>;
    constexpr v3_speaker_arrangement kStereo = V3_SPEAKER_L | V3_SPEAKER_R;
    v3_audio_processor_cpp all{};
    This::addUnknown(all);
    all.proc.set_bus_arrangements = [](void*, v3_speaker_arrangement*, int32_t inputs,
                                        v3_speaker_arrangement* outputs,
                                        int32_t count) -> v3_result {
        return inputs == 0 && count == 1 && outputs && outputs[0] == kStereo ? V3_TRUE : V3_FALSE;
    };
    all.proc.get_bus_arrangement = [](void*, int32_t direction, int32_t index,
                                       v3_speaker_arrangement* speakers) -> v3_result {
        if (!isBus(V3_AUDIO, direction, index))
            return V3_INVALID_ARG;
        *speakers = kStereo;
        return V3_OK;
    };
    all.proc.can_process_sample_size = [](void*, int32_t size) -> v3_result {
        return size == V3_SAMPLE_32 ? V3_TRUE : V3_FALSE;
    };
    all.proc.get_latency_samples = [](void*) -> uint32_t { return 0; };
    all.proc.setup_processing = [](void* self, v3_process_setup* setup) -> v3_result {
        if (!setup || setup->symbolic_sample_size != V3_SAMPLE_32)
            return V3_FALSE;
        This::of(self).rate = setup->sample_rate;
        This::of(self).wrapper.setSampleRate(setup->sample_rate);
        return V3_OK;
    };
    all.proc.set_processing = [](void*, v3_bool) -> v3_result { return V3_OK; };
    all.proc.process = [](void* self, v3_process_data* data) -> v3_result {
        if (!data || data->nframes < 0)
            return V3_INVALID_ARG;
        This::of(self).process(*data);
        return V3_OK;
    };
    all.proc.get_tail_samples = [](void* self) -> uint32_t {
        return static_cast<uint32_t>(This::of(self).rate);
    };
    return all;
}

v3_process_context_requirements_cpp Vst3Plugin::requirementsTable()
{
    using This = Facet<v3_process_context_requirements_cpp>;
    v3_process_context_requirements_cpp all{};
    This::addUnknown(all);
    all.req.get_process_context_requirements = [](void*) -> uint32_t {
        return V3_PROCESS_CTX_NEED_PROJECT_TIME | V3_PROCESS_CTX_NEED_BAR_POSITION
            | V3_PROCESS_CTX_NEED_CYCLE | V3_PROCESS_CTX_NEED_TEMPO | V3_PROCESS_CTX_NEED_TIME_SIG
            | V3_PROCESS_CTX_NEED_TRANSPORT_STATE;
    };
    return all;
}

const v3_component_cpp Vst3Plugin::kComponent = componentTable();
const v3_audio_processor_cpp Vst3Plugin::kProcessor = processorTable();
const v3_process_context_requirements_cpp Vst3Plugin::kRequirements = requirementsTable();

void Vst3Plugin::setActive(bool on)
{
    if (on == (isActive != 0))
        return;
    on ? wrapper.resume() : wrapper.suspend();
    isActive = on ? 1 : 0;
}

v3_result Vst3Plugin::setState(v3_bstream** stream)
{
    std::string bytes;
    char piece[4096];
    for (;;) {
        int32_t count = 0;
        const v3_result result = v3_cpp_obj(stream)->read(stream, piece, sizeof piece, &count);
        if (count < 0 || count > static_cast<int32_t>(sizeof piece)
            || bytes.size() > SavedState::kMostBytes)
            return V3_INVALID_ARG;
        if (count == 0 || result != V3_OK)
            break;
        bytes.append(piece, static_cast<size_t>(count));
    }
    const auto saved = SavedState::unpack(bytes);
    if (!saved || !saved->restore(wrapper))
        return V3_INVALID_ARG;
    for (int tag = 0; tag < kHostParameters; ++tag)
        wrapper.hostKnows(tag, wrapper.parameter(tag));
    if (handler)
        handler->restart_component(handler.get(), V3_RESTART_PARAM_VALUES_CHANGED);
    return V3_OK;
}

v3_result Vst3Plugin::getState(v3_bstream** stream)
{
    std::string bytes = SavedState::of(wrapper).pack();
    for (size_t at = 0; at < bytes.size();) {
        int32_t count = 0;
        const auto left = static_cast<int32_t>(bytes.size() - at);
        if (v3_cpp_obj(stream)->write(stream, bytes.data() + at, left, &count) != V3_OK
            || count <= 0 || count > left)
            return V3_INTERNAL_ERR;
        at += static_cast<size_t>(count);
    }
    return V3_OK;
}

// --- the factory
// ----------------------------------------------------------------------------------

namespace {
v3_plugin_factory_cpp factoryTable()
{
    v3_plugin_factory_cpp all{};
    all.query_interface = [](void* self, const v3_tuid iid, void** object) -> v3_result {
        const bool isOurs = v3_tuid_match(iid, v3_funknown_iid)
            || v3_tuid_match(iid, v3_plugin_factory_iid)
            || v3_tuid_match(iid, v3_plugin_factory_2_iid)
            || v3_tuid_match(iid, v3_plugin_factory_3_iid);
        *object = isOurs ? self : nullptr;
        return isOurs ? V3_OK : V3_NO_INTERFACE;
    };
    // It is there as long as the module.
    all.ref = all.unref = [](void*) -> uint32_t { return 1; };
    all.v1.get_factory_info = [](void*, v3_factory_info* info) -> v3_result {
        *info = {};
        copyText(info->vendor, product::kMaker);
        info->flags = 0x10;
        return V3_OK;
    };
    all.v1.num_classes = [](void*) -> int32_t { return 1; };
    all.v1.get_class_info = [](void*, int32_t index, v3_class_info* info) -> v3_result {
        const v3_result result = fillClass(index, info);
        copyText(info->name, product::kName);
        return result;
    };
    all.v1.create_instance = [](void*, const v3_tuid id, const v3_tuid iid,
                                 void** instance) -> v3_result {
        *instance = nullptr;
        if (!v3_tuid_match(id, Vst3Plugin::kClass))
            return V3_NO_INTERFACE;
        auto* plugin = new Vst3Plugin;
        *instance = plugin->query(iid);
        plugin->release();
        return *instance ? V3_OK : V3_NO_INTERFACE;
    };
    all.v2.get_class_info_2 = [](void*, int32_t index, v3_class_info_2* info) -> v3_result {
        const v3_result result = fillClass(index, info);
        copyText(info->name, product::kName);
        copyText(info->sub_categories, kSubCategories);
        copyText(info->vendor, product::kMaker);
        copyText(info->version, ORMUND_VERSION);
        copyText(info->sdk_version, kInterface);
        return result;
    };
    all.v3.get_class_info_utf16 = [](void*, int32_t index, v3_class_info_3* info) -> v3_result {
        const v3_result result = fillClass(index, info);
        copyWide(info->name, product::kName);
        copyText(info->sub_categories, kSubCategories);
        copyWide(info->vendor, product::kMaker);
        copyWide(info->version, ORMUND_VERSION);
        copyWide(info->sdk_version, kInterface);
        return result;
    };
    all.v3.set_host_context = [](void*, v3_funknown**) -> v3_result { return V3_OK; };
    return all;
}
} // namespace

} // namespace ormund

#define ORMUND_EXPORT extern "C" __attribute__((visibility("default")))

ORMUND_EXPORT const void* GetPluginFactory()
{
    static const v3_plugin_factory_cpp table = ormund::factoryTable();
    static const v3_plugin_factory_cpp* const factory = &table;
    return &factory;
}

ORMUND_EXPORT bool ModuleEntry(void*) { return true; }

ORMUND_EXPORT bool ModuleExit() { return true; }
