// The texts of every list parameter and the values behind them.
#pragma once

#include <array>
#include <string_view>

namespace ormund {

// How a lane walks through its loop.
constexpr int kPlaybackModes = 6;
extern const std::array<std::string_view, kPlaybackModes> kPlaybackModeNames;

// The length of a step. The third and the fifth rate are meant inexact: positions that were saved
// with them would drift against exact ones.
constexpr int kSpeeds = 10;
extern const std::array<std::string_view, kSpeeds> kSpeedNames;
extern const std::array<float, kSpeeds> kSpeedStepsPerBeat;

// How long the pattern sequencer stays on a position.
constexpr int kSongSpeeds = 6;
extern const std::array<std::string_view, kSongSpeeds> kSongSpeedNames;
extern const std::array<float, kSongSpeeds> kSongSpeedSteps; // steps a unit

// The grid on which held keys act.
constexpr int kKeySyncs = 6;
extern const std::array<std::string_view, kKeySyncs> kKeySyncNames;
extern const std::array<float, kKeySyncs> kKeySyncFactors; // grid lines a quarter note

// What the gate time is multiplied by, in quarters of the note.
constexpr int kGateMultiples = 15;
extern const std::array<std::string_view, kGateMultiples> kGateMultiplyNames;
extern const std::array<float, kGateMultiples> kGateMultiplyTable;

constexpr int kTriggerModes = 3;
extern const std::array<std::string_view, kTriggerModes> kTriggerModeNames;

// How fast a lane walks, in steps a step of the clock. 2 / 3 is dotted, 3 / 2 triplet.
constexpr int kLaneSpeeds = 12;
constexpr int kPlainLaneSpeed = 7;
extern const std::array<std::string_view, kLaneSpeeds> kLaneSpeedNames;
struct LaneSpeed {
    int steps = 1; // in so many of the clock's
    int in = 1;
    friend constexpr bool operator==(const LaneSpeed&, const LaneSpeed&) = default;
};
extern const std::array<LaneSpeed, kLaneSpeeds> kLaneSpeedTable;

// MIDI notes 0 to 127; 60 is C4.
constexpr int kMidiNotes = 128;
extern const std::array<std::string_view, kMidiNotes> kMidiNoteNames;

// When a chosen pattern begins.
enum class Launch { Now, Step, Beat, Bar, Loop };
constexpr int kLaunches = 5;
extern const std::array<std::string_view, kLaunches> kLaunchNames;

// What the tool button of a lane does, enum EditTool.
constexpr int kEditTools = 7;
extern const std::array<std::string_view, kEditTools> kEditToolNames;

// What an octave step adds.
constexpr int kOctaveSteps = 5;
extern const std::array<int, kOctaveSteps> kOctaveOffsets; // octaves

} // namespace ormund
