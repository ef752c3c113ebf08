#include "view/CBitmap.h"

#include "platform/Png.h"
#include "view/CDrawContext.h"

#include <cairo.h>
#include <cmath>
#include <cstring>

namespace ormund {

namespace {

CBitmapProvider* registeredProvider = nullptr;

int device(double panel, double scale) { return static_cast<int>(std::floor(panel * scale + 0.5)); }

// Scales once, when an image for a scale is made; a smooth filter for pictures, whole pixels for
// whole factors upward.
cairo_surface_t* scaled(
    cairo_surface_t* source, double fromScale, double toScale, int width, int height)
{
    cairo_surface_t* made = cairo_image_surface_create(
        CAIRO_FORMAT_ARGB32, device(width, toScale), device(height, toScale));
    cairo_t* context = cairo_create(made);
    const double factor = toScale / fromScale;
    cairo_scale(context, factor, factor);
    cairo_set_source_surface(context, source, 0, 0);
    const bool isWhole = factor >= 1 && factor == std::floor(factor);
    cairo_pattern_set_filter(
        cairo_get_source(context), isWhole ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_BEST);
    cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
    cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
    cairo_paint(context);
    cairo_destroy(context);
    return made;
}

} // namespace

void CBitmap::setProvider(CBitmapProvider* provider) { registeredProvider = provider; }

CBitmap::CBitmap(long resourceId) : id(resourceId)
{
    if (!registeredProvider || !registeredProvider->getBitmapSize(id, width, height)) {
        width = 0;
        height = 0;
    }
}

CBitmap::CBitmap(int bitmapWidth, int bitmapHeight, const CColor& fill)
    : width(std::max(0, bitmapWidth)), height(std::max(0, bitmapHeight))
{
    if (!isLoaded())
        return;
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    cairo_t* context = cairo_create(surface);
    cairo_set_source_rgba(
        context, fill.red / 255.0, fill.green / 255.0, fill.blue / 255.0, fill.alpha / 255.0);
    cairo_paint(context);
    cairo_destroy(context);
    images.push_back({1, 0, surface});
}

cairo_surface_t* CBitmap::decode(const void* data, size_t bytes)
{
    PixelImage decoded;
    if (!decodePng({static_cast<const uint8_t*>(data), bytes}, decoded))
        return nullptr;
    cairo_surface_t* surface =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, decoded.width, decoded.height);
    cairo_surface_flush(surface);
    unsigned char* target = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    const auto rowPixels = static_cast<size_t>(decoded.width);
    for (int y = 0; target && y < decoded.height; ++y)
        std::memcpy(target + static_cast<long>(y) * stride,
            &decoded.pixels[static_cast<size_t>(y) * rowPixels], rowPixels * 4);
    cairo_surface_mark_dirty(surface);
    return surface;
}

CBitmap* CBitmap::fromPng(const void* data, size_t bytes, double pngScale)
{
    cairo_surface_t* surface = decode(data, bytes);
    if (!surface)
        return nullptr;
    CBitmap* bitmap = fromSurface(surface, pngScale);
    cairo_surface_destroy(surface);
    return bitmap;
}

CBitmap* CBitmap::fromSurface(cairo_surface_t* image, double scale)
{
    auto* bitmap = new CBitmap;
    bitmap->width = static_cast<int>(std::lround(cairo_image_surface_get_width(image) / scale));
    bitmap->height = static_cast<int>(std::lround(cairo_image_surface_get_height(image) / scale));
    bitmap->setImage(scale, image);
    return bitmap;
}

CBitmap::~CBitmap()
{
    for (const Image& image : images)
        cairo_surface_destroy(image.surface);
}

void CBitmap::setImage(double scale, cairo_surface_t* image)
{
    cairo_surface_reference(image);
    for (Image& known : images) {
        if (known.scale == scale) {
            cairo_surface_destroy(known.surface);
            known.surface = image;
            known.top = 0;
            return;
        }
    }
    images.push_back({scale, 0, image});
}

