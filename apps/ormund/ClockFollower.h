// Follows the MIDI clock of another machine: a straight line through the last clocks gives tempo
// and place, so that single clocks that come early or late do not shake either.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace ormund {

// Where a song stands that is led from outside.
struct SharedPlace {
    bool playing = false;
    double beat = 0; // quarter notes, without any cycle
    double tempo = 120;
};

namespace midiclock {
inline constexpr int kPerBeat = 24;
inline constexpr int kPerSixteenth = 6;
inline constexpr uint8_t kPosition = 0xF2;
inline constexpr uint8_t kClock = 0xF8;
inline constexpr uint8_t kStart = 0xFA;
inline constexpr uint8_t kContinue = 0xFB;
inline constexpr uint8_t kStop = 0xFC;
} // namespace midiclock

// The audio thread. Frames count from anywhere, through all blocks.
class ClockFollower {
public:
    enum class State : int32_t {
        Silent,  // no clock, and the song does not need one yet
        Locking, // too few clocks to be sure
        Locked,
        Lost // they ceased; the song runs on as it was
    };
    static constexpr double kLostSeconds = 0.5;

    void setSampleRate(double hertz) { rate = hertz; }
    // From here on the clock leads a song that stands at this place. Forgets what came before.
    void adopt(const SharedPlace& place);
    // By the user; they count while no clock comes.
    void play(bool on);
    void locate(double toBeat);
    // In the order in which they come. What is no message of a clock is left out.
    void hear(const uint8_t* bytes, size_t size, double frame);
    // For a block that begins at `frame`; blocks without a gap.
    SharedPlace follow(double frame, int frames);
    State state() const { return now; }

private:
    static constexpr int kWindow = 4 * midiclock::kPerBeat;

    void clock(double frame);
    void fit();
    void steadyTempo();
    void beginSong(double beat);
    double clocksAt(double frame) const;
    double tempoOf(double clockPeriod) const
    {
        return rate * 60 / clockPeriod / midiclock::kPerBeat;
    }
    bool hasClock() const { return now == State::Locking || now == State::Locked; }

    double rate = 48000; // Hz
    State now = State::Silent;
    // The line through the last clocks.
    std::array<double, kWindow> frames{}; // by clock number, in turn
    int64_t count = 0;                    // clocks so far
    int fitted = 0;                       // of them lie on the line
    int strays = 0;                       // in a row
    bool keepsPeriod = false; // the line has a new place, but too few clocks for a slope
    double period = 1000;     // frames a clock
    double lastOnLine = 0;    // frame of the newest clock
    double lastHeard = 0;
    // The song.
    double songClock = 0; // clock number at which it stood at songBeat
    double songBeat = 0;
    bool isPlaying = false;
    bool startsWithClock = false;
    bool isPlaced = false; // `beat` may not run straight on
    double beat = 0;       // expected at the next block
    double averageTempo = 120;
    double tempo = 120; // as shown: tenths, and it does not flicker between two
};

} // namespace ormund
