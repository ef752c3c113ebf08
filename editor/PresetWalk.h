// Walking through presets by ear: each is played at once, and nothing is final before the end.
#pragma once

#include "data/library/Presets.h"

#include <string>

namespace ormund {

class EditRecorder;
class KWUniClient;

// Screen thread. Between the first play() and keep() or giveUp() one gesture is open, so the whole
// walk is one level of the undo.
class PresetWalk {
public:
    PresetWalk(KWUniClient& ownEngine, EditRecorder& ownRecorder)
        : engine(ownEngine), recorder(ownRecorder)
    {
    }

    // Loads and, where the song stands still, starts it. False when the file cannot be loaded.
    bool play(const std::string& path);
    void keep();
    // Everything is as before the first play(), edits that were never saved too. A song that came
    // from the host meanwhile stays.
    void giveUp();
    bool isOn() const { return walking; }

private:
    void end();

    KWUniClient& engine;
    EditRecorder& recorder;
    Presets::Moment before;
    float reloads = 0; // as counted at the last play()
    bool walking = false;
    bool hasStarted = false; // the song, which stood still
};

} // namespace ormund
