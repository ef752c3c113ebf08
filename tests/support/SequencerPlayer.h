// Plays a sequencer alone under a scripted transport and keeps what comes out. For tests that need
// no plug-in, no home folder and no host.
#pragma once

#include "engine/Sequencer.h"
#include "tests/support/PlayedEvents.h"

#include <memory>
#include <vector>

namespace ormund {

class SequencerPlayer : public PlayedEvents {
public:
    struct Setup {
        double tempo = 120;
        float rate = 44100;
        int block = 512;
        bool empty = true; // all tracks at their defaults, every step silent until a test writes it
        const AudioLoops* loops = &fastestLoops();
    };
    SequencerPlayer() : SequencerPlayer(Setup()) { }
    explicit SequencerPlayer(const Setup& setup);

    Sequencer& engine() { return *sequencer; }

    void start(double beats = 0); // the transport rolls from here
    void stop() { transport.playing = false; }
    void cycle(double from, double to); // beats
    void setTempo(double beatsPerMinute) { transport.tempo = beatsPerMinute; }
    void setBlock(int frames) { block = frames; }
    double position() const { return transport.position; }
    // Plays on; the last block is as short as it must be.
    void play(int64_t frames);
    void playBeats(double beats);
    // A MIDI message for the next block, `frame` samples into it.
    void send(int status, int data1, int data2, int frame = 0);
    // Ticks of 32 samples from the start at which the first `count` notes went out.
    std::vector<int> stepTicks(int count);
    void writePlainNotes() { ormund::writePlainNotes(sequencer->tracks); }

private:
    std::unique_ptr<Sequencer> sequencer;
    BlockTransport transport;
    std::vector<MidiEvent> pending;
    double rate;
    int64_t frame = 0;
    int block;
};

} // namespace ormund
