#include "apps/host/EventList.h"

#include <algorithm>

namespace ormund {

void EventList::reserve(size_t room)
{
    events.reserve(room);
    bytes.resize(1 + (events.capacity() * sizeof(VstEvent*)) / sizeof(VstEvents) + 1);
}

bool EventList::add(std::array<uint8_t, 3> message, int frame)
{
    if (events.size() == events.capacity())
        return false;
    VstMidiEvent event{};
    event.type = kVstMidiType;
    event.byteSize = sizeof event;
    event.deltaFrames = frame;
    std::copy(message.begin(), message.end(), event.midiData);
    // From the back: what comes in order stays where it is put.
    auto place = events.end();
    while (place != events.begin() && (place - 1)->deltaFrames > frame)
        --place;
    events.insert(place, event);
    return true;
}

VstEvents* EventList::list()
{
    if (events.empty())
        return nullptr;
    VstEvents* made = bytes.data();
    made->numEvents = static_cast<VstInt32>(events.size());
    made->reserved = 0;
    auto* places = reinterpret_cast<unsigned char*>(made) + offsetof(VstEvents, events);
    for (size_t i = 0; i < events.size(); ++i) {
        const VstMidiEvent* event = &events[i];
        std::memcpy(places + i * sizeof event, &event, sizeof event);
    }
    return made;
}

} // namespace ormund
