// Times and memory of one instrument.
#pragma once

#include "bench/host/Lineup.h"

#include <optional>
#include <vector>

namespace ormund {

constexpr int kBlockSizes[] = {64, 512};

// Of the blocks of a piece, nanoseconds a frame.
struct BlockCost {
    double median = 0;
    double worst = 0;
    double mean = 0;
};

struct Footprint {
    double loadMs = 0;         // module and first instance
    double megabytesFirst = 0; // module and first instance, after three seconds of playing
    double megabytesEach = 0;  // each further instance, likewise
};

struct Result {
    Entrant entrant;
    Footprint footprint;
    BlockCost cost[2]{};  // by kBlockSizes
    float peak = 0;       // of the sound
    int64_t messages = 0; // that came out in a piece
};

// One core for all, and flush-to-zero as hosts set it.
void settle();

// In a process of its own, for modules are loaded once; empty when it cannot be loaded. Call it
// before this process has loaded any.
std::optional<Footprint> footprintOf(const Entrant& entrant, int furtherInstances = 8);

// Plays the same piece with every instrument in turn, `rounds` times and at every block size.
// A block's cost is the least of its rounds: what the plug-in needs for it, without what else the
// machine did meanwhile.
void measureCosts(std::vector<Result>& results, int rounds);

} // namespace ormund
