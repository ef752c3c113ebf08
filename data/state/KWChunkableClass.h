// What writes itself to a chunk and reads itself back.
#pragma once

namespace ormund {

class KWChunk;

class KWChunkableClass {
public:
    virtual ~KWChunkableClass() = default;
    // Reads from the cursor on. With `skip` the words are consumed and checked, and nothing is
    // changed. What is found damaged marks the chunk as broken (KWChunk::isBroken).
    // Thread: the loader's, while the block function stands aside.
    virtual bool readChunk(KWChunk& chunk, bool skip) = 0;
    // Writes the same number of words for the measuring and for the filling pass.
    virtual void writeChunk(KWChunk& chunk) const = 0;
};

} // namespace ormund
