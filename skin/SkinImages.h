// The drawn skin as it is embedded: each bitmap at the scales 1, 1.5, 2 and 3, a long strip in
// parts of some whole frames. A part is the rows of its pixels (ARGB, the colours multiplied by
// alpha, in the machine's byte order) in one frame of Zstandard.
#pragma once

#include <cstddef>
#include <span>

namespace ormund {

struct SkinSize {
    int number;     // 1000 to 1137
    int frameWidth; // panel pixels
    int frameHeight;
    int frames; // one below the other

    constexpr int height() const { return frameHeight * frames; }
};

// Null for a number without a bitmap.
const SkinSize* skinSize(int number);
// `halves` is the scale times two: 2, 3, 4 or 6. All parts but the last have as many frames; 0 for
// what there is not.
int skinFramesOfPart(int number, int halves);
// The part with this frame. Empty for what there is not.
std::span<const std::byte> skinPart(int number, int halves, int frame);
// Of all images together.
size_t skinPackSize();

} // namespace ormund
