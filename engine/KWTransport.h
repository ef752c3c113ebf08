// Follows the host's transport, once a block, and moves the song position from sample to sample.
#pragma once

#include "data/music/KWSystemInfo.h"
#include "engine/BlockTransport.h"

namespace ormund {

// Audio thread. A small difference from the host's place is steered away, so that both meet at the
// end of the block; beyond that, and in the first block after a start, the place is taken over.
class KWTransport {
public:
    explicit KWTransport(KWSystemInfo& timeBase) : info(timeBase) { }

    // `block` null: there is no transport. Then the position holds still and nothing else changes.
    // True when the song has started or stopped.
    bool evaluate(const BlockTransport* block, int frames);
    // Moves on by `samples`, back to the loop's start where its end is reached. True when a
    // count-in has ended and the song has started.
    bool advance(int samples);

    // The tempo of this block as far as the host gave a usable one, else the stored tempo.
    double blockTempo() const { return tempo; }

private:
    struct Loop {
        double start = 0;
        double end = 0; // quarter notes; not above `start`: none
        bool isOn() const { return end > start; }
        double length() const { return end - start; }
    };
    static Loop usableLoop(const BlockTransport& block);
    double paceOf(const BlockTransport& block) const;
    void rememberPlace(const BlockTransport& block, int frames);
    double differenceFrom(double place) const;
    void follow(double place, int frames, bool isFirst);
    bool setRunning(bool running);
    void moveTo(double position) { info.songPosition = position; }

    KWSystemInfo& info;
    double tempo = 120.0;
    double pace = 0;              // quarter notes a sample, at the host's tempo
    double positionIncrement = 0; // and with what is steered
    Loop loop;
    bool wrapArmed = false;
    bool countsIn = false;
    double countInPlace = 0; // below 0; the song position waits at 0

    // Of the block before, for a host that gives places and no tempo.
    struct HostPlace {
        bool valid = false;
        double place = 0;
        int frames = 0;
    };
    HostPlace lastPlace;
    double estimatedPace = 0; // 0: none yet
};

} // namespace ormund
