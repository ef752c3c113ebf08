#include "engine/KWPatterns.h"

#include "data/parameters/ChoiceLists.h"
#include "data/parameters/ParameterSink.h"
#include "data/tracks/PatternStore.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {
constexpr float kRestartPulse = 0.01f; // truncates to pattern 0
}

KWPatterns::KWPatterns(Tracks& allTracks, PatternStore& patternStore, ParameterSink& parameterSink)
    : tracks(allTracks), store(patternStore), sink(parameterSink)
{
}

// The place is asked of the clock rather than remembered: ticks may be left out before it.
bool KWPatterns::isLaunchPlace(
    const KWClock::Out& clock, const KWClock::Phase& phase, int64_t mainRound)
{
    constexpr double kSlack = 1e-9; // rounding must never decide
    constexpr double kBeatsPerBar = 4;
    const bool stepped = cells.launchStep.changed(clock.masterStep);
    const bool looped = cells.launchRound.changed(mainRound);
    const auto passed = [&](double beats) {
        const double before = phase.beats - clock.stepsPerTick / phase.stepsPerBeat;
        return std::floor((phase.beats + kSlack) / beats) != std::floor((before + kSlack) / beats);
    };
    if (clock.play == 0)
        return true;
    switch (static_cast<Launch>(settings.launch.load())) {
    case Launch::Now:
        break;
    case Launch::Step:
        return stepped;
    case Launch::Beat:
        return passed(1);
    case Launch::Bar:
        return passed(kBeatsPerBar);
    case Launch::Loop:
        return looped;
    }
    return true;
}

void KWPatterns::tick(const KWClock::Out& clock, const KWClock::Phase& phase,
    const KWKeys::Out& keys, int64_t mainRound)
{
    const Cells before = cells;
    const Out valuesBefore = values;
    const bool stepChanged = cells.parity.changed(clock.stepParity);
    if (cells.lockEdge.rose(settings.lockButton))
        cells.lockState = (cells.lockState + 1) % 2;
    if (cells.playSeen.changed(clock.play))
        cells.playFlag = clock.play;
    const bool reloaded = cells.reloadSeen.changed(clock.reload);
    if (reloaded)
        cells.playFlag = clock.reload;

    loopSeen = tracks.sequenceLoop.generation();
    const LoopZone loop = tracks.sequenceLoop.zone(0);
    const int first = loop.start;
    const int length = std::max(loop.end + 1 - first, 1);
    const float repeats = tracks.patternRepeats.step(values.songIndex);
    const float unitCount = (repeats + 1.0f) * settings.stepsPerUnit;
    if (stepChanged)
        cells.stepCounter += 1.0f;
    if (cells.stepCounter >= unitCount + 1.0f)
        cells.stepCounter = 0;
    if (cells.counterRestart.changed(cells.advance + clock.play + clock.retrigger))
        cells.stepCounter = 0;
    cells.advance = unitCount <= cells.stepCounter ? 1.0f : 0.0f;
    if (cells.advance > 0)
        ++cells.positionRun;
    if (cells.positionRun >= length)
        cells.positionRun = 0;
    const float restart = cells.playFlag + clock.retrigger;
    if (cells.positionRestart.changed(restart) && restart > 0)
        cells.positionRun = 0;
    const int position = clock.play > 0 ? cells.positionRun : 0;
    values.songIndex = position % length + first;

    const bool songOn = settings.songOn != 0;
    const int chosen =
        songOn ? static_cast<int>(tracks.patternNumbers.step(values.songIndex)) : keys.keyPattern;
    values.locked = cells.lockState != 0;
    const int wanted = values.locked ? settings.lockedPattern.load() : chosen;
    const bool launched = isLaunchPlace(clock, phase, mainRound);
    if (cells.wantedSeen.changed(wanted))
        cells.waits = true;
    if ((cells.waits && launched) || cells.wantedForgotten) {
        cells.patternCell = static_cast<float>(wanted);
        cells.waits = false;
    }
    cells.wantedForgotten = false;

    // After a load the cell falls to the first pattern for a tick; then the wanted one is taken
    // again, so that its stored values are replayed.
    const float pulseNow =
        cells.pulseReload.changed(clock.reload) && clock.reload != 0 ? kRestartPulse : 0.0f;
    if (cells.pulse.changed(pulseNow)) {
        cells.patternCell = pulseNow;
        cells.wantedForgotten = pulseNow == 0;
    }

    const int pattern = std::clamp(static_cast<int>(cells.patternCell), 0, kPatterns - 1);
    if (cells.patternSeen.changed(pattern))
        select(pattern);
    values.pattern = pattern;
    values.waiting = cells.waits && wanted != pattern ? wanted : -1;
    isSettled = !cells.waits && cells == before && values == valuesBefore;
}

void KWPatterns::select(int pattern)
{
    store.currentPattern = pattern;
    tracks.selectRow(pattern);
    store.replay(sink);
}

} // namespace ormund
