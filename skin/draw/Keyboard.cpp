// The keyboard: keys of 12 pixels in the tint of their zone, and the bar that names the zones.
#include "skin/draw/Parts.h"

#include <algorithm>
#include <array>

namespace ormund {

using namespace palette;

namespace {

// The classes of keys in the order of the strips, a pair of frames each: idle and lit.
enum Zone { Free, Pattern, Action, Transpose };

constexpr Ink kWhiteKey = ink(0xD8DCE0);

Zone zoneOf(int frame) { return Zone(std::min(frame / 2, int(Transpose))); }

// The last frame of a strip, beyond the pairs, is a lit key whose neighbour is lit.
bool isLit(int frame) { return frame % 2 == 1 || frame > 2 * Transpose + 1; }

Ink hueOf(Zone zone)
{
    constexpr Ink kHues[] = {kText, kGate, kPerformance, kPitch};
    return kHues[zone];
}

// ---- The mode bar, 698 pixels wide, over keys from note 24 up

constexpr double kKeyWidth = 12;

struct NamedZone {
    double firstKey, pastKey; // white keys from the left end
    Ink hue;
    const char* name;
};

constexpr std::array<NamedZone, 3> kTwoOctaves{{{7, 16, kGate, "PATTERN 1\u201316"},
    {16, 16, kPerformance, ""}, {21, 36, kPitch, "TRANSPOSE \u221212 \u2026 +12"}}};
constexpr std::array<NamedZone, 3> kFourOctaves{{{7, 16, kGate, "PATTERN 1\u201316"},
    {16, 21, kPerformance, "ACTIONS"}, {21, 50, kPitch, "TRANSPOSE \u221212 \u2026 +12"}}};

void bracket(Paint& paint, const NamedZone& zone)
{
    if (zone.firstKey == zone.pastKey)
        return;
    const double left = zone.firstKey * kKeyWidth, right = zone.pastKey * kKeyWidth - 1;
    paint.rect(left, 15, right - left, 2, zone.hue);
    paint.rect(left, 10, 1, 6, zone.hue);
    paint.rect(right - 1, 10, 1, 6, zone.hue);
    paint.text(zone.name, (left + right) / 2, 8, {9, 0.4, Weight::Medium}, kText, Align::Centre);
}

void segment(Paint& paint, double x, const char* word, bool current, Look look)
{
    if (current)
        lit(paint, x, 2, 39, 14, kNeutral, look);
    else
        raised(paint, x, 2, 39, 14, look);
    paint.text(
        word, x + 19.5, 9, type::kButton, current ? kDarkInk : contentInk(look), Align::Centre);
}

} // namespace

void drawKeyboardMode(Paint& paint, int frame)
{
    const ButtonFrame button = buttonFrame(frame);
    paint.rounded(0, 0, paint.width(), paint.height() + 4, 3, kHead);
    // A click anywhere takes the other mode, so it is the other word that answers the mouse.
    segment(paint, 2, "2 OCT", button.state == 0, button.state == 1 ? button.look : Look::Normal);
    segment(paint, 42, "4 OCT", button.state == 1, button.state == 0 ? button.look : Look::Normal);
    for (const NamedZone& zone : button.state == 0 ? kTwoOctaves : kFourOctaves)
        bracket(paint, zone);
}

// Lies over the bar with the same rectangle, so it lets it show and only answers the mouse.
void drawKeyboardSecond(Paint& paint, int frame)
{
    const Look look = buttonFrame(frame).look;
    if (look == Look::Hover)
        paint.rounded(2, 2, 79, 14, kFieldRadius, kWhite.faded(0.09));
    else if (look == Look::Pressed)
        paint.rounded(2, 2, 79, 14, kFieldRadius, kBlack.faded(0.25));
}

void drawWhiteKey(Paint& paint, int frame)
{
    const Zone zone = zoneOf(frame);
    const Ink hue = hueOf(zone);
    const bool on = isLit(frame);
    paint.rect(0, 0, 12, 49, kHeadEdge);
    const Ink idle = zone == Free ? kFreeKey : mix(kWhiteKey, hue, 0.3);
    paint.rect(0, 0, 11, 46, on ? hue : idle);
    paint.rounded(0, 42, 11, 6, 1, on ? hue : idle);
    if (zone != Free)
        paint.rect(0, 44.5, 11, 3, hue);
    if (on)
        paint.disc(5.5, 38.5, 2, kDarkInk);
}

void drawBlackKey(Paint& paint, int frame)
{
    const Zone zone = zoneOf(frame);
    const Ink hue = hueOf(zone);
    const bool on = isLit(frame);
    paint.rounded(0, -4, 8, 34, 1.5, kHeadEdge);
    if (on) {
        paint.rounded(1, -4, 6, 32, 1, hue);
        paint.disc(4, 22, 1.5, kDarkInk);
        return;
    }
    const Ink body = zone == Free ? kBlackKey : mix(kBlackKey, hue, 0.22);
    paint.rounded(1, -4, 6, 32, 1, mix(body, kBlack, 0.25));
    paint.rounded(1, -4, 6, 30, 1, body);
    if (zone != Free)
        paint.rect(2, 23, 4, 2, hue);
}

// 0 to 7: the actions' icons on their keys, which are white, white, black, white, black, white,
// black, white; 8: the key that transposes by nothing; 9: a C.
void drawKeyMark(Paint& paint, int frame)
{
    constexpr Icon kActions[] = {Icon::Gate, Icon::VelocityGate, Icon::Looper, Icon::Slowdown,
        Icon::Retrigger, Icon::HalfSpeed, Icon::Step, Icon::Mute};
    constexpr bool kOnBlack[] = {false, false, true, false, true, false, true, false};
    if (frame < 8) {
        const bool black = kOnBlack[frame];
        drawIcon(paint, kActions[frame], black ? 6 : 5.5, black ? 15 : 36.5, black ? 6 : 8.5,
            black ? kText : kDarkInk, black ? 0.8 : 1);
    } else if (frame == 8) {
        paint.disc(5.5, 36.5, 2.2, kDarkInk.faded(0.8));
    } else {
        paint.text("C", 5.5, 36.5, {9, 0, Weight::Medium}, ink(0x2B3037), Align::Centre);
    }
}

void drawRollArea(Paint& paint, int frame)
{
    const bool pressed = frame == 1;
    well(paint, 0, 0, 24, 49, kFieldRadius, pressed ? kFrameHover : kHairline);
    const Ink content = pressed ? kText : kBodyText;
    paint.verticalText("ROLL", 8, 24.5, {9, 0.6, Weight::Medium}, content);
    drawIcon(paint, Icon::Roll, 17.5, 24.5, 11, content, 1.25);
}

} // namespace ormund
