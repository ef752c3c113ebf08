// Hands the embedded skin to the view framework. Unpacks what is asked for, when it is asked for.
// Screen thread alone.
#pragma once

#include "skin/ImagePool.h"
#include "view/CBitmap.h"

struct ZSTD_DCtx_s;

namespace ormund {

struct SkinSize;

class SkinProvider : public CBitmapProvider {
public:
    SkinProvider();
    ~SkinProvider() override;
    SkinProvider(const SkinProvider&) = delete;
    SkinProvider& operator=(const SkinProvider&) = delete;

    // Registers itself for all bitmaps of the process; there is one, and it lives for ever.
    static void install();

    bool getBitmapSize(long id, int& width, int& height) override;
    // A scale that is not embedded takes the next larger one, reduced smoothly.
    cairo_surface_t* renderBitmap(long id, double scale) override;
    Part renderPart(long id, double scale, int from, int to) override;

private:
    // Frames from <= k < to, where a part begins and one ends; null when they cannot be had.
    cairo_surface_t* unpack(const SkinSize& size, size_t scalePlace, int from, int to);

    ImagePool pool;
    ZSTD_DCtx_s* unpacker; // kept, for it is larger than most images
};

} // namespace ormund
