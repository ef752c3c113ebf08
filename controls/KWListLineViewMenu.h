// The grid of choices that a cell of a list line opens.
#pragma once

#include "controls/KWControl.h"

#include <string>

namespace ormund {

class KWListLineView;

class KWListLineViewMenu : public KWControl {
public:
    KWListLineViewMenu(const CRect& size, KWListLineView* ownerView, long tag, KWFrame* ownFrame);

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    void beginModal(int mode, const CPoint* where, long forTag) override;
    void endModal(int result) override;
    bool closesWithFocus() const override { return true; }
    void updateControl(void* context) override;
    void getViewRect(CRect& rect) const override;
    bool onKeyDown(const CKeyEvent& event) override;
    // Room for the choices up to `lastValue`, and the size that takes.
    void fitTo(int lastValue);
    CPoint gridSize() const;
    void ownerGone();

    // Index of the cell at a point, -1 outside the cells.
    int cellIndexAt(const CPoint& where) const;
    CRect cellRect(int index) const;
    int cellCount() const;

    int columns = 8;
    int rows = 1;
    int left = 3; // offset of the first cell
    int top = 3;
    int cellWidth = 18;
    int cellHeight = 18;
    CBitmap* background = nullptr;
    CBitmap* selection = nullptr; // frame 0 chosen, frame 1 under the mouse
    CColor hue;                   // of the chosen cell where there is no bitmap
    std::string zeroText;         // stands for value 0 in a grid that offers it
    bool isShiftedByOne = true;   // cell c is value c + 1; value 0 means none
    int line = 0;
    int step = 0;

private:
    void choose(int index);
    void hover(int index);
    void drawCell(CDrawContext* context, int index, bool chosen);

    KWListLineView* owner;
    CPoint openPoint;
    int choices = 0;
    int hoverCell = -1;
    bool armed = false; // a press or motion came after the opening
    bool inFrame = false;
};

} // namespace ormund
