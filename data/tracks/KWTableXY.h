// A track of continuous values: a row of steps for every pattern.
#pragma once

#include "data/tracks/KWInitInterface.h"
#include "data/tracks/KWTable.h"

#include <memory>
#include <string>
#include <vector>

namespace ormund {

// Step access goes to the selected row; with a fraction in the row position, reads blend it with
// the row behind it. Rows are made at need and kept until the table ends, so a changed count never
// frees what the audio thread reads.
class KWTableXY : public KWTable, public KWInitInterface {
public:
    static constexpr int kMaxRows = 64;

    // One row; setRowCount() gives more. A clone is not registered in the owner's list of tracks.
    KWTableXY(KWSystemInfo* owner, int steps, int mostSteps = kMaxSteps, bool isClone = false);
    ~KWTableXY() override;

    // --- rows ---
    int rowCount() const { return rowsUsed; }
    // 1 to kMaxRows, else nothing changes and false comes back. New rows are cleared.
    bool setRowCount(int count);
    int row() const { return rowIndex; }
    int getRow() const override { return rowIndex; }
    float rowPosition() const { return rowPlace; }
    void setRowPosition(float position); // ignored unless 0 <= position < rowCount()
    KWTable& rowTable(int r) { return *rows[static_cast<size_t>(r)]; }
    const KWTable& rowTable(int r) const { return *rows[static_cast<size_t>(r)]; }

    // Any row; 0 outside.
    float getRowAtIndex(int r, int i) const;
    float getRowAtPosition(int r, float p) const;
    float getRowNormalized(int r, float p) const;
    void setRowValue(int r, int i, float v);
    // Between two rows, `rowPosition` with a fraction.
    float getRowInterpolated(float position, float p) const;
    float getRowAtIndexInterpolated(float position, int i) const;

    // --- steps of the selected row ---
    float step(int i) const { return isRebuilding() ? 0.0f : selected().ownStep(i); }
    float getAtIndex(int i) const override;
    float getAtPosition(float p) const override;
    float getInterpolated() const override;
    float getNormalized(float p) const override;
    void setValue(int i, float v) override;
    void setNormalized(float p, float n) override;
    void clear() override;
    void shiftUp(int from, int to) override;
    void shiftDown(int from, int to) override;

    // --- all rows ---
    void setQuantised(bool on) override;
    bool resize(int steps) override;
    bool setRange(float lowest, float highest, float cleared) override;
    void pullIntoRange() override;
    void setFlags(uint32_t word) override;

    // --- edit operations ---
    void init() override { clear(); }
    void clearAll() override;
    void copy(int from, int to) override;
    void paste(int from, int to) override;
    void copyRegion(int from, int to); // the clipboard of the track's own buttons
    void pasteRegion(int from, int to);
    void randomize() override;
    void shiftBackward(int from, int to) override { rotateBackward(from, to); }
    void shiftForward(int from, int to) override { rotateForward(from, to); }
    void mutate() override;
    std::unique_ptr<KWInitInterface> clone() const override;

    int sourceRow() const { return copiedRow; } // of the last copy
    std::string label = "Default";              // of the loader's thread

    bool readChunk(KWChunk& chunk, bool skip) override;
    void writeChunk(KWChunk& chunk) const override;

private:
    KWTable& selected() { return *rows[static_cast<size_t>(rowIndex.load())]; }
    const KWTable& selected() const { return *rows[static_cast<size_t>(rowIndex.load())]; }
    void copyTo(bool global, int from, int to);
    void pasteFrom(bool global, int from, int to);

    std::vector<std::unique_ptr<KWTable>> rows; // reserved for kMaxRows, never shrinks
    Crossing<int32_t> rowsUsed = 1;
    Crossing<int32_t> copiedRow = 0;
    Crossing<float> rowPlace = 0.0f;
    Crossing<int32_t> rowIndex = 0;
    bool registered = false;
};

} // namespace ormund
