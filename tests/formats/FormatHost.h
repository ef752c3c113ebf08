// A small host for one instance of a format, driven through the format's own C interface.
#pragma once

#include "tests/support/Player.h"
#include "tests/support/TransportScript.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ormund {

class FormatHost {
public:
    static constexpr double kRate = 44100;
    static constexpr int kMostBlock = 4096;

    // What the editor reported to the host. Parameter 0 is the bypass; 1 to 46 are the engine's.
    struct Edit {
        enum Kind { Begin, Value, End } kind;
        int index;
        float value;
        bool operator==(const Edit&) const = default;
    };

    virtual ~FormatHost() = default;
    // For the next block. The bypass is on from 0.5.
    virtual void setParameter(int index, float value) = 0;
    // `at` frames into the next block.
    virtual void automate(int /*index*/, float /*value*/, int /*at*/) { }
    virtual std::string textOf(int /*index*/, float /*value*/) { return {}; }
    virtual std::optional<float> valueOf(int /*index*/, const std::string& /*text*/) { return {}; }
    // All that the format keeps, as it keeps it; false where the plug-in refuses it.
    virtual std::string saveBytes() { return {}; }
    virtual bool loadBytes(const std::string& /*bytes*/) { return false; }
    virtual int64_t tail() { return 0; } // frames; 0 where the format has none
    virtual std::string midiPortName(bool isInput) = 0;
    virtual std::string chunkText() = 0; // empty where the format kept none
    virtual void restoreChunk(const std::string& text) = 0;

    // `parent` is an X11 window number.
    virtual bool openEditor(unsigned long parent) = 0;
    virtual void idleEditor() = 0;
    virtual void closeEditor() = 0;
    // What a user drags the window to. False where the format leaves no choice to the host.
    virtual bool dragTo(int /*width*/, int /*height*/) { return false; }

    void start(double from)
    {
        beat = from;
        playing = true;
    }
    void send(int status, int data1, int data2, int at)
    {
        pending.push_back({at, status, data1, data2});
    }
    // Plays on; a loop jumps at a block's start.
    void play(int64_t frames, int block = 512, double loopEnd = 1e9);

    // One block, as the script gives it.
    void play(const ReportedBlock& block);

    // A block of no frames.
    void call() { runBlock(0); }
    // The range that the host loops, which it reports with each block.
    void loop(double from, double to)
    {
        loopFrom = from;
        loopTo = to;
    }
    // Plays on and jumps inside a block where the loop ends, without cutting the block.
    void playLoop(int64_t frames, int block);

    std::vector<MidiOut> events;
    std::vector<float> left;
    std::vector<float> right;
    std::vector<Edit> edits;
    size_t piece = 1 << 20; // the most bytes of a state that are taken or given at once
    int markedDirty = 0;    // how often the host was notified of an edit
    int width = 0;          // what the editor asked for last
    int height = 0;
    int64_t played() const { return frame; } // frames
    int beatsPerBar = 4;
    int beatType = 4;

protected:
    // What CLAP and VST3 keep, with another chunk in it and no parameters.
    static std::string onlyChunk(const std::string& text);
    virtual void runBlock(int count) = 0;

    double tempo = 120;
    double beat = 0;
    double loopFrom = 0;
    double loopTo = 0; // no loop where it is no range
    bool playing = false;
    int64_t frame = 0;
    std::vector<MidiOut> pending; // frames within the block
    float leftBlock[kMostBlock]{};
    float rightBlock[kMostBlock]{};
};

std::unique_ptr<FormatHost> makeClapHost();
std::unique_ptr<FormatHost> makeLv2Host();
std::unique_ptr<FormatHost> makeVst3Host();

} // namespace ormund
