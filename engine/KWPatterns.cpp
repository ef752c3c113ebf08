#include "engine/KWPatterns.h"

#include "data/ParameterSink.h"
#include "data/PatternStore.h"
#include "data/Tracks.h"

#include <algorithm>

namespace {
constexpr float kRestartPulse = 0.01f; // truncates to pattern 0
}

KWPatterns::KWPatterns(Tracks& allTracks, PatternStore& patternStore, ParameterSink& parameterSink)
    : tracks(allTracks), store(patternStore), sink(parameterSink)
{
}

void KWPatterns::tick(const KWClock::Out& clock, const KWKeys::Out& keys)
{
    const bool stepChanged = parity.changed(clock.stepParity);
    if (lockEdge.rose(settings.lockButton))
        lockState = (lockState + 1) % 2;
    if (playSeen.changed(clock.play))
        playFlag = clock.play;
    const bool reloaded = reloadSeen.changed(clock.reload);
    if (reloaded)
        playFlag = clock.reload;

    const int first = tracks.sequenceLoop.start(0);
    const int length = std::max(tracks.sequenceLoop.end(0) + 1 - first, 1);
    const float repeats = tracks.patternRepeats.step(values.songIndex);
    const float unitCount = (repeats + 1.0f) * settings.stepsPerUnit;
    if (stepChanged)
        stepCounter += 1.0f;
    if (stepCounter >= unitCount + 1.0f)
        stepCounter = 0;
    if (counterRestart.changed(advance + clock.play + clock.retrigger))
        stepCounter = 0;
    advance = unitCount <= stepCounter ? 1.0f : 0.0f;
    if (advance > 0)
        ++positionRun;
    if (positionRun >= length)
        positionRun = 0;
    const float restart = playFlag + clock.retrigger;
    if (positionRestart.changed(restart) && restart > 0)
        positionRun = 0;
    const int position = clock.play > 0 ? positionRun : 0;
    values.songIndex = position % length + first;

    const bool songOn = settings.songOn != 0;
    const int chosen =
        songOn ? static_cast<int>(tracks.patternNumbers.step(values.songIndex)) : keys.keyPattern;
    values.locked = lockState != 0;
    const int wanted = values.locked ? settings.lockedPattern.load() : chosen;
    if (wantedSeen.changed(wanted) || wantedForgotten)
        patternCell = static_cast<float>(wanted);
    wantedForgotten = false;

    // After a load the cell falls to the first pattern for a tick; then the wanted one is taken
    // anew, so that its stored values are replayed.
    const float pulseNow =
        pulseReload.changed(clock.reload) && clock.reload != 0 ? kRestartPulse : 0.0f;
    if (pulse.changed(pulseNow)) {
        patternCell = pulseNow;
        wantedForgotten = pulseNow == 0;
    }

    const int pattern = std::clamp(static_cast<int>(patternCell), 0, kPatterns - 1);
    if (patternSeen.changed(pattern))
        select(pattern);
    values.pattern = pattern;
}

void KWPatterns::select(int pattern)
{
    store.currentPattern = pattern;
    tracks.selectRow(pattern);
    store.replay(sink);
}
