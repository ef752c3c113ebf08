// The strips of the skin: a row per bitmap, with its frames' size and what draws a frame.
#pragma once

#include <span>

namespace ormund {

class Paint;

inline constexpr int kFirstBitmap = 1000;
inline constexpr int kLastBitmap = 1147;

struct SkinRow {
    int number;
    int frameWidth; // panel pixels
    int frameHeight;
    int frames; // one below the other
    const char* what;
    void (*draw)(Paint& paint, int frame);

    constexpr int width() const { return frameWidth; }
    constexpr int height() const { return frameHeight * frames; }
};

// In the order of the numbers, without a gap.
std::span<const SkinRow> skinTable();
const SkinRow& skinRow(int number);

} // namespace ormund
