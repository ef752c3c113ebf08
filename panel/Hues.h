// The hues of the parts of the panel, in their order in the strip of the loop bars.
#pragma once

#include <cstdint>

namespace ormund {

enum class Hue : uint8_t { Neutral, Pitch, Velocity, Gate, Performance, Modulation };

// Of the loop bars' strip: outside, left end, inside and right end follow each other from here.
constexpr int loopFrame(Hue hue) { return 4 * int(hue); }

} // namespace ormund
