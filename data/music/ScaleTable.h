// The scales: which semitone a degree of the scale is.
#pragma once

#include <span>
#include <string_view>

namespace ormund {

constexpr int kScales = 34;
constexpr int kScaleDegrees = 49;    // degrees -24 to +24; index 24 is the root
constexpr int kArpeggioDegrees = 55; // degrees -27 to +27; index 27 is the root

// Semitones from the root, -48 or so to +60. `scale` and `index` are clamped to the table.
int scaleNote(int scale, int index);    // index 0 to 48
int arpeggioNote(int scale, int index); // index 0 to 54
// Degrees 0 to +12, the octave that a display names.
std::span<const int> scaleOctave(int scale);

// At most 17 characters.
std::string_view scaleName(int scale);
// As the menu writes it; a number of them carry a trailing blank.
std::string_view scaleMenuName(int scale);

} // namespace ormund
