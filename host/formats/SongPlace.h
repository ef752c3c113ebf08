// Where a host's transport stands, brought from bars and beats to quarter notes.
#pragma once

#include <cstdint>

namespace ormund {

struct BarPlace {
    bool playing = false;
    bool valid = false; // else bar, beat and meter say nothing
    int64_t frame = 0;
    int bar = 1;     // from 1
    double beat = 0; // within the bar, from 0
    double beatsPerBar = 4;
    double beatType = 4;
    double tempo = 120; // beats per minute
};

struct SongPlace {
    bool playing = false;
    bool valid = false; // position and tempo
    double quarters = 0;
    double barStart = 0; // quarter notes
    double tempo = 120;
    int numerator = 4;
    int denominator = 4;
    bool loopOn = false;  // with the range below
    double loopStart = 0; // quarter notes
    double loopEnd = 0;

    // Where the song stands `frames` later, `rate` in Hz.
    SongPlace after(int frames, double rate) const;
};

// Audio thread. One for each instance, since it follows the song from block to block.
class SongFollower {
public:
    // `frames` is the length of the block that begins at `place`, `rate` in Hz.
    SongPlace follow(const BarPlace& place, int frames, double rate);

private:
    SongPlace last;
    int64_t nextFrame = 0;   // where a song that goes on stands now,
    double nextQuarters = 0; // both ways
};

} // namespace ormund
