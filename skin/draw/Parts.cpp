#include "skin/draw/Parts.h"

#include <cstdlib>

namespace ormund {

using namespace palette;

void drawNothing(Paint&, int) { }

void well(
    Paint& paint, double x, double y, double width, double height, double radius, const Ink& frame)
{
    paint.rounded(x, y, width, height, radius, kWell);
    paint.frame(x, y, width, height, radius, frame);
}

void raised(Paint& paint, double x, double y, double width, double height, Look look, double radius)
{
    const bool pressed = look == Look::Pressed, hover = look == Look::Hover;
    paint.rounded(x, y, width, height, radius, pressed ? kBodyPressed : hover ? kBodyHover : kBody);
    paint.frame(x, y, width, height, radius, hover ? kFrameHover : kBodyFrame);
}

void lit(Paint& paint, double x, double y, double width, double height, const Ink& hue, Look look,
    double radius)
{
    const Ink body = look == Look::Pressed ? mix(hue, kBlack, 0.08)
        : look == Look::Hover              ? mix(hue, kWhite, 0.12)
                                           : hue;
    paint.rounded(x, y, width, height, radius, body);
    paint.frame(x, y, width, height, radius, mix(body, kWhite, 0.2));
}

Ink contentInk(Look look, const Ink& hue)
{
    switch (look) {
    case Look::Pressed:
        return hue;
    case Look::Hover:
        return kText;
    default:
        return kBodyText;
    }
}

std::string signedNumber(int value)
{
    std::string words = value < 0 ? "\u2212" : value > 0 ? "+" : "";
    words += std::to_string(std::abs(value));
    return words;
}

} // namespace ormund
