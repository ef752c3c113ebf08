// Where a value enters the sequencer: stored first, then its reaction.

#include "base/OnlyCrossings.h"
#include "data/parameters/ChoiceArrows.h"
#include "data/parameters/ChoiceLists.h"
#include "data/parameters/Tags.h"
#include "data/tracks/EditButtons.h"
#include "engine/Sequencer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

namespace ormund {

namespace {
constexpr float kSwingBend = 0.9f; // the swing's delay grows a little faster than its amount

// The second control of a value. What it shows follows the first, so its own default or stored
// value must never be set: it would move the first.
bool isSecondControl(int tag) { return firstControlOf(tag) != tag; }

// What is written here is read by a block on another thread.
static_assert(onlyCrossings<KWKeys::Settings>() && onlyCrossings<KWClock::Settings>()
    && onlyCrossings<KWPatterns::Settings>() && onlyCrossings<KWLanes::Settings>()
    && onlyCrossings<KWChance::Settings>() && onlyCrossings<KWNotes::Settings>()
    && onlyCrossings<KWMods::Settings>());

constexpr size_t at(int index) { return static_cast<size_t>(index); }

using Index = Crossing<int32_t>;
using Mapped = Crossing<float>;
struct Reaction {
    int tag;
    Index& (*index)(Sequencer&, int member);
    Mapped& (*mapped)(Sequencer&) = nullptr;
    int members = 1; // of the family
    int stride = 1;  // between their tags
};
struct ReactionPlace {
    int16_t row = -1;
    int16_t member = 0;
};
} // namespace

// The reactions that are a plain store: a row a parameter, or a family of them, and the setting
// that gets its index or its mapped value.
struct Sequencer::Reactions {
    template <auto Stage, auto Field>
    static Index& index(Sequencer& s, int)
    {
        return (s.*Stage).settings.*Field;
    }
    template <auto Stage, auto Field>
    static Mapped& mapped(Sequencer& s)
    {
        return (s.*Stage).settings.*Field;
    }
    template <auto Field>
    static Index& ofMod(Sequencer& s, int track)
    {
        return (s.mods.settings.*Field)[at(track)];
    }
    template <int First>
    static Index& ofLane(Sequencer& s, int lane)
    {
        return s.lanes.settings.mode[at(First + lane)];
    }

    static constexpr auto kNotes = &Sequencer::notes;
    static constexpr auto kClock = &Sequencer::clock;
    static constexpr auto kPatterns = &Sequencer::patterns;
    static constexpr auto kKeys = &Sequencer::keys;
    using Notes = KWNotes::Settings;
    using Clock = KWClock::Settings;
    using Patterns = KWPatterns::Settings;
    using Keys = KWKeys::Settings;
    using Mods = KWMods::Settings;

