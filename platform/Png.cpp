#include "platform/Png.h"

#include <cstring>
#include <png.h>

namespace ormund {

namespace {

// libpng gives straight alpha in the order blue, green, red, alpha.
uint32_t premultiplied(const uint8_t* bgra)
{
    const uint32_t alpha = bgra[3];
    const auto scaled = [alpha](uint32_t colour) { return (colour * alpha + 127) / 255; };
    return alpha << 24 | scaled(bgra[2]) << 16 | scaled(bgra[1]) << 8 | scaled(bgra[0]);
}

void straight(uint32_t pixel, uint8_t* bgra)
{
    const uint32_t alpha = pixel >> 24;
    const auto divided = [alpha](uint32_t colour) {
        return static_cast<uint8_t>(
            alpha == 0 ? 0u : std::min(255u, (colour * 255 + alpha / 2) / alpha));
    };
    bgra[0] = divided(pixel & 255);
    bgra[1] = divided(pixel >> 8 & 255);
    bgra[2] = divided(pixel >> 16 & 255);
    bgra[3] = static_cast<uint8_t>(alpha);
}

} // namespace

bool decodePng(std::span<const uint8_t> bytes, PixelImage& image)
{
    image = {};
    png_image reader{};
    reader.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&reader, bytes.data(), bytes.size()))
        return false;
    reader.format = PNG_FORMAT_BGRA;
    const bool fits = reader.width > 0 && reader.height > 0 && reader.width <= kMaxPngSide
        && reader.height <= kMaxPngSide;
    if (!fits) {
        png_image_free(&reader);
        return false;
    }
    std::vector<uint8_t> raw(PNG_IMAGE_SIZE(reader));
    if (!png_image_finish_read(&reader, nullptr, raw.data(), 0, nullptr))
        return false;
    image.width = static_cast<int>(reader.width);
    image.height = static_cast<int>(reader.height);
    image.pixels.resize(raw.size() / 4);
    for (size_t i = 0; i < image.pixels.size(); ++i)
        image.pixels[i] = premultiplied(&raw[i * 4]);
    return true;
}

std::vector<uint8_t> encodePng(const PixelImage& image)
{
    if (image.isEmpty())
        return {};
    std::vector<uint8_t> raw(image.pixels.size() * 4);
    for (size_t i = 0; i < image.pixels.size(); ++i)
        straight(image.pixels[i], &raw[i * 4]);
    png_image writer{};
    writer.version = PNG_IMAGE_VERSION;
    writer.width = static_cast<png_uint_32>(image.width);
    writer.height = static_cast<png_uint_32>(image.height);
    writer.format = PNG_FORMAT_BGRA;
    png_alloc_size_t size = 0;
    if (!png_image_write_to_memory(&writer, nullptr, &size, 0, raw.data(), 0, nullptr))
        return {};
    std::vector<uint8_t> file(size);
    if (!png_image_write_to_memory(&writer, file.data(), &size, 0, raw.data(), 0, nullptr))
        return {};
    file.resize(size);
    return file;
}

} // namespace ormund
