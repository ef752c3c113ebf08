// Standard MIDI files: what the renderer and the editor's drag export write, and what the renderer
// plays into the plug-in.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ormund {

// One channel message. Positions are ticks from the start of the piece.
struct MidiFileEvent {
    uint32_t tick = 0;
    std::array<uint8_t, 3> bytes{};
    uint8_t size = 3; // 2 or 3 bytes

    bool operator==(const MidiFileEvent&) const = default;
};

struct MidiFileTempo {
    uint32_t tick = 0;
    double beatsPerMinute = 120.0;
};

// A whole piece with all tracks in one list, in time order. Single-threaded, allocates.
class MidiFile {
public:
    enum class ReadResult {
        Ok,
        NotMidi,         // no header of such a file
        UnsupportedForm, // independent songs (type 2) or time code instead of beats
        Damaged,         // a size or a message that the bytes do not hold
    };

    // Reads types 0 and 1 with running status; system messages and unknown parts are skipped.
    // Nothing outside `data` is read; the piece needs no more memory than a small multiple of it.
    // On failure the piece is empty.
    ReadResult read(std::span<const uint8_t> data);
    static std::string_view messageOf(ReadResult result);

    // Type 0: name, tempo and all events, which must be in time order.
    std::vector<uint8_t> write() const;

    // Beats are quarter notes.
    double beatOf(uint32_t tick) const { return static_cast<double>(tick) / ticksPerBeat; }
    uint32_t tickOf(double beat) const;
    // Beats per minute at a position: the last tempo at or before it, else 120.
    double tempoAt(double beat) const;
    uint32_t lastTick() const;

    int ticksPerBeat = 960; // 1 to 32767
    int beatsPerBar = 4;    // written as the time signature's numerator, over 4
    std::string name;
    uint32_t endTick = 0; // where the track ends, if after the last event
    std::vector<MidiFileEvent> events;
    std::vector<MidiFileTempo> tempos;
};

} // namespace ormund
