#include "view/TextMask.h"

#include "view/Typeface.h"

#include <cairo.h>
#include <cmath>
#include <cstring>
#include <string>
#include <unordered_map>

namespace ormund {

namespace {

// A panel shows some hundred texts; a song changes a few dozen of them.
constexpr size_t kMaxMasks = 1500;

class MaskStore {
public:
    MaskStore() = default;
    MaskStore(const MaskStore&) = delete;
    MaskStore& operator=(const MaskStore&) = delete;
    ~MaskStore() { clear(); }

    const TextMask& find(std::string_view text, const TextLook& look)
    {
        std::string key(text);
        const double numbers[] = {static_cast<double>(look.style), look.size, look.tracking,
            look.scale, static_cast<double>(look.quarter)};
        key.append(reinterpret_cast<const char*>(numbers), sizeof numbers);
        const auto known = masks.find(key);
        if (known != masks.end())
            return known->second;
        if (masks.size() >= kMaxMasks)
            clear();
        return masks.emplace(std::move(key), draw(text, look)).first->second;
    }
    void clear()
    {
        for (auto& [key, mask] : masks)
            if (mask.surface)
                cairo_surface_destroy(mask.surface);
        masks = {};
    }

private:
    static TextMask draw(std::string_view text, const TextLook& look);
    std::unordered_map<std::string, TextMask> masks;
};

TextMask MaskStore::draw(std::string_view text, const TextLook& look)
{
    const double size = look.size * look.scale;
    const auto addText = [&](cairo_t* context, double x, double y) {
        Typeface::forStyle(look.style)
            .addPath(context, text, size, x + look.quarter / 4.0, y, look.tracking * look.scale);
    };
    cairo_surface_t* probe = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
    cairo_t* measure = cairo_create(probe);
    addText(measure, 0, 0);
    double x0, y0, x1, y1;
    cairo_path_extents(measure, &x0, &y0, &x1, &y1);
    cairo_destroy(measure);
    cairo_surface_destroy(probe);
    TextMask mask;
    if (x1 <= x0 || y1 <= y0)
        return mask;
    mask.left = static_cast<int>(std::floor(x0));
    mask.top = static_cast<int>(std::floor(y0));
    mask.surface = cairo_image_surface_create(CAIRO_FORMAT_A8,
        static_cast<int>(std::ceil(x1)) - mask.left, static_cast<int>(std::ceil(y1)) - mask.top);
    cairo_t* context = cairo_create(mask.surface);
    addText(context, -mask.left, -mask.top);
    cairo_fill(context);
    cairo_destroy(context);
    return mask;
}

MaskStore& store()
{
    static MaskStore kept;
    return kept;
}

} // namespace

const TextMask& textMask(std::string_view text, const TextLook& look)
{
    return store().find(text, look);
}

void forgetTextMasks() { store().clear(); }

} // namespace ormund
