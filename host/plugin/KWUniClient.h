// The plug-in: it owns the tables, the stages of the tick and the synth, and runs them.
#pragma once

#include "base/KWAligned.h"
#include "base/RealTime.h"
#include "data/library/Presets.h"
#include "data/library/Settings.h"
#include "data/music/KWKeyState.h"
#include "data/music/KWSystemInfo.h"
#include "data/parameters/Parameters.h"
#include "data/parameters/ParameterSink.h"
#include "data/state/MidiMap.h"
#include "data/tracks/PatternStore.h"
#include "data/tracks/Tracks.h"
#include "engine/EventQueues.h"
#include "engine/KWBend.h"
#include "engine/KWChance.h"
#include "engine/KWClock.h"
#include "engine/KWKeys.h"
#include "engine/KWLanes.h"
#include "engine/KWMods.h"
#include "engine/KWNotes.h"
#include "engine/KWNoteSchedule.h"
#include "engine/KWPatterns.h"
#include "engine/KWPerformance.h"
#include "engine/KWStrikes.h"
#include "engine/KWTransport.h"
#include "engine/ScreenValues.h"
#include "host/effect/KWPluginBase.h"
#include "host/plugin/EffectRecords.h"
#include "synth/KWSynth.h"

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
    // What depends on the sample rate is derived anew from the stored values.
    void reapplyParameters();
    // All stages that must start afresh after a load watch this.
    void countReload()
    {
        reloadCounter = reloadCounter + 1.0f;
        info.changes.count();
    }
    float reloads() const { return reloadCounter; }
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
    void setLockButton(bool down)
    {
        patterns.settings.lockButton = down ? 1.0f : 0.0f;
        info.changes.count();
    }

    KWSystemInfo info;
    Parameters parameters;
    Tracks tracks;
    PatternStore patternStore;
    MidiMap midiMap;
    KWKeyState keyState;
    ScreenValues screen;
    Crossing<int32_t> remoteStep = 0; // the step that a learned controller writes

private:
    // What the readers of states and presets see of this object.
    class StateLink final : public LoadInterlock {
    public:
        explicit StateLink(KWUniClient& client) : engine(client) { }
        void stopBlocks(bool wait) override;
        void resumeBlocks() override;
        void stateLoaded(PresetKind kind) override;

    private:
        KWUniClient& engine;
    };
    // host/plugin/KWUniClient.cpp
    void dropOutdatedEvents();
    void tick(int sample);
    bool mayRest() const;
    bool isUntouched() const;
    bool mayRestAt(double position) const
    {
        return restsWithin.includes(position) && keys.isOnLine(static_cast<float>(position));
    }
    void restingTick();
    bool restBlock(int frames);
    void countRests(int ticks, double lastAt);
    void playRuns(float** outputs, int frames);
    void catchUp();
    void handle(const InternalEvent& event);
    void followTempo();
    void renderRun(float** outputs, int frame, int samples);
    void sendOutgoing(double songPosition);
    void publish();
    // host/plugin/KWUniClientParameters.cpp
    void react(int tag, const Parameters::Stored& stored);
    void reactTo(int tag, const Parameters::Stored& stored);
    bool reactInstrument(int tag, const Parameters::Stored& stored);
    bool reactFamilies(int tag, const Parameters::Stored& stored);
    void stepChoice(int tag, int direction);
    void reactGlobalEdit(int tag);
    void applyDefaults();
    // host/plugin/KWUniClientHost.cpp
    void programChanged(int program);
    // host/plugin/KWUniClientState.cpp
    void stepPreset(int tag);
    void startSettings();
    void tellPresetChanged(bool listToo);
    bool isAudioThread() const; // and in its block
    void waitForBlock() const;
    bool scriptLoadOrSave(VstIntPtr code, const char* path);

    Crossing<float> reloadCounter = 0.0f;
    OneWayFlag loadBypass;
    OneWayFlag inBlock;
    OneWayFlag eventsOutdated; // the host has suspended
    WrapperPort* wrapper = nullptr;
    Crossing<int32_t> synthOn = 0;
    Crossing<int32_t> ignoreProgramChange = 1;
    Crossing<int32_t> keepMidiMap = 0; // a load leaves the user's controllers alone
    Crossing<int32_t> rendersOffline = 0;
    Crossing<uintptr_t> blockThread = uintptr_t{0};
    Mailbox deferredPreset; // a tag
    PresetPosition presetPosition;
    StateLink stateLink{*this};
    StateParts stateParts{info, parameters, tracks, patternStore, midiMap, presetPosition, *this,
        stateLink, keepMidiMap};

public:
    Settings settings;
    Presets presets{settings, stateParts};

private:
    // Audio thread.
    InputQueue inputQueue;
    OutgoingList outgoing;
    EffectEventList sent;
    KWNoteSchedule schedule;
    KWTransport transport;
    KWKeys keys;
    KWClock clock;
    KWPatterns patterns;
    KWLanes lanes;
    KWChance chance;
    KWPerformance performance;
    KWNotes notes;
    KWStrikes strikes;
    KWBend bend;
    KWMods mods;
    KWSynth synth;
    // All that the stages behind the patterns read, but for the counters of their own.
    struct StepInputs {
        KWKeys::Out keys;
        KWClock::Out clock;
        KWPatterns::Out patterns;
        uint32_t changes = 0;
        friend bool operator==(const StepInputs&, const StepInputs&) = default;
    };
    LastSeen<StepInputs> stepInputs;
    int restsLeft = 0;            // ticks in which nothing can move of itself
    KWClock::Stretch restsWithin; // the song positions at which they may
    int rested = 0;               // ticks that the stages' counters have not taken yet
    bool synthTicked = false;     // the synth has had its control step for this period
    alignas(32) float runLeft[kTickSamples]{};
    alignas(32) float runRight[kTickSamples]{};
};

} // namespace ormund
