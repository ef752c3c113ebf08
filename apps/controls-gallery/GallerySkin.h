// The drawn skin as a source of bitmaps.
#pragma once

#include "view/CBitmap.h"

class GallerySkin : public CBitmapProvider {
public:
    bool getBitmapSize(long id, int& width, int& height) override;
    cairo_surface_t* renderBitmap(long id, double scale) override;
};
