#include "data/tracks/KWTableXY.h"

#include "data/music/KWSystemInfo.h"
#include "data/tracks/Clipboard.h"
#include "data/tracks/RandomSource.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {

constexpr float kMutation = 0.2f; // of the range, half of it either way

} // namespace

KWTableXY::KWTableXY(KWSystemInfo* tableOwner, int steps, int stepRoom, bool isClone)
    : KWTable(tableOwner, steps, stepRoom)
{
    rows.reserve(kMaxRows);
    rows.push_back(std::make_unique<KWTable>(owner, size(), mostSteps()));
    if (owner && !isClone) {
        owner->tracks.push_back(this);
        registered = true;
    }
}

KWTableXY::~KWTableXY()
{
    if (registered)
        std::erase(owner->tracks, this);
}

bool KWTableXY::setRowCount(int count)
{
    if (count < 1 || count > kMaxRows)
        return false;
    const int before = rowsUsed;
    if (count == before)
        return true;
    const RebuildScope scope(*this);
    while (static_cast<int>(rows.size()) < count)
        rows.push_back(std::make_unique<KWTable>(owner, size(), mostSteps()));
    for (int r = before; r < count; ++r) {
        KWTable& fresh = rowTable(r);
        fresh.resize(size());
        fresh.setRange(minValue(), maxValue(), defaultValue());
        fresh.setFlags(flags());
        fresh.clear();
    }
    rowsUsed = count;
    if (rowIndex >= count) {
        rowIndex = count - 1;
        rowPlace = static_cast<float>(count - 1);
    }
    touch();
    return true;
}

void KWTableXY::setRowPosition(float position)
{
    if (!(position >= 0 && position < static_cast<float>(rowsUsed)) || position == rowPlace)
        return;
    rowPlace = position;
    rowIndex = static_cast<int>(position);
    touch();
}

float KWTableXY::getRowAtIndex(int r, int i) const
{
    return r < 0 || r >= rowsUsed ? 0.0f : rowTable(r).getAtIndex(i);
}

float KWTableXY::getRowAtPosition(int r, float p) const
{
    return r < 0 || r >= rowsUsed ? 0.0f : rowTable(r).getAtPosition(p);
}

float KWTableXY::getRowNormalized(int r, float p) const
{
    return r < 0 || r >= rowsUsed ? 0.0f : rowTable(r).getNormalized(p);
}

void KWTableXY::setRowValue(int r, int i, float v)
{
    if (r < 0 || r >= rowsUsed)
        return;
    rowTable(r).setValue(i, v);
    touch();
}

float KWTableXY::getRowInterpolated(float position, float p) const
{
    if (!(position >= 0 && position < static_cast<float>(rowsUsed)))
        return 0;
    const auto r = static_cast<int>(position);
    const float here = getRowAtPosition(r, p);
    const float part = position - static_cast<float>(r);
    if (part == 0)
        return here;
    return here + (getRowAtPosition(std::min(r + 1, rowsUsed - 1), p) - here) * part;
}

float KWTableXY::getRowAtIndexInterpolated(float position, int i) const
{
    if (i < 0 || i >= size())
        return 0;
    return getRowInterpolated(position, static_cast<float>(i));
}

float KWTableXY::getAtIndex(int i) const
{
    if (i < 0 || i >= size() || isRebuilding())
        return 0;
    readPos = static_cast<float>(i);
    return getRowAtIndexInterpolated(rowPlace, i);
}

float KWTableXY::getAtPosition(float p) const
{
    if (!(p >= 0 && p < static_cast<float>(size())) || isRebuilding())
        return 0;
    readPos = p;
    return getRowInterpolated(rowPlace, p);
}

float KWTableXY::getInterpolated() const { return getAtPosition(readPos); }

float KWTableXY::getNormalized(float p) const
{
    const float value = getAtPosition(p);
    return std::clamp((value - minValue()) / std::abs(maxValue() - minValue()), 0.0f, 1.0f);
}

void KWTableXY::setValue(int i, float v)
{
    if (isRebuilding())
        return;
    selected().setValue(i, v);
    touch();
}

void KWTableXY::setNormalized(float p, float n)
{
    if (isRebuilding())
        return;
    selected().setNormalized(p, n);
    touch();
}

void KWTableXY::setQuantised(bool on)
{
    KWTable::setQuantised(on);
    for (const auto& table : rows)
        table->setQuantised(on);
}

bool KWTableXY::resize(int steps)
{
    if (steps < 1 || steps > mostSteps())
        return false;
    if (steps == size())
        return true;
    const RebuildScope scope(*this);
    for (const auto& table : rows)
        table->resize(steps);
    return KWTable::resize(steps);
}

