// The notes of a pattern as a musician writes them, before they become rows of steps.
#pragma once

#include "presets/BankWords.h"

#include <array>
#include <functional>

namespace ormund {

// A token a step; '|' between bars counts nothing:
//   A2        a note; A2! loud, A2? a ghost, A2' short, A2:m7 a chord (A2:m7!' all of it)
//   .         a rest
//   -         the note before sounds on
struct ScoreNote {
    int degree = 0; // of the scale, from the key; may lie octaves away
    int length = 0; // steps; 0 is a rest
    int chord = 0;
    float velocity = 0; // 0: what the accents say
    bool isShort = false;
};

class Score {
public:
    static constexpr int kSteps = 32;
    // The degree of a MIDI note; throws where the scale has none.
    using DegreeOf = std::function<int(int note)>;

    // Fills from `first` on; a text that begins at the start and is shorter repeats.
    void write(const BankTokens& tokens, int first, const DegreeOf& degreeOf);
    bool isEmpty() const { return !isWritten; }

    // --- what makes one pattern out of another --------------------------------------------------
    void transpose(int degrees);
    void invert();           // mirrored at the key
    void reverse(int steps); // the last note first
    void rotate(int by, int steps);
    void thin(int every); // only every n-th note stays
    void rest(int first, int last);
    void shorten(int most); // no note longer than `most` steps
    // A digit a step in tenths, repeated; '.' keeps what the note says.
    void accent(const std::string& digits);

    const ScoreNote& at(int step) const { return notes.at(static_cast<size_t>(step)); }
    float velocityAt(int step) const;
    int longest() const; // steps, at least 1

private:
    // Cuts what would run past the next note or the end.
    void tidy();

    std::array<ScoreNote, kSteps> notes{};
    std::string accents = "7";
    bool isWritten = false;
};

} // namespace ormund
