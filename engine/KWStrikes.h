// What a step makes of its notes in time: late, strummed, struck several times.
#pragma once

#include "engine/IdleTicks.h"
#include "engine/KWClock.h"
#include "engine/KWLanes.h"
#include "engine/KWNotes.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace ormund {

class KWNoteSchedule;
class Tracks;

// A plain step hands its notes to the schedule at once. Any other lays out its strikes, each of
// which starts in a tick of its own; nothing starts before the tick that decided the step. What
// does not fit into the list is left out. Stopping drops what has not started. Audio thread.
class KWStrikes : public MovesByInputsOnly {
public:
    static constexpr int kMost = 64; // waiting at once; two steps of eight strikes of four notes

    explicit KWStrikes(const Tracks& allTracks) : tracks(allTracks) { }

    // The strikes that are due, before the tick's own notes.
    void tick(const KWClock::Out&, KWNoteSchedule&);
    // The notes of the step that begins. True if it has any.
    bool begin(const KWClock::Out&, const KWLanes::Out&, const KWNotes::Out&, KWNoteSchedule&);

    // engine/IdleTicks.h
    int idleTicks(int most) const { return waiting == 0 ? most : std::min(nextIn() - 1, most); }
    void skipTicks(int ticks, double position);

private:
    struct Strike {
        int32_t in = 0;      // ticks
        uint32_t length = 0; // samples
        uint8_t note = 0;
        uint8_t velocity = 0;
        uint8_t channel = 0;
    };
    struct Chord {
        std::array<uint8_t, kChordNotes> note{};
        std::array<uint8_t, kChordNotes> velocity{};
        int size = 0;
    };
    static Chord sortedChord(const KWNotes::Out&);
    int nextIn() const;
    void add(const Strike& strike);

    const Tracks& tracks;
    std::array<Strike, kMost> strikes{}; // the first `waiting`, in the order of their layout
    int waiting = 0;
    bool downNext = false; // of the alternating strum
};

} // namespace ormund
