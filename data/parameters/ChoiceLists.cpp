#include "data/parameters/ChoiceLists.h"

namespace ormund {

const std::array<std::string_view, kPlaybackModes> kPlaybackModeNames = {
    "forward", "backward", "random", "each 2nd", "each 3rd", "each 4th"};

// clang-format off
const std::array<std::string_view, kSpeeds> kSpeedNames
    = {"1 / 1", "1 / 2", "1 / 2 T",    "1 / 4", "1 / 4 T",   "1 / 8 ", "1 / 8 T", "1 / 16", "1 / 16 T", "1 / 32"};
const std::array<float, kSpeeds> kSpeedStepsPerBeat
    = {0.25f,   0.5f,    0.666666985f, 1.0f,    1.33333302f, 2.0f,     3.0f,      4.0f,     6.0f,       8.0f};
// clang-format on

const std::array<std::string_view, kSongSpeeds> kSongSpeedNames = {
    "1 Step", "2 Steps", "4 Steps", "8 Steps", "16 Steps", "32 Steps"};
const std::array<float, kSongSpeeds> kSongSpeedSteps = {1, 2, 4, 8, 16, 32};

const std::array<std::string_view, kKeySyncs> kKeySyncNames = {
    "OFF", "1 / 16", "1 / 8", "1 / 4", "1 / 2", "1 / 1"};
const std::array<float, kKeySyncs> kKeySyncFactors = {1, 4, 2, 1, 0.5f, 0.25f};

const std::array<std::string_view, kGateMultiples> kGateMultiplyNames = {"0.125", "0.25", "0.375",
    "0.5", "0.625", "0.75", "0.875", "1", "2", "3", "4", "5", "6", "7", "8"};
const std::array<float, kGateMultiples> kGateMultiplyTable = {
    0.125f, 0.25f, 0.375f, 0.5f, 0.625f, 0.75f, 0.875f, 1, 2, 3, 4, 5, 6, 7, 8};

const std::array<std::string_view, kTriggerModes> kTriggerModeNames = {
    "keyboard", "toggle", "host"};

const std::array<int, kOctaveSteps> kOctaveOffsets = {0, 2, 1, -1, -2};

} // namespace ormund
