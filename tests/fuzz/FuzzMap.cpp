// Maps of controllers, and the description of any file.
#include "data/library/StateDescription.h"
#include "data/state/MidiMapFile.h"

#include <cstdlib>
#include <memory>

using namespace ormund;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const auto map = std::make_unique<MidiMap>();
    if (size == 0)
        return 0;
    KWChunk chunk;
    chunk.assign(data + 1, size - 1);
    std::vector<uint32_t> words(chunk.words().begin(), chunk.words().end());
    if ((data[0] & 2) != 0 && words.size() > 6) {
        words[0] = static_cast<uint32_t>(words.size());
        words[1] = 1061;
        words[4] = 0x018E48D9;
    }
    const char* const endings[] = {"kwe", "kws", "kwm", ""};
    const StateDescription description(words, endings[data[0] >> 2 & 3]);
    if (description.isBroken() && description.brokenWord() > words.size())
        std::abort();
    if (description.text().empty() || description.json().empty())
        std::abort();

    const auto before = std::make_unique<MidiMap::Lists>();
    map->copyTo(*before);
    chunk.assign(words);
    if (readMidiMap(chunk, *map) == LoadResult::Done)
        return 0;
    const auto after = std::make_unique<MidiMap::Lists>();
    map->copyTo(*after);
    if (!(*before == *after))
        std::abort();
    return 0;
}
