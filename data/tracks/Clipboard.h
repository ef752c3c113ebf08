// The process-wide clipboards of the tracks. All memory is there from the start, so a copy that a
// controller fires on the audio thread allocates nothing.
#pragma once

#include "base/Crossing.h"

#include <array>
#include <cstdint>

namespace ormund {

// A copied row and the region that was copied.
struct ClipboardEntry {
    static constexpr int kMaxSteps = 128;
    int key = -1; // family or key; -1 while the entry is free
    int from = 0; // steps from <= i < to; equal: the whole row
    int to = 0;
    int size = 0;
    std::array<float, kMaxSteps> values{};

    // The value for the `n`th step of a destination: the region over and over.
    float tiled(int n) const;
    int firstStep() const;
    int length() const;
};

enum class ClipboardClass { TableXY, BtnLine, ListLine };

// One clipboard for the tracks' own buttons, whose entries are families, and one for the global
// buttons, whose entries are single tracks; each kept apart for the three classes. Held through a
// ClipboardAccess.
class Clipboard {
public:
    // The entry of `key`, to be overwritten; null when `key` is -1. The one that was written
    // longest ago makes room when all are taken.
    ClipboardEntry* entryToWrite(ClipboardClass trackClass, bool global, int key);
    const ClipboardEntry* find(ClipboardClass trackClass, bool global, int key) const;
    void forgetAll();

private:
    static constexpr int kEntries = 16;
    struct Shelf {
        std::array<ClipboardEntry, kEntries> entries{};
        int next = 0;
    };
    Shelf& shelf(ClipboardClass trackClass, bool global);
    std::array<Shelf, 6> shelves{};
};

// The process's clipboard while it lives, if nobody else holds it; else null, and the operation
// does nothing.
class ClipboardAccess {
public:
    ClipboardAccess();
    ~ClipboardAccess();
    ClipboardAccess(const ClipboardAccess&) = delete;
    ClipboardAccess& operator=(const ClipboardAccess&) = delete;

    explicit operator bool() const { return clipboard != nullptr; }
    Clipboard* operator->() const { return clipboard; }

private:
    Clipboard* clipboard;
};

// The steps of an edit operation inside a row of `size` steps: `to` 0 means the end, equal ends
// mean the whole row where `wholeIfEqual` is set. Never leaves the row.
struct StepRegion {
    int from = 0;
    int to = 0;
    static StepRegion clamped(int from, int to, int size, bool wholeIfEqual);
    int length() const { return to - from; }
};

} // namespace ormund
