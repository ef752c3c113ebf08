// Blocks for devices that carry no messages: these come and go by the sequencer of ALSA, or by JACK
// where there is none, and the steady clock says when.
#pragma once

#include "apps/ormund/BlockClock.h"
#include "apps/ormund/LiveHost.h"
#include "base/Ring.h"

#include <atomic>
#include <memory>
#include <string>
#include <thread>

class RtMidiIn;
class RtMidiOut;

namespace ormund {

// Made and ended on the screen's thread. Three more threads meet in it: the one that hears the
// input, the audio thread in run(), and the sender.
class ClockedBlocks final : private LiveHost::MidiOut {
public:
    // `latency` is how long after its block's start a sample is heard, in frames; messages go out
    // by as much later. Ports that cannot be had leave the reason in problem().
    ClockedBlocks(LiveHost& ownHost, double sampleRate, int frames, int latency,
        const std::string& midiIn, const std::string& midiOut);
    ~ClockedBlocks();
    ClockedBlocks(const ClockedBlocks&) = delete;
    ClockedBlocks& operator=(const ClockedBlocks&) = delete;

    const std::string& problem() const { return trouble; }
    bool hasOutput() const { return output != nullptr; }
    // The audio thread; a whole block.
    void run(float* left, float* right);

    static int64_t now(); // nanoseconds

private:
    struct Timed {
        int64_t time = 0; // nanoseconds: heard, or to be sent
        LiveHost::Message message;
    };
    static constexpr size_t kRoom = 2048;

    void openPorts(const std::string& midiIn, const std::string& midiOut);
    void hear(const uint8_t* bytes, size_t size);
    void midiOut(int frame, const LiveHost::Message& message) override;
    void takeHeard(int64_t start);
    void send();

    LiveHost& host;
    BlockClock clock; // audio thread
    int64_t blockStart = 0;
    int frameCount;
    double latencyNanos;
    std::string trouble;
    std::unique_ptr<RtMidiIn> input;
    std::unique_ptr<RtMidiOut> output;
    Ring<Timed, kRoom> heard; // input to audio
    Ring<Timed, kRoom> due;   // audio to sender
    OneWayFlag over;
    std::thread sender;
};

} // namespace ormund
