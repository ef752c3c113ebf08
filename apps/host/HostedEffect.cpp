#include "apps/host/HostedEffect.h"

#include "base/Product.h"

#include <cstdio>
#include <dlfcn.h>
#include <string_view>

namespace ormund {

namespace {

// The instance that is being made calls its host before it is known from others.
thread_local HostedEffect* hostInConstruction = nullptr;

} // namespace

HostedEffect::~HostedEffect()
{
    close();
    if (module)
        dlclose(module);
}

HostedEffect::Entry HostedEffect::loadModule(const std::string& path)
{
    module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        problem = dlerror();
        return nullptr;
    }
    void* entry = dlsym(module, "VSTPluginMain");
    if (!entry)
        entry = dlsym(module, "main"); // as older modules call it
    if (!entry)
        problem = path + " is no plug-in: it exports no VSTPluginMain";
    return reinterpret_cast<Entry>(entry);
}

bool HostedEffect::open(Entry entry, float sampleRate, int blockSize)
{
    rate = sampleRate;
    block = blockSize;
    hostInConstruction = this;
    instance = entry(callback);
    hostInConstruction = nullptr;
    if (!instance || instance->magic != kEffectMagic) {
        problem = "the module made no instance";
        instance = nullptr;
        return false;
    }
    instance->resvd1 = reinterpret_cast<VstIntPtr>(this);
    dispatch(effOpen);
    dispatch(effSetSampleRate, 0, 0, nullptr, rate);
    dispatch(effSetBlockSize, 0, block);
    dispatch(effMainsChanged, 0, 1);
    dispatch(effStartProcess);
    return true;
}

void HostedEffect::close()
{
    if (!instance)
        return;
    dispatch(effStopProcess);
    dispatch(effMainsChanged, 0, 0);
    dispatch(effClose);
    instance = nullptr;
}

VstIntPtr HostedEffect::dispatch(
    VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    return instance->dispatcher(instance, opcode, index, value, ptr, opt);
}

std::string HostedEffect::text(VstInt32 opcode, VstInt32 index, VstIntPtr value)
{
    char answered[256] = {};
    dispatch(opcode, index, value, answered);
    answered[255] = 0;
    return answered;
}

void HostedEffect::changeSampleRate(float hertz)
{
    rate = hertz;
    dispatch(effStopProcess);
    dispatch(effMainsChanged, 0, 0);
    dispatch(effSetSampleRate, 0, 0, nullptr, hertz);
    dispatch(effMainsChanged, 0, 1);
    dispatch(effStartProcess);
}

VstIntPtr HostedEffect::callback(
    AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    auto* host = effect ? reinterpret_cast<HostedEffect*>(effect->resvd1) : nullptr;
    if (!host)
        host = hostInConstruction;
    return host ? host->answer(opcode, index, value, ptr, opt) : 0;
}

VstIntPtr HostedEffect::answer(
    VstInt32 opcode, VstInt32 /*index*/, VstIntPtr /*value*/, void* ptr, float /*opt*/)
{
    switch (opcode) {
    case audioMasterVersion:
        return kVstVersion;
    case audioMasterWantMidi:
        return 1;
    case audioMasterGetSampleRate:
        return static_cast<VstIntPtr>(rate);
    case audioMasterGetBlockSize:
        return block;
    case audioMasterGetCurrentProcessLevel:
        return kVstProcessLevelRealtime;
    case audioMasterGetVendorString:
    case audioMasterGetProductString:
        if (!ptr)
            return 0;
        std::snprintf(static_cast<char*>(ptr), kVstMaxVendorStrLen, "%s",
            opcode == audioMasterGetVendorString ? product::kMaker : product);
        return 1;
    case audioMasterCanDo: {
        const std::string_view asked = ptr ? static_cast<const char*>(ptr) : "";
        return asked == "sendVstEvents" || asked == "sendVstMidiEvent"
            || asked == "receiveVstEvents" || asked == "receiveVstMidiEvent"
            || asked == "sendVstTimeInfo";
    }
    default:
        return 0;
    }
}

} // namespace ormund
