// What a host has sent for one block, in the order of its frames.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace ormund {

// Audio thread. `Item` has a `frame`. A full queue takes no more.
template <class Item>
class FrameQueue {
public:
    static constexpr size_t kMost = 1024;

    bool add(const Item& item)
    {
        if (count == kMost)
            return false;
        size_t at = count++;
        for (; at > taken && items[at - 1].frame > item.frame; --at)
            items[at] = items[at - 1];
        items[at] = item;
        return true;
    }
    const Item* next() const { return taken < count ? &items[taken] : nullptr; }
    // The next one that is not after `frame`; it stays where it is until something is added.
    const Item* takeUntil(int frame)
    {
        if (taken == count || items[taken].frame > frame) {
            if (taken == count)
                clear();
            return nullptr;
        }
        return &items[taken++];
    }
    void clear() { count = taken = 0; }

private:
    std::array<Item, kMost> items{};
    size_t count = 0;
    size_t taken = 0;
};

} // namespace ormund
