// A picture or a vertical strip of frames, measured in panel pixels, with prescaled images for each
// scale that windows are shown at. Painting never scales: what is missing is made once, when it is
// first painted at a scale, and of a long strip no more than the frames that stand around it.
#pragma once

#include "view/CReferenceCounter.h"
#include "view/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

typedef struct _cairo_surface cairo_surface_t;

namespace ormund {

class CDrawContext;

// The images of the resource ids, drawn or decoded by the provider that knows them.
class CBitmapProvider {
public:
    // Some whole frames of a strip. The first row is `top` of the whole image, in device pixels.
    struct Part {
        cairo_surface_t* image = nullptr;
        int top = 0;
    };
    virtual ~CBitmapProvider() = default;
    // The size of a bitmap in panel pixels; false for an unknown id.
    virtual bool getBitmapSize(long id, int& width, int& height) = 0;
    // A new ARGB32 image surface of round(width * scale) by round(height * scale) pixels, which
    // the caller owns; null for an unknown id. Frame k of a strip of frames h high begins at row
    // floor(k * h * scale + 0.5) and must not reach into the next.
    virtual cairo_surface_t* renderBitmap(long id, double scale) = 0;
    // What holds the device rows from <= y < to of that image, or else all of it.
    virtual Part renderPart(
        long id, double scale, [[maybe_unused]] int from, [[maybe_unused]] int to)
    {
        return {renderBitmap(id, scale), 0};
    }
};

class CBitmap : public CReferenceCounter {
public:
    // From the registered provider. An unknown id gives a bitmap of no size, which draws nothing.
    explicit CBitmap(long resourceId);
    // Transparent, or filled with one colour.
    CBitmap(int width, int height, const CColor& fill = kTransparentCColor);
    // From a PNG whose pixels are `pngScale` to a panel pixel; null when it cannot be decoded.
    static CBitmap* fromPng(const void* data, size_t bytes, double pngScale = 1);
    // The picture in a PNG as a new ARGB32 image surface, which the caller owns; null when it
    // cannot be decoded.
    static cairo_surface_t* decode(const void* data, size_t bytes);
    // From an ARGB32 image surface that stands for `scale`; a reference to it is taken.
    static CBitmap* fromSurface(cairo_surface_t* image, double scale);
    ~CBitmap() override;

    // Process-wide, set by the one who links the skin; null for none. Not owned.
    static void setProvider(CBitmapProvider* provider);

    // Draws the part that begins at `offset` into `rect`, limited to both.
    void draw(CDrawContext* context, const CRect& rect, const CPoint& offset = {});
    // As draw. Alpha decides what shows through.
    void drawTransparent(CDrawContext* context, const CRect& rect, const CPoint& offset = {});
    void drawAlphaBlend(
        CDrawContext* context, const CRect& rect, const CPoint& offset, uint8_t alpha);

    int getWidth() const { return width; }
    int getHeight() const { return height; }
    long getResourceId() const { return id; }
    bool isLoaded() const { return width > 0 && height > 0; }
    // Gives the image for one scale. A reference is taken.
    void setImage(double scale, cairo_surface_t* image);

private:
    struct Image {
        double scale;
        int top; // device row of the whole image at which it begins
        cairo_surface_t* surface;

        bool holds(double atScale, int from, int to) const;
    };
    CBitmap() = default;
    // Holds these device rows, made if need be; null when there is none.
    const Image* imageWith(double scale, int from, int to);
    void paint(CDrawContext* context, const CRect& rect, const CPoint& offset, uint8_t alpha);

    long id = -1;
    int width = 0;
    int height = 0;
    std::vector<Image> images;
};

} // namespace ormund
