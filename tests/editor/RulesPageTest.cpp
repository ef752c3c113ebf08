// The second page of the performance lines: when and how a step plays.
#include "data/tracks/StepRules.h"
#include "tests/editor/EditorRig.h"

#include <gtest/gtest.h>

namespace ormund {

namespace {
constexpr int kRules[] = {
    Tag::StepChance, Tag::StepCondition, Tag::StepRatchet, Tag::StepLate, Tag::StepStrum};

CPoint cell(int tag, int step)
{
    const Place& place = findControl(tag)->place;
    return {place.left + 18 * step + 9, (place.top + place.bottom) / 2};
}

bool shown(EditorRig& rig, int tag) { return rig.editor.getControl(tag)->isLive(); }
} // namespace

TEST(RulesPage, AClickOnThePageButtonFlipsTheLines)
{
    EditorRig rig;
    for (const bool rules : {false, true, false}) {
        for (const int tag : kRules)
            EXPECT_EQ(shown(rig, tag), rules) << tag;
        EXPECT_EQ(shown(rig, Tag::Chord), !rules);
        EXPECT_EQ(shown(rig, Tag::Performance), !rules);
        rig.click(EditorRig::middle(*findControl(Tag::PerformancePage)));
    }
}

TEST(RulesPage, TheWheelWritesAStepAndUndoTakesItBack)
{
    EditorRig rig;
    rig.click(EditorRig::middle(*findControl(Tag::PerformancePage)));
    for (const int tag : kRules) {
        const StepLine& line = *rig.engine.tracks.lineAt(tag);
        rig.user->move(cell(tag, 5));
        rig.user->wheel(cell(tag, 5), 1);
        rig.idle();
        EXPECT_EQ(line.step(5), 1.0f) << tag;
        EXPECT_EQ(rig.engine.tracks.chord.step(5), 0.0f);
        rig.click(EditorRig::middle(*findControl(kUndoTag)));
        EXPECT_EQ(line.step(5), 0.0f) << tag;
    }
}

// The sheet of a line without a picture of its own shows the line's cells, the dash first.
TEST(RulesPage, ASheetOffersEveryChoice)
{
    EditorRig rig;
    rig.click(EditorRig::middle(*findControl(Tag::PerformancePage)));
    for (const int tag : kRules) {
        const StepLine& line = *rig.engine.tracks.lineAt(tag);
        for (const int choice : {1, int(line.maximum.load()), 0}) {
            rig.click(cell(tag, 20));
            ASSERT_TRUE(rig.editor.getFrame()->modalControl) << tag;
            for (int i = 0; i < 110; ++i)
                rig.user->key({.key = CKey::Left});
            for (int i = 0; i < choice; ++i)
                rig.user->key({.key = CKey::Right});
            rig.user->key({.key = CKey::Return});
            rig.idle();
            EXPECT_EQ(line.step(20), float(choice)) << tag;
        }
    }
}

TEST(RulesPage, DrawingAndClearingKeepToTheShownPageAndCopyingTakesBoth)
{
    EditorRig rig;
    Tracks& tracks = rig.engine.tracks;
    tracks.selectRow(9);
    tracks.chord.setStep(1, 4);
    tracks.ratchet.setStep(1, 7);
    const auto press = [&](int tag) {
        rig.engine.setParameter(tag, 1);
        rig.engine.setParameter(tag, 0);
    };
    press(Tag::PerformanceCopy);
    press(Tag::PerformanceShiftForward);
    EXPECT_EQ(tracks.chord.step(2), 4.0f);
    EXPECT_EQ(tracks.ratchet.step(2), 7.0f);
    rig.engine.setParameter(Tag::PerformancePage, 1);
    press(Tag::PerformanceClear);
    EXPECT_EQ(tracks.chord.step(2), 4.0f);
    EXPECT_TRUE(tracks.ratchet.step(2) == 0);
    rig.engine.setParameter(Tag::PerformancePage, 0);
    press(Tag::PerformancePaste);
    EXPECT_EQ(tracks.chord.step(1), 4.0f);
    EXPECT_EQ(tracks.ratchet.step(1), 7.0f);
    press(Tag::PerformanceClear);
    EXPECT_EQ(tracks.chord.step(1), 0.0f);
    EXPECT_EQ(tracks.ratchet.step(1), 7.0f);
    // All tracks: the next pattern gets the rules too.
    press(Tag::GlobalCopy);
    tracks.selectRow(10);
    press(Tag::GlobalPaste);
    EXPECT_EQ(tracks.ratchet.step(1), 7.0f);
    press(Tag::GlobalRandom);
    EXPECT_EQ(tracks.ratchet.step(1), 7.0f);
    EXPECT_EQ(tracks.chance.step(1), 0.0f);
}

TEST(RulesPage, FillIsHeldAndNoMatterForUndo)
{
    EditorRig rig;
    const CPoint where = EditorRig::middle(*findControl(Tag::Fill));
    rig.user->move(where);
    rig.user->press(where);
    EXPECT_EQ(rig.engine.parameters.index(Tag::Fill), 1);
    rig.user->release(where);
    EXPECT_EQ(rig.engine.parameters.index(Tag::Fill), 0);
    for (int value = 1; value < kConditions; ++value)
        EXPECT_NE(stepCondition(value).kind, ConditionKind::None) << value;
}

} // namespace ormund
