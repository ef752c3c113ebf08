#include "data/tracks/StepLine.h"

#include "data/music/KWSystemInfo.h"
#include "data/tracks/Clipboard.h"
#include "data/tracks/RandomSource.h"

#include <algorithm>
#include <cmath>

namespace ormund {

StepLine::StepLine(KWSystemInfo* lineOwner, int steps, int rows, bool isClone)
    : owner(lineOwner)
    , stepCount(std::clamp(steps, 1, kMaxSteps))
    , rowsUsed(std::clamp(rows, 1, kMaxRows))
    , firstSteps(stepCount)
    , firstRows(rowsUsed)
    , first(std::make_unique<Crossing<float>[]>(static_cast<size_t>(firstRows * firstSteps)))
    , others(static_cast<size_t>(kMaxRows * kMaxSteps))
{
    if (owner && !isClone) {
        owner->tracks.push_back(this);
        registered = true;
    }
}

StepLine::~StepLine()
{
    if (registered)
        std::erase(owner->tracks, this);
}

void StepLine::touch()
{
    writes.add(1u);
    if (owner)
        owner->changes.count();
}

float StepLine::fit(float v) const
{
    return std::clamp<float>(v, 0.0f, std::max<float>(range, maximum));
}

float StepLine::stepAt(int r, int i) const
{
    return r < 0 || r >= rowsUsed || i < 0 || i >= stepCount ? 0.0f : cell(r, i).load();
}

void StepLine::setStepAt(int r, int i, float v)
{
    if (r < 0 || r >= rowsUsed || i < 0 || i >= stepCount || std::isnan(v))
        return;
    cell(r, i) = fit(v);
    touch();
}

void StepLine::setRow(int r)
{
    if (r < 0 || r >= rowsUsed || r == rowIndex)
        return;
    rowIndex = r;
    touch();
}

bool StepLine::resize(int newSteps, int newRows)
{
    if (newSteps < 1 || newSteps > kMaxSteps || newRows < 1 || newRows > kMaxRows)
        return false;
    for (int r = 0; r < newRows; ++r)
        for (int i = 0; i < newSteps; ++i)
            if (r >= rowsUsed || i >= stepCount)
                cell(r, i) = clearValue.load();
    rowIndex = std::min<int>(rowIndex, newRows - 1);
    stepCount = newSteps;
    rowsUsed = newRows;
    touch();
    return true;
}

void StepLine::copyValues(const StepLine& source)
{
    for (int r = 0; r < rowsUsed; ++r)
        for (int i = 0; i < stepCount; ++i)
            cell(r, i) = source.stepAt(r, i);
    range = source.range.load();
    maximum = source.maximum.load();
    randomThreshold = source.randomThreshold.load();
    clearValue = source.clearValue.load();
    rowIndex = source.row();
    group = source.group;
    copyFamily = source.copyFamily;
    clipboardKey = source.clipboardKey;
}

void StepLine::clearAll()
{
    for (int r = 0; r < rowsUsed; ++r)
        for (int i = 0; i < stepCount; ++i)
            cell(r, i) = clearValue.load();
    touch();
}

bool StepLine::isClear() const
{
    for (int r = 0; r < rowsUsed; ++r)
        for (int i = 0; i < stepCount; ++i)
            if (cell(r, i) != clearValue)
                return false;
    return true;
}

void StepLine::randomize()
{
    RandomDraws draws;
    if (!draws)
        return;
    const float threshold = randomThreshold;
    for (int i = 0; i < stepCount; ++i) {
        const bool filled = threshold == 0 || draws.unit() > threshold;
        setStep(i, filled ? randomStep(draws.unit()) : 0.0f);
    }
}

void StepLine::shiftBackward(int from, int to)
{
    const StepRegion region = StepRegion::clamped(from, to, stepCount, false);
    if (region.length() < 2)
        return;
    const float kept = step(region.from);
    for (int i = region.from + 1; i < region.to; ++i)
        setStep(i - 1, step(i));
    setStep(region.to - 1, kept);
}

void StepLine::shiftForward(int from, int to)
{
    const StepRegion region = StepRegion::clamped(from, to, stepCount, false);
    if (region.length() < 2)
        return;
    const float kept = step(region.to - 1);
    for (int i = region.to - 1; i > region.from; --i)
        setStep(i, step(i - 1));
    setStep(region.from, kept);
}

void StepLine::copy(int from, int to) { copyTo(true, from, to); }
void StepLine::paste(int from, int to) { pasteFrom(true, from, to); }
void StepLine::copyRegion(int from, int to) { copyTo(false, from, to); }
void StepLine::pasteRegion(int from, int to) { pasteFrom(false, from, to); }

void StepLine::copyTo(bool global, int from, int to)
{
    sourceRow = rowIndex.load();
    const ClipboardAccess clipboard;
    if (!clipboard)
        return;
    ClipboardEntry* entry =
        clipboard->entryToWrite(clipboardClass(), global, global ? clipboardKey : copyFamily);
    if (!entry)
        return;
    entry->from = from;
    entry->to = to;
    entry->size = stepCount;
    for (int i = 0; i < entry->size; ++i)
        entry->values[static_cast<size_t>(i)] = step(i);
}

void StepLine::pasteFrom(bool global, int from, int to)
{
    const int key = global ? clipboardKey : copyFamily;
    if (key < 0) {
        for (int i = 0; i < stepCount; ++i)
            setStep(i, stepAt(sourceRow, i));
        return;
    }
    const ClipboardAccess clipboard;
    if (!clipboard)
        return;
    const ClipboardEntry* entry = clipboard->find(clipboardClass(), global, key);
    if (!entry)
        return;
    const StepRegion region = StepRegion::clamped(from, to, stepCount, true);
    for (int n = 0; n < region.length(); ++n)
        setStep(region.from + n, entry->tiled(n));
}

} // namespace ormund
