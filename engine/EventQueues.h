// The two event queues of a block: what came in and waits for its tick, and what goes out at its
// end.
#pragma once

#include "base/ZeroedArray.h"
#include "engine/MidiEvent.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace ormund {

// What an incoming MIDI message means to the engine.
enum class EventCode : int32_t {
    Cancelled = -1,
    NoteOn = 200,
    NoteOff = 201,
    AllNotesOff = 202,
    Controller = 203,
    PitchWheel = 204,
    ProgramChange = 205,
    Pressure = 206,
};

struct InternalEvent {
    int32_t kind = 100;
    int32_t flag = 1;
    int32_t delta = 0; // samples after the event before it
    EventCode code = EventCode::Cancelled;
    int32_t data1 = 0;
    int32_t data2 = 0;
    uint8_t unused[2] = {0, 0};
    int32_t reserved = 0;
};
static_assert(sizeof(InternalEvent) == 32);
// Nothing for a message that the engine has no use for.
std::optional<InternalEvent> internalEvent(const std::array<uint8_t, 3>& message);

// Incoming events in time order, each counted from the one before it; the head from the next tick.
// An event acts at the first tick at or after its frame. Audio thread; nothing allocates.
class InputQueue {
public:
    InputQueue();

    // `samples` after the next tick, 0 or less: due at it. With the queue full the event is lost; a
    // lost release is remembered, so that no key hangs.
    void insert(InternalEvent event, int samples);

    // The next due event or null; valid until the next call. What it has waited too long passes on.
    const InternalEvent* popDue();
    // The waiting time of the head shrinks by one period.
    void advance(int samples);

    // A note on that still waits is made void, so that a key released before its tick sounds
    // nothing.
    bool cancelNoteOn(int note);
    // True once after a release had to be dropped.
    bool takeLostRelease();
    void clear();
    bool isEmpty() const { return head == kNone; }

    static constexpr int kCapacity = 1024;

private:
    static constexpr int16_t kNone = -1;
    // Releases may take the last places, so that presses alone can't shut them out.
    static constexpr int kReservedForReleases = 256;

    ZeroedArray<InternalEvent> events{kCapacity};
    std::array<int16_t, kCapacity> next;
    int16_t head = kNone;
    int16_t tail = kNone;
    int16_t freeList = 0;
    int used = 0;
    int64_t tailTime = 0; // the sum of all deltas
    InternalEvent popped;
    bool lostRelease = false;
};

// The MIDI events of one block, in the order in which they go out. Audio thread.
class OutgoingList {
public:
    static constexpr int kCapacity = 256;

    // Stamps the event with `eventDelta`. False, and nothing happens, when the list is full.
    bool append(int status, int data1, int data2);
    bool isFull() const { return eventCount == kCapacity; }
    int count() const { return eventCount; }
    const MidiEvent& at(int index) const { return list[static_cast<size_t>(index)]; }
    std::span<const MidiEvent> events() const
    {
        return {list.data(), static_cast<size_t>(eventCount)};
    }
    void clear() { eventCount = 0; }

    int eventDelta = 0; // frame in the block of the current tick

private:
    std::array<MidiEvent, kCapacity> list;
    int eventCount = 0;
};

} // namespace ormund
