// What a hand does in a real window: the editor on an X server without a screen, moved by that
// server's own mouse.
#include "controls/KWFrame.h"
#include "data/tracks/KWTableXY.h"
#include "editor/KWUniClientEditor.h"
#include "host/plugin/KWUniClient.h"
#include "panel/ControlCatalogue.h"
#include "tests/view/XServer.h"
#include "view/x11/HostWindow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numbers>

namespace ormund {

namespace {

constexpr int kVelocityGrid = 430;
constexpr int kLooperKnob = Tag::LooperSteps;

class Hands : public testing::Test {
protected:
    void SetUp() override
    {
        if (!XServer::isInstalled())
            GTEST_SKIP() << "no X server is installed";
        ASSERT_TRUE(server.isRunning());
        user = std::make_unique<XUser>();
        user->move(1900, 1300);
        host = std::make_unique<HostWindow>("host", kPanelWidth, kPanelHeight);
        ASSERT_TRUE(editor.open(host->handle()));
        idle(4);
    }
    void TearDown() override { editor.close(); }
    void idle(int times = 2)
    {
        for (int i = 0; i < times; ++i)
            editor.idle();
    }
    static CPoint middle(int tag)
    {
        const Place& place = findControl(tag)->place;
        return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    }
    void moveTo(const CPoint& where)
    {
        user->move(where.x, where.y);
        idle();
    }

    XServer server;
    std::unique_ptr<XUser> user;
    std::unique_ptr<HostWindow> host;
    KWUniClient engine{nullptr};
    KWUniClientEditor editor{engine};
};

// The mean distance from the curve that a hand draws over all steps in half a second, at a mouse of
// 125 reports a second.
TEST_F(Hands, ACurveDrawnInHalfASecondIsTheCurveHoweverRareTheIdle)
{
    KWTableXY& steps = *engine.tracks.tableAt(kVelocityGrid);
    const Place& grid = findControl(kVelocityGrid)->place;
    constexpr int kReports = 62;
    const auto curve = [](double along) {
        return 0.5 + 0.45 * std::sin(2 * std::numbers::pi * along);
    };
    for (const int reportsPerIdle : {4, 12}) { // 30 and 10 idles a second
        steps.clear();
        const auto at = [&](int report) {
            const double along = double(report) / kReports;
            return CPoint(grid.left + int(along * (grid.width() - 1)),
                grid.bottom - int(std::lround(curve(along) * grid.height())));
        };
        moveTo(at(0));
        user->press();
        for (int report = 1; report <= kReports; ++report) {
            user->move(at(report).x, at(report).y);
            if (report % reportsPerIdle == 0)
                editor.idle();
        }
        user->release();
        idle();
        double error = 0;
        for (int step = 0; step < steps.size(); ++step)
            error += std::abs(steps.getNormalized(float(step)) - curve((step + 0.5) / steps.size()))
                / steps.size();
        EXPECT_LT(error, 0.05) << reportsPerIdle << " reports an idle";
        RecordProperty("mean error of the curve in thousandths", int(error * 1000));
    }
}

TEST_F(Hands, AFurtherButtonOrTheWheelInADragChangesNothingOfIt)
{
    const CPoint knob = middle(kLooperKnob);
    const auto dragUp = [&](bool disturbed) {
        engine.setParameter(kLooperKnob, 0.2f);
        idle();
        moveTo(knob);
        user->press();
        moveTo({knob.x, knob.y - 10});
        if (disturbed) {
            user->press(2);
            idle();
            user->press(4);
            user->release(4);
            idle();
        }
        moveTo({knob.x, knob.y - 20});
        if (disturbed)
            user->release(2);
        user->release();
        idle();
        return engine.parameters.raw(kLooperKnob);
    };
    const float plain = dragUp(false);
    EXPECT_NE(plain, 0.2f);
    EXPECT_EQ(dragUp(true), plain);
    // The undo still counts gestures.
    user->key(0xFFE3, true);
    user->tapKey('z');
    user->key(0xFFE3, false);
    idle();
    EXPECT_NEAR(engine.parameters.raw(kLooperKnob), 0.2f, 1e-6);
}

TEST_F(Hands, ARightClickBesideALoopBarLeavesTheLoop)
{
    constexpr int kPitchLoop = 365;
    KWZoneHandlerContainer& loop = *engine.tracks.zonesAt(kPitchLoop);
    loop.setZone(loop.row(), {4, 7});
    idle();
    const Place& bar = findControl(kPitchLoop)->place;
    moveTo({bar.right - 20, bar.top + 4});
    user->press(3);
    idle();
    user->release(3);
    idle();
    EXPECT_EQ(loop.current().start, 4);
    EXPECT_EQ(loop.current().end, 7);
    user->press();
    idle();
    user->release();
    idle();
    EXPECT_GT(loop.current().start, 20) << "the left button draws a new one";
}

TEST_F(Hands, AKnobThatIsGrippedAgainAfterADragKeepsItsValue)
{
    const CPoint knob = middle(kLooperKnob);
    engine.setParameter(kLooperKnob, 0.2f);
    moveTo(knob);
    user->press();
    moveTo({knob.x, knob.y - 30});
    moveTo({knob.x, knob.y - 1});
    user->release();
    const float turned = engine.parameters.raw(kLooperKnob);
    idle();
    user->press();
    idle();
    user->release();
    idle();
    EXPECT_NEAR(engine.parameters.raw(kLooperKnob), turned, 0.02f);
}

TEST_F(Hands, AGestureThatIsLeftOpenEndsWithTheFocus)
{
    const CPoint knob = middle(kLooperKnob);
    engine.setParameter(kLooperKnob, 0.2f);
    moveTo(knob);
    user->press();
    moveTo({knob.x, knob.y - 10});
    const float turned = engine.parameters.raw(kLooperKnob);
    HostWindow other("other", 50, 50);
    user->setFocus(reinterpret_cast<unsigned long>(other.handle()));
    idle(10);
    moveTo({knob.x, knob.y - 40});
    EXPECT_EQ(engine.parameters.raw(kLooperKnob), turned);
    user->release();
    idle();
}

} // namespace

} // namespace ormund
