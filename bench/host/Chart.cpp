#include "bench/host/Report.h"

#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <cstdio>

namespace ormund {

namespace {
constexpr double kScale = 2;
constexpr double kWidth = 820;
constexpr double kRowHeight = 26;
constexpr double kTop = 46;
constexpr double kLeft = 190;
constexpr double kRight = 70;
constexpr double kLeast = 0.1; // ns a frame at the left edge of a logarithmic scale

struct Colour {
    double red, green, blue;
};
constexpr Colour kPaper{0.98, 0.98, 0.97};
constexpr Colour kInk{0.16, 0.17, 0.20};
constexpr Colour kLine{0.84, 0.84, 0.83};
constexpr Colour kOurs{0.90, 0.45, 0.13};
constexpr Colour kFloorColour{0.35, 0.55, 0.40};
constexpr Colour kPeer{0.55, 0.60, 0.68};

class Chart {
public:
    explicit Chart(const std::vector<Result>& all)
        : results(all)
        , height(kTop + kRowHeight * static_cast<double>(all.size()) + 34)
        , surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(kWidth * kScale),
              static_cast<int>(height * kScale)))
        , cairo(cairo_create(surface))
    {
        for (const Result& result : results)
            most = std::max(most, result.cost[0].worst);
        most = std::pow(10, std::ceil(std::log10(most)));
        cairo_scale(cairo, kScale, kScale);
        cairo_select_font_face(
            cairo, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
        set(kPaper);
        cairo_paint(cairo);
    }
    ~Chart()
    {
        cairo_destroy(cairo);
        cairo_surface_destroy(surface);
    }
    Chart(const Chart&) = delete;
    Chart& operator=(const Chart&) = delete;

    bool write(const std::string& path)
    {
        cairo_set_font_size(cairo, 14);
        text("Nanoseconds a frame, block 64: median, and the worst block as a line", 14, 24, kInk);
        cairo_set_font_size(cairo, 11);
        grid();
        for (size_t i = 0; i < results.size(); ++i)
            row(results[i], kTop + kRowHeight * static_cast<double>(i));
        return cairo_surface_write_to_png(surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
    }

private:
    double x(double nanoseconds) const
    {
        const double part =
            std::log(std::max(nanoseconds, kLeast) / kLeast) / std::log(most / kLeast);
        return kLeft + part * (kWidth - kLeft - kRight);
    }
    void set(const Colour& colour)
    {
        cairo_set_source_rgb(cairo, colour.red, colour.green, colour.blue);
    }
    void text(const std::string& words, double left, double base, const Colour& colour)
    {
        set(colour);
        cairo_move_to(cairo, left, base);
        cairo_show_text(cairo, words.c_str());
    }
    void textEndingAt(const std::string& words, double right, double base, const Colour& colour)
    {
        cairo_text_extents_t size;
        cairo_text_extents(cairo, words.c_str(), &size);
        text(words, right - size.x_advance, base, colour);
    }

    void grid()
    {
        const double bottom = height - 30;
        cairo_set_line_width(cairo, 1);
        for (double value = kLeast; value <= most * 1.01; value *= 10) {
            set(kLine);
            cairo_move_to(cairo, std::round(x(value)) + 0.5, kTop - 6);
            cairo_line_to(cairo, std::round(x(value)) + 0.5, bottom);
            cairo_stroke(cairo);
            char number[16];
            std::snprintf(number, sizeof number, "%g", value);
            text(number, x(value) - 4, bottom + 16, kInk);
        }
    }

    void row(const Result& result, double top)
    {
        const Entrant& entrant = result.entrant;
        const bool isOurs = entrant.name.starts_with("Ormund");
        textEndingAt(entrant.name, kLeft - 10, top + 17, kInk);
        set(isOurs ? kOurs : entrant.role == Role::Floor ? kFloorColour : kPeer);
        const BlockCost& cost = result.cost[0];
        cairo_rectangle(
            cairo, kLeft, top + 5, std::max(x(cost.median) - kLeft, 1.0), kRowHeight - 10);
        cairo_fill(cairo);
        set(kInk);
        cairo_set_line_width(cairo, 1.5);
        cairo_move_to(cairo, x(cost.median), top + kRowHeight / 2);
        cairo_line_to(cairo, x(cost.worst), top + kRowHeight / 2);
        cairo_stroke(cairo);
        char number[16];
        std::snprintf(number, sizeof number, cost.median < 10 ? "%.1f" : "%.0f", cost.median);
        text(number, x(cost.worst) + 6, top + 17, kInk);
    }

    const std::vector<Result>& results;
    double height;
    double most = 1;
    cairo_surface_t* surface;
    cairo_t* cairo;
};
} // namespace

bool writeChart(const std::string& path, const std::vector<Result>& results)
{
    return Chart(results).write(path);
}

} // namespace ormund
