#include "data/state/PackedChunk.h"

#include <zlib.h>

namespace ormund {

PackedChunk::PackedChunk(const KWChunk& chunk)
{
    const auto bytes = static_cast<uLong>(chunk.byteCount());
    uLongf size = compressBound(bytes);
    std::vector<Bytef> room(size);
    if (compress(room.data(), &size, static_cast<const Bytef*>(chunk.bytes()), bytes) != Z_OK)
        return;
    packed.assign(room.begin(), room.begin() + static_cast<std::ptrdiff_t>(size));
    byteCount = chunk.byteCount();
}

KWChunk PackedChunk::unpacked() const
{
    std::vector<uint32_t> words(byteCount / sizeof(uint32_t));
    auto size = static_cast<uLongf>(byteCount);
    const bool done = !isEmpty()
        && uncompress(reinterpret_cast<Bytef*>(words.data()), &size, packed.data(),
               static_cast<uLong>(packed.size()))
            == Z_OK;
    KWChunk chunk;
    if (done)
        chunk.assign(std::move(words));
    return chunk;
}

} // namespace ormund
