// A strip as an image: its frames one below the other, each drawn alone and clipped.
#pragma once

#include "skin/draw/SkinTable.h"

#include <cairo.h>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ormund {

// An image that frees itself.
class Image {
public:
    Image(int width, int height);
    ~Image() { cairo_surface_destroy(surface); }
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;

    cairo_surface_t* get() const { return surface; }
    int width() const { return cairo_image_surface_get_width(surface); }
    int height() const { return cairo_image_surface_get_height(surface); }
    // Premultiplied ARGB, a row of width() values.
    const uint32_t* row(int y) const;

private:
    cairo_surface_t* surface;
};

// First device row of a frame.
int frameTop(const SkinRow& row, int frame, double scale);
// So many frames stand in one embedded image at a scale: enough to compress well, few enough to
// decode no more than is shown.
int framesOfPart(const SkinRow& row, double scale);
// Frames from <= frame < to, one below the other.
std::unique_ptr<Image> makeFrames(const SkinRow& row, double scale, int from, int to);
// The whole strip, round(width * scale) by round(height * scale) pixels.
std::unique_ptr<Image> makeStrip(const SkinRow& row, double scale);
// One frame at its place on another image, in device pixels from `x` and `y`.
void drawFrame(cairo_surface_t* target, const SkinRow& row, int frame, double scale, int x, int y);

// The pixels without gaps, compressed; what SkinProvider unpacks.
std::vector<uint8_t> packed(const Image& image);
// Throws std::runtime_error when the file cannot be written.
void writePng(const std::string& path, const Image& image);

} // namespace ormund
