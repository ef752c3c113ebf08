// Who is measured, and with what in hand.
#pragma once

#include "bench/host/Instrument.h"

#include <functional>
#include <string>
#include <vector>

namespace ormund {

enum class Role {
    Whole,     // ours: sequencer, eight voices, delay
    Sequencer, // plays notes, makes no sound
    Synth,     // comparable: oscillators through a filter
    OtherSynth,
    Floor,
};

struct Entrant {
    std::string name;
    std::string does; // a voice, and what comes behind it
    Role role;
    int voices; // that sound
    bool holdsNotes;
    std::function<std::unique_ptr<Instrument>()> load;
};

// In the order of the table. `module` is the path of our own.
std::vector<Entrant> lineup(const std::string& module);

} // namespace ormund
