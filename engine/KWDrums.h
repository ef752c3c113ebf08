// The modulation tracks that play a drum: one note on one channel, the value of a step its
// velocity.
#pragma once

#include "base/LastSeen.h"
#include "engine/IdleTicks.h"
#include "engine/KWClock.h"
#include "engine/KWLanes.h"
#include "engine/KWMods.h"
#include "engine/KWNotes.h"

#include <array>
#include <cstdint>

namespace ormund {

class KWNoteSchedule;
class Tracks;

// A row strikes once a step of its own lane, also where its loop is a single step. Audio thread.
class KWDrums : public MovesByInputsOnly {
public:
    // `modSettings` are those of the tracks.
    KWDrums(const Tracks& allTracks, const KWMods::Settings& modSettings)
        : tracks(allTracks), settings(modSettings)
    {
    }
    void tick(const KWClock::Out&, const KWLanes::Out&, const KWNotes::Out&, KWNoteSchedule&);

private:
    const Tracks& tracks;
    const KWMods::Settings& settings;
    LastSeen<float> play;
    std::array<LastSeen<int32_t>, KWMods::kTracks> count;
};

} // namespace ormund