bool KWTableXY::setRange(float lowest, float highest, float cleared)
{
    if (!KWTable::setRange(lowest, highest, cleared))
        return false;
    for (const auto& table : rows)
        table->setRange(lowest, highest, cleared);
    return true;
}

void KWTableXY::pullIntoRange()
{
    for (const auto& table : rows)
        table->pullIntoRange();
}

void KWTableXY::setFlags(uint32_t word)
{
    KWTable::setFlags(word);
    for (const auto& table : rows)
        table->setFlags(word);
}

void KWTableXY::clear()
{
    if (isRebuilding())
        return;
    selected().clear();
    touch();
}

void KWTableXY::clearAll()
{
    for (int r = 0; r < rowsUsed; ++r)
        rowTable(r).clear();
    touch();
}

void KWTableXY::shiftUp(int from, int to)
{
    if (isRebuilding())
        return;
    selected().shiftUp(from, to);
    touch();
}

void KWTableXY::shiftDown(int from, int to)
{
    if (isRebuilding())
        return;
    selected().shiftDown(from, to);
    touch();
}

void KWTableXY::randomize()
{
    RandomDraws draws;
    if (!draws || !owner)
        return;
    const RebuildScope scope(*this);
    const float low = owner->randomMin;
    const float high = owner->randomMax;
    // With the ends the other way round the range runs over 1 and begins again at 0.
    const float span = low > high ? 1.0f - std::abs(low - high) : std::abs(low - high);
    for (int i = 0; i < size(); ++i) {
        float n = draws.unit() * span + low;
        if (n > 1.0f)
            n -= 1.0f;
        selected().setNormalized(static_cast<float>(i), n);
    }
    touch();
}

void KWTableXY::mutate()
{
    RandomDraws draws;
    if (!draws)
        return;
    const RebuildScope scope(*this);
    for (int i = 0; i < size(); ++i) {
        const auto p = static_cast<float>(i);
        const float moved = draws.unit() * kMutation - 0.5f * kMutation;
        selected().setNormalized(p, selected().getNormalized(p) + moved);
    }
    touch();
}

void KWTableXY::copy(int from, int to) { copyTo(true, from, to); }
void KWTableXY::paste(int from, int to) { pasteFrom(true, from, to); }
void KWTableXY::copyRegion(int from, int to) { copyTo(false, from, to); }
void KWTableXY::pasteRegion(int from, int to) { pasteFrom(false, from, to); }

void KWTableXY::copyTo(bool global, int from, int to)
{
    copiedRow = rowIndex.load();
    const ClipboardAccess clipboard;
    if (!clipboard)
        return;
    ClipboardEntry* entry = clipboard->entryToWrite(
        ClipboardClass::TableXY, global, global ? clipboardKey : copyFamily);
    if (!entry)
        return;
    entry->from = from;
    entry->to = to;
    entry->size = size();
    for (int i = 0; i < entry->size; ++i)
        entry->values[static_cast<size_t>(i)] = selected().ownStep(i);
}

void KWTableXY::pasteFrom(bool global, int from, int to)
{
    const int key = global ? clipboardKey : copyFamily;
    if (isRebuilding())
        return;
    if (key < 0) {
        for (int i = 0; i < size() && copiedRow < rowsUsed; ++i)
            selected().setValue(i, rowTable(copiedRow).ownStep(i));
        touch();
        return;
    }
    const ClipboardAccess clipboard;
    if (!clipboard)
        return;
    const ClipboardEntry* entry = clipboard->find(ClipboardClass::TableXY, global, key);
    if (!entry)
        return;
    const StepRegion region = StepRegion::clamped(from, to, size(), true);
    for (int n = 0; n < region.length(); ++n)
        selected().setValue(region.from + n, entry->tiled(n));
    touch();
}

std::unique_ptr<KWInitInterface> KWTableXY::clone() const
{
    auto copied = std::make_unique<KWTableXY>(owner, size(), mostSteps(), true);
    copied->setRange(minValue(), maxValue(), defaultValue());
    copied->setFlags(flags());
    copied->setRowCount(rowsUsed);
    for (int r = 0; r < rowsUsed; ++r)
        for (int i = 0; i < size(); ++i)
            copied->rowTable(r).setValue(i, rowTable(r).ownStep(i));
    copied->setRowPosition(rowPlace);
    copied->group = group;
    copied->copyFamily = copyFamily;
    copied->clipboardKey = clipboardKey;
    copied->label = label;
    return copied;
}

} // namespace ormund
