#pragma once

#include "data/library/Presets.h"
#include "data/state/MidiMap.h"
#include "editor/EditCells.h"

#include <cstddef>
#include <deque>
#include <memory>

namespace ormund {

// What the user changed, gesture by gesture, so that each can be taken back and done again. Screen
// thread.
class UndoHistory {
public:
    // Something that a gesture replaced as a whole; null where it did not.
    template <typename Whole>
    struct Replaced {
        std::shared_ptr<const Whole> before, after;
    };
    struct Level {
        EditCells::Changes changes;
        Replaced<MidiMap::Lists> map;
        Replaced<Presets::Moment> load;
        bool isEmpty() const { return changes.empty() && !map.before && !load.before; }
        size_t bytes() const; // as if it shared nothing
    };

    static constexpr size_t kMaxLevels = 500;
    // 80 loads of whole songs, or 120 changes of the MIDI map.
    static constexpr size_t kMaxBytes = 8 << 20;

    // An empty level is no level. A new one ends what could be redone, and the oldest go where
    // there are too many.
    void push(Level level);
    // The level to take back, or to do again; null when there is none. Valid until the next push.
    const Level* undo();
    const Level* redo();
    void clear();

    bool canUndo() const { return next > 0; }
    bool canRedo() const { return next < levels.size(); }
    size_t size() const { return levels.size(); }
    // The last level that could be undone; null for none.
    const Level* last() const { return next > 0 ? &levels[next - 1] : nullptr; }

private:
    std::deque<Level> levels;
    size_t bytes = 0; // of all levels
    size_t next = 0;  // levels before it can be undone, those from it on redone
};

} // namespace ormund
