#include "tests/support/ReadableText.h"

#include "panel/Palette.h"
#include "view/TextUse.h"

#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <cstdio>

namespace ormund {

namespace {

// The colour that most of the box shows; what is clear shows the panel.
Ink groundOf(const TextUse& use)
{
    cairo_surface_t* surface = cairo_get_target(use.context);
    cairo_surface_flush(surface);
    double x0 = use.left, y0 = use.top, x1 = use.right, y1 = use.bottom;
    cairo_user_to_device(use.context, &x0, &y0);
    cairo_user_to_device(use.context, &x1, &y1);
    const int left = std::max(int(std::min(x0, x1)), 0);
    const int top = std::max(int(std::min(y0, y1)), 0);
    const int right =
        std::min(int(std::ceil(std::max(x0, x1))), cairo_image_surface_get_width(surface));
    const int bottom =
        std::min(int(std::ceil(std::max(y0, y1))), cairo_image_surface_get_height(surface));
    const bool hasAlpha = cairo_image_surface_get_format(surface) == CAIRO_FORMAT_ARGB32;
    const unsigned char* pixels = cairo_image_surface_get_data(surface);
    std::vector<std::pair<double, Ink>> found;
    for (int y = top; y < bottom; ++y) {
        const auto* row = reinterpret_cast<const uint32_t*>(
            pixels + long(y) * cairo_image_surface_get_stride(surface));
        for (int x = left; x < right; ++x) {
            const double alpha = hasAlpha ? double(row[x] >> 24) / 255 : 1;
            Ink colour = ink(row[x] & 0xFFFFFF); // premultiplied
            colour.red += palette::kPanel.red * (1 - alpha);
            colour.green += palette::kPanel.green * (1 - alpha);
            colour.blue += palette::kPanel.blue * (1 - alpha);
            found.emplace_back(luminance(colour), colour);
        }
    }
    if (found.empty())
        return palette::kPanel;
    const auto middle = found.begin() + long(found.size() / 2);
    std::ranges::nth_element(found, middle, {}, &std::pair<double, Ink>::first);
    return middle->second;
}

} // namespace

ReadableText::ReadableText()
{
    textObserver = [this](const TextUse& use) {
        ++texts;
        const Ink ground = groundOf(use);
        const Ink written = mix(ground, {use.red, use.green, use.blue}, use.alpha);
        const double reached = contrast(written, ground);
        if (use.size >= kLeastSize && reached >= kLeastContrast)
            return;
        char line[200];
        std::snprintf(line, sizeof line, "\"%.*s\": %g px, contrast %.2f", int(use.words.size()),
            use.words.data(), use.size, reached);
        if (std::ranges::find(complaints, line) == complaints.end())
            complaints.emplace_back(line);
    };
}

ReadableText::~ReadableText() { textObserver = nullptr; }

} // namespace ormund
