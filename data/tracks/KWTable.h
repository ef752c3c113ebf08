// One row of steps with a value range.
#pragma once

#include "base/Crossing.h"
#include "data/state/KWChunkableClass.h"

#include <cstdint>
#include <memory>
#include <span>

namespace ormund {

class KWSystemInfo;

// Bits of a table's flag word. Those that say how a table looks and what the mouse may do belong
// to its view.
enum TableFlag : uint32_t {
    kTableLocked = 1u << 0,  // being rebuilt: reads give 0, writes are dropped
    kTableReading = 1u << 1, // the view is reading it
    kTableCurve = 1u << 3,   // reads between two steps interpolate
    kTableBeatGrid = 1u << 4,
    kTableRelayout = 1u << 5,
    kTableRuler = 1u << 6,
    kTableLoopBar = 1u << 7,
    kTableCells = 1u << 8,
    kTableDropLines = 1u << 9,
    kTableCentred = 1u << 10,
    kTableToggle = 1u << 11,
    kTableDistinct = 1u << 12, // no two neighbours may be equal
    kTableCentreLine = 1u << 14,
    kTableRawValues = 1u << 15, // whole numbers
    kTableDashGrid = 1u << 16,
    kTableEditable = 1u << 17,
    kTableRunningStep = 1u << 18,
    kTableOwnedMemory = 1u << 19,
    kTableBuffered = 1u << 20,
    kTableNoBackground = 1u << 21,
    kTableCellAlpha = 1u << 22,
    kTableWatchValues = 1u << 23,
    kTableConnect = 1u << 24,
};

// Both threads read and write steps; a reader gets the old value or the new. The memory has its
// full size from the start and is never given back before the table is, so that no resize can pull
// it away from under the audio thread. No operation reports an error: an index outside reads 0 and
// writes nothing, a value outside the range is pulled to it, a value that is no number is dropped.
class KWTable : public KWChunkableClass {
public:
    static constexpr int kMaxSteps = 128;
    static constexpr float kMaxMagnitude = 1.0e6f; // of the range's ends

    // `owner` gives the range of random edits. `steps` and `mostSteps`, to which it can grow: 1 to
    // kMaxSteps.
    KWTable(KWSystemInfo* owner, int steps, int mostSteps = kMaxSteps);
    ~KWTable() override;
    KWTable(const KWTable&) = delete;
    KWTable& operator=(const KWTable&) = delete;

    // Reads give 0 and writes are dropped for as long as it lives.
    class RebuildScope {
    public:
        explicit RebuildScope(KWTable& table);
        ~RebuildScope();
        RebuildScope(const RebuildScope&) = delete;
        RebuildScope& operator=(const RebuildScope&) = delete;

    private:
        KWTable& held;
    };

    // --- steps ---
    // This table's own step, without a virtual call. A KWTableXY reads its step() instead.
    float ownStep(int i) const { return i < 0 || i >= stepCount || isRebuilding() ? 0.0f : at(i); }
    virtual float getAtIndex(int i) const;        // remembers `i` as the place of the last read
    virtual float getAtPosition(float p) const;   // 0 <= p < size; the last step blends into step 0
    virtual float getInterpolated() const;        // the same at the place of the last read
    virtual float getNormalized(float p) const;   // the value at `p` as 0 to 1 of the range
    virtual void setValue(int i, float v);        // makes room between equal neighbours
    virtual void setNormalized(float p, float n); // `n` 0 to 1 of the range
    // The edit cursor: goes to `p` and writes there; writes where it stands.
    virtual void setAtEdit(float p, float v);
    virtual void setAtEdit2(float v);
    virtual float roundPosition(float p) const; // to the step that holds it, 0 to size - 1
    virtual void setFromVector(std::span<const float> source);
    virtual void getToVector(std::span<float> target) const;

    // --- whole rows ---
    virtual void clear(); // every step becomes the default
    // Steps from <= i < to; `to` 0 means the end. Rotates by one place.
    virtual void rotateBackward(int from, int to);
    virtual void rotateForward(int from, int to);
    // Moves the steps by 1, or by 0.05 in a table of range 0 to 1, and stops at its ends.
    virtual void shiftUp(int from, int to);
    virtual void shiftDown(int from, int to);
    // Whole numbers from now on, the present steps rounded; false only ends the rule.
    virtual void setQuantised(bool on);
    // A process-wide mark, and the copy of the marked table's steps if it has as many.
    virtual void markSource();
    virtual void copyFromMarked();

    // --- shape ---
    // New steps of a growing table are the default. Sizes outside 1 to mostSteps() change nothing.
    virtual bool resize(int steps);
    // Finite, least below most, none beyond kMaxMagnitude; else nothing changes and false comes
    // back. The steps keep their values.
    virtual bool setRange(float lowest, float highest, float cleared);
    virtual void pullIntoRange(); // every step of every row
    virtual int getRow() const { return 0; }
    int size() const { return stepCount; }
    int mostSteps() const { return room; }
    float minValue() const { return least; }
    float maxValue() const { return most; }
    float defaultValue() const { return whenCleared; }

    // --- words of the view ---
    uint32_t flags() const;
    virtual void setFlags(uint32_t word); // the two lock bits are left out
    bool hasFlag(TableFlag flag) const { return (flags() & flag) != 0; }
    // The view reads under this flag, and a rebuild waits for it, though never for long.
    OneWayFlag reading;
    // Grows with every write, for views that poll.
    uint32_t generation() const { return writes; }
    virtual void setViewWidth(float stepsPerBeat) { beatWidth = stepsPerBeat; }
    virtual void setViewWidthQuarter(float stepsPerBar) { beatWidth = stepsPerBar * 0.25f; }

    Crossing<float> runningPosition = -1.0f; // -1 while nothing runs
    Crossing<float> beatWidth;               // steps
    Crossing<float> loopStart = 0.0f;
    Crossing<float> loopEnd;
    mutable Crossing<float> readPos = 0.0f;
    Crossing<float> editPos = 0.0f;
    int loopBarHeight = 10; // pixels
    int minLoopLength = 1;  // steps
    int grid = 10;
    int gridMinor = 1;

    bool readChunk(KWChunk& chunk, bool skip) override;
    void writeChunk(KWChunk& chunk) const override;

protected:
    float at(int i) const { return values[static_cast<size_t>(i)]; }
    void put(int i, float v); // with the mirror, without any rule
    float fit(float v) const;
    float apart(int i, float v) const; // moved off the step before it where the flag asks for that
    float blend(float p) const;
    void shiftBy(float amount, int from, int to);
    void touch();

    bool isRebuilding() const { return rebuilds != 0; }

    KWSystemInfo* owner;

private:
    // One entry more than steps: the entry behind the last step is step 0 again, so that a read
    // between the last step and the first needs no test.
    std::unique_ptr<Crossing<float>[]> values;
    int room; // steps
    Crossing<int32_t> stepCount;
    Crossing<float> least = 0.0f;
    Crossing<float> most = 1.0f;
    Crossing<float> whenCleared = 0.0f;
    Crossing<uint32_t> flagWord = 0x60188u;
    Crossing<uint32_t> writes = 0u;
    Crossing<int32_t> rebuilds = 0; // how many scopes are open
};

} // namespace ormund
