// A track of switches, on or off a step.
#pragma once

#include "data/tracks/StepLine.h"

namespace ormund {

class KWBtnLine : public StepLine {
public:
    KWBtnLine(KWSystemInfo* owner, int steps, int rows, bool isClone = false);

    // Deliberate: all rows, where the other track classes clear the selected row alone. With
    // `clearAlternates` the selected row becomes 1 - clearValue, clearValue and so on.
    void clear() override;
    void mutate() override { } // a switch has nothing between its two values
    std::unique_ptr<KWInitInterface> clone() const override;
    float fromController(float v) const override;

    bool clearAlternates = false;

    bool readChunk(KWChunk& chunk, bool skip) override;
    void writeChunk(KWChunk& chunk) const override;

protected:
    float randomStep(float u) const override;
    ClipboardClass clipboardClass() const override;
};

} // namespace ormund
