#include "editor/EditCells.h"

#include "host/plugin/KWUniClient.h"

#include <algorithm>

namespace ormund {

namespace {

constexpr int kZoneCells = 2;

// A value that choosing a pattern sets.
bool isReplayed(int tag)
{
    const int slot = patternSlot(tag);
    return slot >= 0 && patternParameterTags()[size_t(slot)] == tag;
}

// A gesture of its own to the host, where the parameter is the host's too.
void setAsGesture(KWUniClient& engine, int tag, float value)
{
    if (tag >= kHostParameters) {
        engine.setParameter(tag, value);
        return;
    }
    engine.beginEdit(tag);
    engine.setParameterAutomated(tag, value);
    engine.endEdit(tag);
}

} // namespace

EditCells::EditCells(KWUniClient& ownEngine) : engine(ownEngine)
{
    for (const ParameterEntry& entry : allParameters())
        if (entry.hasValue() && !isAction(entry.tag))
            addSection(Section::Parameter, entry.tag, 1, 1);
    for (const TrackRow& track : kTrackTable)
        if (track.trackClass != TrackClass::TableXY || (track.flags & kTableEditable))
            addSection(track.trackClass == TrackClass::TableXY ? Section::Table : Section::Line,
                track.tag, track.rows, track.steps);
    for (const ParameterEntry& entry : allParameters())
        if (KWZoneHandlerContainer* zones = engine.tracks.zonesAt(entry.tag))
            addSection(Section::Zone, entry.tag, zones->handlers(), kZoneCells);
    // Last, so that they are set when all else is: setting a parameter stores it as well.
    for (int position = 0; position < kPatternValues; ++position)
        addSection(Section::Stored, position, kPatterns, 1);
}

void EditCells::addSection(Section::Kind kind, int tag, int rows, int width)
{
    const uint32_t first = cells;
    cells += uint32_t(rows * width);
    sections.push_back({kind, tag, first, cells, width});
}

const EditCells::Section& EditCells::sectionOf(uint32_t cell) const
{
    return *std::ranges::upper_bound(sections, cell, {}, &Section::end);
}

std::vector<int> EditCells::stepTags(std::span<const Change> changes) const
{
    std::vector<int> tags;
    for (const Change& change : changes)
        if (const Section& section = sectionOf(change.cell); section.kind == Section::Table
            || section.kind == Section::Line || section.kind == Section::Zone)
            tags.push_back(section.tag);
    return tags;
}

std::vector<EditCells::Range> EditCells::rangesOf(EditScope scope, int tag) const
{
    const auto holds = [](const Section& section, int wanted) {
        return section.kind == Section::Parameter
            ? firstControlOf(section.tag) == firstControlOf(wanted)
            : section.kind == Section::Stored && section.tag == patternSlot(wanted);
    };
    const auto inScope = [&](const Section& section) {
        switch (scope) {
        case EditScope::Parameter:
            return holds(section, tag);
        case EditScope::Looper:
            return holds(section, Tag::Looper) || holds(section, Tag::LooperSteps);
        case EditScope::Steps:
            return section.tag == tag
                && (section.kind == Section::Table || section.kind == Section::Line
                    || section.kind == Section::Zone);
        case EditScope::Tracks:
            return section.kind != Section::Parameter && section.kind != Section::Stored;
        case EditScope::Song:
            return true;
        default:
            return false;
        }
    };
    std::vector<Range> ranges;
    for (const Section& section : sections)
        if (inScope(section))
            ranges.push_back({section.first, section.end});
    return ranges;
}

float EditCells::valueOf(const Section& section, uint32_t cell) const
{
    const int offset = int(cell - section.first);
    const int row = offset / section.width;
    const int step = offset % section.width;
    switch (section.kind) {
    case Section::Parameter:
        return engine.parameters.raw(section.tag);
    case Section::Table:
        return engine.tracks.tableAt(section.tag)->getRowAtIndex(row, step);
    case Section::Line:
        return engine.tracks.lineAt(section.tag)->stepAt(row, step);
    case Section::Zone: {
        const LoopZone zone = engine.tracks.zonesAt(section.tag)->zone(row);
        return float(step == 0 ? zone.start : zone.end);
    }
    case Section::Stored:
        return engine.patternStore.at(row, section.tag);
    }
    return 0.0f;
}

std::vector<float> EditCells::read(std::span<const Range> ranges) const
{
    std::vector<float> values;
    for (const Range& range : ranges)
        for (uint32_t cell = range.first; cell < range.end;) {
            const Section& section = sectionOf(cell);
            for (; cell < std::min(section.end, range.end); ++cell)
                values.push_back(valueOf(section, cell));
        }
    return values;
}

EditCells::Changes EditCells::changesSince(
    std::span<const Range> ranges, std::span<const float> before) const
{
    const std::vector<float> after = read(ranges);
    Changes changes;
    size_t i = 0;
    for (const Range& range : ranges)
        for (uint32_t cell = range.first; cell < range.end; ++cell, ++i)
            if (before[i] != after[i])
                changes.push_back({cell, before[i], after[i]});
    return changes;
}

void EditCells::apply(std::span<const Change> changes, bool back)
{
    const auto wanted = [back](
                            const Change& change) { return back ? change.before : change.after; };
    for (size_t i = 0; i < changes.size(); ++i) {
        const uint32_t cell = changes[i].cell;
        const Section& section = sectionOf(cell);
        if (section.kind != Section::Zone) {
            write(section, cell, wanted(changes[i]));
            continue;
        }
        // A loop's two ends are one value, so they are written together.
        const int row = int(cell - section.first) / kZoneCells;
        KWZoneHandlerContainer& zones = *engine.tracks.zonesAt(section.tag);
        LoopZone zone = zones.zone(row);
        const bool isStart = (cell - section.first) % kZoneCells == 0;
        (isStart ? zone.start : zone.end) = int(wanted(changes[i]));
        if (isStart && i + 1 < changes.size() && changes[i + 1].cell == cell + 1)
            zone.end = int(wanted(changes[++i]));
        zones.setZone(row, zone);
    }
}

void EditCells::write(const Section& section, uint32_t cell, float value)
{
    const int row = int(cell - section.first) / section.width;
    const int step = int(cell - section.first) % section.width;
    switch (section.kind) {
    case Section::Parameter:
        if (!isReplayed(section.tag)) // else it follows its pattern's stored value
            setParameter(section.tag, value);
        break;
    case Section::Table:
        engine.tracks.tableAt(section.tag)->setRowValue(row, step, value);
        break;
    case Section::Line:
        engine.tracks.lineAt(section.tag)->setStepAt(row, step, value);
        break;
    case Section::Stored:
        setStored(row, section.tag, value);
        break;
    case Section::Zone: // both ends at once: see apply
        break;
    }
}

// The current pattern may be another one than at the time of the edit: what it stores stays.
void EditCells::setParameter(int tag, float value)
{
    const int pattern = engine.patternStore.currentPattern;
    const float stored = engine.patternStore.at(pattern, patternSlot(tag));
    setAsGesture(engine, tag, value);
    engine.patternStore.setAt(pattern, patternSlot(tag), stored);
}

// What the current pattern stores is heard at once.
void EditCells::setStored(int pattern, int place, float value)
{
    engine.patternStore.setAt(pattern, place, value);
    const int tag = patternParameterTags()[size_t(place)];
    if (pattern == engine.patternStore.currentPattern && patternSlot(tag) == place
        && engine.parameters.raw(tag) != value)
        setAsGesture(engine, tag, value);
}

} // namespace ormund
