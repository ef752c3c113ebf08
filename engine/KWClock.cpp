#include "engine/KWClock.h"

#include "data/parameters/ParameterSink.h"
#include "data/parameters/Tags.h"

namespace ormund {

KWClock::KWClock(
    KWSystemInfo& timeBase, ParameterSink& parameterSink, const Crossing<float>& reloads)
    : info(timeBase), sink(parameterSink), reloadCounter(reloads)
{
    sampleRateChanged();
}

void KWClock::deriveSpeed()
{
    const double rate = static_cast<double>(info.sampleRate);
    const double samplesPerStep = static_cast<double>(info.samplesPerBeat)
        / static_cast<double>(settings.stepsPerBeat.load());
    const double stepsPerSecond = rate / samplesPerStep;
    stepsPerTick = stepsPerSecond * (static_cast<double>(KWSystemInfo::controlPeriod) / rate);
    msPerStep = static_cast<float>(samplesPerStep / (0.001 * rate));
    swingDelayTicks = settings.swingShape * msPerStep * info.samplesPerMillisecond
        / (2.0f * KWSystemInfo::controlPeriod);
}

void KWClock::sampleRateChanged()
{
    ring.setRateRatio(info.rateRatio);
    deriveSpeed();
}

float KWClock::playWanted(float gate)
{
    // 0.95 and 0.9 differ so that switching the mode while running counts as a change.
    if (gateEdge.rose(gate))
        toggleState = (toggleState + 1) % 2;
    switch (settings.triggerMode) {
    case 0:
        return gate * 0.95f;
    case 1:
        return static_cast<float>(toggleState);
    default:
        return info.hostRunning * 0.9f;
    }
}

void KWClock::readSpeed()
{
    values.stepsPerTick = stepsPerTick;
    values.msPerStep = msPerStep;
    values.samplesPerMs = info.samplesPerMillisecond;
    values.ticksPerBeat = info.ticksPerBeat;
}

void KWClock::tick(const KWSystemInfo&, const KWKeys::Out& keys)
{
    values.reload = reloadCounter;
    const float wanted = playWanted(keys.gate);
    if (playSent.changed(wanted))
        sink.setParameter(Tag::Play, wanted);
    values.play = static_cast<float>(settings.play);

    readSpeed();

    ownClock = nextOwnClock();
    const float start = wanted + values.reload + values.play;
    if (startSeen.changed(start) && start > 0)
        ownClock = 0;

    const StepSpeed speed{
        values.stepsPerTick, settings.swingAmount, static_cast<int>(swingDelayTicks.load())};
    ownClockRuns = info.hostRunning > 0 && settings.triggerMode == 1;
    raw = ownClockRuns ? stepOf(ownClock) : hostStep();
    values.retrigger = static_cast<float>(settings.retrigger);
    // Letting go between two steps would play a step that nobody wrote.
    if (padStep.changed(raw) || settings.padsOnStep == 0 || values.play == 0) {
        halfOn = settings.halfSpeed != 0;
        manualOn = settings.manualStep != 0;
    }
    values.manualStep = manualOn;

    float count = mainSwing.tick(raw, speed.swingAmount, speed.swingDelay);
    count = half.tick(count, halfOn);
    count = retriggerLink.tick(count, settings.retrigger != 0, speed);
    count = slowdownLink.tick(count, settings.slowdown != 0, settings.slowdownCurve, speed);
    count = manual.tick(count, values.manualStep, keys.keyStep, keys.stepKeyHeld, keys.restart);
    const int parityCount = static_cast<int>(values.manualStep ? manual.manualCount() : raw);
    values.stepParity = static_cast<float>(parityCount % 2);
    count = looperLink.tick(count, settings.looper != 0, settings.looperSteps, speed);
    ring.advance();
    isSteady = !retriggerLink.isActive() && !slowdownLink.isActive() && !looperLink.isActive();

    values.masterStep = count * values.play;
    values.stepChange = keys.keyStep + values.masterStep;
    followPart(count);
}

// An effect on time gives whole steps only, so the part of such a step is counted from its start.
void KWClock::followPart(float count)
{
    constexpr double kBelow = 1.0 - 1e-9;
    place.stepsPerBeat = static_cast<double>(settings.stepsPerBeat);
    place.songStep = place.stepsPerBeat * info.placeRead();
    place.beats = ownClockRuns ? ownClock / place.stepsPerBeat : info.placeRead();
    const bool counted = partCount.changed(count);
    if (values.play == 0 || values.manualStep) {
        place.stepPart = 0;
        place.followsSong = true;
        return;
    }
    const bool plain = count == raw;
    place.followsSong = plain && !ownClockRuns;
    const double pace = halfOn ? 0.5 : 1.0;
    if (plain) {
        const double steps = ownClockRuns ? ownClock : place.songStep;
        place.stepPart = std::clamp(steps - static_cast<double>(raw), 0.0, kBelow);
    } else if (counted) {
        place.stepPart = 0;
    } else {
        place.stepPart = std::min(place.stepPart + values.stepsPerTick * pace, kBelow * pace);
    }
}

int KWClock::idleTicks(int most) const
{
    if (!isSteady)
        return 0;
    int held = mainSwing.unchangedTicks(most);
    if (ownClockRuns && values.play > 0) {
        // A tick short, so that rounding cannot decide.
        const double steps = static_cast<double>(raw) + 1.0 - ownClock;
        held = std::clamp(static_cast<int>(steps / values.stepsPerTick) - 1, 0, held);
    }
    return held;
}

void KWClock::skipTicks(int ticks, double /*position*/)
{
    for (int i = 0; i < ticks; ++i)
        ownClock = nextOwnClock();
    ring.repeat(ticks, [&] { return looperLink.skipTick(values.stepsPerTick); });
}

} // namespace ormund
