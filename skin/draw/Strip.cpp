#include "skin/draw/Strip.h"

#include "skin/draw/Paint.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <zstd.h>

namespace ormund {

namespace {

// Unpacking takes as long whatever the level. The highest saves another eighth and takes the build
// twenty times as long.
constexpr int kCompressionLevel = 9;

int device(double place, double scale) { return int(std::floor(place * scale + 0.5)); }

} // namespace

Image::Image(int width, int height)
    : surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height))
{
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error("no image of this size");
}

const uint32_t* Image::row(int y) const
{
    const unsigned char* data = cairo_image_surface_get_data(surface);
    return reinterpret_cast<const uint32_t*>(
        data + size_t(y) * size_t(cairo_image_surface_get_stride(surface)));
}

int frameTop(const SkinRow& row, int frame, double scale)
{
    return device(double(row.frameHeight) * frame, scale);
}

void drawFrame(cairo_surface_t* target, const SkinRow& row, int frame, double scale, int x, int y)
{
    const int rows = frameTop(row, frame + 1, scale) - frameTop(row, frame, scale);
    cairo_t* cr = cairo_create(target);
    cairo_rectangle(cr, x, y, device(row.frameWidth, scale), rows);
    cairo_clip(cr);
    cairo_translate(cr, x, y);
    cairo_scale(cr, scale, scale);
    Paint paint(cr, scale, row.frameWidth, row.frameHeight);
    row.draw(paint, frame);
    cairo_destroy(cr);
}

int framesOfPart(const SkinRow& row, double scale)
{
    constexpr double kPixels = 65536;
    return std::clamp(
        int(kPixels / (row.frameWidth * row.frameHeight * scale * scale)), 1, row.frames);
}

std::unique_ptr<Image> makeFrames(const SkinRow& row, double scale, int from, int to)
{
    const int top = frameTop(row, from, scale);
    auto image =
        std::make_unique<Image>(device(row.frameWidth, scale), frameTop(row, to, scale) - top);
    for (int frame = from; frame < to; ++frame)
        drawFrame(image->get(), row, frame, scale, 0, frameTop(row, frame, scale) - top);
    cairo_surface_flush(image->get());
    return image;
}

std::unique_ptr<Image> makeStrip(const SkinRow& row, double scale)
{
    return makeFrames(row, scale, 0, row.frames);
}

std::vector<uint8_t> packed(const Image& image)
{
    std::vector<uint32_t> pixels;
    for (int y = 0; y < image.height(); ++y)
        pixels.insert(pixels.end(), image.row(y), image.row(y) + image.width());
    const size_t bytes = pixels.size() * sizeof pixels[0];
    std::vector<uint8_t> out(ZSTD_compressBound(bytes));
    const size_t size =
        ZSTD_compress(out.data(), out.size(), pixels.data(), bytes, kCompressionLevel);
    if (ZSTD_isError(size))
        throw std::runtime_error(ZSTD_getErrorName(size));
    out.resize(size);
    return out;
}

void writePng(const std::string& path, const Image& image)
{
    if (cairo_surface_write_to_png(image.get(), path.c_str()) != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error("cannot write " + path);
}

} // namespace ormund
