// Whether a checker of the compiler's watches this program.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define ORMUND_ADDRESS_CHECKED
#elif defined(__SANITIZE_THREAD__)
#define ORMUND_THREAD_CHECKED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORMUND_ADDRESS_CHECKED
#elif __has_feature(thread_sanitizer)
#define ORMUND_THREAD_CHECKED
#elif __has_feature(realtime_sanitizer)
#define ORMUND_REALTIME_CHECKED
#endif
#endif

#if defined(ORMUND_ADDRESS_CHECKED) || defined(ORMUND_THREAD_CHECKED)                              \
    || defined(ORMUND_REALTIME_CHECKED)
#define ORMUND_CHECKED
inline constexpr bool kChecked = true;
#else
inline constexpr bool kChecked = false;
#endif

// How often a long test repeats itself: a tenth of it under a checker, which is ten times as slow.
constexpr int rounds(int full) { return kChecked ? (full + 9) / 10 : full; }
