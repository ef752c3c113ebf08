#include "apps/controls-gallery/GallerySkin.h"

#include "skin/SkinImages.h"

bool GallerySkin::getBitmapSize(long id, int& width, int& height)
{
    const SkinSize* size = skinSize(static_cast<int>(id));
    if (!size)
        return false;
    width = size->frameWidth;
    height = size->height();
    return true;
}

cairo_surface_t* GallerySkin::renderBitmap(long id, double scale)
{
    const auto file = skinPng(static_cast<int>(id), static_cast<int>(scale * 2));
    return file.empty() ? nullptr : CBitmap::decode(file.data(), file.size());
}
