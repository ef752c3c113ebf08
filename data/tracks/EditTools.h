// What the tool button of a lane does to its steps: the choice of the tool menu.
#pragma once

#include <cstdint>

namespace ormund {

class Tracks;
enum class EditTarget : uint8_t;

enum class EditTool : uint8_t {
    Euclid,   // as many steps as the number beside the menu, as even as they can be
    Thin,     // every second step that holds something is cleared
    Reverse,  // the last step first
    Mirror,   // the second half is the first one backwards
    Double,   // half as fast: every step twice, the first half of the loop
    Half,     // twice as fast: every second step, twice
    Humanise, // a little more or less, by chance
};

// Whether step `place` of `count` is one of `hits`; the first one always is.
constexpr bool euclidHit(int place, int hits, int count)
{
    return count > 0 && place * hits % count < hits;
}

// Applies the tool to the steps `from` to before `to` of the selected row. Of the performance lane
// only the lines of the shown page change. Any thread; allocates nothing.
void applyEditTool(Tracks& tracks, EditTarget target, int track, int from, int to);

} // namespace ormund
