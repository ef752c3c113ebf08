#include "skin/draw/Icons.h"

#include <initializer_list>
#include <numbers>

namespace ormund {

namespace {

struct Spot {
    double x, y;
};

// Draws in grid units; keeps the line's thickness in pixels.
class IconPen {
public:
    IconPen(Paint& target, double x, double y, double size, const Ink& ink, double line)
        : paint(target), cx(x), cy(y), unit(size / 12), colour(ink), thickness(line)
    {
    }

    void path(std::initializer_list<Spot> spots) const
    {
        paint.stroke(thickness, colour, [&](cairo_t* cr) { trace(cr, spots); });
    }
    void solid(std::initializer_list<Spot> spots) const
    {
        paint.fill(colour, [&](cairo_t* cr) {
            trace(cr, spots);
            cairo_close_path(cr);
        });
    }
    void dot(double x, double y, double radius) const
    {
        paint.disc(cx + x * unit, cy + y * unit, radius * unit, colour);
    }
    void bar(double x0, double y0, double x1, double y1, double radius = 0) const
    {
        paint.fill(colour, [&](cairo_t* cr) { box(cr, x0, y0, x1, y1, radius); });
    }
    void outline(double x0, double y0, double x1, double y1, double radius) const
    {
        paint.stroke(thickness, colour, [&](cairo_t* cr) { box(cr, x0, y0, x1, y1, radius); });
    }
    void ring(double x, double y, double radius, double from, double to, bool round = true) const
    {
        paint.arc(cx + x * unit, cy + y * unit, radius * unit, from, to, thickness, colour, round);
    }
    void curve(Spot a, Spot b, Spot c, Spot d) const
    {
        paint.stroke(thickness, colour, [&](cairo_t* cr) {
            cairo_move_to(cr, cx + a.x * unit, cy + a.y * unit);
            cairo_curve_to(cr, cx + b.x * unit, cy + b.y * unit, cx + c.x * unit, cy + c.y * unit,
                cx + d.x * unit, cy + d.y * unit);
        });
    }
    void digit(const char* words, double x, double y, double size) const
    {
        paint.text(words, cx + x * unit, cy + y * unit, {size * unit, 0, Weight::SemiBold}, colour,
            Align::Centre);
    }

private:
    void trace(cairo_t* cr, std::initializer_list<Spot> spots) const
    {
        for (const Spot& spot : spots)
            cairo_line_to(cr, cx + spot.x * unit, cy + spot.y * unit);
    }
    void box(cairo_t* cr, double x0, double y0, double x1, double y1, double r) const
    {
        const double left = cx + x0 * unit, top = cy + y0 * unit;
        const double right = cx + x1 * unit, bottom = cy + y1 * unit;
        const double radius = r * unit;
        constexpr double kHalf = std::numbers::pi / 2;
        cairo_new_sub_path(cr);
        cairo_arc(cr, right - radius, top + radius, radius, -kHalf, 0);
        cairo_arc(cr, right - radius, bottom - radius, radius, 0, kHalf);
        cairo_arc(cr, left + radius, bottom - radius, radius, kHalf, 2 * kHalf);
        cairo_arc(cr, left + radius, top + radius, radius, 2 * kHalf, 3 * kHalf);
        cairo_close_path(cr);
    }

