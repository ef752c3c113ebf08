#include "controls/KWButton.h"

#include "controls/KWFrame.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>
#include <bit>

namespace ormund {

namespace {
constexpr int kButtonKind = 7;
constexpr CColor kPlainFrame{200, 200, 200};
constexpr CColor kPlainOff{150, 150, 150};
constexpr CColor kPlainOn{60, 60, 60};
constexpr uint8_t kDisabledAlpha = 110;
} // namespace

KWButton::KWButton(const CRect& viewSize, CControlListener* controlListener, long controlTag,
    KWFrame* ownFrame, const char* text, bool initialState, int type)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
    , textOn(text ? text : "")
    , buttonType(type)
{
    controlKind = kButtonKind;
    textColor = CColor(200, 200, 200);
    setValue(initialState ? 1.0f : 0.0f);
}

void KWButton::readSources()
{
    if (valueSource)
        setValue(valueSource->load());
    if (stateSource)
        setValue(stateSource->isOn() ? 1.0f : 0.0f);
}

void KWButton::draw(CDrawContext* context)
{
    if (!isLive() || hidden)
        return;
    readSources();
    if (CBitmap* const bitmap = getBackground()) {
        // For each state: normal, then pressed, then hover, as far as the strip has them.
        const int stride = 1 + std::popcount(frameMask & (kPressedFrame | kHoverFrame));
        // A momentary button is 1 while it is down, and its strip has one state alone.
        const int states = bitmap->getHeight() / std::max(size.height() * stride, 1);
        const int state = std::clamp(static_cast<int>(getValue()), 0, std::max(states - 1, 0));
        int index = state * stride;
        if (mouseDown && (frameMask & kPressedFrame))
            index += 1;
        else if (hovered && (frameMask & kHoverFrame))
            index += frameMask & kPressedFrame ? 2 : 1;
        const int offset = index * size.height();
        if (disabledLook)
            bitmap->drawAlphaBlend(context, size, {0, offset}, kDisabledAlpha);
        else
            drawFrameOf(context, bitmap, size, offset);
    } else {
        drawPlain(context);
    }
    const std::string& text = textOn.empty() ? textAlt : textOn;
    if (!text.empty()) {
        context->setFont(font, fontSize);
        context->setFontColor(textColor);
        context->drawString(text, size, false, alignment);
    }
    KWControl::draw(context);
}

void KWButton::drawPlain(CDrawContext* context)
{
    if (!stateToText) {
        context->setFrameColor(kPlainFrame);
        context->setFillColor(getValue() == 0 ? kPlainOff : kPlainOn);
        context->drawRect(size, kDrawFilled);
        context->drawRect(size, kDrawStroked);
    } else if (valueSource) {
        context->setFillColor(backColor);
        context->drawRect(size, kDrawFilled);
        char text[kValueTextSize] = {};
        stateToText(getValue(), text);
        context->setFont(font, fontSize);
        context->setFontColor(textColor);
        context->drawString(text, size, false, alignment);
    }
}

void KWButton::cycle()
{
    const int next = static_cast<int>(getValue()) + 1;
    setValue(next >= stateCount ? 0.0f : static_cast<float>(next));
}

CMouseEventResult KWButton::onMouseDown(const CPoint& where, int buttons)
{
    if (!mouseableArea.pointInside(where) || !(isLive() || mouseWhenHidden))
        return kMouseEventNotHandled;
    if ((buttons & (kRButton | kApple)) && popupControl) {
        popupControl->setMenuTag(getTag());
        popupControl->beginModal(kPopupMode, &where, getTag());
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    takeKeyboard();
    showHoverViews();
    if (buttonType == kMenuOpener) {
        if (popupControl) {
            const CPoint corner(size.left, size.bottom);
            popupControl->beginModal(kPopupMode, &corner, getTag());
        }
        return kMouseEventNotHandled;
    }
    readSources();
    mouseDown = true;
    hovered = true;
    setDirty(true);
    switch (buttonType) {
    case kCycle:
        if ((buttons & kRButton) && stateCount > 2)
            setValue(0.0f);
        else
            cycle();
        break;
    case kToggleTwo:
        if (getValue() == 0)
            setValue(buttons & kRButton ? 2.0f : 1.0f);
        else
            setValue(0.0f);
        break;
    case kOnRelease:
        return kMouseEventHandled;
    default:
        setValue(1.0f);
        break;
    }
    notify();
    return kMouseEventHandled;
}

CMouseEventResult KWButton::onMouseUp(const CPoint& where, int buttons)
{
    if (!mouseDown)
        return kMouseEventNotHandled;
    const bool inside = mouseableArea.pointInside(where);
    const bool noButtonLeft = (buttons & kMouseButtons) == 0;
    if (buttonType != kHeld || noButtonLeft)
        mouseDown = false;
    setDirty(true);
    switch (buttonType) {
    case kMomentary:
    case kMomentaryMoving:
        setValue(0.0f);
        notify();
        break;
    case kHeld:
        if (noButtonLeft) {
            setValue(0.0f);
            notify();
        }
        break;
    case kOnRelease:
        if (inside) {
            readSources();
            cycle();
            notify();
        }
        break;
    default:
        break;
    }
    if (!inside) {
        hovered = false;
        startHideTimer();
    }
    return kMouseEventHandled;
}

CMouseEventResult KWButton::onMouseMoved(const CPoint& where, int buttons)
{
    if (buttonType == kMomentaryMoving && (buttons & kMouseButtons) == 0) {
        notify();
        return kMouseEventHandled;
    }
    if (buttonType == kOnRelease && mouseDown) {
        const bool inside = mouseableArea.pointInside(where);
        if (inside != hovered)
            setDirty(true);
        hovered = inside;
        return kMouseEventHandled;
    }
    return mouseDown ? kMouseEventHandled : kMouseEventNotHandled;
}

CMouseEventResult KWButton::onMouseEntered(const CPoint& where, int buttons)
{
    hovered = true;
    if (frameMask & kHoverFrame)
        setDirty(true);
    return KWControl::onMouseEntered(where, buttons);
}

CMouseEventResult KWButton::onMouseExited(const CPoint& where, int buttons)
{
    hovered = false;
    if (frameMask & kHoverFrame)
        setDirty(true);
    return KWControl::onMouseExited(where, buttons);
}

void KWButton::updateControl(void* context)
{
    if (isLive() && !hidden && !mouseDown) {
        const float before = getValue();
        readSources();
        if (getValue() != before) {
            setDirty(true);
            if (valueSource && hoverShown)
                startHideTimer();
        }
    }
    KWControl::updateControl(context);
}

// Return is a click in the middle.
bool KWButton::onKeyDown(const CKeyEvent& event)
{
    const bool pressed = event.key == CKey::Return || event.key == CKey::Enter;
    if (!pressed || event.modifiers != 0 || !isLive() || !getMouseEnabled())
        return KWControl::onKeyDown(event);
    const bool wasHovered = hovered;
    const CPoint middle((mouseableArea.left + mouseableArea.right) / 2,
        (mouseableArea.top + mouseableArea.bottom) / 2);
    onMouseDown(middle, kLButton);
    onMouseUp(middle, 0);
    hovered = wasHovered;
    if (!wasHovered)
        startHideTimer();
    if (frame)
        frame->showFocusRing(true);
    return true;
}

// A cycling button goes either way.
bool KWButton::stepValue(int steps, bool)
{
    if (buttonType != kCycle || stateCount < 1)
        return false;
    readSources();
    const int now = static_cast<int>(getValue());
    setValue(static_cast<float>(((now + steps) % stateCount + stateCount) % stateCount));
    notify();
    setDirty(true);
    return true;
}

void KWButton::menuOpened()
{
    setValue(1.0f);
    setDirty(true);
}

void KWButton::menuClosed()
{
    setValue(0.0f);
    setDirty(true);
}

} // namespace ormund
