// The effect interface's records of time and MIDI, to and from the sequencer's own.
#pragma once

#include "engine/BlockTransport.h"
#include "engine/EventQueues.h"
#include "host/effect/EffectTypes.h"

#include <array>
#include <span>

namespace ormund {

inline BlockTransport blockTransport(const VstTimeInfo& record)
{
    const auto has = [&](int flags) { return (record.flags & flags) == flags; };
    return {
        .position = record.ppqPos,
        .tempo = record.tempo,
        .playing = has(kVstTransportPlaying),
        // Some hosts give a tempo and forget the flag.
        .tempoValid = has(kVstTempoValid) || record.tempo > 0,
        .loopOn = has(kVstCyclePosValid | kVstTransportCycleActive),
        .loopStart = record.cycleStartPos,
        .loopEnd = record.cycleEndPos,
    };
}

MidiEvent midiEvent(const VstMidiEvent& event);
VstMidiEvent effectEvent(const MidiEvent& event);

// The events of one block in the form in which a host takes them. Audio thread; nothing allocates.
class EffectEventList {
public:
    static constexpr int kCapacity = OutgoingList::kCapacity;

    EffectEventList();
    EffectEventList(const EffectEventList&) = delete;
    EffectEventList& operator=(const EffectEventList&) = delete;

    // Valid until the next call. What is more than kCapacity is left out.
    VstEvents* fill(std::span<const MidiEvent> from);

private:
    // VstEvents with room for all pointers.
    struct Block {
        int32_t numEvents;
        intptr_t reserved;
        VstEvent* events[kCapacity];
    };
    std::array<VstMidiEvent, kCapacity> events{};
    Block block{};
};

} // namespace ormund
