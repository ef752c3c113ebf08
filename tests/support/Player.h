// Plays the engine under a scripted transport and keeps what comes out. For tests.
#pragma once

#include "host/plugin/KWUniClient.h"

#include <memory>
#include <string>
#include <vector>

namespace ormund {

struct MidiOut {
    int64_t frame = 0; // since the player's start
    int status = 0;
    int data1 = 0;
    int data2 = 0;
    bool isNoteOn() const { return (status & 0xF0) == 0x90 && data2 > 0; }
    bool isNoteOff() const { return (status & 0xF0) == 0x90 && data2 == 0; }
    friend bool operator==(const MidiOut&, const MidiOut&) = default;
};

class Player {
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

    // Makes every step of the current row sound: pitch 0, velocity 0.8, switched on, gate 0.1.
    void writePlainNotes();

    const std::vector<MidiOut>& events() const { return out; }
    std::vector<MidiOut> noteOns() const;
    void forget() { out.clear(); }
    void forgetAudio()
    {
        leftOut.clear();
        rightOut.clear();
    }
    // Ticks of 32 samples from the start at which the first `count` notes went out.
    std::vector<int> stepTicks(int count);
    // One line an event: "tick 345  90 3c 64".
    std::string trace() const;
    int soundingNotes() const; // note ons without their end

    const std::vector<float>& left() const { return leftOut; }
    const std::vector<float>& right() const { return rightOut; }
    void keepAudio(bool keep) { keepsAudio = keep; }
    double position() const { return beats; }
    bool sendsRecord = true; // false: the host has no transport record
    VstInt32 processLevel = 2;

private:
    static VstIntPtr host(
        AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);
    VstIntPtr keep(const VstEvents& events);

    std::unique_ptr<KWUniClient> client;
    VstTimeInfo record{};
    std::vector<MidiOut> out;
    std::vector<VstMidiEvent> pending;
    std::vector<float> leftOut;
    std::vector<float> rightOut;
    double tempo;
    double rate;
    double beats = 0;
    int64_t frame = 0;
    int block;
    bool rolling = false;
    bool cycling = false;
    bool keepsAudio = false;
};

} // namespace ormund
