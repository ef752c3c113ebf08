#pragma once

#include "editor/EditCells.h"
#include "editor/EditScope.h"
#include "editor/OutsideEdits.h"
#include "editor/UndoHistory.h"

#include <memory>
#include <vector>

namespace ormund {

class KWUniClient;

// Looks at the state before and after a gesture and keeps what became different. Only what lies
// within the gesture's scope is looked at, so what the engine changes by itself in the meantime is
// no part of the level. Steps that come from elsewhere are levels of their own, and so is a song
// that a program change brings. A state from the host begins a new history; its first level leads
// back to the song before, where the user had worked on that. Screen thread.
class EditRecorder {
public:
    explicit EditRecorder(KWUniClient& ownEngine);

    // Gestures nest; the outermost one makes the level.
    void begin(EditScope gestureScope, int tag);
    void end();
    // Nothing happens in the middle of a gesture.
    void undo();
    void redo();
    // To the song after as many levels, in one go; 0 is before the first.
    void goTo(size_t level);
    // Notices what comes from elsewhere. Once an idle.
    void watch();

    bool canUndo() const { return history.canUndo() || outside.isUnderWay(); }
    bool canRedo() const { return history.canRedo(); }
    // Whether the song is another one than that which was loaded or saved last.
    bool isChanged() const;
    size_t levels() const { return history.size(); }
    const UndoHistory& list() const { return history; }

private:
    using Moment = std::shared_ptr<const Presets::Moment>;

    void apply(const UndoHistory::Level& level, bool back);
    Moment momentNow();
    void push(std::optional<OutsideEdits::Edit> edit);
    bool followLoad();
    void followSettling();
    void keepMoment();
    std::string loadedText(const Presets::Moment& older) const;

    KWUniClient& engine;
    EditCells cells;
    OutsideEdits outside;
    UndoHistory history;
    uint32_t loads;       // as counted when the state was last ours
    uint32_t hostStates;  // those among them
    uint32_t settlements; // as counted when the song was last in a file
    uint32_t settledPlace = 0;
    // The song as it was lately, for when another one takes its place.
    Moment recent;
    uint32_t recentChanges = 0;
    int idles = 0;

    // The gesture's.
    int depth = 0;
    EditScope scope = EditScope::None;
    int gestureTag = -1;
    std::vector<EditCells::Range> ranges;
    std::vector<float> before;
    std::shared_ptr<const MidiMap::Lists> mapBefore;
    Moment loadBefore;
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
