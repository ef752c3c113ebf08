#include "editor/UndoHistory.h"

#include <utility>

void UndoHistory::push(Level level)
{
    if (level.isEmpty())
        return;
    levels.resize(next);
    if (levels.size() == kMaxLevels)
        levels.erase(levels.begin());
    levels.push_back(std::move(level));
    next = levels.size();
}

const UndoHistory::Level* UndoHistory::undo() { return canUndo() ? &levels[--next] : nullptr; }

const UndoHistory::Level* UndoHistory::redo() { return canRedo() ? &levels[next++] : nullptr; }

void UndoHistory::clear()
{
    levels.clear();
    next = 0;
}
