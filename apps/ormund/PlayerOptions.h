// What the user asks of the program on the command line.
#pragma once

#include "apps/ormund/AudioDriver.h"

#include <optional>
#include <string>

namespace ormund {

struct PlayerOptions {
    std::string file; // kwe, kws or kwm
    SoundWishes sound;
    std::optional<double> tempo; // beats per minute; else 120, and what a preset brings
    Leader leader = Leader::Jack;
    bool sendClock = false;
    bool play = false;
    bool hasWindow = true;
    bool isFresh = false; // the last song stays away
    bool listDevices = false;
};

// Fills `options`. Answers the exit code when the program is to end at once (help or a mistake,
// both printed), nothing when it is to go on.
std::optional<int> parsePlayerOptions(int count, char** arguments, PlayerOptions& options);

} // namespace ormund
