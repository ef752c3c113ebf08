// Who leads the song: the program itself, JACK's transport or another machine's MIDI clock; and the
// clock that others are sent.
#pragma once

#include "apps/ormund/ClockFollower.h"
#include "apps/ormund/ClockSender.h"
#include "base/Crossing.h"

namespace ormund {

enum class Leader : int32_t {
    Own,
    Jack, // where the sound comes by JACK; elsewhere as Own
    MidiClock
};

class SongSync {
public:
    // --- the screen's thread --------------------------------------------------------------------
    // A song that plays goes on where it is.
    void choose(Leader wanted) { chosen = static_cast<int32_t>(wanted); }
    Leader leader() const { return static_cast<Leader>(chosen.load()); }
    // What the last block was led by.
    Leader leads() const { return static_cast<Leader>(shownLeader.load()); }
    ClockFollower::State clockState() const
    {
        return static_cast<ClockFollower::State>(shownState.load());
    }
    void sendClock(bool on) { sending = on ? 1 : 0; }
    bool sendsClock() const { return sending != 0; }

    // --- the audio thread -----------------------------------------------------------------------
    void setSampleRate(double hertz) { follower.setSampleRate(hertz); } // or while no block runs
    // The user's wishes, which count while no clock comes.
    void play(bool on) { follower.play(on); }
    void locate(double beat) { follower.locate(beat); }
    // A system message for the block to come.
    void hear(const uint8_t* bytes, size_t size, int frame);
    // The place of a block: nothing where the song leads itself. `current` is where it stands by
    // itself, `jack` the place on JACK's transport if it is there.
    const SharedPlace* lead(const SharedPlace& current, const SharedPlace* jack, int frames);
    // True once after the song has been handed back to the program: it keeps the tempo.
    bool takeHandedBack();
    // The clock to send within a block.
    std::span<const ClockSender::Event> clocks(
        const SharedPlace& place, double beatsPerFrame, int frames);

private:
    Crossing<int32_t> chosen = static_cast<int32_t>(Leader::Jack);
    Crossing<int32_t> shownLeader = static_cast<int32_t>(Leader::Own);
    Crossing<int32_t> shownState = 0;
    Crossing<int32_t> sending = 0;

    // Audio thread.
    Leader last = Leader::Own;
    bool handedBack = false;
    bool wasSending = false;
    int64_t framesRun = 0;
    int64_t waited = 0; // frames for JACK's transport to roll
    SharedPlace led;
    ClockFollower follower;
    ClockSender sender;
};

} // namespace ormund
