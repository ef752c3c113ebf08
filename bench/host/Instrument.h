// One plug-in instance in a host that does nothing but run blocks, so that a clock round process()
// sees the plug-in alone.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace ormund {

struct Transport {
    double beat = 0;    // quarter notes at the block's first frame
    double tempo = 120; // beats per minute
    bool rolling = false;
};

class Instrument {
public:
    static constexpr int kRate = 44100;     // Hz
    static constexpr int kMostFrames = 512; // a block

    Instrument() = default;
    Instrument(const Instrument&) = delete;
    Instrument& operator=(const Instrument&) = delete;
    virtual ~Instrument() = default;

    // For the first frame of the next block.
    virtual void send(int status, int data1, int data2) = 0;
    // What a host has to write down before a block.
    virtual void prepare(const Transport& transport, int frames) = 0;
    // The plug-in's own work. `frames` as prepared.
    virtual void process(int frames) = 0;
    // Messages that came out of all blocks so far.
    virtual int64_t messagesOut() const = 0;

    float left[kMostFrames]{};
    float right[kMostFrames]{};
};

// Null when the module is not there or makes no instance.
std::unique_ptr<Instrument> loadVst2(const std::string& path, const std::string& state = {});
std::unique_ptr<Instrument> loadLv2(const std::string& uri);
// The hand-written loop of eight voices and the delay, as if it were a plug-in.
std::unique_ptr<Instrument> makeFloor();
// The floor's filters alone; null where the processor has no AVX2.
std::unique_ptr<Instrument> makeFilters();

// The state of our own plug-in that is measured: a busy song, all eight voices sounding.
std::string busyState(bool withSynth);

} // namespace ormund
