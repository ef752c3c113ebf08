#pragma once

#include "data/library/Presets.h"
#include "data/state/MidiMap.h"
#include "editor/EditCells.h"
#include "editor/EditNames.h"

#include <chrono>
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
        EditName name = {};
        std::chrono::steady_clock::time_point time = {}; // given by push, as the next
        uint32_t serial = 0;
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
    // Names the song at this place among the levels: the same number is the same song.
    uint32_t place() const { return next > 0 ? levels[next - 1].serial : firstPlace; }

    bool canUndo() const { return next > 0; }
    bool canRedo() const { return next < levels.size(); }
    size_t size() const { return levels.size(); }
    size_t undoable() const { return next; }                      // levels
    const Level& at(size_t index) const { return levels[index]; } // the oldest first
    // The last level that could be undone; null for none.
    const Level* last() const { return next > 0 ? &levels[next - 1] : nullptr; }

private:
    std::deque<Level> levels;
    size_t bytes = 0; // of all levels
    uint32_t serials = 0;
    uint32_t firstPlace = 0; // before the oldest level
    size_t next = 0;         // levels before it can be undone, those from it on redone
};

} // namespace ormund
