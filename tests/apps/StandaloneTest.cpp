// The stand-alone program as a user runs it: from the shell, on JACK, in its window.
#include "tests/apps/StandaloneRig.h"
#include "tests/view/XServer.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <unistd.h>
#include <vector>

#include "tests/apps/ProgramWindow.h"

namespace ormund {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

TEST_F(Standalone, SaysWhatIsMissingInOneLineAndWhatWorks)
{
    const std::ofstream empty(home.file("empty.kwe"));
    const struct {
        const char* arguments;
        int code;
        const char* words;
    } cases[] = {
        {"", 1,
            "ormund: no sound: no JACK server runs, PulseAudio has no device, ALSA has no device"},
        {"", 1, "`ormund --device none`"},
        {"--device jack", 1, "no JACK server runs"},
        {"--device pulse", 1, "PulseAudio has no device"},
        {"--device Nowhere", 1, "there is no device named Nowhere"},
        {"--device none", 1, "no X display"},
        {"--device none --midi-out Synth", 1, "MIDI port"},
        {"--tempo 1000", 2, "--tempo"},
        {"--device none --preset nowhere.kwe", 1, "cannot read nowhere.kwe: No such file"},
        {"--nonsense", 2, "--nonsense"},
    };
    for (const auto& [arguments, code, words] : cases) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.code, code) << arguments;
        EXPECT_EQ(outcome.lines(), 1) << outcome.text;
        EXPECT_THAT(outcome.text, StartsWith("ormund: ")) << arguments;
        EXPECT_THAT(outcome.text, HasSubstr(words)) << arguments;
    }
    const Outcome damaged = run("--device none " + home.file("empty.kwe"));
    EXPECT_EQ(damaged.code, 1);
    EXPECT_EQ(damaged.lines(), 1) << damaged.text;
}

TEST_F(Standalone, HelpVersionAndListComeWithoutSound)
{
    EXPECT_EQ(run("--help").code, 0);
    EXPECT_THAT(run("--help").text, HasSubstr("--list-devices"));
    EXPECT_THAT(run("--version").text, StartsWith("ormund 1."));
    const Outcome list = run("--list-devices");
    EXPECT_EQ(list.code, 0);
    EXPECT_THAT(list.text, StartsWith("none"));
    EXPECT_EQ(list.lines(), 1) << list.text;
}

TEST_F(Standalone, EndsCleanlyBySignal)
{
    for (const int number : {SIGINT, SIGTERM}) {
        Running program(home, {"--device", "none", "--no-window", "--play"});
        for (int i = 0; i < 500 && program.said().empty(); ++i)
            usleep(10000);
        EXPECT_THAT(program.said(), HasSubstr("no sound"));
        program.signal(number);
        EXPECT_EQ(program.wait(), 0) << program.said();
    }
}

TEST_F(Standalone, TheDesktopFilesAreValid)
{
    if (access("/usr/bin/desktop-file-validate", X_OK) == 0) {
        const Outcome outcome =
            runCommand("desktop-file-validate " ORMUND_SOURCE_DIR "/apps/ormund/ormund.desktop");
        EXPECT_EQ(outcome.code, 0);
        EXPECT_THAT(outcome.text, IsEmpty());
    }
    // Every type that the entry opens is one that the package of types declares.
    std::ostringstream entry;
    std::ostringstream types;
    entry << std::ifstream(ORMUND_SOURCE_DIR "/apps/ormund/ormund.desktop").rdbuf();
    types << std::ifstream(ORMUND_SOURCE_DIR "/apps/ormund/ormund.xml").rdbuf();
    for (const std::string type : {"application/x-ormund-preset",
             "application/x-ormund-synth-preset", "application/x-ormund-controller-map"}) {
        EXPECT_THAT(entry.str(), HasSubstr(type + ";"));
        EXPECT_THAT(types.str(), HasSubstr("type=\"" + type + "\""));
    }
}

class InWindow : public OnJack {
protected:
    void SetUp() override
    {
        if (!XServer::isInstalled())
            GTEST_SKIP() << "no X server is installed";
        OnJack::SetUp();
        if (IsSkipped())
            return;
        screen.emplace();
        ASSERT_TRUE(screen->isRunning());
        user.emplace();
        program = std::make_unique<Running>(home, std::vector<std::string>{"--device", "jack"});
        for (int i = 0; i < 1000 && !window(); ++i)
            usleep(10000);
        ASSERT_NE(window(), 0u) << program->said();
        usleep(500000);
    }
    void TearDown() override
    {
        program.reset();
        user.reset();
        screen.reset();
    }
    Window window() const { return programWindow(*user); }
    std::string title() const
    {
        char* name = nullptr;
        XFetchName(user->display, window(), &name);
        const std::string text = name ? name : "";
        XFree(name);
        return text;
    }
    std::optional<XServer> screen;
    std::optional<XUser> user;
    std::unique_ptr<Running> program;
};

