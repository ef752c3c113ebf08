// Cells of the lines. The strip draws nothing for value 0, so the panel's own cell shows there: a
// dash, or a 1. Where a value stands, a patch in the colour between the two shades of the cells
// hides it.
#include "skin/draw/Parts.h"

#include <string>

namespace ormund {

using namespace palette;

namespace {

constexpr double kCellWidth = 17;
constexpr Ink kPatch = mix(kWell, kWellGroup, 0.5);

void hideDash(Paint& paint) { paint.rect(7, paint.height() / 2 - 0.5, 3, 1, kPatch); }

void veil(Paint& paint, bool running)
{
    if (running)
        paint.rect(0, 0, kCellWidth, paint.height(), kVeil);
}

} // namespace

void drawLineCell(Paint& paint, int frame, Glyph glyph, bool running)
{
    hideDash(paint);
    // Half a pixel off the middle, where lines of one pixel are sharp.
    glyph(paint, frame, 8.5, 8);
    // One pixel less: the line between the rows stays.
    if (running)
        paint.rect(0, 0, kCellWidth, paint.height() - 1, kVeil);
}

void lockCell(Paint& paint, bool running)
{
    paint.rounded(1, 1, 15, 7, 1.5, kPitch);
    paint.rounded(6, 4, 5, 3, 0.5, kDarkInk);
    paint.arc(8.5, 4, 1.5, -90, 90, 1, kDarkInk, false);
    veil(paint, running);
}

void muteCell(Paint& paint, bool running)
{
    paint.rounded(1, 2, 15, 9, 2, mix(kVelocity, kWell, 0.14));
    veil(paint, running);
}

void songCell(Paint& paint, int frame, bool running)
{
    paint.rect(5, 1, 7, 9, kPatch);
    const TextStyle style{9, -0.1, Weight::Medium};
    paint.text(std::to_string(frame + 2), 8.5, 5.5, style, kText, Align::Centre);
    veil(paint, running);
}

// The number is printed by who shows the pattern, dark where the pattern runs.
void drawPatternCell(Paint& paint, int frame)
{
    const bool locked = frame & 1, running = frame & 2;
    paint.rounded(0.5, 0, 17, 37, 2.5, running ? kNeutral : kBody);
    if (locked)
        paint.frame(0.5, 0, 17, 37, 2.5, running ? kWhite : kText);
    else
        paint.frame(0.5, 0, 17, 37, 2.5, running ? mix(kNeutral, kWhite, 0.2) : kBodyFrame);
    const Ink content = running ? kDarkInk : kText;
    if (locked)
        drawIcon(paint, Icon::Lock, 9, 30, 6.6, content, 1.1);
    else
        paint.rounded(4, 30, 10, 2, 1, running ? kDarkInk : ink(0x535C68));
}

} // namespace ormund
