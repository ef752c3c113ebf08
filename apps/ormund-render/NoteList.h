// Messages as what a listener hears: notes with a length, controllers as curves.
#pragma once

#include "apps/host/ScriptedHost.h"

#include <string>
#include <vector>

namespace ormund {

struct PlayedNote {
    double start = 0; // quarter notes
    double end = 0;
    int pitch = 0;    // MIDI note
    int velocity = 0; // 1 to 127
};

// Pairs note ons with their note offs. A note that is struck again ends there; one without an end
// lasts until `end`.
std::vector<PlayedNote> notesOf(const std::vector<ScriptedHost::Event>& events, double end);

struct ControlPoint {
    double beat;
    float value; // 0 to 1
};

struct ControlCurve {
    std::string label;
    bool isBend = false; // rests in the middle
    std::vector<ControlPoint> points;
};

// One curve for each controller, the pressure and the pitch bend that occur, bend first, then by
// number.
std::vector<ControlCurve> curvesOf(const std::vector<ScriptedHost::Event>& events);

} // namespace ormund
