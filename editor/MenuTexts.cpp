#include "editor/ControlCatalogue.h"

// The words of the menus, in the order of their values. Odd spellings and blanks at the ends are
// those that presets' descriptions and users know.

namespace {

constexpr const char* kScales[] = {"Chromatic ", "Major", "Dorian", "Phrygian", "Lydian",
    "Mixolydian", "Aeolian", "Locrian", "General Bebop", "Harmonic Minor", "Melodic Minor",
    "Major Pentatonic", "Minor Pentatonic", "Augmented", "Blues", "Diminished", "JazzMinor",
    "Whole Tone", "Bebop ", "Minor Bebop ", "Arabian ", "Balinese ", "Enigmatic ", "Gypsy ",
    "Hindu ", "Hngarian Minor ", "Hungarian Major ", "Japanese ", "Jewish ", "Neapolitan Major",
    "Neapolitan Minor", "Oriental ", "Persian ", "Spanish 8 tone"};
static_assert(std::size(kScales) == 34);

constexpr const char* kPlaybackModes[] = {
    "forward", "backward", "random", "each 2nd", "each 3rd", "each 4th"};
constexpr const char* kSpeeds[] = {"1 / 1", "1 / 2", "1 / 2 T", "1 / 4", "1 / 4 T", "1 / 8 ",
    "1 / 8 T", "1 / 16", "1 / 16 T", "1 / 32"};
constexpr const char* kSongSpeeds[] = {
    "1 Step", "2 Steps", "4 Steps", "8 Steps", "16 Steps", "32 Steps"};
constexpr const char* kKeySync[] = {"OFF", "1 / 16", "1 / 8", "1 / 4", "1 / 2", "1 / 1"};
constexpr const char* kLearn[] = {"midi Learn", "clear"};
constexpr const char* kLearnTitled[] = {"Midi Learn", "Clear"};
constexpr const char* kDrivers[] = {"none", "Modulation"};
// The page menus are never opened; their labels are set while running.
constexpr const char* kPages[] = {"entry", "entry", "entry", "entry", "entry", "entry", "entry",
    "entry", "entry", "entry", "entry", "entry", "entry", "entry", "entry", "entry"};

} // namespace

std::span<const char* const> menuTexts(MenuItems items)
{
    switch (items) {
    case MenuItems::Scales:
        return kScales;
    case MenuItems::PlaybackModes:
        return kPlaybackModes;
    case MenuItems::Speeds:
        return kSpeeds;
    case MenuItems::SongSpeeds:
        return kSongSpeeds;
    case MenuItems::KeySync:
        return kKeySync;
    case MenuItems::Learn:
    case MenuItems::LearnSteps:
        return kLearn;
    case MenuItems::LearnTitled:
        return kLearnTitled;
    case MenuItems::Drivers:
        return kDrivers;
    case MenuItems::TrackPages:
        return kPages;
    case MenuItems::TwoPages:
        return std::span(kPages).first(2);
    default:
        return {};
    }
}

const std::array<const char*, kTargetGroups> kTargetGroupTitles = {"Controllers 1-10 ",
    "Controllers 11-20", "Controllers 21-30", "Controllers 31-40", "Controllers 41-50",
    "Controllers 51-60", "Controllers 61-70", "Controllers 71-80", "Controllers 81-90",
    "Controllers 91-100", "Controllers 101-110", "Controllers 111-120", "Controllers 121-129"};

// The position is the controller's number; the last two are no controllers.
const std::array<const char*, 130> kControllerNames = {
    // clang-format off
    "Banksel", "Modulation", "Breath", "Ctrl3", "Foot", "Portamento", "Dataentry", "Volume",
    "Balance", "Ctrl9",
    "pan", "Expression", "Genpurp 1", "Genpurp 2", "Genpurp 3", "Genpurp 4", "Ctrl 16", "Ctrl 17",
    "Ctrl 18", "Ctrl 19",
    "Ctrl 20", "ctrl 21", "Ctrl 22", "Ctrl 23", "Ctrl 24", "Ctrl 25", "Ctrl 26", "Ctrl 27",
    "Ctrl 28", "Ctrl 29",
    "Ctrl 30", "ctrl 31", "Banksel LSB", "Modulation LSB", "Breath LSB", "Foot LSB",
    "Portamento LSB", "Dataentry LSB", "Volume LSB", "Balance LSB",
    "Ctrl 40", "pan LSB", "Expression LSB", "Ctrl 43", "Ctrl 44", "Ctrl 45", "Ctrl 46", "Ctrl 47",
    "Ctrl 48", "Ctrl 49",
    "Ctrl 50", "ctrl 51", "Ctrl 52", "Ctrl 53", "Ctrl 54", "Ctrl 55", "Ctrl 56", "Ctrl 57",
    "Ctrl 58", "Ctrl 59",
    "Ctrl 60", "Ctrl 61", "Ctrl 62", "Ctrl 63", "Sustain", "PortaOnOff", "Sostenuto", "Soft",
    "Legato", "Hold",
    "Soundvar", "harmonique", "Release", "Attack", "Cutoff", "Ctrl 75", "Ctrl 76", "Ctrl 77",
    "Ctrl 78", "Ctrl 79",
    "Genpurp 5", "genpurp 6", "Genpurp 7", "Genpurp 8", "Portactrl", "Ctrl 85", "Ctrl 86",
    "Ctrl 87", "Ctrl 88", "Ctrl 89",
    "Ctrl 90", "extFx1 Depth", "ExtFx2 Depth", "ExtFx3 Depth", "ExtFx4 Depth", "ExtFx5 Depth",
    "Datainc", "Datadec", "Nrpn LSB", "Nrpn MSB",
    "Rpn LSB", "rpn MSB", "Ctrl 102", "Ctrl 103", "Ctrl 104", "Ctrl 105", "Ctrl 106", "Ctrl 107",
    "Ctrl 108", "Ctrl 109",
    "Ctrl 110", "ctrl 111", "Ctrl 112", "Ctrl 113", "Ctrl 114", "Ctrl 115", "Ctrl 116", "Ctrl 117",
    "Ctrl 118", "Ctrl 119",
    "All snd off", "reset ctrl", "Localctrl", "All note off", "Omni ON", "Omni OFF", "Mono ON",
    "Poly ON", "aftertouch", "program change",
    // clang-format on
};
