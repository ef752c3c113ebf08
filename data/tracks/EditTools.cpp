#include "data/tracks/EditTools.h"

#include "data/tracks/EditButtons.h"
#include "data/tracks/RandomSource.h"
#include "data/tracks/Tracks.h"

#include <algorithm>
#include <array>

namespace ormund {

namespace {

constexpr float kNewHit = 0.8f;   // where Euclid puts a step that was silent
constexpr float kHumanise = 0.1f; // of the range, up and down
constexpr int kMostLate = 2;      // sixteenths of a step

struct Job {
    EditTool tool;
    int hits;
    int from;
    int count;
    float cleared;
};

using Steps = std::array<float, kTrackSteps>;

size_t at(int step) { return static_cast<size_t>(step); }

// Where the new step `i` comes from, for the tools that only move steps.
int sourceOf(EditTool tool, int i, int count)
{
    switch (tool) {
    case EditTool::Reverse:
        return count - 1 - i;
    case EditTool::Mirror:
        return std::min(i, count - 1 - i);
    case EditTool::Double:
        return i / 2;
    case EditTool::Half:
        return i * 2 % count;
    default:
        return i;
    }
}

template <typename Get, typename Set>
void apply(const Job& job, const Get& get, const Set& set)
{
    Steps old{};
    for (int i = 0; i < job.count; ++i)
        old[at(i)] = get(job.from + i);
    int held = 0; // steps that hold something
    for (int i = 0; i < job.count; ++i) {
        float value = old[at(sourceOf(job.tool, i, job.count))];
        if (job.tool == EditTool::Thin && value != job.cleared && held++ % 2 == 1)
            value = job.cleared;
        if (job.tool == EditTool::Euclid && !euclidHit(i, job.hits, job.count))
            value = job.cleared;
        if (value != old[at(i)])
            set(job.from + i, value);
    }
}

// Velocities and the tracks: a bar that is not there is a rest.
void applyToBars(const Job& job, KWTableXY& table)
{
    const auto get = [&](int i) { return table.step(i); };
    const auto set = [&](int i, float value) { table.setValue(i, value); };
    if (job.tool == EditTool::Euclid)
        for (int i = 0; i < job.count; ++i)
            if (euclidHit(i, job.hits, job.count) && !(get(job.from + i) > 0))
                set(job.from + i, kNewHit);
    apply(job, get, set);
}

void humanise(const Job& job, KWTableXY& table)
{
    RandomDraws random;
    if (!random)
        return;
    const float range = table.maxValue() - table.minValue();
    for (int i = job.from; i < job.from + job.count; ++i)
        if (const float value = table.step(i); value > table.minValue())
            table.setValue(i,
                std::clamp(value + (2 * random.unit() - 1) * kHumanise * range,
                    table.minValue() + 0.01f * range, table.maxValue()));
}

void applyToLine(const Job& job, StepLine& line)
{
    if (job.tool != EditTool::Humanise)
        apply(
            {job.tool, job.hits, job.from, job.count, line.clearValue},
            [&](int i) { return line.step(i); },
            [&](int i, float value) { line.setStep(i, value); });
}

void applyToTable(const Job& job, KWTableXY& table)
{
    if (job.tool == EditTool::Humanise)
        humanise(job, table);
    else
        apply(
            job, [&](int i) { return table.step(i); },
            [&](int i, float value) { table.setValue(i, value); });
}

void applyToPerformance(const Job& job, Tracks& tracks)
{
    const bool rules = tracks.performancePage != 0;
    if (job.tool == EditTool::Humanise) {
        RandomDraws random;
        for (int i = job.from; random && rules && i < job.from + job.count; ++i)
            tracks.late.setStep(i,
                static_cast<float>(
                    static_cast<int>(random.unit() * (static_cast<float>(kMostLate) + 0.99f))));
        return;
    }
    if (rules)
        for (KWListLine* line :
            {&tracks.chance, &tracks.condition, &tracks.ratchet, &tracks.late, &tracks.strum})
            applyToLine(job, *line);
    else
        for (KWListLine* line : {&tracks.performance, &tracks.arpeggio, &tracks.chord,
                 &tracks.octave, &tracks.pitchBend})
            applyToLine(job, *line);
}

} // namespace

void applyEditTool(Tracks& tracks, EditTarget target, int track, int from, int to)
{
    const int first = std::clamp(from, 0, kTrackSteps - 1);
    const int count = std::clamp(to - first, 1, kTrackSteps - first);
    const Job job{static_cast<EditTool>(tracks.editTool.load()),
        std::min<int>(tracks.toolHits, count), first, count, 0};
    const auto with = [&](float cleared) {
        Job own = job;
        own.cleared = cleared;
        return own;
    };
    const bool moves = job.tool != EditTool::Euclid && job.tool != EditTool::Thin
        && job.tool != EditTool::Humanise;
    switch (target) {
    case EditTarget::Mod: {
        KWTableXY& table = tracks.mods[at(track)];
        if (job.tool == EditTool::Humanise)
            humanise(job, table);
        else
            applyToBars(job, table);
        break;
    }
    case EditTarget::Velocity:
        if (job.tool == EditTool::Humanise)
            humanise(job, tracks.velocity);
        else
            applyToBars(job, tracks.velocity);
        if (moves)
            applyToLine(job, tracks.velocityOn);
        else if (job.tool == EditTool::Euclid)
            for (int i = 0; i < count; ++i)
                if (euclidHit(i, job.hits, count))
                    tracks.velocityOn.setStep(first + i, 1);
        break;
    case EditTarget::Pitch:
        if (job.tool == EditTool::Humanise)
            break; // a wrong note is not human
        applyToTable(with(trackRow(Tag::Pitch)->whenCleared), tracks.pitch);
        if (moves)
            applyToLine(job, tracks.pitchLock);
        break;
    case EditTarget::Gate:
        applyToTable(with(trackRow(Tag::GateTime)->whenCleared), tracks.gateTime);
        break;
    case EditTarget::Performance:
        applyToPerformance(job, tracks);
        break;
    case EditTarget::All:
        break;
    }
}

} // namespace ormund
