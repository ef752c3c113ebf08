// Follows the host's transport, once a block, and moves the song position from sample to sample.
#pragma once

#include "base/LastSeen.h"
#include "data/music/KWSystemInfo.h"
#include "engine/BlockTransport.h"

namespace ormund {

// Audio thread. Inside tolerance the position is not set but steered, so that it meets the host's
// at the end of the block; locates beyond half a quarter note are taken over at once.
class KWTransport {
public:
    explicit KWTransport(KWSystemInfo& timeBase) : info(timeBase) { }

    // `block` null: there is no transport. Then the position holds still and nothing else changes.
    // True when the host has started or stopped.
    bool evaluate(const BlockTransport* block, int frames);
    // Moves on by `samples`, back to the cycle's start where its end is reached.
    void advance(int samples);

    // The tempo of this block as far as the host gave a usable one, else the stored tempo.
    double blockTempo() const { return tempo; }

private:
    bool setRunning(bool running);
    void moveTo(double position)
    {
        info.songPositionPrecise = position;
        info.songPosition = static_cast<float>(position);
    }

    KWSystemInfo& info;
    // What a block of so many frames moves by a sample, kept for the next one of its kind.
    struct BlockKind {
        int frames = 0;
        float samplesPerBeat = 0;
        friend bool operator==(const BlockKind&, const BlockKind&) = default;
    };
    LastSeen<BlockKind> nominalOf;
    double nominal = 0; // quarter notes a sample

    double tempo = 120.0;
    double positionIncrement = 0; // quarter notes a sample
    bool wrapArmed = false;
    float wrapPosition = 0;
    double wrapTarget = 0;
};

} // namespace ormund
