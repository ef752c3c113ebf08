#pragma once

#include "controls/KWControl.h"
#include "editor/ScreenState.h"

namespace ormund {

// The running step of a lane: a column of light through the lane's whole band, empty cells
// included, with a head over the loop bar. It jumps from step to step and is gone while nothing
// plays. Only its old and its new place are painted.
class PlayheadColumn : public KWControl {
public:
    PlayheadColumn(CControlListener* listener, long tag, KWFrame* ownFrame, ScreenLane ownLane,
        const Crossing<float>& pixelsFromLeft);

    void draw(CDrawContext* context) override;
    bool hitTest(const CPoint&, int) override { return false; }
    void updateControl(void* context) override;
    bool takesKeys() const override { return false; }

private:
    void place();

    ScreenLane lane;
    const Crossing<float>& source; // or ScreenState::kNowhere
    int left = 0;                  // of the step's cell
};

} // namespace ormund
