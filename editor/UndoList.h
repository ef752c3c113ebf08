#pragma once

#include "controls/KWControl.h"

#include <functional>
#include <string>

namespace ormund {

class EditRecorder;

// The levels by name below the undo arrows, the newest on top; a press on one goes there in one go.
class UndoList : public KWControl {
public:
    // `goTo` is given the number of levels that are to be in force.
    UndoList(KWFrame* ownFrame, const EditRecorder& ownRecorder, std::function<void(size_t)> goTo);

    bool isOpen() const { return open; }
    // Panel pixels; empty for one that is scrolled away. Row 0 is the newest level, the last one
    // the song before all of them.
    CRect rowRect(int row) const;
    int rowCount() const;
    std::string rowText(int row) const;

    void beginModal(int mode, const CPoint* where, long forTag) override;
    void endModal(int result) override;
    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    bool onKeyDown(const CKeyEvent& event) override;

private:
    int rowAt(const CPoint& where) const;
    int currentRow() const;
    size_t levelOf(int row) const; // that many levels are in force
    void choose(int row);
    void hover(int row);
    void drawRow(CDrawContext* context, int row) const;

    const EditRecorder& recorder;
    std::function<void(size_t)> go;
    bool open = false;
    int firstRow = 0;
    int hovered = -1;
};

} // namespace ormund
