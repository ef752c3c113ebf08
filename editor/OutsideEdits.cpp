#include "editor/OutsideEdits.h"

#include "data/parameters/Tags.h"
#include "host/plugin/KWUniClient.h"

#include <utility>

namespace ormund {

namespace {
// A hand that turns a controller makes shorter pauses: a third of a second.
constexpr int kQuietIdles = 20;
} // namespace

OutsideEdits::OutsideEdits(KWUniClient& ownEngine, const EditCells& allCells)
    : engine(ownEngine), cells(allCells), ranges(allCells.rangesOf(EditScope::Tracks, -1))
{
    restart();
}

void OutsideEdits::restart()
{
    changeCount = engine.info.changes.load();
    known = cells.read(ranges);
    pending.clear();
    wasTake = false;
}

bool OutsideEdits::readNew()
{
    const uint32_t count = engine.info.changes.load();
    if (count == changeCount)
        return false;
    changeCount = count;
    const EditCells::Changes found = cells.changesSince(ranges, known);
    take(found);
    for (const EditCells::Change& change : found)
        pending.try_emplace(change.cell, change).first->second.after = change.after;
    return !found.empty();
}

void OutsideEdits::take(const EditCells::Changes& changes, bool back)
{
    const uint32_t first = ranges.front().first;
    for (const EditCells::Change& change : changes)
        if (change.cell >= first && change.cell - first < known.size())
            known[change.cell - first] = back ? change.before : change.after;
}

std::optional<OutsideEdits::Edit> OutsideEdits::look()
{
    const bool recording = engine.parameters.index(Tag::Record) != 0;
    quietIdles = readNew() ? 0 : quietIdles + 1;
    if (pending.empty()) {
        wasTake = recording;
        return std::nullopt;
    }
    wasTake = wasTake || recording;
    if (wasTake ? recording : quietIdles < kQuietIdles)
        return std::nullopt;
    return finish();
}

std::optional<OutsideEdits::Edit> OutsideEdits::finish()
{
    readNew();
    Edit edit{{}, wasTake};
    for (const auto& [cell, change] : pending)
        if (change.before != change.after)
            edit.changes.push_back(change);
    pending.clear();
    wasTake = engine.parameters.index(Tag::Record) != 0;
    quietIdles = 0;
    if (edit.changes.empty())
        return std::nullopt;
    return edit;
}

} // namespace ormund
