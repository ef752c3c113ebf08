#include "data/music/ArpeggioTable.h"

#include <algorithm>
#include <array>

namespace ormund {

namespace {

constexpr std::array<std::array<float, kSubSteps>, kRhythms> kGates = {{
    {1.00f, 0.80f, 0.90f, 0.70f}, // all four
    {1.00f, 0.80f, 0.90f, 0.70f}, // three to a step: the fourth is never reached
    {1.00f, 0.00f, 0.85f, 0.75f}, // gallop
    {1.00f, 0.00f, 0.85f, 0.00f}, // halves
    {1.00f, 0.85f, 0.00f, 0.75f}, // pushed
    {1.00f, 0.70f, 0.90f, 0.65f}, // back and forth
}};

// The second half of the walk, by rhythm. The list has one rhythm more than the track can choose.
constexpr std::array<int, kRhythms + 1> kThirdNote = {2, 2, 1, 1, 1, 0, 0};
constexpr std::array<int, kRhythms + 1> kFourthNote = {3, 3, 2, 0, 0, 1, 1};

} // namespace

float arpeggioGate(int row, int sub)
{
    return kGates[static_cast<size_t>(std::clamp(row, 1, kRhythms) - 1)]
                 [static_cast<size_t>(std::clamp(sub, 0, kSubSteps - 1))];
}

int arpeggioSelect(int sub, int rhythm)
{
    const auto column = static_cast<size_t>(std::clamp(rhythm, 0, kRhythms));
    if (sub <= 1)
        return std::max(sub, 0);
    return sub == 2 ? kThirdNote[column] : kFourthNote[column];
}

} // namespace ormund
