// Parameters with their texts, the controllers of MIDI, and the units that they stand in.
#include "base/Product.h"
#include "host/formats/Vst3Plugin.h"
#include "host/formats/Vst3View.h"

#include <cmath>
#include <cstring>
#include <vector>

namespace ormund {

namespace {
constexpr int kRootUnit = 0;
constexpr int kNoUnit = -1;
constexpr size_t kText = 128;

// The list begins with the engine's parameters; then the bypass, then MIDI's.
uint32_t idAt(int32_t index)
{
    if (index < kHostParameters)
        return vst3::idOf(kFirstNumber + index);
    return index == kHostParameters ? vst3::idOf(kBypassNumber)
                                    : static_cast<uint32_t>(index - kFormatParameters);
}

// The sections of the panel, then MIDI; the first one is unit 1.
const std::vector<std::string>& unitNames()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (int number = kFirstNumber; number < kFormatParameters; ++number)
            if (std::string section(formatSection(number)); all.empty() || all.back() != section)
                all.push_back(section);
        all.emplace_back("MIDI");
        return all;
    }();
    return names;
}

int32_t unitOf(uint32_t id)
{
    const auto& names = unitNames();
    const std::string_view wanted =
        vst3::isMidi(id) ? names.back() : formatSection(vst3::numberOf(id));
    for (size_t i = 0; i < names.size(); ++i)
        if (names[i] == wanted)
            return static_cast<int32_t>(i) + 1;
    return kRootUnit;
}

void fillMidi(uint32_t id, v3_param_info& info)
{
    const auto channel = std::to_string(id / vst3::kControllers + 1);
    const auto controller = std::to_string(id % vst3::kControllers);
    copyWide(info.title, "MIDI Ch. " + channel + " CC " + controller);
    copyWide(info.short_title, "CC" + controller);
    info.step_count = 127;
    info.flags = V3_PARAM_CAN_AUTOMATE | V3_PARAM_IS_HIDDEN;
}
} // namespace

double Vst3Plugin::value(uint32_t id) const
{
    if (id >= vst3::kIds)
        return 0;
    return static_cast<double>(
        vst3::isMidi(id) ? controllers[id].load() : wrapper.value(vst3::numberOf(id)));
}

v3_result Vst3Plugin::setValue(uint32_t id, double value)
{
    if (id >= vst3::kIds || !std::isfinite(value))
        return V3_INVALID_ARG;
    const auto given = static_cast<float>(std::clamp(value, 0.0, 1.0));
    if (vst3::isMidi(id)) {
        controllers[id] = given;
        return V3_OK;
    }
    // A host that plays sends the same value with its block, where it has its place.
    const int number = vst3::numberOf(id);
    if (isActive == 0 || number == kBypassNumber)
        wrapper.setValue(number, given);
    else
        wrapper.hostKnows(tagOfNumber(number), given);
    return V3_OK;
}

void Vst3Plugin::setHandler(v3_component_handler** given)
{
    handler.reset(given);
    handler2.query(given, v3_component_handler2_iid);
}

void Vst3Plugin::reportEdit()
{
    if (wrapper.takeEdit() && handler2)
        handler2->set_dirty(handler2.get(), 1);
}