// Where things stand, in pixels of the window at scale 1.
constexpr int kFreeX = 268; // a text
constexpr int kTempoX = 211;
constexpr int kMenuX = 570; // what leads
constexpr int kStripY = 20;
constexpr int kPanelX = 540; // a place of the panel that takes no mouse
constexpr int kPanelY = 52;
constexpr int kPadX = 894; // the panel's play
constexpr int kPadY = 651;

struct Hand {
    int x, y;
    bool clicks;
};

TEST_F(InWindow, PlaysByTheButtonByTheSpaceBarAndByThePanel)
{
    for (const auto& [x, y, clicks] : {Hand{kFreeX, kStripY, false}, Hand{kPanelX, kPanelY, false},
             Hand{kPanelX, kPanelY, true}}) {
        user->move(x, y);
        if (clicks) // the panel has the keys from then on
            user->click(x, y);
        user->tapKey(' ');
        EXPECT_TRUE(listener->waitRolling(true)) << "key at " << y;
        usleep(300000);
        user->tapKey(' ');
        EXPECT_TRUE(listener->waitRolling(false)) << "key at " << y;
        usleep(300000);
    }
    for (const bool rolls : {true, false}) {
        user->click(kPadX, kPadY);
        EXPECT_TRUE(listener->waitRolling(rolls)) << "the pad";
        usleep(300000);
    }
    listener->locate(5 * JackServer::kRate);
    usleep(200000);
    EXPECT_GE(listener->frame(), 5u * JackServer::kRate);
    user->move(kFreeX, kStripY);
    user->tapKey(0xFF50); // Home
    usleep(200000);
    EXPECT_EQ(listener->frame(), 0u);
}

TEST_F(InWindow, ATempoThatIsTypedStaysWhileTheTransportStands)
{
    const auto field = [&] {
        std::vector<unsigned long> row;
        for (int x = kTempoX - 25; x < kTempoX + 25; ++x)
            row.push_back(user->screenPixel(x, kStripY));
        return row;
    };
    user->click(kPadX, kPadY);
    EXPECT_TRUE(listener->waitRolling(true));
    usleep(100000);
    user->click(kPadX, kPadY);
    EXPECT_TRUE(listener->waitRolling(false));
    usleep(300000);
    usleep(1500000); // JACK has come to rest
    auto shown = field();
    for (const char digit : {'7', '8'}) {
        user->click(kTempoX, kStripY);
        usleep(200000); // the strip has the keys from then on
        user->tapKey('9');
        user->tapKey(static_cast<unsigned long>(digit));
        if (digit == '7')
            user->tapKey(0xFF0D); // Return
        else
            user->click(kPanelX, kPanelY);
        user->move(kPanelX, kPanelY);
        usleep(700000); // until the old tempo is shown no more
        for (int i = 0; i < 50 && field() == shown; ++i)
            usleep(100000);
        EXPECT_NE(field(), shown) << digit;
        shown = field();
    }
    user->click(kPadX, kPadY);
    EXPECT_TRUE(listener->waitRolling(true));
    usleep(100000);
    EXPECT_NEAR(listener->tempo(), 98, 1e-6);
}

TEST_F(InWindow, WhatLeadsIsChosenFromAListAndTheSongKeepsItsPlace)
{
    EXPECT_THAT(title(), HasSubstr("Ormund"));
    const unsigned long panel = user->screenPixel(kMenuX, 62);
    user->click(kMenuX, kStripY);
    usleep(300000);
    EXPECT_NE(user->screenPixel(kMenuX, 62), panel) << "the list lies over the panel";
    user->tapKey(0xFF1B); // Escape
    usleep(300000);
    EXPECT_EQ(user->screenPixel(kMenuX, 62), panel) << "and gives it free again";
    user->tapKey(0xFF52); // Up: own
    usleep(200000);
    user->tapKey(' ');
    EXPECT_FALSE(listener->waitRolling(true, 1000)) << "JACK leads no longer";
    user->tapKey(0xFF54); // Down: JACK, which takes the song where it is
    EXPECT_TRUE(listener->waitRolling(true));
    EXPECT_GT(listener->frame(), unsigned(JackServer::kRate));
}

TEST_F(InWindow, AHintLiesOverThePanelWhileTheMouseRests)
{
    user->move(kPanelX, kPanelY);
    usleep(300000);
    const unsigned long panel = user->screenPixel(kTempoX + 60, 50);
    user->move(kTempoX, kStripY);
    usleep(600000);
    EXPECT_NE(user->screenPixel(kTempoX + 60, 50), panel);
    user->move(kPanelX, kPanelY);
    usleep(600000);
    EXPECT_EQ(user->screenPixel(kTempoX + 60, 50), panel);
}

TEST_F(InWindow, ClosesWhenItsDesktopSaysSo)
{
    askToClose(*user);
    EXPECT_EQ(program->wait(), 0);
    EXPECT_THAT(program->said(), IsEmpty());
}

} // namespace

} // namespace ormund
