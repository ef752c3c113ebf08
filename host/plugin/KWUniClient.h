// The plug-in: the sequencer and the user's library behind the effect interface.
#pragma once

#include "base/KWAligned.h"
#include "base/RealTime.h"
#include "data/library/Presets.h"
#include "data/library/Settings.h"
#include "engine/Sequencer.h"
#include "host/effect/KWPluginBase.h"
#include "host/plugin/EffectRecords.h"

namespace ormund {

class WrapperPort;

// Threads: processReplacing, processBlock and processEvents on the audio thread; setParameter from
// any; everything else on the host's thread for the user interface. No lock anywhere.
class KWUniClient final : public KWAligned, public KWPluginBase, public ParameterSink {
public:
    static constexpr VstInt32 kUniqueId = 0x4B574F52; // "KWOR"
    static constexpr int kPrograms = 128;

    // `master` may be null: the instance then runs without a host. Other loops cost more and change
    // no sample.
    explicit KWUniClient(audioMasterCallback master, const AudioLoops& loops = fastestLoops());
    ~KWUniClient() override;

    // --- the effect interface ----------------------------------------------------------------
    void open() override;
    VstInt32 fxIdle() override;
    void suspend() override;
    void resume() override;
    void setSampleRate(float rate) override;
    void processReplacing(float** inputs, float** outputs, VstInt32 sampleFrames) override;
    void setParameter(VstInt32 index, float value) override;
    float getParameter(VstInt32 index) override;
    void setParameterAutomated(VstInt32 index, float value) override;
    VstInt32 getChunk(void** data, bool isPreset) override;
    VstInt32 setChunk(void* data, VstInt32 byteSize, bool isPreset) override;
    VstInt32 getProgram() override;
    void setProgram(VstInt32 program) override;
    void setProgramName(char* name) override;
    void getProgramName(char* name) override;
    bool getProgramNameIndexed(VstInt32 category, VstInt32 index, char* text) override;
    VstIntPtr vendorSpecific(VstInt32 index, VstIntPtr value, void* ptr, float opt) override;
    void getParameterLabel(VstInt32 index, char* text) override;
    void getParameterDisplay(VstInt32 index, char* text) override;
    void getParameterName(VstInt32 index, char* text) override;
    bool getParameterProperties(VstInt32 index, VstParameterProperties* properties) override;
    bool string2parameter(VstInt32 index, const char* text) override;
    void beginEdit(VstInt32 index) override;
    void endEdit(VstInt32 index) override;
    bool getOutputProperties(VstInt32 index, VstPinProperties* properties) override;
    VstInt32 processEvents(VstEvents* events) override;
    VstInt32 getGetTailSize() override;
    bool getEffectName(char* name) override;
    bool getProductString(char* text) override;
    bool getVendorString(char* text) override;
    VstInt32 getVendorVersion() override;
    VstInt32 canDo(const char* text) override;
    VstPlugCategory getPlugCategory() override;
    VstInt32 getNumMidiInputChannels() override { return 16; }
    VstInt32 getNumMidiOutputChannels() override { return 1; }

    // --- for a wrapper -----------------------------------------------------------------------
    // With a port set, processReplacing only clears and processEvents takes nothing: the wrapper
    // calls processBlock and queueEvents itself.
    void setWrapperPort(WrapperPort* port) { wrapper = port; }
    bool wrapperMode() const { return wrapper != nullptr; }
    // The block function. `outputs[1]` may be null.
    void processBlock(float** outputs, int sampleFrames) noexcept ORMUND_NONBLOCKING;
    void queueEvents(const VstEvents* events) noexcept ORMUND_NONBLOCKING;

    // --- for the editor and the loaders --------------------------------------------------------
    void reapplyParameters() { sequencer.reapplyParameters(); }
    void countReload() { sequencer.countReload(); }
    float reloads() const { return sequencer.reloads(); }
    void setLockButton(bool down) { sequencer.setLockButton(down); }
    LoadResult loadPreset(PresetKind kind, const std::string& path);
    LoadResult savePreset(PresetKind kind, const std::string& path);
    // The state that the host gave last; false when it gave none.
    bool restoreSnapshot();
    // Settings::Option; `persist` writes it to the key store. The parameter that mirrors it
    // follows.
    void setSetting(int index, bool on, bool persist);
    void setRendersOffline(bool on);
    // Does what a learned controller has asked for and the audio thread may not do. The editor
    // calls it at idle; without a window it runs at the host's own idle and before a state is
    // given away.
    void runDeferred();

private:
    Sequencer sequencer;

public:
    KWSystemInfo& info = sequencer.info;
    Parameters& parameters = sequencer.parameters;
    Tracks& tracks = sequencer.tracks;
    PatternStore& patternStore = sequencer.patternStore;
    MidiMap& midiMap = sequencer.midiMap;
    KWKeyState& keyState = sequencer.keyState;
    ScreenValues& screen = sequencer.screen;
    Crossing<int32_t>& remoteStep = sequencer.remoteStep;

    Settings settings;
    Presets presets{settings, sequencer.state()};

private:
    // host/plugin/KWUniClient.cpp
    void sendOutgoing(std::span<const MidiEvent> events, double songPosition);
    // host/plugin/KWUniClientState.cpp
    void stepPreset(int tag);
    void startSettings();
    void tellPresetChanged(bool listToo);
    bool isAudioThread() const; // and in its block
    bool scriptLoadOrSave(VstIntPtr code, const char* path);

    WrapperPort* wrapper = nullptr;
    Crossing<int32_t> rendersOffline = 0;
    Crossing<uintptr_t> blockThread = uintptr_t{0}; // 0 outside a block

    // Audio thread.
    BlockTransport blockSong; // of the last record
    EffectEventList sent;
};

} // namespace ormund
