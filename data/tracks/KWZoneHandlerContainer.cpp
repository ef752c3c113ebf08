#include "data/tracks/KWZoneHandlerContainer.h"

#include <algorithm>

namespace ormund {

namespace {

uint32_t pack(LoopZone zone)
{
    return static_cast<uint32_t>(zone.start) << 16 | static_cast<uint32_t>(zone.end);
}

} // namespace

KWZoneHandlerContainer::KWZoneHandlerContainer(int steps, int handlers)
    : stepCount(std::max(steps, 1)), handlersUsed(std::clamp(handlers, 1, kMaxHandlers))
{
    clearAll();
}

void KWZoneHandlerContainer::setZone(int r, LoopZone wanted)
{
    if (r < 0 || r >= handlersUsed)
        return;
    const int a = std::clamp(wanted.start, 0, stepCount - 1);
    const int b = std::clamp(wanted.end, 0, stepCount - 1);
    packed[static_cast<size_t>(r)] = pack({std::min(a, b), std::max(a, b)});
    writes.count();
}

void KWZoneHandlerContainer::setStart(int r, int step)
{
    const int last = end(r);
    setZone(r, {std::min(step, last), last});
}

void KWZoneHandlerContainer::setEnd(int r, int step)
{
    const int first = start(r);
    setZone(r, {first, std::max(step, first)});
}

void KWZoneHandlerContainer::resetRow(int r) { setZone(r, {0, stepCount - 1}); }

void KWZoneHandlerContainer::clearAll()
{
    for (int r = 0; r < handlersUsed; ++r)
        resetRow(r);
}

bool KWZoneHandlerContainer::setHandlers(int count)
{
    if (count < 1 || count > kMaxHandlers)
        return false;
    const int before = handlersUsed;
    handlersUsed = count;
    for (int r = before; r < count; ++r)
        resetRow(r);
    rowIndex = std::min<int>(rowIndex, count - 1);
    return true;
}

void KWZoneHandlerContainer::setRow(int r)
{
    if (r < 0 || r >= handlersUsed || r == rowIndex)
        return;
    rowIndex = r;
    writes.count();
}

} // namespace ormund
