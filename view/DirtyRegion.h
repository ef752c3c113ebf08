// The parts of the panel that must be painted: a few rectangles that do not overlap. Rectangles
// are united when that paints no more than the two by themselves, or when there are too many.
#pragma once

#include "view/Geometry.h"

#include <array>
#include <span>

namespace ormund {

class DirtyRegion {
public:
    static constexpr int kMaxRects = 24;

    void add(CRect rect);
    void clear() { used = 0; }
    bool isEmpty() const { return used == 0; }
    CRect bounds() const;
    std::span<const CRect> rects() const { return {list.data(), static_cast<size_t>(used)}; }

private:
    void removeAt(int index);
    void uniteCheapestPair();

    std::array<CRect, kMaxRects + 1> list{};
    int used = 0;
};

} // namespace ormund
