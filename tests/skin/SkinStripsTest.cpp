#include "panel/ChoiceGrids.h"
#include "panel/Palette.h"
#include "skin/draw/Paint.h"
#include "skin/draw/Strip.h"
#include "skin/SkinImages.h"
#include "skin/SkinProvider.h"
#include "tests/support/ReadableText.h"
#include "view/DrawnScales.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace ormund {

using namespace palette;

namespace {

// A frame drawn at its place in the middle of an empty picture with a rim around it.
constexpr int kRim = 6;

std::unique_ptr<Image> frameInRim(const SkinRow& row, int frame, double scale)
{
    auto image = std::make_unique<Image>(int(std::ceil(row.frameWidth * scale)) + 2 * kRim,
        int(std::ceil(row.frameHeight * scale)) + 2 * kRim + 1);
    drawFrame(image->get(), row, frame, scale, kRim, kRim);
    cairo_surface_flush(image->get());
    return image;
}

int alpha(uint32_t pixel) { return int(pixel >> 24); }
double light(uint32_t pixel) { return luminance(ink(pixel & 0xFFFFFF)); }

// A frame over the panel's ground, at scale 1.
std::unique_ptr<Image> overPanel(int number, int frame, const Ink& ground = kPanel)
{
    const SkinRow& row = skinRow(number);
    auto image = std::make_unique<Image>(row.frameWidth, row.frameHeight);
    cairo_t* cr = cairo_create(image->get());
    cairo_set_source_rgb(cr, ground.red, ground.green, ground.blue);
    cairo_paint(cr);
    cairo_destroy(cr);
    drawFrame(image->get(), row, frame, 1, 0, 0);
    cairo_surface_flush(image->get());
    return image;
}

// The share of pixels whose light differs so much that it is seen without colour.
double shareOfDifferentLight(int number, int one, int other)
{
    const auto a = overPanel(number, one), b = overPanel(number, other);
    int different = 0;
    for (int y = 0; y < a->height(); ++y)
        for (int x = 0; x < a->width(); ++x)
            different += contrast(ink(a->row(y)[x] & 0xFFFFFF), ink(b->row(y)[x] & 0xFFFFFF)) > 1.4;
    return double(different) / (a->width() * a->height());
}

} // namespace

TEST(SkinStrips, EveryStripIsEmbeddedAtEveryScaleInTheSizeOfTheTable)
{
    SkinProvider provider;
    for (const SkinRow& row : skinTable()) {
        SCOPED_TRACE(row.number);
        const SkinSize* size = skinSize(row.number);
        ASSERT_NE(size, nullptr);
        EXPECT_EQ(size->frames, row.frames);
        for (const double scale : kDrawnScales) {
            cairo_surface_t* image = provider.renderBitmap(row.number, scale);
            ASSERT_NE(image, nullptr);
            EXPECT_EQ(cairo_image_surface_get_width(image), int(row.width() * scale + 0.5));
            EXPECT_EQ(cairo_image_surface_get_height(image), int(row.height() * scale + 0.5));
            EXPECT_EQ(cairo_image_surface_get_format(image), CAIRO_FORMAT_ARGB32);
            cairo_surface_destroy(image);
        }
    }
    EXPECT_LT(skinPackSize(), 7u << 20);
}

TEST(SkinStrips, AFrameComesWithoutMostOfItsStripAndAsItWasDrawn)
{
    SkinProvider provider;
    for (const int number : {1000, 1011, 1103, 1109})
        for (const double scale : kDrawnScales) {
            SCOPED_TRACE(testing::Message() << number << " at " << scale);
            const SkinRow& row = skinRow(number);
            const auto strip = makeStrip(row, scale);
            for (const int frame : {0, row.frames / 2, row.frames - 1}) {
                const int from = frameTop(row, frame, scale), to = frameTop(row, frame + 1, scale);
                const auto [image, top] = provider.renderPart(number, scale, from, to);
                ASSERT_NE(image, nullptr);
                const int rows = cairo_image_surface_get_height(image);
                ASSERT_LE(top, from);
                ASSERT_GE(top + rows, to);
                if (row.frames > 100 && scale >= 1) { // smaller ones are few parts
                    EXPECT_LT(rows, strip->height() / 2);
                }
                const unsigned char* pixels = cairo_image_surface_get_data(image);
                const int stride = cairo_image_surface_get_stride(image);
                // A part is drawn by itself, and a curve's edge may round by one with its place.
                for (int y = from; y < to; ++y)
                    for (int x = 0; x < strip->width(); ++x) {
                        const uint32_t drawn = strip->row(y)[x];
                        const auto* got = pixels + (y - top) * stride + x * 4;
                        for (int part = 0; part < 4; ++part)
                            ASSERT_NEAR(got[part], int(drawn >> (8 * part) & 255), 1);
                    }
                cairo_surface_destroy(image);
            }
            // Rows of two parts come with the whole.
            const auto [image, top] = provider.renderPart(number, scale, 0, strip->height());
            EXPECT_EQ(top, 0);
            EXPECT_EQ(cairo_image_surface_get_height(image), strip->height());
            cairo_surface_destroy(image);
        }
}

