// One preset as a text that people read and write.
//
//   # a comment
//   about One line that says what it is
//   tags techno dark
//   synth Bass/Round sub       the sound of another source
//   tempo 124                  beats a minute that it is made for
//   key A1                     the note of degree 0; a later pattern may stand in another key
//   scale Dorian               also: speed 1/16, swing 0.2, walk each 3rd
//   set cutoff 0.4             a parameter: raw value 0 to 1, or "text" as its display shows it
//   mods default               modulation tracks as in a new instance; else unused ones are off
//   learn 74 cutoff            a controller moves a parameter; `learn 74 velocity 3` a step
//
//   pattern theme              the next pattern; what it does not say is as in the first
//   pattern answer from theme  the same, from another one
//   notes A1! . A1 - | C2:m7   a score, see Score.h; gates, chords, octaves, length follow from it
//   at 25 D2 . E2 F2           writes over the steps from 25 on
//   accents 9.57               tenths of velocity, a digit a step
//   transpose 2                degrees; also: invert, reverse 32, rotate 4 32, thin 2,
//                              rest 17 32, shorten 1
//   legato 0.5                 how much of its length a note sounds
//   steps 24                   every lane plays the first 24 steps
//   loop velocity 0 11         first and last step of a lane: pitch, velocity, gate, lines,
//                              mod1 to mod8
//
//   pitch 0 0 12 .             a line of degrees instead of a score; '.' repeats the one before
//   velocity 9.6.8.57          a digit a step, tenths; '.' rests
//   gate 22322243              tenths of the gate's length; 0 is a whole one
//   lock x..x                  not moved by the keyboard
//   chord m7 . . 7/3           and octave . +1, bend . fall, random . pitch, arp . 7; BankWords.h
//   mod cutoff 0 64 127        0 to 127; level pan wave detune cutoff resonance peak delay. Moves
//                              the synth and sends a controller
//   mod pan wave 2 20 100      two periods of a shape: wave, up, down, tri, square
//   mod1 0 64 127              the steps of a track alone
//   drum1 9..5                 track 1 plays a drum: a digit a step, tenths of velocity;
//                              `set mod1-note "C2"`, mod1-gate, mod1-channel, mod1-speed,
//                              mod1-synth
//   chance 80 . condition 1:4  what a step leaves to chance; and ratchet 3+, late 4, strum 2~
//
//   chain theme 4 answer 4     patterns and bars; switches the song on
//   song 0 0 1 2               the same by number, a position each
//   repeats 0 0 1 0
//
// Rows that are shorter than 32 steps repeat.
#pragma once

#include "data/state/DetachedSong.h"

#include <string>

namespace ormund {

struct BankAbout {
    std::string line;
    std::string tags; // words with a blank between
    double tempo = 120;
};

// Fills the song; `error` names file, line and reason when false comes back. `root` is the folder
// under which `synth` lines look.
bool readBankSource(const std::string& path, const std::string& root, DetachedSong& song,
    std::string& error, BankAbout* about = nullptr);

} // namespace ormund
