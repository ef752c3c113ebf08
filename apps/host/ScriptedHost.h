// A host for one plug-in instance, strict in what it does: it loads a module, sets rate and block
// size before it starts, hands events over before the block that they belong to, reports one
// rolling transport, and notes everything that comes back. The renderer and the tests drive the
// plug-in through it and through nothing else.
#pragma once

#include "host/effect/EffectTypes.h"

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

class ScriptedHost {
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
    ~ScriptedHost();
    ScriptedHost(const ScriptedHost&) = delete;
    ScriptedHost& operator=(const ScriptedHost&) = delete;

    // Loads the module, makes an instance, opens and starts it. False leaves the reason in error().
    bool load(const std::string& module, const Setup& setup);
    // The same for an instance that is made by a function of this program.
    bool attach(AEffect* (*entry)(audioMasterCallback), const Setup& setup);
    // Stops and closes the instance; the module goes with the host. The destructor calls it.
    void close();
    const std::string& error() const { return problem; }

    AEffect* effect() { return instance; }
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
        void* ptr = nullptr, float opt = 0);
    // An answer in text, such as effGetParamName; cut at 255 bytes.
    std::string text(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0);
    // Stops, gives the new rate, starts again, as a host must.
    void setSampleRate(float hertz);

    // --- transport: taken by the next block -----------------------------------------------------
    void start() { playing = true; }
    void stop() { playing = false; }
    void locate(double beat) { time.ppqPos = beat; }
    void setTempo(double beatsPerMinute) { time.tempo = beatsPerMinute; }
    void setCycle(double startBeat, double endBeat);
    void clearCycle() { cycling = false; }
    double position() const { return time.ppqPos; } // quarter notes
    double rolled() const { return rolledBeats; }   // quarter notes of all blocks so far
    double beatsPerFrame() const { return time.tempo / 60.0 / setup.sampleRate; }

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
    VstInt32 timeFilter = 0; // of the last time request

    // --- how the host behaves -------------------------------------------------------------------
    bool keepOutput = true;
    bool givesTime = true;
    VstInt32 processLevel = kVstProcessLevelRealtime;
    VstTimeInfo time{}; // tests may bend it before a block

private:
    static VstIntPtr callback(AEffect*, VstInt32, VstInt32, VstIntPtr, void*, float);
    VstIntPtr answer(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);
    bool begin(AEffect* (*entry)(audioMasterCallback), const Setup& wanted);
    void takeEvents(const VstEvents* list);
    void deliverEvents();
    void refreshTime();
    void rollOn(int frames);
    void fault(std::string line);

    void* module = nullptr;
    AEffect* instance = nullptr;
    Setup setup;
    std::string problem;
    // Positions are counted from the last change of tempo or place, not summed block by block, so
    // that they do not depend on the block size.
    struct Anchor {
        int64_t frame = 0;
        double rolled = 0;
        double position = 0;
        double tempo = 0;
        double expected = 0; // where the transport should stand now
    };
    Anchor anchor;
    bool playing = false;
    bool wasPlaying = false;
    bool cycling = false;
    bool inBlock = false;
    int blockFrames = 0;
    int blocks = 0;
    int64_t framesRun = 0;
    double rolledBeats = 0;
    std::vector<VstMidiEvent> pending;
    std::vector<unsigned char> pendingList; // a VstEvents with room for all of them
    std::vector<float> leftBlock;
    std::vector<float> rightBlock;
};