TEST(SkinStrips, UnknownNumbersAndScalesGiveNothingOrAFittedImage)
{
    SkinProvider provider;
    int width = 0, height = 0;
    for (const long number : {-1L, 0L, 999L, 1148L}) {
        EXPECT_FALSE(provider.getBitmapSize(number, width, height));
        EXPECT_EQ(provider.renderBitmap(number, 1), nullptr);
        EXPECT_TRUE(skinPart(int(number), 2, 0).empty());
    }
    EXPECT_TRUE(skinPart(1000, kDrawnScales.size(), 0).empty());
    EXPECT_TRUE(skinPart(1000, 2, 1).empty());
    EXPECT_TRUE(skinPart(1011, 2, -1).empty());
    EXPECT_EQ(provider.renderBitmap(1013, 0), nullptr);
    for (const double scale : {0.6, 0.75, 1.1, 1.25, 2.5, 4.0}) {
        cairo_surface_t* image = provider.renderBitmap(1013, scale);
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(cairo_image_surface_get_height(image), int(69 * scale + 0.5));
        cairo_surface_destroy(image);
    }
}

TEST(SkinStrips, NoFrameBleedsBeyondItsRectangle)
{
    for (const SkinRow& row : skinTable())
        for (const double scale : {1.0, 1.5})
            for (const int frame : {0, row.frames / 2, row.frames - 1}) {
                const auto image = frameInRim(row, frame, scale);
                const int rows = frameTop(row, frame + 1, scale) - frameTop(row, frame, scale);
                const int columns = int(row.frameWidth * scale + 0.5);
                int outside = 0;
                for (int y = 0; y < image->height(); ++y)
                    for (int x = 0; x < image->width(); ++x)
                        outside += alpha(image->row(y)[x]) > 0
                            && (x < kRim || x >= kRim + columns || y < kRim || y >= kRim + rows);
                EXPECT_EQ(outside, 0) << row.number << " frame " << frame << " at " << scale;
            }
}

TEST(SkinStrips, FramesOfStripsDiffer)
{
    // Two bitmaps have nothing to show, and the chord table repeats itself by design.
    for (const SkinRow& row : skinTable()) {
        if (row.frames < 2 || row.number == 1105 || (row.number >= 1098 && row.number <= 1104))
            continue;
        const auto strip = makeStrip(row, 1);
        for (int frame = 1; frame < row.frames; ++frame) {
            bool same = true;
            for (int y = 0; y < row.frameHeight && same; ++y)
                same = std::equal(strip->row(frame * row.frameHeight + y),
                    strip->row(frame * row.frameHeight + y) + row.frameWidth,
                    strip->row((frame - 1) * row.frameHeight + y));
            EXPECT_FALSE(same) << row.number << " frame " << frame;
        }
    }
}

TEST(SkinStrips, PitchStepsTopAtTheHeightsOfTheConnectingLines)
{
    constexpr int kHeights[] = {1, 3, 6, 8, 12, 15, 19, 21, 24, 26, 28, 30, 33, 36, 38, 40, 42, 45,
        47, 51, 54, 58, 60, 63, 65};
    for (const double scale : kDrawnScales) {
        const auto strip = makeStrip(skinRow(1055), scale);
        for (int frame = 0; frame < 25; ++frame) {
            const int first = frameTop(skinRow(1055), frame, scale);
            const int rows = frameTop(skinRow(1055), frame + 1, scale) - first;
            int top = 0;
            while (top < rows && alpha(strip->row(first + top)[int(8 * scale)]) < 255)
                ++top;
            EXPECT_EQ(top, int((65 - kHeights[frame]) * scale + 0.5)) << frame << " at " << scale;
        }
    }
}

