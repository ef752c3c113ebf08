// Writes a state: a host's chunk, a global preset (the same bytes) or a synth preset.
#pragma once

#include "data/state/KWChunk.h"
#include "data/state/StateParts.h"

namespace ormund {

// Fills the chunk. Values that are turned meanwhile are saved old or new. The loader's thread.
void writeState(KWChunk& chunk, const StateParts& parts, PresetKind kind);

} // namespace ormund