bool CBitmap::Image::holds(double atScale, int from, int to) const
{
    return scale == atScale && top <= from && to <= top + cairo_image_surface_get_height(surface);
}

const CBitmap::Image* CBitmap::imageWith(double scale, int from, int to)
{
    for (const Image& image : images)
        if (image.holds(scale, from, to))
            return &image;
    if (!isLoaded())
        return nullptr;
    CBitmapProvider::Part made;
    if (id >= 0 && registeredProvider)
        made = registeredProvider->renderPart(id, scale, from, to);
    if (!made.image && !images.empty()) {
        // From the largest there is.
        const Image* best = &images.front();
        for (const Image& image : images)
            if (image.scale > best->scale)
                best = &image;
        if (best->scale == scale)
            return best; // as much as there is
        made = {scaled(best->surface, best->scale, scale, width, height), 0};
    }
    if (!made.image)
        return nullptr;
    return &images.emplace_back(Image{scale, made.top, made.image});
}

void CBitmap::draw(CDrawContext* context, const CRect& rect, const CPoint& offset)
{
    paint(context, rect, offset, 255);
}

void CBitmap::drawTransparent(CDrawContext* context, const CRect& rect, const CPoint& offset)
{
    paint(context, rect, offset, 255);
}

void CBitmap::drawAlphaBlend(
    CDrawContext* context, const CRect& rect, const CPoint& offset, uint8_t alpha)
{
    paint(context, rect, offset, alpha);
}

// Copies device pixels one to one: every edge is rounded to the device's grid, so nothing is
// sampled between pixels and no neighbouring frame bleeds in.
void CBitmap::paint(CDrawContext* context, const CRect& rect, const CPoint& offset, uint8_t alpha)
{
    CRect target = rect;
    target.right = std::min(target.right, rect.left + width - offset.x);
    target.bottom = std::min(target.bottom, rect.top + height - offset.y);
    target.left = std::max(target.left, rect.left - offset.x);
    target.top = std::max(target.top, rect.top - offset.y);
    if (target.isEmpty() || alpha == 0 || !target.rectOverlap(context->getClipRect()))
        return;
    const double scale = context->getScale();
    const int left = device(target.left, scale);
    const int top = device(target.top, scale);
    const int right = device(target.right, scale);
    const int bottom = device(target.bottom, scale);
    const CPoint from{offset.x + target.left - rect.left, offset.y + target.top - rect.top};
    const int sourceLeft = device(from.x, scale);
    const int firstRow = device(from.y, scale);
    const int sourceWidth = device(from.x + target.width(), scale) - sourceLeft;
    const int sourceHeight = device(from.y + target.height(), scale) - firstRow;
    const Image* held = imageWith(scale, firstRow, firstRow + sourceHeight);
    if (!held)
        return;
    cairo_surface_t* image = held->surface;
    const int sourceTop = firstRow - held->top;
    cairo_t* cairo = context->cairo();
    cairo_save(cairo);
    cairo_identity_matrix(cairo);
    if (sourceWidth >= right - left && sourceHeight >= bottom - top) {
        cairo_set_source_surface(cairo, image, left - sourceLeft, top - sourceTop);
    } else {
        // At one and a half a place may be a pixel larger than its frame, whose edge goes on then.
        cairo_surface_t* part = cairo_surface_create_for_rectangle(
            image, sourceLeft, sourceTop, sourceWidth, sourceHeight);
        cairo_set_source_surface(cairo, part, left, top);
        cairo_surface_destroy(part);
        cairo_pattern_set_extend(cairo_get_source(cairo), CAIRO_EXTEND_PAD);
    }
    cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_NEAREST);
    cairo_rectangle(cairo, left, top, right - left, bottom - top);
    if (alpha == 255) {
        cairo_fill(cairo);
    } else {
        cairo_clip(cairo);
        cairo_paint_with_alpha(cairo, alpha / 255.0);
    }
    cairo_restore(cairo);
}

} // namespace ormund
