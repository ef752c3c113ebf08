// The editor in each format's window, on an X server without a screen.
#include "tests/formats/FormatHost.h"
#include "tests/formats/Formats.h"

#include "data/parameters/Tags.h"
#include "host/formats/Base64.h"
#include "panel/ControlCatalogue.h"
#include "tests/support/Checked.h"
#include "tests/view/XServer.h"

#include <gmock/gmock.h>
#include <X11/keysym.h>
#include <X11/Xlib.h>

#include <fstream>
#include <optional>
#include <unistd.h>

namespace ormund {

namespace {
constexpr unsigned long kGround = 0x123456; // the host's own colour
constexpr int kKnob = 6;                    // a host parameter that the first page shows
constexpr int kIdleUs = 5000;

class FormatEditor : public testing::TestWithParam<Format> {
protected:
    void SetUp() override
    {
        if (!XServer::isInstalled())
            GTEST_SKIP() << "no X server is installed";
        ASSERT_TRUE(server.isRunning());
        user.emplace();
    }
    Window parentAt(int x)
    {
        const Window parent = XCreateSimpleWindow(user->display, DefaultRootWindow(user->display),
            x, 0, kPanelWidth, kPanelHeight, 0, 0, kGround);
        XMapWindow(user->display, parent);
        XSync(user->display, False);
        return parent;
    }
    static void idle(FormatHost& host, int times = 10)
    {
        for (int i = 0; i < times; ++i) {
            host.idleEditor();
            host.play(64);
            usleep(kIdleUs);
        }
    }
    // The server takes its time on a busy machine.
    bool waitForWindows(int count)
    {
        for (int i = 0; i < 200 && user->countWindows() != count; ++i)
            usleep(kIdleUs);
        return user->countWindows() == count;
    }
    bool isPaintedSoon(FormatHost& host)
    {
        for (int i = 0; i < 50 && !isPainted(0, kPanelWidth, kPanelHeight); ++i)
            idle(host, 1);
        return isPainted(0, kPanelWidth, kPanelHeight);
    }
    bool isPainted(int x, int right, int bottom)
    {
        return user->screenPixel(x + right / 2, bottom / 2) != kGround
            && user->screenPixel(x + 2, 2) != kGround
            && user->screenPixel(x + right - 3, bottom - 3) != kGround;
    }
    static void clickControl(XUser& user, int tag)
    {
        const Place& place = findControl(tag)->place;
        user.click((place.left + place.right) / 2, (place.top + place.bottom) / 2);
    }

