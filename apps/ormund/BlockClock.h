// When a block begins, in spite of callbacks that come early and late: a loop of second order that
// follows their mean.
#pragma once

#include <cstdint>

namespace ormund {

// The audio thread. Times are nanoseconds of the steady clock.
class BlockClock {
public:
    BlockClock(double sampleRate, int frames);
    // The smoothed start of the block whose callback came at `now`. Blocks come one by one; a gap
    // of several of them starts over.
    int64_t blockStart(int64_t now);
    double nanosPerFrame() const { return period / frameCount; }

private:
    int frameCount;
    double nominal; // nanoseconds a block
    double period;  // as measured
    double next = 0;
    bool isRunning = false;
};

} // namespace ormund
