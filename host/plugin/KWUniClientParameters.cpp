// Where a value enters the engine: stored first, then its reaction.

#include "host/plugin/KWUniClient.h"

#include "base/OnlyCrossings.h"
#include "data/parameters/ChoiceArrows.h"
#include "data/parameters/ChoiceLists.h"
#include "data/parameters/Tags.h"
#include "data/tracks/EditButtons.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace ormund {

namespace {
constexpr float kSwingBend = 0.9f; // the swing's delay grows a little faster than its amount

// The place of `tag` in a family of eight tags `stride` apart, or -1.
int familyIndex(int tag, int first, int stride)
{
    const int offset = tag - first;
    return offset >= 0 && offset < kModTracks * stride && offset % stride == 0 ? offset / stride
                                                                               : -1;
}

// The second control of a value. What it shows follows the first, so its own default or stored
// value must never be set: it would move the first.
bool isTwin(int tag) { return firstControlOf(tag) != tag; }

// What is written here is read by a block on another thread.
static_assert(onlyCrossings<KWKeys::Settings>() && onlyCrossings<KWClock::Settings>()
    && onlyCrossings<KWPatterns::Settings>() && onlyCrossings<KWLanes::Settings>()
    && onlyCrossings<KWChance::Settings>() && onlyCrossings<KWNotes::Settings>()
    && onlyCrossings<KWMods::Settings>());

constexpr size_t at(int index) { return static_cast<size_t>(index); }
} // namespace

void KWUniClient::setParameter(VstInt32 index, float value)
{
    const int tag = index;
    const ParameterEntry* entry = parameters.entry(tag);
    if (!entry)
        return;
    if (!entry->hasValue()) {
        tracks.writeStep(tag, remoteStep, value);
        return;
    }
    const Parameters::Stored stored = parameters.store(tag, value);
    patternStore.write(tag, stored.raw);
    if (editButton(tag)) {
        // A press only lights the button; its release acts.
        if (stored.raw == 0) {
            performEdit(tag, tracks);
            reactGlobalEdit(tag);
        }
        return;
    }
    if (const ChoiceArrow* arrow = choiceArrow(tag)) {
        if (stored.raw == 0)
            stepChoice(arrow->target, arrow->direction);
        return;
    }
    react(tag, stored);
}

void KWUniClient::setParameterAutomated(VstInt32 index, float value)
{
    if (index >= 0 && index < kHostParameters)
        KWPluginBase::setParameterAutomated(index, value);
}

float KWUniClient::getParameter(VstInt32 index)
{
    if (index < 0 || index >= kHostParameters)
        return 0.0f;
    return parameters.raw(index);
}

void KWUniClient::stepChoice(int tag, int direction)
{
    const int count = choiceCount(tag);
    const int index = std::clamp(parameters.index(tag) + direction, 0, count - 1);
    // The middle of the entry's range, so that no rounding can lose it.
    setParameter(tag, (static_cast<float>(index) + 0.5f) / static_cast<float>(count));
}

void KWUniClient::reactGlobalEdit(int tag)
{
    switch (tag) {
    case Tag::GlobalCopy:
        patternStore.copy();
        break;
    case Tag::GlobalPaste:
        if (patternStore.paste())
            patternStore.replay(*this);
        break;
    default:
        break;
    }
    screen.redraw.raise();
}

void KWUniClient::react(int tag, const Parameters::Stored& stored)
{
    reactTo(tag, stored);
    info.changes.count();
}

void KWUniClient::reactTo(int tag, const Parameters::Stored& stored)
{
    if (tag >= KWSynth::kFirstTag && tag <= KWSynth::kLastTag)
        synth.setParameter(tag, stored.raw);
    else if (!reactInstrument(tag, stored))
        reactFamilies(tag, stored);
}

