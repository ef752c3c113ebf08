// How the playback loops are written and read.
#include "data/state/ChunkFormat.h"
#include "data/state/KWChunk.h"
#include "data/tracks/KWZoneHandlerContainer.h"

namespace ormund {

namespace {

constexpr int32_t kZoneIdentifier = 1;

// A handler may hold several zones in the file; a lane plays the first. False for damage.
bool readHandler(KWChunk& chunk, int& zones, LoopZone& first)
{
    if (chunk.readInt() > 0 && chunk.readInt() != kZoneHandlerMagic) {
        chunk.fail();
        return false;
    }
    zones = chunk.readInt();
    if (zones < 0 || zones > kMaxFileZones) {
        chunk.fail();
        return false;
    }
    for (int i = 0; i < zones; ++i) {
        chunk.readInt(); // identifier
        chunk.readInt(); // 0
        LoopZone zone;
        zone.start = chunk.readInt();
        zone.end = chunk.readInt();
        if (i == 0)
            first = zone;
    }
    return !chunk.isBroken();
}

} // namespace

bool KWZoneHandlerContainer::readChunk(KWChunk& chunk, bool skip)
{
    chunk.readInt(); // magic
    chunk.readInt(); // revision
    const int32_t count = chunk.readInt();
    chunk.readInt();
    if (count < 1 || count > kMaxFileHandlers) {
        chunk.fail();
        return false;
    }
    if (!skip)
        setHandlers(count);
    for (int r = 0; r < count; ++r) {
        int zones = 0;
        LoopZone first;
        if (!readHandler(chunk, zones, first))
            return false;
        if (skip)
            continue;
        resetRow(r);
        if (zones > 0)
            setZone(r, first);
    }
    return !chunk.isBroken();
}

void KWZoneHandlerContainer::writeChunk(KWChunk& chunk) const
{
    chunk.writeInt(kZonesMagic);
    chunk.writeInt(kZonesRevision);
    chunk.writeInt(handlers());
    chunk.writeInt(0);
    for (int r = 0; r < handlers(); ++r) {
        const LoopZone loop = zone(r);
        chunk.writeInt(1);
        chunk.writeInt(kZoneHandlerMagic);
        chunk.writeInt(1);
        chunk.writeInt(kZoneIdentifier);
        chunk.writeInt(0);
        chunk.writeInt(loop.start);
        chunk.writeInt(loop.end);
    }
}

} // namespace ormund
