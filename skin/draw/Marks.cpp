// The product's and the maker's marks, the about page, and the rings over controls.
#include "skin/draw/Parts.h"

#include "base/Product.h"

#include <numbers>

namespace ormund {

using namespace palette;

namespace {

constexpr const char* kMaker = "KELDA WORKS";
// From the build, without the packaging number.
constexpr const char* kVersion = "Version " ORMUND_VERSION;

Ink markInk(Look look, const Ink& idle)
{
    return look == Look::Hover ? kWhite : look == Look::Pressed ? mix(idle, kBlack, 0.25) : idle;
}

} // namespace

void productRing(Paint& paint, double cx, double cy, double radius, const Ink& plain)
{
    constexpr int kSteps = 8;
    constexpr double kGap = 9; // degrees
    const double thickness = radius * 0.34;
    for (int step = 0; step < kSteps; ++step) {
        const double from = step * 45.0 + 22.5 - 45 + kGap / 2;
        paint.arc(cx, cy, radius - thickness / 2, from, from + 45 - kGap, thickness,
            step == 1 ? kPitch : plain, false);
    }
}

void drawProductMark(Paint& paint, int frame)
{
    const Ink word = markInk(Look(frame), kText);
    productRing(paint, 11, 10.5, 9.8, word);
    paint.text(product::kName, 26, 10.5, {18, 0, Weight::Medium}, word);
}

void drawMakerMark(Paint& paint, int frame)
{
    const Look look = Look(frame);
    paint.text(kMaker, paint.width() / 2, 14, {9, 2.1, Weight::SemiBold},
        look == Look::Normal ? kLabel : markInk(look, kBodyText), Align::Centre);
}

void drawAboutPage(Paint& paint, int)
{
    const double w = paint.width(), h = paint.height();
    paint.rounded(0, 0, w, h, 6, kGround);
    paint.frame(0, 0, w, h, 6, kMenuFrame);
    paint.rounded(5, 5, w - 10, h - 10, 4, kPanel);
    productRing(paint, 72, 92, 36, kText);
    paint.text(product::kName, 128, 84, {34, -0.3, Weight::Medium}, kText);
    paint.text("Performance step sequencer", 129, 113, {13, 0, Weight::Medium}, kLabel);

    // Five bars, a hue for each track.
    constexpr struct {
        Ink hue;
        double height;
    } kBars[] = {{kPitch, 8}, {kVelocity, 19}, {kGate, 13}, {kPerformance, 25}, {kModulation, 10}};
    for (int i = 0; i < 5; ++i)
        paint.rounded(290 + i * 16, 62 - kBars[i].height, 12, kBars[i].height, 2, kBars[i].hue);

    paint.rect(36, 160, w - 72, 1, kHairline);
    paint.text(kVersion, 36, 183, {13, 0, Weight::Medium}, kText);
    paint.text(product::kMaker, 36, 203, {13, 0, Weight::Medium}, kLabel);
    paint.text("Free software under the ISC licence, see the file LICENSE.", 36, 226, type::kValue,
        kLabel);
    paint.text("Lettering: Inter, SIL Open Font License 1.1.", 36, 242, type::kValue, kLabel);
    // The words of the switch that lies there.
    paint.text("Offline render", 57, 268.5, type::kValue, kBodyText);
    paint.text("also sounds while a host exports", 139, 268.5, type::kValue, kLabel);
}

void drawLearnRing(Paint& paint, int)
{
    paint.frame(0, 0, 41, 41, 5, kRecord, 2);
    paint.frame(2, 2, 37, 37, 3, kGround.faded(0.7));
}

void drawFocusRing(Paint& paint, int) { paint.frame(0, 0, 23, 23, 4, kWhite, 1.5); }

void drawShadow(Paint& paint, int) { paint.rect(0, 0, 1, 1, kBlack.faded(0.35)); }

} // namespace ormund
