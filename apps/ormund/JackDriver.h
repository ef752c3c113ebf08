// Plays as a JACK client: sound, messages to the sample, and the transport that JACK's clients
// share.
#pragma once

#include "apps/ormund/AudioDriver.h"
#include "apps/ormund/SharedSong.h"

#include <jack/jack.h>
#include <string>

namespace ormund {

class JackDriver final : public AudioDriver, private LiveHost::MidiOut {
public:
    // Does not start a server.
    static OpenedDriver open(LiveHost& host, const SoundWishes& wishes, const BeforeBlocks& before);
    // 0 when no server answers.
    static int serverRate();
    static MidiPorts ports();
    ~JackDriver() override;

    std::string describe() const override { return title; }
    bool isAlive() const override { return gone == 0; }
    void idle() override;
    bool play(bool on) override;
    bool isRolling() const override;
    bool locate(double beat, double tempo) override;

private:
    JackDriver(LiveHost& ownHost, jack_client_t* ownClient);
    std::string begin(const SoundWishes& wishes, const BeforeBlocks& before);
    void offerBars();
    void connectSound();
    std::string connectMidi(const std::string& part, bool isInput);

    int process(jack_nframes_t frames);
    SharedSong::Report report();
    void tellBars(jack_nframes_t frames, jack_position_t& position);
    void midiOut(int frame, const LiveHost::Message& message) override;

    LiveHost& host;
    jack_client_t* client;
    std::string title;
    jack_port_t* left = nullptr;
    jack_port_t* right = nullptr;
    jack_port_t* midiInput = nullptr;
    jack_port_t* midiOutput = nullptr;
    Crossing<int32_t> gone = 0;
    Crossing<int32_t> lacksBars = 0; // the last block: nobody gave any
    int64_t nextOffer = 0;           // nanoseconds

    // JACK's process thread.
    SharedSong song;
    void* midiBuffer = nullptr; // during process()
    bool givesBars = false;     // since the last block: nobody else does
    double reportedTempo = 0;   // with the last bars; 0 before
};

} // namespace ormund