    // clang-format off
    static constexpr Reaction kRows[] = {
        {Tag::RootKey, index<kNotes, &Notes::rootKey>},
        {Tag::Scale, index<kNotes, &Notes::scale>},
        {Tag::MidiOutOctave, index<kNotes, &Notes::outOctave>},
        {Tag::MidiOutTranspose, index<kNotes, &Notes::outTranspose>},
        {Tag::GateTimeButton, index<kNotes, &Notes::masterGateOn>},
        {Tag::MasterGateTime, nullptr, mapped<kNotes, &Notes::masterGate>},
        {Tag::VelocityGateButton, index<kNotes, &Notes::velocityGateOn>},
        {Tag::VelocityThreshold, nullptr, mapped<kNotes, &Notes::velocityThreshold>},
        {Tag::Mute, index<kNotes, &Notes::mute>},

        {Tag::Play, index<kClock, &Clock::play>},
        {Tag::TriggerMode, index<kClock, &Clock::triggerMode>},
        {Tag::HalfSpeed, index<kClock, &Clock::halfSpeed>},
        {Tag::Slowdown, index<kClock, &Clock::slowdown>},
        {Tag::StepPlay, index<kClock, &Clock::manualStep>},
        {Tag::Looper, index<kClock, &Clock::looper>},
        {Tag::LooperSteps, index<kClock, &Clock::looperSteps>},

        {Tag::PitchMode, ofLane<KWLanes::Main>},
        {Tag::PerformanceMode, ofLane<KWLanes::Performance>},
        {Tag::VelocityMode, ofLane<KWLanes::Velocity>},
        {Tag::GateMode, ofLane<KWLanes::Gate>},
        {Tag::ModMode, ofLane<KWLanes::FirstMod>, nullptr, kModTracks, Tag::ModStep},

        {Tag::Fill, index<&Sequencer::chance, &KWChance::Settings::fill>},

        {Tag::Launch, index<kPatterns, &Patterns::launch>},
        {Tag::PadsOnStep, index<kClock, &Clock::padsOnStep>},
        {Tag::PlayThrough, index<kKeys, &Keys::playThrough>},
        {Tag::SongOn, index<kPatterns, &Patterns::songOn>},

        {Tag::TriggerSource, index<kKeys, &Keys::triggerSource>},
        {Tag::InputOctave, index<kKeys, &Keys::inputOctave>},
        {Tag::TransposeMode, index<kKeys, &Keys::transposeChromatic>},
        {Tag::RecordMode, index<kKeys, &Keys::stepRecord>},
        {Tag::Record, index<kKeys, &Keys::recording>},

        {Tag::ModTrackOn, ofMod<&Mods::on>, nullptr, kModTracks},
        {Tag::ModTarget, ofMod<&Mods::target>, nullptr, kModTracks},
        {Tag::ModToSynth, ofMod<&Mods::toSynth>, nullptr, kModTracks},
        {Tag::DrumNote, ofMod<&Mods::drumNote>, nullptr, kModTracks},
        {Tag::DrumGate, ofMod<&Mods::drumGate>, nullptr, kModTracks},

        {Tag::IgnoreProgramChange, [](Sequencer& s, int) -> Index& { return s.ignoreProgramChange; }},
        {Tag::LockAssign, [](Sequencer& s, int) -> Index& { return s.keepMidiMap; }},
        {Tag::RandomMin, nullptr, [](Sequencer& s) -> Mapped& { return s.info.randomMin; }},
        {Tag::RandomMax, nullptr, [](Sequencer& s) -> Mapped& { return s.info.randomMax; }},
    };
    // clang-format on

    static constexpr auto kPlaces = [] {
        std::array<ReactionPlace, kTagCount> places{};
        for (size_t row = 0; row < std::size(kRows); ++row)
            for (int member = 0; member < kRows[row].members; ++member)
                places[at(kRows[row].tag + member * kRows[row].stride)] = {
                    static_cast<int16_t>(row), static_cast<int16_t>(member)};
        return places;
    }();

