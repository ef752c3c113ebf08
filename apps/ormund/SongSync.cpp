#include "apps/ormund/SongSync.h"

namespace ormund {

namespace {
// A song that plays is handed to JACK's transport once that rolls, or after so long.
constexpr int64_t kMostWait = 48000;
} // namespace

void SongSync::hear(const uint8_t* bytes, size_t size, int frame)
{
    if (leader() == Leader::MidiClock && last == Leader::MidiClock)
        follower.hear(bytes, size, static_cast<double>(framesRun + frame));
}

const SharedPlace* SongSync::lead(const SharedPlace& current, const SharedPlace* jack, int frames)
{
    Leader now = leader();
    if (now == Leader::Jack && !jack)
        now = Leader::Own;
    // JACK needs some blocks before it rolls.
    if (now == Leader::Jack && last != Leader::Jack && framesRun > 0 && current.playing
        && !jack->playing && waited < kMostWait) {
        waited += frames;
        now = last == Leader::MidiClock ? Leader::Own : last;
    } else {
        waited = 0;
    }
    if (now != last) {
        handedBack = now == Leader::Own;
        if (now == Leader::MidiClock)
            follower.adopt(current);
        last = now;
    }
    const SharedPlace* place = nullptr;
    if (now == Leader::Jack) {
        place = jack;
    } else if (now == Leader::MidiClock) {
        led = follower.follow(static_cast<double>(framesRun), frames);
        place = &led;
    }
    shownLeader = static_cast<int32_t>(now);
    shownState = static_cast<int32_t>(follower.state());
    framesRun += frames;
    return place;
}

bool SongSync::takeHandedBack()
{
    const bool answer = handedBack;
    handedBack = false;
    return answer;
}

std::span<const ClockSender::Event> SongSync::clocks(
    const SharedPlace& place, double beatsPerFrame, int frames)
{
    const bool sends = sendsClock();
    if (sends)
        sender.run(place.playing, place.beat, beatsPerFrame, frames);
    else if (wasSending)
        sender.stop();
    const bool hasAny = sends || wasSending;
    wasSending = sends;
    return hasAny ? sender.toSend() : std::span<const ClockSender::Event>();
}

} // namespace ormund
