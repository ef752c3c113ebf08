// Reads a state: a host's chunk, a global preset or a synth preset.
#pragma once

#include "data/state/KWChunk.h"
#include "data/state/LoadResult.h"
#include "data/state/StateParts.h"

namespace ormund {

// The whole chunk is walked twice by the same code: first nothing is changed and every word is
// checked, then it is applied. So damage anywhere leaves everything as it was. The loader's thread.
class StateReader {
public:
    struct Options {
        PresetKind kind = PresetKind::Global;
        // A host's state: isolated parameters, the map and the program number are taken over too.
        bool force = false;
        bool wait = true; // false on the audio thread
    };

    explicit StateReader(StateParts& stateParts) : parts(stateParts) { }
    LoadResult load(KWChunk& chunk, const Options& options);
    // The first pass alone.
    LoadResult check(KWChunk& chunk, const Options& options);

private:
    LoadResult readHead(KWChunk& chunk);
    void walk(KWChunk& chunk);
    void reset();
    void readRecords(KWChunk& chunk);
    void readValue(KWChunk& chunk, const ParameterEntry* entry);
    void readTrack(KWChunk& chunk, const ParameterEntry& entry);
    void keep(KWChunk& chunk, int32_t key, size_t size);
    void takeKept();
    void readMap(KWChunk& chunk);
    void readAssignments(KWChunk& chunk, int list, bool pairs);
    void readNames(KWChunk& chunk);
    int readTail(KWChunk& chunk);
    void readPatterns(KWChunk& chunk);

    StateParts& parts;
    Options how;
    int32_t revision = 0;
    bool apply = false;
    MidiMap::Lists map;
    KeptRecords kept;
};

// Tracks and loops as they are built: shape, range and every step. Pattern values too.
void resetSong(Tracks& tracks, PatternStore& patterns);
// A name from a file as a name of a file: nothing that leads to another folder.
std::string plainName(std::string name);

} // namespace ormund
