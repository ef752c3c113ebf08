#include "engine/KWDrums.h"

#include "data/tracks/Tracks.h"
#include "engine/KWNoteSchedule.h"

#include <algorithm>

namespace ormund {

void KWDrums::tick(const KWClock::Out& clock, const KWLanes::Out& lanes, const KWNotes::Out& notes,
    KWNoteSchedule& schedule)
{
    const bool started = play.changed(clock.play);
    const bool audible =
        settings.enabled != 0 && notes.unmuted > 0 && (clock.play > 0 || clock.manualStep);
    const float samplesPerStep = clock.msPerStep * clock.samplesPerMs;
    for (size_t k = 0; k < KWMods::kTracks; ++k) {
        const bool stepped = count[k].changed(lanes.modCount[k]);
        if (!(stepped || started) || !audible || settings.drum[k] == 0 || settings.on[k] == 0)
            continue;
        const float value = tracks.mods[k].step(lanes.mods[k]);
        if (!(value > 0))
            continue;
        const int velocity = std::clamp(static_cast<int>(value * 127.0f + 0.5f), 1, 127);
        const float gate = static_cast<float>(settings.drumGate[k]) * 0.01f;
        const float length = gate * samplesPerStep * lanes.modStepLength[k];
        schedule.addNote(0, settings.drumNote[k], velocity,
            std::max(static_cast<uint32_t>(length), 1u), settings.channel[k],
            settings.toSynth[k] != 0);
    }
}

} // namespace ormund
