// Leads other machines by MIDI clock: 24 clocks a quarter note, start, stop, continue and the place
// in the song.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace ormund {

// The audio thread.
class ClockSender {
public:
    struct Event {
        int frame;
        int size; // of `bytes`
        std::array<uint8_t, 3> bytes;
    };
    // What is to be sent in a block that begins at `beat`, in rising order. The clocks go on while
    // the song stands, so that others know its tempo. They know no place but sixteenths: a song
    // that starts between two of them is joined at the next one.
    void run(bool playing, double beat, double beatsPerFrame, int frames);
    // Others are stopped; from here on nothing is sent until the next run().
    void stop();
    std::span<const Event> toSend() const { return {events.data(), count}; }

private:
    static constexpr size_t kMostEvents = 512; // of the fastest song in the longest block: 150

    void start(double beat);
    void push(int frame, uint8_t status, int position = -1);

    std::array<Event, kMostEvents> events{};
    size_t count = 0;
    bool wasPlaying = false;
    bool isWaiting = false; // to start or to continue at startClock
    double startClock = 0;
    double nextClock = 0;
    double place = 0; // clocks; where the last block ended
};

} // namespace ormund
