// The map of controllers as a file of its own.
#pragma once

#include "data/state/KWChunk.h"
#include "data/state/LoadResult.h"
#include "data/state/MidiMap.h"

namespace ormund {

// The lists of the 128 controllers; pressure is not in it.
void writeMidiMap(KWChunk& chunk, const MidiMap& map);
// Replaces the 128 lists, or nothing. A file of another kind is passed over without a word.
LoadResult readMidiMap(KWChunk& chunk, MidiMap& map);

} // namespace ormund
