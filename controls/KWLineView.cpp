#include "controls/KWLineView.h"

#include "controls/KWFrame.h"
#include "data/tracks/StepLine.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>

namespace ormund {

namespace {
}

bool KWLineView::readsMouse(const CPoint& where) const
{
    const StepLine* line = shownLine();
    return isLive() && line && line->steps() > 0 && size.pointInside(where);
}

int KWLineView::cellAt(int x) const
{
    const StepLine* line = shownLine();
    if (!line || line->steps() <= 0)
        return -1;
    const int cellW = std::max(size.width() / line->steps(), 1);
    return std::clamp((x - size.left) / cellW, 0, line->steps() - 1);
}

int KWLineView::runningCell() const
{
    return runningStrip ? static_cast<int>(shownLine()->runningStep.load()) : -1;
}

void KWLineView::draw(CDrawContext* context)
{
    const StepLine* line = shownLine();
    if (!isLive() || !line || !strip)
        return;
    const int cellW = strip->getWidth();
    const int running = runningCell();
    for (int i = 0; i < line->steps(); ++i) {
        const int picture = static_cast<int>(line->step(i)) - 1;
        if (picture < 0)
            continue; // the skin shows
        const int x = size.left + i * cellW;
        drawFrameOf(context, i == running ? runningStrip : strip,
            {x, size.top, x + cellW, size.bottom}, picture * size.height());
    }
    KWControl::draw(context);
}

CMouseEventResult KWLineView::openPopup(const CPoint& where, int step)
{
    popupControl->setVisible(true);
    popupControl->setMenuTag(getTag());
    popupControl->setMenuStep(step);
    popupControl->beginModal(kPopupMode, &where, getTag());
    return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
}

} // namespace ormund
