#include "apps/ormund/ClockSender.h"

#include "apps/ormund/ClockFollower.h"

#include <algorithm>
#include <cmath>

namespace ormund {

using namespace midiclock;

namespace {
constexpr double kLocateJump = 0.5; // clocks off the expected place
constexpr double kRounding = 1e-6;
constexpr int kPositions = 1 << 14; // sixteenths that a message can say
} // namespace

void ClockSender::push(int frame, uint8_t status, int position)
{
    if (count == kMostEvents)
        return;
    Event& event = events[count++];
    event = {frame, 1, {status, 0, 0}};
    if (position < 0)
        return;
    event.size = 3;
    event.bytes[1] = static_cast<uint8_t>(position & 0x7F);
    event.bytes[2] = static_cast<uint8_t>(position >> 7 & 0x7F);
}

void ClockSender::start(double beat)
{
    const double clock = std::max(beat, 0.0) * kPerBeat;
    double sixteenth = std::floor(clock / kPerSixteenth + kRounding);
    // What has hardly begun is still joined.
    const bool isJoined = clock - sixteenth * kPerSixteenth < kLocateJump;
    if (!isJoined)
        sixteenth += 1;
    startClock = sixteenth * kPerSixteenth;
    nextClock = isJoined ? startClock : std::ceil(clock - kRounding);
    isWaiting = true;
    if (startClock > 0)
        push(0, kPosition, static_cast<int>(std::fmod(sixteenth, kPositions)));
}

void ClockSender::run(bool playing, double beat, double beatsPerFrame, int frames)
{
    count = 0;
    const bool hasJumped = std::abs(beat * kPerBeat - place) > kLocateJump;
    if (wasPlaying && (!playing || hasJumped))
        push(0, kStop);
    if (playing && (!wasPlaying || hasJumped))
        start(beat);
    wasPlaying = playing;
    if (playing)
        place = beat * kPerBeat;
    const double perFrame = beatsPerFrame * kPerBeat;
    for (; count < kMostEvents; nextClock += 1) {
        const double frame = std::ceil((nextClock - place) / perFrame - kRounding);
        if (!(frame < frames))
            break;
        const int when = static_cast<int>(std::max(frame, 0.0));
        if (isWaiting && playing && nextClock >= startClock) {
            push(when, startClock > 0 ? kContinue : kStart);
            isWaiting = false;
        }
        push(when, kClock);
    }
    place += perFrame * frames;
}

void ClockSender::stop()
{
    count = 0;
    if (wasPlaying)
        push(0, kStop);
    wasPlaying = false;
}

} // namespace ormund
