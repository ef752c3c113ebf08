#include "view/x11/FileDrag.h"
#include "tests/view/DropTarget.h"
#include "tests/view/XServer.h"
#include "view/CFrame.h"
#include "view/x11/HostWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace ormund {

namespace {

// Begins a drag as soon as the mouse moves with the button down.
class DragView : public CView {
public:
    using CView::CView;
    CMouseEventResult onMouseDown(const CPoint&, int) override { return kMouseEventHandled; }
    CMouseEventResult onMouseMoved(const CPoint&, int buttons) override
    {
        if ((buttons & kLButton) && !hasBegun)
            hasBegun = getFrame()->dragFiles({"/tmp/two words \xC3\xA4.mid"});
        return kMouseEventHandled;
    }
    CMouseEventResult onMouseUp(const CPoint&, int) override
    {
        ++releases;
        return kMouseEventHandled;
    }
    bool hasBegun = false;
    int releases = 0;
};

class FileDragTest : public testing::Test {
protected:
    void dragTo(int x, int y, DropTarget& target)
    {
        frame.addView(view);
        run(target);
        user.move(20, 20);
        user.press();
        run(target);
        for (int i = 1; i <= 20; ++i) {
            user.move(20 + (x - 20) * i / 20, 20 + (y - 20) * i / 20);
            run(target, 2);
        }
        run(target);
        user.release();
        run(target);
    }
    void run(DropTarget& target, int rounds = 12)
    {
        for (int i = 0; i < rounds; ++i) {
            frame.idle();
            target.poll();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
    XServer server;
    XUser user;
    HostWindow host{"test", 200, 150};
    CFrame frame{{0, 0, 200, 150}, host.handle(), nullptr};
    DragView* view = new DragView({0, 0, 200, 150});
};

} // namespace

TEST_F(FileDragTest, AFileArrivesInAnotherProgram)
{
    DropTarget target(true);
    dragTo(600, 100, target);
    EXPECT_TRUE(view->hasBegun);
    EXPECT_EQ(target.dropped, "file:///tmp/two%20words%20%C3%A4.mid\r\n");
    EXPECT_THAT(target.log, testing::ElementsAre("XdndEnter", "XdndPosition", "XdndDrop"));
    EXPECT_EQ(view->releases, 1) << "the view's own drag ends too";
    EXPECT_EQ(frame.getMouseDownView(), nullptr);
}

TEST_F(FileDragTest, ATargetThatDeclinesIsLeftAndAReleaseOverNothingEndsTheDrag)
{
    DropTarget target(false);
    dragTo(600, 100, target);
    EXPECT_EQ(target.dropped, "");
    EXPECT_EQ(target.log.back(), "XdndLeave");
    view->hasBegun = false;
    dragTo(1500, 1000, target);
    EXPECT_TRUE(view->hasBegun) << "the next drag begins";
    EXPECT_EQ(view->releases, 2);
}

} // namespace ormund
