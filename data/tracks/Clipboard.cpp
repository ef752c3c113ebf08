#include "data/tracks/Clipboard.h"

#include <algorithm>

namespace ormund {

namespace {

constinit OneWayFlag inUse;
constinit Clipboard processClipboard;

} // namespace

StepRegion StepRegion::clamped(int from, int to, int size, bool wholeIfEqual)
{
    if (wholeIfEqual && from == to)
        return {0, size};
    const int end = to == 0 ? size : std::clamp(to, 0, size);
    return {std::clamp(from, 0, end), end};
}

int ClipboardEntry::firstStep() const { return StepRegion::clamped(from, to, size, true).from; }

int ClipboardEntry::length() const { return StepRegion::clamped(from, to, size, true).length(); }

float ClipboardEntry::tiled(int n) const
{
    const int steps = length();
    return steps > 0 ? values[static_cast<size_t>(firstStep() + n % steps)] : 0.0f;
}

Clipboard::Shelf& Clipboard::shelf(ClipboardClass trackClass, bool global)
{
    return shelves[static_cast<size_t>(trackClass) * 2 + (global ? 1 : 0)];
}

ClipboardEntry* Clipboard::entryToWrite(ClipboardClass trackClass, bool global, int key)
{
    if (key < 0)
        return nullptr;
    Shelf& place = shelf(trackClass, global);
    for (ClipboardEntry& entry : place.entries)
        if (entry.key == key)
            return &entry;
    ClipboardEntry& oldest = place.entries[static_cast<size_t>(place.next)];
    place.next = (place.next + 1) % kEntries;
    oldest.key = key;
    return &oldest;
}

const ClipboardEntry* Clipboard::find(ClipboardClass trackClass, bool global, int key) const
{
    if (key < 0)
        return nullptr;
    const Shelf& place = shelves[static_cast<size_t>(trackClass) * 2 + (global ? 1 : 0)];
    const auto found = std::ranges::find(place.entries, key, &ClipboardEntry::key);
    return found == place.entries.end() ? nullptr : &*found;
}

void Clipboard::forgetAll()
{
    for (Shelf& place : shelves)
        for (ClipboardEntry& entry : place.entries)
            entry.key = -1;
}

ClipboardAccess::ClipboardAccess() : clipboard(inUse.tryRaise() ? &processClipboard : nullptr) { }

ClipboardAccess::~ClipboardAccess()
{
    if (clipboard)
        inUse.lower();
}

} // namespace ormund
