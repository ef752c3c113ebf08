#include "apps/ormund/StripViews.h"

#include "panel/Look.h"
#include "skin/draw/Paint.h"
#include "view/CDrawContext.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace ormund {

namespace {

constexpr double kRadius = 4;
constexpr double kIconSize = 13;
constexpr double kBarLeft = 5.5;
constexpr double kBarHalf = 5;
constexpr double kBarWidth = 1.5;
constexpr double kTextSize = 12;
constexpr double kNumberSize = 13;
constexpr int kPixelsAStep = 3;
constexpr double kFine = 0.1;
constexpr size_t kMostTyped = 7;

} // namespace

IconButton::IconButton(const CRect& place, CControlListener* ownListener, long ownTag,
    KWFrame* ownFrame, Icon shownIcon, const Ink& litHue, int type)
    : KWButton(place, ownListener, ownTag, ownFrame, "", false, type), icon(shownIcon), hue(litHue)
{
}

void IconButton::draw(CDrawContext* context)
{
    const bool isLit = getValue() >= 0.5f;
    context->setFillColor(isHovered ? look::kRaisedHover : look::kRaised);
    context->setFrameColor(isHovered ? look::kFrameHover : look::kRaisedFrame);
    context->drawRoundRect(size, kRadius, kDrawFilledAndStroked);
    Paint paint(context->cairo(), context->getScale(), size.right, size.bottom);
    const double x = (size.left + size.right) / 2.0;
    const double y = (size.top + size.bottom) / 2.0;
    const Ink& colour = isLit ? hue : palette::kBodyText;
    drawIcon(paint, icon, x, y, kIconSize, colour);
    if (isToEnd)
        paint.line(x - kBarLeft, y - kBarHalf, x - kBarLeft, y + kBarHalf, kBarWidth, colour);
    setDirty(false);
}

void IconButton::show(bool isLit, Icon wanted)
{
    if ((getValue() >= 0.5f) == isLit && icon == wanted)
        return;
    setValue(isLit ? 1.0f : 0.0f);
    icon = wanted;
    setDirty(true);
}

CMouseEventResult IconButton::onMouseEntered(const CPoint& where, int buttons)
{
    isHovered = true;
    setDirty(true);
    return KWButton::onMouseEntered(where, buttons);
}

CMouseEventResult IconButton::onMouseExited(const CPoint& where, int buttons)
{
    isHovered = false;
    setDirty(true);
    return KWButton::onMouseExited(where, buttons);
}

StripText::StripText(
    const CRect& place, KWFrame* ownFrame, CHoriTxtAlign align, const CColor& colour)
    : KWControl(place, nullptr, 0, ownFrame), alignment(align)
{
    textColor = colour;
    setMouseEnabled(false);
}

void StripText::draw(CDrawContext* context)
{
    context->setFillColor(look::kPanel);
    context->fillRect(size);
    context->setFont(nullptr, kTextSize);
    context->setFontColor(textColor);
    context->drawString(text, size, false, alignment);
    setDirty(false);
}

void StripText::setText(const std::string& wanted)
{
    if (wanted == text)
        return;
    text = wanted;
    setDirty(true);
}

NumberField::NumberField(const CRect& place, CControlListener* ownListener, long ownTag,
    KWFrame* ownFrame, const Range& numberRange, double start)
    : KWControl(place, ownListener, ownTag, ownFrame), range(numberRange), current(start)
{
}

void NumberField::draw(CDrawContext* context)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", range.decimals, current);
    context->setFillColor(look::kWell);
    context->setFrameColor(isTyping ? look::kNeutral : look::kHairline);
    context->drawRoundRect(size, kRadius, kDrawFilledAndStroked);
    context->setFont(nullptr, kNumberSize);
    context->setFontColor(look::kText);
    context->drawString(isTyping ? typed + "|" : text, size);
    setDirty(false);
}

CMouseEventResult NumberField::onMouseDown(const CPoint& where, int buttons)
{
    if (!(buttons & kLButton))
        return kMouseEventNotHandled;
    takeKeyboard();
    isDragging = true;
    dragFrom = where.y;
    dragStart = current;
    if (buttons & kDoubleClick) {
        isTyping = true;
        typed.clear();
        setDirty(true);
    }
    return kMouseEventHandled;
}

CMouseEventResult NumberField::onMouseMoved(const CPoint& where, int buttons)
{
    if (!isDragging || isTyping)
        return kMouseEventNotHandled;
    const int steps = (dragFrom - where.y) / kPixelsAStep;
    change(dragStart + steps * range.step * (buttons & kShift ? kFine : 1));
    return kMouseEventHandled;
}

CMouseEventResult NumberField::onMouseUp(const CPoint&, int)
{
    isDragging = false;
    return kMouseEventHandled;
}

bool NumberField::onWheel(const CPoint&, float distance, int buttons)
{
    change(current + static_cast<double>(distance) * range.step * (buttons & kShift ? kFine : 1));
    return true;
}

bool NumberField::stepValue(int steps, bool fine)
{
    change(current + steps * range.step * (fine ? kFine : 1));
    return true;
}

bool NumberField::onKeyDown(const CKeyEvent& event)
{
    const bool isDigit = (event.character >= '0' && event.character <= '9')
        || ((event.character == '.' || event.character == ',') && range.decimals > 0);
    if (isDigit) {
        if (!isTyping)
            typed.clear();
        isTyping = true;
        if (typed.size() < kMostTyped)
            typed += event.character == ',' ? '.' : static_cast<char>(event.character);
        setDirty(true);
        return true;
    }
    if (!isTyping)
        return KWControl::onKeyDown(event);
    switch (event.key) {
    case CKey::Return:
    case CKey::Enter:
        takeTyped();
        return true;
    case CKey::Escape:
        isTyping = false;
        setDirty(true);
        return true;
    case CKey::Backspace:
        if (!typed.empty())
            typed.pop_back();
        setDirty(true);
        return true;
    default:
        return false;
    }
}

void NumberField::looseFocus()
{
    takeTyped();
    KWControl::looseFocus();
}

void NumberField::takeTyped()
{
    if (!isTyping)
        return;
    isTyping = false;
    setDirty(true);
    double wanted = 0;
    const char* const end = typed.data() + typed.size();
    const auto read = std::from_chars(typed.data(), end, wanted);
    if (read.ec == std::errc() && read.ptr == end)
        change(wanted);
}

void NumberField::change(double wanted)
{
    const double unit = std::pow(10.0, range.decimals);
    wanted = std::round(std::clamp(wanted, range.low, range.high) * unit) / unit;
    if (wanted == current)
        return;
    current = wanted;
    setDirty(true);
    notify();
}

void NumberField::show(double wanted)
{
    if (isTyping || isDragging || wanted == current)
        return;
    current = wanted;
    setDirty(true);
}

} // namespace ormund
