// A row of picks from a small list over a KWListLine. A cell opens a grid of its choices.
#pragma once

#include "controls/KWLineView.h"
#include "data/tracks/KWListLine.h"

namespace ormund {

class KWListLineViewMenu;

class KWListLineView : public KWLineView {
public:
    KWListLineView(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame);
    ~KWListLineView() override;

    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    void updateControl(void* context) override;
    // From the grid: stores its choice in the line.
    void valueChanged(CControl* sender) override;

    KWListLineViewMenu* getMenu() const { return menu; }

    KWListLine* line = nullptr;
    int menuOffsetX = 0; // where not 0, the grid's top lies so far below the view's
    int menuY = 8;       // else so far above the pointer lies its lower edge
    bool menuOpen = false;

private:
    friend class KWListLineViewMenu;
    const StepLine* shownLine() const override { return line; }
    int lastChoice() const;
    void editCell(int step, float choice);
    void menuClosed();
    void openMenu(const CPoint& where, int step);

    KWListLineViewMenu* menu; // one reference is this view's, another the frame's while it is open
    uint32_t lastGeneration = 0;
    int lastRunningStep = -1;
    int lastPage = -1;
    int dragStep = 0; // the cell of the last motion
    float dragValue = 0;
    bool mouseDown = false;
    bool dirtyFrame = false;
};

} // namespace ormund
