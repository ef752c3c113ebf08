// Lets a test look at every text that is drawn.
#pragma once

#include <functional>
#include <string_view>

typedef struct _cairo cairo_t;

namespace ormund {

// A text that is about to be drawn. The box goes from the feet to the heads of the capitals, in the
// units of the context, whose target still shows the ground alone.
struct TextUse {
    std::string_view words;
    double size; // em height, panel pixels
    double red, green, blue, alpha;
    cairo_t* context;
    double left, top, right, bottom;
};

// Empty in a program that is not a test. Screen thread alone.
inline std::function<void(const TextUse&)> textObserver;

} // namespace ormund
