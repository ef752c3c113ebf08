#include "engine/Sequencer.h"

#include "data/parameters/Tags.h"
#include "data/tracks/FactoryContent.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <pthread.h>
#include <thread>

namespace ormund {

namespace {
// A block that does not end in this time is not waited for any longer.
constexpr int kMostWaits = 500;
// To count up to so many ticks later takes a part of what a step takes.
constexpr int kMostIdleTicks = 64;
// Hours: what a host means by more is no place in a block.
constexpr int kLastFrame = 1 << 28;

// Two instances that are left to chance shall not play alike.
float freshSeed()
{
    static std::atomic<uint32_t> instances = 0;
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    const uint32_t mixed =
        (static_cast<uint32_t>(now) + 0x9E3779B9u * instances.fetch_add(1)) * 2654435769u;
    return static_cast<float>(mixed >> 8) * 0x1p-24f;
}

void clear(float* channel, int frames)
{
    if (channel && frames > 0)
        std::fill_n(channel, frames, 0.0f);
}
} // namespace

Sequencer::Sequencer(const AudioLoops& loops)
    : tracks(info)
    , transport(info)
    , keys(info, keyState, tracks.pitch, *this, inputQueue, schedule)
    , clock(info, *this, reloadCounter)
    , patterns(tracks, patternStore, *this)
    , lanes(tracks)
    , chance(tracks)
    , performance(tracks)
    , notes(tracks)
    , strikes(tracks)
    , bend(tracks)
    , mods(tracks, *this)
    , drums(tracks, mods.settings)
    , synth(info, loops)
{
    applyDefaults();
    setParameter(Tag::ChanceSeed, freshSeed());
    writeFactoryContent(tracks, patternStore);
    patternStore.replay(*this);
}

// --- loads, and what else stops the blocks ------------------------------------------------------

void Sequencer::StateLink::stopBlocks(bool wait)
{
    sequencer.loadBypass.raise();
    if (wait)
        sequencer.waitForBlock();
}

void Sequencer::StateLink::resumeBlocks() { sequencer.loadBypass.lower(); }

void Sequencer::StateLink::stateLoaded(PresetKind kind)
{
    // Another sound is no other song: what plays keeps its place.
    if (kind == PresetKind::Global) {
        sequencer.tracks.selectRow(sequencer.patternStore.currentPattern);
        sequencer.countReload();
    }
    sequencer.screen.redraw.raise();
    sequencer.screen.presetNamesChanged.raise();
}

void Sequencer::countReload()
{
    reloadCounter = reloadCounter + 1.0f;
    info.changes.count();
}

void Sequencer::setLockButton(bool down)
{
    patterns.settings.lockButton = down ? 1.0f : 0.0f;
    info.changes.count();
}

bool Sequencer::isInBlock() const
{
    return inBlock.isRaised() && blockThread == static_cast<uintptr_t>(pthread_self());
}

void Sequencer::waitForBlock() const
{
    // A host that loads from inside its own block would wait for itself.
    for (int i = 0; inBlock.isRaised() && !isInBlock() && i < kMostWaits; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

bool Sequencer::setSampleRate(float rate)
{
    if (!KWSystemInfo::isUsableRate(rate))
        return false;
    // A host ought to stop first; with one that does not, a block would read a buffer that moves.
    const BlocksStopped stopped(stateLink, true);
    catchUp();
    info.setSampleRate(rate);
    clock.sampleRateChanged();
    synth.sampleRateChanged();
    reapplyParameters();
    return true;
}

// --- the block ----------------------------------------------------------------------------------

void Sequencer::dropOutdatedEvents()
{
    if (!eventsOutdated.isRaised())
        return;
    eventsOutdated.lower();
    // Never the schedule: what has been started must end.
    inputQueue.clear();
    outgoing.clear();
}

void Sequencer::queue(std::span<const MidiEvent> events) noexcept ORMUND_NONBLOCKING
{
    dropOutdatedEvents();
    const int untilTick = kTickSamples - info.controlCounter;
    for (const MidiEvent& event : events)
        if (const auto internal = internalEvent(event.bytes))
            inputQueue.insert(*internal, std::clamp(event.frame, 0, kLastFrame) - untilTick);
}

std::span<const MidiEvent> Sequencer::process(const BlockTransport* block,
    std::span<const MidiEvent> in, float* left, float* right,
    int frames) noexcept ORMUND_NONBLOCKING
{
    // Raised first, looked at after: a loader does it the other way round, so one of the two sees
    // the other.
    const FlagScope blockRuns(inBlock);
    outgoing.clear();
    clear(left, frames);
    clear(right, frames);
    if (loadBypass.isRaised())
        return {};
    blockThread = static_cast<uintptr_t>(pthread_self());
    dropOutdatedEvents();
    queue(in);
    if (transport.evaluate(block, frames) || transport.blockTempo() != info.tempo)
        idleLeft = 0;
    playRuns(left, right, frames);
    return outgoing.events();
}

void Sequencer::playRuns(float* left, float* right, int frames)
{
    for (int i = 0; i < frames;) {
        if (info.controlCounter == kTickSamples) {
            info.controlCounter = 0;
            if (mayIdle())
                idleTick();
            else
                tick(i);
        }
        const int run = std::min(kTickSamples - info.controlCounter, frames - i);
        renderRun(left, right, i, run);
        if (transport.advance(run))
            idleLeft = 0;
        info.controlCounter += run;
        i += run;
    }
}

void Sequencer::tick(int frame)
{
    catchUp();
    takeEvents();
    followTempo();
    outgoing.eventDelta = frame;

    keys.tick(info);
    clock.tick(info, keys.out());
    patterns.tick(
        clock.out(), clock.phase(), keys.out(), lanes.mainRound(clock.out(), clock.phase()));
    clock.readSpeed();
    lanes.tick(clock.out(), clock.phase(), patterns.out().pattern);
    keys.record(lanes.out().main);
    chance.tick(clock.out(), lanes.out(), patterns.out().pattern);
    performance.tick(lanes.out());
    notes.tick(patterns.out().pattern, clock.out(), keys.out(), lanes.out(), performance.out(),
        chance.out().plays);
    bend.tick(clock.out(), lanes.out(), performance.out(), notes.out(), outgoing);
    strikes.tick(clock.out(), schedule);
    if (notes.triggers() && strikes.begin(clock.out(), lanes.out(), notes.out(), schedule))
        chance.noteStarted();
    drums.tick(clock.out(), lanes.out(), notes.out(), schedule);
    synthTick();
    mods.tick(lanes.out(), performance.out(), notes.out(), outgoing);
    info.firstTick = 0;
    schedule.drain(outgoing, synth.voices());
    publish();
    planIdleTicks();
}

void Sequencer::takeEvents()
{
    while (const InternalEvent* event = inputQueue.popDue())
        handle(*event);
    inputQueue.advance(kTickSamples);
}

void Sequencer::handle(const InternalEvent& event)
{
    const float value = static_cast<float>(event.data2) * 0.007874016f;
    switch (event.code) {
    case EventCode::NoteOn:
        keys.noteOn(event.data1, event.data2);
        break;
    case EventCode::NoteOff:
        keys.noteOff(event.data1);
        break;
    case EventCode::AllNotesOff:
        keys.allNotesOff();
        break;
    case EventCode::Controller:
        midiMap.controllerMoved(event.data1, value, *this, remoteStep);
        break;
    case EventCode::PitchWheel: {
        const auto offCentre = static_cast<float>(event.data2 - 64);
        info.pitchWheel = offCentre / (event.data2 > 63 ? 63.0f : 64.0f);
        break;
    }
    case EventCode::ProgramChange:
        if (programs && ignoreProgramChange == 0 && !midiMap.mapBusy.isRaised())
            programs->apply(event.data1, stateParts);
        break;
    case EventCode::Pressure:
        midiMap.pressureMoved(static_cast<float>(event.data1) * 0.007874016f, *this, remoteStep);
        break;
    case EventCode::Cancelled:
        break;
    }
}

void Sequencer::followTempo()
{
    const double tempo = transport.blockTempo();
    if (tempo == info.tempo)
        return;
    info.setTempo(tempo);
    info.notifyTempoListeners();
    clock.deriveSpeed();
}

void Sequencer::publish()
{
    const KWLanes::Out& steps = lanes.out();
    screen.mainStep = static_cast<float>(steps.main);
    screen.performanceStep = static_cast<float>(steps.performance);
    screen.velocityStep = static_cast<float>(steps.velocity);
    screen.gateStep = static_cast<float>(steps.gate);
    for (size_t k = 0; k < steps.mods.size(); ++k) {
        screen.modStep[k] = static_cast<float>(steps.mods[k]);
        screen.modValue[k] = mods.out()[k];
    }
    screen.songStep = static_cast<float>(patterns.out().songIndex);
    screen.pattern = static_cast<float>(patterns.out().pattern);
    screen.waitingPattern = static_cast<float>(patterns.out().waiting);
    screen.beatHalf = clock.phase().beats - std::floor(clock.phase().beats) < 0.5 ? 1.0f : 0.0f;
    screen.patternLocked = patterns.out().locked ? 1.0f : 0.0f;
    screen.masterStep = clock.out().masterStep;
    screen.playing = clock.out().play;
    screen.bendSemitones = bend.semitones();
}

// --- ticks that are left out: engine/IdleTicks.h ------------------------------------------------

void Sequencer::planIdleTicks()
{
    const bool moved = stepInputs.changed({.keys = keys.out(),
        .clock = clock.out(),
        .patterns = patterns.out(),
        .lanes = lanes.out(),
        .changes = info.changes.load()});
    idleLeft = moved ? 0 : kMostIdleTicks;
    std::apply(
        [&]<CanIdle... Stage>(const Stage&... stage) {
            ((idleLeft = idleLeft > 0 ? stage.idleTicks(idleLeft) : 0), ...);
        },
        stages());
}

bool Sequencer::mayIdle()
{
    if (idleLeft <= 0 || info.changes.load() != stepInputs.value().changes || !inputQueue.isEmpty())
        return false;
    const double place = info.placeRead();
    return std::apply(
        [&](const auto&... stage) { return (stage.isIdleAt(place) && ...); }, stages());
}

void Sequencer::idleTick()
{
    --idleLeft;
    ++skipped;
    skippedAt = info.placeRead();
    synthTick();
}

void Sequencer::catchUp()
{
    if (skipped == 0)
        return;
    std::apply([&](auto&... stage) { (stage.skipTicks(skipped, skippedAt), ...); }, stages());
    skipped = 0;
}

// --- the synth ----------------------------------------------------------------------------------

void Sequencer::synthTick()
{
    synthTicked = synthOn != 0;
    if (synthTicked)
        synth.controlTick(bend.semitones());
}

// The outputs are clear where the synth is silent.
void Sequencer::renderRun(float* left, float* right, int frame, int samples)
{
    if (!synthTicked || synthOn == 0)
        return;
    synth.renderVoices(runLeft, runRight, samples);
    synth.delay().process(runLeft, runRight, samples);
    if (left)
        std::copy_n(runLeft, samples, left + frame);
    if (right)
        std::copy_n(runRight, samples, right + frame);
}

} // namespace ormund
