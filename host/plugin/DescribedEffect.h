// What a host reads of the plug-in without its playing: names, texts, capabilities.
#pragma once

#include "host/effect/KWPluginBase.h"

namespace ormund {

// The host's thread for the user interface.
class DescribedEffect : public KWPluginBase {
public:
    using KWPluginBase::KWPluginBase;

    void setParameterAutomated(VstInt32 index, float value) override;
    void getParameterLabel(VstInt32 index, char* text) override;
    void getParameterDisplay(VstInt32 index, char* text) override;
    void getParameterName(VstInt32 index, char* text) override;
    bool getParameterProperties(VstInt32 index, VstParameterProperties* properties) override;
    bool string2parameter(VstInt32 index, const char* text) override;
    void beginEdit(VstInt32 index) override;
    void endEdit(VstInt32 index) override;
    bool getOutputProperties(VstInt32 index, VstPinProperties* properties) override;
    VstInt32 getGetTailSize() override { return static_cast<VstInt32>(getSampleRate()); }
    bool getEffectName(char* name) override;
    bool getProductString(char* text) override;
    bool getVendorString(char* text) override;
    VstInt32 getVendorVersion() override;
    VstInt32 canDo(const char* text) override;
    VstPlugCategory getPlugCategory() override { return kPlugCategSynth; }
    VstInt32 getNumMidiInputChannels() override { return 16; }
    VstInt32 getNumMidiOutputChannels() override { return 1; }
};

} // namespace ormund
