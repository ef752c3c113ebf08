// Calls to the host. Without one, each is a no-op that answers 0.
#include "host/effect/AudioEffectX.h"

#include <algorithm>

namespace ormund {

VstIntPtr AudioEffect::callHost(
    VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    return audioMaster ? audioMaster(&cEffect, opcode, index, value, ptr, opt) : 0;
}

VstInt32 AudioEffect::getMasterVersion()
{
    return std::max<VstInt32>(1, static_cast<VstInt32>(callHost(audioMasterVersion)));
}

void AudioEffect::setParameterAutomated(VstInt32 index, float value)
{
    setParameter(index, value);
    callHost(audioMasterAutomate, index, 0, nullptr, value);
}

void AudioEffectX::beginEdit(VstInt32 index) { callHost(audioMasterBeginEdit, index); }

void AudioEffectX::endEdit(VstInt32 index) { callHost(audioMasterEndEdit, index); }

void AudioEffectX::wantEvents() { callHost(audioMasterWantMidi, 0, 1); }

VstTimeInfo* AudioEffectX::getTimeInfo(VstInt32 filter)
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the interface answers pointers as numbers
    return reinterpret_cast<VstTimeInfo*>(callHost(audioMasterGetTime, 0, filter));
}

bool AudioEffectX::sendVstEventsToHost(VstEvents* events)
{
    return callHost(audioMasterProcessEvents, 0, 0, events) == 1;
}

VstInt32 AudioEffectX::getCurrentProcessLevel()
{
    return static_cast<VstInt32>(callHost(audioMasterGetCurrentProcessLevel));
}

bool AudioEffectX::sizeWindow(VstInt32 width, VstInt32 height)
{
    return callHost(audioMasterSizeWindow, width, height) != 0;
}

bool AudioEffectX::updateDisplay() { return callHost(audioMasterUpdateDisplay) != 0; }

bool AudioEffectX::needIdle() { return callHost(audioMasterNeedIdle) != 0; }

bool AudioEffectX::ioChanged() { return callHost(audioMasterIOChanged) != 0; }

float AudioEffectX::getHostSampleRate()
{
    return static_cast<float>(callHost(audioMasterGetSampleRate));
}

VstInt32 AudioEffectX::getHostBlockSize()
{
    return static_cast<VstInt32>(callHost(audioMasterGetBlockSize));
}

bool AudioEffectX::getHostVendorString(char* text)
{
    // Hosts write more than 64 bytes now and then, so they get a buffer of ours.
    char answer[kEffectTextBytes] = {};
    const bool answered = callHost(audioMasterGetVendorString, 0, 0, answer) != 0;
    copyEffectText(text, answer, kVstMaxVendorStrLen);
    return answered;
}

bool AudioEffectX::getHostProductString(char* text)
{
    char answer[kEffectTextBytes] = {};
    const bool answered = callHost(audioMasterGetProductString, 0, 0, answer) != 0;
    copyEffectText(text, answer, kVstMaxProductStrLen);
    return answered;
}

VstInt32 AudioEffectX::getHostVendorVersion()
{
    return static_cast<VstInt32>(callHost(audioMasterGetVendorVersion));
}

VstInt32 AudioEffectX::canHostDo(const char* text)
{
    return static_cast<VstInt32>(
        callHost(audioMasterCanDo, 0, 0, const_cast<char*>(text))); // hosts only read it
}

VstInt32 AudioEffectX::getAutomationState()
{
    return static_cast<VstInt32>(callHost(audioMasterGetAutomationState));
}

} // namespace ormund
