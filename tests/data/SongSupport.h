// What the tests of saving and loading share.
#pragma once

#include "data/state/DetachedSong.h"
#include "data/state/KWChunk.h"
#include "data/state/StateReader.h"
#include "data/state/StateWriter.h"

#include <random>
#include <vector>

namespace ormund {

using Words = std::vector<uint32_t>;

inline Words saved(const DetachedSong& song, PresetKind kind = PresetKind::Global)
{
    KWChunk chunk;
    writeState(chunk, song.parts, kind);
    return {chunk.words().begin(), chunk.words().end()};
}

inline LoadResult load(
    DetachedSong& song, const Words& words, PresetKind kind = PresetKind::Global, bool force = true)
{
    KWChunk chunk;
    chunk.assign(words);
    StateReader::Options options;
    options.kind = kind;
    options.force = force;
    return StateReader(song.parts).load(chunk, options);
}

// Any state that hands and controllers can reach.
inline void randomise(DetachedSong& song, unsigned seed)
{
    std::mt19937 draw(seed);
    const auto unit = [&draw] { return static_cast<float>(draw() % 10001) / 10000.0f; };
    song.patterns.currentPattern = static_cast<int>(draw() % 16);
    song.tracks.selectRow(song.patterns.currentPattern);
    for (const ParameterEntry* entry : presetParameters())
        if (entry->hasValue())
            song.setParameter(entry->tag, unit());
    for (int p = 0; p < kPatterns; ++p)
        for (int i = 0; i < kPatternValues; ++i)
            if (p != song.patterns.currentPattern)
                song.patterns.setAt(p, i, unit());
    for (const TrackRow& row : kTrackTable) {
        KWTableXY* table = song.tracks.tableAt(row.tag);
        StepLine* line = song.tracks.lineAt(row.tag);
        for (int r = 0; r < row.rows; ++r)
            for (int i = 0; i < row.steps; ++i) {
                if (table)
                    table->rowTable(r).setNormalized(static_cast<float>(i), unit());
                if (line)
                    line->setStepAt(r, i, line->fromController(unit()));
            }
        if (line && draw() % 2 == 0)
            line->mutate();
    }
    for (const ParameterEntry* entry : presetParameters())
        if (KWZoneHandlerContainer* zones = song.tracks.zonesAt(entry->tag))
            for (int r = 0; r < zones->handlers(); ++r)
                zones->setZone(r, {static_cast<int>(draw() % 32), static_cast<int>(draw() % 32)});
    for (auto i = draw() % 60; i > 0; --i)
        song.midiMap.addAssignment(static_cast<int>(draw() % MidiMap::kLists),
            static_cast<int>(draw() % kTagCount), static_cast<int>(draw() % 32));
    song.position.names = {std::string(draw() % 40, 'n'), "Caf\xC3\xA9 " + std::to_string(draw())};
    song.position.program = static_cast<int>(draw() % 128);
    song.position.folder = static_cast<int>(draw() % 8);
    song.info.setTempo(45.0 + static_cast<int>(draw() % 400));
}

} // namespace ormund
