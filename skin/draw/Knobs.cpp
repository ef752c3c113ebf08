// Knobs: an arc over 270 degrees for the value round a dark cap with a pointer.
#include "skin/draw/Parts.h"

#include <cmath>
#include <numbers>

using namespace palette;

namespace {

constexpr int kLastFrame = 126;
constexpr double kSweepStart = -135;
constexpr double kSweep = 270;

struct KnobLook {
    double cx, cy, radius; // of the arc's middle line
    double arc;            // thickness
    double pointer;
    Ink hue;
};

double angleOf(int frame) { return kSweepStart + kSweep * frame / kLastFrame; }

void ray(Paint& paint, const KnobLook& k, double angle, double from, double to, double thickness,
    const Ink& colour)
{
    const double turn = (angle - 90) * std::numbers::pi / 180;
    const double dx = std::cos(turn), dy = std::sin(turn);
    paint.line(
        k.cx + dx * from, k.cy + dy * from, k.cx + dx * to, k.cy + dy * to, thickness, colour);
}

void knob(Paint& paint, const KnobLook& k, int frame)
{
    const double angle = angleOf(frame);
    paint.arc(k.cx, k.cy, k.radius, kSweepStart, kSweepStart + kSweep, k.arc, kBodyFrame);
    if (frame > 0)
        paint.arc(k.cx, k.cy, k.radius, kSweepStart, angle, k.arc, k.hue);

    const double cap = k.radius - 3.2;
    paint.disc(k.cx, k.cy + 0.8, cap + 0.3, kHeadEdge.faded(0.55));
    paint.disc(k.cx, k.cy, cap, mix(kBodyFrame, kBlack, 0.1));
    cairo_t* cr = paint.context();
    cairo_pattern_t* ramp = cairo_pattern_create_linear(0, k.cy - cap, 0, k.cy + cap);
    const Ink top = ink(0x3B424C), bottom = ink(0x262B32);
    cairo_pattern_add_color_stop_rgb(ramp, 0, top.red, top.green, top.blue);
    cairo_pattern_add_color_stop_rgb(ramp, 1, bottom.red, bottom.green, bottom.blue);
    cairo_new_path(cr);
    cairo_arc(cr, k.cx, k.cy, cap - 0.7, 0, 2 * std::numbers::pi);
    cairo_set_source(cr, ramp);
    cairo_fill(cr);
    cairo_pattern_destroy(ramp);
    ray(paint, k, angle, cap * 0.34, cap * 0.84, k.pointer, kWhite.faded(0.95));
}

constexpr KnobLook kBesidePad{18.5, 18.5, 15, 2.2, 2, kPerformance};
constexpr KnobLook kSmall{10.5, 10.5, 8.6, 2, 1.8, kNeutral};
// Its label is printed on the page, in the lowest 8 pixels of the same rectangle.
constexpr KnobLook kSynth{20.5, 17, 14.6, 2.2, 2, kNeutral};

} // namespace

void drawPadKnob(Paint& paint, int frame) { knob(paint, kBesidePad, frame); }

void drawSmallKnob(Paint& paint, int frame) { knob(paint, kSmall, frame); }

void drawSynthKnob(Paint& paint, int frame) { knob(paint, kSynth, frame); }

void drawKnobMark(Paint& paint, int frame)
{
    const KnobLook& k = kBesidePad;
    ray(paint, k, angleOf(frame), k.radius, k.radius, 5, kGround);
    ray(paint, k, angleOf(frame), k.radius, k.radius, 3.2, kWhite);
}
