#include "controls/KWListLineView.h"

#include "controls/KWFrame.h"
#include "controls/KWListLineViewMenu.h"
#include "data/tracks/KWListLine.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>

namespace ormund {

namespace {
}

KWListLineView::KWListLineView(
    const CRect& viewSize, CControlListener* controlListener, long controlTag, KWFrame* ownFrame)
    : KWLineView(viewSize, controlListener, controlTag, ownFrame)
    , menu(new KWListLineViewMenu(viewSize, this, controlTag, ownFrame))
{
}

KWListLineView::~KWListLineView()
{
    menu->ownerGone();
    menu->forget();
}

int KWListLineView::lastChoice() const { return line ? static_cast<int>(line->maximum.load()) : 0; }

CMouseEventResult KWListLineView::onMouseDown(const CPoint& where, int buttons)
{
    if (!readsMouse(where))
        return kMouseEventNotHandled;
    dirtyFrame = false;
    const int step = cellAt(where.x);
    const bool left = buttons & kLButton;
    const bool right = buttons & kRButton;
    if (left && (buttons & kShift)) {
        dragValue = line->step(step);
    } else if (buttons & kControl) {
        openBracket();
        for (int i = left ? 0 : step; i < (left ? line->steps() : step + 1); ++i)
            line->setStep(i, 0.0f);
        closeBracket();
        setDirty(true);
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    } else if (popupControl && ((right && (buttons & kShift)) || (buttons & kApple))) {
        return openPopup(where, step);
    } else if (!right) {
        if (!menuOpen || !left)
            openMenu(where, step);
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    openBracket();
    dragStep = step;
    if (right)
        line->setStep(step, 0.0f);
    mouseDown = true;
    setDirty(true);
    return kMouseEventHandled;
}

CMouseEventResult KWListLineView::onMouseMoved(const CPoint& where, int buttons)
{
    if (!mouseDown || !line)
        return kMouseEventNotHandled;
    const int step = cellAt(where.x);
    const bool paints = (buttons & kLButton) && (buttons & kShift);
    if (paints || (buttons & kRButton)) {
        // All cells since the last motion, so that a fast sweep leaves no gaps.
        for (int i = std::min(step, dragStep); i <= std::max(step, dragStep); ++i)
            line->setStep(i, paints ? dragValue : 0.0f);
    }
    dragStep = step;
    setDirty(true);
    return kMouseEventHandled;
}

CMouseEventResult KWListLineView::onMouseUp(const CPoint&, int)
{
    if (!mouseDown)
        return kMouseEventNotHandled;
    mouseDown = false;
    closeBracket();
    startHideTimer();
    return kMouseEventHandled;
}

bool KWListLineView::onWheel(const CPoint& where, float distance, int)
{
    if (!readsMouse(where))
        return false;
    const int step = cellAt(where.x);
    const int next = static_cast<int>(line->step(step)) + (distance > 0 ? 1 : -1);
    const int last = lastChoice();
    editCell(step, static_cast<float>(next > last ? 0 : next < 0 ? last : next));
    return true;
}

void KWListLineView::editCell(int step, float choice)
{
    if (!line || line->step(step) == choice)
        return;
    openBracket();
    line->setStep(step, choice);
    closeBracket();
    setDirty(true);
}

// Centred on the pointer and within the view's width; above the pointer, or below it where the
// frame has no room above.
void KWListLineView::openMenu(const CPoint& where, int step)
{
    if (!frame)
        return;
    menu->fitTo(lastChoice());
    const CPoint extent = menu->gridSize();
    int left = where.x - extent.x / 2;
    left = std::max(std::min(left, size.right - extent.x), size.left);
    int top = menuOffsetX != 0 ? size.top + menuOffsetX : where.y - menuY - extent.y;
    if (top < 0)
        top = where.y + menuY;
    menu->setViewSize({left, top, left + extent.x, top + extent.y}, false);
    menu->step = step;
    menu->line = static_cast<int>(getTag());
    const int chosen = static_cast<int>(line->step(step));
    menu->setValue(static_cast<float>(menu->isShiftedByOne ? chosen - 1 : chosen));
    menuOpen = true;
    menu->beginModal(kPopupMode, nullptr, 0);
    showHoverViews();
}

void KWListLineView::menuClosed()
{
    menuOpen = false;
    dirtyFrame = true;
    startHideTimer();
}

void KWListLineView::updateControl(void* context)
{
    if (line && isLive()) {
        const uint32_t generation = line->generation();
        if (lastPage != line->row() || lastRunningStep != runningCell()
            || lastGeneration != generation) {
            lastPage = line->row();
            lastRunningStep = runningCell();
            lastGeneration = generation;
            setDirty(true);
        }
    }
    if (dirtyFrame && !menuOpen) {
        dirtyFrame = false;
        if (frame)
            frame->setDirty(true);
    }
    KWControl::updateControl(context);
}

void KWListLineView::valueChanged(CControl* sender)
{
    if (sender != menu)
        return;
    const float choice = menu->getValue() + (menu->isShiftedByOne ? 1.0f : 0.0f);
    editCell(menu->step, choice);
}

} // namespace ormund
