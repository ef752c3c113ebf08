#include "skin/SkinImages.h"

#include "view/DrawnScales.h"

namespace ormund {

extern "C" {
extern const std::byte ormundSkinPack[];
extern const std::byte ormundSkinPackEnd[];
}

namespace {

struct Image {
    size_t firstPart;
    int framesOfPart;
};

struct Entry {
    SkinSize size;
    Image images[kDrawnScales.size()];
};

constexpr Entry kEntries[] = {
#include "SkinPack.inc"
};

// Where each part begins, and last where the pack ends.
constexpr size_t kPartOffsets[] = {
#include "SkinParts.inc"
};
constexpr int kCount = int(std::size(kEntries));

const Entry* entryOf(int number)
{
    const int index = number - kEntries[0].size.number;
    return index >= 0 && index < kCount ? &kEntries[index] : nullptr;
}

const Image* imageOf(int number, size_t scalePlace)
{
    const Entry* entry = entryOf(number);
    return entry && scalePlace < kDrawnScales.size() ? &entry->images[scalePlace] : nullptr;
}

} // namespace

const SkinSize* skinSize(int number)
{
    const Entry* entry = entryOf(number);
    return entry ? &entry->size : nullptr;
}

int skinFramesOfPart(int number, size_t scalePlace)
{
    const Image* image = imageOf(number, scalePlace);
    return image ? image->framesOfPart : 0;
}

std::span<const std::byte> skinPart(int number, size_t scalePlace, int frame)
{
    const Image* image = imageOf(number, scalePlace);
    if (!image || frame < 0 || frame >= skinSize(number)->frames)
        return {};
    const size_t part = image->firstPart + size_t(frame / image->framesOfPart);
    return {ormundSkinPack + kPartOffsets[part], kPartOffsets[part + 1] - kPartOffsets[part]};
}

size_t skinPackSize() { return size_t(ormundSkinPackEnd - ormundSkinPack); }

} // namespace ormund
