// What the mouse and the wheel do to a step grid.
#include "controls/KWTableView.h"

#include "controls/KWFrame.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ormund {

namespace {
constexpr float kFineDrag = 0.002f; // 500 pixels for the whole range
constexpr float kWheelScale = -0.35f;
constexpr float kFineWheelScale = 0.25f;
constexpr float kWheelStep = 0.05f;
constexpr float kLoopEdge = 0.2f; // the share of the bar's length that drags an end
} // namespace

bool KWTableView::takesMouse(const CPoint& where) const
{
    return isLive() && size.pointInside(where) && table && has(kTableEditable) && stepCount() > 0;
}

CMouseEventResult KWTableView::onMouseDown(const CPoint& where, int buttons)
{
    if (!takesMouse(where))
        return kMouseEventNotHandled;
    mouseDownPoint = where;
    if (showExtra && has(kTableRuler) && extraRect.pointInside(where)) {
        tellListener();
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    if ((buttons & (kRButton | kApple)) && popupControl)
        return openPopup(where);
    mousePoint = where;
    minDragX = where.x;
    maxDragX = where.x;
    loopDrag = false;
    if (has(kTableLoopBar) && loopRect.pointInside(where)) {
        pressLoopBar(where);
        return kMouseEventHandled;
    }
    if (has(kTableToggle))
        return pressToggle(where);
    for (CControl* button : childButtons) {
        if (!button || !button->hitTest(where, 0))
            continue;
        const CMouseEventResult result = button->onMouseDown(where, buttons);
        pressedButton = result == kMouseEventHandled ? button : nullptr;
        return result;
    }
    beginStepEdit(where, buttons);
    return kMouseEventHandled;
}

CMouseEventResult KWTableView::openPopup(const CPoint& where)
{
    popupControl->setVisible(true);
    popupControl->setMenuTag(getTag());
    popupControl->setMenuStep(static_cast<int>(screenToStep(where.x)));
    popupControl->beginModal(kPopupMode, &where, getTag());
    return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
}

// Deliberate: a press before the start or behind the end sets the flag and the cursor, and drags
// nothing until the next press inside the bar.
void KWTableView::pressLoopBar(const CPoint& where)
{
    loopDrag = true;
    minDragX = static_cast<int>(static_cast<float>(where.x - loopRect.left)
        / static_cast<float>(std::max(loopRect.width(), 1)) * static_cast<float>(stepCount()));
    const float step = screenToStep(where.x);
    if (step < table->loopStart || step > table->loopEnd) {
        (step < table->loopStart ? dragLoopStart : dragLoopEnd) = true;
        if (frame)
            frame->setCursor(CCursor::ResizeHorizontal);
        return;
    }
    const float length = table->loopEnd - table->loopStart;
    const float along = length > 0 ? (step - table->loopStart) / length : 0.5f;
    if (along < kLoopEdge) {
        dragLoopStart = true;
    } else if (along > 1.0f - kLoopEdge) {
        dragLoopEnd = true;
    } else {
        dragLoopMove = true;
        loopMoveStep = static_cast<int>(step);
    }
    mouseIsDown = true;
    openBracket();
}

CMouseEventResult KWTableView::pressToggle(const CPoint& where)
{
    const int step = static_cast<int>(screenToStep(where.x));
    openBracket();
    setNormalised(step, normalised(step) == 0 ? 1.0f : 0.0f);
    closeBracket();
    setDirty(true);
    return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
}

void KWTableView::beginStepEdit(const CPoint& where, int buttons)
{
    openBracket();
    pressStep = static_cast<int>(screenToStep(where.x));
    pressValue = screenToValue(where.y);
    if (buttons & kAlt) {
        dragValue = 0;
        takeSnapshot();
        altDrag = true;
    } else {
        setNormalised(pressStep, pressValue);
    }
    showHoverViews();
    mouseIsDown = true;
    shiftDrag = (buttons & kShift) != 0;
    ctrlDrag = (buttons & kControl) != 0;
    if (shiftDrag)
        dragValue = normalised(static_cast<int>(screenToStep(mousePoint.x)));
    if (pressFlag)
        *pressFlag = 1.0f;
    setDirty(true);
}

void KWTableView::takeSnapshot()
{
    snapshot.resize(static_cast<size_t>(stepCount()));
    for (int step = 0; step < stepCount(); ++step)
        snapshot[static_cast<size_t>(step)] = normalised(step);
}

CMouseEventResult KWTableView::onMouseMoved(const CPoint& where, int buttons)
{
    if (pressedButton)
        return pressedButton->onMouseMoved(where, buttons);
    if (!mouseIsDown || !table)
        return kMouseEventNotHandled;
    const int dx = where.x - mouseDownPoint.x;
    const int dy = where.y - mouseDownPoint.y;
    mousePoint.offset(dx, dy);
    mouseDownPoint = where;
    if (altDrag)
        dragTilt(dy);
    else if (shiftDrag)
        dragFine(dy);
    else if (loopDrag)
        dragLoop(where, buttons);
    else
        dragPaint(dx, dy, buttons);
    return kMouseEventHandled;
}

// The whole pattern moves together, away from the snapshot: each step is limited by itself, and
// dragging back restores the shape.
void KWTableView::dragTilt(int dy)
{
    dragValue -= static_cast<float>(dy) * kFineDrag;
    const int count = std::min(stepCount(), static_cast<int>(snapshot.size()));
    for (int step = 0; step < count; ++step)
        setNormalised(
            step, std::clamp(snapshot[static_cast<size_t>(step)] + dragValue, 0.0f, 1.0f));
    setDirty(true);
}

// The step stays the pressed one however far x moves.
void KWTableView::dragFine(int dy)
{
    dragValue -= static_cast<float>(dy) * kFineDrag;
    setNormalised(pressStep, dragValue);
    setDirty(true);
}

void KWTableView::dragLoop(const CPoint& where, int buttons)
{
    if (!(buttons & kMouseButtons)) {
        clearLoopFlags();
        return;
    }
    const int count = stepCount();
    const int step = static_cast<int>(screenToStep(where.x));
    int start = static_cast<int>(table->loopStart);
    int end = static_cast<int>(table->loopEnd);
    if (dragLoopStart) {
        start = step;
    } else if (dragLoopEnd) {
        end = step;
    } else if (dragLoopMove) {
        start += step - loopMoveStep;
        end += step - loopMoveStep;
        loopMoveStep = step;
    }
    const int least = table->minLoopLength;
    if (end - start < least) {
        // Deliberate: a squeezed end lies past the table, and the old one stays.
        end = count + (start + least <= count ? start : 0);
        if (end - start < least)
            start = std::max(end - least, 0);
    }
    if (start >= 0 && start <= count)
        table->loopStart = static_cast<float>(start);
    if (end >= 0 && end <= count)
        table->loopEnd = static_cast<float>(end);
    setValue(0.0f);
    tellListener();
    setDirty(true);
}

void KWTableView::dragPaint(int dx, int dy, int buttons)
{
    minDragX = std::min(minDragX, mousePoint.x);
    maxDragX = std::max(maxDragX, mousePoint.x);
    const Access access(table);
    if (!access.isGranted())
        return;
    // A release outside the view ends the drag here; this move still paints.
    const bool released = !(buttons & kMouseButtons);
    if (ctrlDrag)
        paintRamp();
    else
        paintSpan(dx, dy);
    setDirty(true);
    if (released) {
        clearLoopFlags();
        mouseIsDown = false;
        endStepEdit();
    }
}

// Every step that the pointer crossed, at the height at which the line between the two motions
// crosses its middle: a fast sweep leaves no gaps and flattens nothing.
void KWTableView::paintSpan(int dx, int dy)
{
    const CPoint from{mousePoint.x - dx, mousePoint.y - dy};
    const int first = static_cast<int>(screenToStep(from.x));
    const int last = static_cast<int>(screenToStep(mousePoint.x));
    const int direction = last < first ? -1 : 1;
    for (int step = first; step != last; step += direction) {
        const int middle = pixelOfStep(static_cast<float>(step) + 0.5f);
        const int along = (middle - from.x) * direction;
        // The step of the last motion has its value, unless the line passes its middle.
        if (along < 0 && step == first)
            continue;
        const int way = std::clamp(along, 0, std::abs(dx));
        setNormalised(step, screenToValue(from.y + dy * way / std::max(std::abs(dx), 1)));
    }
    setNormalised(last, screenToValue(mousePoint.y));
}

// A straight line from the pressed point to the pointer, made again at every move.
void KWTableView::paintRamp()
{
    const int target = static_cast<int>(screenToStep(mousePoint.x));
    const float value01 = screenToValue(mousePoint.y);
    if (target == pressStep) {
        pressValue = value01;
        setNormalised(target, value01);
        return;
    }
    const int length = std::abs(target - pressStep);
    const int direction = target > pressStep ? 1 : -1;
    const float rise = (value01 - pressValue) / static_cast<float>(length);
    float level = pressValue;
    for (int i = 0; i <= length; ++i) {
        setNormalised(pressStep + i * direction, level);
        level += rise;
    }
}

CMouseEventResult KWTableView::onMouseUp(const CPoint& where, int buttons)
{
    if (pressedButton)
        return std::exchange(pressedButton, nullptr)->onMouseUp(where, buttons);
    const bool wasDown = mouseIsDown;
    mouseIsDown = false;
    altDrag = false;
    startHideTimer();
    if (!(buttons & kMouseButtons)) {
        const bool wasLoop = loopDrag;
        clearLoopFlags();
        loopDrag = false;
        if (wasLoop) {
            closeBracket();
            if (frame)
                frame->setCursor(CCursor::Arrow);
            return kMouseEventHandled;
        }
    }
    endStepEdit();
    return wasDown ? kMouseEventHandled : kMouseEventNotHandled;
}

void KWTableView::endStepEdit()
{
    if (pressFlag)
        *pressFlag = 0.0f;
    shiftDrag = false;
    ctrlDrag = false;
    setDirty(true);
    closeBracket();
}

void KWTableView::clearLoopFlags()
{
    dragLoopStart = false;
    dragLoopMove = false;
    dragLoopEnd = false;
    loopMoveStep = 0;
}

CMouseEventResult KWTableView::onMouseExited(const CPoint& where, int buttons)
{
    return mouseIsDown ? kMouseEventHandled : KWControl::onMouseExited(where, buttons);
}

bool KWTableView::onWheel(const CPoint& where, float distance, int buttons)
{
    if (!takesMouse(where))
        return false;
    const int step = static_cast<int>(screenToStep(where.x));
    openBracket();
    if (has(kTableRawValues)) {
        // By whole numbers, whatever the wheel's speed. A distance of 0 counts as downward.
        const float wanted = std::trunc(raw(step) + (distance > 0 ? 1.0f : -1.0f));
        table->setValue(step, std::clamp(wanted, table->minValue(), table->maxValue()));
    } else {
        float scaled = distance * kWheelScale;
        if (buttons & kShift)
            scaled *= kFineWheelScale;
        setNormalised(step, std::clamp(normalised(step) - scaled * kWheelStep, 0.0f, 1.0f));
    }
    closeBracket();
    setDirty(true);
    return true;
}

} // namespace ormund
