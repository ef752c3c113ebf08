// Where the round knobs of the strips have their arcs and caps, for the one who draws the strip and
// the one who lightens the cap under the mouse. Panel pixels from the frame's corner.
#pragma once

struct KnobShape {
    int bitmap;
    double x, y;   // the middle
    double radius; // of the arc's middle line

    static constexpr double kGap = 3.2; // from the arc's middle line to the cap
    constexpr double capRadius() const { return radius - kGap; }
};

inline constexpr KnobShape kKnobBesidePad{1011, 18.5, 18.5, 15};
inline constexpr KnobShape kSmallKnob{1065, 10.5, 10.5, 8.6};
// Its label is printed on the page, in the lowest 8 pixels of the same rectangle. The second half
// of its frames has arcs that grow from the top, for values that go both ways.
inline constexpr KnobShape kSynthKnob{1103, 20.5, 17, 14.6};

inline constexpr KnobShape kKnobShapes[] = {kKnobBesidePad, kSmallKnob, kSynthKnob};
