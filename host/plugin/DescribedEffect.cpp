#include "host/plugin/DescribedEffect.h"

#include "base/Product.h"
#include "data/parameters/Parameters.h"
#include "data/parameters/Tags.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>

namespace ormund {

namespace {
constexpr char kNoParameter[] = "empty";
constexpr size_t kTextRoom = kVstMaxParamStrLen;

constexpr const char* kCapabilities[] = {
    "receiveVstEvents",
    "receiveVstMidiEvent",
    "sendVstMidiEvent",
    "sendVstEvent",
    "receiveVstTimeInfo",
    "hasAboutScreen",
};

template <size_t Size>
void copyText(char (&to)[Size], const char* from)
{
    std::snprintf(to, Size, "%s", from);
}

// Tags beyond the host's own parameters are the screen's.
bool isShown(VstInt32 index) { return index >= 0 && index < kHostParameters; }
} // namespace

void DescribedEffect::getParameterName(VstInt32 index, char* text)
{
    std::snprintf(
        text, kTextRoom, "%s", isShown(index) ? parameterEntry(index)->name.data() : kNoParameter);
}

void DescribedEffect::getParameterLabel(VstInt32 index, char* text)
{
    getParameterName(index, text);
}

void DescribedEffect::getParameterDisplay(VstInt32 index, char* text)
{
    if (isShown(index))
        parameterText(index, getParameter(index), {text, kTextRoom});
    else
        std::snprintf(text, kTextRoom, "%s", kNoParameter);
}

void DescribedEffect::setParameterAutomated(VstInt32 index, float value)
{
    if (isShown(index))
        KWPluginBase::setParameterAutomated(index, value);
}

bool DescribedEffect::string2parameter(VstInt32 index, const char* text)
{
    if (!isShown(index))
        return false;
    if (!text)
        return true;
    const std::optional<float> value = parameterFromText(index, text);
    if (value)
        setParameter(index, *value);
    return value.has_value();
}

bool DescribedEffect::getParameterProperties(VstInt32 index, VstParameterProperties* properties)
{
    if (!isShown(index) || !properties)
        return false;
    const ParameterEntry& entry = *parameterEntry(index);
    *properties = {};
    copyText(properties->label, entry.name.data());
    copyText(properties->shortLabel, entry.name.data());
    properties->flags = entry.states() == 2 ? kVstParameterIsSwitch : kVstParameterCanRamp;
    return true;
}

void DescribedEffect::beginEdit(VstInt32 index)
{
    if (isShown(index))
        KWPluginBase::beginEdit(index);
}

void DescribedEffect::endEdit(VstInt32 index)
{
    if (isShown(index))
        KWPluginBase::endEdit(index);
}

bool DescribedEffect::getOutputProperties(VstInt32 index, VstPinProperties* properties)
{
    if (index < 0 || index >= 2 || !properties)
        return false;
    *properties = {};
    copyText(properties->label, index == 0 ? product::kLeftName : product::kRightName);
    copyText(properties->shortLabel, index == 0 ? "Left" : "Right");
    properties->flags = kVstPinIsActive | kVstPinIsStereo;
    return true;
}

bool DescribedEffect::getEffectName(char* name)
{
    std::snprintf(name, kVstMaxEffectNameLen, "%s", product::kName);
    return true;
}

bool DescribedEffect::getProductString(char* text) { return getEffectName(text); }

bool DescribedEffect::getVendorString(char* text)
{
    std::snprintf(text, kVstMaxVendorStrLen, "%s", product::kMaker);
    return true;
}

VstInt32 DescribedEffect::getVendorVersion() { return product::kHostVersion; }

VstInt32 DescribedEffect::canDo(const char* text)
{
    const auto* found = std::find_if(std::begin(kCapabilities), std::end(kCapabilities),
        [text](const char* capability) { return std::strcmp(text, capability) == 0; });
    return found != std::end(kCapabilities) ? 1 : -1;
}

} // namespace ormund
