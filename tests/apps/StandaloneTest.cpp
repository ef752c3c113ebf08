// The stand-alone program as a user runs it: from the shell, on JACK, in its window.
#include "apps/host/ScriptedHost.h"
#include "tests/support/Command.h"
#include "tests/support/JackServer.h"
#include "tests/support/OwnHome.h"
#include "tests/view/XServer.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>

extern char** environ;

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr char kProgram[] = ORMUND_BIN_DIR "/ormund";
constexpr char kMidiOut[] = "Ormund:Ormund MIDI out";

// The program in the background.
class Running {
public:
    Running(const OwnHome& home, std::vector<std::string> arguments) : log(home.file("log"))
    {
        arguments.insert(arguments.begin(), kProgram);
        std::vector<char*> words;
        for (std::string& each : arguments)
            words.push_back(each.data());
        words.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(
            &actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_adddup2(&actions, 1, 2);
        posix_spawn(&process, kProgram, &actions, nullptr, words.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
    }
    ~Running()
    {
        // Asked first: a JACK server waits long for a client that dies.
        if (process > 0)
            kill(process, SIGTERM);
        if (process > 0 && wait() < 0 && process > 0) {
            kill(process, SIGKILL);
            waitpid(process, nullptr, 0);
        }
    }
    void signal(int number) const { kill(process, number); }
    // Its exit code; -1 when it does not end within ten seconds or dies.
    int wait()
    {
        for (int i = 0; i < 1000; ++i, usleep(10000)) {
            int status = 0;
            if (waitpid(process, &status, WNOHANG) != process)
                continue;
            process = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        return -1;
    }
    bool isThere() const { return waitpid(process, nullptr, WNOHANG) == 0; }
    std::string said() const
    {
        std::ostringstream text;
        text << std::ifstream(log).rdbuf();
        return text.str();
    }

private:
    std::string log;
    pid_t process = -1;
};

class Standalone : public testing::Test {
protected:
    void SetUp() override
    {
        setenv("LSAN_OPTIONS",
            "print_suppressions=0:suppressions=" ORMUND_SOURCE_DIR "/tests/support/lsan.supp", 0);
        setenv("JACK_DEFAULT_SERVER", "ormund-nobody", 1);
        setenv("PULSE_SERVER", home.file("no-socket").c_str(), 1);
        setenv("ALSA_CONFIG_PATH", home.file("no-config").c_str(), 1);
        unsetenv("DISPLAY");
    }
    Outcome run(const std::string& arguments)
    {
        return runCommand(std::string("timeout 20 ") + kProgram + " " + arguments);
    }
    OwnHome home;
};

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

class OnJack : public Standalone {
protected:
    void SetUp() override
    {
        if (!JackServer::isInstalled())
            GTEST_SKIP() << "no JACK server is installed";
        Standalone::SetUp();
        server = std::make_unique<JackServer>();
        ASSERT_TRUE(server->isRunning());
        listener = std::make_unique<JackListener>();
    }
    std::unique_ptr<JackServer> server;
    std::unique_ptr<JackListener> listener;
};

// What the module sends in blocks of the same size, from the start on.
std::vector<JackListener::Heard> moduleNotes(int64_t frames, double tempo)
{
    ScriptedHost host;
    EXPECT_TRUE(host.load(ORMUND_BIN_DIR "/ormund-vst2.so",
        {static_cast<float>(JackServer::kRate), JackServer::kBlock, tempo}));
    // The controllers' first values go out before the song begins.
    host.run(100 * JackServer::kBlock);
    host.events.clear();
    host.start();
    host.run(frames);
    std::vector<JackListener::Heard> notes;
    for (const ScriptedHost::Event& event : host.events)
        notes.push_back({event.frame - 100 * JackServer::kBlock, event.bytes});
    return notes;
}

TEST_F(OnJack, SendsWhatTheModuleSendsToTheSample)
{
    constexpr int64_t kFrames = 3 * JackServer::kRate / JackServer::kBlock * JackServer::kBlock;
    Running program(home, {"--device", "jack", "--no-window", "--tempo", "132"});
    ASSERT_TRUE(listener->connectFrom(kMidiOut)) << program.said();
    listener->play(true);
    ASSERT_TRUE(listener->waitFrame(kFrames + JackServer::kBlock));
    listener->play(false);
    ASSERT_TRUE(listener->waitRolling(false));

    std::vector<JackListener::Heard> heard = listener->take();
    std::erase_if(heard, [](const auto& each) { return each.frame < 0 || each.frame >= kFrames; });
    EXPECT_GT(heard.size(), 20u);
    const auto expected = moduleNotes(kFrames, 132);
    ASSERT_EQ(heard.size(), expected.size());
    for (size_t i = 0; i < heard.size(); ++i)
        ASSERT_EQ(heard[i], expected[i])
            << "event " << i << " at " << heard[i].frame << ", not " << expected[i].frame;
    EXPECT_NEAR(listener->tempo(), 132, 1e-6) << "the tempo is told to JACK's other clients";
}

TEST_F(OnJack, StartsTheTransportFollowsItsStopAndEndsItsNotes)
{
    Running program(home, {"--device", "jack", "--no-window", "--play"});
    EXPECT_TRUE(listener->waitRolling(true, 10000)) << program.said();
    ASSERT_TRUE(listener->connectFrom(kMidiOut));
    ASSERT_TRUE(listener->waitFrame(JackServer::kRate));
    EXPECT_THAT(listener->take(), testing::Not(IsEmpty()));
    listener->play(false);
    ASSERT_TRUE(listener->waitRolling(false));
    sleep(1);
    listener->take();
    usleep(500000);
    EXPECT_THAT(listener->take(), IsEmpty()) << "it goes on while the transport stands";

    listener->play(true);
    ASSERT_TRUE(listener->waitRolling(true));
    usleep(700000);
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    std::array<int, 128> sounding{};
    for (const JackListener::Heard& each : listener->take()) {
        if ((each.bytes[0] & 0xF0) == 0x90 && each.bytes[2] > 0)
            ++sounding[each.bytes[1]];
        else if ((each.bytes[0] & 0xE0) == 0x80)
            sounding[each.bytes[1]] = 0;
    }
    EXPECT_THAT(sounding, testing::Each(0));
}

TEST_F(OnJack, LivesOnWithoutTheServer)
{
    Running program(home, {"--device", "jack", "--no-window", "--play"});
    EXPECT_TRUE(listener->waitRolling(true, 10000)) << program.said();
    listener.reset();
    server->stop();
    sleep(1);
    EXPECT_TRUE(program.isThere());
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
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
    // The program's; 0 until it is there.
    Window window() const
    {
        Window root = 0;
        Window parent = 0;
        Window* children = nullptr;
        unsigned count = 0;
        XQueryTree(
            user->display, DefaultRootWindow(user->display), &root, &parent, &children, &count);
        const Window first = count > 0 ? children[0] : 0;
        if (children)
            XFree(children);
        return first;
    }
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
constexpr int kPlayX = 68;
constexpr int kForthX = 727;
constexpr int kMenuX = 620;
constexpr int kStripY = 20;
constexpr int kPanelX = 540; // a place of the panel that takes no mouse
constexpr int kPanelY = 52;

TEST_F(InWindow, PlaysByTheButtonByTheSpaceBarAndByThePanel)
{
    user->click(kPlayX, kStripY);
    EXPECT_TRUE(listener->waitRolling(true));
    user->click(kPlayX, kStripY);
    EXPECT_TRUE(listener->waitRolling(false));
    usleep(300000);
    for (const int y : {kStripY, kPanelY}) {
        user->move(y == kStripY ? kPlayX + 200 : kPanelX, y);
        user->tapKey(' ');
        EXPECT_TRUE(listener->waitRolling(true)) << "key at " << y;
        usleep(300000);
        user->tapKey(' ');
        EXPECT_TRUE(listener->waitRolling(false)) << "key at " << y;
        usleep(300000);
    }
    listener->locate(5 * JackServer::kRate);
    usleep(200000);
    EXPECT_GE(listener->frame(), 5u * JackServer::kRate);
    user->move(kPlayX + 200, kStripY);
    user->tapKey(0xFF50); // Home
    usleep(200000);
    EXPECT_EQ(listener->frame(), 0u);
}

TEST_F(InWindow, ShowsThePresetAndOpensItsListOverThePanel)
{
    user->click(kForthX, kStripY);
    usleep(500000);
    const std::string second = title();
    EXPECT_THAT(second, HasSubstr("Ormund"));
    user->click(kForthX, kStripY);
    usleep(500000);
    EXPECT_NE(title(), second);

    const unsigned long panel = user->screenPixel(kMenuX, 62);
    user->click(kMenuX, kStripY);
    usleep(300000);
    EXPECT_NE(user->screenPixel(kMenuX, 62), panel) << "the list lies over the panel";
    user->tapKey(0xFF1B); // Escape
    usleep(300000);
    EXPECT_EQ(user->screenPixel(kMenuX, 62), panel) << "and gives it free again";
}

TEST_F(InWindow, ClosesWhenItsDesktopSaysSo)
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window();
    event.xclient.message_type = XInternAtom(user->display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] =
        static_cast<long>(XInternAtom(user->display, "WM_DELETE_WINDOW", False));
    XSendEvent(user->display, window(), False, NoEventMask, &event);
    XSync(user->display, False);
    EXPECT_EQ(program->wait(), 0);
    EXPECT_THAT(program->said(), IsEmpty());
}

} // namespace
