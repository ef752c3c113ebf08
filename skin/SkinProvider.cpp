#include "skin/SkinProvider.h"

#include "skin/SkinImages.h"
#include "view/DrawnScales.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <zstd.h>

namespace ormund {

namespace {

constexpr double kTolerance = 0.005; // scales come from decimal settings

int rounded(double size) { return int(std::floor(size + 0.5)); }

// The place of the smallest embedded scale that is not below this one; of the largest otherwise.
size_t placeOf(double scale)
{
    size_t place = 0;
    while (place + 1 < kDrawnScales.size() && kDrawnScales[place] < scale - kTolerance)
        ++place;
    return place;
}

bool isEmbedded(double scale)
{
    return std::abs(kDrawnScales[placeOf(scale)] - scale) < kTolerance;
}

// First device row of a frame.
int rowOf(const SkinSize& size, int frame, double scale)
{
    return rounded(double(size.frameHeight) * frame * scale);
}

// Frame by frame, so that no frame takes a row of its neighbour.
cairo_surface_t* resized(cairo_surface_t* image, double from, double to, const SkinSize& size)
{
    cairo_surface_t* target = cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
        std::max(1, rounded(size.frameWidth * to)), std::max(1, rounded(size.height() * to)));
    cairo_t* cr = cairo_create(target);
    for (int frame = 0; frame < size.frames; ++frame) {
        const int y = rowOf(size, frame, to), rows = rowOf(size, frame + 1, to) - y;
        const int source = rowOf(size, frame, from);
        const int sourceRows = rowOf(size, frame + 1, from) - source;
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

SkinProvider::SkinProvider() : unpacker(ZSTD_createDCtx()) { }

SkinProvider::~SkinProvider() { ZSTD_freeDCtx(unpacker); }

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

cairo_surface_t* SkinProvider::unpack(const SkinSize& size, size_t scalePlace, int from, int to)
{
    const double scale = kDrawnScales[scalePlace];
    const int top = rowOf(size, from, scale);
    cairo_surface_t* image =
        pool.make(rounded(size.frameWidth * scale), rowOf(size, to, scale) - top);
    if (!image)
        return nullptr;
    unsigned char* pixels = cairo_image_surface_get_data(image);
    const auto rowBytes = size_t(cairo_image_surface_get_stride(image));
    const int together = skinFramesOfPart(size.number, scalePlace);
    bool isWhole = unpacker;
    for (int frame = from; isWhole && frame < to; frame += together) {
        const int row = rowOf(size, frame, scale);
        const int end = rowOf(size, std::min(frame + together, to), scale);
        const auto packed = skinPart(size.number, scalePlace, frame);
        const size_t room = size_t(end - row) * rowBytes;
        isWhole = ZSTD_decompressDCtx(unpacker, pixels + size_t(row - top) * rowBytes, room,
                      packed.data(), packed.size())
            == room;
    }
    if (!isWhole) {
        cairo_surface_destroy(image);
        return nullptr;
    }
    cairo_surface_mark_dirty(image);
    return image;
}

cairo_surface_t* SkinProvider::renderBitmap(long id, double scale)
{
    const SkinSize* size = skinSize(int(id));
    if (!size || !(scale > 0))
        return nullptr;
    const size_t place = placeOf(scale);
    cairo_surface_t* image = unpack(*size, place, 0, size->frames);
    if (!image || isEmbedded(scale))
        return image;
    cairo_surface_t* fitted = resized(image, kDrawnScales[place], scale, *size);
    cairo_surface_destroy(image);
    return fitted;
}

CBitmapProvider::Part SkinProvider::renderPart(long id, double scale, int from, int to)
{
    const SkinSize* size = skinSize(int(id));
    if (!size || !isEmbedded(scale))
        return {renderBitmap(id, scale), 0};
    const size_t place = placeOf(scale);
    scale = kDrawnScales[place];
    const int together = skinFramesOfPart(size->number, place);
    int first = 0;
    while (first + together < size->frames && rowOf(*size, first + together, scale) <= from)
        first += together;
    const int end = std::min(first + together, size->frames);
    const int top = rowOf(*size, first, scale);
    if (from < top || to > rowOf(*size, end, scale))
        return {renderBitmap(id, scale), 0};
    return {unpack(*size, place, first, end), top};
}

} // namespace ormund
