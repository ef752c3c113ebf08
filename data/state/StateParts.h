// What a state is made of, as the reader and the writer of states reach it.
#pragma once

#include "data/music/KWSystemInfo.h"
#include "data/parameters/Parameters.h"
#include "data/parameters/ParameterSink.h"
#include "data/state/KeptRecords.h"
#include "data/state/MidiMap.h"
#include "data/tracks/PatternStore.h"
#include "data/tracks/Tracks.h"

#include <array>
#include <atomic>
#include <string>

namespace ormund {

// The two kinds of preset; the number is the mode of a save and of a load.
enum class PresetKind : uint8_t { Global = 0, Synth = 1 };
inline constexpr int kPresetKinds = 2;

// The loader's thread.
struct PresetPosition {
    std::array<std::string, kPresetKinds> names; // of the current presets, without an ending
    int program = 0;                             // place in its folder
    int folder = 0;                              // place in the tree of global presets
    friend bool operator==(const PresetPosition&, const PresetPosition&) = default;
};

// The side of the engine that a load needs. Called on the loader's thread, which is the audio
// thread at a change of program; nothing here may then block or allocate.
class LoadInterlock {
public:
    // No block runs between the two. With `wait` false the caller is the audio thread itself.
    virtual void stopBlocks(bool wait) = 0;
    virtual void resumeBlocks() = 0;
    // All is in place: stages that must start afresh after a whole song do so, and the screen looks
    // again.
    virtual void stateLoaded(PresetKind kind) = 0;

    // Odd while a state is being put in place. Who reads a whole state meanwhile reads it again.
    std::atomic<uint32_t> loads{0};

protected:
    LoadInterlock() = default;
    ~LoadInterlock() = default;
};

// A state is being put in place while it lives.
class LoadMark {
public:
    explicit LoadMark(LoadInterlock& used) : interlock(used) { ++interlock.loads; }
    ~LoadMark() { ++interlock.loads; }
    LoadMark(const LoadMark&) = delete;
    LoadMark& operator=(const LoadMark&) = delete;

private:
    LoadInterlock& interlock;
};

// No block runs while it lives, whichever way its scope is left.
class BlocksStopped {
public:
    BlocksStopped(LoadInterlock& used, bool wait) : interlock(used) { interlock.stopBlocks(wait); }
    ~BlocksStopped() { interlock.resumeBlocks(); }
    BlocksStopped(const BlocksStopped&) = delete;
    BlocksStopped& operator=(const BlocksStopped&) = delete;

private:
    LoadInterlock& interlock;
};

struct StateParts {
    KWSystemInfo& info;
    Parameters& parameters;
    Tracks& tracks;
    PatternStore& patterns;
    MidiMap& midiMap;
    PresetPosition& position;
    ParameterSink& sink; // every loaded value goes through it
    LoadInterlock& interlock;
    const Crossing<int32_t>& keepMap; // not 0: a load leaves the user's map alone
    // By kind of preset: what the last load met and does not know. Saved again with its kind.
    std::array<KeptRecords, kPresetKinds> kept{};
};

} // namespace ormund
