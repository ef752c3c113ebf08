#include "editor/UndoHistory.h"

#include <utility>

namespace ormund {

size_t UndoHistory::Level::bytes() const
{
    size_t sum = sizeof *this + name.text.size() + changes.capacity() * sizeof changes[0];
    if (map.before)
        sum += sizeof *map.before + sizeof *map.after;
    for (const Presets::Moment* moment : {load.before.get(), load.after.get()})
        if (moment)
            sum += sizeof *moment + moment->words.size() * sizeof moment->words[0];
    return sum;
}

void UndoHistory::push(Level level)
{
    if (level.isEmpty())
        return;
    for (; levels.size() > next; levels.pop_back())
        bytes -= levels.back().bytes();
    bytes += level.bytes();
    level.serial = ++serials;
    level.time = std::chrono::steady_clock::now();
    levels.push_back(std::move(level));
    for (; levels.size() > kMaxLevels || (bytes > kMaxBytes && levels.size() > 1);
         levels.pop_front()) {
        bytes -= levels.front().bytes();
        firstPlace = levels.front().serial;
    }
    next = levels.size();
}

const UndoHistory::Level* UndoHistory::undo() { return canUndo() ? &levels[--next] : nullptr; }

const UndoHistory::Level* UndoHistory::redo() { return canRedo() ? &levels[next++] : nullptr; }

void UndoHistory::clear()
{
    levels = {};
    firstPlace = ++serials;
    bytes = 0;
    next = 0;
}

} // namespace ormund
