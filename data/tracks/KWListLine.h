// A track of choices: each step an entry of a list, 0 none.
#pragma once

#include "data/tracks/StepLine.h"

namespace ormund {

class KWListLine : public StepLine {
public:
    KWListLine(KWSystemInfo* owner, int steps, int rows, bool isClone = false);

    void clear() override; // the selected row
    // Steps at 0 stay. The others move up by at most half the list, and turn over at its ends; what
    // is stored keeps its fraction.
    void mutate() override;
    std::unique_ptr<KWInitInterface> clone() const override;
    float fromController(float v) const override;

    bool readChunk(KWChunk& chunk, bool skip) override;
    void writeChunk(KWChunk& chunk) const override;

protected:
    float randomStep(float u) const override;
    ClipboardClass clipboardClass() const override;
};

} // namespace ormund
