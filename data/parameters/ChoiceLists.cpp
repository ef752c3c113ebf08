#include "data/parameters/ChoiceLists.h"

#include <algorithm>

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

// clang-format off
const std::array<std::string_view, kLaneSpeeds> kLaneSpeedNames
    = {"1 / 8", "1 / 6", "1 / 4", "1 / 3", "1 / 2", "2 / 3", "3 / 4", "x 1",  "3 / 2", "x 2",  "x 3",  "x 4"};
const std::array<LaneSpeed, kLaneSpeeds> kLaneSpeedTable
    = {{{1, 8}, {1, 6},  {1, 4},  {1, 3},  {1, 2},  {2, 3},  {3, 4},  {1, 1}, {3, 2},  {2, 1}, {3, 1}, {4, 1}}};
// clang-format on

namespace {
constexpr size_t kNameLength = 4; // "C#-1"
constexpr auto kNoteLetters = [] {
    constexpr std::string_view kNames = "C C#D D#E F F#G G#A A#B ";
    std::array<std::array<char, kNameLength>, kMidiNotes> letters{};
    for (size_t note = 0; note < letters.size(); ++note) {
        size_t length = 0;
        for (const char c : kNames.substr(2 * (note % 12), 2))
            if (c != ' ')
                letters[note][length++] = c;
        if (note < 12)
            letters[note][length++] = '-';
        letters[note][length] = static_cast<char>('0' + (note < 12 ? 1 : note / 12 - 1));
    }
    return letters;
}();
} // namespace

constinit const std::array<std::string_view, kMidiNotes> kMidiNoteNames = [] {
    std::array<std::string_view, kMidiNotes> names;
    for (size_t note = 0; note < names.size(); ++note) {
        const std::string_view whole(kNoteLetters[note].data(), kNameLength);
        names[note] = whole.substr(0, std::min(whole.find('\0'), kNameLength));
    }
    return names;
}();

const std::array<std::string_view, kLaunches> kLaunchNames = {
    "now", "next step", "next beat", "next bar", "end of the loop"};

const std::array<std::string_view, kEditTools> kEditToolNames = {
    "Euclid", "Thin out", "Reverse", "Mirror", "Stretch", "Squeeze", "Humanise"};

const std::array<int, kOctaveSteps> kOctaveOffsets = {0, 2, 1, -1, -2};

} // namespace ormund
