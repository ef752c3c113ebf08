#include "engine/EventQueues.h"

#include <cstddef>

namespace ormund {

namespace {
constexpr size_t slot(int index) { return static_cast<size_t>(index); }
} // namespace

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

OutgoingList::OutgoingList() : events{}, block{}
{
    static_assert(offsetof(Block, events) == offsetof(VstEvents, events));
    for (size_t i = 0; i < events.size(); ++i) {
        events[i].type = kVstMidiType;
        events[i].byteSize = sizeof(VstMidiEvent);
        block.events[i] = reinterpret_cast<VstEvent*>(&events[i]);
    }
}

bool OutgoingList::append(int status, int data1, int data2)
{
    if (isFull())
        return false;
    VstMidiEvent& event = events[slot(eventCount++)];
    event.deltaFrames = eventDelta;
    event.midiData[0] = static_cast<uint8_t>(status);
    event.midiData[1] = static_cast<uint8_t>(data1 & 0x7f);
    event.midiData[2] = static_cast<uint8_t>(data2 & 0x7f);
    return true;
}

VstEvents* OutgoingList::close()
{
    block.numEvents = eventCount;
    eventCount = 0;
    return reinterpret_cast<VstEvents*>(&block);
}

} // namespace ormund
