// How the continuous tracks are written and read.
#include "data/state/ChunkFormat.h"
#include "data/state/KWChunk.h"
#include "data/tracks/KWTable.h"
#include "data/tracks/KWTableXY.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace ormund {

namespace {

struct Range {
    float cleared = 0;
    float most = 1;
    float least = 0;
};

Range readRange(KWChunk& chunk)
{
    Range range;
    chunk.readFloatTo(range.cleared);
    chunk.readFloatTo(range.most);
    chunk.readFloatTo(range.least);
    return range;
}

// A count of values that the chunk must still hold.
int readCount(KWChunk& chunk)
{
    const int32_t count = chunk.readInt();
    if (count < 0 || static_cast<size_t>(count) > chunk.remaining()) {
        chunk.fail();
        return 0;
    }
    return count;
}

// Nothing of the oldest form can be used; its words are passed by.
void dropOldestForm(KWChunk& chunk)
{
    readRange(chunk);
    if (chunk.readInt() == kOldTableMagic)
        chunk.readInt();
    else
        chunk.unread();
    chunk.skipWords(static_cast<size_t>(readCount(chunk)));
}

} // namespace

// One row in the form that tables had before they had rows; a table with rows reads it into the
// selected one.
bool KWTable::readChunk(KWChunk& chunk, bool skip)
{
    const Range range = readRange(chunk);
    bool normalised = true;
    if (chunk.readInt() == kOldTableMagic)
        normalised = chunk.readInt() < 1;
    else
        chunk.unread();
    const int count = readCount(chunk);
    // A step that is no number leaves the one that stands.
    if (!skip && setRange(range.least, range.most, range.cleared))
        pullIntoRange();
    for (int i = 0; i < count; ++i) {
        const float value = chunk.readFloat();
        if (skip || i >= size())
            continue;
        if (normalised)
            setNormalized(static_cast<float>(i), value);
        else
            setValue(i, value);
    }
    return !chunk.isBroken();
}

void KWTable::writeChunk(KWChunk& chunk) const
{
    chunk.writeFloat(defaultValue());
    chunk.writeFloat(maxValue());
    chunk.writeFloat(minValue());
    chunk.writeInt(kOldTableMagic);
    chunk.writeInt(1);
    chunk.writeInt(size());
    for (int i = 0; i < size(); ++i)
        chunk.writeFloat(ownStep(i));
}

bool KWTableXY::readChunk(KWChunk& chunk, bool skip)
{
    const int32_t first = chunk.readInt();
    if (first != kTableMagic) {
        chunk.unread();
        if (first != kOldestTable)
            return KWTable::readChunk(chunk, skip);
        dropOldestForm(chunk);
        return !chunk.isBroken();
    }

    const int32_t revision = chunk.readInt();
    const Range range = readRange(chunk);
    const int32_t steps = chunk.readInt();
    const int32_t fileRows = chunk.readInt();
    if (steps < 1 || steps > kMaxFileSteps || fileRows < 1 || fileRows > kMaxFileRows
        || static_cast<size_t>(steps) * static_cast<size_t>(fileRows) > chunk.remaining()) {
        chunk.fail();
        return false;
    }
    std::optional<RebuildScope> rebuild;
    if (!skip) {
        setRange(range.least, range.most, range.cleared);
        setRowCount(fileRows);
        pullIntoRange(); // a step that is no number leaves the one that stands
        rebuild.emplace(*this);
    }
    std::array<float, kMaxFileSteps> stored;
    for (int r = 0; r < fileRows; ++r) {
        for (int i = 0; i < steps; ++i)
            chunk.readFloatTo(stored[static_cast<size_t>(i)]);
        if (skip)
            continue;
        // Steps behind the track's end are dropped: their number is the track's own.
        KWTable& target = rowTable(r);
        const auto kept = static_cast<size_t>(std::min(steps, target.size()));
        // Twice: where neighbours must differ, the first step is moved away from the last one of
        // the old content, and comes right once the new last step is there.
        for (int pass = 0; pass < 2; ++pass)
            for (size_t i = 0; i < kept; ++i) {
                if (revision >= kTableUnscaled)
                    target.setValue(static_cast<int>(i), stored[i]);
                else
                    target.setNormalized(static_cast<float>(i), stored[i]);
            }
    }
    std::string name = revision >= kTableWithLabel ? chunk.readString() : "Default";
    if (!skip)
        label = std::move(name);
    return !chunk.isBroken();
}

void KWTableXY::writeChunk(KWChunk& chunk) const
{
    chunk.writeInt(kTableMagic);
    chunk.writeInt(kTableRevision);
    chunk.writeFloat(defaultValue());
    chunk.writeFloat(maxValue());
    chunk.writeFloat(minValue());
    chunk.writeInt(size());
    chunk.writeInt(rowCount());
    for (int r = 0; r < rowCount(); ++r)
        for (int i = 0; i < size(); ++i)
            chunk.writeFloat(rowTable(r).ownStep(i));
    chunk.writeString(label);
}

} // namespace ormund