    // False where the reaction is more than that.
    static bool store(Sequencer& sequencer, int tag, const Parameters::Stored& stored)
    {
        const ReactionPlace place = kPlaces[at(tag)];
        if (place.row < 0)
            return false;
        const Reaction& row = kRows[place.row];
        if (row.index)
            row.index(sequencer, place.member) = stored.index;
        if (row.mapped)
            row.mapped(sequencer) = stored.mapped;
        return true;
    }
};

void Sequencer::setParameter(int tag, float value)
{
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
    if (!Reactions::store(*this, tag, stored))
        react(tag, stored);
    info.changes.count();
}

void Sequencer::stepChoice(int tag, int direction)
{
    const int count = choiceCount(tag);
    const int index = std::clamp(parameters.index(tag) + direction, 0, count - 1);
    // The middle of the entry's range, so that no rounding can lose it.
    setParameter(tag, (static_cast<float>(index) + 0.5f) / static_cast<float>(count));
}

void Sequencer::reactGlobalEdit(int tag)
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

// Rows of tags, one for each track, lane or value of the synth.
bool Sequencer::reactFamily(int tag, const Parameters::Stored& stored)
{
    const int index = stored.index;
    if (tag >= Tag::DrumRow && tag < Tag::DrumRow + kModTracks) {
        mods.settings.drum[at(tag - Tag::DrumRow)] = index;
        screen.pagesChanged.raise();
        return true;
    }
    if (tag >= Tag::ModChannel && tag < Tag::ModChannel + kModTracks) {
        mods.settings.channel[at(tag - Tag::ModChannel)] = index - 1;
        return true;
    }
    if (tag >= Tag::LaneSpeed && tag < Tag::LaneSpeed + kStepLanes) {
        lanes.settings.speed[at(tag - Tag::LaneSpeed)] = index - kPlainLaneSpeed;
        return true;
    }
    if (tag >= KWSynth::kFirstTag && tag <= KWSynth::kLastTag) {
        synth.setParameter(tag, stored.mapped);
        return true;
    }
    return false;
}

// What is more than a plain store.
void Sequencer::react(int tag, const Parameters::Stored& stored)
{
    if (reactFamily(tag, stored))
        return;
    const int index = stored.index;
    switch (tag) {
    case Tag::GateTimeMultiply:
        notes.settings.gateMultiply = kGateMultiplyTable[at(index)];
        break;
    case Tag::Swing:
        clock.settings.swingAmount = stored.mapped;
        clock.settings.swingShape = std::pow(stored.mapped, kSwingBend);
        clock.deriveSpeed();
        break;
    case Tag::StepSpeed:
        clock.settings.stepsPerBeat = kSpeedStepsPerBeat[at(index)];
        clock.deriveSpeed();
        break;
    case Tag::Retrigger:
        clock.settings.retrigger = index;
        keys.settings.retrigger = index;
        break;
    case Tag::MelodyChannel:
        notes.settings.channel = index;
        keys.settings.channel = index;
        break;
    case Tag::ChanceSeed:
        chance.settings.seed = std::bit_cast<uint32_t>(stored.raw);
        break;
    case Tag::SlowdownRate:
        clock.settings.slowdownCurve = stored.mapped * 0.3f + 0.005f;
        break;
    case Tag::SongSpeed:
        patterns.settings.stepsPerUnit = kSongSpeedSteps[at(index)];
        break;
    case Tag::LockArea:
        patterns.settings.lockedPattern = std::clamp(static_cast<int>(stored.raw * 15.99f), 0, 15);
        break;
    case Tag::KeySync:
        keys.settings.keySyncIndex = index;
        keys.settings.keySyncFactor = kKeySyncFactors[at(index)];
        break;
    case Tag::AllModsOff:
        mods.settings.enabled = 1 - index;
        break;
    default:
        reactShown(tag, stored);
        break;
    }
}

// Pages, values with two controls, and preset buttons.
void Sequencer::reactShown(int tag, const Parameters::Stored& stored)
{
    const int index = stored.index;
    switch (tag) {
    case Tag::LoopbarMode:
        lanes.settings.separateLoops = index;
        parameters.store(Tag::LoopbarModeSecond, stored.raw);
        screen.pagesChanged.raise();
        break;
    case Tag::KeyboardMode:
        keys.settings.keyboardMode = index;
        screen.pagesChanged.raise();
        break;
    case Tag::ModSelect:
        // The page of controls follows the chosen track.
        parameters.store(Tag::ModTrackPage, static_cast<float>(index) * 0.0625f);
        screen.pagesChanged.raise();
        break;
    case Tag::Page:
        parameters.store(Tag::PageSecond, stored.raw);
        screen.pagesChanged.raise();
        break;
    case Tag::EditTool:
        tracks.editTool = index;
        break;
    case Tag::ToolHits:
        tracks.toolHits = index;
        break;
    case Tag::PerformancePage:
        tracks.performancePage = index;
        screen.pagesChanged.raise();
        break;
    case Tag::ModTrackPage:
        screen.pagesChanged.raise();
        break;

    // one value with two controls
    case Tag::SynthOn:
    case Tag::SynthOnSecond:
        parameters.store(tag == Tag::SynthOn ? Tag::SynthOnSecond : Tag::SynthOn, stored.raw);
        synthOn = index;
        break;
    case Tag::KeyboardModeSecond:
        setParameter(Tag::KeyboardMode, stored.raw);
        break;
    case Tag::LoopbarModeSecond:
    case Tag::PageSecond:
        if (const int first = firstControlOf(tag); parameters.raw(first) != stored.raw)
            setParameter(first, stored.raw);
        break;

    // presets, on release
    case Tag::PreviousPreset:
    case Tag::NextPreset:
    case Tag::PreviousSynthPreset:
    case Tag::NextSynthPreset:
    case Tag::RandomPreset:
        if (stored.raw == 0)
            presetRequest.post(tag);
        break;
    default:
        break;
    }
}

void Sequencer::applyDefaults()
{
    for (const ParameterEntry& entry : allParameters())
        if (entry.hasValue() && !isAction(entry.tag) && !isSecondControl(entry.tag))
            setParameter(entry.tag, entry.defaultRaw);
}

void Sequencer::reapplyParameters()
{
    for (const ParameterEntry& entry : allParameters())
        if (entry.hasValue() && !isAction(entry.tag) && !isSecondControl(entry.tag))
            setParameter(entry.tag, parameters.raw(entry.tag));
}

} // namespace ormund
