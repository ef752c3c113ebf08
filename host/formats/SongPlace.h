// Where a host's transport stands.
#pragma once

namespace ormund {

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

} // namespace ormund
