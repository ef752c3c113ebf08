// The second half of the effect interface: events, transport, texts about the plug-in, and the
// other calls to the host.
#pragma once

#include "host/effect/AudioEffect.h"

namespace ormund {

class AudioEffectX : public AudioEffect {
public:
    using AudioEffect::AudioEffect;

    VstIntPtr dispatcher(
        VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) override;

    // --- what the host asks -------------------------------------------------------------------
    // The audio thread, before the block that the events belong to. Answers 1 to get more.
    virtual VstInt32 processEvents(VstEvents* /*events*/) { return 0; }
    virtual bool canParameterBeAutomated(VstInt32 index) { return isHostParameter(index); }
    // Sets the parameter from a text as a user types it. A null text asks whether that can be done.
    virtual bool string2parameter(VstInt32 /*index*/, const char* /*text*/) { return false; }
    virtual bool getProgramNameIndexed(VstInt32 /*category*/, VstInt32 /*index*/, char* /*text*/)
    {
        return false;
    }
    virtual bool getInputProperties(VstInt32 /*index*/, VstPinProperties* /*properties*/)
    {
        return false;
    }
    virtual bool getOutputProperties(VstInt32 /*index*/, VstPinProperties* /*properties*/)
    {
        return false;
    }
    virtual bool getParameterProperties(VstInt32 /*index*/, VstParameterProperties* /*properties*/)
    {
        return false;
    }
    virtual VstPlugCategory getPlugCategory() { return kPlugCategUnknown; }
    // False: the effect has no bypass of its own, the host must do it.
    virtual bool setBypass(bool /*onOff*/) { return false; }
    virtual bool getEffectName(char* /*name*/) { return false; }
    virtual bool getVendorString(char* /*text*/) { return false; }
    virtual bool getProductString(char* /*text*/) { return false; }
    virtual VstInt32 getVendorVersion() { return 0; }
    virtual VstIntPtr vendorSpecific(
        VstInt32 /*index*/, VstIntPtr /*value*/, void* /*ptr*/, float /*opt*/)
    {
        return 0;
    }
    // 1 can, -1 cannot, 0 don't know.
    virtual VstInt32 canDo(const char* /*text*/) { return 0; }
    // How long the sound goes on after the input ended, samples; 1 is none.
    virtual VstInt32 getGetTailSize() { return 0; }
    virtual VstInt32 getVstVersion() { return kVstVersion; }
    virtual VstInt32 getNumMidiInputChannels() { return 0; }
    virtual VstInt32 getNumMidiOutputChannels() { return 0; }
    // The screen's thread, window or not, where the host has heard needIdle; 1 to be called again.
    virtual VstInt32 fxIdle() { return 0; }
    virtual VstInt32 startProcess() { return 0; }
    virtual VstInt32 stopProcess() { return 0; }

    // --- what the plug-in asks; all answer 0 or false without a host ----------------------------
    virtual void beginEdit(VstInt32 index);
    virtual void endEdit(VstInt32 index);
    void wantEvents();
    // The host's record, valid during the block, or null. `filter` is a set of VstTimeInfoFlags.
    VstTimeInfo* getTimeInfo(VstInt32 filter);
    bool sendVstEventsToHost(VstEvents* events);
    VstInt32 getCurrentProcessLevel(); // VstProcessLevels
    bool sizeWindow(VstInt32 width, VstInt32 height);
    bool updateDisplay();
    bool needIdle(); // outside a block; later interfaces have dropped it, most hosts have not
    bool ioChanged();
    float getHostSampleRate(); // hertz
    VstInt32 getHostBlockSize();
    // These fill `text` (64 bytes), empty where the host does not answer.
    bool getHostVendorString(char* text);
    bool getHostProductString(char* text);
    VstInt32 getHostVendorVersion();
    VstInt32 canHostDo(const char* text);
    VstInt32 getAutomationState();

protected:
    void isSynth(bool state = true) { setFlag(effFlagsIsSynth, state); }
    void noSoundInStop(bool state = true) { setFlag(effFlagsNoSoundInStop, state); }
    bool isHostParameter(VstInt32 index) { return index >= 0 && index < getAeffect()->numParams; }
};

} // namespace ormund
