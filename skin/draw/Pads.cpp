// The pads that are played with, and the play button.
#include "skin/draw/Parts.h"

namespace ormund {

using namespace palette;

namespace {

constexpr Ink kPadFrame = ink(0x3F4752);
constexpr Ink kBarOff = ink(0x454D58);

struct PadMeasures {
    double barLeft, barTop, barWidth;
};

// The body fills the frame but for the lowest pixel, which is its shadow.
void padBody(Paint& paint, const ButtonFrame& button, const Ink& hue, const PadMeasures& m)
{
    const double w = paint.width(), h = paint.height() - 1;
    const bool on = button.state == 1;
    paint.rounded(0, 2, w, h - 1, kPadRadius, kHeadEdge.faded(0.75));
    Ink edge = kPadFrame, bar = kBarOff;
    switch (button.look) {
    case Look::Pressed:
        paint.rounded(0, 0, w, h, kPadRadius, kBodyPressed);
        edge = on ? hue : kBodyFrame;
        bar = on ? kWhite : kBarOff;
        break;
    default: {
        const bool hover = button.look == Look::Hover;
        Ink top = hover ? ink(0x414955) : ink(0x323841);
        Ink bottom = hover ? ink(0x353C46) : ink(0x282D34);
        edge = hover ? kFrameHover : kPadFrame;
        if (on) {
            const Ink base = hover ? mix(hue, kWhite, 0.12) : hue;
            top = mix(base, kWhite, 0.1);
            bottom = mix(base, kBlack, 0.06);
            edge = mix(base, kWhite, 0.35);
            bar = kWhite;
        }
        paint.gradient(0, 0, w, h, kPadRadius, top, bottom);
    }
    }
    paint.frame(0, 0, w, h, kPadRadius, edge);
    paint.rounded(m.barLeft, m.barTop + pressShift(button.look), m.barWidth, 2, 1, bar);
}

// What stands on the body: dark on a lit one, in the hue on a pressed one.
Ink padInk(const ButtonFrame& button, const Ink& hue)
{
    if (button.look == Look::Pressed)
        return hue;
    if (button.state == 1)
        return kDarkInk;
    return contentInk(button.look);
}

const char* nameOfAction(Icon icon)
{
    switch (icon) {
    case Icon::Gate:
        return "GATE";
    case Icon::VelocityGate:
        return "VELOCITY";
    case Icon::Looper:
        return "LOOPER";
    case Icon::Slowdown:
        return "SLOW";
    case Icon::Retrigger:
        return "RETRIG";
    case Icon::HalfSpeed:
        return "HALF";
    case Icon::Step:
        return "STEP";
    default:
        return "MUTE";
    }
}

constexpr PadMeasures kAction{9, 39, 33};
constexpr PadMeasures kPlayBar{18, 32, 85};
// Eight letters have to fit between the edges.
constexpr TextStyle kPadText{9, 0.2, Weight::SemiBold};

} // namespace

void drawPadWith(Paint& paint, int frame, Icon icon)
{
    const ButtonFrame button = buttonFrame(frame);
    padBody(paint, button, kPerformance, kAction);
    const Ink content = padInk(button, kPerformance);
    const double shift = pressShift(button.look);
    drawIcon(paint, icon, 25.5, 16.5 + shift, 14.4, content, 1.5);
    paint.text(nameOfAction(icon), 25.5, 32 + shift, kPadText, content, Align::Centre);
}

void drawPlay(Paint& paint, int frame)
{
    const ButtonFrame button = buttonFrame(frame);
    padBody(paint, button, kNeutral, kPlayBar);
    const Ink content = padInk(button, kNeutral);
    const double shift = pressShift(button.look);
    const TextStyle style{11, 1, Weight::SemiBold};
    drawIcon(paint, Icon::Play, 41, 16.5 + shift, 12, content);
    paint.text("PLAY", 52, 16.5 + shift, style, content);
}

} // namespace ormund
