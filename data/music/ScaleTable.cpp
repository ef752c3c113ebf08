#include "data/music/ScaleTable.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace ormund {

namespace {

constexpr int kOctave = 12;
constexpr int kLowestDegree = -24;         // of the short rows
constexpr int kLowestArpeggioDegree = -27; // of the long rows

struct Scale {
    std::string_view name;
    std::string_view menuName;
    int notes; // to the octave
    std::array<int, kOctave> intervals;
};

// clang-format off
//   name                menu                 notes  semitones from the root
constexpr std::array<Scale, kScales> kScaleRows = {{
    {"Chromatic",        "Chromatic ",        12,    {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}},
    {"Major",            "Major",              7,    {0, 2, 4, 5, 7, 9, 11}},
    {"Dorian",           "Dorian",             7,    {0, 2, 3, 5, 7, 9, 10}},
    {"Phrygian",         "Phrygian",           7,    {0, 1, 3, 5, 7, 8, 10}},
    {"Lydian",           "Lydian",             7,    {0, 2, 4, 6, 7, 9, 11}},
    {"Mixolydian",       "Mixolydian",         7,    {0, 2, 4, 5, 7, 9, 10}},
    {"Aeolian",          "Aeolian",            7,    {0, 2, 3, 5, 7, 8, 10}},
    {"Locrian",          "Locrian",            7,    {0, 1, 3, 5, 6, 8, 10}},
    {"General Bebop",    "General Bebop",      8,    {0, 2, 4, 5, 7, 8, 9, 11}},
    {"Harmonic Minor",   "Harmonic Minor",     7,    {0, 2, 3, 5, 7, 8, 11}},
    {"Melodic Minor",    "Melodic Minor",      7,    {0, 2, 3, 5, 7, 9, 11}},
    {"Major Pentatonic", "Major Pentatonic",   5,    {0, 2, 4, 7, 9}},
    {"Minor Pentatonic", "Minor Pentatonic",   5,    {0, 3, 5, 7, 10}},
    {"Augmented",        "Augmented",          6,    {0, 3, 4, 7, 8, 11}},
    {"Blues",            "Blues",              6,    {0, 3, 5, 6, 7, 10}},
    {"Diminished",       "Diminished",         8,    {0, 2, 3, 5, 6, 8, 9, 11}},
    {"JazzMinor",        "JazzMinor",          7,    {0, 2, 3, 5, 7, 9, 11}},
    {"Whole Tone",       "Whole Tone",         6,    {0, 2, 4, 6, 8, 10}},
    {"Bebop",            "Bebop ",             8,    {0, 1, 3, 5, 6, 7, 8, 10}},
    {"Minor Bebop",      "Minor Bebop ",       8,    {0, 2, 3, 4, 5, 7, 9, 10}},
    {"Arabian",          "Arabian ",           7,    {0, 2, 4, 5, 6, 8, 10}},
    {"Balinese",         "Balinese ",          5,    {0, 1, 3, 7, 8}},
    {"Enigmatic",        "Enigmatic ",         7,    {0, 1, 4, 6, 8, 10, 11}},
    {"Gypsy",            "Gypsy ",             7,    {0, 1, 4, 5, 7, 9, 10}},
    {"Hindu",            "Hindu ",             7,    {0, 2, 4, 5, 7, 8, 10}},
    {"Hngarian Minor",   "Hngarian Minor ",    7,    {0, 2, 3, 6, 7, 8, 11}},
    {"Hungarian Major",  "Hungarian Major ",   7,    {0, 3, 4, 6, 7, 9, 10}},
    {"Japanese",         "Japanese ",          5,    {0, 1, 5, 7, 8}},
    {"Jewish",           "Jewish ",            7,    {0, 1, 4, 5, 7, 8, 10}},
    {"Neapolitan Major", "Neapolitan Major",   7,    {0, 1, 3, 5, 7, 9, 11}},
    {"Neapolitan Minor", "Neapolitan Minor",   7,    {0, 1, 3, 5, 7, 8, 11}},
    {"Oriental",         "Oriental ",          7,    {0, 1, 3, 5, 6, 9, 10}},
    {"Persian",          "Persian ",           7,    {0, 1, 4, 5, 6, 8, 11}},
    {"Spanish 8 tone",   "Spanish 8 tone",     8,    {0, 1, 3, 4, 5, 6, 8, 10}},
}};

// Deliberate: these two scales leave their rule above the root. Songs were written with what they
// play, so it stays. Degrees +1 to +27.
struct BrokenScale {
    int scale;
    std::array<int, 27> above;
};
constexpr std::array<BrokenScale, 2> kBrokenScales = {{
    {3, {1, 3, 5, 7, 8, 10, 12, 13, 15, 17, 19, 21, 12, 13, 15, 17, 19, 20, 22, 24, 25, 27, 29, 31,
         32, 34, 36}},
    {27, {1, 5, 7, 8, 12, 13, 17, 19, 20, 24, 25, 28, 24, 25, 29, 31, 32, 36, 37, 41, 43, 44, 48, 49,
          53, 55, 56}},
}};
// clang-format on

constexpr int semitonesOf(int scale, int degree)
{
    for (const BrokenScale& broken : kBrokenScales)
        if (broken.scale == scale && degree > 0)
            return broken.above[static_cast<size_t>(degree - 1)];
    const Scale& row = kScaleRows[static_cast<size_t>(scale)];
    const int octave = degree >= 0 ? degree / row.notes : -((row.notes - 1 - degree) / row.notes);
    return kOctave * octave + row.intervals[static_cast<size_t>(degree - octave * row.notes)];
}

template <int Degrees>
using Table = std::array<std::array<int16_t, Degrees>, kScales>;

template <int Degrees>
constexpr Table<Degrees> tableFrom(int lowestDegree)
{
    Table<Degrees> table{};
    for (int scale = 0; scale < kScales; ++scale)
        for (int i = 0; i < Degrees; ++i)
            table[static_cast<size_t>(scale)][static_cast<size_t>(i)] =
                static_cast<int16_t>(semitonesOf(scale, lowestDegree + i));
    return table;
}

constexpr auto kNotes = tableFrom<kScaleDegrees>(kLowestDegree);
constexpr auto kArpeggioNotes = tableFrom<kArpeggioDegrees>(kLowestArpeggioDegree);

constexpr int kNamedDegrees = 13;
constexpr auto kOctaves = [] {
    std::array<std::array<int, kNamedDegrees>, kScales> octaves{};
    for (int scale = 0; scale < kScales; ++scale)
        for (int degree = 0; degree < kNamedDegrees; ++degree)
            octaves[static_cast<size_t>(scale)][static_cast<size_t>(degree)] =
                semitonesOf(scale, degree);
    return octaves;
}();

size_t scaleAt(int scale) { return static_cast<size_t>(std::clamp(scale, 0, kScales - 1)); }

template <int Degrees>
int noteIn(const Table<Degrees>& table, int scale, int index)
{
    return table[scaleAt(scale)][static_cast<size_t>(std::clamp(index, 0, Degrees - 1))];
}

} // namespace

int scaleNote(int scale, int index) { return noteIn<kScaleDegrees>(kNotes, scale, index); }

int arpeggioNote(int scale, int index)
{
    return noteIn<kArpeggioDegrees>(kArpeggioNotes, scale, index);
}

std::span<const int> scaleOctave(int scale) { return kOctaves[scaleAt(scale)]; }
std::string_view scaleName(int scale) { return kScaleRows[scaleAt(scale)].name; }
std::string_view scaleMenuName(int scale) { return kScaleRows[scaleAt(scale)].menuName; }

} // namespace ormund
