// Which four frames of the loop bar's strip belong to which bar.
#pragma once

namespace ormund {

enum class LoopHue { Song, Pitch, Velocity, Gate, Performance, Modulation };

// Outside, left end, inside and right end follow each other from here.
constexpr int loopFrame(LoopHue hue) { return 4 * int(hue); }

} // namespace ormund
