// Sliders and stepped fields: each frame shows one value in words or by its place.
#include "panel/KnobShapes.h"
#include "skin/draw/Parts.h"

#include <string>

namespace ormund {

using namespace palette;

namespace {

constexpr const char* kNotes[] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};

constexpr int kRootKeys = 49;
constexpr int kLowestOctave = 2;
constexpr const char* kMultiples[] = {"1/8", "1/4", "3/8", "1/2", "5/8", "3/4", "7/8", "\u00D7 1",
    "\u00D7 2", "\u00D7 3", "\u00D7 4", "\u00D7 5", "\u00D7 6", "\u00D7 7", "\u00D7 8"};

} // namespace

void drawRootKey(Paint& paint, int frame)
{
    constexpr double kThumbHeight = 12, kThumbTravel = 75 - 2 - kThumbHeight;
    well(paint, 0, 0, 19, 75);
    for (int octave = 0; octave <= 4; ++octave)
        paint.rect(3, 68 - octave * kThumbTravel / 4, 3, 1, mix(kWell, kLabel, 0.55));
    const double top = 1 + kThumbTravel * (kRootKeys - 1 - frame) / (kRootKeys - 1);
    paint.rounded(1, top, 17, kThumbHeight, 2, kPitch);
    const std::string name = kNotes[frame % 12] + std::to_string(kLowestOctave + frame / 12);
    const TextStyle style{9, name.size() > 2 ? -0.55 : 0.1, Weight::SemiBold};
    paint.text(name, 9.5, paint.snap(top) + kThumbHeight / 2, style, kDarkInk, Align::Centre);
}

void drawGateMultiply(Paint& paint, int frame)
{
    constexpr double kThumbWidth = 32, kFirst = 2, kTravel = 92 - 2 * kFirst - kThumbWidth;
    well(paint, 0, 0, 92, 17);
    for (int i = 0; i < 15; ++i)
        paint.rect(5 + i * 81.0 / 14, 7, 1, 3, mix(kWell, kLabel, 0.5));
    const double left = kFirst + kTravel * frame / 14;
    paint.rounded(left, 1.5, kThumbWidth, 14, 2, kGate);
    paint.text(kMultiples[frame], paint.snap(left) + kThumbWidth / 2, 8.5, type::kValueBold,
        kDarkInk, Align::Centre);
}

void drawSwing(Paint& paint, int frame)
{
    well(paint, 0, 0, 101, 21);
    const double filled = 97.0 * frame / 78;
    if (frame > 0)
        paint.rounded(2, 2, filled, 17, 1.5, mix(kNeutral, kWell, 0.12));
    for (int quarter = 1; quarter < 4; ++quarter) {
        const double x = 2 + 97.0 * quarter / 4;
        const Ink tick = x < 2 + filled ? kDarkInk.faded(0.55) : mix(kWell, kLabel, 0.6);
        paint.rect(x, 16, 1, 3, tick);
    }
}

void drawModSelect(Paint& paint, int frame)
{
    well(paint, 0, 0, 31, 89);
    constexpr int kLine = 1; // above each row, and the lit row covers it
    for (int track = 0; track < 7; ++track)
        paint.rect(3, kModTrackList.above(track) - kLine, 25, kLine, kCellLine);
    paint.rounded(1, kModTrackList.above(frame) - kLine, 29, kModTrackList.height + 2 * kLine, 2,
        kModulation);
}

void drawBars(Paint& paint, int frame)
{
    well(paint, 0, 0, 31, 13);
    paint.text(std::to_string(frame + 1), 15.5, 6.5, type::kValue, kText, Align::Centre);
}

// Serves two ranges of octaves, so it shows the place in the range and no number.
void drawOctaveBox(Paint& paint, int frame)
{
    well(paint, 0, 0, 44, 21, 3);
    for (int mark = 0; mark < 5; ++mark) {
        const double x = 5 + mark * 7;
        if (mark == frame)
            paint.rounded(x, 4, 6, 13, 1.5, kText);
        else
            paint.rounded(x, 9, 6, 3, 1, kFourLine);
    }
}

void drawTransposeBox(Paint& paint, int frame)
{
    well(paint, 0, 0, 44, 21, 3);
    paint.text(signedNumber(frame - 12), 22, 10.5, type::kValue, kText, Align::Centre);
}

} // namespace ormund
