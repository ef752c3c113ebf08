#include "tests/controls/ControlRig.h"

#include "controls/KWButton.h"
#include "controls/KWLocalLink.h"

namespace ormund {

namespace {

class Buttons : public ControlRig {
protected:
    KWButton* button(int type, int states = 2)
    {
        auto* made = add<KWButton>(CRect(10, 10, 50, 30), 6, "", false, type);
        made->stateCount = states;
        return made;
    }
    // What the listener hears of a press, of a move and of the release.
    std::string clicked(int type, const CPoint& releaseAt, int mouseButton = kLButton)
    {
        auto* made = button(type);
        user.press({20, 20}, mouseButton);
        std::string heard = ear.take() + "| ";
        user.release(releaseAt, mouseButton);
        heard += ear.take();
        frame->removeView(made);
        return heard;
    }
};

TEST_F(Buttons, EachTypeTellsAtItsOwnMoments)
{
    const CPoint inside(22, 22);
    const CPoint outside(200, 200);
    EXPECT_EQ(clicked(KWButton::kMomentary, inside), "[ 6=1 ] | [ 6=0 ] ");
    EXPECT_EQ(clicked(KWButton::kMomentary, outside), "[ 6=1 ] | [ 6=0 ] ");
    EXPECT_EQ(clicked(KWButton::kCycle, inside), "[ 6=1 ] | ");
    EXPECT_EQ(clicked(KWButton::kTrigger, inside), "[ 6=1 ] | ");
    EXPECT_EQ(clicked(KWButton::kTriggerToo, inside), "[ 6=1 ] | ");
    EXPECT_EQ(clicked(KWButton::kHeld, inside), "[ 6=1 ] | [ 6=0 ] ");
    EXPECT_EQ(clicked(KWButton::kToggleTwo, inside), "[ 6=1 ] | ");
    EXPECT_EQ(clicked(KWButton::kToggleTwo, inside, kRButton), "[ 6=2 ] | ");
    EXPECT_EQ(clicked(KWButton::kOnRelease, inside), "| [ 6=1 ] ");
    EXPECT_EQ(clicked(KWButton::kOnRelease, outside), "| ");
}

TEST_F(Buttons, ACycleWrapsAndOnlyMoreThanTwoStatesCanBeResetByTheRightButton)
{
    auto* three = button(KWButton::kCycle, 3);
    for (const float expected : {1.0f, 2.0f, 0.0f, 1.0f}) {
        user.click({20, 20});
        EXPECT_EQ(three->getValue(), expected);
    }
    user.click({20, 20}, kRButton);
    EXPECT_EQ(three->getValue(), 0);
    three->stateCount = 2;
    user.click({20, 20}, kRButton);
    EXPECT_EQ(three->getValue(), 1);
}

// Normal, pressed, hover: a momentary button is 1 while it is down and has no second state to show.
TEST_F(Buttons, AMomentaryButtonStaysInSightWhileItIsHeld)
{
    const auto strip = makeStrip(40, 20, 3);
    auto* made = button(KWButton::kMomentary);
    made->setBackground(strip.get());
    made->frameMask = KWButton::kPressedFrame | KWButton::kHoverFrame;
    EXPECT_EQ(shownFrame(20, 20), 0);
    user.move({20, 20});
    EXPECT_EQ(shownFrame(20, 20), 2);
    user.press({20, 20});
    EXPECT_EQ(shownFrame(20, 20), 1);
    user.release({20, 20});
    EXPECT_EQ(shownFrame(20, 20), 2);
    // Two states have three pictures each.
    const auto longer = makeStrip(40, 20, 6);
    made->setBackground(longer.get());
    made->buttonType = KWButton::kHeld;
    user.press({20, 20});
    EXPECT_EQ(shownFrame(20, 20), 4);
    user.release({20, 20});
}

TEST_F(Buttons, AHeldButtonWaitsForTheLastMouseButton)
{
    auto* held = button(KWButton::kHeld);
    held->onMouseDown({20, 20}, kLButton);
    held->onMouseUp({20, 20}, kRButton); // the right one is still down
    EXPECT_EQ(held->getValue(), 1);
    held->onMouseUp({20, 20}, 0);
    EXPECT_EQ(held->getValue(), 0);
}

TEST_F(Buttons, TheSecondOnStateStaysUntilTheNextPressOfAnyButton)
{
    auto* two = button(KWButton::kToggleTwo);
    user.click({20, 20}, kRButton);
    EXPECT_EQ(two->getValue(), 2);
    user.click({20, 20});
    EXPECT_EQ(two->getValue(), 0);
}

TEST_F(Buttons, AMomentaryButtonWithMovementTellsOfFreeMoves)
{
    auto* moving = button(KWButton::kMomentaryMoving);
    user.press({20, 20});
    user.release({20, 20});
    ear.take();
    moving->onMouseMoved({25, 20}, 0);
    moving->onMouseMoved({26, 20}, kLButton);
    EXPECT_EQ(ear.take(), "[ 6=0 ] ");
}

TEST_F(Buttons, FramesStandAsNormalPressedHoverForEachState)
{
    auto strip = makeStrip(40, 20, 6);
    auto* cycle = button(KWButton::kCycle);
    cycle->setBackground(strip.get());
    cycle->frameMask = KWButton::kPressedFrame | KWButton::kHoverFrame;
    EXPECT_EQ(shownFrame(20, 20), 0);
    user.move({20, 20});
    EXPECT_EQ(shownFrame(20, 20), 2);
    user.press({20, 20});
    EXPECT_EQ(shownFrame(20, 20), 4); // on, pressed
    user.release({20, 20});
    EXPECT_EQ(shownFrame(20, 20), 5);
    user.move({200, 200});
    EXPECT_EQ(shownFrame(20, 20), 3);
    cycle->frameMask = 0; // a strip of states alone
    cycle->setDirty(true);
    EXPECT_EQ(shownFrame(20, 20), 1);
    cycle->frameMask = KWButton::kHoverFrame;
    user.move({20, 20});
    EXPECT_EQ(shownFrame(20, 20), 3);
}

TEST_F(Buttons, ItFollowsItsSourcesAndCyclesFromThem)
{
    struct Switch : KWStateSource {
        bool isOn() const override { return on; }
        bool on = false;
    } state;
    auto strip = makeStrip(40, 20, 2);
    auto* follower = button(KWButton::kCycle);
    follower->setBackground(strip.get());
    Crossing<float> source = 0.0f;
    follower->valueSource = &source;
    EXPECT_EQ(shownFrame(20, 20), 0);
    source = 1.0f;
    EXPECT_EQ(shownFrame(20, 20), 1);
    user.click({20, 20});
    EXPECT_EQ(ear.take(), "[ 6=0 ] "); // from the engine's 1, whatever was shown
    follower->valueSource = nullptr;
    follower->stateSource = &state;
    state.on = true;
    EXPECT_EQ(shownFrame(20, 20), 1);
}

TEST_F(Buttons, APressOutsideTheAreaOrWhileHiddenIsRefused)
{
    auto* plain = button(KWButton::kCycle);
    EXPECT_EQ(plain->onMouseDown({60, 20}, kLButton), kMouseEventNotHandled);
    plain->setVisible(false);
    EXPECT_EQ(plain->onMouseDown({20, 20}, kLButton), kMouseEventNotHandled);
    plain->mouseWhenHidden = true;
    EXPECT_EQ(plain->onMouseDown({20, 20}, kLButton), kMouseEventHandled);
}

class Popup : public KWControl {
public:
    using KWControl::KWControl;
    void beginModal(int mode, const CPoint* where, long forTag) override
    {
        opened = "mode " + std::to_string(mode) + " at " + std::to_string(where->x) + ","
            + std::to_string(where->y) + " for " + std::to_string(forTag);
    }
    void setMenuTag(long forTag) override { menuTag = forTag; }
    std::string opened;
    long menuTag = 0;
};

TEST_F(Buttons, RightClicksOpenThePopupAndAMenuOpenerOpensItBelow)
{
    Popup popup({}, &ear, 99, frame);
    auto* cycle = button(KWButton::kCycle);
    cycle->setPopupControl(&popup);
    user.click({20, 20}, kRButton);
    EXPECT_EQ(popup.opened, "mode 2 at 20,20 for 6");
    EXPECT_EQ(popup.menuTag, 6);
    EXPECT_EQ(ear.take(), "");
    cycle->buttonType = KWButton::kMenuOpener;
    EXPECT_EQ(cycle->onMouseDown({20, 20}, kLButton), kMouseEventNotHandled);
    EXPECT_EQ(popup.opened, "mode 2 at 10,30 for 6");
    cycle->menuOpened();
    EXPECT_EQ(cycle->getValue(), 1);
    cycle->menuClosed();
    EXPECT_EQ(cycle->getValue(), 0);
}

TEST_F(Buttons, WithoutABitmapThePlainLookTellsOnFromOff)
{
    auto* plain = button(KWButton::kCycle);
    idle();
    EXPECT_EQ(window->pixel(40, 25), 0x969696u);
    EXPECT_EQ(window->pixel(10, 20), 0xC8C8C8u);
    plain->setValue(1);
    plain->setDirty(true);
    idle();
    EXPECT_EQ(window->pixel(40, 25), 0x3C3C3Cu);
}

TEST_F(Buttons, ALinkOpensItsDocumentOnlyWhenLetGoInside)
{
    static std::vector<std::string> opened;
    opened.clear();
    auto* link = add<KWLocalLink>(CRect(10, 10, 80, 30), 6, "/usr/share/doc/Manual.htm");
    link->opener = [](const std::string& target) {
        opened.push_back(target);
        return false; // a failure is no matter
    };
    user.press({20, 20});
    user.release({200, 200});
    EXPECT_TRUE(opened.empty());
    user.click({20, 20});
    EXPECT_THAT(opened, testing::ElementsAre("/usr/share/doc/Manual.htm"));
}

} // namespace

} // namespace ormund
