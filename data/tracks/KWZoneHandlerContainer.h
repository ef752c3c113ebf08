// The playback loop of a lane: a first and a last step for every pattern.
#pragma once

#include "base/Crossing.h"
#include "data/state/KWChunkableClass.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace ormund {

// Step indexes, both inclusive.
struct LoopZone {
    int start = 0;
    int end = 0;
    friend bool operator==(const LoopZone&, const LoopZone&) = default;
};

// One handler a row. Start and end of a row cross together, so a reader never sees the start of one
// loop with the end of another. Both threads read and write.
class KWZoneHandlerContainer : public KWChunkableClass {
public:
    static constexpr int kMaxHandlers = 63;

    // Every handler starts as the whole track.
    KWZoneHandlerContainer(int steps, int handlers);

    // A row behind the last handler reads the last one, so a container of one handler serves all.
    LoopZone zone(int r) const
    {
        const int handler = std::clamp<int>(r, 0, handlersUsed - 1);
        const uint32_t word = packed[static_cast<size_t>(handler)];
        return {static_cast<int>(word >> 16), static_cast<int>(word & 0xffffu)};
    }
    int start(int r) const { return zone(r).start; }
    int end(int r) const { return zone(r).end; }
    // Ignored for a row without a handler; the ends are put in order and pulled into the track.
    void setZone(int r, LoopZone wanted);
    void setStart(int r, int step); // not beyond the end
    void setEnd(int r, int step);   // not before the start
    void resetRow(int r);           // the whole track
    void clearAll();

    int steps() const { return stepCount; }
    int handlers() const { return handlersUsed; }
    bool setHandlers(int count); // 1 to kMaxHandlers; new ones are reset
    int row() const { return rowIndex; }
    void setRow(int r); // the row that edits act on; ignored outside
    LoopZone current() const { return zone(rowIndex); }
    uint32_t generation() const { return writes.load(); }

    bool readChunk(KWChunk& chunk, bool skip) override;
    void writeChunk(KWChunk& chunk) const override;

private:
    std::array<Crossing<uint32_t>, kMaxHandlers> packed{}; // start in the high half
    int stepCount;
    Crossing<int32_t> handlersUsed;
    Crossing<int32_t> rowIndex = 0;
    ChangeCount writes;
};

} // namespace ormund
