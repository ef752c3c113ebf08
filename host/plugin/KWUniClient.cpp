#include "host/plugin/KWUniClient.h"

#include "data/tracks/FactoryContent.h"
#include "host/plugin/WrapperPort.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <pthread.h>
#include <thread>

namespace ormund {

namespace {
constexpr VstInt32 kTimeRequest =
    kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstCyclePosValid;
constexpr int kInputs = 2;
constexpr int kOutputs = 2;
// A block that does not end in this time is not waited for any longer.
constexpr int kMostWaits = 500;
// Ticks. To catch up with them takes a part of what a step takes.
constexpr int kMostRests = 64;

// Two instances that are left to chance shall not play alike.
float freshSeed()
{
    static std::atomic<uint32_t> instances = 0;
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    const uint32_t mixed =
        (static_cast<uint32_t>(now) + 0x9E3779B9u * instances.fetch_add(1)) * 2654435769u;
    return static_cast<float>(mixed >> 8) * 0x1p-24f;
}

void clearOutputs(float** outputs, int frames)
{
    if (!outputs || frames <= 0)
        return;
    for (int channel = 0; channel < kOutputs; ++channel)
        if (outputs[channel])
            std::fill_n(outputs[channel], frames, 0.0f);
}
} // namespace

KWUniClient::KWUniClient(audioMasterCallback master, const AudioLoops& loops)
    : KWPluginBase(master, kPrograms, kHostParameters)
    , tracks(info)
    , transport(info)
    , keys(info, keyState, tracks.pitch, *this, inputQueue)
    , clock(info, *this, reloadCounter)
    , patterns(tracks, patternStore, *this)
    , lanes(tracks)
    , chance(tracks)
    , performance(tracks)
    , notes(tracks)
    , strikes(tracks)
    , bend(tracks)
    , mods(tracks, *this)
    , synth(info, loops)
{
    setNumInputs(kInputs);
    setNumOutputs(kOutputs);
    setUniqueID(kUniqueId);
    programsAreChunks();
    canProcessReplacing();
    isSynth();
    applyDefaults();
    setParameter(Tag::ChanceSeed, freshSeed());
    writeFactoryContent(tracks, patternStore);
    patternStore.replay(*this);
    startSettings();
}

KWUniClient::~KWUniClient() = default;

void KWUniClient::waitForBlock() const
{
    // A host that loads from inside its own block would wait for itself.
    for (int i = 0; inBlock.isRaised() && !isAudioThread() && i < kMostWaits; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void KWUniClient::open() { needIdle(); }

VstInt32 KWUniClient::fxIdle()
{
    runDeferred();
    return 1;
}

void KWUniClient::suspend()
{
    // The lists are the audio thread's, and some hosts suspend beside a running block.
    eventsOutdated.raise();
}

void KWUniClient::dropOutdatedEvents()
{
    if (!eventsOutdated.isRaised())
        return;
    eventsOutdated.lower();
    // Never the schedule: what has been started must end.
    inputQueue.clear();
    outgoing.clear();
}

void KWUniClient::resume() { wantEvents(); }

void KWUniClient::setSampleRate(float rate)
{
    if (!KWSystemInfo::isUsableRate(rate))
        return;
    // A host ought to stop first; with one that does not, a block would read a buffer that moves.
    const BlocksStopped stopped(stateLink, true);
    catchUp();
    info.setSampleRate(rate);
    KWPluginBase::setSampleRate(rate);
    clock.sampleRateChanged();
    synth.sampleRateChanged();
    reapplyParameters();
}

void KWUniClient::processReplacing(float** /*inputs*/, float** outputs, VstInt32 sampleFrames)
{
    if (wrapperMode())
        clearOutputs(outputs, sampleFrames);
    else
        processBlock(outputs, sampleFrames);
}

void KWUniClient::processBlock(float** outputs, int sampleFrames) noexcept ORMUND_NONBLOCKING
{
    // Raised first, looked at after: a loader does it the other way round, so one of the two sees
    // the other.
    const FlagScope blockRuns(inBlock);
    if (loadBypass.isRaised()) {
        clearOutputs(outputs, sampleFrames);
        return;
    }
    blockThread = static_cast<uintptr_t>(pthread_self());
    dropOutdatedEvents();
    if (!wrapperMode() && rendersOffline == 0
        && getCurrentProcessLevel() == kVstProcessLevelOffline)
        return;

    const VstTimeInfo* record = wrapperMode() ? wrapper->timeRecord() : getTimeInfo(kTimeRequest);
    const BlockTransport block = record ? blockTransport(*record) : BlockTransport{};
    if (transport.evaluate(record ? &block : nullptr, sampleFrames)
        || transport.blockTempo() != info.tempo)
        restsLeft = 0;
    clearOutputs(outputs, sampleFrames);
    if (!restBlock(sampleFrames))
        playRuns(outputs, sampleFrames);
    sendOutgoing(block.position);
}

void KWUniClient::playRuns(float** outputs, int frames)
{
    for (int i = 0; i < frames;) {
        if (info.controlCounter == kTickSamples) {
            info.controlCounter = 0;
            if (mayRest())
                restingTick();
            else
                tick(i);
        }
        const int run = std::min(kTickSamples - info.controlCounter, frames - i);
        renderRun(outputs, i, run);
        transport.advance(run);
        info.controlCounter += run;
        i += run;
    }
}

void KWUniClient::tick(int sample)
{
    catchUp();
    while (const InternalEvent* event = inputQueue.popDue())
        handle(*event);
    inputQueue.advance(kTickSamples);
    followTempo();
    outgoing.eventDelta = sample;

    keys.tick(info);
    clock.tick(info, keys.out());
    patterns.tick(clock.out(), keys.out());
    clock.readSpeed();
    // Between two steps nothing moves that these stages read: what they came to still stands.
    const bool moved = stepInputs.changed({.keys = keys.out(),
        .clock = clock.out(),
        .patterns = patterns.out(),
        .changes = info.changes.load()});
    if (moved)
        lanes.tick(clock.out(), patterns.out().pattern);
    keys.record(lanes.out().main);
    if (moved) {
        chance.tick(clock.out(), lanes.out(), patterns.out().pattern);
        performance.tick(lanes.out());
    }
    if (moved || !notes.holds())
        notes.tick(patterns.out().pattern, clock.out(), keys.out(), lanes.out(), performance.out(),
            chance.out().plays);
    else
        notes.rest(clock.out(), lanes.out(), 1);
    bend.tick(clock.out(), lanes.out(), performance.out(), notes.out(), outgoing);
    strikes.tick(clock.out(), schedule);
    if (notes.triggers() && strikes.begin(clock.out(), lanes.out(), notes.out(), schedule))
        chance.noteStarted();
    synthTicked = synthOn != 0;
    if (synthTicked)
        synth.controlTick(bend.semitones());
    if (moved || mods.hasUnsent())
        mods.tick(lanes.out(), performance.out(), notes.out(), outgoing);
    info.firstTick = 0;
    schedule.drain(outgoing, synth.voices());
    if (moved)
        publish();
    screen.bendSemitones = bend.semitones();
    restsLeft = 0;
    if (!moved && patterns.holds() && notes.holds() && bend.holds() && !mods.hasUnsent())
        restsLeft = strikes.ticksHeld(schedule.ticksHeld(clock.ticksHeld(kMostRests)));
    restsWithin = clock.stretchOfStep();
}

// Nearly all ticks fall between two steps, and nothing comes from outside. Then the last tick in
// full has left every cell of every stage as it was, so another one would do the same: only what
// counts ticks goes on.
bool KWUniClient::mayRest() const
{
    return restsLeft > 0 && isUntouched() && mayRestAt(info.songPositionPrecise);
}

bool KWUniClient::isUntouched() const
{
    return info.changes.load() == stepInputs.value().changes && inputQueue.isEmpty() && keys.holds()
        && patterns.holds();
}

void KWUniClient::restingTick()
{
    countRests(1, info.songPositionPrecise);
    synthTicked = synthOn != 0;
    if (synthTicked)
        synth.controlTick(bend.semitones());
}

// All ticks of a block at once, where each may rest and the synth is off. The position moves one
// way only, so the first and the last of them tell of all between.
bool KWUniClient::restBlock(int frames)
{
    const int untilTick = kTickSamples - info.controlCounter;
    const int ticks = (frames - untilTick + kTickSamples - 1) / kTickSamples;
    if (ticks <= 0 || ticks > restsLeft || synthOn != 0 || transport.mayWrap() || !isUntouched())
        return false;
    const KWTransport::Course course = transport.course(ticks, untilTick, frames);
    if (!mayRestAt(course.firstTick) || !mayRestAt(course.lastTick))
        return false;
    countRests(ticks, course.lastTick);
    synthTicked = false;
    transport.moveTo(course.end);
    info.controlCounter = frames - untilTick - (ticks - 1) * kTickSamples;
    return true;
}

void KWUniClient::countRests(int ticks, double lastAt)
{
    restsLeft -= ticks;
    rested += ticks;
    keys.rest(static_cast<float>(lastAt));
}

void KWUniClient::catchUp()
{
    if (rested == 0)
        return;
    clock.rest(rested);
    notes.rest(clock.out(), lanes.out(), rested);
    bend.rest(clock.out(), rested);
    strikes.rest(rested);
    schedule.rest(rested);
    rested = 0;
}

void KWUniClient::handle(const InternalEvent& event)
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
        programChanged(event.data1);
        break;
    case EventCode::Pressure:
        midiMap.pressureMoved(static_cast<float>(event.data1) * 0.007874016f, *this, remoteStep);
        break;
    case EventCode::Cancelled:
        break;
    }
}

void KWUniClient::followTempo()
{
    const double tempo = transport.blockTempo();
    if (tempo == info.tempo)
        return;
    info.setTempo(tempo);
    info.notifyTempoListeners();
    clock.deriveSpeed();
}

// The outputs are clear where the synth is silent.
void KWUniClient::renderRun(float** outputs, int frame, int samples)
{
    if (!synthTicked || synthOn == 0)
        return;
    synth.renderVoices(runLeft, runRight, samples);
    synth.delay().process(runLeft, runRight, samples);
    const float* run[kOutputs] = {runLeft, runRight};
    for (int channel = 0; outputs && channel < kOutputs; ++channel)
        if (outputs[channel])
            std::copy_n(run[channel], samples, outputs[channel] + frame);
}

void KWUniClient::sendOutgoing(double songPosition)
{
    if (outgoing.count() == 0)
        return;
    if (!wrapperMode()) {
        sendVstEventsToHost(sent.fill(outgoing.events()));
    } else if (wrapper->hasMidiOutput()) {
        for (const MidiEvent& event : outgoing.events())
            wrapper->midiOut(effectEvent(event), songPosition);
    }
    outgoing.clear();
}

void KWUniClient::publish()
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
    screen.patternLocked = patterns.out().locked ? 1.0f : 0.0f;
    screen.masterStep = clock.out().masterStep;
    screen.playing = clock.out().play;
}

} // namespace ormund
