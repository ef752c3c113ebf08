// A MIDI message of up to three bytes and its place in a block.
#pragma once

#include <array>
#include <cstdint>

namespace ormund {

struct MidiEvent {
    int32_t frame = 0;
    std::array<uint8_t, 3> bytes{};
    friend bool operator==(const MidiEvent&, const MidiEvent&) = default;
};

} // namespace ormund
