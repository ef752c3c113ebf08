#include "editor/PatternCells.h"

#include "panel/Look.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <string>

namespace ormund {

int PatternCells::locked() const
{
    return lockState && *lockState != 0.0f && lockedPattern ? int(*lockedPattern) : -1;
}

int PatternCells::waiting() const
{
    return waitingPattern && beatHalf && *beatHalf > 0 ? int(*waitingPattern) : -1;
}

CRect PatternCells::cellRect(int pattern) const
{
    const int width = strip ? strip->getWidth() : 18;
    const int left = size.left + pattern * size.width() / kPatterns;
    return {left, size.top, left + width, size.bottom};
}

void PatternCells::draw(CDrawContext* context)
{
    if (!isLive())
        return;
    shownRunning = running();
    shownLocked = locked();
    shownWaiting = waiting();
    context->setFont(font, 11);
    for (int pattern = 0; pattern < kPatterns; ++pattern) {
        const bool runs = pattern == shownRunning;
        const CRect cell = cellRect(pattern);
        if (strip) {
            const int frameOfCell = (pattern == shownLocked ? 1 : 0) + (runs ? 2 : 0);
            strip->drawTransparent(context, cell, {0, frameOfCell * size.height()});
        }
        if (pattern == shownWaiting) {
            context->setFrameColor(look::kText);
            context->drawRect({cell.left, cell.top, cell.right - 1, cell.bottom - 1});
        }
        CRect number = cell;
        number.bottom -= 12; // the lower end is the bar or the padlock
        context->setFontColor(runs ? look::kInk : look::kTextRaised);
        context->drawString(std::to_string(pattern + 1), number);
    }
    setDirty(false);
}

void PatternCells::updateControl(void* context)
{
    if (running() != shownRunning || locked() != shownLocked || waiting() != shownWaiting)
        setDirty(true);
    KWControl::updateControl(context);
}

} // namespace ormund
