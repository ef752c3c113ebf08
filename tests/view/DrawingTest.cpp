#include "platform/Png.h"
#include "tests/support/Checked.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"
#include "view/DirtyRegion.h"
#include "view/FittedText.h"
#include "view/TextStores.h"
#include "view/Typeface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cairo.h>
#include <malloc.h>
#include <memory>
#include <random>

namespace ormund {

using testing::ElementsAre;

namespace {

// An image to draw on, black at first.
class Canvas {
public:
    Canvas(int width, int height, double scale = 1)
        : surface(cairo_image_surface_create(
            CAIRO_FORMAT_RGB24, static_cast<int>(width * scale), static_cast<int>(height * scale)))
        , context(std::make_unique<CDrawContext>(surface, scale))
    {
    }
    ~Canvas()
    {
        context.reset();
        cairo_surface_destroy(surface);
    }
    uint32_t pixel(int x, int y) const
    {
        cairo_surface_flush(surface);
        const unsigned char* row = cairo_image_surface_get_data(surface)
            + static_cast<long>(y) * cairo_image_surface_get_stride(surface);
        return reinterpret_cast<const uint32_t*>(row)[x] & 0xFFFFFF;
    }
    int width() const { return cairo_image_surface_get_width(surface); }
    int height() const { return cairo_image_surface_get_height(surface); }
    // The columns and rows that are not black.
    CRect inked() const
    {
        CRect box;
        for (int y = 0; y < height(); ++y)
            for (int x = 0; x < width(); ++x)
                if (pixel(x, y))
                    box.unite({x, y, x + 1, y + 1});
        return box;
    }
    uint32_t checksum() const
    {
        uint32_t sum = 2166136261u;
        for (int y = 0; y < height(); ++y)
            for (int x = 0; x < width(); ++x)
                sum = (sum ^ pixel(x, y)) * 16777619u;
        return sum;
    }
    cairo_surface_t* surface;
    std::unique_ptr<CDrawContext> context;
};

// Frames of one colour each, drawn for one scale: each ends where the next begins.
std::unique_ptr<CBitmap, void (*)(CBitmap*)> strip(
    int frameHeight, std::vector<uint32_t> colors, double scale = 1)
{
    PixelImage image;
    image.width = static_cast<int>(4 * scale);
    for (size_t frame = 0; frame < colors.size(); ++frame) {
        const auto rowAt = [&](size_t k) {
            return static_cast<int>(static_cast<double>(k) * frameHeight * scale + 0.5);
        };
        image.height = rowAt(frame + 1);
        image.pixels.resize(static_cast<size_t>(image.width * image.height), colors[frame]);
    }
    const auto file = encodePng(image);
    return {CBitmap::fromPng(file.data(), file.size(), scale),
        [](CBitmap* bitmap) { bitmap->forget(); }};
}

} // namespace

TEST(DrawContext, RectanglesAndLinesCoverWholePixels)
{
    Canvas canvas(20, 20);
    CDrawContext& context = *canvas.context;
    context.setFillColor(kRedCColor);
    context.setFrameColor(kWhiteCColor);
    context.drawRect({2, 3, 8, 9}, kDrawFilledAndStroked);
    EXPECT_EQ(canvas.inked(), (CRect{2, 3, 8, 9}));
    EXPECT_EQ(canvas.pixel(2, 3), 0xFFFFFFu);
    EXPECT_EQ(canvas.pixel(7, 8), 0xFFFFFFu);
    EXPECT_EQ(canvas.pixel(3, 4), 0xFF0000u);

    context.moveTo({18, 12});
    context.lineTo({10, 12});
    context.lineTo({10, 18});
    EXPECT_EQ(canvas.pixel(18, 12), 0xFFFFFFu);
    EXPECT_EQ(canvas.pixel(10, 12), 0xFFFFFFu);
    EXPECT_EQ(canvas.pixel(10, 18), 0xFFFFFFu);
    EXPECT_EQ(canvas.pixel(10, 19), 0u);
    EXPECT_EQ(canvas.pixel(19, 12), 0u);
    EXPECT_EQ(canvas.pixel(12, 11), 0u);
    EXPECT_EQ(canvas.pixel(12, 13), 0u);
}

TEST(DrawContext, ClipsNestAndEnd)
{
    Canvas canvas(20, 20);
    CDrawContext& context = *canvas.context;
    context.setFillColor(kRedCColor);
    context.setClipRect({0, 0, 10, 10});
    context.setClipRect({5, 5, 20, 20});
    context.fillRect({0, 0, 20, 20});
    EXPECT_EQ(canvas.inked(), (CRect{5, 5, 10, 10}));
    context.resetClipRect();
    context.fillRect({0, 0, 20, 20});
    EXPECT_EQ(canvas.inked(), (CRect{0, 0, 10, 10}));
    context.resetClipRect();
    context.fillRect({0, 0, 20, 20});
    EXPECT_EQ(canvas.inked(), (CRect{0, 0, 20, 20}));
}

TEST(Bitmap, AStripDrawsTheFrameAtTheOffsetAndNothingOfItsNeighbours)
{
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        const auto frames = strip(7, {0xFFFF0000, 0xFF00FF00, 0xFF0000FF}, scale);
        for (int frame = 0; frame < 3; ++frame) {
            Canvas canvas(10, 20, scale);
            frames->draw(canvas.context.get(), {2, 4, 6, 11}, {0, frame * 7});
            const uint32_t wanted[] = {0xFF0000, 0x00FF00, 0x0000FF};
            const CRect box = canvas.inked();
            EXPECT_EQ(box,
                (CRect{static_cast<int>(2 * scale), static_cast<int>(4 * scale),
                    static_cast<int>(6 * scale), static_cast<int>(11 * scale + 0.5)}));
            for (int y = box.top; y < box.bottom; ++y)
                EXPECT_EQ(canvas.pixel(box.left, y), wanted[frame]) << scale << " " << y;
        }
    }
}

