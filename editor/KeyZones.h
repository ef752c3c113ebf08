#pragma once

#include "controls/KWPolyObjectView.h"
#include "view/Geometry.h"

namespace ormund {

// The piano of the panel: eight octaves of narrow keys, so that every key zone shows at once, and
// what is printed on the keys of a keyboard mode.
constexpr int kKeyboardOctaves = 8;
constexpr int kKeyboardBase = 24; // lowest note shown
constexpr int kWhiteKeyWidth = 12;
constexpr int kBlackKeyWidth = 8;
constexpr int kBlackKeyHeight = 30;

// Black key 0 to 4 (C#, D#, F#, G#, A#) of an octave, from the octave's corner.
constexpr CRect blackKeyRect(int key)
{
    constexpr int kWhiteBefore[5] = {1, 2, 4, 5, 6};
    const int left = kWhiteBefore[key] * kWhiteKeyWidth - kBlackKeyWidth / 2;
    return {left, 0, left + kBlackKeyWidth, kBlackKeyHeight};
}

constexpr bool isBlackKey(int note)
{
    return ((0x54A >> (note % 12)) & 1) != 0; // C#, D#, F#, G#, A#
}

// The rectangle of a note's key, from the keyboard's corner. `height` is a white key's.
constexpr CRect keyRect(int note, int height)
{
    constexpr int kWhite[12] = {0, 0, 1, 1, 2, 3, 3, 4, 4, 5, 5, 6};
    constexpr int kBlack[12] = {-1, 0, -1, 1, -1, -1, 2, -1, 3, -1, 4, -1};
    const int octave = (note - kKeyboardBase) / 12;
    const int inOctave = note % 12;
    CRect rect = isBlackKey(note) ? blackKeyRect(kBlack[inOctave])
                                  : CRect{kWhite[inOctave] * kWhiteKeyWidth, 0,
                                      (kWhite[inOctave] + 1) * kWhiteKeyWidth, height};
    return rect.offset(octave * 7 * kWhiteKeyWidth, 0);
}

// The marks over the keys of keyboard mode 0 or 1, for a strip of frames `height` high, when the
// keys count as `shift` semitones higher.
KWPolyObjectSet makeKeyZones(int keyMode, int height, int shift = 0);

} // namespace ormund
