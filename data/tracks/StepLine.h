// What the two line classes share: small whole numbers, a row of steps for every pattern.
#pragma once

#include "base/Crossing.h"
#include "base/ZeroedArray.h"
#include "data/state/KWChunkableClass.h"
#include "data/tracks/KWInitInterface.h"

#include <cstdint>
#include <memory>
#include <utility>

namespace ormund {

class KWSystemInfo;
enum class ClipboardClass;

// Both threads read and write steps. As with the tables, the memory has its full size from the
// start; an index outside reads 0 and writes nothing; a value that is no number is dropped and any
// other is pulled into 0 to the greater of `range` and `maximum`.
class StepLine : public KWChunkableClass, public KWInitInterface {
public:
    static constexpr int kMaxSteps = 128;
    static constexpr int kMaxRows = 64;

    StepLine(const StepLine&) = delete;
    StepLine& operator=(const StepLine&) = delete;
    ~StepLine() override;

    // Of the selected row.
    float step(int i) const { return i < 0 || i >= stepCount ? 0.0f : cell(rowIndex, i).load(); }
    void setStep(int i, float v) { setStepAt(rowIndex, i, v); }
    float stepAt(int r, int i) const;
    void setStepAt(int r, int i, float v);
    // A controller's value, 0 to 1, as a step of this line.
    virtual float fromController(float v) const = 0;

    int steps() const { return stepCount; }
    int rows() const { return rowsUsed; }
    int row() const { return rowIndex; }
    void setRow(int r); // ignored outside
    // 1 to the maxima, else nothing changes and false comes back. The steps that both shapes have
    // keep their values, the others take the clear value.
    bool resize(int newSteps, int newRows);
    bool isClear() const; // every step of every row at the clear value

    void init() override { clear(); }
    virtual void clear() = 0;
    void clearAll() override;
    void copy(int from, int to) override;
    void paste(int from, int to) override;
    void copyRegion(int from, int to); // the clipboard of the track's own buttons
    void pasteRegion(int from, int to);
    void randomize() override;
    void shiftBackward(int from, int to) override;
    void shiftForward(int from, int to) override;

    uint32_t generation() const { return writes; }

    Crossing<float> range = 1.0f;           // scale of a random step, or entries of the list
    Crossing<float> maximum = 1.0f;         // the last value that a hand can choose
    Crossing<float> randomThreshold = 0.0f; // a random step stays 0 below it
    Crossing<float> clearValue = 0.0f;
    Crossing<float> runningStep = -1.0f; // for the view; -1 while nothing runs

    bool readChunk(KWChunk& chunk, bool skip) override = 0;
    void writeChunk(KWChunk& chunk) const override = 0;

protected:
    StepLine(KWSystemInfo* owner, int steps, int rows, bool isClone);
    virtual float randomStep(float u) const = 0; // `u` 0 to 1
    virtual ClipboardClass clipboardClass() const = 0;
    void copyValues(const StepLine& source);
    void touch();

    KWSystemInfo* owner;
    Crossing<int32_t> sourceRow = 0; // of the last copy

private:
    const Crossing<float>& cell(int r, int i) const
    {
        return r < firstRows && i < firstSteps ? first[static_cast<size_t>(r * firstSteps + i)]
                                               : others[static_cast<size_t>(r * kMaxSteps + i)];
    }
    Crossing<float>& cell(int r, int i)
    {
        return const_cast<Crossing<float>&>(std::as_const(*this).cell(r, i));
    }
    void copyTo(bool global, int from, int to);
    void pasteFrom(bool global, int from, int to);
    float fit(float v) const;

    Crossing<int32_t> stepCount;
    Crossing<int32_t> rowsUsed;
    // The steps of the shape that the line starts with, and behind them room for all that it may
    // grow to, which costs nothing while it is not used.
    const int firstSteps;
    const int firstRows;
    std::unique_ptr<Crossing<float>[]> first;
    ZeroedArray<Crossing<float>> others;
    Crossing<int32_t> rowIndex = 0;
    Crossing<uint32_t> writes = 0u;
    bool registered = false;
};

} // namespace ormund
