#include "tests/editor/EditorRig.h"

#include "editor/UndoHistory.h"

#include <gmock/gmock.h>

namespace {

void pressUndo(EditorRig& rig)
{
    rig.user->key({.character = U'z', .key = CKey::None, .modifiers = kControl});
}
void pressRedo(EditorRig& rig)
{
    rig.user->key({.character = U'Z', .key = CKey::None, .modifiers = kControl | kShift});
}

} // namespace

TEST(UndoHistory, ANewLevelEndsWhatCouldBeRedone)
{
    UndoHistory history;
    history.push({});
    EXPECT_FALSE(history.canUndo());
    for (uint32_t i = 0; i < 5; ++i)
        history.push({{i, 0, 1}});
    EXPECT_EQ(history.undo()->front().cell, 4u);
    EXPECT_EQ(history.undo()->front().cell, 3u);
    EXPECT_EQ(history.redo()->front().cell, 3u);
    history.push({{9, 0, 1}});
    EXPECT_EQ(history.redo(), nullptr);
    EXPECT_EQ(history.undo()->front().cell, 9u);
    EXPECT_EQ(history.undo()->front().cell, 3u);
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
    rig.click(EditorRig::middle(*findControl(Tag::PageTwin)));
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
