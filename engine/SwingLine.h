// Swing for the counters of the step chain: a ring of their past values, an entry a tick.
#pragma once

#include "base/ZeroedArray.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ormund {

// The past of all four counters that swing. Audio thread, but for setRateRatio, which runs while no
// block does or inside a tick; it allocates nothing.
class SwingRing {
public:
    enum Line : size_t { Main, Looper, Retrigger, Slowdown, kLines };

    SwingRing();

    // Half of the longest step at the slowest tempo, in ticks, is 3675 at 44.1 kHz.
    void setRateRatio(float rateRatio);

    // The line's count of this tick.
    void put(Line line, float count)
    {
        float& place = pairs[line / 2][now][line % 2];
        if (place == count)
            return;
        place = count;
        effectsUsed = effectsUsed || line / 2 == Retrigger / 2;
    }
    // What the line's count was `delay` ticks before the one that is being written; 1 and up.
    float past(Line line, size_t delay) const
    {
        const size_t place = now >= delay ? now - delay : now + length - delay;
        return pairs[line / 2][place][line % 2];
    }
    size_t longestDelay() const { return length - 1; }
    void advance() { now = now + 1 < length ? now + 1 : 0; }
    // Whole ticks in which only the looper's count may be another than in the tick before:
    // `nextLooperCount()` gives it for one after the other.
    template <typename Counter>
    void repeat(int ticks, Counter nextLooperCount)
    {
        const size_t last = now > 0 ? now - 1 : length - 1;
        const float main = pairs[Main / 2][last][Main % 2];
        const Pair effects = pairs[Retrigger / 2][last];
        for (int i = 0; i < ticks; ++i) {
            pairs[Main / 2][now] = {main, nextLooperCount()};
            if (effectsUsed && pairs[Retrigger / 2][now] != effects)
                pairs[Retrigger / 2][now] = effects;
            advance();
        }
    }

private:
    using Pair = std::array<float, 2>;

    // As long as the highest rate asks for. The main count and the looper's always move; the pages
    // of the other two are not touched before one of them is used.
    std::array<ZeroedArray<Pair>, kLines / 2> pairs;
    bool effectsUsed = false; // retrigger or slowdown; before that their counts are all 0
    size_t length;
    size_t now = 0;
};

// One counter's swing. Even steps pass; odd ones are late by the delay while the amount is above 0.
// So the beat itself never moves.
class SwingLine {
public:
    SwingLine(SwingRing& allCounts, SwingRing::Line itsLine) : ring(allCounts), line(itsLine) { }

    // Enters `count`, the counter's value of this tick. `delay` in ticks.
    float tick(float count, float amount, int delay)
    {
        ring.put(line, count);
        const bool isLate = amount > 0 && delay > 0 && static_cast<int>(count) % 2 == 1;
        lateBy = isLate ? std::min(static_cast<size_t>(delay), ring.longestDelay()) : 0;
        entered = count;
        swung = isLate ? ring.past(line, lateBy) : count;
        return swung;
    }
    // How many ticks with the same arguments would give the same, up to `most`. Between two ticks
    // of the ring.
    int unchangedTicks(int most) const
    {
        size_t back = lateBy;
        int same = 0;
        for (; same < most && back > 0 && ring.past(line, back) == swung; ++same)
            --back;
        return back > 0 || entered != swung ? same : most;
    }

private:
    SwingRing& ring;
    SwingRing::Line line;
    size_t lateBy = 0; // ticks; 0: the step is not late
    float entered = 0; // the last tick's count
    float swung = 0;   // and what it gave
};

} // namespace ormund
