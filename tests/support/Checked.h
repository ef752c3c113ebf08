// Whether a checker of the compiler's watches this program; cmake/Ormund.cmake says so.
#pragma once

namespace ormund {

#ifdef ORMUND_CHECKED
inline constexpr bool kChecked = true;
#else
inline constexpr bool kChecked = false;
#endif

// How often a long test repeats itself: a tenth of it under a checker, which is ten times as slow.
constexpr int rounds(int full) { return kChecked ? (full + 9) / 10 : full; }

} // namespace ormund
