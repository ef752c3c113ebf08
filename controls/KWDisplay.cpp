#include "controls/KWDisplay.h"

#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <cmath>
#include <cstdio>

namespace ormund {

namespace {
constexpr float kDragStep = -0.01f; // of the value for a pixel at sensitivity 1
constexpr float kFineDragStep = -0.0005f;
constexpr float kWheelStep = -0.35f * 0.05f;
} // namespace

KWDisplay::KWDisplay(
    const CRect& viewSize, CControlListener* controlListener, long controlTag, KWFrame* ownFrame)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
{
}

KWDisplay::KWDisplay(const CRect& viewSize, CControlListener* controlListener, long controlTag,
    KWFrame* ownFrame, const char* titleText, bool withValue)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
    , title(titleText ? titleText : "")
    , showValue(withValue)
{
}

void KWDisplay::draw(CDrawContext* context)
{
    if (!isLive())
        return;
    if (valueSource && !mouseDown)
        setValue(sourceAsValue());
    if (CBitmap* const bitmap = getBackground()) {
        if (alphaBackground)
            bitmap->drawAlphaBlend(context, size, {}, alpha);
        else
            drawFrameOf(context, bitmap, size, 0);
    } else if (strip) {
        lastFrameOffset = frameOffset();
        drawFrameOf(context, strip, size, lastFrameOffset);
    } else if (!noFill) {
        context->setFillColor(backColor);
        context->drawRect(size, kDrawFilled);
    }
    drawTexts(context);
    KWControl::draw(context);
}

void KWDisplay::drawTexts(CDrawContext* context)
{
    CRect rect(
        size.left + textLeft, size.top + textTop, size.right - textRight, size.bottom - textBottom);
    context->setFont(font, fontSize);
    context->setFontColor(textColor);
    if (!title.empty()) {
        context->drawString(title, rect, false, alignment);
        rect.left += static_cast<int>(context->getStringWidth(title));
    }
    if (showValue) {
        lastText = valueText();
        context->drawString(lastText, rect, false, alignment);
    }
}

std::string KWDisplay::valueText() const
{
    if (getValue() < belowThreshold)
        return belowText;
    if (textSource)
        return textSource->getInfoText();
    char buffer[kValueTextSize] = {};
    if (valueToString) {
        valueToString(getValue(), buffer);
        return prefix + buffer + unit;
    }
    if (intValue) {
        std::snprintf(buffer, sizeof buffer, "%d", static_cast<int>(getValue()));
        return prefix + buffer + unit;
    }
    std::snprintf(buffer, sizeof buffer, "%*.*f", numberWidth, numberPrecision,
        static_cast<double>(getValue()));
    return (prefix.empty() ? std::string() : prefix + " ") + buffer + unit;
}

// Where the source lies in its range.
float KWDisplay::sourcePosition() const
{
    const float range = sourceMax - sourceMin;
    return range != 0 ? (valueSource->load() - sourceMin) / range : 0.0f;
}

float KWDisplay::sourceAsValue() const
{
    return sourceIsIndex ? valueSource->load() : sourcePosition();
}

int KWDisplay::frameOffset() const
{
    const float last = static_cast<float>(frameCount - 1);
    int index = 0;
    if (!valueSource)
        index = static_cast<int>(last * getValue());
    else if (sourceIsIndex)
        index = static_cast<int>(valueSource->load());
    else
        index = static_cast<int>(sourcePosition() * last + (roundFrame ? 0.5f : 0.0f));
    return index * frameHeight;
}

CMouseEventResult KWDisplay::onMouseDown(const CPoint& where, int buttons)
{
    if (!isLive() || !getMouseEnabled() || !size.pointInside(where))
        return kMouseEventNotHandled;
    if ((buttons & kRButton) && popupControl) {
        popupControl->setMenuTag(getTag());
        popupControl->beginModal(kPopupMode, &where, getTag());
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    if (showValue)
        takeKeyboard();
    mouseDown = true;
    lastPoint = where;
    return kMouseEventHandled;
}

CMouseEventResult KWDisplay::onMouseMoved(const CPoint& where, int buttons)
{
    if (!mouseDown)
        return kMouseEventNotHandled;
    if (!(buttons & (kLButton | kRButton)))
        return onMouseUp(where, buttons);
    if (!showValue)
        return kMouseEventHandled;
    const int delta = horizontalDrag ? lastPoint.x - where.x : where.y - lastPoint.y;
    lastPoint = where;
    if (!isEditing())
        openBracket();
    const float perPixel = sensitivity * (buttons & kShift ? kFineDragStep : kDragStep);
    setValue(clampedToRange(getValue() + static_cast<float>(delta) * perPixel));
    tellListener();
    setDirty(true);
    return kMouseEventHandled;
}

CMouseEventResult KWDisplay::onMouseUp(const CPoint&, int)
{
    mouseDown = false;
    if (intValue && showValue)
        setValue(std::trunc(getValue()));
    closeBracket();
    setDirty(true);
    return kMouseEventNotHandled;
}

bool KWDisplay::onWheel(const CPoint&, float distance, int)
{
    if (!isLive() || !getMouseEnabled() || !showValue)
        return false;
    wheelValue(distance, kWheelStep);
    notify();
    setDirty(true);
    return true;
}

void KWDisplay::updateControl(void* context)
{
    if (valueSource && !mouseDown && isLive()) {
        const float now = sourceAsValue();
        if (now != getValue()) {
            setValue(now);
            // A change that alters neither the frame nor the text costs no redraw.
            const bool frameMoved = strip && frameOffset() != lastFrameOffset;
            const bool textMoved = showValue && valueText() != lastText;
            if (frameMoved || textMoved)
                setDirty(true);
        }
    }
    KWControl::updateControl(context);
}

} // namespace ormund
