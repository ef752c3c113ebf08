// A set of 128 bits that switches groups of controls. The editor clears and sets bits to flip its
// pages; each control looks at one bit.
#pragma once

#include "base/Crossing.h"

#include <cstdint>

namespace ormund {

// Screen thread reads; either thread may write. A stale bit delays a page by one idle and no more.
class KWBitSet128 {
public:
    // There is no bound check: from 128 on the fourth word answers, with the low five bits.
    bool test(int index) const noexcept
    {
        return ((words[wordOf(index)].load() >> (index & 31)) & 1u) != 0;
    }
    void set(int index, bool on) noexcept
    {
        const uint32_t mask = 1u << (index & 31);
        Crossing<uint32_t>& word = words[wordOf(index)];
        word = on ? word.load() | mask : word.load() & ~mask;
    }
    void clear() noexcept
    {
        for (Crossing<uint32_t>& word : words)
            word = 0u;
    }

private:
    static int wordOf(int index) noexcept { return index >= 96 || index < 0 ? 3 : index >> 5; }

    Crossing<uint32_t> words[4];
};

} // namespace ormund
