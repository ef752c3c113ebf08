// Hands the embedded skin to the view framework. Decodes what is asked for, when it is asked for.
#pragma once

#include "view/CBitmap.h"

class SkinProvider : public CBitmapProvider {
public:
    // Registers itself for all bitmaps of the process; there is one, and it lives for ever.
    static void install();

    bool getBitmapSize(long id, int& width, int& height) override;
    // A scale that is not embedded takes the next larger one, reduced smoothly.
    cairo_surface_t* renderBitmap(long id, double scale) override;
    Part renderPart(long id, double scale, int from, int to) override;
};
