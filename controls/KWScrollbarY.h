// The vertical scrollbar of a menu.
#pragma once

#include "controls/KWControl.h"

namespace ormund {

class KWScrollbarY : public KWControl {
public:
    KWScrollbarY(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame,
        float* scrollPosition, float* visibleShare);

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    bool takesKeys() const override { return false; }

    // Grows with the share of the list that is visible.
    CRect thumbRect() const;
    bool isDragging() const { return dragging; }

    CColor barColor;
    float* position;     // 0 to 1; not owned
    float* viewFraction; // 0 to 1; not owned

private:
    int innerHeight() const;
    int thumbHeight() const;

    int lastY = 0;
    bool dragging = false;
};

} // namespace ormund
