#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// What the user changed, gesture by gesture, so that each can be taken back and done again. A level
// holds the cells that a gesture changed, with the values before and after it. Screen thread.
class UndoHistory {
public:
    struct Change {
        uint32_t cell;
        float before, after;
    };
    using Level = std::vector<Change>;

    static constexpr size_t kMaxLevels = 500;

    // An empty level is no level. A new one ends what could be redone.
    void push(Level level);
    // The level to take back, or to do again; null when there is none. Valid until the next push.
    const Level* undo();
    const Level* redo();
    void clear();

    bool canUndo() const { return next > 0; }
    bool canRedo() const { return next < levels.size(); }
    size_t size() const { return levels.size(); }

private:
    std::vector<Level> levels;
    size_t next = 0; // levels before it can be undone, those from it on redone
};
