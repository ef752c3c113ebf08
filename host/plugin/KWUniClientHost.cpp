// What the host asks of the plug-in: names, texts, capabilities.

#include "host/plugin/KWUniClient.h"

#include "data/parameters/Tags.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>

namespace ormund {

namespace {
constexpr char kName[] = "Ormund";
constexpr char kVendor[] = "Kelda Works";
constexpr VstInt32 kVendorVersion = 1061;
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
} // namespace

void KWUniClient::getParameterName(VstInt32 index, char* text)
{
    const bool isShown = index >= 0 && index < kHostParameters;
    std::snprintf(
        text, kTextRoom, "%s", isShown ? parameters.entry(index)->name.data() : kNoParameter);
}

void KWUniClient::getParameterLabel(VstInt32 index, char* text) { getParameterName(index, text); }

void KWUniClient::getParameterDisplay(VstInt32 index, char* text)
{
    if (index >= 0 && index < kHostParameters)
        parameterText(index, parameters.raw(index), {text, kTextRoom});
    else
        std::snprintf(text, kTextRoom, "%s", kNoParameter);
}

bool KWUniClient::string2parameter(VstInt32 index, const char* text)
{
    if (index < 0 || index >= kHostParameters)
        return false;
    if (!text)
        return true;
    const std::optional<float> value = parameterFromText(index, text);
    if (value)
        setParameter(index, *value);
    return value.has_value();
}

bool KWUniClient::getParameterProperties(VstInt32 index, VstParameterProperties* properties)
{
    if (index < 0 || index >= kHostParameters || !properties)
        return false;
    const ParameterEntry& entry = *parameters.entry(index);
    *properties = {};
    copyText(properties->label, entry.name.data());
    copyText(properties->shortLabel, entry.name.data());
    properties->flags = entry.states() == 2 ? kVstParameterIsSwitch : kVstParameterCanRamp;
    return true;
}

void KWUniClient::beginEdit(VstInt32 index)
{
    if (index >= 0 && index < kHostParameters)
        KWPluginBase::beginEdit(index);
}

void KWUniClient::endEdit(VstInt32 index)
{
    if (index >= 0 && index < kHostParameters)
        KWPluginBase::endEdit(index);
}

bool KWUniClient::getOutputProperties(VstInt32 index, VstPinProperties* properties)
{
    if (index < 0 || index >= 2 || !properties)
        return false;
    *properties = {};
    copyText(properties->label, index == 0 ? "Ormund Left" : "Ormund Right");
    copyText(properties->shortLabel, index == 0 ? "Left" : "Right");
    properties->flags = kVstPinIsActive | kVstPinIsStereo;
    return true;
}

VstInt32 KWUniClient::getGetTailSize() { return static_cast<VstInt32>(info.sampleRate); }

bool KWUniClient::getEffectName(char* name)
{
    std::snprintf(name, kVstMaxEffectNameLen, "%s", kName);
    return true;
}

bool KWUniClient::getProductString(char* text) { return getEffectName(text); }

bool KWUniClient::getVendorString(char* text)
{
    std::snprintf(text, kVstMaxVendorStrLen, "%s", kVendor);
    return true;
}

VstInt32 KWUniClient::getVendorVersion() { return kVendorVersion; }

VstInt32 KWUniClient::canDo(const char* text)
{
    const auto* found = std::find_if(std::begin(kCapabilities), std::end(kCapabilities),
        [text](const char* capability) { return std::strcmp(text, capability) == 0; });
    return found != std::end(kCapabilities) ? 1 : -1;
}

VstPlugCategory KWUniClient::getPlugCategory() { return kPlugCategSynth; }

} // namespace ormund
