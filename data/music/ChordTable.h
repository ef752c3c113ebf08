// The chords of the chord line: four semitone offsets from the step's note.
#pragma once

#include <array>

namespace ormund {

constexpr int kChords = 54;
constexpr int kChordNotes = 4;

// `index` is the line's value less 1, clamped to 0 to 54. The index behind the last chord, which a
// list of random values can reach, plays the root alone.
const std::array<int, kChordNotes>& chordRow(int index);
int chordOffset(int index, int note); // `note` 0 to 3

} // namespace ormund
