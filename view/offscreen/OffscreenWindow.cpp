#include "view/offscreen/OffscreenWindow.h"

#include <cairo.h>

namespace ormund {

OffscreenWindow::OffscreenWindow(int width, int height) { OffscreenWindow::resize(width, height); }

OffscreenWindow::~OffscreenWindow() { cairo_surface_destroy(surface); }

void OffscreenWindow::present(std::span<const CRect> parts)
{
    presented.assign(parts.begin(), parts.end());
    ++presents;
}

void OffscreenWindow::resize(int width, int height)
{
    if (surface)
        cairo_surface_destroy(surface);
    surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
}

bool OffscreenWindow::dragFiles(const std::vector<std::string>& paths)
{
    draggedFiles = paths;
    return !paths.empty();
}

int OffscreenWindow::getWidth() const { return cairo_image_surface_get_width(surface); }
int OffscreenWindow::getHeight() const { return cairo_image_surface_get_height(surface); }

uint32_t OffscreenWindow::pixel(int x, int y) const
{
    if (x < 0 || y < 0 || x >= getWidth() || y >= getHeight())
        return 0;
    cairo_surface_flush(surface);
    const unsigned char* row = cairo_image_surface_get_data(surface)
        + static_cast<long>(y) * cairo_image_surface_get_stride(surface);
    return reinterpret_cast<const uint32_t*>(row)[x] & 0xFFFFFFu;
}

bool OffscreenWindow::writePng(const std::string& path) const
{
    return cairo_surface_write_to_png(surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
}

} // namespace ormund
