#include "data/state/MidiMapFile.h"

#include "data/state/ChunkFormat.h"

#include <memory>

namespace ormund {

void writeMidiMap(KWChunk& chunk, const MidiMap& map)
{
    const auto lists = std::make_unique<MidiMap::Lists>();
    map.copyTo(*lists);
    const auto write = [&] {
        chunk.writeHeader(kProgramVersion);
        chunk.writeInt(kMapRevision);
        chunk.writeInt(kFormatMagic);
        for (int controller = 0; controller < MidiMap::kControllers; ++controller) {
            const auto entries = lists->of(controller);
            chunk.writeInt(static_cast<int32_t>(entries.size()));
            for (const CcAssignment entry : entries) {
                chunk.writeInt(entry.tag);
                chunk.writeInt(entry.step);
            }
        }
    };
    chunk.beginMeasure();
    write();
    chunk.beginFill();
    write();
}

LoadResult readMidiMap(KWChunk& chunk, MidiMap& map)
{
    if (!chunk.readHeader() || chunk.totalWords < kHeaderWords
        || static_cast<size_t>(chunk.totalWords) > chunk.words().size())
        return LoadResult::NoFormat;
    if (chunk.version > kProgramVersion)
        return LoadResult::NewerMap;
    const ChunkLimit words(chunk, static_cast<size_t>(chunk.totalWords) - chunk.cursor());
    const int32_t revision = chunk.readInt();
    if (revision > kMapRevision || chunk.readInt() != kFormatMagic)
        return LoadResult::Done;

    const auto lists = std::make_unique<MidiMap::Lists>();
    for (int controller = 0; controller < MidiMap::kControllers && !chunk.isBroken();
         ++controller) {
        const int32_t count = chunk.readInt();
        if (count < 0 || static_cast<size_t>(count) > chunk.remaining()) {
            chunk.fail();
            break;
        }
        for (int32_t i = 0; i < count; ++i) {
            const int32_t tag = chunk.readInt();
            const int32_t step = revision >= kMapRevision ? chunk.readInt() : 0;
            if (const auto entry = assignmentOfWords(tag, step))
                lists->add(controller, *entry);
        }
    }
    if (chunk.isBroken())
        return LoadResult::NoFormat;
    map.replace(*lists, true, false);
    return LoadResult::Done;
}

} // namespace ormund
