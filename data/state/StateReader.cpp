#include "data/state/StateReader.h"

#include "data/state/ChunkFormat.h"

#include <algorithm>
#include <cassert>

namespace ormund {

namespace {

constexpr int kMostNames = 2;
constexpr size_t kMostNameBytes = 255;
constexpr int kMostPatternSide = 1024;
constexpr int32_t kMostPlace = 1 << 20;

Saved listOf(PresetKind kind)
{
    return kind == PresetKind::Global ? Saved::Preset : Saved::PresetAndSynth;
}

} // namespace

std::string plainName(std::string name)
{
    const size_t slash = name.find_last_of('/');
    if (slash != std::string::npos)
        name.erase(0, slash + 1);
    if (name == "." || name == "..")
        name.clear();
    if (name.size() > kMostNameBytes)
        name.resize(kMostNameBytes);
    return name;
}

void resetSong(Tracks& tracks, PatternStore& patterns)
{
    for (const TrackRow& row : kTrackTable) {
        const ParameterEntry* entry = parameterEntry(row.tag);
        if (!entry || !entry->isIn(Saved::Preset))
            continue;
        if (KWTableXY* table = tracks.tableAt(row.tag)) {
            table->setRowCount(row.rows);
            table->resize(row.steps);
            table->setRange(row.least, row.most, row.whenCleared);
            table->label = "Default";
        } else if (StepLine* line = tracks.lineAt(row.tag)) {
            line->resize(row.steps, row.rows);
            line->range = row.most;
        }
    }
    for (const ParameterEntry* entry : presetParameters())
        if (KWZoneHandlerContainer* zones = tracks.zonesAt(entry->tag))
            zones->setHandlers(zones == &tracks.sequenceLoop ? 1 : kTrackRows);
    tracks.clearAll();
    patterns.fillWithDefaults();
}

LoadResult StateReader::check(KWChunk& chunk, const Options& options)
{
    how = options;
    apply = false;
    chunk.setCursor(0);
    const LoadResult head = readHead(chunk);
    if (head != LoadResult::Done)
        return head;
    const ChunkLimit words(chunk,
        static_cast<size_t>(chunk.totalWords)
            - std::min(chunk.cursor(), static_cast<size_t>(chunk.totalWords)));
    walk(chunk);
    return chunk.isBroken() ? LoadResult::NoFormat : LoadResult::Done;
}

LoadResult StateReader::load(KWChunk& chunk, const Options& options)
{
    const LoadResult found = check(chunk, options);
    if (found != LoadResult::Done)
        return found;

    {
        const BlocksStopped stopped(parts.interlock, how.wait);
        const LoadMark mark(parts.interlock);
        apply = true;
        chunk.setCursor(0);
        readHead(chunk);
        const ChunkLimit words(chunk, static_cast<size_t>(chunk.totalWords) - chunk.cursor());
        walk(chunk);
        assert(!chunk.isBroken());
    }
    parts.interlock.stateLoaded(how.kind);
    return LoadResult::Done;
}

LoadResult StateReader::readHead(KWChunk& chunk)
{
    if (!chunk.readHeader() || chunk.totalWords < kHeaderWords
        || static_cast<size_t>(chunk.totalWords) > chunk.words().size())
        return LoadResult::NoFormat;
    chunk.readInt(); // length of the header
    if (chunk.readInt() != kChunkKind)
        return LoadResult::WrongVersion;
    revision = chunk.readInt();
    if (revision < 1)
        return LoadResult::NoFormat;
    if (revision > 1 && chunk.readInt() != kFormatMagic)
        return LoadResult::WrongFile;
    if (chunk.isBroken() || chunk.cursor() > static_cast<size_t>(chunk.totalWords))
        return LoadResult::NoFormat;
    return LoadResult::Done;
}

void StateReader::walk(KWChunk& chunk)
{
    if (apply)
        reset();
    readRecords(chunk);
    if (how.kind == PresetKind::Global)
        readMap(chunk);
    readNames(chunk);
    const int tail = readTail(chunk);
    if (tail >= kTailWithPatterns)
        readPatterns(chunk);
    if (tail >= kTailWithHost)
        chunk.readString();
}

// What the file does not carry stands at its default afterwards.
void StateReader::reset()
{
    if (how.kind == PresetKind::Global)
        resetSong(parts.tracks, parts.patterns);
    for (const ParameterEntry& entry : allParameters())
        if (entry.isIn(listOf(how.kind)) && entry.hasValue() && (!entry.isolated() || how.force))
            parts.sink.setParameter(entry.tag, entry.defaultRaw);
}

void StateReader::readRecords(KWChunk& chunk)
{
    kept.clear();
    while (!chunk.isBroken()) {
        const int32_t key = chunk.readInt();
        if (key == kEndOfRecords) {
            if (apply)
                takeKept();
            return;
        }
        const int32_t size = chunk.readInt();
        if (size < 0) {
            chunk.fail();
            return;
        }
        const ChunkLimit record(chunk, static_cast<size_t>(size));
        const ParameterEntry* entry = parameterOfKey(key);
        if (entry && !entry->isIn(listOf(how.kind)))
            entry = nullptr;
        if (entry && !entry->hasValue())
            readTrack(chunk, *entry);
        else if (!entry && key >= kFirstLaterKey && !parameterOfKey(key))
            keep(chunk, key, static_cast<size_t>(size));
        else if (size > 0)
            readValue(chunk, entry);
    }
}

void StateReader::keep(KWChunk& chunk, int32_t key, size_t size)
{
    if (size > chunk.remaining()) {
        chunk.fail();
        return;
    }
    std::vector<uint32_t> words(size);
    for (uint32_t& word : words)
        word = static_cast<uint32_t>(chunk.readInt());
    if (!kept.add(key, std::move(words)))
        chunk.fail();
}

// A whole song brings its synth along, so nothing of the sound before it stays.
void StateReader::takeKept()
{
    if (how.kind == PresetKind::Global)
        parts.kept = {};
    parts.kept[static_cast<size_t>(how.kind)] = std::move(kept);
    kept.clear();
}

void StateReader::readValue(KWChunk& chunk, const ParameterEntry* entry)
{
    const float value = chunk.readFloat();
    if (apply && entry && (!entry->isolated() || how.force))
        parts.sink.setParameter(entry->tag, value);
}

void StateReader::readTrack(KWChunk& chunk, const ParameterEntry& entry)
{
    KWChunkableClass* track = parts.tracks.chunkableAt(entry.tag);
    if (track)
        track->readChunk(chunk, !apply || (entry.isolated() && !how.force));
}

// `pairs`: tag and step in a word each; before, the tag alone.
void StateReader::readAssignments(KWChunk& chunk, int list, bool pairs)
{
    const int32_t end = list == MidiMap::kPressure ? kEndOfPressure : kEndOfController;
    while (!chunk.isBroken()) {
        const int32_t tag = chunk.readInt();
        if (tag == end)
            return;
        if (const auto entry = assignmentOfWords(tag, pairs ? chunk.readInt() : 0))
            map.add(list, *entry);
    }
}

void StateReader::readMap(KWChunk& chunk)
{
    map = {};
    while (!chunk.isBroken()) {
        const int32_t controller = chunk.readInt();
        if (controller == kEndOfMap)
            break;
        if (controller < 0 || controller >= MidiMap::kControllers) {
            chunk.fail();
            return;
        }
        readAssignments(chunk, controller, revision >= kWordPairRevision);
    }
    if (apply && (parts.keepMap == 0 || how.force))
        parts.midiMap.replace(map, true, false, !how.wait);
}

void StateReader::readNames(KWChunk& chunk)
{
    const bool global = how.kind == PresetKind::Global;
    const int32_t count = global ? std::min(chunk.readInt(), kMostNames) : 1;
    for (int32_t i = 0; i < count; ++i) {
        std::string name = plainName(chunk.readString());
        if (apply)
            parts.position.names[global ? static_cast<size_t>(i) : 1] = std::move(name);
    }
}

int StateReader::readTail(KWChunk& chunk)
{
    const int tail = std::min(chunk.readInt(), kTailRevision);
    if (how.kind == PresetKind::Synth)
        return tail;
    if (tail >= kTailWithProgram) {
        const int32_t program = chunk.readInt();
        const int32_t folder = tail >= kTailWithFolder ? chunk.readInt() : 0;
        if (apply && how.force && tail >= kTailProgramCounts) {
            parts.position.program = std::clamp(program, 0, kMostPlace);
            parts.position.folder = std::clamp(folder, 0, kMostPlace);
        }
    }
    if (tail >= kTailWithPressure) {
        const int32_t count = chunk.readInt();
        if (count < 0 || static_cast<size_t>(count) > chunk.remaining())
            chunk.fail();
        readAssignments(chunk, MidiMap::kPressure, true);
    }
    // A file without such a list leaves no binding of the song before it.
    if (apply && (parts.keepMap == 0 || how.force))
        parts.midiMap.replace(map, false, true, !how.wait);
    return tail;
}

void StateReader::readPatterns(KWChunk& chunk)
{
    const int32_t rows = chunk.readInt();
    const int32_t columns = chunk.readInt();
    if (rows < 0 || rows > kMostPatternSide || columns < 0 || columns > kMostPatternSide
        || static_cast<size_t>(rows) * static_cast<size_t>(columns) > chunk.remaining()) {
        chunk.fail();
        return;
    }
    const bool store = apply && how.kind == PresetKind::Global;
    if (store)
        parts.patterns.fillWithDefaults();
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c) {
            const float value = chunk.readFloat();
            if (store && r < kPatterns && c < kPatternValues)
                parts.patterns.setAt(r, c, sanitisedRaw(value));
        }
    if (store)
        parts.patterns.replay(parts.sink);
}

} // namespace ormund