TEST(Bitmap, DrawingStopsAtTheEndOfTheBitmapAndBlendsByAlpha)
{
    const auto frames = strip(4, {0xFFFF0000, 0x80008000});
    Canvas canvas(20, 20);
    frames->draw(canvas.context.get(), {0, 0, 20, 20}, {1, 2});
    EXPECT_EQ(canvas.inked(), (CRect{0, 0, 3, 6}));
    EXPECT_EQ(canvas.pixel(0, 1), 0xFF0000u);
    EXPECT_EQ(canvas.pixel(0, 2), 0x008000u) << "half green on black";
    frames->drawAlphaBlend(canvas.context.get(), {10, 0, 14, 4}, {}, 128);
    EXPECT_NEAR(static_cast<double>(canvas.pixel(10, 0) >> 16), 128, 1);
    frames->draw(canvas.context.get(), {10, 10, 14, 14}, {0, 100});
    EXPECT_EQ(canvas.pixel(10, 10), 0u);
}

TEST(Bitmap, TheProviderIsAskedOncePerScaleAndUnknownIdsDrawNothing)
{
    struct Provider : CBitmapProvider {
        bool getBitmapSize(long id, int& width, int& height) override
        {
            width = height = 10;
            return id == 1000;
        }
        cairo_surface_t* renderBitmap(long, double scale) override
        {
            asked.push_back(scale);
            const int side = static_cast<int>(10 * scale);
            return cairo_image_surface_create(CAIRO_FORMAT_ARGB32, side, side);
        }
        std::vector<double> asked;
    } provider;
    CBitmap::setProvider(&provider);
    CBitmap known(1000);
    CBitmap unknown(999);
    for (const double scale : {1.0, 2.0, 1.0, 2.0}) {
        Canvas canvas(10, 10, scale);
        known.draw(canvas.context.get(), {0, 0, 10, 10});
        unknown.draw(canvas.context.get(), {0, 0, 10, 10});
    }
    CBitmap::setProvider(nullptr);
    EXPECT_THAT(provider.asked, ElementsAre(1, 2));
    EXPECT_FALSE(unknown.isLoaded());
    EXPECT_EQ(known.getWidth(), 10);
    EXPECT_EQ(CBitmap::fromPng("no png", 6), nullptr);
}

