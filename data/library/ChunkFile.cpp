#include "data/library/ChunkFile.h"

#include "data/state/ChunkFormat.h"
#include "platform/KWFileio.h"

#include <array>

namespace ormund {

LoadResult readChunkFile(const std::string& path, KWChunk& chunk, LoadResult ifNewer)
{
    std::array<uint32_t, kHeaderWords> header{};
    if (!KWFileio::read(path, header.data(), sizeof header))
        return KWFileio::exists(path) ? LoadResult::Unreadable : LoadResult::NoFile;
    chunk.assign(header.data(), sizeof header);
    if (!chunk.readHeader())
        return LoadResult::NoFormat;
    if (chunk.version > kProgramVersion)
        return ifNewer;
    const long long bytes = 4LL * chunk.totalWords;
    if (chunk.totalWords < kHeaderWords || bytes > kMostFileBytes || bytes > KWFileio::size(path))
        return LoadResult::NoFormat;
    std::vector<uint32_t> words(static_cast<size_t>(chunk.totalWords));
    if (!KWFileio::read(path, words.data(), words.size() * sizeof(uint32_t)))
        return LoadResult::Unreadable;
    chunk.assign(std::move(words));
    return LoadResult::Done;
}

bool writeChunkFile(const std::string& path, const KWChunk& chunk)
{
    return KWFileio::write(path, chunk.bytes(), chunk.byteCount());
}

} // namespace ormund
