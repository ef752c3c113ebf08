// The plug-in: the sequencer and the user's library behind the effect interface.
#pragma once

#include "base/KWAligned.h"
#include "base/RealTime.h"
#include "engine/Sequencer.h"
#include "host/plugin/DescribedEffect.h"
#include "host/plugin/EffectRecords.h"
#include "host/plugin/PluginLibrary.h"

namespace ormund {

class WrapperPort;

// Threads: processReplacing, processBlock and processEvents on the audio thread; setParameter from
// any; everything else on the host's thread for the user interface. No lock anywhere.
class KWUniClient final : public KWAligned, public DescribedEffect, public ParameterSink {
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
    VstInt32 processEvents(VstEvents* events) override;
    void setParameter(VstInt32 index, float value) override;
    float getParameter(VstInt32 index) override;
    VstInt32 getChunk(void** data, bool isPreset) override;
    VstInt32 setChunk(void* data, VstInt32 byteSize, bool isPreset) override;
    VstInt32 getProgram() override;
    void setProgram(VstInt32 program) override;
    void setProgramName(char* name) override;
    void getProgramName(char* name) override;
    bool getProgramNameIndexed(VstInt32 category, VstInt32 index, char* text) override;
    VstIntPtr vendorSpecific(VstInt32 index, VstIntPtr value, void* ptr, float opt) override;

    // --- for a wrapper -----------------------------------------------------------------------
    // With a port set, processReplacing only clears and processEvents takes nothing: the wrapper
    // calls processBlock and queueEvents itself.
    void setWrapperPort(WrapperPort* port) { wrapper = port; }
    // The block function. `outputs[1]` may be null.
    void processBlock(float** outputs, int sampleFrames) noexcept ORMUND_NONBLOCKING;
    void queueEvents(const VstEvents* events) noexcept ORMUND_NONBLOCKING;

    Sequencer sequencer;
    PluginLibrary library;

    // Their parts, by short names.
    KWSystemInfo& info = sequencer.info;
    Parameters& parameters = sequencer.parameters;
    Tracks& tracks = sequencer.tracks;
    PatternStore& patternStore = sequencer.patternStore;
    MidiMap& midiMap = sequencer.midiMap;
    KWKeyState& keyState = sequencer.keyState;
    ScreenValues& screen = sequencer.screen;
    Settings& settings = library.settings;
    Presets& presets = library.presets;

private:
    void sendOutgoing(std::span<const MidiEvent> events, double songPosition);

    WrapperPort* wrapper = nullptr;
    Crossing<uintptr_t> blockThread = uintptr_t{0}; // 0 outside a block

    // Audio thread.
    BlockTransport blockSong; // of the last record
    EffectEventList sent;
};

} // namespace ormund
