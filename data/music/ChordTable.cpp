#include "data/music/ChordTable.h"

#include <algorithm>

namespace ormund {

namespace {

// Six of a kind a line: the triad, then with a note on top of it or below. A short chord ends in 0,
// its root again.
// Deliberate: the fifth chord of the third and of the seventh line repeats the third one.
// clang-format off
constexpr std::array<std::array<int, kChordNotes>, kChords + 1> kChordRows = {{
    // major
    {0, 4, 7, 0},   {0, 4, 7, 8},   {0, 4, 7, 9},   {0, 4, 7, 10},  {0, 4, 7, 11},  {0, 4, 7, 14},
    {-8, -5, 0, 0}, {-8, -5, -4, 0}, {-8, -5, -3, 0}, {-8, -5, -2, 0}, {-8, -5, -1, 0}, {-8, -5, 0, 2},
    {-5, 0, 4, 0},  {-5, -4, 0, 4}, {-5, -3, 0, 4}, {-5, -2, 0, 4}, {-5, -3, 0, 4}, {-5, 0, 2, 4},
    {0, 4, 7, 12},  {-4, 0, 4, 7},  {-3, 0, 4, 7},  {-2, 0, 4, 7},  {-1, 0, 4, 7},  {0, 2, 4, 7},
    // minor
    {0, 3, 7, 0},   {0, 3, 7, 8},   {0, 3, 7, 9},   {0, 3, 7, 10},  {0, 3, 7, 11},  {0, 3, 7, 14},
    {-9, -5, 0, 0}, {-9, -5, -4, 0}, {-9, -5, -3, 0}, {-9, -5, -2, 0}, {-9, -5, -1, 0}, {-9, -5, 0, 2},
    {-5, 0, 3, 0},  {-5, -4, 0, 3}, {-5, -3, 0, 3}, {-5, -2, 0, 3}, {-5, -3, 0, 3}, {-5, 0, 2, 3},
    {0, 3, 7, 12},  {-4, 0, 3, 7},  {-3, 0, 3, 7},  {-2, 0, 3, 7},  {-1, 0, 3, 7},  {0, 2, 3, 7},
    // others
    {0, 3, 6, 0},   {0, 7, 0, 0},   {0, 4, 8, 0},   {0, 5, 10, 15}, {0, 1, 2, 3},   {0, 7, 14, 21},
    // behind the last one: the root alone
    {0, 0, 0, 0},
}};
// clang-format on

} // namespace

const std::array<int, kChordNotes>& chordRow(int index)
{
    return kChordRows[static_cast<size_t>(std::clamp(index, 0, kChords))];
}

int chordOffset(int index, int note)
{
    return chordRow(index)[static_cast<size_t>(std::clamp(note, 0, kChordNotes - 1))];
}

} // namespace ormund
