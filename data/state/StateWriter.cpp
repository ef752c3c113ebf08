#include "data/state/StateWriter.h"

#include "data/state/ChunkFormat.h"

#include <memory>

namespace ormund {

namespace {

constexpr char kHostMark[] = "Host";

class Writer {
public:
    Writer(KWChunk& target, const StateParts& stateParts, PresetKind presetKind)
        : chunk(target), parts(stateParts), kind(presetKind)
    {
        // A controller may be learned between the two passes: both write this copy.
        parts.midiMap.copyTo(*map);
    }

    void write()
    {
        chunk.writeHeader(kProgramVersion);
        chunk.writeInt(kHeaderWords);
        chunk.writeInt(kChunkKind);
        chunk.writeInt(kFormatRevision);
        chunk.writeInt(kFormatMagic);
        const bool global = kind == PresetKind::Global;
        for (const ParameterEntry* entry : global ? presetParameters() : synthParameters())
            if (entry->fileKey < kFirstLaterKey || !isAtDefault(*entry))
                writeRecord(*entry);
        for (const KeptRecords::Record& record : parts.kept[static_cast<size_t>(kind)].all()) {
            chunk.writeInt(record.key);
            chunk.writeInt(static_cast<int32_t>(record.words.size()));
            for (const uint32_t word : record.words)
                chunk.writeInt(static_cast<int32_t>(word));
        }
        chunk.writeInt(kEndOfRecords);
        if (global) {
            writeMap();
            chunk.writeInt(kPresetKinds);
            for (const std::string& name : parts.position.names)
                chunk.writeString(name);
        } else {
            chunk.writeString(parts.position.names[1]);
        }
        chunk.writeInt(kTailRevision);
        if (global) {
            chunk.writeInt(parts.position.program);
            chunk.writeInt(parts.position.folder);
            chunk.writeInt(static_cast<int32_t>(map->of(MidiMap::kPressure).size()));
            writeAssignments(MidiMap::kPressure, kEndOfPressure);
        }
        writePatterns();
        chunk.writeString(kHostMark);
    }

private:
    bool isAtDefault(const ParameterEntry& entry) const
    {
        if (entry.tag == Tag::ChanceSeed && parts.tracks.chance.isClear())
            return true; // nobody asks for it
        if (entry.hasValue())
            return mapValue(entry.mapping, parts.parameters.raw(entry.tag))
                == mapValue(entry.mapping, entry.defaultRaw);
        const StepLine* line = parts.tracks.lineAt(entry.tag);
        return line && line->isClear();
    }

    void writeRecord(const ParameterEntry& entry)
    {
        chunk.writeInt(entry.fileKey);
        if (entry.hasValue()) {
            chunk.writeInt(1);
            chunk.writeFloat(parts.parameters.raw(entry.tag));
            return;
        }
        const KWChunkableClass* track = parts.tracks.chunkableAt(entry.tag);
        KWChunk measure;
        measure.beginMeasure();
        if (track)
            track->writeChunk(measure);
        chunk.writeInt(static_cast<int32_t>(measure.cursor()));
        if (track)
            track->writeChunk(chunk);
    }

    void writeMap()
    {
        for (int controller = 0; controller < MidiMap::kControllers; ++controller) {
            if (map->of(controller).empty())
                continue;
            chunk.writeInt(controller);
            writeAssignments(controller, kEndOfController);
        }
        chunk.writeInt(kEndOfMap);
    }

    void writeAssignments(int list, int32_t end)
    {
        for (const CcAssignment entry : map->of(list)) {
            chunk.writeInt(entry.tag);
            chunk.writeInt(entry.step);
        }
        chunk.writeInt(end);
    }

    void writePatterns()
    {
        chunk.writeInt(kPatterns);
        chunk.writeInt(kPatternValues);
        for (int pattern = 0; pattern < kPatterns; ++pattern)
            for (int place = 0; place < kPatternValues; ++place)
                chunk.writeFloat(parts.patterns.at(pattern, place));
    }

    KWChunk& chunk;
    const StateParts& parts;
    PresetKind kind;
    std::unique_ptr<MidiMap::Lists> map = std::make_unique<MidiMap::Lists>();
};

} // namespace

void writeState(KWChunk& chunk, const StateParts& parts, PresetKind kind)
{
    Writer writer(chunk, parts, kind);
    chunk.beginMeasure();
    chunk.tempo = static_cast<float>(parts.info.tempo.load());
    chunk.sampleRate = parts.info.sampleRate;
    writer.write();
    chunk.beginFill();
    writer.write();
}

} // namespace ormund
