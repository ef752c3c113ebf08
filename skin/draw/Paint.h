// One frame of a strip to draw on, in panel pixels from its left top corner. Straight edges are
// put on whole device pixels at every scale; arcs and text are not.
#pragma once

#include "panel/Palette.h"

#include <cairo.h>
#include <functional>
#include <string_view>

namespace ormund {

enum class Align { Left, Centre, Right };
enum class Weight { Medium, SemiBold };

struct TextStyle {
    double size = 9;
    double tracking = 0.25;
    Weight weight = Weight::Medium;
};

namespace type {
inline constexpr TextStyle kLabel{9, 0.25, Weight::Medium};
inline constexpr TextStyle kTitle{9, 0.6, Weight::SemiBold};
inline constexpr TextStyle kButton{9, 0.4, Weight::SemiBold};
inline constexpr TextStyle kVertical{9, 0.9, Weight::SemiBold};
inline constexpr TextStyle kValue{11, 0, Weight::Medium};
inline constexpr TextStyle kValueBold{11, 0, Weight::SemiBold};
} // namespace type

class Paint {
public:
    Paint(cairo_t* context, double pixelsPerUnit, double frameWidth, double frameHeight);

    double width() const { return w; }
    double height() const { return h; }
    double scale() const { return pixels; }
    cairo_t* context() const { return cr; }
    // The whole device pixel nearest to a place, in panel pixels.
    double snap(double place) const;

    // Filled shapes, edges on whole device pixels.
    void rect(double x, double y, double width, double height, const Ink& fill);
    void rounded(double x, double y, double width, double height, double radius, const Ink& fill);
    void gradient(double x, double y, double width, double height, double radius, const Ink& top,
        const Ink& bottom);
    // A line of `thickness` inside the rectangle's edge.
    void frame(double x, double y, double width, double height, double radius, const Ink& colour,
        double thickness = 1);

    // Arcs: angles in degrees, 0 upward, clockwise.
    void arc(double cx, double cy, double radius, double from, double to, double thickness,
        const Ink& colour, bool roundEnds = true);
    void disc(double cx, double cy, double radius, const Ink& fill);
    void line(double x0, double y0, double x1, double y1, double thickness, const Ink& colour);

    // Text, `middle` being the middle of the capitals.
    void text(std::string_view words, double x, double middle, const TextStyle& style,
        const Ink& colour, Align align = Align::Left);
    // Read from below, centred on (x, y).
    void verticalText(
        std::string_view words, double x, double y, const TextStyle& style, const Ink& colour);
    double textWidth(std::string_view words, const TextStyle& style) const;

    // The path that `draw` leaves, stroked with round ends or filled.
    void stroke(double thickness, const Ink& colour, const std::function<void(cairo_t*)>& draw);
    void fill(const Ink& colour, const std::function<void(cairo_t*)>& draw);
    // Runs `draw` moved by (dx, dy).
    void moved(double dx, double dy, const std::function<void()>& draw);

private:
    void setInk(const Ink& colour);
    void write(std::string_view words, double x, double baseline, const TextStyle& style,
        const Ink& colour);
    void roundedPath(double x0, double y0, double x1, double y1, double radius);

    cairo_t* cr;
    double pixels;
    double w, h;
};

} // namespace ormund
