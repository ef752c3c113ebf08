// The picture of a rendering: steps, notes, velocities, gate times, controllers and the wave over
// one time axis.
#pragma once

#include "apps/ormund-render/Rendering.h"

namespace ormund {

// Writes a PNG. Empty, or what went wrong.
std::string drawPianoRoll(const Rendering& rendering, const std::string& path);

} // namespace ormund
