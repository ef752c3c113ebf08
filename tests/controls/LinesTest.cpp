#include "tests/controls/ControlRig.h"

#include "controls/KWBtnLineView.h"
#include "controls/KWListLineView.h"
#include "controls/KWListLineViewMenu.h"
#include "controls/KWZoneView.h"
#include "data/music/KWSystemInfo.h"
#include "data/tracks/KWBtnLine.h"
#include "data/tracks/KWListLine.h"
#include "data/tracks/KWZoneHandlerContainer.h"

namespace ormund {

using testing::ElementsAre;

namespace {

std::vector<int> cells(const StepLine& line)
{
    std::vector<int> values;
    for (int i = 0; i < line.steps(); ++i)
        values.push_back(static_cast<int>(line.step(i)));
    return values;
}

// A row of eight cells, 10 pixels wide, at (100, 100).
class BtnLine : public ControlRig {
protected:
    BtnLine()
    {
        view = add<KWBtnLineView>(CRect(100, 100, 180, 110), 388);
        view->line = &line;
        view->strip = strip.get();
    }
    KWSystemInfo info;
    KWBtnLine line{&info, 8, 16};
    CShared<CBitmap> strip = makeStrip(10, 10, 3);
    CShared<CBitmap> running = makeStrip(10, 10, 9);
    KWBtnLineView* view;
};

TEST_F(BtnLine, AClickSwitchesAndCyclesUpToTheMaximum)
{
    user.click({125, 105});
    EXPECT_THAT(cells(line), ElementsAre(0, 0, 1, 0, 0, 0, 0, 0));
    user.click({125, 105});
    EXPECT_EQ(line.step(2), 0);
    line.maximum = 3.0f;
    for (const float expected : {1.0f, 2.0f, 3.0f, 0.0f}) {
        user.click({125, 105});
        EXPECT_EQ(line.step(2), expected);
    }
    ear.take();
    view->paintOnly = true;
    user.click({125, 105});
    EXPECT_EQ(line.step(2), 0);
    EXPECT_EQ(ear.take(), "[ ] ");
}

TEST_F(BtnLine, ADragPaintsThePressedValueOverAllCellsItCrossed)
{
    line.setStep(1, 1);
    user.press({115, 105});
    view->onMouseMoved({155, 105}, kLButton);
    user.release({155, 105});
    EXPECT_THAT(cells(line), ElementsAre(0, 1, 1, 1, 1, 1, 0, 0));
    user.press({175, 105}); // an empty cell erases, leftward too
    view->onMouseMoved({145, 105}, kLButton);
    user.release({145, 105});
    EXPECT_THAT(cells(line), ElementsAre(0, 1, 1, 1, 0, 0, 0, 0));
    user.press({165, 105}, kRButton);
    user.move({125, 105});
    user.release({125, 105}, kRButton);
    EXPECT_THAT(cells(line), ElementsAre(0, 1, 0, 0, 0, 0, 0, 0));
}

TEST_F(BtnLine, ARadioRowHasOneCellOrNone)
{
    view->exclusive = 1;
    user.click({115, 105});
    user.click({145, 105});
    EXPECT_THAT(cells(line), ElementsAre(0, 0, 0, 0, 1, 0, 0, 0));
    user.click({145, 105});
    EXPECT_THAT(cells(line), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0));
    user.wheel({115, 105}, -1);
    EXPECT_THAT(cells(line), ElementsAre(0, 1, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(ear.take(), "[ ] [ ] [ ] [ ] ");
}

TEST_F(BtnLine, CellsShowTheirFrameOnceTheyAreOnAndTheRunningOneItsOwn)
{
    view->runningStrip = running.get();
    line.maximum = 9.0f;
    line.setStep(1, 1);
    line.setStep(2, 2);
    EXPECT_EQ(shownFrame(105, 105), -1);
    EXPECT_EQ(shownFrame(115, 105), 0);
    EXPECT_EQ(shownFrame(125, 105), 1);
    line.setStep(3, 9);
    line.runningStep = 3.0f;
    EXPECT_EQ(shownFrame(135, 105), 8);
    line.setRow(5); // another pattern
    EXPECT_EQ(shownFrame(115, 105), -1);
}

TEST_F(BtnLine, WithoutALineNothingIsDrawnOrTaken)
{
    view->line = nullptr;
    EXPECT_EQ(view->onMouseDown({115, 105}, kLButton), kMouseEventNotHandled);
    EXPECT_FALSE(view->onWheel({115, 105}, 1, 0));
    idle(2);
    view->line = &line;
    view->strip = nullptr;
    view->setDirty(true);
    idle(2);
    EXPECT_EQ(view->cellAt(50), 0);
    EXPECT_EQ(view->cellAt(350), 7);
}

class ListLine : public ControlRig {
protected:
    ListLine()
    {
        line.range = 20.0f;
        line.maximum = 20.0f;
        view = add<KWListLineView>(CRect(100, 100, 260, 116), 337);
        view->line = &line;
        view->strip = strip.get();
    }
    KWListLineViewMenu& menu() { return *view->getMenu(); }
    CPoint cellOf(int index)
    {
        const CRect cell = menu().cellRect(index);
        return {(cell.left + cell.right) / 2, (cell.top + cell.bottom) / 2};
    }
    KWSystemInfo info;
    KWListLine line{&info, 8, 16};
    CShared<CBitmap> strip = makeStrip(20, 16, 20);
    KWListLineView* view;
};

TEST_F(ListLine, TheWheelWrapsAtBothEndsAndReachesTheMaximum)
{
    user.wheel({110, 108}, -1);
    EXPECT_EQ(line.step(0), 20);
    user.wheel({110, 108}, 1);
    EXPECT_EQ(line.step(0), 0);
    line.setStep(0, 3.7f); // mutating leaves fractions
    user.wheel({110, 108}, 1);
    EXPECT_EQ(line.step(0), 4);
}

TEST_F(ListLine, ModifiersPaintClearAndClearTheRow)
{
    for (int i = 0; i < 8; ++i)
        line.setStep(i, static_cast<float>(i + 1));
    user.press({150, 108}, kLButton, kShift); // cell 2 holds 3
    user.move({190, 108}, kShift);
    user.release({190, 108});
    EXPECT_THAT(cells(line), ElementsAre(1, 2, 3, 3, 3, 6, 7, 8));
    user.press({210, 108}, kRButton);
    user.move({230, 108});
    user.release({230, 108}, kRButton);
    EXPECT_THAT(cells(line), ElementsAre(1, 2, 3, 3, 3, 0, 0, 8));
    user.click({110, 108}, kRButton, kControl);
    EXPECT_EQ(line.step(0), 0);
    EXPECT_EQ(line.step(1), 2);
    user.click({110, 108}, kLButton, kControl);
    EXPECT_THAT(cells(line), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(ear.take(), "[ ] [ ] [ ] [ ] ");
}

TEST_F(ListLine, AClickOpensTheGridAndAClickInItChooses)
{
    user.click({130, 108});
    ASSERT_TRUE(view->menuOpen);
    EXPECT_EQ(frame->modalControl, &menu());
    EXPECT_EQ(menu().cellCount(), 20);
    EXPECT_GE(menu().getViewSize().left, view->getViewSize().left);
    user.click(cellOf(19)); // the last one is within reach
    EXPECT_EQ(line.step(1), 20);
    EXPECT_FALSE(view->menuOpen);
    EXPECT_EQ(frame->modalControl, nullptr);
    EXPECT_EQ(ear.take(), "[ ] ");
    EXPECT_FALSE(frame->isChild(&menu()));

    user.click({130, 108});
    user.click({390, 290}); // beside the grid
    EXPECT_FALSE(view->menuOpen);
    EXPECT_EQ(line.step(1), 20);
}

TEST_F(ListLine, PressHoldAndLetGoOnACellChoosesToo)
{
    user.press({130, 108});
    user.move(cellOf(4));
    user.release(cellOf(4));
    EXPECT_EQ(line.step(1), 5);
    EXPECT_FALSE(view->menuOpen);
}

TEST_F(ListLine, AGridThatOffersZeroIsNotShifted)
{
    line.maximum = 15.0f;
    menu().isShiftedByOne = false;
    menu().zeroText = "x1";
    line.setStep(0, 7);
    user.click({110, 108});
    EXPECT_EQ(menu().cellCount(), 16);
    EXPECT_EQ(menu().getValue(), 7);
    idle();
    user.click(cellOf(0));
    EXPECT_EQ(line.step(0), 0);
}

TEST_F(ListLine, ArrowKeysWalkTheGridAndTheFrameRepaintsAfterIt)
{
    user.click({130, 108});
    user.key({.key = CKey::Right});
    EXPECT_EQ(line.step(1), 1);
    user.key({.key = CKey::Down});
    EXPECT_EQ(line.step(1), 9);
    user.key({.key = CKey::Up});
    user.key({.key = CKey::Up}); // no row above
    EXPECT_EQ(line.step(1), 1);
    user.key({.key = CKey::Escape});
    EXPECT_FALSE(view->menuOpen);
    idle();
    EXPECT_EQ(shownFrame(130, 108), 0);
}

TEST_F(ListLine, AViewThatGoesTakesItsOpenGridAlong)
{
    user.click({130, 108});
    frame->removeView(view);
    EXPECT_EQ(frame->modalControl, nullptr);
    idle();
}

class Zones : public ControlRig {
protected:
    Zones()
    {
        view = add<KWZoneView>(CRect(100, 100, 260, 109), 264, &loop);
        loop.setZone(0, {4, 11});
        loop.setRow(0);
    }
    std::pair<int, int> zone() { return {loop.current().start, loop.current().end}; }
    KWZoneHandlerContainer loop{16, 16}; // columns of 10 pixels
    KWZoneView* view;
};

TEST_F(Zones, TheBarsFifthsDragItsEndsAndItsMiddleMovesIt)
{
    user.drag({142, 104}, {115, 104});
    EXPECT_EQ(zone(), std::pair(1, 11));
    user.drag({218, 104}, {245, 104});
    EXPECT_EQ(zone(), std::pair(1, 14));
    user.drag({180, 104}, {190, 104});
    EXPECT_EQ(zone(), std::pair(2, 15));
    user.drag({180, 104}, {390, 104}); // the track's end keeps the length
    EXPECT_EQ(zone(), std::pair(2, 15));
    user.drag({180, 104}, {0, 104});
    EXPECT_EQ(zone(), std::pair(0, 13));
    const std::string heard = ear.take();
    EXPECT_EQ(std::count(heard.begin(), heard.end(), '['), 5);
}

TEST_F(Zones, EndsDoNotPassEachOtherSoOneStepIsLeft)
{
    user.drag({142, 104}, {255, 104});
    EXPECT_EQ(zone(), std::pair(11, 11));
    user.drag({219, 104}, {105, 104});
    EXPECT_EQ(zone(), std::pair(11, 11));
}

TEST_F(Zones, BesideTheBarANewOneIsDrawnAndADoubleClickTakesTheTrack)
{
    user.press({125, 104});
    EXPECT_EQ(zone(), std::pair(2, 2));
    user.move({105, 104});
    EXPECT_EQ(zone(), std::pair(0, 2));
    user.release({105, 104});
    user.wait(1000);
    user.doubleClick({235, 104});
    EXPECT_EQ(zone(), std::pair(0, 15));
    loop.setZone(0, {4, 5});
    view->canEdit = false;
    user.wait(1000);
    user.press({235, 104});
    EXPECT_EQ(zone(), std::pair(4, 5));
    user.release({235, 104});
}

TEST_F(Zones, EachPatternHasItsOwnBarAndKeysMoveIt)
{
    loop.setRow(3);
    user.click({180, 104});
    user.key({.key = CKey::Right}); // the whole track has no room to move
    EXPECT_EQ(zone(), std::pair(0, 15));
    loop.setZone(3, {2, 3});
    user.key({.key = CKey::Right});
    EXPECT_EQ(zone(), std::pair(3, 4));
    loop.setRow(0);
    EXPECT_EQ(zone(), std::pair(4, 11));
}

TEST_F(Zones, TheStripShowsOutsideCapsAndInsideAndBothCapsInASingleStep)
{
    auto strip = makeStrip(10, 9, 4);
    view->strip = strip.get();
    std::vector<int> shown;
    for (const int column : {3, 4, 7, 11, 12})
        shown.push_back(shownFrame(105 + column * 10, 104));
    EXPECT_THAT(shown, ElementsAre(0, 1, 2, 3, 0));
    loop.setZone(0, {4, 4});
    EXPECT_EQ(shownFrame(142, 104), 1);
    EXPECT_EQ(shownFrame(148, 104), 3);
    view->handler = nullptr;
    EXPECT_EQ(view->onMouseDown({105, 104}, kLButton), kMouseEventNotHandled);
    idle();
}

TEST_F(Zones, ItsButtonsResetAndStepTheBarOnValueOne)
{
    KWControl button({}, nullptr, 10066, frame);
    view->valueChanged(&button);
    EXPECT_EQ(zone(), std::pair(4, 11));
    button.setValue(1);
    view->valueChanged(&button);
    EXPECT_EQ(zone(), std::pair(5, 12));
    button.setTag(10065);
    view->valueChanged(&button);
    EXPECT_EQ(zone(), std::pair(4, 11));
    button.setTag(10063);
    view->valueChanged(&button);
    EXPECT_EQ(zone(), std::pair(0, 15));
}

} // namespace

} // namespace ormund
