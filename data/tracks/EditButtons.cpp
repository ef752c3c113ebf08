#include "data/tracks/EditButtons.h"

#include "data/tracks/EditTools.h"
#include "data/tracks/Tracks.h"

#include <algorithm>
#include <array>

namespace ormund {

namespace {

using enum EditOperation;
using enum EditTarget;

constexpr size_t kModButtons = 10 * kModTracks;

// clang-format off
constexpr std::array kTrackButtons = {
    EditButton{Tag::PitchShiftBackward,       Pitch,       0, ShiftBackward},
    EditButton{Tag::PitchShiftForward,        Pitch,       0, ShiftForward},
    EditButton{Tag::PitchShiftUp,             Pitch,       0, ShiftUp},
    EditButton{Tag::PitchShiftDown,           Pitch,       0, ShiftDown},
    EditButton{Tag::PitchCopy,                Pitch,       0, Copy},
    EditButton{Tag::PitchPaste,               Pitch,       0, Paste},
    EditButton{Tag::PitchClear,               Pitch,       0, Clear},
    EditButton{Tag::PitchRandom,              Pitch,       0, Random},
    EditButton{Tag::PitchMutate,              Pitch,       0, Mutate},
    EditButton{Tag::VelocityShiftBackward,    Velocity,    0, ShiftBackward},
    EditButton{Tag::VelocityShiftForward,     Velocity,    0, ShiftForward},
    EditButton{Tag::VelocityShiftUp,          Velocity,    0, ShiftUp},
    EditButton{Tag::VelocityShiftDown,        Velocity,    0, ShiftDown},
    EditButton{Tag::VelocityCopy,             Velocity,    0, Copy},
    EditButton{Tag::VelocityPaste,            Velocity,    0, Paste},
    EditButton{Tag::VelocityClear,            Velocity,    0, Clear},
    EditButton{Tag::VelocityRandom,           Velocity,    0, Random},
    EditButton{Tag::VelocityMutate,           Velocity,    0, Mutate},
    EditButton{Tag::GateShiftBackward,        Gate,        0, ShiftBackward},
    EditButton{Tag::GateShiftForward,         Gate,        0, ShiftForward},
    EditButton{Tag::GateShiftUp,              Gate,        0, ShiftUp},
    EditButton{Tag::GateShiftDown,            Gate,        0, ShiftDown},
    EditButton{Tag::GateCopy,                 Gate,        0, Copy},
    EditButton{Tag::GatePaste,                Gate,        0, Paste},
    EditButton{Tag::GateClear,                Gate,        0, Clear},
    EditButton{Tag::GateRandom,               Gate,        0, Random},
    EditButton{Tag::GateMutate,               Gate,        0, Mutate},
    EditButton{Tag::PerformanceShiftBackward, Performance, 0, ShiftBackward},
    EditButton{Tag::PerformanceShiftForward,  Performance, 0, ShiftForward},
    EditButton{Tag::PerformanceCopy,          Performance, 0, Copy},
    EditButton{Tag::PerformancePaste,         Performance, 0, Paste},
    EditButton{Tag::PerformanceClear,         Performance, 0, Clear},
    EditButton{Tag::PerformanceRandom,        Performance, 0, Random},
    EditButton{Tag::PerformanceMutate,        Performance, 0, Mutate},
    EditButton{Tag::ToolButton,               Pitch,       0, Tool},
    EditButton{Tag::ToolButton + 1,           Performance, 0, Tool},
    EditButton{Tag::ToolButton + 2,           Velocity,    0, Tool},
    EditButton{Tag::ToolButton + 3,           Gate,        0, Tool},
    EditButton{Tag::GlobalShiftBackward,      All,         0, ShiftBackward},
    EditButton{Tag::GlobalShiftForward,       All,         0, ShiftForward},
    EditButton{Tag::GlobalCopy,               All,         0, Copy},
    EditButton{Tag::GlobalPaste,              All,         0, Paste},
    EditButton{Tag::GlobalRandom,             All,         0, Random},
};
// clang-format on

constexpr auto kButtons = [] {
    std::array<EditButton, kModButtons + kTrackButtons.size()> buttons{};
    size_t next = 0;
    for (int track = 0; track < kModTracks; ++track) {
        buttons[next++] = {Tag::modShiftBackward(track), Mod, track, ShiftBackward};
        buttons[next++] = {Tag::modShiftForward(track), Mod, track, ShiftForward};
        buttons[next++] = {Tag::modShiftUp(track), Mod, track, ShiftUp};
        buttons[next++] = {Tag::modShiftDown(track), Mod, track, ShiftDown};
        buttons[next++] = {Tag::modCopy(track), Mod, track, Copy};
        buttons[next++] = {Tag::modPaste(track), Mod, track, Paste};
        buttons[next++] = {Tag::modClear(track), Mod, track, Clear};
        buttons[next++] = {Tag::modRandom(track), Mod, track, Random};
        buttons[next++] = {Tag::modMutate(track), Mod, track, Mutate};
        buttons[next++] = {Tag::ToolButton + 4 + track, Mod, track, Tool};
    }
    std::ranges::copy(kTrackButtons, buttons.begin() + static_cast<std::ptrdiff_t>(next));
    return buttons;
}();

constexpr auto kButtonOfTag = [] {
    std::array<int16_t, kTagCount> places{};
    places.fill(-1);
    for (size_t i = 0; i < kButtons.size(); ++i)
        places[static_cast<size_t>(kButtons[i].tag)] = static_cast<int16_t>(i);
    return places;
}();

void editTable(KWTableXY& table, EditOperation operation, int from, int to)
{
    switch (operation) {
    case ShiftBackward:
        return table.shiftBackward(from, to);
    case ShiftForward:
        return table.shiftForward(from, to);
    case ShiftUp:
        return table.shiftUp(from, to);
    case ShiftDown:
        return table.shiftDown(from, to);
    case Copy:
        return table.copyRegion(from, to);
    case Paste:
        return table.pasteRegion(from, to);
    case Clear:
        return table.clear();
    case Random:
        return table.randomize();
    case Mutate:
        return table.mutate();
    case Tool:
        return; // goes by lanes
    }
}

void editLine(StepLine& line, EditOperation operation, int from, int to)
{
    switch (operation) {
    case ShiftBackward:
        return line.shiftBackward(from, to);
    case ShiftForward:
        return line.shiftForward(from, to);
    case ShiftUp:
    case ShiftDown:
        return; // there is no more or less of a choice
    case Copy:
        return line.copyRegion(from, to);
    case Paste:
        return line.pasteRegion(from, to);
    case Clear:
        return line.clear();
    case Random:
        return line.randomize();
    case Mutate:
        return line.mutate();
    case Tool:
        return;
    }
}

// The switches beside a table stay as they are when only its values are meant.
bool movesSwitches(EditOperation operation)
{
    return operation != ShiftUp && operation != ShiftDown && operation != Random
        && operation != Mutate;
}

// The loops that the global copy takes along, one set for the whole process.
struct LoopClipboard {
    std::array<LoopZone, 4 + kModTracks> zones{};
    std::array<bool, 4 + kModTracks> valid{};
};
constinit OneWayFlag loopsInUse;
constinit LoopClipboard loopClipboard;

void copyLoop(KWZoneHandlerContainer& loop, size_t place)
{
    loopClipboard.zones[place] = loop.current();
    loopClipboard.valid[place] = true;
}

void pasteLoop(KWZoneHandlerContainer& loop, size_t place)
{
    if (loopClipboard.valid[place])
        loop.setZone(loop.row(), loopClipboard.zones[place]);
}

template <typename Transfer>
void transferLoops(std::span<KWZoneHandlerContainer* const> loops, size_t place, Transfer transfer)
{
    if (!loopsInUse.tryRaise())
        return;
    for (KWZoneHandlerContainer* loop : loops)
        transfer(*loop, place++);
    loopsInUse.lower();
}

void editAll(Tracks& tracks, EditOperation operation)
{
    const auto main = tracks.mainLoops();
    std::array<KWZoneHandlerContainer*, kModTracks> mods{};
    std::ranges::transform(tracks.modLoops, mods.begin(), [](auto& loop) { return &loop; });

    if (operation == Copy)
        transferLoops(main, 0, copyLoop);
    else if (operation == Paste)
        transferLoops(main, 0, pasteLoop);

    for (const TrackRow& row : kTrackTable) {
        KWInitInterface& track = *tracks.trackAt(row.tag);
        if (track.group == 0 || (operation == Random && track.group != 1))
            continue;
        switch (operation) {
        case ShiftBackward:
            track.shiftBackward(0, kTrackSteps);
            break;
        case ShiftForward:
            track.shiftForward(0, kTrackSteps);
            break;
        case Copy:
            track.copy(0, kTrackSteps);
            break;
        case Paste:
            track.paste(0, kTrackSteps);
            break;
        case Random:
            track.randomize();
            break;
        default:
            break;
        }
    }

    if (operation == Copy)
        transferLoops(mods, main.size(), copyLoop);
    else if (operation == Paste)
        transferLoops(mods, main.size(), pasteLoop);
}

const KWZoneHandlerContainer& loopOf(const Tracks& tracks, const EditButton& button)
{
    switch (button.target) {
    case Mod:
        return tracks.modLoops[static_cast<size_t>(button.track)];
    case Velocity:
        return tracks.velocityLoop;
    case Gate:
        return tracks.gateLoop;
    case Performance:
        return tracks.performanceLoop;
    default:
        return tracks.pitchLoop;
    }
}

} // namespace

std::span<const EditButton> editButtons() { return kButtons; }

const EditButton* editButton(int tag)
{
    if (tag < 0 || tag >= kTagCount)
        return nullptr;
    const int place = kButtonOfTag[static_cast<size_t>(tag)];
    return place < 0 ? nullptr : &kButtons[static_cast<size_t>(place)];
}

bool performEdit(int tag, Tracks& tracks)
{
    const EditButton* button = editButton(tag);
    if (!button)
        return false;
    const EditOperation operation = button->operation;
    // The step behind the loop's last one is where an operation ends.
    const auto regionOf = [](const KWZoneHandlerContainer& loop) {
        const LoopZone zone = loop.current();
        return std::pair(zone.start, zone.end + 1);
    };
    if (operation == Tool) {
        const auto [from, to] = regionOf(loopOf(tracks, *button));
        applyEditTool(tracks, button->target, button->track, from, to);
        return true;
    }
    switch (button->target) {
    case Mod: {
        const auto track = static_cast<size_t>(button->track);
        const auto [from, to] = regionOf(tracks.modLoops[track]);
        editTable(tracks.mods[track], operation, from, to);
        break;
    }
    case Pitch: {
        const auto [from, to] = regionOf(tracks.pitchLoop);
        editTable(tracks.pitch, operation, from, to);
        if (movesSwitches(operation))
            editLine(tracks.pitchLock, operation, from, to);
        break;
    }
    case Velocity: {
        const auto [from, to] = regionOf(tracks.velocityLoop);
        if (movesSwitches(operation))
            editLine(tracks.velocityOn, operation, from, to);
        editTable(tracks.velocity, operation, from, to);
        break;
    }
    case Gate: {
        const auto [from, to] = regionOf(tracks.gateLoop);
        editTable(tracks.gateTime, operation, from, to);
        break;
    }
    case Performance: {
        const auto [from, to] = regionOf(tracks.performanceLoop);
        const std::array<KWListLine*, 5> pages[] = {
            {&tracks.performance, &tracks.arpeggio, &tracks.chord, &tracks.octave,
                &tracks.pitchBend},
            {&tracks.chance, &tracks.condition, &tracks.ratchet, &tracks.late, &tracks.strum},
        };
        const bool shownAlone = operation == Random || operation == Mutate || operation == Clear;
        for (int page = 0; page < 2; ++page)
            if (!shownAlone || page == tracks.performancePage)
                for (KWListLine* line : pages[page])
                    editLine(*line, operation, from, to);
        break;
    }
    case All:
        editAll(tracks, operation);
        break;
    }
    return true;
}

} // namespace ormund
