// The icons of the panel, each on a grid of 12 by 12 whose middle is (0, 0).
#pragma once

#include "skin/draw/Paint.h"

namespace ormund {

enum class Icon {
    // editing
    Copy,
    Paste,
    Clear,
    Random,
    Mutate,
    ShiftLeft,
    ShiftRight,
    ShiftUp,
    ShiftDown,
    Previous,
    Next,
    // order of playing
    Forward,
    Backward,
    Shuffle,
    Each2nd,
    Each3rd,
    Each4th,
    // actions
    Gate,
    VelocityGate,
    Looper,
    Slowdown,
    Retrigger,
    HalfSpeed,
    Step,
    Mute,
    // the usual signs
    Play,
    Stop,
    Record,
    Lock,
    Power,
    ToSynth,
    Check,
    DropDown,
    MidiDrag,
    Roll,
};

// Draws the icon centred on (cx, cy), `size` pixels wide, with lines of `thickness` pixels.
void drawIcon(Paint& paint, Icon icon, double cx, double cy, double size, const Ink& colour,
    double thickness = 1.25);

} // namespace ormund
