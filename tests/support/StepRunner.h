// Plays a plain song under scripted transports, in a plug-in behind the effect interface, and keeps
// which step sounded when. For tests.
#pragma once

#include "apps/host/ScriptedHost.h"
#include "tests/support/TransportScript.h"

#include <string>

namespace ormund {

class StepRunner {
public:
    // A module's path, or empty for the engine of this program.
    explicit StepRunner(std::string modulePath = {}) : module(std::move(modulePath)) { }

    std::vector<SoundedStep> play(
        double sampleRate, int speedIndex, const std::vector<ReportedBlock>& blocks);
    // A script against the model.
    StepFaults check(TransportScript& script, int size = 0);
    const std::string& error() const { return problem; }

private:
    std::string module;
    std::string problem;
};

// The state of the plain song: step k of the first 16 has pitch k above the root, one note each.
std::vector<char> plainSong(int speedIndex);
// The step that plays this note there.
int plainSongStep(int note);

} // namespace ormund
