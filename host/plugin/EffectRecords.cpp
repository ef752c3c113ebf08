#include "host/plugin/EffectRecords.h"

#include <algorithm>
#include <cstddef>

namespace ormund {

MidiEvent midiEvent(const VstMidiEvent& event)
{
    const auto byte = [&](int i) { return static_cast<uint8_t>(event.midiData[i]); };
    return {event.deltaFrames, {byte(0), byte(1), byte(2)}};
}

VstMidiEvent effectEvent(const MidiEvent& event)
{
    VstMidiEvent made{};
    made.type = kVstMidiType;
    made.byteSize = sizeof made;
    made.deltaFrames = event.frame;
    for (size_t i = 0; i < event.bytes.size(); ++i)
        made.midiData[i] = event.bytes[i];
    return made;
}

EffectEventList::EffectEventList()
{
    static_assert(offsetof(Block, events) == offsetof(VstEvents, events));
    for (size_t i = 0; i < events.size(); ++i)
        block.events[i] = reinterpret_cast<VstEvent*>(&events[i]);
}

VstEvents* EffectEventList::fill(std::span<const MidiEvent> from)
{
    const size_t count = std::min(from.size(), events.size());
    std::transform(from.begin(), from.begin() + static_cast<std::ptrdiff_t>(count), events.begin(),
        effectEvent);
    block.numEvents = static_cast<int32_t>(count);
    return reinterpret_cast<VstEvents*>(&block);
}

} // namespace ormund
