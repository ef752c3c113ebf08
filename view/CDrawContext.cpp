#include "view/CDrawContext.h"

#include "view/TextMask.h"
#include "view/TextUse.h"
#include "view/Typeface.h"

#include <cairo.h>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace ormund {

CDrawContext::CDrawContext(cairo_surface_t* image, double imageScale)
    : context(cairo_create(image)), scale(imageScale)
{
    surfaceRect = {0, 0, static_cast<int>(std::ceil(cairo_image_surface_get_width(image) / scale)),
        static_cast<int>(std::ceil(cairo_image_surface_get_height(image) / scale))};
    cairo_scale(context, scale, scale);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_MITER);
}

CDrawContext::~CDrawContext() { cairo_destroy(context); }

void CDrawContext::setColor(const CColor& color)
{
    cairo_set_source_rgba(
        context, color.red / 255.0, color.green / 255.0, color.blue / 255.0, color.alpha / 255.0);
}

void CDrawContext::strokePath()
{
    setColor(frameColor);
    cairo_set_line_width(context, lineWidth);
    if (lineStyle == kLineOnOffDash) {
        const double dash[] = {2, 2};
        cairo_set_dash(context, dash, 2, 0);
    }
    cairo_stroke(context);
    cairo_set_dash(context, nullptr, 0, 0);
}

void CDrawContext::paintPath(CDrawStyle style)
{
    if (style != kDrawStroked) {
        setColor(fillColor);
        if (style == kDrawFilled)
            cairo_fill(context);
        else
            cairo_fill_preserve(context);
    }
    if (style != kDrawFilled)
        strokePath();
}

void CDrawContext::lineTo(const CPoint& point)
{
    const CPoint from = pen;
    pen = point;
    // Straight lines end at the outer edges of their last pixels and are plain rectangles; others
    // end at the middles, round.
    const bool isFlat = point.y == from.y;
    const bool isUpright = point.x == from.x;
    cairo_new_path(context);
    if ((isFlat || isUpright) && lineStyle == kLineSolid) {
        const double across = (1 - lineWidth) / 2;
        const double left = std::min(from.x, point.x) + (isFlat ? 0 : across);
        const double top = std::min(from.y, point.y) + (isFlat ? across : 0);
        const double width = isFlat ? std::abs(point.x - from.x) + 1 : lineWidth;
        const double height = isFlat ? lineWidth : std::abs(point.y - from.y) + 1;
        setColor(frameColor);
        cairo_rectangle(context, left, top, width, height);
        cairo_fill(context);
        return;
    }
    cairo_move_to(context, from.x + 0.5, from.y + 0.5);
    cairo_line_to(context, point.x + 0.5, point.y + 0.5);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    strokePath();
    cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
}

void CDrawContext::drawRect(const CRect& rect, CDrawStyle style)
{
    if (rect.isEmpty())
        return;
    if (style != kDrawStroked) {
        setColor(fillColor);
        cairo_rectangle(context, rect.left, rect.top, rect.width(), rect.height());
        cairo_fill(context);
    }
    if (style != kDrawFilled) {
        const double half = lineWidth / 2;
        cairo_rectangle(context, rect.left + half, rect.top + half, rect.width() - lineWidth,
            rect.height() - lineWidth);
        strokePath();
    }
}

void CDrawContext::drawRoundRect(const CRect& rect, double radius, CDrawStyle style)
{
    if (rect.isEmpty())
        return;
    constexpr double kQuarter = std::numbers::pi / 2;
    const double half = style == kDrawFilled ? 0 : lineWidth / 2;
    const double l = rect.left + half;
    const double t = rect.top + half;
    const double r = rect.right - half;
    const double b = rect.bottom - half;
    const double round = std::max(0.0, std::min({radius - half, (r - l) / 2, (b - t) / 2}));
    cairo_new_path(context);
    cairo_arc(context, r - round, t + round, round, -kQuarter, 0);
    cairo_arc(context, r - round, b - round, round, 0, kQuarter);
    cairo_arc(context, l + round, b - round, round, kQuarter, 2 * kQuarter);
    cairo_arc(context, l + round, t + round, round, 2 * kQuarter, 3 * kQuarter);
    cairo_close_path(context);
    paintPath(style);
}

void CDrawContext::drawEllipse(const CRect& rect, CDrawStyle style)
{
    if (rect.isEmpty())
        return;
    const double half = style == kDrawFilled ? 0 : lineWidth / 2;
    cairo_save(context);
    cairo_translate(context, (rect.left + rect.right) / 2.0, (rect.top + rect.bottom) / 2.0);
    cairo_scale(context, rect.width() / 2.0 - half, rect.height() / 2.0 - half);
    cairo_new_path(context);
    cairo_arc(context, 0, 0, 1, 0, 2 * std::numbers::pi);
    cairo_restore(context);
    paintPath(style);
}

