#include "editor/EditRecorder.h"

#include "data/EditButtons.h"
#include "editor/ControlCatalogue.h"
#include "engine/KWUniClient.h"

#include <algorithm>

namespace {

// Two controls of one value.
int twinOf(int tag)
{
    switch (tag) {
    case Tag::SynthOn:
        return Tag::SynthOnTwin;
    case Tag::SynthOnTwin:
        return Tag::SynthOn;
    case Tag::LoopbarMode:
        return Tag::LoopbarModeTwin;
    case Tag::LoopbarModeTwin:
        return Tag::LoopbarMode;
    default:
        return -1;
    }
}

constexpr int kZoneCells = 2;

} // namespace

EditScope scopeOf(const ControlRow& row)
{
    switch (row.kind) {
    case ControlClass::Table:
    case ControlClass::SwitchLine:
    case ControlClass::ListLine:
    case ControlClass::Zone:
        return EditScope::Steps;
    case ControlClass::Knob:
    case ControlClass::Button:
    case ControlClass::Menu:
        break;
    default:
        return EditScope::None;
    }
    switch (row.action) {
    case Action::GlobalPreset:
    case Action::SynthPreset:
        return EditScope::Everything;
    case Action::SetParameter:
        break;
    default:
        return EditScope::None;
    }
    switch (row.tag) {
    case Tag::Play:
    case Tag::Record:
    case Tag::ModSelect:
    case Tag::ModTrackPage:
    case Tag::Page:
    case Tag::PageTwin:
    case Tag::KeyboardMode:
    case Tag::KeyboardModeTwin:
        return EditScope::None;
    case Tag::PreviousPreset:
    case Tag::NextPreset:
    case Tag::PreviousSynthPreset:
    case Tag::NextSynthPreset:
    case Tag::GlobalPaste:
        return EditScope::Everything;
    default:
        break;
    }
    if (const EditButton* edit = editButton(row.tag))
        return edit->operation == EditOperation::Copy ? EditScope::None : EditScope::Tracks;
    return EditScope::Parameter;
}

EditRecorder::EditRecorder(KWUniClient& ownEngine) : engine(ownEngine)
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
    addSection(Section::Stored, -1, kPatterns, kPatternValues);
}

void EditRecorder::addSection(Section::Kind kind, int tag, int rows, int width)
{
    const uint32_t first = cells;
    cells += uint32_t(rows * width);
    sections.push_back({kind, tag, first, cells, width});
}

void EditRecorder::findRanges(EditScope scope, int tag)
{
    ranges.clear();
    const auto inScope = [&](const Section& section) {
        switch (scope) {
        case EditScope::Parameter:
            return section.kind == Section::Parameter
                && (section.tag == tag || section.tag == twinOf(tag));
        case EditScope::Steps:
            return section.kind != Section::Parameter && section.tag == tag;
        case EditScope::Tracks:
            return section.kind == Section::Table || section.kind == Section::Line
                || section.kind == Section::Zone;
        case EditScope::Everything:
            return true;
        case EditScope::None:
            break;
        }
        return false;
    };
    for (const Section& section : sections)
        if (inScope(section))
            ranges.push_back({section.first, section.end});
}

const EditRecorder::Section& EditRecorder::sectionOf(uint32_t cell) const
{
    return *std::ranges::upper_bound(sections, cell, {}, &Section::end);
}

float EditRecorder::read(const Section& section, uint32_t cell) const
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
        return engine.patternStore.at(row, step);
    }
    return 0.0f;
}

void EditRecorder::write(const Section& section, uint32_t cell, float value)
{
    const int offset = int(cell - section.first);
    const int row = offset / section.width;
    const int step = offset % section.width;
    switch (section.kind) {
    case Section::Parameter:
        if (section.tag < kHostParameters)
            engine.setParameterAutomated(section.tag, value);
        else
            engine.setParameter(section.tag, value);
        break;
    case Section::Table:
        engine.tracks.tableAt(section.tag)->setRowValue(row, step, value);
        break;
    case Section::Line:
        engine.tracks.lineAt(section.tag)->setStepAt(row, step, value);
        break;
    case Section::Zone:
        break; // both ends at once: see apply
    case Section::Stored:
        engine.patternStore.setAt(row, step, value);
        break;
    }
}

void EditRecorder::readRanges(std::vector<float>& into) const
{
    into.clear();
    for (const Range& range : ranges)
        for (uint32_t cell = range.first; cell < range.end;) {
            const Section& section = sectionOf(cell);
            for (; cell < std::min(section.end, range.end); ++cell)
                into.push_back(read(section, cell));
        }
}

void EditRecorder::begin(EditScope scope, int tag)
{
    if (depth++ > 0)
        return;
    findRanges(scope, tag);
    readRanges(before);
}

void EditRecorder::end()
{
    if (depth == 0 || --depth > 0 || ranges.empty())
        return;
    std::vector<float> after;
    readRanges(after);
    UndoHistory::Level level;
    size_t i = 0;
    for (const Range& range : ranges)
        for (uint32_t cell = range.first; cell < range.end; ++cell, ++i)
            if (before[i] != after[i])
                level.push_back({cell, before[i], after[i]});
    history.push(std::move(level));
}

// A loop's two ends are one value, so they are written together; a value of a pattern comes after
// the parameters, whose setting writes the current pattern's.
void EditRecorder::apply(const UndoHistory::Level& level, bool back)
{
    for (size_t i = 0; i < level.size(); ++i) {
        const uint32_t cell = level[i].cell;
        const float value = back ? level[i].before : level[i].after;
        const Section& section = sectionOf(cell);
        if (section.kind != Section::Zone) {
            write(section, cell, value);
            continue;
        }
        const int row = int(cell - section.first) / kZoneCells;
        KWZoneHandlerContainer& zones = *engine.tracks.zonesAt(section.tag);
        LoopZone zone = zones.zone(row);
        const bool isStart = (cell - section.first) % kZoneCells == 0;
        (isStart ? zone.start : zone.end) = int(value);
        if (isStart && i + 1 < level.size() && level[i + 1].cell == cell + 1) {
            ++i;
            zone.end = int(back ? level[i].before : level[i].after);
        }
        zones.setZone(row, zone);
    }
    engine.screen.redraw.raise();
}

void EditRecorder::undo()
{
    if (const UndoHistory::Level* level = history.undo())
        apply(*level, true);
}

void EditRecorder::redo()
{
    if (const UndoHistory::Level* level = history.redo())
        apply(*level, false);
}
