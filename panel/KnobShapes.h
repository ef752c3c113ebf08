// Where the round knobs of the strips have their arcs and caps, and the lists their rows, for the
// one who draws the strip and the one who knows what is under the mouse. Panel pixels from the
// frame's corner.
#pragma once

namespace ormund {

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

// A slider whose frames are rows of a list, numbered from the lowest one up. A click takes a row.
struct KnobRows {
    int bitmap;
    int height; // of a row
    int end;    // below the lowest row
    constexpr int above(int row) const { return end - height * (row + 1); }
};

inline constexpr KnobRows kModTrackList{1061, 10, 85};

inline constexpr KnobShape kKnobShapes[] = {kKnobBesidePad, kSmallKnob, kSynthKnob};

} // namespace ormund
