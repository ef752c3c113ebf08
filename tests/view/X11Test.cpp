#include "tests/view/XServer.h"
#include "view/CControl.h"
#include "view/CDrawContext.h"
#include "view/CFrame.h"
#include "view/x11/HostWindow.h"
#include "view/x11/SystemWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <dirent.h>
#include <fstream>
#include <thread>
#include <unistd.h>

namespace ormund {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;

namespace {

constexpr unsigned long kReturnSymbol = 0xFF0D;
constexpr unsigned long kShiftSymbol = 0xFFE1;
constexpr unsigned long kControlSymbol = 0xFFE3;

class Recorder : public CView {
public:
    explicit Recorder(const CRect& rect, const CColor& fill = kRedCColor) : CView(rect), color(fill)
    {
    }
    void draw(CDrawContext* context) override
    {
        context->setFillColor(color);
        context->fillRect(getViewSize());
    }
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override
    {
        write("down", where, buttons);
        getFrame()->takeSystemFocus();
        getFrame()->setFocusView(this);
        return kMouseEventHandled;
    }
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override
    {
        write("up", where, buttons);
        return kMouseEventHandled;
    }
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override
    {
        write("moved", where, buttons);
        return kMouseEventHandled;
    }
    CMouseEventResult onMouseExited(const CPoint&, int) override
    {
        log.push_back("exited");
        return kMouseEventHandled;
    }
    bool onWheel(const CPoint&, CMouseWheelAxis axis, float distance, int buttons) override
    {
        log.push_back((axis == kMouseWheelAxisX ? "wheelx " : "wheel ")
            + std::to_string(static_cast<int>(distance)) + " " + std::to_string(buttons));
        return true;
    }
    bool onKeyDown(const CKeyEvent& event) override
    {
        log.push_back((event.isRepeat ? "again " : "key ")
            + std::to_string(static_cast<int>(event.character)) + " "
            + std::to_string(static_cast<int>(event.key)));
        return event.key != CKey::Return;
    }
    void looseFocus() override { log.push_back("focus lost"); }

    std::vector<std::string> log;
    CColor color;

private:
    void write(const char* what, const CPoint& where, int buttons)
    {
        log.push_back(std::string(what) + " " + std::to_string(where.x) + ","
            + std::to_string(where.y) + " " + std::to_string(buttons));
    }
};

class X11Test : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.isRunning());
        ASSERT_NE(user.display, nullptr);
        user.move(2000, 1400);
    }
    // Lets the frame live for a while, as a host's timer does.
    static void run(CFrame& frame, int milliseconds = 60)
    {
        for (int i = 0; i < milliseconds / 5; ++i) {
            frame.idle();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
    XServer server;
    XUser user;
};

int openFiles()
{
    int count = 0;
    DIR* folder = opendir("/proc/self/fd");
    while (readdir(folder))
        ++count;
    closedir(folder);
    return count;
}

int sharedSegments()
{
    std::ifstream table("/proc/sysvipc/shm");
    int lines = 0;
    std::string own = std::to_string(getpid());
    own.insert(own.begin(), ' ');
    own.push_back(' ');
    for (std::string line; std::getline(table, line);)
        lines += line.find(own) != std::string::npos;
    return lines;
}

} // namespace

TEST_F(X11Test, MouseWheelAndModifiersArriveInPanelPixels)
{
    HostWindow host("test", 400, 300);
    CFrame frame({0, 0, 200, 150}, host.handle(), nullptr);
    frame.setScale(2);
    auto* view = new Recorder({10, 10, 60, 60});
    frame.addView(view);
    run(frame);
    EXPECT_EQ(user.screenPixel(20, 20), 0xFF0000u);
    EXPECT_EQ(user.screenPixel(119, 119), 0xFF0000u);
    EXPECT_EQ(user.screenPixel(121, 119), 0u);

    user.move(40, 60);
    user.key(kShiftSymbol, true);
    user.press(3);
    user.release(3);
    user.key(kShiftSymbol, false);
    user.key(kControlSymbol, true);
    for (const unsigned wheel : {4u, 5u, 7u})
        user.press(wheel), user.release(wheel);
    user.key(kControlSymbol, false);
    run(frame);
    EXPECT_THAT(view->log,
        IsSupersetOf({"moved 20,30 0", "down 20,30 24", "up 20,30 16", "wheel 1 32", "wheel -1 32",
            "wheelx 1 32"}));
}

