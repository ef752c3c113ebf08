#include "tests/controls/ControlRig.h"

#include "controls/KWButton.h"
#include "controls/KWTableView.h"
#include "data/music/KWSystemInfo.h"
#include "data/tracks/KWTableXY.h"
#include "platform/Messages.h"

#include <limits>

namespace ormund {

using testing::ElementsAre;
using testing::FloatNear;

namespace {

constexpr uint32_t kBarWord = 0x1220200; // the continuous tracks
constexpr uint32_t kPitchWord = 0x1A28300;

// A grid of eight steps, 10 by 100 pixels each, at (100, 100).
class Grid : public ControlRig {
protected:
    Grid()
    {
        table.setFlags(kBarWord);
        view = add<KWTableView>(CRect(100, 100, 180, 200), 89, true);
        view->setTable(&table);
    }
    std::vector<float> steps(int count = 8)
    {
        std::vector<float> values;
        for (int i = 0; i < count; ++i)
            values.push_back(std::round(table.getNormalized(static_cast<float>(i)) * 1000) / 1000);
        return values;
    }
    void fill(float level)
    {
        for (int i = 0; i < table.size(); ++i)
            table.setNormalized(static_cast<float>(i), level);
    }

    KWSystemInfo info;
    KWTableXY table{&info, 8};
    KWTableView* view;
};

TEST_F(Grid, MapsPixelsToStepsAndValues)
{
    EXPECT_EQ(view->screenToStep(0), 0);
    EXPECT_FLOAT_EQ(view->screenToStep(125), 2.5f);
    EXPECT_EQ(view->screenToStep(300), 7);
    EXPECT_EQ(view->screenToValue(50), 1);
    EXPECT_FLOAT_EQ(view->screenToValue(175), 0.25f);
    EXPECT_EQ(view->screenToValue(300), 0);
    table.setFlags(kPitchWord);
    EXPECT_EQ(view->screenToStep(125), 2);
    EXPECT_EQ(view->screenToStep(180), 7); // the last pixel, not a ninth cell
    view->zoomY = 0.2f;                    // twice as high, around the middle
    EXPECT_FLOAT_EQ(view->screenToValue(150), 0.5f);
    EXPECT_FLOAT_EQ(view->screenToValue(125), 0.625f);
}

TEST_F(Grid, AFastSweepLeavesNoGapsAndIsOneGesture)
{
    user.press({105, 150});
    view->onMouseMoved({155, 100}, kLButton); // one event over five cells, halfway to the top
    EXPECT_THAT(steps(),
        ElementsAre(FloatNear(0.5f, 0.08f), FloatNear(0.6f, 0.08f), FloatNear(0.7f, 0.08f),
            FloatNear(0.8f, 0.08f), FloatNear(0.9f, 0.08f), 1.0f, 0, 0));
    user.release({155, 100});
    EXPECT_EQ(ear.take(), "[ ] ");
}

TEST_F(Grid, ADragOutToTheRightKeepsPaintingTheLastStepUntilAMoveWithoutButtons)
{
    user.press({165, 150});
    user.move({390, 100});
    EXPECT_EQ(steps()[7], 1);
    view->onMouseMoved({390, 200}, 0); // the release happened elsewhere
    EXPECT_EQ(steps()[7], 0);
    EXPECT_EQ(ear.take(), "[ ] ");
    view->onMouseMoved({165, 100}, kLButton);
    EXPECT_EQ(steps()[7], 0);
    user.release({390, 100});
}

TEST_F(Grid, AControlDragDrawsARampThatIsMadeAnewAtEachMove)
{
    fill(0.5f);
    user.press({105, 200 - 1}, kLButton, kControl);
    user.move({145, 120}, kControl);
    const std::vector<float> ramp = steps();
    EXPECT_NEAR(ramp[0], 0.01f, 1e-3);
    EXPECT_NEAR(ramp[2], 0.405f, 1e-3);
    EXPECT_NEAR(ramp[4], 0.8f, 1e-3);
    EXPECT_FLOAT_EQ(ramp[5], 0.5f);
    user.move({145, 160}, kControl);
    EXPECT_NEAR(steps()[2], 0.205f, 1e-3);
    user.move({105, 100}, kControl); // back on the pressed step it takes the new level
    EXPECT_EQ(steps()[0], 1);
    user.release({105, 100});
    user.press({165, 100}, kLButton, kControl); // leftward too
    user.move({145, 200}, kControl);
    user.release({145, 200});
    EXPECT_NEAR(steps()[5], 0.5f, 1e-3);
    EXPECT_NEAR(steps()[4], 0, 1e-3);
}

TEST_F(Grid, AnAltDragTiltsTheWholeRowAndComesBackToItsShape)
{
    for (int i = 0; i < 8; ++i)
        table.setNormalized(static_cast<float>(i), static_cast<float>(i) * 0.1f);
    const std::vector<float> shape = steps();
    user.press({105, 150}, kLButton, kAlt);
    EXPECT_EQ(steps(), shape); // the press itself changes nothing
    user.move({105, 50}, kAlt);
    EXPECT_FLOAT_EQ(steps()[1], 0.3f);
    user.move({105, -150}, kAlt);
    EXPECT_EQ(steps()[7], 1); // limited by itself
    EXPECT_FLOAT_EQ(steps()[0], 0.6f);
    user.move({105, 150}, kAlt);
    EXPECT_EQ(steps(), shape);
    user.release({105, 150});
    EXPECT_EQ(ear.take(), "[ ] ");
}

TEST_F(Grid, AShiftDragIsFineStaysOnItsStepAndOutlivesTheKey)
{
    user.press({125, 150}, kLButton, kShift);
    user.move({175, 100}, 0); // the key is up again
    EXPECT_THAT(steps(), ElementsAre(0, 0, 0.6f, 0, 0, 0, 0, 0));
    user.release({175, 100});
    user.press({125, 150});
    user.move({135, 100});
    EXPECT_EQ(steps()[3], 1);
    user.release({135, 100});
}

TEST_F(Grid, TheWheelNudgesOneStep)
{
    user.wheel({125, 150}, 1);
    EXPECT_FLOAT_EQ(table.getNormalized(2), 0.0175f);
    user.wheel({125, 150}, 1, kShift);
    EXPECT_FLOAT_EQ(table.getNormalized(2), 0.021875f);
    user.wheel({125, 150}, -9);
    EXPECT_EQ(table.getNormalized(2), 0);
    EXPECT_EQ(ear.take(), "[ ] [ ] [ ] ");
}

TEST_F(Grid, ARawTableGoesByWholeNumbersWhateverTheWheelDoes)
{
    table.setRange(-12, 12, 0);
    table.setFlags(kPitchWord);
    table.clear();
    for (const float distance : {1.0f, 0.1f, 5.0f})
        view->onWheel({125, 150}, distance, kShift);
    EXPECT_EQ(table.getAtIndex(2), 3);
    view->onWheel({125, 150}, 0, 0);
    EXPECT_EQ(table.getAtIndex(2), 2); // no motion counts as down
    for (int i = 0; i < 40; ++i)
        view->onWheel({125, 150}, -1, 0);
    EXPECT_EQ(table.getAtIndex(2), -12);
}

TEST_F(Grid, ToggleTablesFlipBetweenTheirEnds)
{
    table.setFlags(kBarWord | kTableToggle);
    user.click({125, 150});
    EXPECT_EQ(steps()[2], 1);
    table.setNormalized(2, 0.3f);
    user.click({125, 150});
    EXPECT_EQ(steps()[2], 0);
    EXPECT_EQ(ear.take(), "[ ] [ ] ");
}

TEST_F(Grid, TheRightButtonPaintsWithoutAPopupAndAsksWithTheStepElse)
{
    user.press({125, 150}, kRButton);
    user.release({125, 150}, kRButton);
    EXPECT_FLOAT_EQ(steps()[2], 0.5f);
    struct StepPopup : KWControl {
        using KWControl::KWControl;
        void beginModal(int, const CPoint*, long forTag) override { tagSeen = forTag; }
        void setMenuStep(int step) override { stepSeen = step; }
        long tagSeen = 0;
        int stepSeen = -1;
    } popup({}, &ear, 1, frame);
    view->setPopupControl(&popup);
    user.press({145, 120}, kRButton);
    EXPECT_EQ(popup.tagSeen, 89);
    EXPECT_EQ(popup.stepSeen, 4);
    EXPECT_EQ(steps()[4], 0);
}

TEST_F(Grid, TablesThatAreNotEditableOrEmptyLetTheMouseThrough)
{
    table.setFlags(0x808000);
    EXPECT_EQ(view->onMouseDown({125, 150}, kLButton), kMouseEventNotHandled);
    EXPECT_FALSE(view->onWheel({125, 150}, 1, 0));
    view->setTable(nullptr);
    EXPECT_EQ(view->onMouseDown({125, 150}, kLButton), kMouseEventNotHandled);
    idle();
    EXPECT_EQ(view->screenToStep(150), 0);
}

TEST_F(Grid, ThePressFlagStandsFromThePressToTheRelease)
{
    Crossing<float> flag = 0.0f;
    view->pressFlag = &flag;
    user.press({125, 150});
    EXPECT_EQ(flag, 1.0f);
    user.release({125, 150});
    EXPECT_EQ(flag, 0.0f);
}

TEST_F(Grid, FramesAreTruncatedAndOnlyOneShowsTheLastFrame)
{
    auto strip = makeStrip(10, 100, 11);
    view->setStrip(strip.get(), 11);
    table.setFlags(kBarWord & ~static_cast<uint32_t>(kTableConnect));
    const float levels[] = {0, 0.05f, 0.1001f, 0.999f, 1};
    for (int i = 0; i < 5; ++i)
        table.setNormalized(static_cast<float>(i), levels[i]);
    std::vector<int> shown;
    for (int i = 0; i < 5; ++i)
        shown.push_back(shownFrame(105 + i * 10, 150));
    EXPECT_THAT(shown, ElementsAre(0, 0, 1, 9, 10));
}

TEST_F(Grid, RawTablesShowTheFrameOfTheirNumberAndLinesBetweenTheNoteHeights)
{
    auto strip = makeStrip(10, 100, 25);
    const std::vector<int> heights{1, 3, 6, 8, 12, 15, 19, 21, 24, 26, 28, 30, 33, 36, 38, 40, 42,
        45, 47, 51, 54, 58, 60, 63, 65};
    table.setRange(-12, 12, 0);
    table.setFlags(kPitchWord);
    table.clear();
    table.setValue(0, -12);
    table.setValue(1, 12);
    table.setValue(2, 12);
    view->setTable(&table);
    view->setStrip(strip.get(), 25);
    view->noteHeights = &heights;
    view->colorLine = kWhiteCColor;
    EXPECT_EQ(shownFrame(105, 150), 0);
    EXPECT_EQ(shownFrame(115, 150), 24);
    EXPECT_EQ(shownFrame(135, 150), 12);
    EXPECT_EQ(window->pixel(109, 200 - 30), 0xFFFFFFu); // from height 1 up to height 65
    EXPECT_NE(window->pixel(109, 200 - 70), 0xFFFFFFu);
    EXPECT_NE(window->pixel(119, 200 - 30), 0xFFFFFFu); // no line between equal notes
}

TEST_F(Grid, NeighboursAreConnectedFromTheLowerEdgeToTheNextTop)
{
    auto strip = makeStrip(10, 100, 2);
    view->setStrip(strip.get(), 2);
    view->colorLine = kWhiteCColor;
    table.setNormalized(0, 0.25f);
    table.setNormalized(1, 0.75f);
    idle();
    const auto isLine = [&](int x, int y) { return window->pixel(x, y) == 0xFFFFFFu; };
    EXPECT_TRUE(isLine(109, 150));
    EXPECT_FALSE(isLine(108, 150));
    EXPECT_FALSE(isLine(109, 200 - 78));
    EXPECT_FALSE(isLine(109, 200 - 20));
    EXPECT_TRUE(isLine(119, 150)); // and down to the empty third step
}

TEST_F(Grid, ItRepaintsForAnyChangeOfTheTableAndForNothingElse)
{
    auto strip = makeStrip(10, 100, 11);
    view->setStrip(strip.get(), 11);
    const auto repaints = [&] {
        const int before = window->presents;
        idle(2);
        return window->presents - before;
    };
    // With polled steps or by the count of writes, which pattern changes raise too.
    for (const uint32_t word : {0x848380u, kBarWord}) {
        table.setFlags(word);
        view->setTable(&table);
        idle(3);
        EXPECT_EQ(repaints(), 0);
        table.setRowPosition(0);
        table.setValue(3, 0.5f);
        EXPECT_EQ(repaints(), 1) << word;
        table.setRowCount(2);
        table.rowTable(1).setValue(0, 1);
        idle(2);
        table.setRowPosition(1); // another pattern
        EXPECT_EQ(repaints(), 1) << word;
    }
    table.setFlags(0x848380u);
    idle(2);
    table.runningPosition = 4.0f;
    EXPECT_EQ(repaints(), 1);
    view->setVisible(false);
    idle(2);
    table.setValue(3, 0.75f);
    EXPECT_EQ(repaints(), 0);
}

TEST_F(Grid, TheLayoutGivesRulerAndLoopBarTheirStrips)
{
    table.setFlags(kTableRuler | kTableLoopBar);
    view->showExtra = true;
    view->setTable(&table);
    EXPECT_EQ(view->rulerRect, CRect(100, 100, 180, 108));
    EXPECT_EQ(view->extraRect, CRect(182, 100, 192, 108));
    EXPECT_EQ(view->gridRect, CRect(100, 108, 180, 190));
    EXPECT_EQ(view->loopRect, CRect(100, 190, 180, 200));
    table.setFlags(kTableRelayout); // seen against the stamp at the next idle
    idle();
    EXPECT_EQ(view->gridRect, CRect(100, 100, 180, 200));
}

TEST_F(Grid, TheLoopBarDragsItsEndsAndMoves)
{
    table.setFlags(kTableEditable | kTableLoopBar | kTableCells);
    view->setTable(&table);
    table.loopStart = 2.0f;
    table.loopEnd = 6.0f;
    const auto loop = [&] { return std::pair(table.loopStart.load(), table.loopEnd.load()); };
    user.press({145, 195}); // in its middle
    user.move({155, 195});
    EXPECT_EQ(loop(), std::pair(3.0f, 7.0f));
    user.release({155, 195});
    user.drag({130, 195}, {112, 195}); // near its start
    EXPECT_EQ(loop(), std::pair(1.0f, 7.0f));
    user.drag({168, 195}, {142, 195}); // near its end
    EXPECT_EQ(loop(), std::pair(1.0f, 4.0f));
    user.drag({104, 195}, {150, 195}); // before it: nothing until the next press inside
    EXPECT_EQ(loop(), std::pair(1.0f, 4.0f));
    EXPECT_EQ(steps(), std::vector<float>(8, 0.0f));
    user.press({112, 195});
    user.move({175, 195}); // squeezed past its own end
    user.release({175, 195});
    EXPECT_EQ(loop(), std::pair(7.0f, 4.0f)); // the end that would lie past the table stays
}

TEST_F(Grid, ChildButtonsCopyPasteRandomiseAndResetOnValueOneAlone)
{
    KWButton button({}, &ear, KWTableView::kCopy, frame, "", true, 0);
    table.copyFamily = 3;
    table.clipboardKey = 19;
    fill(0.25f);
    view->valueChanged(&button);
    fill(0.75f);
    button.setTag(KWTableView::kPaste);
    button.setValue(0);
    view->valueChanged(&button);
    EXPECT_FLOAT_EQ(steps()[0], 0.75f);
    button.setValue(1);
    view->valueChanged(&button);
    EXPECT_FLOAT_EQ(steps()[0], 0.25f);
    button.setTag(KWTableView::kReset);
    view->valueChanged(&button);
    EXPECT_EQ(steps(), std::vector<float>(8, 0.0f));
    info.randomMin = 0.2f;
    info.randomMax = 0.9f;
    button.setTag(KWTableView::kRandomise);
    view->valueChanged(&button);
    EXPECT_NE(steps(), std::vector<float>(8, 0.0f));
    forgetMessage();
    button.setTag(1);
    testing::internal::CaptureStderr();
    view->valueChanged(&button);
    testing::internal::GetCapturedStderr();
    EXPECT_THAT(
        currentMessage(), testing::StartsWith("unknown value innKWTableView valuechanged : val:"));
    forgetMessage();
}

TEST_F(Grid, ALockedTableSkipsDrawingAndPainting)
{
    auto strip = makeStrip(10, 100, 11);
    view->setStrip(strip.get(), 11);
    fill(1);
    ASSERT_EQ(shownFrame(105, 150), 10);
    {
        const KWTable::RebuildScope loading(table);
        view->setDirty(true);
        EXPECT_EQ(shownFrame(105, 150), -1);
        EXPECT_FALSE(table.reading.isRaised());
    }
    view->setDirty(true);
    EXPECT_EQ(shownFrame(105, 150), 10);
    EXPECT_FALSE(table.reading.isRaised());
}

TEST_F(Grid, TheColourModeDrawsBarsCurvesAndItsStrips)
{
    table.setFlags(kTableEditable | kTableRunningStep);
    view->setTable(&table);
    view->colorBack = CColor::hex(0x101010);
    view->colorBar = CColor::hex(0xFF0000);
    view->colorOther = CColor::hex(0x00FF00);
    fill(0.5f);
    table.runningPosition = 3.0f;
    idle();
    EXPECT_EQ(window->pixel(105, 190), 0x00FF00u);
    EXPECT_EQ(window->pixel(135, 190), 0xFF0000u);
    EXPECT_EQ(window->pixel(105, 120), 0x101010u);
    table.setFlags(kTableCurve | kTableRuler | kTableLoopBar | kTableBeatGrid | kTableCentreLine
        | kTableDropLines | kTableDashGrid);
    view->drawZeroLine = view->drawDefaultLine = true;
    view->overlayTable = &table;
    view->colorLine = kWhiteCColor;
    view->setTable(&table);
    idle();
    EXPECT_EQ(window->pixel(133, 180), 0xFFFFFFu); // a drop line
}

} // namespace

} // namespace ormund