    Paint& paint;
    double cx, cy, unit;
    Ink colour;
    double thickness;
};

// Posts in a row and a leap from the first to the last.
void leap(const IconPen& pen, int posts)
{
    for (int i = 0; i < posts; ++i) {
        const double x = -5 + 10.0 * i / (posts - 1);
        pen.bar(x - 0.95, 2.6, x + 0.95, 5.2, 0.4);
    }
    pen.curve({-5, 0.6}, {-3.6, -4.6}, {2.4, -5.2}, {4.3, -1});
    pen.solid({{2.1, -0.7}, {6.1, -1.9}, {5.3, 1.6}});
}

void padlock(const IconPen& pen)
{
    pen.bar(-3.7, -0.7, 3.7, 5.1, 0.9);
    pen.path({{-2.2, -0.7}, {-2.2, -2.6}});
    pen.ring(0, -2.6, 2.2, -90, 90);
    pen.path({{2.2, -2.6}, {2.2, -0.7}});
}

void midiSheet(const IconPen& pen)
{
    pen.outline(-5.6, -6.4, 2.4, 5, 1.2);
    pen.path({{-2.7, 2}, {-2.7, -3.2}, {0.6, -4}, {0.6, 1}});
    pen.dot(-3.3, 2, 1);
    pen.dot(0, 1, 1);
    pen.path({{3.4, 3}, {6.6, 6.2}});
    pen.path({{6.8, 3.6}, {6.8, 6.4}, {4, 6.4}});
}

void editing(const IconPen& pen, Icon icon)
{
    switch (icon) {
    case Icon::Copy:
        pen.outline(-5, -5, 2, 2, 1.3);
        pen.path({{5, -2}, {5, 5}, {-2, 5}});
        break;
    case Icon::Paste:
        pen.outline(-4, -4, 4, 5, 1.3);
        pen.bar(-2.1, -5.6, 2.1, -3, 0.8);
        pen.path({{0, -1}, {0, 2.8}});
        pen.path({{-1.7, 1.2}, {0, 2.9}, {1.7, 1.2}});
        break;
    case Icon::Clear:
        pen.path({{-4, -4}, {4, 4}});
        pen.path({{4, -4}, {-4, 4}});
        break;
    case Icon::Random:
        pen.outline(-5, -5, 5, 5, 2.2);
        for (const Spot& eye : {Spot{-2.3, -2.3}, {2.3, -2.3}, {0, 0}, {-2.3, 2.3}, {2.3, 2.3}})
            pen.dot(eye.x, eye.y, 0.95);
        break;
    case Icon::Mutate:
        pen.path({{-4.4, 5}, {-4.4, -1.4}, {0, -4.6}, {4.4, 0.6}});
        pen.path({{0, 5}, {0, -4}});
        pen.path({{4.4, 5}, {4.4, 0.6}});
        pen.dot(-4.4, -1.4, 1.5);
        pen.dot(0, -4.6, 1.5);
        pen.dot(4.4, 0.6, 1.5);
        break;
    case Icon::ShiftLeft:
        pen.solid({{3, -4.4}, {3, 4.4}, {-3.4, 0}});
        break;
    case Icon::ShiftRight:
        pen.solid({{-3, -4.4}, {-3, 4.4}, {3.4, 0}});
        break;
    case Icon::ShiftUp:
        pen.solid({{-4.4, 3}, {4.4, 3}, {0, -3.4}});
        break;
    case Icon::ShiftDown:
        pen.solid({{-4.4, -3}, {4.4, -3}, {0, 3.4}});
        break;
    case Icon::Previous:
        pen.path({{2.2, -4.4}, {-2.2, 0}, {2.2, 4.4}});
        break;
    case Icon::Next:
        pen.path({{-2.2, -4.4}, {2.2, 0}, {-2.2, 4.4}});
        break;
    default:
        break;
    }
}

void order(const IconPen& pen, Icon icon)
{
    switch (icon) {
    case Icon::Forward:
        pen.path({{-5, 0}, {5, 0}});
        pen.path({{1.6, -3.4}, {5, 0}, {1.6, 3.4}});
        break;
    case Icon::Backward:
        pen.path({{5, 0}, {-5, 0}});
        pen.path({{-1.6, -3.4}, {-5, 0}, {-1.6, 3.4}});
        break;
    case Icon::Shuffle:
        pen.path({{-5.6, -2.9}, {-3.2, -2.9}, {1.6, 2.9}, {3.2, 2.9}});
        pen.path({{-5.6, 2.9}, {-3.2, 2.9}, {-1.9, 1.4}});
        pen.path({{0.4, -1.4}, {1.6, -2.9}, {3.2, -2.9}});
        pen.solid({{2.9, -5.1}, {6.1, -2.9}, {2.9, -0.7}});
        pen.solid({{2.9, 0.7}, {6.1, 2.9}, {2.9, 5.1}});
        break;
    case Icon::Each2nd:
        leap(pen, 2);
        break;
    case Icon::Each3rd:
        leap(pen, 3);
        break;
    case Icon::Each4th:
        leap(pen, 4);
        break;
    default:
        break;
    }
}

void action(const IconPen& pen, Icon icon)
{
    switch (icon) {
    case Icon::Gate:
        pen.path({{-6, 4.6}, {-3, 4.6}, {-3, -4.4}, {3, -4.4}, {3, 4.6}, {6, 4.6}});
        pen.path({{-1.3, -0.8}, {1.3, -0.8}});
        break;
    case Icon::VelocityGate:
        pen.bar(-5.2, 2.4, -3.2, 5.4, 0.3);
        pen.bar(-2.2, -1.9, -0.2, 5.4, 0.3);
        pen.bar(0.8, 0.9, 2.8, 5.4, 0.3);
        pen.bar(3.8, -4.2, 5.8, 5.4, 0.3);
        pen.path({{-6, -0.6}, {-4, -0.6}});
        pen.path({{-3, -0.6}, {0.4, -0.6}});
        pen.path({{1.4, -0.6}, {3, -0.6}});
        pen.path({{5, -0.6}, {6.4, -0.6}});
        break;
    case Icon::Looper:
        pen.ring(0, 0.6, 5, 32, 322);
        pen.solid({{-0.6, -5.6}, {4, -6.4}, {2.9, -1.9}});
        for (const double x : {-2.1, 0.0, 2.1})
            pen.bar(x - 0.65, -1.2, x + 0.65, 2.4, 0.3);
        break;
    case Icon::Slowdown:
        pen.path({{-5.6, -5}, {-5.6, 5}});
        pen.path({{-3.7, -4.6}, {-3.7, 4.6}});
        pen.path({{-1.3, -4}, {-1.3, 4}});
        pen.path({{1.7, -3.2}, {1.7, 3.2}});
        pen.path({{5.4, -2.2}, {5.4, 2.2}});
        break;
    case Icon::Retrigger:
        pen.path({{-5.6, -5}, {-5.6, 5}});
        pen.ring(1.5, 0.2, 4.4, -52, 232);
        pen.solid({{-3.6, -2.7}, {0.2, -5.2}, {0.4, -0.7}});
        break;
    case Icon::HalfSpeed:
        pen.path({{4.6, -5}, {-4.6, 5.2}});
        pen.digit("1", -3.6, -3, 7.5);
        pen.digit("2", 3.8, 3.2, 7.5);
        break;
    case Icon::Step:
        pen.path({{-6, 4.6}, {-2.6, 4.6}, {-2.6, 0.8}, {1.2, 0.8}, {1.2, -3.2}, {6, -3.2}});
        pen.dot(-4.4, 1.7, 1.5);
        break;
    case Icon::Mute:
        pen.solid({{-5.8, -1.9}, {-3.6, -1.9}, {-0.4, -5}, {-0.4, 5}, {-3.6, 1.9}, {-5.8, 1.9}});
        pen.path({{2.1, -2.1}, {6, 2.1}});
        pen.path({{6, -2.1}, {2.1, 2.1}});
        break;
    default:
        break;
    }
}

void sign(const IconPen& pen, Icon icon)
{
    switch (icon) {
    case Icon::Play:
        pen.solid({{-4, -5.4}, {5.2, 0}, {-4, 5.4}});
        break;
    case Icon::Stop:
        pen.bar(-4.2, -4.2, 4.2, 4.2, 0.9);
        break;
    case Icon::Record:
        pen.dot(0, 0, 4.4);
        break;
    case Icon::Lock:
        padlock(pen);
        break;
    case Icon::Power:
        pen.ring(0, 0.5, 4.6, 38, 322);
        pen.path({{0, -5.6}, {0, -0.6}});
        break;
    case Icon::ToSynth:
        pen.path({{-5.2, 0}, {1.4, 0}});
        pen.solid({{0.9, -3.4}, {5.8, 0}, {0.9, 3.4}});
        break;
    case Icon::Check:
        pen.path({{-3.9, 0.3}, {-1.2, 3}, {4.1, -3.1}});
        break;
    case Icon::DropDown:
        pen.solid({{-3.4, -2}, {3.4, -2}, {0, 2.2}});
        break;
    case Icon::MidiDrag:
        midiSheet(pen);
        break;
    case Icon::Roll:
        pen.path({{0, -6.6}, {0, 6.6}});
        pen.path({{-2.6, -4}, {0, -6.8}, {2.6, -4}});
        pen.path({{-2.6, 4}, {0, 6.8}, {2.6, 4}});
        break;
    default:
        break;
    }
}

} // namespace

void drawIcon(
    Paint& paint, Icon icon, double cx, double cy, double size, const Ink& colour, double thickness)
{
    const IconPen pen(paint, cx, cy, size, colour, thickness);
    if (icon <= Icon::Next)
        editing(pen, icon);
    else if (icon <= Icon::Each4th)
        order(pen, icon);
    else if (icon <= Icon::Mute)
        action(pen, icon);
    else
        sign(pen, icon);
}

} // namespace ormund