TEST_F(X11Test, ADragGoesOnOutsideTheWindowAndEndsThere)
{
    HostWindow host("test", 200, 150);
    CFrame frame({0, 0, 200, 150}, host.handle(), nullptr);
    auto* view = new Recorder({10, 10, 60, 60});
    frame.addView(view);
    run(frame);
    user.move(20, 20);
    user.press();
    user.move(700, 500);
    run(frame);
    user.release();
    run(frame);
    EXPECT_EQ(frame.getMouseDownView(), nullptr);
    ASSERT_GE(view->log.size(), 4u);
    EXPECT_THAT(view->log, IsSupersetOf({"down 20,20 2", "moved 700,500 2", "up 700,500 0"}));
    EXPECT_EQ(view->log.back(), "exited");
    CPoint where;
    EXPECT_FALSE(frame.getCurrentMouseLocation(where));
}

TEST_F(X11Test, KeysGoToTheViewWithTheFocusAndUnwantedOnesToTheHost)
{
    HostWindow host("test", 200, 150);
    CFrame frame({0, 0, 200, 150}, host.handle(), nullptr);
    auto* view = new Recorder({10, 10, 60, 60});
    frame.addView(view);
    run(frame);
    const auto parent = reinterpret_cast<unsigned long>(host.handle());
    user.listenForKeys(parent);
    user.click(20, 20);
    run(frame);
    EXPECT_EQ(user.focusWindow(), frame.getWindow().systemHandle());
    EXPECT_TRUE(frame.hasSystemFocus());
    user.key(kShiftSymbol, true);
    user.tapKey('a');
    user.key(kShiftSymbol, false);
    user.tapKey('z');
    user.tapKey(kReturnSymbol);
    run(frame);
    EXPECT_THAT(view->log, IsSupersetOf({"key 65 0", "key 122 0", "key 0 4"}));
    EXPECT_EQ(user.heardKeys(), 1) << "Return alone was left to the host";
    user.key('h', true); // held until the server repeats it
    for (int i = 0; i < 100 && view->log.back() != "again 104 0"; ++i)
        run(frame, 20);
    user.key('h', false);
    EXPECT_THAT(view->log, IsSupersetOf({"key 104 0", "again 104 0"}));
    run(frame);

    user.setFocus(parent);
    run(frame, 400);
    EXPECT_EQ(view->log.back(), "focus lost");
    EXPECT_FALSE(frame.hasSystemFocus());
}

// What a window manager does that focuses the outermost window at each click.
TEST_F(X11Test, FocusThatGoesUpAndComesBackByAClickIsNotLost)
{
    HostWindow host("test", 200, 150);
    CFrame frame({0, 0, 200, 150}, host.handle(), nullptr);
    auto* view = new Recorder({10, 10, 60, 60});
    frame.addView(view);
    user.click(20, 20);
    run(frame);
    const auto focusUp = [&] {
        user.setFocus(reinterpret_cast<unsigned long>(host.handle()));
        run(frame, 20);
        EXPECT_FALSE(frame.hasSystemFocus());
    };
    focusUp();
    user.click(20, 20);
    run(frame, 400);
    EXPECT_TRUE(frame.hasSystemFocus());
    EXPECT_THAT(view->log, Not(Contains("focus lost")));

    focusUp();
    EXPECT_THAT(view->log, Not(Contains("focus lost")));
    run(frame, 400);
    EXPECT_EQ(view->log.back(), "focus lost");
}

TEST_F(X11Test, TheServerShowsUncoveredPartsWithoutIdle)
{
    HostWindow host("test", 200, 150);
    CFrame frame({0, 0, 200, 150}, host.handle(), nullptr);
    frame.addView(new Recorder({10, 10, 60, 60}));
    frame.repaint();
    user.waitForPixel(20, 20, 0xFF0000);
    EXPECT_EQ(user.screenPixel(20, 20), 0xFF0000u);
    {
        HostWindow cover("cover", 300, 300);
        user.waitForPixel(20, 20, 0);
        EXPECT_EQ(user.screenPixel(20, 20), 0u);
    }
    user.waitForPixel(20, 20, 0xFF0000);
    EXPECT_EQ(user.screenPixel(20, 20), 0xFF0000u);
}

TEST_F(X11Test, ScaleAndSizeFollowTheDesktopAndRequests)
{
    user.setResources("Xcursor.size:\t24\nXft.dpi:\t144\n");
    HostWindow host("test", 400, 300);
    CFrame frame({0, 0, 100, 50}, host.handle(), nullptr);
    EXPECT_EQ(frame.getScale(), 1.5);
    auto* view = new Recorder({0, 0, 100, 50});
    frame.addView(view);
    run(frame);
    EXPECT_EQ(user.screenPixel(149, 74), 0xFF0000u);
    EXPECT_EQ(user.screenPixel(150, 74), 0u);
    frame.setScale(3);
    run(frame);
    EXPECT_EQ(user.screenPixel(299, 149), 0xFF0000u);
    frame.setSize(50, 50);
    run(frame);
    EXPECT_EQ(user.screenPixel(149, 149), 0xFF0000u);
    EXPECT_EQ(user.screenPixel(151, 100), 0u);
}

