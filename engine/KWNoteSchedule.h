// The notes to come: ons and offs in time order, each counted from the one before it.
#pragma once

#include "data/music/KWSystemInfo.h"
#include "engine/IdleTicks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace ormund {

class OutgoingList;
class KWSimpleMidiManagerBase;

// Whatever is added, every note that has been started has exactly one note off waiting, and the
// list drains whether the sequencer runs or not. So nothing hangs and nobody sends all-notes-off.
// Audio thread; the pool is fixed.
class KWNoteSchedule : public MovesByInputsOnly {
public:
    static constexpr int kPool = 256;

    KWNoteSchedule();

    // Starts `note` after `delay` samples and ends it `duration` samples later. A sounding note of
    // this pitch ends first, at the same place; one that has not started yet gives way. With no
    // room for the whole note nothing changes. `velocity` 1 to 127, notes 0 to 127, channel 0 to
    // 15; a note of another channel is another note. `toSynth`: our voices play it too.
    void addNote(uint32_t delay, int note, int velocity, uint32_t duration, int channel,
        bool toSynth = true);

    // For a key that is held: a note that lasts until it is ended, or for hours.
    void holdNote(int note, int velocity, int channel)
    {
        addNote(0, note, velocity, kHeld, channel);
    }
    void endNote(int note, int channel);

    // Once a tick, at its end: hands what falls due inside the coming period to the list and to the
    // voices. A note off that finds the list full waits for the next tick; a note on is given up
    // together with its off.
    void drain(OutgoingList& outgoing, KWSimpleMidiManagerBase& voices);

    // engine/IdleTicks.h
    int idleTicks(int most) const
    {
        const uint32_t delay = head == kNone ? UINT32_MAX : at(head).delay;
        return static_cast<int>(std::min(delay / kTickSamples, static_cast<uint32_t>(most)));
    }
    void skipTicks(int ticks, double /*position*/)
    {
        if (head != kNone)
            at(head).delay -= static_cast<uint32_t>(ticks * kTickSamples);
    }

    bool isEmpty() const { return head == kNone; }
    int pendingOffs(int note) const;

private:
    static constexpr int16_t kNone = -1;
    static constexpr uint32_t kHeld = 1u << 31; // samples
    struct Message {
        uint8_t status = 0;
        uint8_t note = 0;
        uint8_t velocity = 0; // 0: the note's end
        bool waits = false;
        bool toSynth = true;
        bool isOf(int wantedStatus, int wantedNote) const
        {
            return status == wantedStatus && note == wantedNote;
        }
        uint32_t delay = 0; // samples after the node before it
        int16_t next = kNone;
    };

    Message& at(int16_t place) { return pool[static_cast<size_t>(place)]; }
    const Message& at(int16_t place) const { return pool[static_cast<size_t>(place)]; }
    int16_t allocate(const Message& message);
    int16_t& linkAfter(int16_t before) { return before == kNone ? head : at(before).next; }
    // Takes the node behind `before` out; the node after it keeps its time if `passOn`.
    void unlinkAfter(int16_t before, bool passOn);
    // Removes all nodes of the note. True if it was sounding: its first node was its end, and
    // `toSynth` becomes whether a voice plays it.
    bool removeNote(int status, int note, bool& toSynth);
    // Whether a voice must go on, as the pitch sounds on another channel too.
    bool soundsElsewhere(const Message& ended) const;
    void insertAfter(int16_t before, int16_t place, uint32_t delay);

    std::array<Message, kPool> pool;
    int16_t head = kNone;
    unsigned counter = 0; // where the search for a free slot starts
    int used = 0;
};

} // namespace ormund
