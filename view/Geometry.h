// Plain values of the screen. All coordinates are whole panel pixels in the frame's system,
// whatever the scale of the window is; the right and the bottom edge lie outside a rectangle.
#pragma once

#include <algorithm>
#include <cstdint>

namespace ormund {

struct CPoint {
    int x = 0;
    int y = 0;

    constexpr CPoint() = default;
    constexpr CPoint(int px, int py) : x(px), y(py) { }
    constexpr CPoint& offset(int dx, int dy)
    {
        x += dx;
        y += dy;
        return *this;
    }
    friend constexpr bool operator==(const CPoint&, const CPoint&) = default;
};

struct CRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    constexpr CRect() = default;
    constexpr CRect(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) { }

    constexpr int width() const { return right - left; }
    constexpr int height() const { return bottom - top; }
    constexpr int getWidth() const { return width(); }
    constexpr int getHeight() const { return height(); }
    constexpr bool isEmpty() const { return right <= left || bottom <= top; }
    constexpr CPoint topLeft() const { return {left, top}; }
    constexpr void setWidth(int w) { right = left + w; }
    constexpr void setHeight(int h) { bottom = top + h; }

    constexpr bool pointInside(const CPoint& p) const
    {
        return p.x >= left && p.x < right && p.y >= top && p.y < bottom;
    }
    constexpr bool rectOverlap(const CRect& o) const
    {
        return left < o.right && o.left < right && top < o.bottom && o.top < bottom;
    }
    constexpr bool contains(const CRect& o) const
    {
        return o.left >= left && o.right <= right && o.top >= top && o.bottom <= bottom;
    }
    constexpr CRect& offset(int dx, int dy)
    {
        left += dx;
        right += dx;
        top += dy;
        bottom += dy;
        return *this;
    }
    constexpr CRect& moveTo(int x, int y) { return offset(x - left, y - top); }
    constexpr CRect& inset(int dx, int dy)
    {
        left += dx;
        right -= dx;
        top += dy;
        bottom -= dy;
        return *this;
    }
    // Limits this rectangle to `o`; an empty rectangle when they do not meet.
    constexpr CRect& bound(const CRect& o)
    {
        left = std::max(left, o.left);
        top = std::max(top, o.top);
        right = std::max(left, std::min(right, o.right));
        bottom = std::max(top, std::min(bottom, o.bottom));
        return *this;
    }
    // Grows this rectangle to hold `o` too. Empty rectangles add nothing.
    constexpr CRect& unite(const CRect& o)
    {
        if (o.isEmpty())
            return *this;
        if (isEmpty())
            return *this = o;
        left = std::min(left, o.left);
        top = std::min(top, o.top);
        right = std::max(right, o.right);
        bottom = std::max(bottom, o.bottom);
        return *this;
    }
    friend constexpr bool operator==(const CRect&, const CRect&) = default;
};

struct CColor {
    uint8_t red = 255;
    uint8_t green = 255;
    uint8_t blue = 255;
    uint8_t alpha = 255;

    constexpr CColor() = default;
    constexpr CColor(int r, int g, int b, int a = 255)
        : red(static_cast<uint8_t>(r))
        , green(static_cast<uint8_t>(g))
        , blue(static_cast<uint8_t>(b))
        , alpha(static_cast<uint8_t>(a))
    {
    }
    // From 0xRRGGBB.
    static constexpr CColor hex(uint32_t rgb, int a = 255)
    {
        return {static_cast<int>(rgb >> 16 & 255), static_cast<int>(rgb >> 8 & 255),
            static_cast<int>(rgb & 255), a};
    }
    constexpr CColor withAlpha(int a) const { return {red, green, blue, a}; }
    friend constexpr bool operator==(const CColor&, const CColor&) = default;
};

inline constexpr CColor kTransparentCColor{255, 255, 255, 0};
inline constexpr CColor kBlackCColor{0, 0, 0};
inline constexpr CColor kWhiteCColor{255, 255, 255};
inline constexpr CColor kGreyCColor{127, 127, 127};
inline constexpr CColor kRedCColor{255, 0, 0};
inline constexpr CColor kGreenCColor{0, 255, 0};
inline constexpr CColor kBlueCColor{0, 0, 255};

} // namespace ormund
