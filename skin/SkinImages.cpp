#include "skin/SkinImages.h"

#include <array>

extern "C" {
extern const std::byte ormundSkinPack[];
extern const std::byte ormundSkinPackEnd[];
}

namespace {

struct Image {
    size_t offset;
    size_t size;
};

struct Entry {
    SkinSize size;
    Image images[4];
};

constexpr Entry kEntries[] = {
#include "SkinPack.inc"
};
constexpr int kCount = int(std::size(kEntries));
constexpr std::array<int, 4> kHalves{2, 3, 4, 6};

const Entry* entryOf(int number)
{
    const int index = number - kEntries[0].size.number;
    return index >= 0 && index < kCount ? &kEntries[index] : nullptr;
}

} // namespace

const SkinSize* skinSize(int number)
{
    const Entry* entry = entryOf(number);
    return entry ? &entry->size : nullptr;
}

std::span<const std::byte> skinPng(int number, int halves)
{
    const Entry* entry = entryOf(number);
    if (entry)
        for (size_t i = 0; i < kHalves.size(); ++i)
            if (kHalves[i] == halves)
                return {ormundSkinPack + entry->images[i].offset, entry->images[i].size};
    return {};
}

size_t skinPackSize() { return size_t(ormundSkinPackEnd - ormundSkinPack); }
