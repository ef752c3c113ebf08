// Where the song stands on a transport that counts frames and that others may give a tempo and
// bars to: JACK's.
#pragma once

#include "apps/ormund/LiveHost.h"

#include <cstdint>

namespace ormund {

// Audio thread.
class SharedSong {
public:
    // What the server reports of a block's first frame.
    struct Report {
        bool rolling = false;
        int64_t frame = 0;
        bool hasBars = false;  // somebody else gives tempo and bars
        double quarters = 0;   // from them
        double tempo = 120;    // from them
        double resolution = 0; // quarter notes; how exact `quarters` is
    };

    explicit SharedSong(double sampleRate) : rate(sampleRate) { }

    // `frames` is the block's length; the tempo counts where nobody else gives one.
    LiveHost::SharedPlace follow(const Report& report, double ownTempo, int frames);
    // Quarter notes at a frame that is reported to all others, by the own tempo. After a jump the
    // song counts from frame 0 at that tempo; a tempo that changes on the way moves nothing.
    double beatAt(int64_t frame, double ownTempo, int frames);

private:
    double beatsPerFrame(double tempo) const { return tempo / 60.0 / rate; }

    double rate; // Hz
    // The own count.
    int64_t anchorFrame = 0;
    double anchorBeat = 0;
    double anchorTempo = 0;
    int64_t lastFrame = 0;
    int lastFrames = 0;
    // What others' bars gave for the block after this one.
    int64_t followedFrame = -1;
    double followedBeat = 0;
};

} // namespace ormund
