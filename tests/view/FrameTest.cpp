#include "view/CControl.h"
#include "view/CDrawContext.h"
#include "view/CFrame.h"
#include "view/offscreen/FrameUser.h"
#include "view/offscreen/OffscreenWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ormund {

using testing::ElementsAre;

namespace {

// Fills its rectangle and writes down what reaches it.
class Probe : public CView {
public:
    Probe(const CRect& rect, const CColor& fill, std::vector<std::string>* writtenLog = nullptr,
        std::string viewName = "")
        : CView(rect), color(fill), log(writtenLog), name(std::move(viewName))
    {
    }
    void draw(CDrawContext* context) override
    {
        ++draws;
        context->setFillColor(color);
        context->fillRect(getViewSize());
    }
    CMouseEventResult onMouseDown(const CPoint&, int buttons) override
    {
        write(buttons & kDoubleClick ? "double" : "down");
        return answer;
    }
    CMouseEventResult onMouseUp(const CPoint&, int) override
    {
        write("up");
        return kMouseEventHandled;
    }
    CMouseEventResult onMouseMoved(const CPoint& where, int) override
    {
        write("moved " + std::to_string(where.x));
        return kMouseEventHandled;
    }
    CMouseEventResult onMouseEntered(const CPoint&, int) override
    {
        write("entered");
        return kMouseEventHandled;
    }
    CMouseEventResult onMouseExited(const CPoint&, int) override
    {
        write("exited");
        return kMouseEventHandled;
    }
    bool onKeyDown(const CKeyEvent& event) override
    {
        write("key " + std::string(1, static_cast<char>(event.character)));
        return true;
    }
    void takeFocus() override { write("focus"); }
    void looseFocus() override { write("focus lost"); }

    CMouseEventResult answer = kMouseEventHandled;
    int draws = 0;

private:
    void write(const std::string& what)
    {
        if (log)
            log->push_back(name + " " + what);
    }
    CColor color;
    std::vector<std::string>* log;
    std::string name;
};

class FrameTest : public testing::Test {
protected:
    Probe* addProbe(const CRect& rect, const CColor& color, const std::string& name = "")
    {
        auto* probe = new Probe(rect, color, &log, name);
        frame.addView(probe);
        return probe;
    }
    OffscreenWindow& window() { return static_cast<OffscreenWindow&>(frame.getWindow()); }

    std::vector<std::string> log;
    CFrame frame{CRect{0, 0, 100, 60}, nullptr, nullptr};
    FrameUser user{frame};
};

} // namespace

TEST_F(FrameTest, PaintsOnceWhatIsDirtyAndWhatLiesAboveAndBelowIt)
{
    Probe* below = addProbe({10, 10, 50, 50}, kRedCColor);
    Probe* above = addProbe({30, 30, 70, 55}, kBlueCColor);
    Probe* aside = addProbe({80, 0, 100, 10}, kGreenCColor);
    frame.idle();
    EXPECT_EQ(window().pixel(20, 20), 0xFF0000u);
    EXPECT_EQ(window().pixel(40, 40), 0x0000FFu);
    EXPECT_EQ(window().presents, 1);

    frame.idle();
    EXPECT_EQ(window().presents, 1) << "nothing changed, nothing is shown";

    below->setDirty();
    frame.idle();
    EXPECT_EQ(window().pixel(40, 40), 0x0000FFu) << "the view above stays above";
    EXPECT_THAT(window().presented, ElementsAre(CRect{10, 10, 50, 50}));
    EXPECT_EQ(below->draws, 2);
    EXPECT_EQ(above->draws, 2);
    EXPECT_EQ(aside->draws, 1);
}

TEST_F(FrameTest, HidingMovingAndRemovingAViewUncoversWhatLiesBelow)
{
    frame.setBackgroundColor(kWhiteCColor);
    Probe* view = addProbe({10, 10, 20, 20}, kRedCColor);
    frame.idle();
    view->setVisible(false);
    frame.idle();
    EXPECT_EQ(window().pixel(15, 15), 0xFFFFFFu);
    view->setVisible(true);
    view->setViewSize({40, 10, 50, 20});
    frame.idle();
    EXPECT_EQ(window().pixel(45, 15), 0xFF0000u);
    frame.removeView(view);
    frame.idle();
    EXPECT_EQ(window().pixel(45, 15), 0xFFFFFFu);
    EXPECT_EQ(frame.getNbViews(), 0);
}

