#pragma once

#include "controls/KWDisplay.h"

namespace ormund {

// The sixteen patterns as a row of cells that show which one is locked and which one runs. The
// mouse area below it takes the clicks.
class PatternCells : public KWDisplay {
public:
    static constexpr int kPatterns = 16;

    using KWDisplay::KWDisplay;

    void draw(CDrawContext* context) override;
    void updateControl(void* context) override;
    CRect cellRect(int pattern) const;

    const Crossing<float>* runningPattern = nullptr;
    const Crossing<float>* lockedPattern = nullptr;  // as the engine holds it, 0 to 15
    const Crossing<float>* lockState = nullptr;      // not 0: locked
    const Crossing<float>* waitingPattern = nullptr; // below 0: none
    const Crossing<float>* beatHalf = nullptr;       // the waiting one is lit in the first half

private:
    int running() const { return runningPattern ? int(*runningPattern) : -1; }
    int locked() const;
    int waiting() const; // while it is lit

    int shownRunning = -2;
    int shownLocked = -2;
    int shownWaiting = -1;
};

} // namespace ormund
