#include "data/tracks/KWBtnLine.h"

#include "data/tracks/Clipboard.h"

#include <cmath>

namespace ormund {

KWBtnLine::KWBtnLine(KWSystemInfo* lineOwner, int steps, int rows, bool isClone)
    : StepLine(lineOwner, steps, rows, isClone)
{
}

void KWBtnLine::clear()
{
    if (!clearAlternates) {
        clearAll();
        return;
    }
    float previous = clearValue;
    for (int i = 0; i < steps(); ++i) {
        previous = 1.0f - previous;
        setStep(i, previous);
    }
}

std::unique_ptr<KWInitInterface> KWBtnLine::clone() const
{
    auto copied = std::make_unique<KWBtnLine>(owner, steps(), rows(), true);
    copied->copyValues(*this);
    copied->clearAlternates = clearAlternates;
    return copied;
}

float KWBtnLine::fromController(float v) const { return std::trunc(range * v + 0.5f); }
float KWBtnLine::randomStep(float u) const { return std::trunc(u * range + 0.5f); }
ClipboardClass KWBtnLine::clipboardClass() const { return ClipboardClass::BtnLine; }

} // namespace ormund
