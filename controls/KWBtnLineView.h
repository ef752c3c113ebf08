// A row of switches over a KWBtnLine, drawn from a strip whose first frame is value 1.
#pragma once

#include "controls/KWLineView.h"
#include "data/tracks/KWBtnLine.h"

namespace ormund {

class KWBtnLineView : public KWLineView {
public:
    KWBtnLineView(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame);

    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    void updateControl(void* context) override;
    void valueChanged(CControl* sender) override;

    KWBtnLine* line = nullptr;
    int exclusive = 0;      // 1: a radio row that can also be switched off
    bool paintOnly = false; // a click alone changes nothing

private:
    const StepLine* shownLine() const override { return line; }
    void pressExclusive(int step);

    uint32_t lastGeneration = 0;
    int lastPage = -1;
    int lastRunningStep = -1;
    int dragStep = 0;
    int lastStep = 0;
    float dragValue = 0;
    bool dragged = false;
    bool mouseDown = false;
};

} // namespace ormund
