// The host's side of the effect interface while sound is running: one instance, a transport of its
// own or one that others share, messages in and out.
#pragma once

#include "apps/host/EventList.h"
#include "apps/host/HostedEffect.h"
#include "apps/host/HostTransport.h"
#include "apps/ormund/SongSync.h"
#include "base/Crossing.h"
#include "base/Product.h"
#include "base/Ring.h"

#include <array>
#include <cstdint>
#include <functional>

namespace ormund {

// Three threads meet here: the screen's, one audio thread, and whichever asks for the shown values.
// Nothing on the audio thread allocates, locks or enters the kernel.
class LiveHost final : public HostedEffect {
public:
    struct Message {
        std::array<uint8_t, 3> bytes{};
        int size = 3; // of `bytes`, 1 to 3
    };
    // Where a block's messages go. The audio thread, inside run(), frames in rising order.
    class MidiOut {
    public:
        virtual void midiOut(int frame, const Message& message) = 0;

    protected:
        ~MidiOut() = default;
    };
    // A transport that several programs share.
    using SharedPlace = ormund::SharedPlace;

    static constexpr double kLowestTempo = 45; // what the plug-in keeps to
    static constexpr double kHighestTempo = 499;
    static constexpr int kBeatsPerBar = 4;

    LiveHost() { product = product::kName; }
    ~LiveHost() { close(); }

    // --- the screen's thread --------------------------------------------------------------------
    bool start(Entry entry, double tempo);
    // Before the first block of a driver; no block runs meanwhile.
    void setFormat(float sampleRate, int largestBlock); // Hz, frames
    float sampleRate() const { return rate; }           // Hz
    int largestBlock() const { return block; }          // frames
    void play(bool on) { commands.push({on ? Command::Play : Command::Stop, 0, 0}); }
    void locate(double beat) { commands.push({Command::Locate, beat, 0}); }
    void setTempo(double beatsPerMinute); // limited to what the plug-in keeps to
    // An empty range ends the cycle.
    void setCycle(double startBeat, double endBeat);
    // What the last block had.
    bool isPlaying() const { return shownPlaying != 0; }
    double position() const { return shownBeat; } // quarter notes
    double tempo() const { return shownTempo; }
    int64_t blocksRun() const { return shownBlocks; }
    // The next block ends every note that sounds; from then on there is silence.
    void endNotes() { ending = 1; }
    bool hasEndedNotes() const { return ended != 0; }
    SongSync& sync() { return songSync; }
    const SongSync& sync() const { return songSync; }

    // The plug-in wants its window that large, device pixels. Called on the screen's thread.
    std::function<void(int width, int height)> sizeWindow;

    // --- the audio thread -----------------------------------------------------------------------
    // For the block to come. Of the system messages those of a clock count.
    void send(const uint8_t* bytes, size_t size, int frame);
    // Takes in what the screen's thread asked for; run() does it too.
    void takeCommands();
    double ownTempo() const { return wantedTempo; }
    // At most the largest block of setFormat(). `place` is the shared transport, where there is
    // one.
    void run(
        float* left, float* right, int frames, MidiOut& out, const SharedPlace* place = nullptr);

private:
    struct Command {
        enum Kind : uint8_t { Play, Stop, Locate, Tempo, Cycle } kind;
        double first;
        double second;
    };
    static constexpr size_t kCommands = 64;
    static constexpr size_t kMostMessages = 512; // into one block

    VstIntPtr answer(
        VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) override;
    void follow(const SharedPlace& place);
    void pass(const VstEvents& list);
    void passClocks(int lastFrame);
    void noteSounding(const Message& message);
    void stopNotes(MidiOut& out);

    Ring<Command, kCommands> commands; // screen to audio
    Crossing<double> shownBeat = 0.0;
    Crossing<double> shownTempo = 120.0;
    Crossing<int32_t> shownPlaying = 0;
    Crossing<int64_t> shownBlocks = 0;
    Crossing<int32_t> ending = 0;
    Crossing<int32_t> ended = 0;

    // Audio thread.
    HostTransport transport;
    SongSync songSync;
    std::span<const ClockSender::Event> clocks; // of this block, still to be sent
    double wantedTempo = 120;
    double cycleStart = 0;
    double cycleEnd = 0;
    EventList incoming{kMostMessages};
    MidiOut* sink = nullptr;                  // during run()
    std::array<uint8_t, 16 * 128> sounding{}; // note ons without their end, by channel and note
};

// Where a position that runs straight on stands inside a cycle.
double foldIntoCycle(double beat, double start, double end);

} // namespace ormund