TEST(SkinStrips, BarsGrowByOnePixelAFrame)
{
    for (const int number : {1056, 1057, 1064}) {
        const auto strip = makeStrip(skinRow(number), 1);
        for (int frame = 0; frame < 66; ++frame) {
            int filled = 0;
            for (int y = 0; y < 65; ++y)
                filled += alpha(strip->row(frame * 65 + y)[8]) > 0;
            EXPECT_EQ(filled, frame) << number;
            EXPECT_EQ(alpha(strip->row(frame * 65 + 64)[17]), 0) << "the grid's line is covered";
        }
    }
}

TEST(SkinStrips, StraightEdgesStandOnWholePixels)
{
    // Rows and columns across a body are equal right up to its edge: no half-lit rim.
    for (const double scale : kDrawnScales) {
        const auto bars = makeStrip(skinRow(1057), scale);
        const int y = frameTop(skinRow(1057), 40, scale) + int(50 * scale);
        int between = 0;
        for (int x = 0; x < bars->width(); ++x) {
            const int a = alpha(bars->row(y)[x]);
            between += a != 0 && a != alpha(bars->row(y)[int(8 * scale)]);
        }
        EXPECT_EQ(between, 0) << scale;

        const auto panel = makeStrip(skinRow(1000), scale);
        const uint32_t* row = panel->row(int(200 * scale));
        for (int x = int(174 * scale); x < int(740 * scale); ++x) {
            const uint32_t colour = row[x] & 0xFFFFFF;
            EXPECT_THAT(
                colour, testing::AnyOf(0x121417u, 0x191C20u, 0x23282Eu, 0x363D46u, 0x6B7582u))
                << "at column " << x << ", scale " << scale;
        }
    }
}

TEST(SkinColours, WordsReadOnWhatTheyStandOn)
{
    constexpr double kReadable = 4.5;
    const struct {
        const char* what;
        Ink words, ground;
    } pairs[] = {
        {"label on panel", kLabel, kPanel},
        {"label on head", kLabel, kHead},
        {"label on well", kLabel, kWell},
        {"title on panel", kBodyText, kPanel},
        {"word on body", kBodyText, kBody},
        {"word on hover", kText, kBodyHover},
        {"word on the lightest pad", kText, ink(0x414955)},
        {"word on an idle pad", kBodyText, ink(0x323841)},
        {"value in well", kText, kWell},
        {"menu", kText, kMenu},
        {"value row", kBodyText, kValueRowGroup},
        {"pressed pad", kPerformance, kBodyPressed},
        {"record", kRecordInk, kRecord},
        {"neutral", kDarkInk, kNeutral},
        {"pitch", kDarkInk, kPitch},
        {"velocity name", nameOf(kVelocity), kPanel},
        {"gate", kDarkInk, kGate},
        {"performance", kDarkInk, mix(kPerformance, kBlack, 0.06)},
        {"modulation", kDarkInk, kModulation},
        {"pitch name", nameOf(kPitch), kPanel},
        {"gate name", nameOf(kGate), kPanel},
        {"performance name", nameOf(kPerformance), kPanel},
        {"modulation name", nameOf(kModulation), kPanel},
        {"outlined chord", kText, mix(kWell, kPerformance, 0.16)},
        {"grey chord", kText, ink(0x333B45)},
    };
    for (const auto& pair : pairs)
        EXPECT_GE(contrast(pair.words, pair.ground), kReadable) << pair.what;
}

