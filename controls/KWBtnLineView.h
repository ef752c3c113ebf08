// A row of switches over a KWBtnLine, drawn from a strip whose first frame is value 1.
#pragma once

#include "controls/KWControl.h"

class KWBtnLine;

class KWBtnLineView : public KWControl, public CControlListener {
public:
    KWBtnLineView(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame);

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    void updateControl(void* context) override;
    void setPopupControl(KWControl* popup) override { popupControl = popup; }
    bool stepValue(int, bool) override { return false; }
    void valueChanged(CControl* sender) override;

    // The cell at x, clamped into the row; -1 without a line.
    int cellAt(int x) const;

    KWBtnLine* line = nullptr;
    CBitmap* strip = nullptr;
    CBitmap* runningStrip = nullptr;
    int exclusive = 0;      // 1: a radio row that can also be switched off
    bool paintOnly = false; // a click alone changes nothing

private:
    bool readsMouse(const CPoint& where) const;
    void pressExclusive(int step);
    int runningCell() const;

    KWControl* popupControl = nullptr;
    uint32_t lastGeneration = 0;
    int lastPage = -1;
    int lastRunningStep = -1;
    int dragStep = 0;
    int lastStep = 0;
    float dragValue = 0;
    bool dragged = false;
    bool mouseDown = false;
};
