// What a song of the bank is like, in figures.
#pragma once

#include "tests/support/Player.h"

#include <array>
#include <string>
#include <vector>

namespace ormund {

struct SongMeasure {
    double loudness = 0;    // LUFS over the whole chain
    double truePeak = 0;    // dB
    double correlation = 0; // of left and right; 1 is mono
    double dc = 0;          // dB
    double firstSound = 0;  // seconds until the first note
    int bars = 0;
    int differentBars = 0; // by their notes
    int patterns = 0;      // those that the chain plays
    int bankSelects = 0;   // controllers 0 and 32
    // Shares of intervals, places in the bar, pitches and bands of the spectrum.
    std::array<double, 64> shape{};
};

// Plays the song's chain once, at its tempo.
SongMeasure measureSong(const std::string& path, double tempo);

// 0 for the same notes and colour, 2 for nothing in common.
double distance(const SongMeasure& one, const SongMeasure& other);

} // namespace ormund
