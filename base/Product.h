// What the product is called, wherever a user, a host or another program reads it. The version that
// a user reads is that of project() in CMakeLists.txt.
#pragma once

namespace ormund::product {

inline constexpr char kName[] = "Ormund";
inline constexpr char kMaker[] = "Kelda Works";
inline constexpr char kSummary[] = "Performance step sequencer with an eight-voice synth";
inline constexpr char kFolder[] = "Kelda Works/Ormund"; // in the places of a user's files

inline constexpr char kLeftName[] = "Ormund Left";
inline constexpr char kRightName[] = "Ormund Right";
inline constexpr char kMidiName[] = "Ormund MIDI";
inline constexpr char kMidiInName[] = "Ormund MIDI in"; // where input and output share a list
inline constexpr char kMidiOutName[] = "Ormund MIDI out";

// Hosts keep these in their sessions, so they stay as they were from the start.
inline constexpr char kClapId[] = "works.kelda.ormund";
inline constexpr char kLv2Uri[] = "urn:kelda-works:ormund";
inline constexpr char kLv2UiUri[] = "urn:kelda-works:ormund#DPF_UI";
inline constexpr int kHostVersion = 1061; // as the effect interface has it

} // namespace ormund::product
