#include "controls/KWKnob.h"

#include "panel/Look.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace ormund {

namespace {
constexpr int kKnobKind = 2;
constexpr float kDragStep = -0.01f; // 100 pixels for the whole range at sensitivity 1
constexpr float kFineDragStep = -0.0005f;
constexpr float kWheelStep = -0.35f * 0.05f;
constexpr float kFineWheelStep = -0.11f * 0.05f;
constexpr int kDragButtons = kLButton | kRButton;
constexpr int kMotion = 2; // pixels that count as motion
} // namespace

KWKnob::KWKnob(const CRect& viewSize, CControlListener* controlListener, long controlTag,
    KWFrame* ownFrame, CBitmap* stripBitmap, int heightOfFrame, int countOfFrames,
    float dragSensitivity)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
    , strip(stripBitmap)
    , frameHeight(heightOfFrame)
    , frameCount(countOfFrames)
    , sensitivity(dragSensitivity)
{
    controlKind = kKnobKind;
}

float KWKnob::sourceAsValue() const
{
    const float range = sourceMax - sourceMin;
    return range != 0 ? (valueSource->load() - sourceMin) / range : 0.0f;
}

float KWKnob::position() const { return valueSource && !mouseDown ? sourceAsValue() : getValue(); }

int KWKnob::frameAt(float at) const
{
    const float steps = static_cast<float>(roundFrame ? frameCount : frameCount - 1);
    return std::clamp(static_cast<int>(steps * at), 0, std::max(frameCount - 1, 0));
}

void KWKnob::draw(CDrawContext* context)
{
    if (!isLive() || hidden)
        return;
    if (backBitmap)
        drawFrameOf(context, backBitmap, size, 0);
    const float at = position();
    if (!strip) {
        context->setFillColor(kWhiteCColor);
        context->drawRect(size, kDrawFilled);
        char text[32];
        const float number = valueSource ? valueSource->load() : getValue();
        std::snprintf(text, sizeof text, "%2.2f", static_cast<double>(number));
        context->setFont(font, fontSize);
        context->setFontColor(kBlackCColor);
        context->drawString(text, size, false, kCenterText);
    } else if (mode == kSliderHandle) {
        CRect handle(
            size.left, size.top, size.left + strip->getWidth(), size.top + strip->getHeight());
        if (markerMode == kMarkerX)
            handle.offset(
                static_cast<int>(static_cast<float>(size.width() - strip->getWidth()) * at), 0);
        else if (markerMode == kMarkerY)
            handle.offset(0,
                static_cast<int>(
                    static_cast<float>(size.height() - strip->getHeight()) * (1.0f - at)));
        drawFrameOf(context, strip, handle, 0);
    } else {
        drawFrameOf(context, strip, size, (firstFrame + frameAt(at)) * frameHeight);
    }
    drawHover(context);
    drawMarker(context);
    KWControl::draw(context);
}

void KWKnob::drawHover(CDrawContext* context)
{
    constexpr uint8_t kLighter = 20; // of 255: 8 %
    constexpr double kFieldRadius = 2.5;
    if ((!hovered && !mouseDown) || !strip)
        return;
    if (capRadius > 0) {
        context->setFillColor(CColor(255, 255, 255, kLighter));
        context->fillDisc({size.left + capCentre.x, size.top + capCentre.y}, capRadius);
    } else {
        context->setFrameColor(look::kFrameHover);
        context->drawRoundRect(size, kFieldRadius, kDrawStroked);
    }
}

void KWKnob::drawRect(CDrawContext* context, const CRect& updateRect)
{
    context->setClipRect(updateRect);
    draw(context);
    context->resetClipRect();
}

// A value of the engine's beside the user's, such as the modulated one.
void KWKnob::drawMarker(CDrawContext* context)
{
    if (!markerBitmap || markerMode == kNoMarker || !markerSource)
        return;
    markerValue = markerSource->load();
    if (markerValue < 0 || markerValue == getValue())
        return;
    CRect rect = size;
    int offset = 0;
    if (markerMode == kMarkerFrame) {
        offset = static_cast<int>(static_cast<float>(frameCount - 1) * markerValue) * frameHeight;
    } else {
        const int width = markerBitmap->getWidth();
        const int height = markerBitmap->getHeight();
        const int along = static_cast<int>(markerValue
            * static_cast<float>(
                markerMode == kMarkerX ? size.width() - width : size.height() - height));
        const CPoint corner = markerMode == kMarkerX ? CPoint(size.left + along, size.top)
                                                     : CPoint(size.left, size.top + along);
        rect = CRect(corner.x, corner.y, corner.x + width, corner.y + height);
    }
    drawFrameOf(context, markerBitmap, rect, offset);
}

