#include "apps/ormund/ClockFollower.h"

#include <algorithm>
#include <cmath>

namespace ormund {

using namespace midiclock;

namespace {
constexpr int kSure = kPerBeat;        // clocks until it is locked
constexpr int kAfterStrays = 4;        // clocks that are kept when the tempo has jumped
constexpr int kMostStrays = 2;         // of a chance, in a row
constexpr double kStray = 0.3;         // clocks off the line
constexpr double kJump = 0.1;          // beats off the expected place
constexpr double kSettleSeconds = 0.2; // of smaller differences
constexpr double kTenths = 10;         // of a beat per minute
constexpr double kFlicker = 0.07;      // beats per minute; more than half a tenth
constexpr double kTempoJump = 2;       // beats per minute; shown at once
constexpr double kSixteenthsPerBeat = 4;
constexpr double kSlowest = 10; // beats per minute
constexpr double kFastest = 1000;
} // namespace

void ClockFollower::adopt(const SharedPlace& place)
{
    now = State::Silent;
    count = 0;
    fitted = strays = 0;
    keepsPeriod = false;
    isPlaying = place.playing;
    startsWithClock = false;
    isPlaced = true;
    beat = songBeat = place.beat;
    averageTempo = tempo = place.tempo;
    period = rate * 60 / place.tempo / kPerBeat;
}

void ClockFollower::play(bool on)
{
    if (hasClock() || on == isPlaying)
        return;
    (on ? beat : songBeat) = on ? songBeat : beat;
    isPlaying = on;
}

void ClockFollower::locate(double toBeat)
{
    if (!hasClock())
        beat = songBeat = toBeat;
}

double ClockFollower::clocksAt(double frame) const
{
    return static_cast<double>(count - 1) + (frame - lastOnLine) / period;
}

void ClockFollower::beginSong(double fromBeat)
{
    songBeat = fromBeat;
    songClock = static_cast<double>(count); // the clock to come
    isPlaced = true;
}

void ClockFollower::hear(const uint8_t* bytes, size_t size, double frame)
{
    if (size < 1)
        return;
    switch (bytes[0]) {
    case kClock:
        clock(frame);
        break;
    case kStart:
    case kContinue:
        startsWithClock = !isPlaying || bytes[0] == kStart;
        if (bytes[0] == kStart)
            beginSong(0);
        else if (!isPlaying)
            beginSong(songBeat);
        break;
    case kStop:
        // The next clock after a continue belongs here.
        if (isPlaying)
            songBeat = hasClock()
                ? std::max(songBeat, songBeat + (static_cast<double>(count) - songClock) / kPerBeat)
                : beat;
        isPlaying = startsWithClock = false;
        break;
    case kPosition:
        if (size < 3)
            break;
        beginSong(((bytes[1] & 0x7F) | (bytes[2] & 0x7F) << 7) / kSixteenthsPerBeat);
        break;
    default:
        break;
    }
}

void ClockFollower::clock(double frame)
{
    if (!hasClock()) {
        // The song has run by itself until here.
        now = State::Locking;
        fitted = strays = 0;
        keepsPeriod = false;
        if (isPlaying && !startsWithClock) {
            songBeat = beat;
            songClock = static_cast<double>(count);
        }
        lastOnLine = frame - period;
    } else if (startsWithClock && fitted >= kAfterStrays) {
        // The clocks of a song that starts need not go on evenly from those before it.
        fitted = strays = 0;
        keepsPeriod = true;
        lastOnLine = frame - period;
    }
    const double off = (frame - lastOnLine) / period - 1;
    strays = fitted > 1 && std::abs(off) > kStray ? strays + 1 : 0;
    frames[static_cast<size_t>(count % kWindow)] = frame;
    ++count;
    lastHeard = frame;
    fitted = std::min(fitted + 1, kWindow);
    const bool hasJumped = strays > kMostStrays;
    if (hasJumped) {
        fitted = std::min(fitted, kAfterStrays);
        strays = 0;
    }
    keepsPeriod = keepsPeriod && !hasJumped && fitted < kSure;
    fit();
    now = (keepsPeriod && now == State::Locked) || fitted >= kSure ? State::Locked : State::Locking;
    steadyTempo();
    if (startsWithClock) {
        isPlaying = true;
        startsWithClock = false;
    }
}

void ClockFollower::fit()
{
    const double newest = frames[static_cast<size_t>((count - 1) % kWindow)];
    if (fitted < 2) {
        lastOnLine = newest;
        return;
    }
    const double middle = (fitted - 1) / 2.0;
    double mean = 0;
    double product = 0;
    double square = 0;
    for (int i = 0; i < fitted; ++i) {
        const double away = frames[static_cast<size_t>((count - fitted + i) % kWindow)] - newest;
        mean += away / fitted;
        product += (i - middle) * away;
        square += (i - middle) * (i - middle);
    }
    const auto clockPeriod = [this](double perMinute) { return rate * 60 / perMinute / kPerBeat; };
    if (!keepsPeriod)
        period = std::clamp(product / square, clockPeriod(kFastest), clockPeriod(kSlowest));
    lastOnLine = newest + mean + period * middle;
}

void ClockFollower::steadyTempo()
{
    if (fitted < kAfterStrays || keepsPeriod)
        return;
    const double heard = tempoOf(period);
    // A line through few clocks is replaced by the next one, one through many is averaged with it.
    averageTempo += (heard - averageTempo) * (fitted < kWindow ? 1.0 : 1.0 / kWindow);
    const double limit = fitted < kSure ? kTempoJump : kFlicker;
    if (std::abs(averageTempo - tempo) > limit)
        tempo = std::round(averageTempo * kTenths) / kTenths;
}

SharedPlace ClockFollower::follow(double frame, int blockFrames)
{
    if (hasClock() && frame - lastHeard > kLostSeconds * rate)
        now = isPlaying ? State::Lost : State::Silent;
    if (!isPlaying) {
        beat = songBeat;
        return {false, beat, tempo};
    }
    if (hasClock()) {
        // The start may lie within the block.
        const double wanted =
            std::max(songBeat, songBeat + (clocksAt(frame) - songClock) / kPerBeat);
        const double error = wanted - beat;
        if (isPlaced || std::abs(error) > kJump)
            beat = wanted;
        else
            beat += error * std::min(1.0, blockFrames / (kSettleSeconds * rate));
        isPlaced = false;
    }
    const SharedPlace place{true, beat, tempo};
    beat += blockFrames * tempo / 60 / rate;
    return place;
}

} // namespace ormund
