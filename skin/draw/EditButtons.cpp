// Edit buttons lie flat until the mouse is on them. A strip serves all tracks, so what is pressed
// lights up in the colour of no track.
#include "skin/draw/Parts.h"

namespace ormund {

using namespace palette;

namespace {

struct EditLook {
    double icon;
    double line;
    double radius;
};

void flatButton(Paint& paint, Look look, Icon icon, const Ink& idle, const EditLook& e)
{
    const double w = paint.width(), h = paint.height();
    Ink content = idle;
    if (look == Look::Hover) {
        paint.rounded(0, 0, w, h, e.radius, kBodyHover);
        content = kText;
    } else if (look == Look::Pressed) {
        paint.rounded(0, 0, w, h, e.radius, kNeutral);
        content = kDarkInk;
    }
    drawIcon(paint, icon, w / 2, h / 2 + pressShift(look), e.icon, content, e.line);
}

EditLook lookFor(double width)
{
    if (width >= 23)
        return {12, 1.25, 3};
    return width >= 19 ? EditLook{10.4, 1.25, 2.5} : EditLook{8, 1.4, 2.5};
}

} // namespace

void drawEditButton(Paint& paint, int frame, Icon icon)
{
    flatButton(paint, Look(frame), icon, kIcon, lookFor(paint.width()));
}

// Stands between its two knobs and throws for all tracks: it stays bright.
void drawGlobalRandom(Paint& paint, int frame)
{
    flatButton(paint, Look(frame), Icon::Random, kText, lookFor(paint.width()));
}

void drawArrowButton(Paint& paint, int frame, Icon icon)
{
    const bool chevron = icon == Icon::Previous || icon == Icon::Next;
    flatButton(paint, Look(frame), icon, kIcon, {chevron ? 7.0 : 6.6, 1.6, 2});
}

// Three pixels short of their rectangle on the side of the preset's field.
void drawPresetButton(Paint& paint, int frame, Icon icon)
{
    constexpr double kGap = 3;
    const Look look = Look(frame);
    const double left = icon == Icon::Next ? kGap : 0;
    const double width = paint.width() - kGap;
    raised(paint, left, 0, width, paint.height(), look, 3);
    drawIcon(paint, icon, left + width / 2, paint.height() / 2 + pressShift(look), 10,
        contentInk(look), 1.6);
}

void drawOrder(Paint& paint, int frame)
{
    constexpr Icon kOrders[] = {
        Icon::Forward, Icon::Backward, Icon::Shuffle, Icon::Each2nd, Icon::Each3rd, Icon::Each4th};
    well(paint, 0, 0, paint.width(), paint.height(), 3);
    drawIcon(paint, kOrders[frame], 11.5, 11.5, 12, kText, 1.25);
}

} // namespace ormund
