// A state in a few kilobytes, for one that is kept for long and seldom asked for.
#pragma once

#include "data/state/KWChunk.h"

#include <cstddef>
#include <vector>

namespace ormund {

// One thread at a time. Empty when nothing was packed, or when there was no memory to do it.
class PackedChunk {
public:
    PackedChunk() = default;
    explicit PackedChunk(const KWChunk& chunk);

    bool isEmpty() const { return byteCount == 0; }
    KWChunk unpacked() const; // the same words, ready to be read

private:
    std::vector<unsigned char> packed;
    size_t byteCount = 0; // of the chunk
};

} // namespace ormund
