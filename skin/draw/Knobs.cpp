// Knobs: an arc over 270 degrees for the value round a dark cap with a pointer.
#include "panel/KnobShapes.h"
#include "skin/draw/Parts.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ormund {

using namespace palette;

namespace {

constexpr int kFrames = 127;
constexpr double kSweepStart = -135;
constexpr double kSweep = 270;

struct KnobLook {
    KnobShape shape;
    double arc; // thickness
    double pointer;
    Ink hue;
};

double angleOf(int frame) { return kSweepStart + kSweep * frame / (kFrames - 1); }

void ray(Paint& paint, const KnobShape& k, double angle, double from, double to, double thickness,
    const Ink& colour)
{
    const double turn = (angle - 90) * std::numbers::pi / 180;
    const double dx = std::cos(turn), dy = std::sin(turn);
    paint.line(k.x + dx * from, k.y + dy * from, k.x + dx * to, k.y + dy * to, thickness, colour);
}

// `from` is the angle at which the arc begins to grow.
void knob(Paint& paint, const KnobLook& look, int frame, double from = kSweepStart)
{
    const KnobShape& k = look.shape;
    const double angle = angleOf(frame);
    paint.arc(k.x, k.y, k.radius, kSweepStart, kSweepStart + kSweep, look.arc, kBodyFrame);
    if (angle != from)
        paint.arc(
            k.x, k.y, k.radius, std::min(from, angle), std::max(from, angle), look.arc, look.hue);

    const double cap = k.capRadius();
    paint.disc(k.x, k.y + 0.8, cap + 0.3, kHeadEdge.faded(0.55));
    paint.disc(k.x, k.y, cap, mix(kBodyFrame, kBlack, 0.1));
    cairo_t* cr = paint.context();
    cairo_pattern_t* ramp = cairo_pattern_create_linear(0, k.y - cap, 0, k.y + cap);
    const Ink top = ink(0x3B424C), bottom = ink(0x262B32);
    cairo_pattern_add_color_stop_rgb(ramp, 0, top.red, top.green, top.blue);
    cairo_pattern_add_color_stop_rgb(ramp, 1, bottom.red, bottom.green, bottom.blue);
    cairo_new_path(cr);
    cairo_arc(cr, k.x, k.y, cap - 0.7, 0, 2 * std::numbers::pi);
    cairo_set_source(cr, ramp);
    cairo_fill(cr);
    cairo_pattern_destroy(ramp);
    ray(paint, k, angle, cap * 0.34, cap * 0.84, look.pointer, kWhite.faded(0.95));
}

constexpr KnobLook kBesidePad{kKnobBesidePad, 2.2, 2, kPerformance};
constexpr KnobLook kSmall{kSmallKnob, 2, 1.8, kNeutral};
constexpr KnobLook kSynth{kSynthKnob, 2.2, 2, kNeutral};
constexpr double kTop = 0;

} // namespace

void drawPadKnob(Paint& paint, int frame) { knob(paint, kBesidePad, frame); }

void drawSmallKnob(Paint& paint, int frame) { knob(paint, kSmall, frame); }

void drawSynthKnob(Paint& paint, int frame)
{
    if (frame < kFrames)
        knob(paint, kSynth, frame);
    else
        knob(paint, kSynth, frame - kFrames, kTop);
}

void drawKnobMark(Paint& paint, int frame)
{
    const KnobShape& k = kKnobBesidePad;
    ray(paint, k, angleOf(frame), k.radius, k.radius, 5, kGround);
    ray(paint, k, angleOf(frame), k.radius, k.radius, 3.2, kWhite);
}

} // namespace ormund
