#include "controls/KWBtnLineView.h"

#include "controls/KWFrame.h"
#include "data/tracks/KWBtnLine.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>

namespace ormund {

KWBtnLineView::KWBtnLineView(
    const CRect& viewSize, CControlListener* controlListener, long controlTag, KWFrame* ownFrame)
    : KWLineView(viewSize, controlListener, controlTag, ownFrame)
{
}

CMouseEventResult KWBtnLineView::onMouseDown(const CPoint& where, int buttons)
{
    if (!readsMouse(where))
        return kMouseEventNotHandled;
    dragged = false;
    const int step = cellAt(where.x);
    if (popupControl
        && ((buttons & kApple) || (buttons & (kRButton | kShift)) == (kRButton | kShift))) {
        return openPopup(where, step);
    }
    showHoverViews();
    if (exclusive == 1) {
        pressExclusive(step);
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    openBracket();
    dragStep = step;
    lastStep = step;
    dragValue = line->step(step);
    mouseDown = true;
    return kMouseEventHandled;
}

void KWBtnLineView::pressExclusive(int step)
{
    openBracket();
    const float old = line->step(step);
    for (int i = 0; i < line->steps(); ++i)
        line->setStep(i, 0.0f);
    line->setStep(step, 1.0f - old);
    closeBracket();
    setDirty(true);
}

CMouseEventResult KWBtnLineView::onMouseMoved(const CPoint& where, int buttons)
{
    if (!mouseDown || !line)
        return kMouseEventNotHandled;
    const int step = cellAt(where.x);
    if (step < 0 || (step == dragStep && !dragged))
        return kMouseEventHandled;
    dragged = true;
    // All cells since the last motion, so that a fast sweep leaves no gaps.
    const float painted = buttons & kRButton ? 0.0f : dragValue;
    for (int i = std::min(step, lastStep); i <= std::max(step, lastStep); ++i)
        line->setStep(i, painted);
    lastStep = step;
    setDirty(true);
    return kMouseEventHandled;
}

// A click goes on to the next value, and from the last one back to off.
CMouseEventResult KWBtnLineView::onMouseUp(const CPoint& where, int)
{
    if (!mouseDown)
        return kMouseEventNotHandled;
    mouseDown = false;
    const int step = cellAt(where.x);
    if (!dragged && !paintOnly && step >= 0) {
        const int now = static_cast<int>(line->step(step));
        const int last = static_cast<int>(line->maximum.load());
        line->setStep(step, now >= last ? 0.0f : static_cast<float>(now + 1));
    }
    closeBracket();
    startHideTimer();
    setDirty(true);
    return kMouseEventHandled;
}

bool KWBtnLineView::onWheel(const CPoint& where, float distance, int)
{
    if (!readsMouse(where))
        return false;
    const int step = cellAt(where.x);
    if (exclusive == 1) {
        pressExclusive(step);
        return true;
    }
    openBracket();
    const int last = static_cast<int>(line->maximum.load());
    const int next = static_cast<int>(line->step(step)) + (distance > 0 ? 1 : -1);
    line->setStep(step, static_cast<float>(next > last ? 0 : next < 0 ? last : next));
    closeBracket();
    setDirty(true);
    return true;
}

void KWBtnLineView::updateControl(void* context)
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
    KWControl::updateControl(context);
}

void KWBtnLineView::valueChanged(CControl*) { setDirty(true); }

} // namespace ormund