TEST_F(X11Test, WithoutSharedMemoryThePictureIsTheSame)
{
    HostWindow host("test", 1000, 700);
    const auto parent = static_cast<xcb_window_t>(reinterpret_cast<uintptr_t>(host.handle()));
    auto window = SystemWindow::open(parent, false);
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(window->isShared());
    CFrame frame({0, 0, 1000, 700}, std::move(window), nullptr);
    frame.addView(new Recorder({0, 0, 1000, 700}));
    frame.addView(new Recorder({990, 690, 1000, 700}, kBlueCColor));
    run(frame);
    EXPECT_EQ(user.screenPixel(500, 699), 0xFF0000u);
    EXPECT_EQ(user.screenPixel(999, 699), 0x0000FFu);
}

TEST_F(X11Test, TwoWindowsLiveSideBySide)
{
    HostWindow host("test", 400, 150);
    CFrame left({0, 0, 200, 150}, host.handle(), nullptr);
    {
        HostWindow other("other", 200, 150);
        CFrame second({0, 0, 200, 150}, other.handle(), nullptr);
        left.addView(new Recorder({100, 100, 160, 150}));
        second.addView(new Recorder({0, 0, 50, 50}, kGreenCColor));
        for (int i = 0; i < 10; ++i) {
            left.idle();
            run(second, 5);
        }
        EXPECT_EQ(user.screenPixel(10, 10), 0x00FF00u);
    }
    auto* view = new Recorder({0, 0, 50, 50}, kBlueCColor);
    left.addView(view);
    run(left);
    EXPECT_EQ(user.screenPixel(10, 10), 0x0000FFu);
    user.click(10, 10);
    run(left);
    EXPECT_THAT(view->log, IsSupersetOf({"down 10,10 2", "up 10,10 0"}));
}

TEST_F(X11Test, AHostThatDestroysItsWindowFirstDoesNoHarm)
{
    HostWindow host("test", 200, 150);
    CFrame frame({0, 0, 200, 150}, host.handle(), nullptr);
    auto* view = new Recorder({0, 0, 200, 150});
    frame.addView(view);
    run(frame);
    host.destroy();
    for (int i = 0; i < 20; ++i) {
        view->setDirty();
        frame.setCursor(i % 2 ? CCursor::Hand : CCursor::ResizeHorizontal);
        run(frame, 5);
    }
    EXPECT_FALSE(frame.getWindow().isAlive());
    frame.setScale(2);
    frame.takeSystemFocus();
    EXPECT_FALSE(frame.dragFiles({"/tmp/a.mid"}));
    run(frame);
    CFrame orphan({0, 0, 10, 10}, reinterpret_cast<void*>(0x7654321), nullptr);
    orphan.addView(new Recorder({0, 0, 10, 10}));
    run(orphan);
}

TEST_F(X11Test, AThousandOpensAndClosesLeaveNothing)
{
    HostWindow host("test", 200, 150);
    host.wait(50);
    const int windows = user.countWindows();
    const int files = openFiles();
    constexpr int kOpens = 1000;
    for (int i = 0; i < kOpens; ++i) {
        CFrame frame({0, 0, 200, 150}, host.handle(), nullptr);
        frame.addView(new Recorder({0, 0, 200, 150}));
        // Some hosts call idle before they close, some never do.
        if (i % 2)
            frame.idle();
    }
    EXPECT_EQ(user.countWindows(), windows);
    EXPECT_EQ(openFiles(), files);
    EXPECT_EQ(sharedSegments(), 0);
}

TEST_F(X11Test, IdleAtAThousandTimesASecondPaintsEveryChangeOnceAtMost)
{
    HostWindow host("test", 200, 150);
    CFrame frame({0, 0, 200, 150}, host.handle(), nullptr);
    auto* view = new Recorder({0, 0, 200, 150});
    frame.addView(view);
    for (int i = 0; i < 1000; ++i) {
        view->color = i % 2 ? kGreenCColor : kRedCColor;
        view->setDirty();
        frame.idle();
    }
    view->color = kBlueCColor;
    view->setDirty();
    run(frame);
    EXPECT_EQ(user.screenPixel(199, 149), 0x0000FFu);
    EXPECT_TRUE(frame.dirtyRegion().isEmpty());
}

} // namespace ormund
