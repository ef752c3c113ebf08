#include "view/DirtyRegion.h"

namespace ormund {

namespace {

long area(const CRect& rect) { return static_cast<long>(rect.width()) * rect.height(); }

// How many pixels a union paints beyond the two by themselves; below 0 when they overlap.
long wasteOfUnion(const CRect& a, const CRect& b)
{
    CRect both = a;
    both.unite(b);
    return area(both) - area(a) - area(b);
}

} // namespace

void DirtyRegion::add(CRect rect)
{
    if (rect.isEmpty())
        return;
    for (int i = 0; i < used;) {
        const CRect& other = list[static_cast<size_t>(i)];
        if (other.contains(rect))
            return;
        if (!rect.rectOverlap(other) && wasteOfUnion(rect, other) > 0) {
            ++i;
            continue;
        }
        // The grown rectangle may meet those that were passed before, so the search starts over.
        rect.unite(other);
        removeAt(i);
        i = 0;
    }
    list[static_cast<size_t>(used++)] = rect;
    if (used > kMaxRects)
        uniteCheapestPair();
}

CRect DirtyRegion::bounds() const
{
    CRect all;
    for (const CRect& rect : rects())
        all.unite(rect);
    return all;
}

void DirtyRegion::removeAt(int index)
{
    list[static_cast<size_t>(index)] = list[static_cast<size_t>(used - 1)];
    --used;
}

void DirtyRegion::uniteCheapestPair()
{
    int first = 0;
    int second = 1;
    long least = wasteOfUnion(list[0], list[1]);
    for (int i = 0; i < used; ++i) {
        for (int k = i + 1; k < used; ++k) {
            const long waste =
                wasteOfUnion(list[static_cast<size_t>(i)], list[static_cast<size_t>(k)]);
            if (waste < least) {
                least = waste;
                first = i;
                second = k;
            }
        }
    }
    CRect both = list[static_cast<size_t>(first)];
    both.unite(list[static_cast<size_t>(second)]);
    removeAt(second);
    removeAt(first);
    add(both);
}

} // namespace ormund
