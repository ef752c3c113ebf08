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

constexpr int kIdlesBetweenMoments = 60;

} // namespace

EditRecorder::EditRecorder(KWUniClient& ownEngine)
    : engine(ownEngine)
    , cells(ownEngine)
    , outside(ownEngine, cells)
    , loads(ownEngine.presets.loads())
    , hostStates(ownEngine.presets.hostStates())
    , settlements(ownEngine.presets.settlements())
{
    keepMoment();
}

// A state that is the last level's too is kept once.
EditRecorder::Moment EditRecorder::momentNow()
{
    auto moment = std::make_shared<const Presets::Moment>(engine.presets.moment());
    const UndoHistory::Level* last = history.last();
    return last && last->load.after && *last->load.after == *moment ? last->load.after : moment;
}

void EditRecorder::begin(EditScope gestureScope, int tag)
{
    if (depth++ > 0)
        return;
    watch();
    push(outside.finish());
    scope = gestureScope;
    gestureTag = tag;
    ranges = cells.rangesOf(scope, tag);
    before = cells.read(ranges);
    mapBefore = scope == EditScope::Map ? mapOf(engine) : nullptr;
    loadBefore = scope == EditScope::Load ? momentNow() : nullptr;
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
    outside.take(level.changes);
    if (loadBefore) {
        if (auto after = momentNow(); *after != *loadBefore)
            level.load = {loadBefore, after};
        loads = engine.presets.loads();
        outside.restart();
    }
    mapBefore.reset();
    loadBefore.reset();
    if (level.isEmpty())
        return;
    level.name = level.load.before ? EditName{loadedText(*level.load.before), -1}
                                   : nameOfGesture(engine, scope, gestureTag);
    history.push(std::move(level));
    engine.updateDisplay(); // a host saves only what it knows to be edited
    keepMoment();
}

std::string EditRecorder::loadedText(const Presets::Moment& older) const
{
    auto& now = engine.presets;
    const bool isSound = older.position.names[0] == now.name(PresetKind::Global)
        && older.position.names[1] != now.name(PresetKind::Synth);
    return "Loaded “" + now.name(isSound ? PresetKind::Synth : PresetKind::Global) + "”";
}

void EditRecorder::push(std::optional<OutsideEdits::Edit> edit)
{
    if (!edit)
        return;
    UndoHistory::Level level;
    level.changes = std::move(edit->changes);
    const std::vector<int> tags = cells.stepTags(level.changes);
    level.name = edit->isTake ? nameOfTake(tags) : nameOfOutsideEdit(tags);
    history.push(std::move(level));
    engine.updateDisplay();
    keepMoment();
}

void EditRecorder::watch()
{
    // While a load of our own is under way the count has not reached its end.
    if (loadBefore || followLoad() || depth > 0)
        return;
    followSettling();
    push(outside.look());
    if (++idles >= kIdlesBetweenMoments)
        keepMoment();
}

// The song was loaded or saved as a whole, so it lies in a file as it stands.
void EditRecorder::followSettling()
{
    const uint32_t counted = engine.presets.settlements();
    if (counted == settlements)
        return;
    settlements = counted;
    push(outside.finish());
    settledPlace = history.place();
}

bool EditRecorder::isChanged() const
{
    return outside.isUnderWay() || history.place() != settledPlace;
}

void EditRecorder::keepMoment()
{
    idles = 0;
    const uint32_t changes = engine.info.changes.load();
    if (recent && changes == recentChanges)
        return;
    auto now = momentNow();
    // Not the song that is just taking the place of ours.
    if (engine.presets.loads() != loads)
        return;
    recent = std::move(now);
    recentChanges = changes;
}

// Another song or sound is there, or about to be.
bool EditRecorder::followLoad()
{
    const uint32_t counted = engine.presets.loads();
    if (counted == loads)
        return false;
    if (counted % 2 != 0)
        return true; // it is being put in place
    loads = counted;
    // A gesture that it came into has lost what it began with.
    ranges.clear();
    before.clear();
    mapBefore.reset();
    const bool fromHost = engine.presets.hostStates() != hostStates;
    hostStates = engine.presets.hostStates();
    const bool hadEdits = history.canUndo();
    if (fromHost)
        history.clear();
    UndoHistory::Level level;
    if (!fromHost || hadEdits)
        if (auto now = momentNow(); *now != *recent) {
            level.load = {recent, now};
            level.name = {fromHost ? "Opened by the host" : loadedText(*recent), -1};
        }
    history.push(std::move(level));
    outside.restart();
    recent.reset();
    keepMoment();
    followSettling();
    return true;
}

void EditRecorder::undo()
{
    if (depth > 0)
        return;
    watch();
    push(outside.finish());
    if (const UndoHistory::Level* level = history.undo())
        apply(*level, true);
}

void EditRecorder::redo()
{
    if (depth > 0)
        return;
    watch();
    push(outside.finish());
    if (const UndoHistory::Level* level = history.redo())
        apply(*level, false);
}

void EditRecorder::goTo(size_t level)
{
    if (depth > 0)
        return;
    watch();
    push(outside.finish());
    while (history.undoable() > level)
        apply(*history.undo(), true);
    while (history.undoable() < level && history.canRedo())
        apply(*history.redo(), false);
}

void EditRecorder::apply(const UndoHistory::Level& level, bool back)
{
    cells.apply(level.changes, back);
    if (level.map.before)
        engine.midiMap.replace(back ? *level.map.before : *level.map.after, true, true);
    outside.take(level.changes, back);
    if (level.load.before) {
        engine.presets.comeBackTo(back ? *level.load.before : *level.load.after);
        loads = engine.presets.loads();
        outside.restart();
    }
    engine.updateDisplay();
    engine.screen.redraw.raise();
}

} // namespace ormund
