#include "editor/EditRecorder.h"

#include "host/plugin/KWUniClient.h"

#include <utility>

namespace ormund {

namespace {

std::shared_ptr<const MidiMap::Lists> mapOf(const KWUniClient& engine)
{
    auto lists = std::make_shared<MidiMap::Lists>();
    engine.midiMap.copyTo(*lists);
    return lists;
}

// A state that is the last level's too is kept once.
std::shared_ptr<const Presets::Moment> momentOf(KWUniClient& engine, const UndoHistory& history)
{
    auto moment = std::make_shared<const Presets::Moment>(engine.presets.moment());
    const UndoHistory::Level* last = history.last();
    return last && last->load.after && *last->load.after == *moment ? last->load.after : moment;
}

} // namespace

EditRecorder::EditRecorder(KWUniClient& ownEngine)
    : engine(ownEngine), cells(ownEngine), reloads(ownEngine.sequencer.reloads())
{
}

void EditRecorder::begin(EditScope scope, int tag)
{
    if (depth++ > 0)
        return;
    watch();
    ranges = cells.rangesOf(scope, tag);
    before = cells.read(ranges);
    mapBefore = scope == EditScope::Map ? mapOf(engine) : nullptr;
    loadBefore = scope == EditScope::Load ? momentOf(engine, history) : nullptr;
}

void EditRecorder::end()
{
    if (depth == 0 || --depth > 0)
        return;
    UndoHistory::Level level;
    level.changes = cells.changesSince(ranges, before);
    if (mapBefore)
        if (auto after = mapOf(engine); *after != *mapBefore)
            level.map = {mapBefore, after};
    if (loadBefore) {
        if (auto after = momentOf(engine, history); *after != *loadBefore)
            level.load = {loadBefore, after};
        reloads = engine.sequencer.reloads();
    }
    mapBefore.reset();
    loadBefore.reset();
    const bool hasChanged = !level.isEmpty();
    history.push(std::move(level));
    if (hasChanged)
        engine.updateDisplay(); // a host saves only what it knows to be edited
}

void EditRecorder::watch()
{
    // While a load is under way the count has not reached its end.
    if (loadBefore || reloads == engine.sequencer.reloads())
        return;
    reloads = engine.sequencer.reloads();
    history.clear();
}

void EditRecorder::undo()
{
    if (depth > 0)
        return;
    watch();
    if (const UndoHistory::Level* level = history.undo())
        apply(*level, true);
}

void EditRecorder::redo()
{
    if (depth > 0)
        return;
    watch();
    if (const UndoHistory::Level* level = history.redo())
        apply(*level, false);
}

void EditRecorder::apply(const UndoHistory::Level& level, bool back)
{
    cells.apply(level.changes, back);
    if (level.map.before)
        engine.midiMap.replace(back ? *level.map.before : *level.map.after, true, true);
    if (level.load.before) {
        engine.presets.comeBackTo(back ? *level.load.before : *level.load.after);
        reloads = engine.sequencer.reloads();
    }
    engine.updateDisplay();
    engine.screen.redraw.raise();
}

} // namespace ormund