void CDrawContext::fillDisc(CDrawPoint centre, double radius)
{
    cairo_new_path(context);
    cairo_arc(context, centre.x, centre.y, radius, 0, 2 * std::numbers::pi);
    paintPath(kDrawFilled);
}

void CDrawContext::drawPolygon(const std::vector<CDrawPoint>& points, CDrawStyle style)
{
    if (points.size() < 2)
        return;
    cairo_new_path(context);
    for (const CDrawPoint& point : points)
        cairo_line_to(context, point.x, point.y);
    if (style != kDrawStroked)
        cairo_close_path(context);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    paintPath(style);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_MITER);
}

void CDrawContext::drawArc(CDrawPoint centre, double radius, double startDegrees, double endDegrees)
{
    constexpr double kRadians = std::numbers::pi / 180;
    cairo_new_path(context);
    cairo_arc(context, centre.x, centre.y, radius, startDegrees * kRadians, endDegrees * kRadians);
    strokePath();
}

void CDrawContext::setFont(const CFontDesc* font, double size, int style)
{
    fontSize = size > 0 ? size : font ? font->getSize() : 11;
    fontStyle = style >= 0 ? style : font ? font->getStyle() : kNormalFace;
    tracking = font ? font->getTracking() : 0;
}

double CDrawContext::getStringWidth(std::string_view text) const
{
    return Typeface::forStyle(fontStyle).width(text, fontSize, tracking);
}

void CDrawContext::drawString(
    std::string_view text, const CRect& rect, bool opaque, CHoriTxtAlign align)
{
    if (opaque)
        fillRect(rect);
    if (text.empty() || rect.isEmpty())
        return;
    Typeface& face = Typeface::forStyle(fontStyle);
    // The space after the last character is no part of the word.
    const double width = face.width(text, fontSize, tracking) - tracking;
    double x = rect.left;
    if (align == kCenterText)
        x = rect.left + (rect.width() - width) / 2;
    else if (align == kRightText)
        x = rect.right - width;
    // A baseline on a whole device pixel keeps the feet of the letters sharp.
    const double middle = rect.top + (rect.height() + face.capHeight(fontSize)) / 2;
    const double baseline = std::round(middle * scale) / scale;
    // Small text may hang a pixel out of a tight rectangle, as descenders of its neighbours do.
    cairo_save(context);
    cairo_rectangle(context, rect.left, rect.top - 2, rect.width(), rect.height() + 4);
    cairo_clip(context);
    drawStringAt(text, x, baseline);
    cairo_restore(context);
}

void CDrawContext::drawStringAt(std::string_view text, double x, double baseline)
{
    if (textObserver)
        textObserver({text, fontSize, fontColor.red / 255.0, fontColor.green / 255.0,
            fontColor.blue / 255.0, fontColor.alpha / 255.0, context, x,
            baseline - Typeface::forStyle(fontStyle).capHeight(fontSize), x + getStringWidth(text),
            baseline});
    cairo_matrix_t matrix;
    cairo_get_matrix(context, &matrix);
    setColor(fontColor);
    const bool isUpright =
        matrix.xy == 0 && matrix.yx == 0 && matrix.xx == scale && matrix.yy == scale;
    if (!isUpright) {
        cairo_new_path(context);
        Typeface::forStyle(fontStyle).addPath(context, text, fontSize, x, baseline, tracking);
        cairo_fill(context);
        return;
    }
    cairo_user_to_device(context, &x, &baseline);
    const double quarters = std::round(x * 4);
    const double whole = std::floor(quarters / 4);
    const TextMask& mask = textMask(
        text, {fontStyle, fontSize, tracking, scale, static_cast<int>(quarters - whole * 4)});
    if (!mask.surface)
        return;
    cairo_save(context);
    cairo_identity_matrix(context);
    cairo_mask_surface(context, mask.surface, whole + mask.left, std::round(baseline) + mask.top);
    cairo_restore(context);
}

void CDrawContext::setClipRect(const CRect& rect)
{
    CRect limited = rect;
    limited.bound(getClipRect());
    clips.push_back(limited);
    cairo_save(context);
    // At a scale of one and a half a panel edge may fall into a device pixel, and a clip that
    // blends there would let the old picture shine through; so the clip takes the whole pixel.
    const double left = std::floor(limited.left * scale) / scale;
    const double top = std::floor(limited.top * scale) / scale;
    const double right = std::ceil(limited.right * scale) / scale;
    const double bottom = std::ceil(limited.bottom * scale) / scale;
    cairo_rectangle(context, left, top, right - left, bottom - top);
    cairo_clip(context);
}

void CDrawContext::resetClipRect()
{
    if (clips.empty())
        return;
    clips.pop_back();
    cairo_restore(context);
}

} // namespace ormund
