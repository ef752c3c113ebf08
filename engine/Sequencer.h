// The sequencer: tables, parameters, the stages of the tick and the synth. It knows no host, no
// file and no setting of the user's.
#pragma once

#include "base/KWAligned.h"
#include "base/RealTime.h"
#include "data/music/KWKeyState.h"
#include "data/music/KWSystemInfo.h"
#include "data/parameters/Parameters.h"
#include "data/parameters/ParameterSink.h"
#include "data/state/MidiMap.h"
#include "data/state/ProgramBank.h"
#include "data/state/StateParts.h"
#include "data/tracks/PatternStore.h"
#include "data/tracks/Tracks.h"
#include "engine/BlockTransport.h"
#include "engine/EventQueues.h"
#include "engine/IdleTicks.h"
#include "engine/KWBend.h"
#include "engine/KWChance.h"
#include "engine/KWClock.h"
#include "engine/KWDrums.h"
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
#include "synth/KWSynth.h"

#include <span>
#include <tuple>

namespace ormund {

// Threads: process() and queue() on the audio thread; setParameter() from any; everything else on
// the thread of the user interface. No lock anywhere.
class Sequencer final : public KWAligned, public ParameterSink {
public:
    // Other loops cost more and change no sample.
    explicit Sequencer(const AudioLoops& loops = fastestLoops());

    // --- any thread ---
    void setParameter(int tag, float value) override;

    // --- audio thread ---
    // Events for the block to come, frames counted from its start.
    void queue(std::span<const MidiEvent> events) noexcept ORMUND_NONBLOCKING;
    // Plays one block. `transport` null: there is none. `in` as with queue(). Both outputs may be
    // null. What goes out is valid until the next call.
    std::span<const MidiEvent> process(const BlockTransport* transport,
        std::span<const MidiEvent> in, float* left, float* right,
        int frames) noexcept ORMUND_NONBLOCKING;

    // --- the thread of the user interface ---
    // Hz. Any other than a usable rate changes nothing and gives false.
    bool setSampleRate(float rate);
    // What depends on the sample rate is derived from the stored values again.
    void reapplyParameters();
    // Whatever still waits to be played or sent is dropped before the next block.
    void dropEvents() { eventsOutdated.raise(); }
    // What readers and writers of states need.
    StateParts& state() { return stateParts; }
    // All stages that must start from the beginning after a load watch this.
    void countReload();
    float reloads() const { return reloadCounter; }
    void setLockButton(bool down);
    // What MIDI program changes choose from; null: nothing. While no block runs.
    void setPrograms(ProgramBank* bank) { programs = bank; }
    // Whether this thread is the audio thread, inside a block.
    bool isInBlock() const;

    KWSystemInfo info;
    Parameters parameters;
    Tracks tracks;
    PatternStore patternStore;
    MidiMap midiMap;
    KWKeyState keyState;
    ScreenValues screen;
    PresetPosition presetPosition;    // kept with the state, used by the library
    Crossing<int32_t> remoteStep = 0; // the step that a learned controller writes
    Mailbox presetRequest; // the tag of a released preset button; files are not our thing

private:
    // What the readers of states see of this object.
    class StateLink final : public LoadInterlock {
    public:
        explicit StateLink(Sequencer& owner) : sequencer(owner) { }
        void stopBlocks(bool wait) override;
        void resumeBlocks() override;
        void stateLoaded(PresetKind kind) override;

    private:
        Sequencer& sequencer;
    };
    struct Reactions;

    // engine/Sequencer.cpp
    void waitForBlock() const;
    void dropOutdatedEvents();
    void playRuns(float* left, float* right, int frames);
    void tick(int frame);
    void takeEvents();
    void handle(const InternalEvent& event);
    void followTempo();
    void publish();
    auto stages()
    {
        return std::tie(keys, clock, patterns, lanes, chance, performance, notes, bend, strikes,
            drums, mods, schedule);
    }
    bool mayIdle();
    void idleTick();
    void catchUp();
    void planIdleTicks();
    void synthTick();
    void renderRun(float* left, float* right, int frame, int samples);
    // engine/SequencerParameters.cpp
    bool reactFamily(int tag, const Parameters::Stored& stored);
    void react(int tag, const Parameters::Stored& stored);
    void reactShown(int tag, const Parameters::Stored& stored);
    void stepChoice(int tag, int direction);
    void reactGlobalEdit(int tag);
    void applyDefaults();

    Crossing<float> reloadCounter = 0.0f;
    OneWayFlag loadBypass;
    OneWayFlag inBlock;
    OneWayFlag eventsOutdated;
    Crossing<uintptr_t> blockThread = uintptr_t{0};
    Crossing<int32_t> synthOn = 0;
    Crossing<int32_t> ignoreProgramChange = 1;
    Crossing<int32_t> keepMidiMap = 0; // a load leaves the user's controllers alone
    StateLink stateLink{*this};
    StateParts stateParts{info, parameters, tracks, patternStore, midiMap, presetPosition, *this,
        stateLink, keepMidiMap};
    ProgramBank* programs = nullptr;

    // Audio thread.
    InputQueue inputQueue;
    OutgoingList outgoing;
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
    KWDrums drums;
    KWSynth synth;
    // All that the stages behind the patterns read, but for the counters of their own.
    struct StepInputs {
        KWKeys::Out keys;
        KWClock::Out clock;
        KWPatterns::Out patterns;
        KWLanes::Out lanes;
        uint32_t changes = 0;
        friend bool operator==(const StepInputs&, const StepInputs&) = default;
    };
    LastSeen<StepInputs> stepInputs;
    int idleLeft = 0;         // ticks that may still be left out
    int skipped = 0;          // ticks left out that the stages have not counted yet
    double skippedAt = 0;     // the place, read ahead, of the last of them
    bool synthTicked = false; // the synth has had its control step for this period
    alignas(32) float runLeft[kTickSamples]{};
    alignas(32) float runRight[kTickSamples]{};
};

} // namespace ormund
