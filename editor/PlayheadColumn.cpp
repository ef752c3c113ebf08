#include "editor/PlayheadColumn.h"

#include "panel/Look.h"
#include "view/CDrawContext.h"

#include <cairo.h>

#include <cmath>
#include <numbers>

namespace ormund {

namespace {

// A step's cell is 17 wide; a column has an edge on either side of it.
constexpr int kCellWidth = 17;
constexpr int kHeadHeight = 9;
constexpr double kHeadRadius = 2;
constexpr double kFill = 0.27;
constexpr double kEdge = 0.9;

struct Band {
    int left; // of the first cell
    int top;
    int bottom;
    CColor hue;
};

Band bandOf(ScreenLane lane)
{
    switch (lane) {
    case ScreenLane::Pitch:
        return {172, 50, 144, look::kPitch};
    case ScreenLane::Velocity:
        return {172, 159, 248, look::kVelocity};
    case ScreenLane::Gate:
        return {172, 269, 366, look::kGate};
    case ScreenLane::Performance:
        return {172, 379, 469, look::kPerformance};
    case ScreenLane::Song:
        return {824, 650, 692, look::kNeutral};
    default:
        return {172, 489, 576, look::kModulation};
    }
}

void setColour(cairo_t* pen, const CColor& hue, double white, double alpha)
{
    const auto mixed = [white](uint8_t part) { return part / 255.0 * (1 - white) + white; };
    cairo_set_source_rgba(pen, mixed(hue.red), mixed(hue.green), mixed(hue.blue), alpha);
}

} // namespace

PlayheadColumn::PlayheadColumn(CControlListener* controlListener, long controlTag,
    KWFrame* ownFrame, ScreenLane ownLane, const Crossing<float>& pixelsFromLeft)
    : KWControl({}, controlListener, controlTag, ownFrame), lane(ownLane), source(pixelsFromLeft)
{
    hoverEnabled = 0;
    place();
}

void PlayheadColumn::place()
{
    const Band band = bandOf(lane);
    const float along = source.load();
    left = band.left + static_cast<int>(along);
    setViewSize(along < 0 ? CRect{} : CRect{left - 1, band.top, left + kCellWidth + 1, band.bottom},
        isLive());
}

void PlayheadColumn::updateControl(void* context)
{
    if (static_cast<int>(source.load()) != left - bandOf(lane).left)
        place();
    KWControl::updateControl(context);
}

void PlayheadColumn::draw(CDrawContext* context)
{
    if (!isLive() || size.isEmpty())
        return;
    const Band band = bandOf(lane);
    cairo_t* const pen = context->cairo();
    // Straight edges stand on whole device pixels at every scale.
    const double scale = context->getScale();
    const auto snapped = [scale](double at) { return std::round(at * scale) / scale; };
    const double outer = snapped(left - 1);
    const double inner = snapped(left);
    const double innerRight = snapped(left + kCellWidth - 1);
    const double outerRight = snapped(left + kCellWidth);
    const double top = snapped(band.top);
    const double headEnd = snapped(band.top + kHeadHeight);
    const double bottom = snapped(band.bottom);
    cairo_save(pen);
    constexpr double kLight = 0.45;
    setColour(pen, band.hue, kLight, kFill);
    cairo_rectangle(pen, inner, headEnd, innerRight - inner, bottom - headEnd);
    cairo_fill(pen);
    setColour(pen, band.hue, kLight, kEdge);
    cairo_rectangle(pen, outer, headEnd, inner - outer, bottom - headEnd);
    cairo_rectangle(pen, innerRight, headEnd, outerRight - innerRight, bottom - headEnd);
    cairo_fill(pen);

    constexpr double kHead = 0.72;
    constexpr double kQuarter = std::numbers::pi / 2;
    setColour(pen, band.hue, kHead, 1);
    cairo_new_path(pen);
    cairo_arc(pen, outer + kHeadRadius, top + kHeadRadius, kHeadRadius, 2 * kQuarter, 3 * kQuarter);
    cairo_arc(
        pen, outerRight - kHeadRadius, top + kHeadRadius, kHeadRadius, 3 * kQuarter, 4 * kQuarter);
    cairo_arc(pen, outerRight - kHeadRadius, headEnd - kHeadRadius, kHeadRadius, 0, kQuarter);
    cairo_arc(pen, outer + kHeadRadius, headEnd - kHeadRadius, kHeadRadius, kQuarter, 2 * kQuarter);
    cairo_close_path(pen);
    cairo_fill(pen);
    // The sign that needs no colour: a triangle of 7 by 4, downward.
    constexpr double kTriangleHalf = 3.5;
    constexpr double kTriangleHeight = 4;
    const double middle = (outer + outerRight) / 2;
    const double triangleTop = (top + headEnd - kTriangleHeight) / 2;
    setColour(pen, look::kInk, 0, 1);
    cairo_move_to(pen, middle - kTriangleHalf, triangleTop);
    cairo_line_to(pen, middle + kTriangleHalf, triangleTop);
    cairo_line_to(pen, middle, triangleTop + kTriangleHeight);
    cairo_close_path(pen);
    cairo_fill(pen);
    cairo_restore(pen);
    setDirty(false);
}

} // namespace ormund
