// One preset as a text that people read and write.
//
//   # a comment
//   synth Basses/Round sub     the synth of another source
//   tempo 124                  beats a minute that it is made for
//   set swing 0.2              a parameter: raw value 0 to 1, or "text" as its display shows it
//   key 43                     MIDI note of degree 0
//   song 0 0 1 2               pattern of each position; switches the song on
//   repeats 0 0 1 0
//   learn 74 cutoff            controller 74 moves a parameter; `learn 74 velocity 3` a step
//   pattern                    the next pattern begins; what was not written is as in the first
//   pitch 0 0 12 .             degrees; '.' repeats the one before
//   velocity 9.6.8.57          a digit a step, tenths; '.' rests
//   gate 22322243              tenths of the gate's length; 0 is a whole one
//   lock x..x                  not moved by the keyboard
//   chord m7 . . 7             kinds of chord, '.' none
//   octave . +1 . -1
//   arp . . 7 .                arpeggio of a step, bend and random likewise
//   mod1 0 64 127              0 to 127
//   mod2 wave 2                two periods of a shape: wave, up, down, tri, square
//   loop pitch 0 11            first and last step of a lane: pitch, velocity, gate, lines, mod1..8
//
// Rows that are shorter than 32 steps repeat.
#pragma once

#include "data/state/DetachedSong.h"

#include <string>

namespace ormund {

// Fills the song; `error` names file, line and reason when false comes back. `root` is the folder
// under which `synth` lines look.
bool readBankSource(
    const std::string& path, const std::string& root, DetachedSong& song, std::string& error);

} // namespace ormund