// One line a parameter.
bool KWUniClient::reactInstrument(int tag, const Parameters::Stored& stored)
{
    const int index = stored.index;
    switch (tag) {
    // notes
    case Tag::RootKey:
        notes.settings.rootKey = index;
        return true;
    case Tag::Scale:
        notes.settings.scale = index;
        return true;
    case Tag::MidiOutOctave:
        notes.settings.outOctave = index;
        return true;
    case Tag::MidiOutTranspose:
        notes.settings.outTranspose = index;
        return true;
    case Tag::GateTimeButton:
        notes.settings.masterGateOn = index;
        return true;
    case Tag::MasterGateTime:
        notes.settings.masterGate = stored.mapped;
        return true;
    case Tag::VelocityGateButton:
        notes.settings.velocityGateOn = index;
        return true;
    case Tag::VelocityThreshold:
        notes.settings.velocityThreshold = stored.mapped;
        return true;
    case Tag::Mute:
        notes.settings.mute = index;
        return true;
    case Tag::GateTimeMultiply:
        notes.settings.gateMultiply = kGateMultiplyTable[at(index)];
        return true;

    // clock
    case Tag::Swing:
        clock.settings.swingAmount = stored.mapped;
        clock.settings.swingShape = std::pow(stored.mapped, kSwingBend);
        clock.deriveSpeed();
        return true;
    case Tag::StepSpeed:
        clock.settings.stepsPerBeat = kSpeedStepsPerBeat[at(index)];
        clock.deriveSpeed();
        return true;
    case Tag::Play:
        clock.settings.play = index;
        return true;
    case Tag::TriggerMode:
        clock.settings.triggerMode = index;
        return true;
    case Tag::HalfSpeed:
        clock.settings.halfSpeed = index;
        return true;
    case Tag::Retrigger:
        clock.settings.retrigger = index;
        keys.settings.retrigger = index;
        return true;
    case Tag::Slowdown:
        clock.settings.slowdown = index;
        return true;
    case Tag::SlowdownRate:
        clock.settings.slowdownCurve = stored.mapped * 0.3f + 0.005f;
        return true;
    case Tag::StepPlay:
        clock.settings.manualStep = index;
        return true;
    case Tag::Looper:
        clock.settings.looper = index;
        return true;
    case Tag::LooperSteps:
        clock.settings.looperSteps = index;
        return true;

    // lanes
    case Tag::PitchMode:
        lanes.settings.mode[KWLanes::Main] = index;
        return true;
    case Tag::PerformanceMode:
        lanes.settings.mode[KWLanes::Performance] = index;
        return true;
    case Tag::VelocityMode:
        lanes.settings.mode[KWLanes::Velocity] = index;
        return true;
    case Tag::GateMode:
        lanes.settings.mode[KWLanes::Gate] = index;
        return true;
    case Tag::LoopbarMode:
        lanes.settings.separateLoops = index;
        parameters.store(Tag::LoopbarModeTwin, stored.raw);
        screen.pagesChanged.raise();
        return true;

    // chance
    case Tag::ChanceSeed:
        chance.settings.seed = std::bit_cast<uint32_t>(stored.raw);
        return true;
    case Tag::Fill:
        chance.settings.fill = index;
        return true;

    // patterns
    case Tag::SongSpeed:
        patterns.settings.stepsPerUnit = kSongSpeedSteps[at(index)];
        return true;
    case Tag::SongOn:
        patterns.settings.songOn = index;
        return true;
    case Tag::LockArea:
        patterns.settings.lockedPattern = std::clamp(static_cast<int>(stored.raw * 15.99f), 0, 15);
        return true;

    // keys
    case Tag::KeyboardMode:
        keys.settings.keyboardMode = index;
        screen.pagesChanged.raise();
        return true;
    case Tag::KeyboardModeTwin:
        setParameter(Tag::KeyboardMode, stored.raw);
        return true;
    case Tag::TriggerSource:
        keys.settings.triggerSource = index;
        return true;
    case Tag::InputOctave:
        keys.settings.inputOctave = index;
        return true;
    case Tag::KeySync:
        keys.settings.keySyncIndex = index;
        keys.settings.keySyncFactor = kKeySyncFactors[at(index)];
        return true;
    case Tag::TransposeMode:
        keys.settings.transposeChromatic = index;
        return true;
    case Tag::RecordMode:
        keys.settings.stepRecord = index;
        return true;
    case Tag::Record:
        keys.settings.recording = index;
        return true;

    // modulation
    case Tag::AllModsOff:
        mods.settings.enabled = 1 - index;
        return true;
    case Tag::ModSelect:
        // The page of controls follows the chosen track.
        parameters.store(Tag::ModTrackPage, static_cast<float>(index) * 0.0625f);
        screen.pagesChanged.raise();
        return true;
    case Tag::Page:
        parameters.store(Tag::PageTwin, stored.raw);
        screen.pagesChanged.raise();
        return true;
    case Tag::ModTrackPage:
        screen.pagesChanged.raise();
        return true;

    // one value with two controls
    case Tag::SynthOn:
    case Tag::SynthOnTwin:
        parameters.store(tag == Tag::SynthOn ? Tag::SynthOnTwin : Tag::SynthOn, stored.raw);
        synthOn = index;
        return true;
    case Tag::LoopbarModeTwin:
    case Tag::PageTwin: {
        const int first = firstControlOf(tag);
        if (parameters.raw(first) != stored.raw)
            setParameter(first, stored.raw);
        return true;
    }

    // settings
    case Tag::RandomMin:
        info.randomMin = stored.raw;
        return true;
    case Tag::RandomMax:
        info.randomMax = stored.raw;
        return true;
    case Tag::IgnoreProgramChange:
        ignoreProgramChange = index;
        return true;
    case Tag::LockAssign:
        keepMidiMap = index;
        return true;

    // presets, on release
    case Tag::PreviousPreset:
    case Tag::NextPreset:
    case Tag::PreviousSynthPreset:
    case Tag::NextSynthPreset:
    case Tag::RandomPreset:
        if (stored.raw == 0)
            stepPreset(tag);
        return true;
    default:
        return false;
    }
}

bool KWUniClient::reactFamilies(int tag, const Parameters::Stored& stored)
{
    if (const int k = familyIndex(tag, Tag::ModTrackOn, 1); k >= 0)
        mods.settings.on[at(k)] = stored.index;
    else if (const int target = familyIndex(tag, Tag::ModTarget, 1); target >= 0)
        mods.settings.target[at(target)] = stored.index;
    else if (const int toSynth = familyIndex(tag, Tag::ModToSynth, 1); toSynth >= 0)
        mods.settings.toSynth[at(toSynth)] = stored.index;
    else if (const int mode = familyIndex(tag, Tag::ModMode, 5); mode >= 0)
        lanes.settings.mode[at(KWLanes::FirstMod + mode)] = stored.index;
    else
        return false;
    return true;
}

void KWUniClient::applyDefaults()
{
    for (const ParameterEntry& entry : allParameters())
        if (entry.hasValue() && !isAction(entry.tag) && !isTwin(entry.tag))
            setParameter(entry.tag, entry.defaultRaw);
}

void KWUniClient::reapplyParameters()
{
    for (const ParameterEntry& entry : allParameters())
        if (entry.hasValue() && !isAction(entry.tag) && !isTwin(entry.tag))
            setParameter(entry.tag, parameters.raw(entry.tag));
}

} // namespace ormund
