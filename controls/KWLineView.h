// What the two line views share: a row of cells over a line, drawn from a strip whose first frame
// is value 1.
#pragma once

#include "controls/KWControl.h"

namespace ormund {

class StepLine;

class KWLineView : public KWControl, public CControlListener {
public:
    using KWControl::KWControl;

    void draw(CDrawContext* context) override;
    void setPopupControl(KWControl* popup) override { popupControl = popup; }
    bool takesKeys() const override { return false; }

    // The cell at x, clamped into the row; -1 without a line.
    int cellAt(int x) const;

    CBitmap* strip = nullptr;
    CBitmap* runningStrip = nullptr;

protected:
    virtual const StepLine* shownLine() const = 0; // null for none
    bool readsMouse(const CPoint& where) const;
    int runningCell() const; // -1 where none is marked
    // Opens the popup for a cell.
    CMouseEventResult openPopup(const CPoint& where, int step);

    KWControl* popupControl = nullptr;
};

} // namespace ormund
