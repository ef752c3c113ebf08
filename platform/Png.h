// PNG files in memory. Any thread; no state.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ormund {

// Pixels row by row without gaps, 0xAARRGGBB in the machine's byte order, colours multiplied by
// alpha.
struct PixelImage {
    int width = 0;
    int height = 0;
    std::vector<uint32_t> pixels;

    bool isEmpty() const { return width == 0 || height == 0; }
};

// The largest width or height that is taken; a panel at three times its size has room.
inline constexpr int kMaxPngSide = 16384;

// False, and `image` empty, for anything that is not a whole PNG within kMaxPngSide.
bool decodePng(std::span<const uint8_t> bytes, PixelImage& image);
// Empty when the image is.
std::vector<uint8_t> encodePng(const PixelImage& image);

} // namespace ormund