CMouseEventResult KWKnob::onMouseDown(const CPoint& where, int buttons)
{
    if (!isLive() || !mouseableArea.pointInside(where))
        return kMouseEventNotHandled;
    if ((buttons & (kRButton | kApple)) && popupControl) {
        popupControl->setVisible(true);
        popupControl->setMenuTag(getTag());
        popupControl->beginModal(kPopupMode, &where, getTag());
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    takeKeyboard();
    // Two quick clicks into a list are two choices.
    const bool doubled = (buttons & kDoubleClick) && mode == kRelative && rowHeight == 0;
    if ((buttons & kControl) || doubled) {
        setValue(getDefaultValue());
        notify();
        setDirty(true);
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    beginDrag(where);
    return kMouseEventHandled;
}

void KWKnob::beginDrag(const CPoint& where)
{
    if (valueSource)
        setValue(sourceAsValue());
    showHoverViews();
    mouseDown = true;
    lastX = where.x;
    lastY = where.y;
    pressPoint = where;
    moved = false;
    if (pressFlag)
        *pressFlag = 1.0f;
    openBracket();
    if (mode != kRelative) {
        followPoint(where);
        tellListener();
    }
    setDirty(true);
}

void KWKnob::followPoint(const CPoint& where)
{
    const float along = horizontal
        ? static_cast<float>(where.x - size.left) / static_cast<float>(std::max(size.width(), 1))
        : 1.0f
            - static_cast<float>(where.y - size.top)
                / static_cast<float>(std::max(size.height(), 1));
    setValue(clampedToRange(along));
}

CMouseEventResult KWKnob::onMouseMoved(const CPoint& where, int buttons)
{
    if (!mouseDown)
        return kMouseEventNotHandled;
    if (!(buttons & kDragButtons))
        return onMouseUp(where, buttons);
    moved = moved || std::abs(where.x - pressPoint.x) > kMotion
        || std::abs(where.y - pressPoint.y) > kMotion;
    if (mode != kRelative && horizontal) {
        followPoint(where);
    } else {
        const int delta = horizontal ? lastX - where.x : where.y - lastY;
        const float perPixel = sensitivity * (buttons & kShift ? kFineDragStep : kDragStep);
        setValue(clampedToRange(getValue() + static_cast<float>(delta) * perPixel));
    }
    lastX = where.x;
    lastY = where.y;
    tellListener();
    setDirty(true);
    return kMouseEventHandled;
}

void KWKnob::takeRow(const CPoint& where)
{
    const int row = (size.top + rowsEnd - 1 - where.y) / rowHeight;
    chooseFrame(std::clamp(row, 0, std::max(frameCount - 1, 0)));
    tellListener();
}

CMouseEventResult KWKnob::onMouseUp(const CPoint& where, int)
{
    if (!mouseDown)
        return kMouseEventNotHandled;
    mouseDown = false;
    if (rowHeight > 0 && !moved && size.pointInside(where))
        takeRow(where);
    if (pressFlag)
        *pressFlag = 0.0f;
    closeBracket();
    startHideTimer();
    setDirty(true);
    return kMouseEventHandled;
}

CMouseEventResult KWKnob::onMouseEntered(const CPoint& where, int buttons)
{
    hovered = true;
    setDirty(true);
    return KWControl::onMouseEntered(where, buttons);
}

CMouseEventResult KWKnob::onMouseExited(const CPoint& where, int buttons)
{
    hovered = false;
    setDirty(true);
    return mouseDown ? kMouseEventHandled : KWControl::onMouseExited(where, buttons);
}

bool KWKnob::onWheel(const CPoint&, float distance, int buttons)
{
    if (!isLive() || noWheel)
        return false;
    if (valueSource && !mouseDown)
        setValue(sourceAsValue());
    wheelValue(distance, buttons & kShift ? kFineWheelStep : kWheelStep);
    notify();
    setDirty(true);
    return true;
}

// To the middle of the frame's values, which truncates back to it.
void KWKnob::chooseFrame(int index)
{
    setValue((static_cast<float>(index) + 0.5f) / static_cast<float>(std::max(frameCount, 1)));
}

// A knob of few positions goes by position.
bool KWKnob::stepValue(int steps, bool fine)
{
    if (valueSource)
        setValue(sourceAsValue());
    if (!roundFrame || frameCount < 2)
        return KWControl::stepValue(steps, fine);
    const int index = std::clamp(frameAt(getValue()) + steps, 0, frameCount - 1);
    if (index == frameAt(getValue()))
        return true;
    chooseFrame(index);
    notify();
    setDirty(true);
    return true;
}

void KWKnob::updateControl(void* context)
{
    if (isLive() && !mouseDown) {
        if (valueSource) {
            const float now = sourceAsValue();
            if (now != getValue()) {
                setValue(now);
                setDirty(true);
            }
        }
        if (markerSource && markerBitmap && markerSource->load() != markerValue)
            setDirty(true);
    }
    KWControl::updateControl(context);
}

void KWKnob::setViewSize(const CRect& rect, bool invalidate)
{
    KWControl::setViewSize(rect, invalidate);
    CRect area = rect;
    setMouseableArea(area.inset(-padding, -padding));
}

void KWKnob::setSizeAndArea(const CRect& rect) { setViewSize(rect, true); }

} // namespace ormund
