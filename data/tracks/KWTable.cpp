#include "data/tracks/KWTable.h"

#include "data/music/KWSystemInfo.h"

#include <algorithm>
#include <cmath>
#include <thread>

namespace ormund {

namespace {

constexpr float kApart = 0.0001f; // between two neighbours that may not be equal
constexpr float kFineShift = 0.05f;
// A view reads for microseconds. Nothing is freed, so going on after this is a matter of looks.
constexpr int kPatience = 1000;

// The table whose steps copyFromMarked() takes.
constinit OneWayFlag markInUse;
constinit const KWTable* marked = nullptr;

} // namespace

KWTable::RebuildScope::RebuildScope(KWTable& table) : held(table)
{
    held.rebuilds.add(1);
    held.touch();
    for (int i = 0; i < kPatience && held.reading.isRaised(); ++i) { }
}

KWTable::RebuildScope::~RebuildScope()
{
    held.rebuilds.add(-1);
    held.touch();
}

KWTable::KWTable(KWSystemInfo* tableOwner, int steps, int mostSteps)
    : beatWidth(static_cast<float>(steps))
    , loopEnd(static_cast<float>(steps))
    , owner(tableOwner)
    , room(std::clamp(mostSteps, 1, kMaxSteps))
    , stepCount(std::clamp(steps, 1, room))
{
    values = std::make_unique<Crossing<float>[]>(static_cast<size_t>(room + 1));
}

KWTable::~KWTable()
{
    while (!markInUse.tryRaise())
        std::this_thread::yield();
    if (marked == this)
        marked = nullptr;
    markInUse.lower();
}

uint32_t KWTable::flags() const
{
    return flagWord | (isRebuilding() ? kTableLocked : 0u)
        | (reading.isRaised() ? kTableReading : 0u);
}

void KWTable::setFlags(uint32_t word) { flagWord = word & ~(kTableLocked | kTableReading); }

void KWTable::touch()
{
    writes.add(1u);
    if (owner)
        owner->changes.count();
}

void KWTable::put(int i, float v)
{
    values[static_cast<size_t>(i)] = v;
    if (i == 0)
        values[static_cast<size_t>(stepCount.load())] = v;
}

float KWTable::fit(float v) const { return std::clamp<float>(v, least, most); }

float KWTable::apart(int i, float v) const
{
    if ((flagWord & kTableDistinct) == 0 || v != at(i == 0 ? stepCount - 1 : i - 1))
        return v;
    return v > most - kApart ? v - kApart : v + kApart;
}

float KWTable::blend(float p) const
{
    const auto i = static_cast<int>(p);
    if ((flagWord & kTableCurve) == 0)
        return at(i);
    return at(i) + (at(i + 1) - at(i)) * (p - static_cast<float>(i));
}

float KWTable::getAtIndex(int i) const
{
    if (i < 0 || i >= stepCount || isRebuilding())
        return 0;
    readPos = static_cast<float>(i);
    return at(i);
}

float KWTable::getAtPosition(float p) const
{
    if (!(p >= 0 && p < static_cast<float>(stepCount)) || isRebuilding())
        return 0;
    readPos = p;
    return blend(p);
}

float KWTable::getInterpolated() const { return getAtPosition(readPos); }

float KWTable::getNormalized(float p) const
{
    const float width = std::abs(most - least);
    if (width <= 0)
        return 0;
    return std::clamp((getAtPosition(p) - least) / width, 0.0f, 1.0f);
}

void KWTable::setValue(int i, float v)
{
    if (i < 0 || i >= stepCount || isRebuilding() || std::isnan(v))
        return;
    put(i, apart(i, fit(v)));
    touch();
}

void KWTable::setNormalized(float p, float n)
{
    if (!(p >= 0 && p < static_cast<float>(stepCount)) || std::isnan(n))
        return;
    const float part = std::clamp(n, 0.0f, 1.0f);
    const float width = std::abs(most - least);
    const float v = (flagWord & kTableRawValues) != 0 ? std::trunc((width + 1.0f) * part) + least
                                                      : width * part + least;
    setValue(static_cast<int>(p), v);
}

void KWTable::setAtEdit(float p, float v)
{
    editPos = p;
    setAtEdit2(v);
}

void KWTable::setAtEdit2(float v)
{
    const float p = editPos;
    if (p >= 0 && p < static_cast<float>(stepCount))
        setValue(static_cast<int>(p), v);
}

float KWTable::roundPosition(float p) const
{
    if (!(p > 0))
        return 0;
    return std::floor(std::min(p, static_cast<float>(stepCount - 1)));
}

void KWTable::setFromVector(std::span<const float> source)
{
    for (int i = 0; i < stepCount && i < static_cast<int>(source.size()); ++i)
        setValue(i, source[static_cast<size_t>(i)]);
}

void KWTable::getToVector(std::span<float> target) const
{
    for (int i = 0; i < stepCount && i < static_cast<int>(target.size()); ++i)
        target[static_cast<size_t>(i)] = getAtIndex(i);
}

void KWTable::clear()
{
    for (int i = 0; i < stepCount; ++i)
        setValue(i, whenCleared);
}

void KWTable::rotateBackward(int from, int to)
{
    const int size = stepCount;
    const int end = to == 0 ? size : std::min(to, size);
    if (from < 0 || from >= end)
        return;
    const float kept = getAtIndex(from);
    for (int i = from + 1; i < end; ++i)
        setValue(i - 1, getAtIndex(i));
    setValue(end - 1, kept);
}

void KWTable::rotateForward(int from, int to)
{
    const int size = stepCount;
    const int end = to == 0 ? size : std::min(to, size);
    if (from < 0 || from >= end)
        return;
    const float kept = getAtIndex(end - 1);
    for (int i = end - 1; i > from; --i)
        setValue(i, getAtIndex(i - 1));
    setValue(from, kept);
}

void KWTable::shiftUp(int from, int to)
{
    const float amount = least == 0.0f && most == 1.0f ? kFineShift : 1.0f;
    shiftBy(amount, from, to);
}

void KWTable::shiftDown(int from, int to)
{
    const float amount = least == 0.0f && most == 1.0f ? kFineShift : 1.0f;
    shiftBy(-amount, from, to);
}

// Past the rule for neighbours: a shifted row keeps its shape.
void KWTable::shiftBy(float amount, int from, int to)
{
    if (isRebuilding())
        return;
    const int size = stepCount;
    const int end = to == 0 ? size : std::min(to, size);
    for (int i = std::max(from, 0); i < end; ++i)
        put(i, fit(at(i) + amount));
    touch();
}

void KWTable::setQuantised(bool on)
{
    if (!on) {
        flagWord = flagWord & ~uint32_t{kTableRawValues};
        return;
    }
    flagWord = flagWord | kTableRawValues;
    for (int i = 0; i < stepCount; ++i)
        put(i, fit(std::round(at(i))));
    touch();
}

void KWTable::markSource()
{
    if (!markInUse.tryRaise())
        return;
    marked = this;
    markInUse.lower();
}

void KWTable::copyFromMarked()
{
    if (!markInUse.tryRaise())
        return;
    if (marked && marked != this && marked->size() == size())
        for (int i = 0; i < stepCount; ++i)
            setValue(i, marked->getAtIndex(i));
    markInUse.lower();
}

bool KWTable::resize(int steps)
{
    if (steps < 1 || steps > room)
        return false;
    const int before = stepCount;
    if (steps == before)
        return true;
    const RebuildScope scope(*this);
    for (int i = before; i < steps; ++i)
        values[static_cast<size_t>(i)] = whenCleared.load();
    stepCount = steps;
    put(0, at(0)); // the mirror
    touch();
    return true;
}

bool KWTable::setRange(float lowest, float highest, float cleared)
{
    const auto usable = [](float v) { return std::abs(v) <= kMaxMagnitude; };
    if (!usable(lowest) || !usable(highest) || !usable(cleared) || !(lowest < highest))
        return false;
    least = lowest;
    most = highest;
    whenCleared = cleared;
    return true;
}

void KWTable::pullIntoRange()
{
    for (int i = 0; i < stepCount; ++i)
        put(i, fit(at(i)));
    touch();
}

} // namespace ormund