TEST(Text, DigitsAreEquallyWideAndPairsAreKerned)
{
    Typeface& face = Typeface::medium();
    for (const char* digit : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"})
        EXPECT_NEAR(face.width(digit, 11), face.width("0", 11), 0.01) << digit;
    EXPECT_LT(face.width("AV", 11), face.width("A", 11) + face.width("V", 11));
    EXPECT_NEAR(face.width("Ormund", 22), 2 * face.width("Ormund", 11), 1e-9);
    EXPECT_NEAR(face.width("LOOP", 9, 0.5), face.width("LOOP", 9) + 4 * 0.5, 1e-9);
    EXPECT_GT(Typeface::semiBold().width("PITCH", 9), face.width("PITCH", 9));
    EXPECT_GT(face.width("\xE2\x88\x92"
                         "1 \xC3\xA4\xE2\x99\xAF",
                  11),
        face.width("1", 11));
    EXPECT_GT(face.width("\xFF\xC3", 11), 0) << "broken UTF-8 shows as marks";
}

TEST(Text, WhatIsKeptOfItIsBoundedAndGoesWithTheLastWindow)
{
    if (kChecked)
        GTEST_SKIP() << "the allocator does not count";
    Canvas canvas(100, 20);
    canvas.context->setFontColor(kWhiteCColor);
    const auto drawTexts = [&](int count) {
        size_t most = 0;
        for (int i = 0; i < count; ++i) {
            canvas.context->setFont(nullptr, 11, i % 2 == 0 ? kNormalFace : kBoldFace);
            canvas.context->drawString("value " + std::to_string(i * 7919), {0, 0, 100, 20});
            if (i % 100 == 0)
                most = std::max(most, mallinfo2().uordblks);
        }
        return most;
    };
    const auto useIn = [&](int count) {
        const TextStores first;
        const TextStores second;
        return drawTexts(count);
    };
    useIn(4000);
    const size_t before = mallinfo2().uordblks;
    const size_t most = useIn(4000);
    EXPECT_GT(most, before + 500'000) << "texts that return are not drawn again";
    EXPECT_LT(most, before + 5'000'000);
    // The allocator's own cache counts as in use.
    EXPECT_LT(mallinfo2().uordblks, before + 250'000);
}

TEST(Text, StandsWhereTheAlignmentSaysAndInsideItsRectangle)
{
    CFontDesc font("Arial", 12);
    const auto boxOf = [&](CHoriTxtAlign align, const char* text, double scale) {
        Canvas canvas(100, 30, scale);
        canvas.context->setFontColor(kWhiteCColor);
        canvas.context->setFont(&font);
        canvas.context->drawString(text, {10, 5, 90, 25}, false, align);
        return canvas.inked();
    };
    for (const double scale : {1.0, 2.0}) {
        const int left = static_cast<int>(10 * scale);
        const int right = static_cast<int>(90 * scale);
        const CRect atLeft = boxOf(kLeftText, "HEH", scale);
        const CRect centred = boxOf(kCenterText, "HEH", scale);
        const CRect atRight = boxOf(kRightText, "HEH", scale);
        EXPECT_NEAR(atLeft.left, left + scale, scale);
        EXPECT_NEAR(atRight.right, right - scale, scale);
        EXPECT_NEAR(centred.left - left, right - centred.right, 2);
        EXPECT_NEAR(centred.top + centred.bottom, 30 * scale, 2);
        const CRect cut = boxOf(kLeftText, "WIDER THAN ITS RECTANGLE IS", scale);
        EXPECT_GE(cut.left, left);
        EXPECT_LE(cut.right, right);
    }
}

// The font and its outlines are our own copy, so these pixels are the same on every machine.
TEST(Text, PixelsAreTheSameEverywhere)
{
    Canvas canvas(120, 24);
    CFontDesc font("Arial", 11);
    canvas.context->setFont(&font);
    canvas.context->setFontColor(kWhiteCColor);
    canvas.context->drawString("Slow Harbour Lights 0123", {0, 0, 120, 12});
    canvas.context->setFont(&font, 9, kBoldFace);
    canvas.context->drawString("PERFORMANCE", {0, 12, 120, 24});
    EXPECT_EQ(canvas.checksum(), 32381551u);
}

TEST(DirtyRegion, UnitesWhatTouchesAndKeepsApartWhatDoesNot)
{
    DirtyRegion region;
    region.add({0, 0, 10, 10});
    region.add({50, 50, 60, 60});
    EXPECT_EQ(region.rects().size(), 2u);
    region.add({10, 0, 20, 10});
    EXPECT_THAT(
        region.rects(), testing::UnorderedElementsAre(CRect{0, 0, 20, 10}, CRect{50, 50, 60, 60}));
    region.add({2, 2, 3, 3});
    EXPECT_EQ(region.rects().size(), 2u);
    region.add({15, 5, 55, 55});
    EXPECT_THAT(region.rects(), ElementsAre(CRect{0, 0, 60, 60}));
    region.add({5, 5, 5, 90});
    EXPECT_EQ(region.bounds(), (CRect{0, 0, 60, 60}));
}

TEST(DirtyRegion, HoldsEveryPixelEverAddedWithoutOverlapHoweverMany)
{
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        DirtyRegion region;
        std::vector<CRect> added;
        for (int i = 0; i < 100; ++i) {
            const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
            const int x = below(990);
            const int y = below(680);
            added.push_back({x, y, x + 1 + below(40), y + 1 + below(30)});
            region.add(added.back());
        }
        EXPECT_LE(region.rects().size(), static_cast<size_t>(DirtyRegion::kMaxRects));
        for (size_t a = 0; a < region.rects().size(); ++a)
            for (size_t b = a + 1; b < region.rects().size(); ++b)
                ASSERT_FALSE(region.rects()[a].rectOverlap(region.rects()[b]));
        for (const CRect& rect : added)
            ASSERT_TRUE(std::ranges::any_of(
                region.rects(), [&](const CRect& part) { return part.contains(rect); }));
    }
}

TEST(FittedText, AbbreviatesTheLongestWordsAndCutsAtTheEndLast)
{
    const auto fitted = [](const char* text, double room) {
        return fittedText(text, room, [](std::string_view part) {
            double letters = 0; // a narrow point
            for (const char byte : part)
                letters += byte == '.' ? 0.5 : (byte & 0xC0) != 0x80 ? 1 : 0;
            return letters;
        });
    };
    EXPECT_EQ(fitted("Neapolitan Minor", 16), "Neapolitan Minor");
    EXPECT_EQ(fitted("Bebop   ", 5), "Bebop");
    EXPECT_EQ(fitted("Neapolitan Minor", 12), "Neapo. Minor");
    EXPECT_EQ(fitted("Neapolitan Minor", 10), "Neap. Min.");
    EXPECT_EQ(fitted("Expression", 9), "Expressi.");
    EXPECT_EQ(fitted("Spanish 8 tone", 12), "Span. 8 tone");
    EXPECT_EQ(fitted("Überlänge", 6), "Überl.");
    EXPECT_EQ(fitted("Neapolitan Minor", 5), "Nea…");
    EXPECT_EQ(fitted("on off", 4), "on…");
    EXPECT_EQ(fitted("anything", 0), "");
    EXPECT_EQ(fitted("", 5), "");
}

} // namespace ormund
