// A row of picks from a small list over a KWListLine. A cell opens a grid of its choices.
#pragma once

#include "controls/KWControl.h"

#include <memory>
#include <string>
#include <vector>

class KWListLine;
class KWListLineViewMenu;

class KWListLineView : public KWControl, public CControlListener {
public:
    KWListLineView(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame);
    ~KWListLineView() override;

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    void updateControl(void* context) override;
    void setPopupControl(KWControl* popup) override { popupControl = popup; }
    bool stepValue(int, bool) override { return false; }
    // From the grid: stores its choice in the line.
    void valueChanged(CControl* sender) override;

    int cellAt(int x) const;
    KWListLineViewMenu* getMenu() const { return menu.get(); }

    KWListLine* line = nullptr;
    CBitmap* strip = nullptr;
    CBitmap* runningStrip = nullptr;
    const Crossing<float>* runningStep = nullptr;
    int maximum = 1;     // the last value that a hand can choose
    int menuOffsetX = 0; // where not 0, the grid's top lies so far below the view's
    int menuY = 8;       // else so far above the pointer lies its lower edge
    bool menuOpen = false;

private:
    friend class KWListLineViewMenu;
    bool readsMouse(const CPoint& where) const;
    float cell(int step) const;
    void setCell(int step, float value);
    void editCell(int step, float value);
    void clearRow();
    void openMenu(const CPoint& where, int step);
    int runningCell() const;

    KWControl* popupControl = nullptr;
    std::unique_ptr<KWListLineViewMenu> menu;
    std::vector<float> shownCells;
    int lastRunningStep = -1;
    int lastPage = -1;
    int dragStep = 0;
    float dragValue = 0;
    bool mouseDown = false;
    bool painting = false;
    bool dirtyFrame = false;
};
