// Stands in the frame's modal chain for a menu, so that the menu stays where it is among its
// parent's views while its list takes the mouse and lies above everything.
#pragma once

#include "controls/KWControl.h"

namespace ormund {

class KWOptionMenu;

class KWMenuHelper : public KWControl {
public:
    KWMenuHelper(KWOptionMenu* owner, KWFrame* ownFrame);

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    bool onKeyDown(const CKeyEvent& event) override;
    void endModal(int result) override;
    bool closesWithFocus() const override { return true; }
    void getViewRect(CRect& rect) const override;

    // Leaves the modal chain; endModal closes the menu, which comes back to this.
    void leaveChain() { KWControl::endModal(0); }

private:
    KWOptionMenu* menu;
};

} // namespace ormund
