#include "editor/PageGates.h"

#include "panel/ControlCatalogue.h"

namespace ormund {

bool PageGates::show(const Pages& wanted)
{
    const bool changed = !(wanted == pages) || !bits.test(kAlways);
    pages = wanted;
    bits.set(kAlways, true);
    bits.set(kSynthPage, pages.synth);
    bits.set(kSettingsPage, !pages.synth);
    bits.set(kSeparateLoops, pages.separateLoops);
    bits.set(kKeyMode0, pages.keyMode == 0);
    bits.set(kKeyMode1, pages.keyMode != 0);
    bits.set(kStepsPage, !pages.rules);
    bits.set(kRulesPage, pages.rules);
    for (int track = 0; track < kModTracks; ++track) {
        const bool chosen = track == pages.modTrack;
        bits.set(kTrackPages + track, chosen);
        bits.set(kTrackControllers + track, chosen && !pages.drum);
        bits.set(kTrackDrums + track, chosen && pages.drum);
        bits.set(kTrackLoops + track, chosen && pages.separateLoops);
    }
    return changed;
}

} // namespace ormund
