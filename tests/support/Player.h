// Plays the plug-in under a scripted transport and keeps what comes out. For tests.
#pragma once

#include "host/plugin/KWUniClient.h"
#include "tests/support/PlayedEvents.h"

#include <memory>
#include <vector>

namespace ormund {

class Player : public PlayedEvents {
public:
    struct Setup {
        double tempo = 120;
        float rate = 44100;
        int block = 512;
        bool empty = true; // all tracks at their defaults, every step silent until a test writes it
        const AudioLoops* loops = &fastestLoops();
    };
    Player() : Player(Setup()) { }
    explicit Player(const Setup& setup);
    ~Player();

    KWUniClient& engine() { return *client; }
    VstTimeInfo& time() { return record; }

    void start(double beats = 0); // the transport rolls from here
    void stop();
    void cycle(double from, double to); // beats
    void setTempo(double beatsPerMinute) { tempo = beatsPerMinute; }
    void setBlock(int frames) { block = frames; }
    // Plays on; the last block is as short as it must be.
    void play(int64_t frames);
    void playBeats(double beats);
    // A MIDI message for the next block, `frame` samples into it.
    void send(int status, int data1, int data2, int frame = 0);

    void writePlainNotes() { ormund::writePlainNotes(client->tracks); }
    // Ticks of 32 samples from the start at which the first `count` notes went out.
    std::vector<int> stepTicks(int count);

    double position() const { return beats; }
    bool sendsRecord = true; // false: the host has no transport record
    VstInt32 processLevel = 2;

private:
    static VstIntPtr host(
        AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);
    VstIntPtr keep(const VstEvents& events);

    std::unique_ptr<KWUniClient> client;
    VstTimeInfo record{};
    std::vector<VstMidiEvent> pending;
    double tempo;
    double rate;
    double beats = 0;
    int64_t frame = 0;
    int block;
    bool rolling = false;
    bool cycling = false;
};

} // namespace ormund
