// Lines of text as coverage images, kept for as long as they are likely to return: outlines cost
// microseconds a letter, a kept image costs one for the line. Screen thread alone.
#pragma once

#include <string_view>

typedef struct _cairo_surface cairo_surface_t;

namespace ormund {

struct TextMask {
    cairo_surface_t* surface = nullptr; // alpha alone; null for a text without ink
    int left = 0;                       // of the image from the text's origin, device pixels
    int top = 0;
};

// How the text stands: the em height and the tracking in panel pixels, `scale` device pixels to a
// panel pixel, and the part of a device pixel by which the origin lies right of a whole one, in
// quarters.
struct TextLook {
    int style = 0;
    double size = 11;
    double tracking = 0;
    double scale = 1;
    int quarter = 0;
};

// Valid until the next call.
const TextMask& textMask(std::string_view text, const TextLook& look);
void forgetTextMasks();

} // namespace ormund
