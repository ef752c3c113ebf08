// Steps of the track grids, in cells of 18 pixels whose last column is the grid's line. The frames
// are clear where the cell shows through.
#include "skin/draw/Parts.h"

#include <algorithm>
#include <string>

namespace ormund {

using namespace palette;

namespace {

constexpr double kBarLeft = 1;
constexpr double kBarWidth = 15;
constexpr double kGridHeight = 65;
// From here on a velocity step is an accent.
constexpr int kFirstAccent = 55;

void bar(Paint& paint, int height, const Ink& hue, double strength, const Ink& top)
{
    if (height == 0)
        return;
    const double y = kGridHeight - height;
    paint.rect(kBarLeft, y, kBarWidth, height, hue.faded(strength));
    paint.rect(kBarLeft, y, kBarWidth, std::min(2, height), top);
}

} // namespace

void drawPitchStep(Paint& paint, int frame)
{
    // The connecting lines of the grid end at these heights.
    constexpr int kHeights[] = {1, 3, 6, 8, 12, 15, 19, 21, 24, 26, 28, 30, 33, 36, 38, 40, 42, 45,
        47, 51, 54, 58, 60, 63, 65};
    const double y = kGridHeight - kHeights[frame];
    paint.rect(kBarLeft, y, kBarWidth, kHeights[frame], kPitch.faded(0.24));
    paint.rect(kBarLeft, y, kBarWidth, std::min(4, kHeights[frame]), kPitch);
}

void drawVelocityStep(Paint& paint, int frame)
{
    const bool accent = frame >= kFirstAccent;
    bar(paint, frame, kVelocity, accent ? 0.95 : 0.55,
        accent ? mix(kVelocity, kWhite, 0.24) : mix(kVelocity, kWhite, 0.05));
}

void drawGateStep(Paint& paint, int frame)
{
    bar(paint, frame, kGate, 0.55, mix(kGate, kWhite, 0.05));
}

void drawModulationStep(Paint& paint, int frame)
{
    bar(paint, frame, kModulation, 0.55, mix(kModulation, kWhite, 0.05));
}

void drawNoteName(Paint& paint, int frame)
{
    constexpr const char* kNames[] = {
        "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
    const TextStyle style{9, 0, Weight::Medium};
    paint.text(kNames[frame], 8.5, 5.5, style, kText, Align::Centre);
}

void drawGateValue(Paint& paint, int frame)
{
    paint.text(std::to_string(frame), 8.5, 10, type::kValue, kBodyText, Align::Centre);
}

void drawModulationValue(Paint& paint, int frame)
{
    const TextStyle style{9, frame > 99 ? -0.5 : -0.2, Weight::Medium};
    paint.text(std::to_string(frame), 8.5, 5.5, style, kBodyText, Align::Centre);
}

// Four frames for each hue, in the order of Hue.
void drawLoopCell(Paint& paint, int frame)
{
    constexpr Ink kHues[] = {kNeutral, kPitch, kVelocity, kGate, kPerformance, kModulation};
    const Ink& hue = kHues[frame / 4];
    const int part = frame % 4;
    if (part == 0) {
        paint.rounded(1, 3, 16, 3, 1.5, kLoopRest);
        return;
    }
    const Ink body = mix(hue, kWell, 0.32);
    const auto grip = [&](double x) {
        paint.rect(x, 3, 1, 3, kDarkInk);
        paint.rect(x + 2, 3, 1, 3, kDarkInk);
    };
    if (part == 1) {
        paint.rounded(0, 1, 9, 7, 2.5, hue);
        paint.rect(6, 1, 12, 7, body);
        grip(2);
    } else if (part == 3) {
        paint.rounded(9, 1, 9, 7, 2.5, hue);
        paint.rect(0, 1, 12, 7, body);
        grip(13);
    } else {
        paint.rect(0, 1, 18, 7, body);
    }
    if (part != 3)
        paint.rect(17, 2, 1, 5, kWell.faded(0.55));
}

void drawRunningMark(Paint& paint, int) { paint.rect(0, 0, 17, 1, kWhite); }

} // namespace ormund
