// A chunk as a file.
#pragma once

#include "data/state/KWChunk.h"
#include "data/state/LoadResult.h"

#include <string>

namespace ormund {

// Looks at the header first and reads as many words as it says, never more than the file has.
// NoFile, Unreadable, NoFormat, `ifNewer` for a later program's file, or Done with the cursor at
// the start.
LoadResult readChunkFile(const std::string& path, KWChunk& chunk, LoadResult ifNewer);
// Replaces the file or leaves it as it is; then false comes back.
bool writeChunkFile(const std::string& path, const KWChunk& chunk);

} // namespace ormund