TEST(SkinColours, StatesAreToldApartWithoutColour)
{
    const struct {
        int bitmap, one, other;
        double share;
    } pairs[] = {
        {1001, 0, 3, 0.3},
        {1002, 0, 3, 0.3},
        {1010, 0, 3, 0.3},
        {1031, 0, 3, 0.3},
        {1032, 0, 3, 0.3},
        {1034, 0, 3, 0.05},
        {1035, 0, 3, 0.05},
        {1036, 0, 3, 0.3},
        {1039, 0, 3, 0.3},
        {1040, 0, 3, 0.05},
        {1041, 0, 3, 0.05},
        {1042, 3, 6, 0.05},
        {1043, 0, 3, 0.05},
        {1044, 0, 3, 0.3},
        {1045, 0, 3, 0.05},
        {1084, 0, 1, 0.05},
        {1084, 0, 2, 0.3},
        {1084, 2, 3, 0.02},
        {1098, 0, 1, 0.02},
        {1098, 2, 3, 0.2},
        {1098, 4, 5, 0.2},
        {1098, 6, 7, 0.02},
        {1102, 2, 3, 0.2},
        {1105, 0, 1, 0.2},
    };
    for (const auto& pair : pairs)
        EXPECT_GE(shareOfDifferentLight(pair.bitmap, pair.one, pair.other), pair.share)
            << pair.bitmap << " frames " << pair.one << " and " << pair.other;
}

TEST(SkinColours, PressedAndHoverDifferFromNormal)
{
    for (const SkinRow& row : skinTable()) {
        const bool button = (row.number >= 1001 && row.number <= 1010)
            || (row.number >= 1013 && row.number <= 1054 && row.number != 1015 && row.number != 1020
                && row.number != 1049);
        if (!button)
            continue;
        ASSERT_EQ(row.frames % 3, 0) << row.number;
        const Ink ground = row.number == 1046 ? kNeutral : kPanel; // lies over a lit word
        for (int state = 0; state < row.frames / 3; ++state)
            for (const int look : {1, 2}) {
                const auto normal = overPanel(row.number, state * 3, ground);
                const auto other = overPanel(row.number, state * 3 + look, ground);
                double change = 0;
                for (int y = 0; y < row.frameHeight; ++y)
                    for (int x = 0; x < row.frameWidth; ++x)
                        change = std::max(
                            change, std::abs(light(normal->row(y)[x]) - light(other->row(y)[x])));
                EXPECT_GT(change, 0.02) << row.number << " state " << state << " look " << look;
            }
    }
}

TEST(SkinColours, TheRunningStepStandsOut)
{
    for (const int number : {1067, 1070, 1072, 1074, 1076, 1078, 1080, 1082}) {
        const auto rest = overPanel(number, 0, kWell);
        const auto running = overPanel(number == 1067 ? 1068 : number + 1, 0, kWell);
        EXPECT_GT(contrast(ink(running->row(1)[1] & 0xFFFFFF), ink(rest->row(1)[1] & 0xFFFFFF)), 2)
            << number;
    }
}

TEST(SkinChoiceGrids, SheetsFitTheirCellsAndHoldAllOfALinesValues)
{
    for (const ChoiceGrid& grid : kChoiceGrids) {
        if (grid.bitmap <= kLastBitmap) { // else its cells are the line's
            EXPECT_EQ(skinRow(grid.bitmap).frameWidth, grid.width()) << grid.bitmap;
            EXPECT_EQ(skinRow(grid.bitmap).frameHeight, grid.height()) << grid.bitmap;
        }
        EXPECT_LE(grid.values, grid.columns * grid.rows);
        EXPECT_GT(grid.values, grid.columns * (grid.rows - 1));
    }
    EXPECT_EQ(skinRow(1093).frameWidth, ChoiceGrid::kCell);
    const struct {
        int grid, strip;
    } lines[] = {{0, 1070}, {1, 1072}, {2, 1074}, {3, 1076}, {4, 1078}};
    for (const auto& line : lines)
        EXPECT_EQ(kChoiceGrids[line.grid].values, skinRow(line.strip).frames);
    for (int rule = 0; rule < 5; ++rule) // these offer the dash too
        EXPECT_EQ(kChoiceGrids[6 + rule].values, skinRow(1125 + 2 * rule).frames + 1);
}

TEST(SkinStrips, EveryPrintedWordCanBeRead)
{
    ReadableText reader;
    for (const SkinRow& row : skinTable()) {
        if (row.number == 1106 || row.number == 1107)
            continue; // marks of the keys, pictures rather than words
        for (int frame = 0; frame < row.frames; ++frame)
            overPanel(row.number, frame);
    }
    EXPECT_GT(reader.texts, 500);
    EXPECT_THAT(reader.complaints, testing::IsEmpty());
}

} // namespace ormund
