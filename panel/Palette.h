// The colours of the panel. Controls that print their own text take them from here too, so the
// drawn and the printed parts agree.
#pragma once

#include <cmath>
#include <cstdint>

namespace ormund {

// A colour in sRGB, each part 0 to 1, not premultiplied.
struct Ink {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    constexpr Ink faded(double toAlpha) const { return {red, green, blue, toAlpha}; }
};

constexpr Ink ink(uint32_t rgb, double alpha = 1)
{
    return {double(rgb >> 16 & 255) / 255, double(rgb >> 8 & 255) / 255, double(rgb & 255) / 255,
        alpha};
}

// `share` of `other` in `base`; the alpha is mixed too.
constexpr Ink mix(const Ink& base, const Ink& other, double share)
{
    const auto part = [share](double a, double b) { return a + (b - a) * share; };
    return {part(base.red, other.red), part(base.green, other.green), part(base.blue, other.blue),
        part(base.alpha, other.alpha)};
}

namespace palette {

inline constexpr Ink kWhite = ink(0xFFFFFF);
inline constexpr Ink kBlack = ink(0x000000);

inline constexpr Ink kGround = ink(0x16181C);
inline constexpr Ink kHead = ink(0x191C20);
inline constexpr Ink kHeadEdge = ink(0x0E1012);
inline constexpr Ink kPanel = ink(0x1F2329);
inline constexpr Ink kPanelEdge = ink(0x2C323A);
inline constexpr Ink kWell = ink(0x121417);
inline constexpr Ink kWellGroup = ink(0x191C20); // every second group of four cells
inline constexpr Ink kValueRow = ink(0x171A1E);
inline constexpr Ink kValueRowGroup = ink(0x1D2126);
inline constexpr Ink kHairline = ink(0x2E343C);

inline constexpr Ink kBody = ink(0x2A2F37);
inline constexpr Ink kBodyFrame = ink(0x3A414B);
inline constexpr Ink kBodyHover = ink(0x363D47);
inline constexpr Ink kFrameHover = ink(0x59626E);
inline constexpr Ink kBodyPressed = ink(0x15181B);

inline constexpr Ink kText = ink(0xE6E8EB);
inline constexpr Ink kBodyText = ink(0xB4BAC3);
inline constexpr Ink kLabel = ink(0x8A929C);
inline constexpr Ink kDarkInk = ink(0x121417);
inline constexpr Ink kRecordInk = ink(0x0A0B0D);
inline constexpr Ink kIcon = ink(0x9AA2AC);
inline constexpr Ink kDisabled = ink(0x4A515B);

inline constexpr Ink kPitch = ink(0xF2A541);
inline constexpr Ink kVelocity = ink(0xE4572E);
inline constexpr Ink kGate = ink(0x4EA5D9);
inline constexpr Ink kPerformance = ink(0x9B7EDE);
inline constexpr Ink kModulation = ink(0x3BB58F);
inline constexpr Ink kNeutral = ink(0xB7BEC9); // lit, but of no track
inline constexpr Ink kRecord = ink(0xE03C31);
inline constexpr Ink kVeil = ink(0xFFFFFF, 0.35);

inline constexpr Ink kCellLine = ink(0x23282E);
inline constexpr Ink kFourLine = ink(0x363D46);
inline constexpr Ink kSixteenLine = ink(0x6B7582);
inline constexpr Ink kRowLine = ink(0x2A3037);
inline constexpr Ink kDash = ink(0x3A414B);
inline constexpr Ink kLoopRest = ink(0x333A43);

inline constexpr Ink kMenu = ink(0x262B32);
inline constexpr Ink kMenuFrame = ink(0x454D58);
inline constexpr Ink kFreeKey = ink(0xA9AFB7);
inline constexpr Ink kBlackKey = ink(0x2A2E34);

// The hue as text: without the white, red falls short of a readable contrast.
constexpr Ink nameOf(const Ink& hue) { return mix(hue, kWhite, 0.12); }

} // namespace palette

// The share of light that reaches the eye, 0 to 1.
inline double luminance(const Ink& colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green)
        + 0.0722 * linear(colour.blue);
}

// 1 for equal colours up to 21 for black on white; text wants 4.5.
inline double contrast(const Ink& one, const Ink& other)
{
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return a > b ? a / b : b / a;
}

} // namespace ormund
