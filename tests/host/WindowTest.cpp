// The module's window in a host's window, on an X server without a screen.
#include "apps/host/ScriptedHost.h"
#include "tests/support/Checked.h"
#include "tests/support/OwnHome.h"
#include "tests/view/DropTarget.h"
#include "tests/view/XServer.h"

#include <gtest/gtest.h>
#include <X11/Xlib.h>

#include <X11/keysym.h>

#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <optional>
#include <unistd.h>

namespace ormund {

namespace {

class ModuleWindow : public testing::Test {
protected:
    void SetUp() override
    {
        if (!XServer::isInstalled())
            GTEST_SKIP() << "no X server is installed";
        ASSERT_TRUE(server.isRunning());
        user.emplace();
        ASSERT_TRUE(host.load(ORMUND_BIN_DIR "/ormund-vst2.so", {})) << host.error();
        ASSERT_NE(host.effect()->flags & effFlagsHasEditor, 0);
        ASSERT_EQ(host.dispatch(effEditGetRect, 0, 0, &rect), 1);
        parent = XCreateSimpleWindow(user->display, DefaultRootWindow(user->display), 0, 0,
            static_cast<unsigned>(rect->right), static_cast<unsigned>(rect->bottom), 0, 0,
            0x123456);
        XMapWindow(user->display, parent);
        XSync(user->display, False);
    }
    void idle(int times = 10)
    {
        for (int i = 0; i < times; ++i) {
            host.dispatch(effEditIdle);
            usleep(5000);
        }
    }
    // The plug-in paints all of its window, so nothing of the host's ground may stay.
    bool isPainted()
    {
        return user->screenPixel(rect->right / 2, rect->bottom / 2) != 0x123456
            && user->screenPixel(2, 2) != 0x123456
            && user->screenPixel(rect->right - 3, rect->bottom - 3) != 0x123456;
    }
    void open() { host.dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(parent)); }
    void moveTo(int x, int y)
    {
        user->move(x, y);
        idle(2);
    }
    void click(int x, int y)
    {
        moveTo(x, y);
        user->press();
        idle(2);
        user->release();
        idle(2);
    }

    OwnHome home;
    XServer server;
    std::optional<XUser> user;
    ScriptedHost host;
    ERect* rect = nullptr;
    Window parent = 0;
};

TEST_F(ModuleWindow, OpensInsideTheHostsWindowAndComesBackAfterAClose)
{
    ASSERT_GT(rect->right - rect->left, 600);
    ASSERT_GT(rect->bottom - rect->top, 300);
    const int before = user->countWindows();
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(host.dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(parent)), 1);
        idle();
        EXPECT_GT(user->countWindows(), before);
        EXPECT_TRUE(isPainted()) << "round " << round;
        host.dispatch(effEditClose);
        EXPECT_EQ(user->countWindows(), before);
    }
}

TEST_F(ModuleWindow, FollowsTheEngineAndGoesWithIt)
{
    host.dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(parent));
    host.start();
    for (int round = 0; round < rounds(40); ++round) {
        host.run(2048);
        host.effect()->setParameter(host.effect(), round % 46, 0.5f);
        idle(1);
    }
    EXPECT_TRUE(isPainted());
    EXPECT_TRUE(host.faults.empty());
    // A host may close the effect with the window still open.
    host.close();
    EXPECT_EQ(user->countWindows(), 1);
}

TEST_F(ModuleWindow, OpenedTwiceAndBesideASecondInstance)
{
    const int before = user->countWindows();
    void* const place = reinterpret_cast<void*>(parent);
    host.dispatch(effEditOpen, 0, 0, place);
    host.dispatch(effEditOpen, 0, 0, place);
    ScriptedHost second;
    ASSERT_TRUE(second.load(ORMUND_BIN_DIR "/ormund-vst2.so", {}));
    second.dispatch(effEditOpen, 0, 0, place);
    host.start();
    second.start();
    for (int round = 0; round < 20; ++round) {
        host.run(1024);
        second.run(1024);
        second.dispatch(effEditIdle);
        idle(1);
    }
    EXPECT_TRUE(isPainted());
    host.dispatch(effEditClose);
    host.run(44100);
    second.dispatch(effEditIdle);
    host.close();
    second.run(44100);
    second.dispatch(effEditIdle);
    second.dispatch(effEditClose);
    second.dispatch(effEditClose);
    EXPECT_EQ(user->countWindows(), before);
    EXPECT_TRUE(second.faults.empty());
}

