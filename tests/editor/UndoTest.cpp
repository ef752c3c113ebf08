#include "tests/editor/EditorRig.h"

#include "controls/KWOptionMenu.h"
#include "editor/UndoHistory.h"
#include "tests/support/Checked.h"

#include <gmock/gmock.h>

#include <random>

namespace ormund {

namespace {

void pressUndo(EditorRig& rig)
{
    rig.user->key({.character = U'z', .key = CKey::None, .modifiers = kControl});
}
void pressRedo(EditorRig& rig)
{
    rig.user->key({.character = U'Z', .key = CKey::None, .modifiers = kControl | kShift});
}

// As a key or the song does it.
void choosePattern(EditorRig& rig, int pattern)
{
    rig.engine.patternStore.currentPattern = pattern;
    rig.engine.tracks.selectRow(pattern);
    rig.engine.patternStore.replay(rig.engine);
    rig.idle();
}

std::vector<uint32_t> chunkOf(EditorRig& rig)
{
    const KWChunk& chunk = rig.engine.presets.state();
    return {chunk.words().begin(), chunk.words().end()};
}

} // namespace

TEST(UndoHistory, ANewLevelEndsWhatCouldBeRedone)
{
    const auto level = [](uint32_t cell) { return UndoHistory::Level{{{cell, 0, 1}}, {}, {}}; };
    const auto cellOf = [](const UndoHistory::Level* found) {
        return found ? int(found->changes.front().cell) : -1;
    };
    UndoHistory history;
    history.push({});
    EXPECT_FALSE(history.canUndo());
    for (uint32_t i = 0; i < 5; ++i)
        history.push(level(i));
    EXPECT_EQ(cellOf(history.undo()), 4);
    EXPECT_EQ(cellOf(history.undo()), 3);
    EXPECT_EQ(cellOf(history.redo()), 3);
    history.push(level(9));
    EXPECT_EQ(cellOf(history.redo()), -1);
    EXPECT_EQ(cellOf(history.undo()), 9);
    EXPECT_EQ(cellOf(history.undo()), 3);
}

TEST(UndoHistory, TheOldestLevelsGoWhereThereAreTooManyOrTheyAreTooLarge)
{
    const auto undone = [](UndoHistory& history) {
        int count = 0;
        while (history.undo())
            ++count;
        return count;
    };
    UndoHistory small;
    for (uint32_t i = 0; i < 2 * UndoHistory::kMaxLevels; ++i)
        small.push({{{i, 0, 1}}, {}, {}});
    EXPECT_EQ(small.last()->changes.front().cell, 2 * UndoHistory::kMaxLevels - 1);
    EXPECT_EQ(undone(small), UndoHistory::kMaxLevels);

    // Songs as large as they come, and one that is larger than all the room.
    const auto moment = [](size_t bytes) {
        Presets::Moment made;
        made.words.resize(bytes / sizeof made.words[0]);
        return std::make_shared<const Presets::Moment>(std::move(made));
    };
    UndoHistory large;
    for (int i = 0; i < 300; ++i)
        large.push({{}, {}, {moment(47'000), moment(47'000)}});
    const int kept = undone(large);
    EXPECT_GE(kept, 80);
    EXPECT_LE(static_cast<size_t>(kept) * 94'000, UndoHistory::kMaxBytes);
    large.push({{}, {}, {moment(UndoHistory::kMaxBytes), moment(0)}});
    EXPECT_EQ(undone(large), 1);
}

TEST(Undo, EveryKindOfEditIsTakenBackAndDoneAgain)
{
    EditorRig rig;
    const auto at = [](int tag) { return EditorRig::middle(*findControl(tag)); };
    const std::vector<std::function<void()>> gestures = {
        [&] {
            rig.user->drag(
                at(Tag::LooperSteps), {at(Tag::LooperSteps).x, at(Tag::LooperSteps).y - 25});
        },
        [&] { rig.click(at(Tag::Looper)); },
        [&] {
            rig.user->drag({180, 180}, {700, 220});
        },                           // a sweep over the velocities
        [&] { rig.click(at(420)); }, // clear them
        [&] {
            rig.user->drag({739, 54}, {250, 54});
        },                           // the pitch loop
        [&] { rig.click(at(544)); }, // random, all tracks
        [&] { rig.user->wheel(at(Tag::RandomMin), 3); },
        [&] {
            rig.user->wheel({300, 430}, 1);
        }, // a chord
    };
    std::vector<StateImage> states{StateImage(rig.engine)};
    for (const auto& gesture : gestures) {
        rig.user->wait(2000);
        gesture();
        rig.idle();
        states.emplace_back(rig.engine);
        ASSERT_FALSE(states.back() == states[states.size() - 2]) << states.size() - 1;
    }
    for (size_t i = states.size() - 1; i > 0; --i) {
        pressUndo(rig);
        EXPECT_TRUE(StateImage(rig.engine) == states[i - 1]) << "back to " << i - 1;
    }
    pressUndo(rig); // nothing is left
    EXPECT_TRUE(StateImage(rig.engine) == states.front());
    for (size_t i = 1; i < states.size(); ++i) {
        pressRedo(rig);
        EXPECT_TRUE(StateImage(rig.engine) == states[i]) << "on to " << i;
    }
}

TEST(Undo, HoldsAHundredGestures)
{
    EditorRig rig;
    const CPoint knob = EditorRig::middle(*findControl(Tag::SlowdownRate));
    rig.engine.setParameter(Tag::SlowdownRate, 0.0f);
    rig.idle();
    for (int i = 0; i < 120; ++i) {
        rig.user->wheel(knob, 1);
        rig.idle(1);
    }
    const float end = rig.engine.parameters.raw(Tag::SlowdownRate);
    for (int i = 0; i < 120; ++i)
        pressUndo(rig);
    EXPECT_FLOAT_EQ(rig.engine.parameters.raw(Tag::SlowdownRate), 0.0f);
    for (int i = 0; i < 120; ++i)
        pressRedo(rig);
    EXPECT_FLOAT_EQ(rig.engine.parameters.raw(Tag::SlowdownRate), end);
}

TEST(Undo, PagesAndPlayAreNoEdits)
{
    EditorRig rig;
    const StateImage first(rig.engine);
    rig.click(EditorRig::middle(*findControl(Tag::PageSecond)));
    rig.click(EditorRig::middle(*findControl(Tag::Play)));
    const StateImage turned(rig.engine);
    EXPECT_FALSE(turned == first);
    pressUndo(rig);
    EXPECT_TRUE(StateImage(rig.engine) == turned);
}

TEST(Undo, TheButtonsDoWhatTheKeysDo)
{
    EditorRig rig;
    rig.click(EditorRig::middle(*findControl(Tag::Looper)));
    EXPECT_EQ(rig.engine.parameters.index(Tag::Looper), 1);
    rig.click(EditorRig::middle(*findControl(kUndoTag)));
    EXPECT_EQ(rig.engine.parameters.index(Tag::Looper), 0);
    rig.click(EditorRig::middle(*findControl(kRedoTag)));
    EXPECT_EQ(rig.engine.parameters.index(Tag::Looper), 1);
}

TEST(Undo, AValueOfAPatternComesBackInItsPattern)
{
    EditorRig rig;
    const ControlRow& scale = *findControl(Tag::Scale);
    rig.engine.setParameter(scale.tag, 3.5f / 34);
    choosePattern(rig, 1);
    rig.engine.setParameter(scale.tag, 7.5f / 34);
    choosePattern(rig, 0);
    rig.click(EditorRig::middle(*findControl(Tag::ScaleUp))); // an arrow moves its list
    EXPECT_EQ(rig.engine.parameters.index(scale.tag), 4);
    choosePattern(rig, 1);
    pressUndo(rig);
    EXPECT_EQ(rig.engine.parameters.index(scale.tag), 7);
    choosePattern(rig, 0);
    EXPECT_EQ(rig.engine.parameters.index(scale.tag), 3);
    choosePattern(rig, 1);
    pressRedo(rig);
    EXPECT_EQ(rig.engine.parameters.index(scale.tag), 7);
    choosePattern(rig, 0);
    EXPECT_EQ(rig.engine.parameters.index(scale.tag), 4);
}

// The target of the first modulation track is stored with the patterns, but none of them sets it.
TEST(Undo, AValueThatPatternsStoreWithoutReplayingComesBackAtOnce)
{
    EditorRig rig;
    const auto moved = [&] { return rig.engine.parameters.index(Tag::ModTarget); };
    const int first = moved();
    const float storedElsewhere = rig.engine.patternStore.at(2, patternSlot(Tag::ModTarget));
    rig.click(EditorRig::middle(*findControl(57)));
    EXPECT_EQ(moved(), first + 1);
    choosePattern(rig, 2);
    pressUndo(rig);
    EXPECT_EQ(moved(), first);
    EXPECT_EQ(rig.engine.patternStore.at(2, patternSlot(Tag::ModTarget)), storedElsewhere);
}

TEST(Undo, TheRollAreaLeavesNothingToTakeBack)
{
    EditorRig rig;
    rig.engine.setParameter(Tag::LooperSteps, 0.4f);
    rig.engine.setParameter(Tag::Looper, 1.0f);
    rig.idle();
    const auto before = chunkOf(rig);
    const Place& area = findControl(548)->place;
    rig.user->drag({area.left + 8, area.bottom - 4}, {area.left + 8, area.top + 20});
    rig.idle();
    EXPECT_EQ(chunkOf(rig), before);
    pressUndo(rig);
    EXPECT_EQ(chunkOf(rig), before);
}

TEST(Undo, AClearedAssignmentComesBack)
{
    EditorRig rig;
    rig.engine.midiMap.addAssignment(7, Tag::LooperSteps, 0);
    rig.click(EditorRig::middle(*findControl(Tag::LooperSteps)), kRButton);
    const auto& menu = static_cast<KWOptionMenu&>(*rig.editor.getControl(kRightClickTag));
    rig.click({menu.rowRect(1).left + 10, menu.rowRect(1).top + 8});
    EXPECT_FALSE(rig.engine.midiMap.isAssigned(Tag::LooperSteps));
    pressUndo(rig);
    EXPECT_TRUE(rig.engine.midiMap.isAssigned(Tag::LooperSteps));
}

TEST(Undo, AStateFromTheHostBeginsAHistoryThatLeadsBackToTheSongBeforeIt)
{
    EditorRig rig;
    const auto first = chunkOf(rig);
    for (int presses = 0; presses < 2; ++presses)
        rig.click(EditorRig::middle(*findControl(Tag::ScaleUp)));
    const auto edited = chunkOf(rig);
    std::vector<uint32_t> state = first;
    ASSERT_EQ(rig.engine.setChunk(state.data(), VstInt32(state.size() * 4), false), 1);
    rig.idle();
    const auto loaded = chunkOf(rig);
    ASSERT_FALSE(edited == loaded);
    for (int presses = 0; presses < 3; ++presses) {
        pressUndo(rig);
        EXPECT_TRUE(chunkOf(rig) == edited);
    }
    pressRedo(rig);
    EXPECT_TRUE(chunkOf(rig) == loaded);
}

TEST(Undo, AStateFromTheHostBeforeAnyEditIsTheFirstThatThereIs)
{
    EditorRig rig;
    rig.engine.setParameter(Tag::Scale, 1.0f);
    auto state = chunkOf(rig);
    rig.engine.setParameter(Tag::Scale, 0.0f);
    ASSERT_EQ(rig.engine.setChunk(state.data(), VstInt32(state.size() * 4), false), 1);
    rig.idle();
    const StateImage loaded(rig.engine);
    pressUndo(rig);
    EXPECT_TRUE(StateImage(rig.engine) == loaded);
}

TEST(Undo, AProgramThatTheHostChoosesIsOneLevel)
{
    EditorRig rig;
    const auto first = chunkOf(rig);
    rig.click(EditorRig::middle(*findControl(Tag::ScaleUp)));
    const auto edited = chunkOf(rig);
    const std::string path = rig.engine.settings.presetSavePath(PresetKind::Global) + "/other";
    KWUniClient other(nullptr);
    other.setParameter(Tag::FilterCutoff, 0.125f);
    ASSERT_EQ(other.presets.save(PresetKind::Global, path), LoadResult::Done);
    ASSERT_EQ(rig.engine.library.load(PresetKind::Global, path + ".kwe"), LoadResult::Done);
    rig.idle();
    const auto loaded = chunkOf(rig);
    pressUndo(rig);
    EXPECT_TRUE(chunkOf(rig) == edited);
    pressRedo(rig);
    EXPECT_TRUE(chunkOf(rig) == loaded);
    pressUndo(rig);
    pressUndo(rig);
    EXPECT_TRUE(chunkOf(rig) == first);
}

namespace {

// As the keys do it while it records.
void recordNote(EditorRig& rig, int step, float pitch)
{
    rig.engine.tracks.pitch.setValue(step, pitch);
    rig.idle();
}

} // namespace

TEST(Undo, ATakeIsOneLevelHoweverLongItsPausesAre)
{
    EditorRig rig;
    const StateImage before(rig.engine);
    rig.engine.setParameter(Tag::Record, 1.0f);
    for (int step = 0; step < 5; ++step) {
        recordNote(rig, step, float(step - 7));
        rig.idle(100);
    }
    rig.engine.setParameter(Tag::Record, 0.0f);
    rig.idle(100);
    const StateImage recorded(rig.engine);
    ASSERT_EQ(recorded.changedSince(before), std::set<int>{Tag::Pitch});
    pressUndo(rig);
    EXPECT_TRUE(StateImage(rig.engine) == before);
    pressRedo(rig);
    EXPECT_TRUE(StateImage(rig.engine) == recorded);
}

TEST(Undo, EachTouchOfAControllerThatWritesStepsIsOneLevel)
{
    EditorRig rig;
    const auto turn = [&rig](int step, float from) {
        for (int i = 0; i < 8; ++i, rig.idle()) {
            rig.engine.sequencer.remoteStep = step;
            rig.engine.setParameter(Tag::Velocity, from + 0.05f * float(i));
        }
        rig.idle(100);
    };
    const StateImage first(rig.engine);
    turn(3, 0.1f);
    const StateImage second(rig.engine);
    turn(4, 0.3f);
    const StateImage third(rig.engine);
    ASSERT_FALSE(second == first);
    ASSERT_FALSE(third == second);
    pressUndo(rig);
    EXPECT_TRUE(StateImage(rig.engine) == second);
    pressUndo(rig);
    EXPECT_TRUE(StateImage(rig.engine) == first);
    pressRedo(rig);
    pressRedo(rig);
    EXPECT_TRUE(StateImage(rig.engine) == third);
}

// The hand draws in one track while the keys record into another, and neither takes the other's.
TEST(Undo, AGestureDuringATakeDividesIt)
{
    EditorRig rig;
    rig.engine.setParameter(Tag::Record, 1.0f);
    recordNote(rig, 0, -5);
    const StateImage first(rig.engine);
    rig.click(EditorRig::middle(*findControl(Tag::ScaleUp)));
    recordNote(rig, 1, -3);
    pressUndo(rig);
    pressUndo(rig);
    EXPECT_TRUE(StateImage(rig.engine) == first);
}

namespace {

// A player who does anything that can be taken back, with a mouse.
class RandomPlayer {
public:
    RandomPlayer(EditorRig& ownRig, unsigned seed) : rig(ownRig), random(seed)
    {
        for (const ControlRow& row : controlCatalogue())
            if (!row.place.empty() && scopeOf(row) != EditScope::None
                && row.kind != ControlClass::Hint && row.tag != Tag::KeyboardMode)
                controls.push_back(&row);
    }

    void play()
    {
        const ControlRow& row = *controls[size_t(below(int(controls.size())))];
        rig.show(row, false);
        if (!rig.editor.getControl(row.tag)->isLive())
            return; // the track is of the other kind
        rig.user->wait(2000);
        const CPoint from = somewhere(row);
        switch (row.kind) {
        case ControlClass::Menu:
            rig.click(from);
            if (row.action == Action::SetParameter && row.items != MenuItems::Targets)
                chooseRow(static_cast<KWOptionMenu&>(*rig.editor.getControl(row.tag)));
            else
                rig.user->key({.character = 0, .key = CKey::Escape, .modifiers = 0});
            break;
        case ControlClass::ListLine:
            rig.user->wheel(from, below(2) ? 1.0f : -1.0f);
            break;
        case ControlClass::Knob:
            rig.user->drag(from, {from.x + below(60) - 30, from.y + below(60) - 30});
            break;
        case ControlClass::Button:
        case ControlClass::SwitchLine:
            rig.click(from);
            break;
        default: // tables, loops, the roll area
            rig.user->drag(from, somewhere(row));
            break;
        }
        rig.idle();
    }

    int below(int end) { return std::uniform_int_distribution(0, end - 1)(random); }

private:
    CPoint somewhere(const ControlRow& row)
    {
        return {row.place.left + 1 + below(row.place.width() - 2),
            row.place.top + 1 + below(row.place.height() - 2)};
    }

    void chooseRow(KWOptionMenu& menu)
    {
        if (!menu.isOpen())
            return;
        const CRect line = menu.rowRect(below(menu.getEntryCount()));
        rig.click({line.left + 10, line.top + 8});
    }

    EditorRig& rig;
    std::mt19937 random;
    std::vector<const ControlRow*> controls;
};

// A few presets in the user's folder, each its own song.
void writePresets()
{
    KWUniClient engine(nullptr);
    for (int i = 0; i < 4; ++i) {
        engine.setParameter(Tag::GlobalRandom, 1.0f);
        engine.setParameter(Tag::GlobalRandom, 0.0f);
        engine.setParameter(Tag::FilterCutoff, 0.2f * float(i));
        engine.midiMap.addAssignment(20 + i, Tag::FilterCutoff, 0);
        const std::string name = "song " + std::to_string(i);
        for (const PresetKind kind : {PresetKind::Global, PresetKind::Synth})
            ASSERT_EQ(engine.presets.save(kind, engine.settings.presetSavePath(kind) + "/" + name),
                LoadResult::Done);
    }
}

} // namespace

TEST(Undo, WhateverWasPlayedComesBackByteForByte)
{
    writePresets();
    for (unsigned seed = 1; seed <= unsigned{rounds(3)}; ++seed) {
        EditorRig rig;
        RandomPlayer player(rig, seed);
        // The first pattern and the first page are no edits: every state is read there.
        const auto state = [&] {
            choosePattern(rig, 0);
            rig.show(*findControl(Tag::Swing));
            return chunkOf(rig);
        };
        const auto first = state();
        for (int i = 0; i < 150; ++i) {
            if (i % 7 == 6)
                choosePattern(rig, player.below(kPatterns));
            player.play();
        }
        const auto last = state();
        EXPECT_NE(first, last);
        for (int i = 0; i < 200; ++i)
            pressUndo(rig);
        EXPECT_TRUE(state() == first) << "seed " << seed;
        for (int i = 0; i < 200; ++i) {
            if (i % 5 == 4)
                choosePattern(rig, player.below(kPatterns));
            pressRedo(rig);
        }
        EXPECT_TRUE(state() == last) << "seed " << seed;
    }
}

} // namespace ormund