    XServer server;
    std::optional<XUser> user;
};
INSTANTIATE_TEST_SUITE_P(All, FormatEditor, testing::ValuesIn(kFormats),
    [](const auto& made) { return made.param.name; });

// Kilobytes of this process in memory.
long residentKb()
{
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

float parameterOf(FormatHost& host, int tag)
{
    auto bytes = fromBase64(host.chunkText()).value();
    Player player;
    player.engine().setChunk(bytes.data(), static_cast<VstInt32>(bytes.size()), false);
    return player.engine().getParameter(tag);
}
} // namespace

TEST_P(FormatEditor, OpensFiftyTimesAndLeavesNothingBehind)
{
    const auto host = GetParam().make();
    const Window parent = parentAt(0);
    const int before = user->countWindows();
    long early = 0;
    for (int round = 0; round < rounds(50); ++round) {
        ASSERT_TRUE(host->openEditor(parent));
        EXPECT_EQ(host->width, kPanelWidth);
        EXPECT_EQ(host->height, kPanelHeight);
        EXPECT_TRUE(isPaintedSoon(*host)) << round;
        EXPECT_TRUE(waitForWindows(before + 1));
        host->closeEditor();
        ASSERT_TRUE(waitForWindows(before)) << round;
        if (round == 10)
            early = residentKb();
    }
#ifndef ORMUND_SANITIZED // a sanitizer keeps what was freed
    EXPECT_LT(residentKb() - early, 4000);
#else
    static_cast<void>(early);
#endif
}

TEST_P(FormatEditor, TellsTheHostOfEveryMoveBetweenItsBeginningAndItsEnd)
{
    const auto host = GetParam().make();
    ASSERT_TRUE(host->openEditor(parentAt(0)));
    idle(*host);
    const Place& place = findControl(kKnob)->place;
    const int x = (place.left + place.right) / 2;
    const int y = (place.top + place.bottom) / 2;
    user->move(x, y);
    idle(*host, 3);
    user->press();
    idle(*host, 3);
    for (int step = 1; step <= 4; ++step) {
        user->move(x, y - 10 * step);
        idle(*host, 3);
    }
    user->release();
    idle(*host, 5);
    ASSERT_GE(host->edits.size(), 4u);
    using Edit = FormatHost::Edit;
    EXPECT_EQ(host->edits.front(), (Edit{Edit::Begin, kKnob + 1, 0}));
    EXPECT_EQ(host->edits.back(), (Edit{Edit::End, kKnob + 1, 0}));
    for (size_t i = 1; i + 1 < host->edits.size(); ++i) {
        EXPECT_EQ(host->edits[i].kind, Edit::Value);
        EXPECT_EQ(host->edits[i].index, kKnob + 1);
    }
    const float last = host->edits[host->edits.size() - 2].value;
    EXPECT_NE(last, host->edits[1].value);
    EXPECT_NEAR(parameterOf(*host, kKnob), last, 1e-5);
}

TEST_P(FormatEditor, AsksForTheSizeOfEachScale)
{
    const auto host = GetParam().make();
    const Window parent = parentAt(0);
    ASSERT_TRUE(host->openEditor(parent));
    idle(*host);
    clickControl(*user, kKnob); // the keys go to the panel from now on
    idle(*host, 3);
    const auto press = [&](KeySym key) {
        user->key(XK_Control_L, true);
        user->tapKey(key);
        user->key(XK_Control_L, false);
        idle(*host, 3);
    };
    for (const double scale : {1.25, 1.5, 1.75, 2.0}) {
        press(XK_equal);
        EXPECT_EQ(host->width, std::lround(kPanelWidth * scale));
        EXPECT_EQ(host->height, std::lround(kPanelHeight * scale));
        XResizeWindow(user->display, parent, static_cast<unsigned>(host->width),
            static_cast<unsigned>(host->height));
        XSync(user->display, False);
        idle(*host, 5);
        EXPECT_TRUE(isPainted(0, host->width, host->height));
    }
    // The next window has the chosen size, and the one after the first again.
    host->closeEditor();
    ASSERT_TRUE(host->openEditor(parent));
    EXPECT_EQ(host->width, 2 * kPanelWidth);
    idle(*host, 3);
    clickControl(*user, kKnob);
    user->click(2 * findControl(kKnob)->place.left + 20, 2 * findControl(kKnob)->place.top + 20);
    idle(*host, 3);
    for (int fewer = 0; fewer < 4; ++fewer)
        press(XK_minus);
    EXPECT_EQ(host->width, kPanelWidth);
}

TEST_P(FormatEditor, AWindowThatIsDraggedTakesTheNearestSizeThatFits)
{
    const auto host = GetParam().make();
    const Window parent = parentAt(0);
    ASSERT_TRUE(host->openEditor(parent));
    idle(*host);
    if (!host->dragTo(1300, 1000)) {
        EXPECT_EQ(host->width, kPanelWidth);
        return;
    }
    EXPECT_EQ(host->width, std::lround(kPanelWidth * 1.25));
    EXPECT_EQ(host->height, std::lround(kPanelHeight * 1.25));
    XResizeWindow(user->display, parent, static_cast<unsigned>(host->width),
        static_cast<unsigned>(host->height));
    XSync(user->display, False);
    idle(*host, 5);
    EXPECT_TRUE(isPainted(0, host->width, host->height));
    for (const auto& [wide, high] : {std::pair{0, 0}, {-5, 70}, {1024, 572}}) {
        EXPECT_TRUE(host->dragTo(wide, high));
        EXPECT_EQ(host->width, std::lround(kPanelWidth * 0.75));
    }
    EXPECT_TRUE(host->dragTo(kPanelWidth, kPanelHeight));
}

TEST_P(FormatEditor, TwoInstancesShowAndTurnTheirOwnKnobs)
{
    const auto first = GetParam().make();
    const auto second = GetParam().make();
    ASSERT_TRUE(first->openEditor(parentAt(0)));
    ASSERT_TRUE(second->openEditor(parentAt(kPanelWidth)));
    idle(*first);
    idle(*second);
    EXPECT_TRUE(isPainted(0, kPanelWidth, kPanelHeight));
    EXPECT_TRUE(isPainted(kPanelWidth, kPanelWidth, kPanelHeight));
    const Place& place = findControl(kKnob)->place;
    user->move(kPanelWidth + place.left + 18, place.top + 18);
    user->press();
    idle(*second, 3);
    user->move(kPanelWidth + place.left + 18, place.top - 20);
    idle(*second, 3);
    user->release();
    idle(*second, 3);
    idle(*first, 3);
    EXPECT_TRUE(first->edits.empty());
    EXPECT_FALSE(second->edits.empty());
    first->closeEditor();
    idle(*second, 3);
    EXPECT_TRUE(isPainted(kPanelWidth, kPanelWidth, kPanelHeight));
}

TEST_P(FormatEditor, PresetOfTheEditorIsToldAndSaved)
{
    const TwoPresets tree;
    const auto host = GetParam().make();
    ASSERT_TRUE(host->openEditor(parentAt(0)));
    idle(*host);
    for (int press = 0; press < 2; ++press) { // the first gives the first preset
        clickControl(*user, Tag::NextPreset);
        idle(*host, 5);
    }
    EXPECT_EQ(parameterOf(*host, Tag::Swing), TwoPresets::kSecondSwing);
    EXPECT_THAT(host->edits,
        testing::Contains(
            FormatHost::Edit{FormatHost::Edit::Value, Tag::Swing + 1, TwoPresets::kSecondSwing}));
    const auto other = GetParam().make();
    other->restoreChunk(host->chunkText());
    EXPECT_EQ(parameterOf(*other, Tag::Swing), TwoPresets::kSecondSwing);
}

// A host that saves only what it knows to be edited must hear of each gesture, and of one once.
TEST_P(FormatEditor, MarksTheSongDirtyOnceAGesture)
{
    const auto host = GetParam().make();
    ASSERT_TRUE(host->openEditor(parentAt(0)));
    idle(*host);
    const int before = host->markedDirty;
    const Place& steps = findControl(Tag::Velocity)->place;
    const int y = (steps.top + steps.bottom) / 2;
    user->move(steps.left + 20, y);
    idle(*host, 3);
    user->press();
    for (int i = 0; i < 5; ++i) {
        user->move(steps.left + 20 + 15 * i, y + 3 * i);
        idle(*host, 3);
    }
    EXPECT_EQ(host->markedDirty, before);
    user->release();
    idle(*host, 5);
    EXPECT_EQ(host->markedDirty, before + 1);
    idle(*host, 10);
    EXPECT_EQ(host->markedDirty, before + 1);
    host->restoreChunk(host->chunkText());
    idle(*host, 5);
    EXPECT_EQ(host->markedDirty, before + 1); // what the host sets it knows
}

} // namespace ormund
