// What a player has heard: MIDI events with their frames, and sound.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ormund {

struct MidiOut {
    int64_t frame = 0; // since the player's start
    int status = 0;
    int data1 = 0;
    int data2 = 0;
    bool isNoteOn() const { return (status & 0xF0) == 0x90 && data2 > 0; }
    bool isNoteOff() const { return (status & 0xF0) == 0x90 && data2 == 0; }
    friend bool operator==(const MidiOut&, const MidiOut&) = default;
};

class Tracks;

// Makes every step of the current row sound: pitch 0, velocity 0.8, switched on, gate 0.1.
void writePlainNotes(Tracks& tracks);

class PlayedEvents {
public:
    const std::vector<MidiOut>& events() const { return out; }
    std::vector<MidiOut> noteOns() const;
    void forget() { out.clear(); }
    // One line an event: "tick 345  90 3c 64".
    std::string trace() const;
    int soundingNotes() const; // note ons without their end

    void keepAudio(bool keep) { keepsAudio = keep; }
    const std::vector<float>& left() const { return leftOut; }
    const std::vector<float>& right() const { return rightOut; }
    void forgetAudio()
    {
        leftOut.clear();
        rightOut.clear();
    }

protected:
    void keepSound(const float* left, const float* right, int frames);
    // Ticks of the first `count` notes.
    std::vector<int> ticksOf(int count) const;

    std::vector<MidiOut> out;

private:
    std::vector<float> leftOut;
    std::vector<float> rightOut;
    bool keepsAudio = false;
};

} // namespace ormund
