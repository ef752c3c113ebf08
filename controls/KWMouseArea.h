// Turns the mouse into numbers for a listener. It draws nothing.
#pragma once

#include "controls/KWControl.h"

namespace ormund {

class KWMouseArea : public KWControl {
public:
    // Buttons and keys are 0 or 1; x and y run from 0 to 1 over the area, y downward.
    struct State {
        float leftButton = 0;
        float rightButton = 0;
        float x = 0;
        float y = 0;
        float shift = 0;
        float control = 0;
    };

    KWMouseArea(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame);

    void draw(CDrawContext*) override { setDirty(false); }
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    bool takesKeys() const override { return false; }

    const State& getState() const { return state; }
    bool isTracking() const { return tracking; }

    bool clamp = true; // x and y stay within 0 to 1 while dragging outside

private:
    void read(const CPoint& where, int buttons, bool limited);

    State state;
    bool tracking = false;
};

} // namespace ormund
