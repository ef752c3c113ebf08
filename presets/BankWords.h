// The words of a bank source and what they stand for.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ormund {

using BankTokens = std::vector<std::string>;

// A mistake throws std::runtime_error with its reason; the reader adds file and line.

// Words at blanks; a text in quotes is one, with its first quote kept as a mark. '#' between words
// begins a comment.
BankTokens splitBankLine(const std::string& text);

float bankNumber(const std::string& text);
// The MIDI note of "A1", "C#3" or "Bb-1"; C4 is 60. Null where the text is no note.
std::optional<int> bankNote(const std::string& text);
// The parameter that `set` names.
int bankParameter(const std::string& word);
// mod1 to mod8 as 0 to 7; `rest` is what follows, "-on" for instance.
std::optional<int> bankModTrack(const std::string& word, std::string& rest);
// drum1 to drum8 as 0 to 7.
std::optional<int> bankDrum(const std::string& word);
// The track that drives cutoff, pan and so on in our own synth.
std::optional<int> bankModTarget(const std::string& word);
// The controller that such a track sends unless the source says otherwise.
int bankModController(int track);

// A step of a line: '.' is none, a number is itself.
//   chord   M Mb6 6 7 M7 9, m mb6 m6 m7 mM7 m9; /3 and /5 put the third or fifth below the root, /0
//           the added note below it; dim 5 aug fourths cluster fifths
//   bend    the shape's name with '-' for blanks: small-fall
//   random  pitch velocity on gate octave bend major minor arp mod1 to mod8
int bankChord(const std::string& word);
int bankOctave(const std::string& word);
int bankBend(const std::string& word);
int bankRandom(const std::string& word);
// What a step leaves to chance and how it plays:
//   chance    percent
//   condition 2:4, 1st, !1st, fill, !fill, pre, !pre
//   ratchet   2 to 8 strikes; 3+ rises, 3- falls
//   strum     1 to 8 parts of 1/32 step upwards; 4- downwards, 4~ by turns
int bankChance(const std::string& word);
int bankCondition(const std::string& word);
int bankRatchet(const std::string& word);
int bankStrum(const std::string& word);
int bankCount(const std::string& word);

// 32 values from 0 to 1: "wave 2 40 100" is two periods between 40 and 100 of 127.
std::vector<float> bankShape(const BankTokens& values, int steps);

} // namespace ormund
