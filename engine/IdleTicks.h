// When a tick may be left out. Nearly all ticks fall between two steps and nothing comes from
// outside; such a tick would find every cell as it is and leave it so.
#pragma once

#include <concepts>

namespace ormund {

// What a stage of the tick must answer. The sequencer asks after two ticks in full whose inputs
// were equal: every setting, step, key, count, pattern, and the tempo. A stage that answers too few
// ticks costs time; one that answers too many misses what it should have done, which
// QuietTickTest.cpp finds: there a song plays beside one in which no tick is left out.
template <typename Stage>
concept CanIdle = requires(Stage& stage, const Stage& asked, int ticks, double place)
{
    // How many of the next ticks, up to `ticks`, would change no cell and send nothing, but for
    // cells that only count ticks. As long as the inputs stay equal.
    {
        asked.idleTicks(ticks)
        } -> std::same_as<int>;
    // Before each of them: whether the tick at this song position, read ahead, may be left out as
    // far as the stage follows something that is no counted change: the position, a mailbox, a
    // loop.
    {
        asked.isIdleAt(place)
        } -> std::same_as<bool>;
    // Instead of so many ticks, the last of them at `place`: the cells that count ticks go on.
    {
        stage.skipTicks(ticks, place)
        } -> std::same_as<void>;
};

// A stage of which nothing moves but by its inputs derives from this; what differs it hides.
struct MovesByInputsOnly {
    int idleTicks(int most) const { return most; }
    bool isIdleAt(double /*place*/) const { return true; }
    void skipTicks(int /*ticks*/, double /*place*/) { }
};

} // namespace ormund
