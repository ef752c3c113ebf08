// The module's window in a host's window, on an X server without a screen.
#include "apps/host/ScriptedHost.h"
#include "tests/support/OwnHome.h"
#include "tests/view/XServer.h"

#include <gtest/gtest.h>
#include <X11/Xlib.h>

#include <optional>
#include <unistd.h>

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
    for (int round = 0; round < 40; ++round) {
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
    host.dispatch(effEditOpen, 0, 0, nullptr);
    idle();
    host.dispatch(effEditClose);
    host.dispatch(effEditClose);
    host.dispatch(effEditIdle);
}

} // namespace
