#include "skin/draw/Strip.h"

#include "skin/draw/Paint.h"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <stdexcept>
#include <unordered_map>

namespace {

int device(double place, double scale) { return int(std::floor(place * scale + 0.5)); }

struct Rgba {
    png_byte part[4];
};

Rgba unpremultiplied(uint32_t pixel)
{
    const uint32_t alpha = pixel >> 24;
    const auto part = [&](int shift) {
        const uint32_t value = pixel >> shift & 255;
        return png_byte(alpha == 0 ? 0 : (value * 255 + alpha / 2) / alpha);
    };
    return {{part(16), part(8), part(0), png_byte(alpha)}};
}

void append(png_structp png, png_bytep data, png_size_t size)
{
    auto& out = *static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
    out.insert(out.end(), data, data + size);
}

// The colours of an image in the order they appear; empty when there are more than 256.
std::unordered_map<uint32_t, int> coloursOf(const Image& image)
{
    std::unordered_map<uint32_t, int> index;
    uint32_t last = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const uint32_t pixel = image.row(y)[x];
            if (pixel == last && !index.empty())
                continue;
            last = pixel;
            index.emplace(pixel, int(index.size()));
            if (index.size() > 256)
                return {};
        }
    return index;
}

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

std::vector<uint8_t> encodePng(const Image& image)
{
    std::vector<uint8_t> out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    const auto colours = coloursOf(image);
    const bool indexed = !colours.empty();
    const size_t bytes = indexed ? 1 : 4;
    std::vector<png_byte> line(size_t(image.width()) * bytes);
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        throw std::runtime_error("libpng cannot write an image");
    }
    png_set_write_fn(png, &out, append, nullptr);
    png_set_compression_level(png, 9);
    png_set_IHDR(png, info, png_uint_32(image.width()), png_uint_32(image.height()), 8,
        indexed ? PNG_COLOR_TYPE_PALETTE : PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE,
        PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (indexed) {
        png_color table[256];
        png_byte alphas[256];
        for (const auto& [pixel, index] : colours) {
            const Rgba c = unpremultiplied(pixel);
            table[index] = {c.part[0], c.part[1], c.part[2]};
            alphas[index] = c.part[3];
        }
        png_set_PLTE(png, info, table, int(colours.size()));
        png_set_tRNS(png, info, alphas, int(colours.size()), nullptr);
        png_set_filter(png, 0, PNG_FILTER_NONE);
    }
    png_write_info(png, info);
    for (int y = 0; y < image.height(); ++y) {
        const uint32_t* pixels = image.row(y);
        for (int x = 0; x < image.width(); ++x) {
            if (indexed) {
                line[size_t(x)] = png_byte(colours.at(pixels[x]));
            } else {
                const Rgba c = unpremultiplied(pixels[x]);
                std::copy(c.part, c.part + 4, &line[size_t(x) * 4]);
            }
        }
        png_write_row(png, line.data());
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return out;
}
