// One instance with its editor in memory, under the scripted host, and what must hold of it at the
// end of every block.
#pragma once

#include "apps/host/ScriptedHost.h"
#include "editor/KWUniClientEditor.h"
#include "host/plugin/KWUniClient.h"
#include "view/offscreen/FrameUser.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace ormund {

class OffscreenWindow;

// What was seen, for the report.
struct SoakFigures {
    int64_t frames = 0;
    double seconds = 0; // of transport, stopped time included
    int64_t blocks = 0;
    int64_t notes = 0;
    int64_t messages = 0;
    int64_t positionChecks = 0;
    int64_t stepChecks = 0;
    double widestDrift = 0; // in control ticks
    double longestNote = 0; // seconds at the rate at which it began
    float loudest = 0;
};

class SoakRig {
public:
    SoakRig();
    ~SoakRig();
    SoakRig(const SoakRig&) = delete;
    SoakRig& operator=(const SoakRig&) = delete;

    // Plays on, in blocks of the present size. False once something did not hold; problem() says
    // what.
    bool play(double seconds);
    // Stops everything and waits for the longest note there is; then nothing may sound.
    bool fallSilent();

    void setBlock(int frames);
    void setRate(float hertz);
    void openEditor();
    void closeEditor();
    bool isEditorOpen() const { return user != nullptr; }

    ScriptedHost host;
    KWUniClient* engine = nullptr; // the host owns it
    std::unique_ptr<FrameUser> user;
    SoakFigures figures;
    bool playing = false; // the host's transport
    const std::string& problem() const { return found; }
    int sounding() const;

private:
    void fail(const std::string& text);
    bool listen();
    void checkPosition();
    void checkSteps();
    bool isStraight() const;

    struct Sounding {
        int64_t since = -1; // frame
        int64_t latest = 0; // the frame at which it must have ended
        float rate = 0;
    };
    std::array<Sounding, 16 * 128> notes{}; // by channel and note
    std::string found;
    KWUniClientEditor* editor = nullptr;
    float rate = 44100;
    int block = 512;
    double expected = 0;       // where the next block begins unless the host is moved
    int64_t evenFrames = 0;    // since the host last jumped
    double straightSince = -1; // beats rolled
    int straightSpeed = -1;
    float straightPattern = -1;
};

} // namespace ormund
