#include "data/parameters/ChoiceArrows.h"

#include "data/parameters/Tags.h"

#include <array>
#include <cstddef>

namespace ormund {

namespace {
constexpr ChoiceArrow kArrows[] = {
    {Tag::ScaleDown, Tag::Scale, -1},
    {Tag::ScaleUp, Tag::Scale, 1},
    {Tag::StepSpeedDown, Tag::StepSpeed, -1},
    {Tag::StepSpeedUp, Tag::StepSpeed, 1},
    {Tag::SongSpeedDown, Tag::SongSpeed, -1},
    {Tag::SongSpeedUp, Tag::SongSpeed, 1},
    {Tag::KeySyncDown, Tag::KeySync, -1},
    {Tag::KeySyncUp, Tag::KeySync, 1},
};

constexpr int kTargetArrows = 2 * kModTracks;
constexpr std::array<ChoiceArrow, kTargetArrows> kModArrows = [] {
    std::array<ChoiceArrow, kTargetArrows> arrows{};
    for (int i = 0; i < kTargetArrows; ++i)
        arrows[static_cast<size_t>(i)] = {
            Tag::ModTargetArrows + i, Tag::ModTarget + i / 2, i % 2 == 0 ? -1 : 1};
    return arrows;
}();
} // namespace

const ChoiceArrow* choiceArrow(int tag)
{
    for (const ChoiceArrow& arrow : kArrows)
        if (arrow.tag == tag)
            return &arrow;
    const int place = tag - Tag::ModTargetArrows;
    return place >= 0 && place < kTargetArrows ? &kModArrows[static_cast<size_t>(place)] : nullptr;
}

} // namespace ormund
