// The drawn skin as it is embedded: each bitmap at each of kDrawnScales, a long strip in parts
// of some whole frames. A part is the rows of its pixels (ARGB, the colours multiplied by
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
// `scalePlace` is that of the scale in kDrawnScales. All parts but the last have as many frames; 0
// for what there is not.
int skinFramesOfPart(int number, size_t scalePlace);
// The part with this frame. Empty for what there is not.
std::span<const std::byte> skinPart(int number, size_t scalePlace, int frame);
// Of all images together.
size_t skinPackSize();

} // namespace ormund
