// A host for one plug-in instance, strict in what it does: it loads a module, sets rate and block
// size before it starts, hands events over before the block that they belong to, reports one
// rolling transport, and notes everything that comes back. The renderer and the tests drive the
// plug-in through it and through nothing else.
#pragma once

#include "apps/host/EventList.h"
#include "apps/host/HostedEffect.h"
#include "apps/host/HostTransport.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace ormund {

class ScriptedHost final : public HostedEffect {
public:
    struct Setup {
        float sampleRate = 44100.0f; // Hz
        int blockSize = 512;         // frames, at least 1
        double tempo = 120.0;        // beats per minute
        int beatsPerBar = 4;
    };
    // A message to or from the plug-in.
    struct Event {
        int64_t frame = 0; // since the first block
        double beat = 0;   // quarter notes rolled since the first block, stopped time included
        std::array<uint8_t, 3> bytes{};
        int block = 0; // the block in which it came
    };
    struct Automation {
        VstInt32 opcode; // audioMasterAutomate, audioMasterBeginEdit or audioMasterEndEdit
        VstInt32 index;
        float value;
    };

    ScriptedHost() = default;
    ~ScriptedHost() { close(); }

    // Loads the module, makes an instance, opens and starts it. False leaves the reason in error().
    bool load(const std::string& module, const Setup& setup);
    // The same for an instance that is made by a function of this program.
    bool attach(Entry entry, const Setup& setup);
    // Stops, gives the new rate, starts again, as a host must.
    void setSampleRate(float hertz);

    // --- transport: taken by the next block -----------------------------------------------------
    void start() { transport.start(); }
    void stop() { transport.stop(); }
    void locate(double beat) { transport.locate(beat); }
    void setTempo(double beatsPerMinute) { transport.setTempo(beatsPerMinute); }
    void setCycle(double startBeat, double endBeat) { transport.setCycle(startBeat, endBeat); }
    void clearCycle() { transport.clearCycle(); }
    double position() const { return transport.position(); } // quarter notes
    double rolled() const { return transport.rolled(); }     // quarter notes of all blocks so far
    double beatsPerFrame() const { return transport.beatsPerFrame(); }

    // A message for the block to come, `frame` from its start.
    void send(std::array<uint8_t, 3> bytes, int frame = 0);
    // Runs `frames` in blocks of the set size, the last one shorter. The output is added to `left`
    // and `right`; with `keepOutput` off only the last block's output stands there.
    void run(int64_t frames);
    // One block of any size up to the set one. Null outputs may be passed on for the right side.
    void runBlock(int frames, bool withRightOutput = true);

    // --- what came back -------------------------------------------------------------------------
    std::vector<Event> events;
    std::vector<float> left;
    std::vector<float> right;
    std::vector<Automation> automation;
    // What the plug-in did against the rules, one line each.
    std::vector<std::string> faults;
    int wantMidiCalls = 0;
    int wantedWidth = 0, wantedHeight = 0; // of the window, as wished last; pixels
    VstInt32 timeFilter = 0;               // of the last time request

    // --- how the host behaves -------------------------------------------------------------------
    bool keepOutput = true;
    bool givesTime = true;
    bool sizesWindows = true; // answers a wish for another size of the window with yes
    VstInt32 processLevel = kVstProcessLevelRealtime;
    HostTransport transport; // tests may bend its record before a block

private:
    VstIntPtr answer(
        VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) override;
    void takeEvents(const VstEvents* list);
    void fault(std::string line);

    bool inBlock = false;
    int blockFrames = 0;
    int blocks = 0;
    EventList pending;
    std::vector<float> leftBlock;
    std::vector<float> rightBlock;
};

} // namespace ormund
