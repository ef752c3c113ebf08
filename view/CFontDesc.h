// A font: a weight and a size of the embedded Inter, with digits of equal width. The name that the
// constructor takes is kept and has no effect, so the panel looks the same on every machine.
#pragma once

#include "view/CReferenceCounter.h"

#include <string>

namespace ormund {

enum CTxtFace : int { kNormalFace = 0, kBoldFace = 1 };
enum CHoriTxtAlign : int { kLeftText = 0, kCenterText = 1, kRightText = 2 };

class CFontDesc : public CReferenceCounter {
public:
    // `size` is the em height in panel pixels. kNormalFace is Medium, kBoldFace Semi Bold.
    explicit CFontDesc(const char* name = "Inter", double size = 11, int style = kNormalFace)
        : fontName(name ? name : ""), fontSize(size), fontStyle(style)
    {
    }
    const char* getName() const { return fontName.c_str(); }
    double getSize() const { return fontSize; }
    int getStyle() const { return fontStyle; }
    // Extra space after each character, in panel pixels.
    double getTracking() const { return tracking; }
    void setSize(double size) { fontSize = size; }
    void setStyle(int style) { fontStyle = style; }
    void setTracking(double pixels) { tracking = pixels; }

private:
    std::string fontName;
    double fontSize;
    int fontStyle;
    double tracking = 0;
};

using CFontRef = CFontDesc*;

} // namespace ormund
