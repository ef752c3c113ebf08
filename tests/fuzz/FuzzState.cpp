// States of either kind. The first byte chooses the kind and whether the head is put right, so that
// the readers behind it are reached. Whatever comes: a refusal changes nothing, and what was let in
// saves and loads to the same bytes.
#include "tests/data/SongSupport.h"

#include <cstdlib>
#include <memory>

using namespace ormund;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const auto song = std::make_unique<DetachedSong>();
    if (size == 0)
        return 0;
    const uint8_t choice = data[0];
    const PresetKind kind = (choice & 1) != 0 ? PresetKind::Synth : PresetKind::Global;
    KWChunk chunk;
    chunk.assign(data + 1, size - 1);
    Words words(chunk.words().begin(), chunk.words().end());
    if ((choice & 2) != 0 && words.size() > 8) {
        const uint32_t head[] = {static_cast<uint32_t>(words.size()), 1061, 0, 0, 0x018E48D9, 5, 1};
        std::copy(std::begin(head), std::end(head), words.begin());
        words[7] &= 7;
        words[8] = 0x50E5;
    }
    const Words before = saved(*song);
    if (load(*song, words, kind, (choice & 4) != 0) != LoadResult::Done) {
        require(saved(*song) == before);
        return 0;
    }
    const Words after = saved(*song);
    require(load(*song, after) == LoadResult::Done);
    require(saved(*song) == after);
    return 0;
}
