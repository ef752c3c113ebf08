// MIDI messages on their way through the effect interface.
#pragma once

#include "host/effect/EffectTypes.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

namespace ormund {

// The place in a list, whose array goes on behind its declared end. Null where the sender put none.
inline const VstEvent* eventAt(const VstEvents& list, VstInt32 index)
{
    const VstEvent* event = nullptr;
    const auto* places =
        reinterpret_cast<const unsigned char*>(&list) + offsetof(VstEvents, events);
    std::memcpy(&event, places + static_cast<size_t>(index) * sizeof event, sizeof event);
    return event;
}

// The messages of one block, in the order of their frames. Allocates in reserve() alone.
class EventList {
public:
    explicit EventList(size_t room = 0) { reserve(room); }
    void reserve(size_t room);
    size_t room() const { return events.capacity(); }
    size_t count() const { return events.size(); }

    // False when there is no room left.
    bool add(std::array<uint8_t, 3> bytes, int frame);
    // Null when there is none; stands until the next change.
    VstEvents* list();
    void clear() { events.clear(); }

private:
    std::vector<VstMidiEvent> events;
    std::vector<VstEvents> bytes; // a VstEvents with room for all of them
};

} // namespace ormund
