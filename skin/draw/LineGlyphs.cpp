// What a step of the performance lines does, as a picture in a cell of 18 by 16: 17 pixels wide,
// the last column being the grid's line.
#include "data/music/ArpeggioTable.h"
#include "data/music/BendShapes.h"
#include "skin/draw/Parts.h"

#include <algorithm>
#include <cmath>

namespace ormund {

using namespace palette;

namespace {

constexpr Ink kGlyph = mix(kPerformance, kWhite, 0.12);
constexpr TextStyle kTileText{9, -0.1, Weight::SemiBold};

// ---- Chords

struct ChordFace {
    const char* name;
    int pips; // notes of the chord put below the root
    enum { Filled, Outlined, Grey } tile;
};

ChordFace chordFace(int index)
{
    constexpr const char* kMajor[] = {"M", "b6", "6", "7", "M7", "9"};
    constexpr const char* kMinor[] = {"m", "b6", "6", "7", "M7", "9"};
    constexpr const char* kOther[] = {"", "5", "+", "4", "c", "Q"};
    if (index < 24)
        return {kMajor[index % 6], index / 6, ChordFace::Filled};
    if (index < 48)
        return {kMinor[index % 6], index / 6 - 4, ChordFace::Outlined};
    return {kOther[index - 48], 0, ChordFace::Grey};
}

} // namespace

void octaveGlyph(Paint& paint, int index, double cx, double cy)
{
    const bool twice = index == 0 || index == 3;
    const double rise = index < 2 ? 2.4 : -2.4;
    const auto chevron = [&](double middle) {
        paint.stroke(1.7, kGlyph, [&](cairo_t* cr) {
            cairo_move_to(cr, cx - 4.6, middle + rise);
            cairo_line_to(cr, cx, middle - rise * 0.75);
            cairo_line_to(cr, cx + 4.6, middle + rise);
        });
    };
    if (twice) {
        chevron(cy - 2.3);
        chevron(cy + 2.3);
    } else {
        chevron(cy);
    }
}

// The shape that the bend takes, over a dim line at rest; a small one is enlarged to be seen.
void bendGlyph(Paint& paint, int index, double cx, double cy)
{
    constexpr double kHalfWidth = 6, kHalfHeight = 5, kSmallest = 0.42;
    const auto points = bendShape(index);
    double peak = 0.01;
    for (const float point : points)
        peak = std::max(peak, std::abs(double(point)));
    const double rise = kHalfHeight * std::max(1.0, kSmallest / peak);
    const double stride = 2 * kHalfWidth / double(points.size() - 1);
    paint.rect(cx - kHalfWidth, cy - 0.5, 2 * kHalfWidth, 1, kPerformance.faded(0.38));
    paint.stroke(1.5, kGlyph, [&](cairo_t* cr) {
        for (size_t i = 0; i < points.size(); ++i)
            cairo_line_to(cr, cx - kHalfWidth + double(i) * stride, cy - double(points[i]) * rise);
    });
}

void chordGlyph(Paint& paint, int index, double cx, double cy)
{
    const ChordFace face = chordFace(index);
    const double left = paint.snap(cx - 7), top = paint.snap(cy - 6.5);
    constexpr double kWidth = 14, kHeight = 13;
    Ink word = kText;
    switch (face.tile) {
    case ChordFace::Filled:
        paint.rounded(left, top, kWidth, kHeight, 2, kGlyph);
        word = kDarkInk;
        break;
    case ChordFace::Outlined:
        paint.rounded(left, top, kWidth, kHeight, 2, mix(kWell, kPerformance, 0.16));
        paint.frame(left, top, kWidth, kHeight, 2, kGlyph);
        break;
    default:
        paint.rounded(left, top, kWidth, kHeight, 2, ink(0x333B45));
        break;
    }
    const double middle = top + kHeight / 2 - (face.pips ? 1.5 : 0);
    if (*face.name == 0) {
        paint.arc(cx, cy, 2.6, 0, 360, 1.5, word, false);
        return;
    }
    const double width = paint.textWidth(face.name, kTileText);
    const TextStyle style{9, width > 13 ? -0.9 : -0.2, Weight::SemiBold};
    paint.text(face.name, cx, middle, style, word, Align::Centre);
    for (int pip = 0; pip < face.pips; ++pip)
        paint.rect(cx - (face.pips * 3 - 1) / 2.0 + pip * 3, top + kHeight - 3, 2, 1, word);
}

// Repeats show the strength of the beats; up and down show the path that the notes walk. The
// second rhythm has three beats.
void arpeggioGlyph(Paint& paint, int index, double cx, double cy)
{
    const int family = index / kRhythms, rhythm = index % kRhythms;
    const int beats = rhythm == 1 ? 3 : kSubSteps;
    const double pitch = beats == 3 ? 5 : 3.75;
    for (int beat = 0; beat < beats; ++beat) {
        const double strength = double(arpeggioGate(rhythm + 1, beat));
        if (strength <= 0)
            continue;
        const double x = cx - (beats - 1) * pitch / 2 + beat * pitch;
        if (family == 0) {
            const double half = 1 + 4.5 * std::max(0.0, strength - 0.6) / 0.4;
            paint.rounded(x - 1, cy - half, 2, 2 * half, 1, kGlyph);
            continue;
        }
        const double level = arpeggioSelect(beat, rhythm) - 1.5;
        const double y = cy + (family == 1 ? -level : level) * 3;
        const double size = strength >= 0.8 ? 3 : 2;
        paint.rounded(x - size / 2, y - size / 2, size, size, 0.7, kGlyph);
    }
}

void randomGlyph(Paint& paint, int index, double cx, double cy)
{
    static constexpr const char* kLetters[] = {
        "P", "V", "M", "G", "O", "B", "C", "c", "A", "1", "2", "3", "4", "5", "6", "7", "8"};
    const Ink hue = index == 0 ? kPitch
        : index < 3            ? kVelocity
        : index == 3           ? kGate
        : index < 9            ? kPerformance
                               : kModulation;
    const double left = paint.snap(cx - 6.5), top = paint.snap(cy - 7);
    paint.rounded(left, top, 13, 14, 3, mix(kWell, hue, 0.16));
    paint.frame(left, top, 13, 14, 3, hue);
    paint.disc(left + 2.6, top + 2.7, 0.8, hue);
    paint.disc(left + 10.4, top + 11.3, 0.8, hue);
    paint.text(kLetters[index], cx, cy, {9, 0, Weight::SemiBold}, kText, Align::Centre);
}

} // namespace ormund
