#include "data/tracks/KWListLine.h"

#include "data/tracks/Clipboard.h"
#include "data/tracks/RandomSource.h"

#include <cmath>

namespace ormund {

KWListLine::KWListLine(KWSystemInfo* lineOwner, int steps, int rows, bool isClone)
    : StepLine(lineOwner, steps, rows, isClone)
{
}

void KWListLine::clear()
{
    for (int i = 0; i < steps(); ++i)
        setStep(i, clearValue);
}

void KWListLine::mutate()
{
    RandomDraws draws;
    if (!draws)
        return;
    for (int i = 0; i < steps(); ++i) {
        const float old = step(i);
        if (old == 0)
            continue;
        float moved = draws.unit() * 0.5f * (range - 1.0f) + old;
        if (moved >= range)
            moved = 1.0f;
        else if (moved <= 0)
            moved = range - 1.0f;
        setStep(i, moved);
    }
}

std::unique_ptr<KWInitInterface> KWListLine::clone() const
{
    auto copied = std::make_unique<KWListLine>(owner, steps(), rows(), true);
    copied->copyValues(*this);
    return copied;
}

float KWListLine::fromController(float v) const { return std::trunc((range - 1.0f) * v + 0.5f); }
float KWListLine::randomStep(float u) const { return std::trunc(u * (range - 1.0f)); }
ClipboardClass KWListLine::clipboardClass() const { return ClipboardClass::ListLine; }

} // namespace ormund
