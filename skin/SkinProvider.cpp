#include "skin/SkinProvider.h"

#include "skin/SkinImages.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace {

// What cairo still has to read of an image.
struct Source {
    std::span<const std::byte> rest;
};

cairo_status_t readNext(void* closure, unsigned char* data, unsigned int length)
{
    auto& source = *static_cast<Source*>(closure);
    if (source.rest.size() < length)
        return CAIRO_STATUS_READ_ERROR;
    std::memcpy(data, source.rest.data(), length);
    source.rest = source.rest.subspan(length);
    return CAIRO_STATUS_SUCCESS;
}

// An ARGB32 image, whatever the file's kind; null when it cannot be had.
cairo_surface_t* decode(std::span<const std::byte> png)
{
    Source source{png};
    cairo_surface_t* image = cairo_image_surface_create_from_png_stream(readNext, &source);
    if (cairo_surface_status(image) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(image);
        return nullptr;
    }
    if (cairo_image_surface_get_format(image) == CAIRO_FORMAT_ARGB32)
        return image;
    cairo_surface_t* copy = cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
        cairo_image_surface_get_width(image), cairo_image_surface_get_height(image));
    cairo_t* cr = cairo_create(copy);
    cairo_set_source_surface(cr, image, 0, 0);
    cairo_paint(cr);
    cairo_destroy(cr);
    cairo_surface_destroy(image);
    return copy;
}

constexpr int kHalves[] = {2, 3, 4, 6};

int rounded(double size) { return int(std::floor(size + 0.5)); }

bool isEmbedded(double scale) { return std::ranges::find(kHalves, scale * 2) != std::end(kHalves); }

// All parts one below the other; null when one cannot be had.
cairo_surface_t* whole(const SkinSize& size, int halves)
{
    cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
        rounded(size.frameWidth * halves / 2.0), rounded(size.height() * halves / 2.0));
    cairo_t* cr = cairo_create(image);
    bool complete = true;
    for (int frame = 0; frame < size.frames; frame += skinFramesOfPart(size.number, halves)) {
        cairo_surface_t* part = decode(skinPng(size.number, halves, frame));
        complete = complete && part;
        if (!part)
            continue;
        cairo_set_source_surface(cr, part, 0, rounded(size.frameHeight * frame * halves / 2.0));
        cairo_paint(cr);
        cairo_surface_destroy(part);
    }
    cairo_destroy(cr);
    if (complete)
        return image;
    cairo_surface_destroy(image);
    return nullptr;
}

// Frame by frame, so that no frame takes a row of its neighbour.
cairo_surface_t* resized(cairo_surface_t* image, double from, double to, const SkinSize& size)
{
    cairo_surface_t* target = cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
        std::max(1, rounded(size.frameWidth * to)), std::max(1, rounded(size.height() * to)));
    cairo_t* cr = cairo_create(target);
    const auto top = [&](int frame, double scale) {
        return rounded(double(size.frameHeight) * frame * scale);
    };
    for (int frame = 0; frame < size.frames; ++frame) {
        const int y = top(frame, to), rows = top(frame + 1, to) - y;
        const int source = top(frame, from), sourceRows = top(frame + 1, from) - source;
        const int width = cairo_image_surface_get_width(image);
        cairo_surface_t* part =
            cairo_surface_create_for_rectangle(image, 0, source, width, sourceRows);
        cairo_save(cr);
        cairo_rectangle(cr, 0, y, cairo_image_surface_get_width(target), rows);
        cairo_clip(cr);
        cairo_translate(cr, 0, y);
        cairo_scale(
            cr, double(cairo_image_surface_get_width(target)) / width, double(rows) / sourceRows);
        cairo_set_source_surface(cr, part, 0, 0);
        cairo_pattern_set_extend(cairo_get_source(cr), CAIRO_EXTEND_PAD);
        cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_GOOD);
        cairo_paint(cr);
        cairo_restore(cr);
        cairo_surface_destroy(part);
    }
    cairo_destroy(cr);
    return target;
}

} // namespace

void SkinProvider::install()
{
    static SkinProvider provider;
    CBitmap::setProvider(&provider);
}

bool SkinProvider::getBitmapSize(long id, int& width, int& height)
{
    const SkinSize* size = skinSize(int(id));
    if (!size)
        return false;
    width = size->frameWidth;
    height = size->height();
    return true;
}

cairo_surface_t* SkinProvider::renderBitmap(long id, double scale)
{
    const SkinSize* size = skinSize(int(id));
    if (!size || !(scale > 0))
        return nullptr;
    const auto* halves = std::find_if(std::begin(kHalves), std::end(kHalves) - 1,
        [scale](int h) { return h >= scale * 2 - 0.01; });
    cairo_surface_t* image = whole(*size, *halves);
    if (!image || std::abs(*halves - scale * 2) < 0.01)
        return image;
    cairo_surface_t* fitted = resized(image, *halves / 2.0, scale, *size);
    cairo_surface_destroy(image);
    return fitted;
}

CBitmapProvider::Part SkinProvider::renderPart(long id, double scale, int from, int to)
{
    const SkinSize* size = skinSize(int(id));
    if (!size || !isEmbedded(scale))
        return {renderBitmap(id, scale), 0};
    const auto top = [&](int frame) { return rounded(size->frameHeight * frame * scale); };
    const int halves = rounded(scale * 2);
    const int together = skinFramesOfPart(size->number, halves);
    int first = 0;
    while (first + together < size->frames && top(first + together) <= from)
        first += together;
    const int end = top(std::min(first + together, size->frames));
    if (from < top(first) || to > end)
        return {renderBitmap(id, scale), 0};
    return {decode(skinPng(size->number, halves, first)), top(first)};
}