TEST_F(FrameTest, APressGoesDownTheStackUntilAViewTakesIt)
{
    Probe* bottom = addProbe({0, 0, 50, 50}, kRedCColor, "bottom");
    Probe* middle = addProbe({0, 0, 50, 50}, kRedCColor, "middle");
    Probe* top = addProbe({0, 0, 50, 50}, kRedCColor, "top");
    EXPECT_EQ(frame.getViewAt({5, 5}), top);
    top->answer = kMouseEventNotHandled;
    middle->setMouseEnabled(false);
    user.press({5, 5});
    user.move({90, 5});
    user.move({-30, 5});
    user.release({-30, 5});
    EXPECT_THAT(log,
        ElementsAre("top down", "bottom down", "bottom moved 90", "bottom moved -30", "bottom up"));

    log.clear();
    bottom->answer = kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    user.press({5, 5});
    EXPECT_EQ(frame.getMouseDownView(), nullptr) << "a view that needs no more gets no more";
}

// The pressed view hears of nothing but the button that pressed it.
TEST_F(FrameTest, OneGestureAtATime)
{
    Probe* held = addProbe({0, 0, 20, 20}, kRedCColor, "held");
    addProbe({50, 0, 70, 20}, kRedCColor, "other");
    user.press({5, 5});
    user.press({55, 5}, kRButton);
    user.wheel({55, 5}, 1);
    user.release({55, 5}, kRButton);
    EXPECT_EQ(frame.getMouseDownView(), held);
    user.press({6, 5}, kMButton);
    user.release({6, 5});
    user.move({56, 5});
    user.release({56, 5}, kMButton);
    EXPECT_THAT(log,
        ElementsAre("held down", "held up", "held entered", "held moved 6", "held exited",
            "other entered", "other moved 56", "other moved 56"));

    log.clear();
    user.press({5, 5});
    frame.removeView(held, false);
    EXPECT_THAT(log, testing::Contains("held up")) << "a view that goes during a press";
    EXPECT_EQ(frame.getMouseDownView(), nullptr);
    frame.addView(held);

    log.clear();
    frame.windowMouseDown({5, 5}, kLButton, kLButton, 90000);
    frame.windowMouseDown({55, 5}, kRButton, kRButton, 91000); // no release of the first came
    frame.windowMouseUp({55, 5}, 0);
    EXPECT_THAT(log, testing::IsSupersetOf({"held down", "held up", "other down", "other up"}));
}

TEST_F(FrameTest, EnteringAndLeavingFollowTheTopmostView)
{
    addProbe({0, 0, 20, 20}, kRedCColor, "a");
    addProbe({10, 0, 30, 20}, kRedCColor, "b");
    user.move({5, 5});
    user.move({15, 5});
    frame.windowMouseLeft({-3, 5}, 0);
    EXPECT_THAT(log,
        ElementsAre("a entered", "a moved 5", "a exited", "b entered", "b moved 15", "b exited"));
    CPoint where;
    EXPECT_FALSE(frame.getCurrentMouseLocation(where));
}

TEST_F(FrameTest, TwoQuickPressesAtOnePlaceAreADoubleClickAndAThirdIsNot)
{
    addProbe({0, 0, 50, 50}, kRedCColor, "v");
    user.doubleClick({5, 5});
    user.wait(100);
    user.press({5, 5});
    user.release({5, 5});
    user.wait(100);
    user.press({25, 5});
    const auto downs = [&] {
        std::vector<std::string> found;
        for (const std::string& line : log)
            if (line.find("moved") == std::string::npos && line.find("up") == std::string::npos
                && line.find("entered") == std::string::npos)
                found.push_back(line);
        return found;
    };
    EXPECT_THAT(downs(), ElementsAre("v down", "v double", "v down", "v down"));
}

