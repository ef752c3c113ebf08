#include "skin/draw/AppIcon.h"

#include "skin/draw/Drawings.h"

#include <cairo-svg.h>

#include <stdexcept>

namespace ormund {

using namespace palette;

namespace {

constexpr double kGrid = 64;

// A dark tile with the ring of steps, and five bars in the tracks' hues inside it.
void drawIconOn(Paint& paint, bool small)
{
    paint.gradient(2, 2, 60, 60, 14, ink(0x2A3038), kGround);
    paint.frame(2, 2, 60, 60, 14, kMenuFrame, small ? 2 : 1);
    productRing(paint, 32, 32, small ? 25 : 24, kText);
    if (small)
        return;
    constexpr struct {
        Ink hue;
        double height;
    } kBars[] = {{kVelocity, 9}, {kGate, 15}, {kPerformance, 11}, {kModulation, 6}};
    for (int i = 0; i < 4; ++i)
        paint.rounded(21.5 + i * 5.5, 39.5 - kBars[i].height, 4, kBars[i].height, 1, kBars[i].hue);
}

} // namespace

std::unique_ptr<Image> appIcon(int size)
{
    auto image = std::make_unique<Image>(size, size);
    cairo_t* cr = cairo_create(image->get());
    const double scale = size / kGrid;
    cairo_scale(cr, scale, scale);
    Paint paint(cr, scale, kGrid, kGrid);
    drawIconOn(paint, size <= 32);
    cairo_destroy(cr);
    cairo_surface_flush(image->get());
    return image;
}

void writeAppIconSvg(const std::string& path)
{
    cairo_surface_t* surface = cairo_svg_surface_create(path.c_str(), kGrid, kGrid);
    cairo_t* cr = cairo_create(surface);
    Paint paint(cr, 1, kGrid, kGrid);
    drawIconOn(paint, false);
    cairo_destroy(cr);
    cairo_surface_finish(surface);
    const bool failed = cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    if (failed)
        throw std::runtime_error("cannot write " + path);
}

} // namespace ormund