v3_edit_controller_cpp Vst3Plugin::controllerTable()
{
    using This = Facet<v3_edit_controller_cpp>;
    v3_edit_controller_cpp all{};
    This::addUnknown(all);
    all.base.initialize = [](void*, v3_funknown**) -> v3_result { return V3_OK; };
    all.base.terminate = [](void*) -> v3_result { return V3_OK; };
    // The component has it already, for it is this object.
    all.ctrl.set_component_state = [](void*, v3_bstream**) -> v3_result { return V3_OK; };
    all.ctrl.set_state =
        all.ctrl.get_state = [](void*, v3_bstream**) -> v3_result { return V3_OK; };
    all.ctrl.get_parameter_count = [](void*) -> int32_t { return vst3::kIds; };
    all.ctrl.get_parameter_info = [](void*, int32_t index, v3_param_info* info) -> v3_result {
        if (index < 0 || index >= static_cast<int32_t>(vst3::kIds))
            return V3_INVALID_ARG;
        const uint32_t id = idAt(index);
        *info = {};
        info->param_id = id;
        info->unit_id = unitOf(id);
        if (vst3::isMidi(id)) {
            fillMidi(id, *info);
            return V3_OK;
        }
        const int number = vst3::numberOf(id);
        copyWide(info->title, formatName(number));
        copyWide(info->short_title, formatName(number));
        info->step_count = isSwitch(number) ? 1 : 0;
        info->default_normalised_value = static_cast<double>(formatDefault(number));
        info->flags = V3_PARAM_CAN_AUTOMATE | (number == kBypassNumber ? V3_PARAM_IS_BYPASS : 0);
        return V3_OK;
    };
    all.ctrl.get_parameter_string_for_value = [](void*, v3_param_id id, double value,
                                                  v3_str_128 text) -> v3_result {
        if (id >= vst3::kIds || !std::isfinite(value))
            return V3_INVALID_ARG;
        const std::string shown = vst3::isMidi(id)
            ? std::to_string(std::lround(std::clamp(value, 0.0, 1.0) * 127))
            : formatText(vst3::numberOf(id), static_cast<float>(value));
        copyWide(*reinterpret_cast<v3_str_128*>(text), shown);
        return V3_OK;
    };
    all.ctrl.get_parameter_value_for_string = [](void*, v3_param_id id, int16_t* text,
                                                  double* value) -> v3_result {
        if (id >= vst3::kIds || !text)
            return V3_INVALID_ARG;
        const std::string given = narrow(text, kText);
        std::optional<float> meant;
        if (!vst3::isMidi(id))
            meant = formatValue(vst3::numberOf(id), given);
        else if (!given.empty() && given.find_first_not_of("0123456789") == std::string::npos)
            meant = static_cast<float>(std::min(std::strtol(given.c_str(), nullptr, 10), 127L))
                / 127.0f;
        if (meant)
            *value = static_cast<double>(*meant);
        return meant ? V3_OK : V3_INVALID_ARG;
    };
    all.ctrl.normalised_parameter_to_plain = [](void*, v3_param_id id, double value) {
        return vst3::isMidi(id) ? std::round(value * 127) : value;
    };
    all.ctrl.plain_parameter_to_normalised = [](void*, v3_param_id id, double value) {
        return vst3::isMidi(id) ? value / 127 : value;
    };
    all.ctrl.get_parameter_normalised = [](void* self, v3_param_id id) {
        return This::of(self).value(id);
    };
    all.ctrl.set_parameter_normalised = [](void* self, v3_param_id id, double value) -> v3_result {
        return This::of(self).setValue(id, value);
    };
    all.ctrl.set_component_handler = [](void* self, v3_component_handler** given) -> v3_result {
        This::of(self).setHandler(given);
        return V3_OK;
    };
    all.ctrl.create_view = [](void* self, const char* name) -> v3_plugin_view** {
        const bool isEditor = name && std::strcmp(name, "editor") == 0;
        return isEditor ? (new Vst3View(This::of(self)))->facet() : nullptr;
    };
    return all;
}

v3_midi_mapping_cpp Vst3Plugin::mappingTable()
{
    using This = Facet<v3_midi_mapping_cpp>;
    v3_midi_mapping_cpp all{};
    This::addUnknown(all);
    all.map.get_midi_controller_assignment = [](void*, int32_t bus, int16_t channel, int16_t number,
                                                 v3_param_id* id) -> v3_result {
        if (bus != 0 || channel < 0 || channel >= vst3::kChannels || number < 0
            || number >= vst3::kControllers)
            return V3_FALSE;
        *id = static_cast<v3_param_id>(channel * vst3::kControllers + number);
        return V3_TRUE;
    };
    return all;
}

v3_unit_information_cpp Vst3Plugin::unitsTable()
{
    using This = Facet<v3_unit_information_cpp>;
    v3_unit_information_cpp all{};
    This::addUnknown(all);
    all.unit.get_unit_count = [](void*) { return static_cast<int32_t>(unitNames().size()) + 1; };
    all.unit.get_unit_info = [](void*, int32_t index, v3_unit_info* info) -> v3_result {
        if (index < 0 || index > static_cast<int32_t>(unitNames().size()))
            return V3_INVALID_ARG;
        *info = {};
        info->id = index;
        info->parent_unit_id = index == kRootUnit ? kNoUnit : kRootUnit;
        copyWide(info->name,
            index == kRootUnit ? product::kName : unitNames()[static_cast<size_t>(index) - 1]);
        info->program_list_id = -1;
        return V3_OK;
    };
    all.unit.get_program_list_count = [](void*) -> int32_t { return 0; };
    all.unit.get_program_list_info = [](void*, int32_t, v3_program_list_info*) -> v3_result {
        return V3_INVALID_ARG;
    };
    all.unit.get_program_name = [](void*, int32_t, int32_t, v3_str_128) -> v3_result {
        return V3_INVALID_ARG;
    };
    all.unit.get_program_info = [](void*, int32_t, int32_t, const char*, v3_str_128) -> v3_result {
        return V3_INVALID_ARG;
    };
    all.unit.has_program_pitch_names = [](void*, int32_t, int32_t) -> v3_result {
        return V3_FALSE;
    };
    all.unit.get_program_pitch_name = [](void*, int32_t, int32_t, int16_t,
                                          v3_str_128) -> v3_result { return V3_INVALID_ARG; };
    all.unit.get_selected_unit = [](void*) -> int32_t { return kRootUnit; };
    all.unit.select_unit = [](void*, int32_t) -> v3_result { return V3_OK; };
    all.unit.get_unit_by_bus = [](void*, int32_t, int32_t, int32_t, int32_t,
                                   int32_t*) -> v3_result { return V3_FALSE; };
    all.unit.set_unit_program_data = [](void*, int32_t, int32_t, v3_bstream**) -> v3_result {
        return V3_NOT_IMPLEMENTED;
    };
    return all;
}

const v3_edit_controller_cpp Vst3Plugin::kController = controllerTable();
const v3_midi_mapping_cpp Vst3Plugin::kMapping = mappingTable();
const v3_unit_information_cpp Vst3Plugin::kUnits = unitsTable();

} // namespace ormund
