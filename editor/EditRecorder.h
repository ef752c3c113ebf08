#pragma once

#include "editor/EditCells.h"
#include "editor/EditScope.h"
#include "editor/UndoHistory.h"

#include <memory>
#include <vector>

namespace ormund {

class KWUniClient;

// Looks at the state before and after a gesture and keeps what became different. Only what lies
// within the gesture's scope is looked at, so what the engine changes by itself in the meantime is
// no part of the level. A state that comes from elsewhere, from the host or by a program change,
// ends the history: its levels belong to another song. Screen thread.
class EditRecorder {
public:
    explicit EditRecorder(KWUniClient& ownEngine);

    // Gestures nest; the outermost one makes the level.
    void begin(EditScope scope, int tag);
    void end();
    // Nothing happens in the middle of a gesture.
    void undo();
    void redo();
    // Notices a foreign state. Once an idle.
    void watch();

    bool canUndo() const { return history.canUndo(); }
    bool canRedo() const { return history.canRedo(); }
    size_t levels() const { return history.size(); }

private:
    void apply(const UndoHistory::Level& level, bool back);

    KWUniClient& engine;
    EditCells cells;
    UndoHistory history;
    float reloads; // as counted when the state was last ours

    // The gesture's.
    int depth = 0;
    std::vector<EditCells::Range> ranges;
    std::vector<float> before;
    std::shared_ptr<const MidiMap::Lists> mapBefore;
    std::shared_ptr<const Presets::Moment> loadBefore;
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

} // namespace ormund
