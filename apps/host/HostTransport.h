// A host's transport as the effect interface reports it: play, stop, locate, tempo, cycle.
// Positions are quarter notes. The thread that runs the blocks; nothing allocates.
#pragma once

#include "host/effect/EffectTypes.h"

#include <cstdint>

namespace ormund {

class HostTransport {
public:
    void setUp(double sampleRate, double tempo, int beatsPerBar);
    void setSampleRate(double hertz)
    {
        time.sampleRate = hertz;
        anchor.tempo = 0; // the frames so far were of another length
    }

    // Taken by the next block.
    void start() { playing = true; }
    void stop() { playing = false; }
    void locate(double beat) { time.ppqPos = beat; }
    void setTempo(double beatsPerMinute) { time.tempo = beatsPerMinute; }
    void setCycle(double startBeat, double endBeat);
    void clearCycle() { cycling = false; }

    bool isPlaying() const { return playing; }
    double position() const { return time.ppqPos; }
    double beatsPerFrame() const { return time.tempo / 60.0 / time.sampleRate; }
    int64_t frames() const { return framesRun; }  // of all blocks so far
    double rolled() const { return rolledBeats; } // of all blocks so far, stopped time included

    // Around each block: the first makes the record true for it, the second goes on by its length.
    void beginBlock();
    void endBlock(int frames);

    VstTimeInfo time{}; // what the plug-in is given

private:
    // Positions are counted from the last change of tempo or place, not summed block by block, so
    // that they do not depend on the block size.
    struct Anchor {
        int64_t frame = 0;
        double rolled = 0;
        double position = 0;
        double tempo = 0;
        double expected = 0; // where the transport should stand now
    };
    Anchor anchor;
    bool playing = false;
    bool wasPlaying = false;
    bool cycling = false;
    int64_t framesRun = 0;
    double rolledBeats = 0;
};

} // namespace ormund
