#pragma once

#include "editor/UndoHistory.h"

#include <cstdint>
#include <vector>

class KWUniClient;
struct ControlRow;

// Which part of the state a control's gesture can change.
enum class EditScope : uint8_t {
    None,      // pages, play, the keyboard: nothing to take back
    Parameter, // its own parameter
    Steps,     // its own track or loop
    Tracks,    // every track and loop
    Everything,
};
EditScope scopeOf(const ControlRow& row);

// Looks at the state before and after a gesture and keeps what became different. The engine's state
// counts as one long row of numbered cells: parameters, tracks, loops, the patterns' stored values.
// Only the cells within the gesture's scope are looked at, so what the engine changes by itself in
// the meantime is no part of the level. Screen thread.
class EditRecorder {
public:
    explicit EditRecorder(KWUniClient& ownEngine);

    // Gestures nest; the outermost one makes the level.
    void begin(EditScope scope, int tag);
    void end();
    void undo();
    void redo();

    bool canUndo() const { return history.canUndo(); }
    bool canRedo() const { return history.canRedo(); }
    size_t levels() const { return history.size(); }
    void clear() { history.clear(); }

private:
    struct Range {
        uint32_t first, end;
    };
    // A run of cells of one kind.
    struct Section {
        enum Kind : uint8_t { Parameter, Table, Line, Zone, Stored } kind;
        int tag;
        uint32_t first, end;
        int width; // cells a row
    };

    void addSection(Section::Kind kind, int tag, int rows, int width);
    void findRanges(EditScope scope, int tag);
    const Section& sectionOf(uint32_t cell) const;
    float read(const Section& section, uint32_t cell) const;
    void write(const Section& section, uint32_t cell, float value);
    void readRanges(std::vector<float>& into) const;
    void apply(const UndoHistory::Level& level, bool back);

    KWUniClient& engine;
    UndoHistory history;
    std::vector<Section> sections;
    uint32_t cells = 0;

    int depth = 0;
    std::vector<Range> ranges; // of the gesture
    std::vector<float> before;
};

// A gesture for as long as it lives.
class EditGesture {
public:
    EditGesture(EditRecorder& ownRecorder, EditScope scope, int tag = -1) : recorder(ownRecorder)
    {
        recorder.begin(scope, tag);
    }
    ~EditGesture() { recorder.end(); }
    EditGesture(const EditGesture&) = delete;
    EditGesture& operator=(const EditGesture&) = delete;

private:
    EditRecorder& recorder;
};
