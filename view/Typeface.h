// The embedded Inter: shapes text with kerning and equal digits, measures it, and gives its
// outlines. Outlines stand at fractional places without hinting, so that spacing is the same at
// every size. Screen thread alone.
#pragma once

#include <memory>
#include <string_view>

typedef struct _cairo cairo_t;

namespace ormund {

class Typeface {
public:
    static Typeface& medium();
    static Typeface& semiBold();
    static Typeface& forStyle(int txtFace);

    ~Typeface();
    Typeface(const Typeface&) = delete;
    Typeface& operator=(const Typeface&) = delete;

    // In the units of `size`, the em height. `tracking` is added after each character.
    double width(std::string_view text, double size, double tracking = 0);
    double capHeight(double size) const;
    double ascent(double size) const;
    double descent(double size) const;
    // Adds the outlines to the path; the text begins at `x` on the baseline `y`.
    void addPath(cairo_t* context, std::string_view text, double size, double x, double y,
        double tracking = 0);
    // Frees what is kept of the texts that were measured and drawn.
    void forgetTexts();

private:
    struct Data;
    Typeface(const unsigned char* begin, const unsigned char* end);
    std::unique_ptr<Data> data;
};

} // namespace ormund
