// The sizes that a window is shown in, device pixels to a panel pixel, from small to large. The
// skin is drawn at each of them, and the panel is offered in them.
#pragma once

#include <array>
#include <cstddef>

namespace ormund {

inline constexpr std::array kDrawnScales = {0.75, 1.0, 1.25, 1.5, 1.75, 2.0, 3.0};
inline constexpr size_t kUnscaled = 1; // the place of 1 in it

} // namespace ormund