TEST_F(ModuleWindow, NoWindowForAParentThatIsNone)
{
    constexpr uintptr_t kNoWindow = 0x3FFFFFF;
    for (void* wrong : {static_cast<void*>(nullptr), reinterpret_cast<void*>(kNoWindow)}) {
        EXPECT_EQ(host.dispatch(effEditOpen, 0, 0, wrong), 0);
        idle();
        host.dispatch(effEditClose);
        host.dispatch(effEditClose);
        host.dispatch(effEditIdle);
    }
    const std::string display = std::getenv("DISPLAY");
    ::setenv("DISPLAY", ":nobody", 1);
    EXPECT_EQ(host.dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(kNoWindow)), 0);
    ::setenv("DISPLAY", display.c_str(), 1);
    host.dispatch(effEditIdle);
}

constexpr int kDragPadX = 29, kDragPadY = 318;

TEST_F(ModuleWindow, AMidiFileIsDraggedIntoAnotherProgram)
{
    open();
    DropTarget target(true, 1010);
    const auto run = [&](int rounds) {
        for (int i = 0; i < rounds; ++i) {
            idle(1);
            target.poll();
        }
    };
    moveTo(kDragPadX, kDragPadY);
    user->press();
    run(4);
    for (int x = kDragPadX; x <= 1100; x += 20) {
        user->move(x, 150);
        run(2);
    }
    run(10);
    user->release();
    run(20);
    ASSERT_TRUE(target.dropped.starts_with("file:///")) << target.dropped;
    ASSERT_TRUE(target.dropped.ends_with(".mid\r\n")) << target.dropped;
    const std::string path = target.dropped.substr(7, target.dropped.size() - 9);
    std::ifstream file(path, std::ios::binary);
    std::string start(4, ' ');
    file.read(start.data(), 4);
    EXPECT_EQ(start, "MThd");
}

TEST_F(ModuleWindow, AClickOnTheDragPadAsksWhereToSave)
{
    const std::string programs = getenv("PATH");
    setenv("PATH", home.file("").c_str(), 1); // a desktop without a dialogue program
    open();
    idle();
    click(kDragPadX, kDragPadY);
    user->tapKey(XK_Return);
    idle();
    setenv("PATH", programs.c_str(), 1);
    EXPECT_TRUE(std::filesystem::exists(home.file("Ormund.mid")));
}

TEST_F(ModuleWindow, TheSizeIsChosenOnThePanelAndKept)
{
    constexpr int kMenuX = 976, kMenuY = 30, kRow = 16;
    open();
    idle();
    click(kMenuX, kMenuY);
    click(kMenuX, kMenuY + 8 + 2 + 3 * kRow + kRow / 2); // the fourth row of seven
    EXPECT_EQ(host.wantedWidth, 1502);
    EXPECT_EQ(host.wantedHeight, 1043);
    ERect* now = nullptr;
    host.dispatch(effEditGetRect, 0, 0, &now);
    EXPECT_EQ(now->right, 1502);
    host.dispatch(effEditClose);

    // A host whose windows keep their size shows the choice when the window is opened again.
    host.sizesWindows = false;
    ScriptedHost other;
    ASSERT_TRUE(other.load(ORMUND_BIN_DIR "/ormund-vst2.so", {}));
    ERect* next = nullptr;
    other.dispatch(effEditGetRect, 0, 0, &next);
    EXPECT_EQ(next->right, 1502);
}

TEST_F(ModuleWindow, TwoWindowsOfTwoInstancesOpenAndCloseManyTimes)
{
    ScriptedHost other;
    ASSERT_TRUE(other.load(ORMUND_BIN_DIR "/ormund-vst2.so", {}));
    const Window second = XCreateSimpleWindow(
        user->display, DefaultRootWindow(user->display), 50, 50, 1001, 695, 0, 0, 0x123456);
    XMapWindow(user->display, second);
    XSync(user->display, False);
    const int before = user->countWindows();
    size_t used = 0;
    for (int round = 0; round < 40; ++round) {
        open();
        other.dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(second));
        idle(1);
        other.dispatch(effEditIdle);
        (round % 2 ? host : other).dispatch(effEditClose);
        idle(1);
        other.dispatch(effEditIdle);
        host.dispatch(effEditClose);
        other.dispatch(effEditClose);
        if (round == 9)
            used = mallinfo2().uordblks;
    }
    EXPECT_EQ(user->countWindows(), before);
    // Thirty more rounds leave nothing worth a word behind.
    EXPECT_LT(mallinfo2().uordblks, used + 200'000);
}

} // namespace

} // namespace ormund
