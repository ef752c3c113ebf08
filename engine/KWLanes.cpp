#include "engine/KWLanes.h"

#include "data/tracks/Tracks.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ormund {

namespace {
constexpr unsigned kSteps = 32;
constexpr double kSlack = 1e-9; // rounding must never decide a step

const LaneSpeed& speedAt(int places)
{
    return kLaneSpeedTable[static_cast<size_t>(kPlainLaneSpeed + places)];
}

double laneSteps(const LaneSpeed& speed, const KWClock::Out& clock, const KWClock::Phase& phase)
{
    return (static_cast<double>(clock.masterStep) + phase.stepPart) * speed.steps / speed.in;
}

float stepLength(int places)
{
    const LaneSpeed& row = speedAt(places);
    return static_cast<float>(row.in) / static_cast<float>(row.steps);
}
} // namespace

Lane::Lane(const KWZoneHandlerContainer& zone, int seed) : loop(zone), random(seed) { readLoop(0); }

void Lane::readLoop(int row)
{
    const auto first = static_cast<unsigned>(std::clamp<int>(loop.start(row), 0, kSteps - 1));
    const auto last = static_cast<unsigned>(std::clamp<int>(loop.end(row), 0, kSteps - 1));
    start = first;
    length = last >= first ? last + 1 - first : 1;
    loopRead = true;
}

// A pass ends where the loop begins again, and where the count jumps back: in a loop of the host's
// that is as long as ours, too. What comes before the song's start is no pass.
void Lane::countPass(int32_t next)
{
    const auto size = static_cast<int32_t>(length);
    const auto round = [size](int32_t count) { return count < 0 ? -1 : count / size; };
    if (restarts || (steps < 0 && next >= 0))
        passes = 0;
    else if (next < steps || round(next) != round(steps))
        passes = passes == INT32_MAX ? 0 : passes + 1;
    restarts = false;
    steps = next;
}

int Lane::position(int64_t steps64, PlaybackMode mode)
{
    // Before the song's start the count is below zero.
    const auto count = static_cast<unsigned>(steps64);
    const bool countMoved = countSeen.changed(count);
    if (countMoved || restarts)
        countPass(static_cast<int32_t>(count));
    if (!modeSeen.changed(mode) && !countMoved && !loopRead)
        return place;
    loopRead = false;
    const unsigned p = count % length;
    if (step.changed(p))
        drawn = random.nextMagnitude();
    unsigned walked = p;
    switch (mode) {
    case PlaybackMode::Forward:
        break;
    case PlaybackMode::Backward:
        walked = length - 1 - p;
        break;
    case PlaybackMode::Random:
        walked = static_cast<unsigned>(drawn * static_cast<float>(length));
        break;
    case PlaybackMode::EachSecond:
        walked = p * 2;
        break;
    case PlaybackMode::EachThird:
        walked = p * 3;
        break;
    case PlaybackMode::EachFourth:
        walked = p * 4;
        break;
    }
    place = static_cast<int>(walked % length + start);
    return place;
}

KWLanes::KWLanes(const Tracks& tracks)
    : lanes{{
        {tracks.pitchLoop, 1043},
        {tracks.performanceLoop, 20771},
        {tracks.velocityLoop, 303577},
        {tracks.gateLoop, 4045337},
        {tracks.modLoops[0], 50559},
        {tracks.modLoops[1], 607121},
        {tracks.modLoops[2], 7081903},
        {tracks.modLoops[3], 80917},
        {tracks.modLoops[4], 910153},
        {tracks.modLoops[5], 1011341},
        {tracks.modLoops[6], 11122313},
        {tracks.modLoops[7], 121331},
    }}
{
}

void KWLanes::tick(const KWClock::Out& clock, const KWClock::Phase& phase, int pattern)
{
    const bool stepped = stepChange.changed(clock.stepChange) && clock.stepChange > 0;
    const bool started = play.changed(clock.play);
    const bool reloaded = reload.changed(clock.reload);
    if (reloaded || stepped || started)
        for (Lane& lane : lanes)
            lane.readLoop(pattern);
    if (row.changed(pattern) || started || reloaded)
        for (Lane& lane : lanes)
            lane.restart();

    const bool separate = settings.separateLoops != 0;
    ownSpeeds = false;
    stepsPerBeat = phase.stepsPerBeat;
    idleFrom = phase.songStep;
    idleUntil = std::numeric_limits<double>::max();
    const auto walk = [&](int index) {
        const auto i = static_cast<size_t>(index);
        const int speed = settings.speed[i];
        return lanes[i].position(
            speed == 0 ? static_cast<int64_t>(clock.masterStep) : countOf(speed, clock, phase),
            static_cast<PlaybackMode>(settings.mode[i].load()));
    };
    const int mainPosition = walk(Main);
    const auto positionOf = [&](int index) {
        const int own = walk(index);
        return separate ? own : mainPosition;
    };
    const auto followed = [&](int index) { return separate ? index : int{Main}; };
    values.main = mainPosition;
    values.performance = positionOf(Performance);
    const Lane& follows = lanes[separate ? Performance : Main];
    values.performanceCount = follows.count();
    values.performancePass = follows.pass();
    values.velocity = positionOf(Velocity);
    values.gate = positionOf(Gate);
    values.gateStepLength = stepLength(settings.speed[static_cast<size_t>(followed(Gate))]);
    for (int mod = 0; mod < kModLanes; ++mod) {
        const auto k = static_cast<size_t>(mod);
        const auto lane = static_cast<size_t>(followed(FirstMod + mod));
        values.mods[k] = positionOf(FirstMod + mod);
        values.modCount[k] = lanes[lane].count();
        values.modStepLength[k] = stepLength(settings.speed[lane]);
    }
    if (ownSpeeds && !phase.followsSong)
        idleUntil = idleFrom;
}

int64_t KWLanes::mainRound(const KWClock::Out& clock, const KWClock::Phase& phase) const
{
    const double steps = laneSteps(speedAt(settings.speed[Main]), clock, phase);
    return static_cast<int64_t>(std::floor(std::floor(steps + kSlack) / lanes[Main].loopLength()));
}

// The clock's whole steps and the part of the one that runs, at the speed of a lane. From the
// count itself rather than by adding up, so that a lane is in phase wherever play begins.
int64_t KWLanes::countOf(int index, const KWClock::Out& clock, const KWClock::Phase& phase)
{
    ownSpeeds = true;
    const LaneSpeed& speed = speedAt(index);
    const double steps = laneSteps(speed, clock, phase);
    const double count = std::floor(steps + kSlack);
    idleUntil =
        std::min(idleUntil, idleFrom + std::max(count + 1.0 - steps, 0.0) * speed.in / speed.steps);
    return static_cast<int64_t>(count);
}

} // namespace ormund
