// How the switch and list tracks are written and read.
#include "data/state/ChunkFormat.h"
#include "data/state/KWChunk.h"
#include "data/tracks/KWBtnLine.h"
#include "data/tracks/KWListLine.h"

namespace ormund {

namespace {

constexpr int32_t kMostRange = 1000;

bool readLine(StepLine& line, KWChunk& chunk, bool skip, bool takesRange)
{
    chunk.readInt(); // magic
    chunk.readInt(); // revision
    const int32_t rows = chunk.readInt();
    const int32_t steps = chunk.readInt();
    if (rows < 1 || rows > StepLine::kMaxRows || steps < 1 || steps > StepLine::kMaxSteps) {
        chunk.fail();
        return false;
    }
    chunk.readInt(); // the row that was selected: the pattern decides
    const int32_t range = chunk.readInt();
    if (!skip) {
        line.resize(steps, rows);
        if (takesRange && range >= 0 && range <= kMostRange)
            line.range = static_cast<float>(range);
    }
    for (int r = 0; r < rows; ++r)
        for (int i = 0; i < steps; ++i) {
            const float value = chunk.readFloat();
            if (!skip)
                line.setStepAt(r, i, value);
        }
    return !chunk.isBroken();
}

void writeLine(const StepLine& line, KWChunk& chunk)
{
    chunk.writeInt(kLineMagic);
    chunk.writeInt(kLineRevision);
    chunk.writeInt(line.rows());
    chunk.writeInt(line.steps());
    chunk.writeInt(line.row());
    chunk.writeInt(static_cast<int32_t>(line.range));
    for (int r = 0; r < line.rows(); ++r)
        for (int i = 0; i < line.steps(); ++i)
            chunk.writeFloat(line.stepAt(r, i));
}

} // namespace

bool KWBtnLine::readChunk(KWChunk& chunk, bool skip) { return readLine(*this, chunk, skip, true); }

void KWBtnLine::writeChunk(KWChunk& chunk) const { writeLine(*this, chunk); }

// Deliberate: a list keeps its own number of entries, so that a later version may have more of them
// without old files taking them away again.
bool KWListLine::readChunk(KWChunk& chunk, bool skip)
{
    return readLine(*this, chunk, skip, false);
}

void KWListLine::writeChunk(KWChunk& chunk) const { writeLine(*this, chunk); }

} // namespace ormund