TEST_F(FrameTest, FocusFollowsTheViewThatAskedAndGoesWithAPressBesideIt)
{
    Probe* field = addProbe({0, 0, 20, 20}, kRedCColor, "field");
    EXPECT_FALSE(user.key({.character = 'x'}));
    frame.setFocusView(field);
    EXPECT_TRUE(user.key({.character = 'y'}));
    user.press({90, 50});
    EXPECT_EQ(frame.getFocusView(), nullptr);
    frame.setFocusView(field);
    frame.windowLostFocus();
    EXPECT_THAT(log,
        ElementsAre(
            "field focus", "field key y", "field focus lost", "field focus", "field focus lost"));
}

TEST_F(FrameTest, AViewThatGoesDuringItsPressIsNoLongerAsked)
{
    class Vanishing : public Probe {
    public:
        using Probe::Probe;
        CMouseEventResult onMouseDown(const CPoint&, int) override
        {
            getFrame()->removeView(this);
            return kMouseEventHandled;
        }
    };
    frame.addView(new Vanishing({0, 0, 20, 20}, kRedCColor, &log, "gone"));
    user.move({5, 5});
    user.press({5, 5});
    user.move({6, 5});
    user.release({6, 5});
    EXPECT_EQ(frame.getMouseDownView(), nullptr);
    EXPECT_EQ(frame.getNbViews(), 0);
}

TEST_F(FrameTest, APressEndsWithALostReleaseAndWithItsWindow)
{
    addProbe({0, 0, 20, 20}, kRedCColor, "view");
    user.press({5, 5});
    log.clear();
    frame.windowMouseMoved({70, 30}, 0); // no button is down any more
    EXPECT_THAT(log, testing::Contains("view up"));
    EXPECT_EQ(frame.getMouseDownView(), nullptr);

    user.wait(1000);
    user.press({5, 5});
    user.move({6, 5});
    log.clear();
    frame.endPress();
    frame.endPress();
    EXPECT_THAT(log, ElementsAre("view up"));
}

TEST_F(FrameTest, ScaleChangesTheImageAndNotTheCoordinates)
{
    addProbe({20, 20, 40, 40}, kRedCColor);
    for (const double scale : {1.5, 2.0, 3.0, 1.0, 0.75, 1.25, 1.75, 1.0}) {
        frame.setScale(scale);
        frame.idle();
        EXPECT_EQ(window().getWidth(), static_cast<int>(100 * scale));
        const auto at = [&](double panel) { return static_cast<int>(panel * scale); };
        EXPECT_EQ(window().pixel(at(20), at(20)), 0xFF0000u) << scale;
        EXPECT_EQ(window().pixel(at(20) - 1, at(20)), 0u) << scale;
        EXPECT_EQ(window().pixel(at(40) - 1, at(40) - 1), 0xFF0000u) << scale;
        EXPECT_EQ(window().pixel(at(40), at(39)), 0u) << scale;
    }
    EXPECT_EQ(CFrame::nearestScale(1.1), 1.0);
    EXPECT_EQ(CFrame::nearestScale(0.1), 0.75);
    EXPECT_EQ(CFrame::nearestScale(192.0 / 96), 2.0);
    EXPECT_EQ(CFrame::nearestScale(17), 3.0);
}

TEST(Control, NestedGesturesReachTheListenerAsOnePair)
{
    struct Listener : CControlListener {
        void valueChanged(CControl* control) override
        {
            log.push_back("value " + std::to_string(control->getValue()));
        }
        void controlBeginEdit(CControl*) override { log.push_back("begin"); }
        void controlEndEdit(CControl*) override { log.push_back("end"); }
        std::vector<std::string> log;
    } listener;
    CControl control({0, 0, 10, 10}, &listener, 7);
    control.beginEdit();
    control.beginEdit();
    control.setValue(3);
    control.bounceValue();
    control.tellListener();
    control.endEdit();
    control.endEdit();
    control.endEdit();
    EXPECT_THAT(listener.log, ElementsAre("begin", "value 1.000000", "end"));
}

} // namespace ormund
