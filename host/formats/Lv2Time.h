// Where an LV2 host says that the song is.
#pragma once

#include "host/formats/SongPlace.h"

#include <lv2/atom/atom.h>
#include <lv2/urid/urid.h>
#include <optional>

namespace ormund {

// Audio thread. A host reports a change, or every block; between two reports the song goes on by
// itself.
class Lv2Time {
public:
    Lv2Time(double hertz, const LV2_URID_Map& map);
    // The place that an event reports; empty where it is no report.
    std::optional<SongPlace> read(const LV2_Atom& event) const;
    void moveTo(const SongPlace& place) { now = place; }
    const SongPlace& place() const { return now; }
    void goOn(int frames) { now = now.after(frames, rate); }

private:
    // NaN where the object has no such number.
    double number(const LV2_Atom* atom) const;

    double rate;
    struct Urids {
        explicit Urids(const LV2_URID_Map& map);
        LV2_URID object, blank, intType, longType, floatType, doubleType;
        LV2_URID position, speed, bar, barBeat, beat, beatUnit, beatsPerBar, tempo, frame;
    };
    const Urids urids;
    SongPlace now;
};

} // namespace ormund
