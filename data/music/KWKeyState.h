// What the on-screen keyboard and the engine share: the held notes, each note's class, and the
// slots in which a click reaches the engine.
#pragma once

#include "base/Crossing.h"

#include <array>
#include <cstdint>

namespace ormund {

// The screen posts clicks and reads notes and classes; the audio thread takes the clicks and writes
// the notes and classes.
class KWKeyState {
public:
    static constexpr int kNotes = 128;
    static constexpr int kWords = kNotes / 32;

    void setNote(int note, bool on)
    {
        if (!isNote(note))
            return;
        Crossing<uint32_t>& word = noteWords[static_cast<size_t>(note / 32)];
        const uint32_t bit = 1u << (note % 32);
        word = on ? word | bit : word & ~bit;
    }
    // False for what is no MIDI note.
    bool hasNote(int note) const
    {
        return isNote(note) && (noteWords[static_cast<size_t>(note / 32)] >> (note % 32) & 1u) != 0;
    }
    void clearNotes() { setWords({}); }
    // Bit n % 32 of word n / 32 is note n.
    std::array<uint32_t, kWords> words() const
    {
        std::array<uint32_t, kWords> copy;
        for (size_t i = 0; i < copy.size(); ++i)
            copy[i] = noteWords[i];
        return copy;
    }
    void setWords(const std::array<uint32_t, kWords>& words)
    {
        for (size_t i = 0; i < words.size(); ++i)
            noteWords[i] = words[i];
    }

    // The class picks the row of frames in which a key is drawn.
    void setClass(int note, int keyClass)
    {
        if (isNote(note))
            classes[static_cast<size_t>(note)] = static_cast<uint8_t>(keyClass);
    }
    int classOf(int note) const
    {
        return isNote(note) ? classes[static_cast<size_t>(note)].load() : 0;
    }

    Mailbox noteOn; // a note, posted after its velocity
    Mailbox noteOff;
    Crossing<int32_t> noteOnVelocity = 0; // 27 to 127
    Crossing<int32_t> noteOffVelocity = 0;

private:
    static constexpr bool isNote(int note) { return note >= 0 && note < kNotes; }

    std::array<Crossing<uint32_t>, kWords> noteWords{};
    std::array<Crossing<uint8_t>, kNotes> classes{};
};

} // namespace ormund
