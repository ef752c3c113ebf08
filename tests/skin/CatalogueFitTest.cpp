// The strips against the controls that show them.
#include "panel/ControlCatalogue.h"
#include "panel/Palette.h"
#include "skin/draw/Strip.h"

#include <gtest/gtest.h>

namespace ormund {

namespace {

// How many frames a button asks for: normal, pressed and hover of each state, or of its rest alone.
bool framesSuit(const ControlRow& row, const SkinRow& strip)
{
    if (row.kind == ControlClass::Button)
        return strip.frames == 3 || strip.frames == 3 * row.states;
    if (row.kind == ControlClass::Zone)
        return strip.frames % 4 == 0;
    if (row.kind == ControlClass::Knob)
        return strip.frames >= row.frames * (row.flags & kFromTop ? 2 : 1);
    return row.frames == 0 || strip.frames == row.frames;
}

bool isLine(const ControlRow& row)
{
    return row.kind == ControlClass::Table || row.kind == ControlClass::SwitchLine
        || row.kind == ControlClass::ListLine || row.kind == ControlClass::Zone;
}

// Pixels of printed words in a rectangle of a picture whose corner lies at `left`, `top`.
int inkIn(const Image& picture, int left, int top, const Place& place)
{
    int ink_ = 0;
    for (int y = place.top; y < place.bottom; ++y)
        for (int x = place.left; x < place.right; ++x) {
            const uint32_t pixel = picture.row(y - top)[x - left];
            ink_ += contrast(ink(pixel & 0xFFFFFF), palette::kPanel) > 3;
        }
    return ink_;
}

} // namespace

TEST(SkinCatalogue, EveryStripHasTheSizeOfTheControlsThatShowIt)
{
    for (const ControlRow& row : controlCatalogue()) {
        if (row.bitmap == 0 || row.place.empty())
            continue;
        const SkinRow& strip = skinRow(row.bitmap);
        const bool freeSize = row.kind == ControlClass::Overlay
            || row.kind == ControlClass::Keyboard || row.kind == ControlClass::Container;
        if (!freeSize && row.bitmap != 1084) {
            EXPECT_EQ(strip.frameHeight, row.place.height()) << "tag " << row.tag;
            const int width = isLine(row) ? 18 : row.place.width();
            EXPECT_LE(strip.frameWidth, width) << "tag " << row.tag;
            // A field may end short of the arrow button beside it.
            EXPECT_GE(strip.frameWidth, width - (row.kind == ControlClass::Menu ? 3 : 0))
                << "tag " << row.tag;
        }
        EXPECT_TRUE(framesSuit(row, strip)) << "tag " << row.tag << ", bitmap " << row.bitmap;
        if (row.runningBitmap != 0) {
            EXPECT_EQ(skinRow(row.runningBitmap).frames, strip.frames) << "tag " << row.tag;
        }
    }
}

TEST(SkinCatalogue, NoPrintedWordLiesUnderAControl)
{
    const auto panel = makeStrip(skinRow(1000), 1);
    const auto settings = makeStrip(skinRow(1117), 1);
    const auto synth = makeStrip(skinRow(1101), 1);
    for (const ControlRow& row : controlCatalogue()) {
        const bool covers = row.kind == ControlClass::Button || row.kind == ControlClass::Knob
            || row.kind == ControlClass::Menu || row.kind == ControlClass::Link
            || row.kind == ControlClass::DragSource;
        if (!covers || row.place.empty())
            continue;
        Place place = row.place;
        if (row.group == kSynthPage) {
            if (row.kind == ControlClass::Knob)
                place.bottom = int16_t(place.bottom - 8); // its name
            EXPECT_EQ(inkIn(*synth, 789, 49, place), 0) << "tag " << row.tag;
        } else if (row.group == kSettingsPage) {
            EXPECT_EQ(inkIn(*settings, 789, 49, place), 0) << "tag " << row.tag;
        } else {
            EXPECT_EQ(inkIn(*panel, 0, 0, place), 0) << "tag " << row.tag;
        }
    }
}

} // namespace ormund
