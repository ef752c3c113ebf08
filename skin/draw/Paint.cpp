#include "skin/draw/Paint.h"

#include "view/TextUse.h"
#include "view/Typeface.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ormund {

namespace {

constexpr double kDegree = std::numbers::pi / 180;

Typeface& faceOf(const TextStyle& style)
{
    return style.weight == Weight::Medium ? Typeface::medium() : Typeface::semiBold();
}

} // namespace

Paint::Paint(cairo_t* context, double pixelsPerUnit, double frameWidth, double frameHeight)
    : cr(context), pixels(pixelsPerUnit), w(frameWidth), h(frameHeight)
{
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_BEST);
}

double Paint::snap(double place) const { return std::floor(place * pixels + 0.5) / pixels; }

void Paint::setInk(const Ink& c) { cairo_set_source_rgba(cr, c.red, c.green, c.blue, c.alpha); }

void Paint::roundedPath(double x0, double y0, double x1, double y1, double radius)
{
    const double r = std::max(0.0, std::min({radius, (x1 - x0) / 2, (y1 - y0) / 2}));
    if (r == 0) {
        cairo_rectangle(cr, x0, y0, x1 - x0, y1 - y0);
        return;
    }
    cairo_new_sub_path(cr);
    cairo_arc(cr, x1 - r, y0 + r, r, -90 * kDegree, 0);
    cairo_arc(cr, x1 - r, y1 - r, r, 0, 90 * kDegree);
    cairo_arc(cr, x0 + r, y1 - r, r, 90 * kDegree, 180 * kDegree);
    cairo_arc(cr, x0 + r, y0 + r, r, 180 * kDegree, 270 * kDegree);
    cairo_close_path(cr);
}

void Paint::rect(double x, double y, double width, double height, const Ink& colour)
{
    rounded(x, y, width, height, 0, colour);
}

void Paint::rounded(
    double x, double y, double width, double height, double radius, const Ink& colour)
{
    setInk(colour);
    roundedPath(snap(x), snap(y), snap(x + width), snap(y + height), radius);
    cairo_fill(cr);
}

void Paint::gradient(double x, double y, double width, double height, double radius, const Ink& top,
    const Ink& bottom)
{
    cairo_pattern_t* ramp = cairo_pattern_create_linear(0, y, 0, y + height);
    cairo_pattern_add_color_stop_rgba(ramp, 0, top.red, top.green, top.blue, top.alpha);
    cairo_pattern_add_color_stop_rgba(ramp, 1, bottom.red, bottom.green, bottom.blue, bottom.alpha);
    cairo_set_source(cr, ramp);
    roundedPath(snap(x), snap(y), snap(x + width), snap(y + height), radius);
    cairo_fill(cr);
    cairo_pattern_destroy(ramp);
}

void Paint::frame(double x, double y, double width, double height, double radius, const Ink& colour,
    double thickness)
{
    // At least one device pixel, and a whole number of them.
    const double t = std::max(1.0, std::floor(thickness * pixels + 0.5)) / pixels;
    const double x0 = snap(x), y0 = snap(y), x1 = snap(x + width), y1 = snap(y + height);
    setInk(colour);
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
    roundedPath(x0, y0, x1, y1, radius);
    roundedPath(x0 + t, y0 + t, x1 - t, y1 - t, radius - t);
    cairo_fill(cr);
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_WINDING);
}

void Paint::arc(double cx, double cy, double radius, double from, double to, double thickness,
    const Ink& colour, bool roundEnds)
{
    cairo_new_path(cr);
    cairo_arc(cr, cx, cy, radius, (from - 90) * kDegree, (to - 90) * kDegree);
    cairo_set_line_width(cr, thickness);
    cairo_set_line_cap(cr, roundEnds ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
    setInk(colour);
    cairo_stroke(cr);
}

void Paint::disc(double cx, double cy, double radius, const Ink& colour)
{
    cairo_new_path(cr);
    cairo_arc(cr, cx, cy, radius, 0, 2 * std::numbers::pi);
    setInk(colour);
    cairo_fill(cr);
}

void Paint::line(double x0, double y0, double x1, double y1, double thickness, const Ink& colour)
{
    stroke(thickness, colour, [=](cairo_t* c) {
        cairo_move_to(c, x0, y0);
        cairo_line_to(c, x1, y1);
    });
}

double Paint::textWidth(std::string_view words, const TextStyle& style) const
{
    return faceOf(style).width(words, style.size, style.tracking);
}

void Paint::write(
    std::string_view words, double x, double baseline, const TextStyle& style, const Ink& colour)
{
    if (textObserver)
        textObserver({words, style.size, colour.red, colour.green, colour.blue, colour.alpha, cr, x,
            baseline - faceOf(style).capHeight(style.size), x + textWidth(words, style), baseline});
    cairo_new_path(cr);
    faceOf(style).addPath(cr, words, style.size, x, baseline, style.tracking);
    setInk(colour);
    cairo_fill(cr);
}

void Paint::text(std::string_view words, double x, double middle, const TextStyle& style,
    const Ink& colour, Align align)
{
    if (align != Align::Left)
        x -= textWidth(words, style) * (align == Align::Right ? 1 : 0.5);
    // The baseline stands on a whole pixel: the feet of the letters stay sharp.
    const double baseline = snap(middle + faceOf(style).capHeight(style.size) / 2);
    write(words, x, baseline, style, colour);
}

void Paint::verticalText(
    std::string_view words, double x, double y, const TextStyle& style, const Ink& colour)
{
    cairo_save(cr);
    cairo_translate(cr, snap(x + faceOf(style).capHeight(style.size) / 2), y);
    cairo_rotate(cr, -90 * kDegree);
    write(words, -textWidth(words, style) / 2, 0, style, colour);
    cairo_restore(cr);
}

void Paint::stroke(double thickness, const Ink& colour, const std::function<void(cairo_t*)>& draw)
{
    cairo_new_path(cr);
    draw(cr);
    cairo_set_line_width(cr, thickness);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    setInk(colour);
    cairo_stroke(cr);
}

void Paint::fill(const Ink& colour, const std::function<void(cairo_t*)>& draw)
{
    cairo_new_path(cr);
    draw(cr);
    setInk(colour);
    cairo_fill(cr);
}

void Paint::moved(double dx, double dy, const std::function<void()>& draw)
{
    cairo_save(cr);
    cairo_translate(cr, snap(dx), snap(dy));
    draw();
    cairo_restore(cr);
}

} // namespace ormund
