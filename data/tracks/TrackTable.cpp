// One row a track. The file key of a track's parameter is its key in the global clipboard.
#include "data/music/KWSystemInfo.h"
#include "data/parameters/Parameters.h"
#include "data/tracks/Tracks.h"

#include <utility>

namespace ormund {

namespace {

constexpr TrackClass kXY = TrackClass::TableXY;
constexpr TrackClass kBtn = TrackClass::BtnLine;
constexpr TrackClass kList = TrackClass::ListLine;

// How the tables of a kind look and behave in their views.
constexpr uint32_t kPitchLook = kTableCells | kTableDropLines | kTableRawValues | kTableEditable
    | kTableNoBackground | kTableWatchValues | kTableConnect;
constexpr uint32_t kBarLook = kTableDropLines | kTableEditable | kTableNoBackground | kTableConnect;
constexpr uint32_t kRowLook = kTableRawValues | kTableWatchValues;
constexpr uint32_t kRunningLook = kTableLoopBar | kTableCells | kTableDropLines | kTableRawValues
    | kTableRunningStep | kTableWatchValues;
static_assert(kPitchLook == 0x1A28300 && kBarLook == 0x1220200);
static_assert(kRowLook == 0x808000 && kRunningLook == 0x848380);

constexpr TrackRow modRow(int track)
{
    return {Tag::modSteps(track), "modulation", kXY, 32, 16, 0, 1, 0, 0, 0, 1, 3, kBarLook};
}

} // namespace

// clang-format off
const std::array<TrackRow, 30> kTrackTable = {{
//   tag                  word               class  steps rows  least most default  max  threshold group family look
    {Tag::Repeat,          "pattern repeats",  kList,  8,  1,    0,  16,  0,       15,  0,        0,    -1,    0},
    {Tag::Pattern,         "pattern numbers",  kList,  8,  1,    0,  16,  0,       15,  0,        0,    -1,    0},
    {Tag::Performance,     "performance",      kList, 32, 16,    0,  17,  0,       17,  0.9f,     1,     7,    0},
    {Tag::Pitch,           "pitch",            kXY,   32, 16,  -12,  12,  0.5f,     0,  0,        1,     1,    kPitchLook},
    {Tag::PitchLock,       "pitch lock",       kBtn,  32, 16,    0,   1,  0,        1,  0,        1,     0,    0},
    {Tag::Arpeggio,        "arpeggio",         kList, 32, 16,    0,  18,  0,       18,  0.9f,     1,     6,    0},
    {Tag::VelocityOn,      "velocity on/off",  kBtn,  32, 16,    0,   1,  0,        1,  0,        1,     1,    0},
    {Tag::Velocity,        "velocity",         kXY,   32, 16,    0,   1,  0,        0,  0,        1,     3,    kBarLook},
    {Tag::GateTime,        "gate time",        kXY,   32, 16,    0,   1,  0.5f,     0,  0,        1,     3,    kBarLook},
    {Tag::Chord,           "chord",            kList, 32, 16,    0,  54,  0,       54,  0.9f,     1,     5,    0},
    {Tag::Octave,          "octave",           kList, 32, 16,    0,   4,  0,        4,  0.9f,     1,     2,    0},
    {Tag::PitchBend,       "pitch bend",       kList, 32, 16,    0,  20,  0,       20,  0.9f,     1,     4,    0},
    modRow(0), modRow(1), modRow(2), modRow(3), modRow(4), modRow(5), modRow(6), modRow(7),
    {Tag::StepChance,      "step chance",      kList, 32, 16,    0, 101,  0,      100,  0.9f,     2,     8,    0},
    {Tag::StepCondition,   "step condition",   kList, 32, 16,    0,  42,  0,       41,  0.9f,     2,     9,    0},
    {Tag::StepRatchet,     "step ratchet",     kList, 32, 16,    0,  22,  0,       21,  0.9f,     2,    10,    0},
    {Tag::StepLate,        "step late",        kList, 32, 16,    0,  16,  0,       15,  0.9f,     2,    11,    0},
    {Tag::StepStrum,       "step strum",       kList, 32, 16,    0,  25,  0,       24,  0.9f,     2,    12,    0},
    {Tag::ModDisplay,      "mod display",      kXY,   32,  1,    0, 127,  0,        0,  0,        0,    -1,    kRowLook},
    {Tag::BendDisplay,     "bend display",     kXY,   32,  1,   -1,   1,  0,        0,  0,        0,    -1,    kRowLook},
    {Tag::ScaleDisplay,    "scale display",    kXY,   32,  1,    0,  11,  0,        0,  0,        0,    -1,    kRowLook},
    {Tag::GateDisplay,     "gate display",     kXY,   32,  1,    0,  40,  0,        0,  0,        0,    -1,    kRunningLook},
    {Tag::ArpeggioDisplay, "arpeggio display", kXY,    4,  1,    0,   1,  0,        0,  0,        0,    -1,    kRowLook},
}};
// clang-format on

const TrackRow* trackRow(int tag)
{
    for (const TrackRow& row : kTrackTable)
        if (row.tag == tag)
            return &row;
    return nullptr;
}

namespace {

template <typename Item, size_t... Index>
std::array<Item, kModTracks> eightTables(KWSystemInfo& systemInfo, std::index_sequence<Index...>)
{
    return {((void)Index, Item(&systemInfo, kTrackSteps, kTrackSteps))...};
}

template <size_t... Index>
std::array<KWZoneHandlerContainer, kModTracks> eightLoops(std::index_sequence<Index...>)
{
    return {((void)Index, KWZoneHandlerContainer(kTrackSteps, kTrackRows))...};
}

constexpr auto kEight = std::make_index_sequence<kModTracks>{};

// The display rows take no part in anything that goes by tracks.
constexpr bool isDisplay(int tag)
{
    return tag == Tag::ModDisplay || tag == Tag::BendDisplay || tag == Tag::ScaleDisplay
        || tag == Tag::GateDisplay || tag == Tag::ArpeggioDisplay;
}

} // namespace

Tracks::Tracks(KWSystemInfo& systemInfo)
    : patternRepeats(&systemInfo, kSongSteps, 1)
    , patternNumbers(&systemInfo, kSongSteps, 1)
    , performance(&systemInfo, kTrackSteps, kTrackRows)
    , pitch(&systemInfo, kTrackSteps, kTrackSteps)
    , pitchLock(&systemInfo, kTrackSteps, kTrackRows)
    , arpeggio(&systemInfo, kTrackSteps, kTrackRows)
    , velocityOn(&systemInfo, kTrackSteps, kTrackRows)
    , velocity(&systemInfo, kTrackSteps, kTrackSteps)
    , gateTime(&systemInfo, kTrackSteps, kTrackSteps)
    , chord(&systemInfo, kTrackSteps, kTrackRows)
    , octave(&systemInfo, kTrackSteps, kTrackRows)
    , pitchBend(&systemInfo, kTrackSteps, kTrackRows)
    , mods(eightTables<KWTableXY>(systemInfo, kEight))
    , chance(&systemInfo, kTrackSteps, kTrackRows)
    , condition(&systemInfo, kTrackSteps, kTrackRows)
    , ratchet(&systemInfo, kTrackSteps, kTrackRows)
    , late(&systemInfo, kTrackSteps, kTrackRows)
    , strum(&systemInfo, kTrackSteps, kTrackRows)
    , modDisplay(&systemInfo, kTrackSteps, kTrackSteps)
    , bendDisplay(&systemInfo, kTrackSteps, kTrackSteps)
    , scaleDisplay(&systemInfo, kTrackSteps, kTrackSteps)
    , gateDisplay(&systemInfo, kTrackSteps, kTrackSteps)
    , arpeggioDisplay(&systemInfo, 4, 4)
    , pitchLoop(kTrackSteps, kTrackRows)
    , velocityLoop(kTrackSteps, kTrackRows)
    , gateLoop(kTrackSteps, kTrackRows)
    , performanceLoop(kTrackSteps, kTrackRows)
    , modLoops(eightLoops(kEight))
    , sequenceLoop(kSongSteps, 1)
    , owner(systemInfo)
{
    for (const TrackRow& row : kTrackTable) {
        const ParameterEntry* parameter = parameterEntry(row.tag);
        KWInitInterface& track = *trackAt(row.tag);
        track.setGroup(row.group);
        track.copyFamily = row.family;
        track.clipboardKey = parameter ? parameter->fileKey : -1;
        if (KWTableXY* table = tableAt(row.tag)) {
            table->setFlags(row.flags);
            table->setRange(row.least, row.most, row.whenCleared);
            table->setRowCount(row.rows);
        } else if (StepLine* line = lineAt(row.tag)) {
            line->range = row.most;
            line->maximum = row.maximum;
            line->clearValue = row.whenCleared;
            line->randomThreshold = row.threshold;
        }
        track.clearAll();
    }
}

std::span<KWInitInterface* const> Tracks::inOrder() const { return owner.tracks; }

void Tracks::selectRow(int pattern)
{
    for (const TrackRow& row : kTrackTable) {
        if (row.rows == 1)
            continue;
        if (KWTableXY* table = tableAt(row.tag))
            table->setRowPosition(static_cast<float>(pattern));
        else if (StepLine* line = lineAt(row.tag))
            line->setRow(pattern);
    }
    for (KWZoneHandlerContainer* loop : mainLoops())
        loop->setRow(pattern);
    for (KWZoneHandlerContainer& loop : modLoops)
        loop.setRow(pattern);
}

KWTableXY* Tracks::tableAt(int tag)
{
    switch (tag) {
    case Tag::Pitch:
        return &pitch;
    case Tag::Velocity:
        return &velocity;
    case Tag::GateTime:
        return &gateTime;
    case Tag::ModDisplay:
        return &modDisplay;
    case Tag::BendDisplay:
        return &bendDisplay;
    case Tag::ScaleDisplay:
        return &scaleDisplay;
    case Tag::GateDisplay:
        return &gateDisplay;
    case Tag::ArpeggioDisplay:
        return &arpeggioDisplay;
    default:
        break;
    }
    for (int track = 0; track < kModTracks; ++track)
        if (tag == Tag::modSteps(track))
            return &mods[static_cast<size_t>(track)];
    return nullptr;
}

KWBtnLine* Tracks::btnLineAt(int tag)
{
    switch (tag) {
    case Tag::PitchLock:
        return &pitchLock;
    case Tag::VelocityOn:
        return &velocityOn;
    default:
        return nullptr;
    }
}

KWListLine* Tracks::listLineAt(int tag)
{
    switch (tag) {
    case Tag::Repeat:
        return &patternRepeats;
    case Tag::Pattern:
        return &patternNumbers;
    case Tag::Performance:
        return &performance;
    case Tag::Arpeggio:
        return &arpeggio;
    case Tag::Chord:
        return &chord;
    case Tag::Octave:
        return &octave;
    case Tag::PitchBend:
        return &pitchBend;
    case Tag::StepChance:
        return &chance;
    case Tag::StepCondition:
        return &condition;
    case Tag::StepRatchet:
        return &ratchet;
    case Tag::StepLate:
        return &late;
    case Tag::StepStrum:
        return &strum;
    default:
        return nullptr;
    }
}

StepLine* Tracks::lineAt(int tag)
{
    if (KWBtnLine* line = btnLineAt(tag))
        return line;
    return listLineAt(tag);
}

KWZoneHandlerContainer* Tracks::zonesAt(int tag)
{
    switch (tag) {
    case Tag::PitchLoop:
        return &pitchLoop;
    case Tag::VelocityLoop:
        return &velocityLoop;
    case Tag::GateLoop:
        return &gateLoop;
    case Tag::PerformanceLoop:
        return &performanceLoop;
    case Tag::SequenceLoop:
        return &sequenceLoop;
    default:
        break;
    }
    for (int track = 0; track < kModTracks; ++track)
        if (tag == Tag::modLoop(track))
            return &modLoops[static_cast<size_t>(track)];
    return nullptr;
}

KWChunkableClass* Tracks::chunkableAt(int tag)
{
    if (KWTableXY* table = tableAt(tag))
        return table;
    if (StepLine* line = lineAt(tag))
        return line;
    return zonesAt(tag);
}

KWInitInterface* Tracks::trackAt(int tag)
{
    if (KWTableXY* table = tableAt(tag))
        return table;
    return lineAt(tag);
}

void Tracks::writeStep(int tag, int step, float value)
{
    if (isDisplay(tag))
        return;
    const float v = sanitisedRaw(value);
    if (KWTableXY* table = tableAt(tag))
        table->setNormalized(static_cast<float>(step), v);
    else if (StepLine* line = lineAt(tag))
        line->setStep(step, line->fromController(v));
}

void Tracks::clearAll()
{
    for (const TrackRow& row : kTrackTable)
        if (!isDisplay(row.tag))
            trackAt(row.tag)->clearAll();
    for (KWZoneHandlerContainer* loop : mainLoops())
        loop->clearAll();
    for (KWZoneHandlerContainer& loop : modLoops)
        loop.clearAll();
    sequenceLoop.clearAll();
}

std::array<KWZoneHandlerContainer*, 4> Tracks::mainLoops()
{
    return {&pitchLoop, &velocityLoop, &gateLoop, &performanceLoop};
}

} // namespace ormund
