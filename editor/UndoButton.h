#pragma once

#include "controls/KWButton.h"

namespace ormund {

// A small flat button with an arrow that turns back, or forward for redo. It draws itself.
class UndoButton : public KWButton {
public:
    UndoButton(
        const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame, bool forward);

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseEntered(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseExited(const CPoint& where, int buttons) override;
    // Dim while there is nothing to take back.
    void setUsable(bool usable);

private:
    bool forward;
    bool usable = false;
    bool over = false;
};

} // namespace ormund
