#include "engine/EventQueues.h"

namespace ormund {

namespace {
constexpr int kAllNotesOffController = 123;
constexpr size_t slot(int index) { return static_cast<size_t>(index); }
} // namespace

std::optional<InternalEvent> internalEvent(const std::array<uint8_t, 3>& message)
{
    InternalEvent event;
    event.data1 = message[1] & 0x7f;
    event.data2 = message[2] & 0x7f;
    switch (message[0] & 0xF0) {
    case 0x90:
        event.code = event.data2 > 0 ? EventCode::NoteOn : EventCode::NoteOff;
        return event;
    case 0x80:
        event.code = EventCode::NoteOff;
        return event;
    case 0xB0:
        // On the other channels it is a controller like any other.
        event.code = event.data1 == kAllNotesOffController && (message[0] & 0x0F) == 0
            ? EventCode::AllNotesOff
            : EventCode::Controller;
        return event;
    case 0xC0:
        event.code = EventCode::ProgramChange;
        return event;
    case 0xD0:
        event.code = EventCode::Pressure;
        return event;
    case 0xE0:
        event.code = EventCode::PitchWheel;
        return event;
    default:
        return std::nullopt;
    }
}

InputQueue::InputQueue() { clear(); }

void InputQueue::clear()
{
    for (int i = 0; i < kCapacity; ++i)
        next[slot(i)] = static_cast<int16_t>(i + 1 < kCapacity ? i + 1 : kNone);
    freeList = 0;
    head = tail = kNone;
    used = 0;
    tailTime = 0;
}

void InputQueue::insert(InternalEvent event, int samples)
{
    const bool isRelease = event.code == EventCode::NoteOff || event.code == EventCode::AllNotesOff;
    if (used >= (isRelease ? kCapacity : kCapacity - kReservedForReleases)) {
        lostRelease = lostRelease || isRelease;
        return;
    }
    const int16_t place = freeList;
    freeList = next[slot(place)];
    ++used;

    int64_t rest = samples;
    int16_t before = kNone;
    if (head != kNone && rest >= tailTime) { // in order, as hosts send them
        before = tail;
        rest -= tailTime;
    } else {
        for (int16_t i = head; i != kNone && events[slot(i)].delta <= rest; i = next[slot(i)]) {
            rest -= events[slot(i)].delta;
            before = i;
        }
    }
    const int16_t after = before == kNone ? head : next[slot(before)];
    event.delta = static_cast<int32_t>(rest);
    events[slot(place)] = event;
    next[slot(place)] = after;
    (before == kNone ? head : next[slot(before)]) = place;
    if (after == kNone) {
        tail = place;
        tailTime = samples;
    } else {
        events[slot(after)].delta -= event.delta;
    }
}

const InternalEvent* InputQueue::popDue()
{
    if (head == kNone || events[slot(head)].delta > 0)
        return nullptr;
    const int16_t place = head;
    popped = events[slot(place)];
    head = next[slot(place)];
    if (head == kNone) {
        tail = kNone;
        tailTime = 0;
    } else {
        events[slot(head)].delta += popped.delta;
    }
    next[slot(place)] = freeList;
    freeList = place;
    --used;
    return &popped;
}

void InputQueue::advance(int samples)
{
    if (head == kNone)
        return;
    events[slot(head)].delta -= samples;
    tailTime -= samples;
}

bool InputQueue::cancelNoteOn(int note)
{
    for (int16_t i = head; i != kNone; i = next[slot(i)]) {
        InternalEvent& event = events[slot(i)];
        if (event.code == EventCode::NoteOn && event.data1 == note) {
            event.code = EventCode::Cancelled;
            return true;
        }
    }
    return false;
}

bool InputQueue::takeLostRelease()
{
    const bool lost = lostRelease;
    lostRelease = false;
    return lost;
}

bool OutgoingList::append(int status, int data1, int data2)
{
    if (isFull())
        return false;
    list[slot(eventCount++)] = {eventDelta,
        {static_cast<uint8_t>(status), static_cast<uint8_t>(data1 & 0x7f),
            static_cast<uint8_t>(data2 & 0x7f)}};
    return true;
}

} // namespace ormund
