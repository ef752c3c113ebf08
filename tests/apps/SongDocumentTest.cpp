// The song as the stand-alone program's document: marked, saved, asked about, kept after a kill.
#include "tests/apps/StandaloneRig.h"
#include "tests/view/XServer.h"

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <optional>

#include "tests/apps/ProgramWindow.h"

namespace ormund {

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr unsigned long kReturn = 0xFF0D;
constexpr unsigned long kEscape = 0xFF1B;
constexpr unsigned long kControlKey = 0xFFE3;
constexpr int kStrip = 40;     // the row above the panel
constexpr int kScaleUpX = 150; // the arrow to the next scale, on the panel
constexpr int kScaleUpY = 106;

class SongDocuments : public Standalone {
protected:
    void SetUp() override
    {
        if (!XServer::isInstalled())
            GTEST_SKIP() << "no X server is installed";
        Standalone::SetUp();
        screen.emplace();
        ASSERT_TRUE(screen->isRunning());
        user.emplace();
        setenv("PATH", "/nowhere", 1); // no dialog program of the desktop's
    }
    void TearDown() override
    {
        program.reset();
        user.reset();
        screen.reset();
        setenv("PATH", path.c_str(), 1);
    }
    void start(std::vector<std::string> more = {})
    {
        more.insert(more.begin(), {"--device", "none"});
        program = std::make_unique<Running>(home, more);
        EXPECT_TRUE(waitFor([&] { return window() != 0 && !title().empty(); })) << program->said();
        user->setFocus(window()); // as a window manager does
        usleep(400000);
        user->move(540, 52);
    }
    static bool waitFor(const std::function<bool()>& holds)
    {
        for (int i = 0; i < 500 && !holds(); ++i)
            usleep(10000);
        return holds();
    }
    std::string title() const
    {
        char* name = nullptr;
        if (!window() || !XFetchName(user->display, window(), &name) || !name)
            return {};
        const std::string text = name;
        XFree(name);
        return text;
    }
    bool isTitled(const std::string& start)
    {
        return waitFor([&] { return title().starts_with(start); });
    }
    void edit()
    {
        user->click(kScaleUpX, kScaleUpY + kStrip);
        user->move(540, 52);
    }
    void control(unsigned long letter)
    {
        user->key(kControlKey, true);
        user->tapKey(letter);
        user->key(kControlKey, false);
        usleep(300000);
    }
    Window window() const { return programWindow(*user); }
    void close()
    {
        askToClose(*user);
        usleep(400000);
    }
    size_t recovered(const std::string& ending) const
    {
        size_t found = 0;
        std::error_code ignored;
        for (const auto& entry :
            fs::directory_iterator(home.file("Kelda Works/Ormund/Recovered"), ignored))
            found += entry.path().string().ends_with(ending) ? 1 : 0;
        return found;
    }
    void photograph(const std::string& name) const
    {
        if (const char* folder = std::getenv("ORMUND_PICTURES"))
            runCommand("/usr/bin/import -window root " + (folder + ("/" + name)));
    }

    std::string path = std::getenv("PATH");
    std::optional<XServer> screen;
    std::optional<XUser> user;
    std::unique_ptr<Running> program;
};

TEST_F(SongDocuments, AreMarkedSavedAskedAboutAndOpenedAgain)
{
    start();
    EXPECT_THAT(title(), Not(StartsWith("*")));
    edit();
    EXPECT_TRUE(isTitled("*"));
    control('s'); // it has no file of its own yet
    photograph("save.png");
    for (const char letter : std::string("mine"))
        user->tapKey(static_cast<unsigned long>(letter));
    user->tapKey(kReturn);
    EXPECT_TRUE(isTitled("mine")) << title();

    edit();
    EXPECT_TRUE(isTitled("*mine"));
    close();
    EXPECT_TRUE(program->isThere());
    photograph("close.png");
    user->tapKey(kEscape);
    usleep(300000);
    EXPECT_TRUE(program->isThere());
    control('s');
    EXPECT_TRUE(isTitled("mine")) << title();
    edit();
    EXPECT_TRUE(isTitled("*mine"));
    close();
    user->tapKey(kReturn); // save
    EXPECT_EQ(program->wait(), 0);
    EXPECT_EQ(recovered(""), 0u);

    start();
    EXPECT_TRUE(isTitled("mine")) << title();
    close();
    EXPECT_EQ(program->wait(), 0) << "nothing to ask";
    start({"--fresh"});
    EXPECT_THAT(title(), Not(HasSubstr("mine")));
}

TEST_F(SongDocuments, AreOfferedAgainAfterAKillAndAfterASignal)
{
    for (const int signal : {SIGTERM, SIGKILL}) {
        SCOPED_TRACE(signal);
        start();
        edit();
        EXPECT_TRUE(isTitled("*"));
        if (signal == SIGKILL) {
            usleep(5000000); // the longest that an edit is not kept
            EXPECT_EQ(recovered(".song"), 1u);
        }
        program->signal(signal);
        EXPECT_EQ(program->wait(), signal == SIGKILL ? -1 : 0);
        EXPECT_EQ(recovered(".song"), 1u);

        start();
        EXPECT_THAT(title(), Not(StartsWith("*")));
        photograph("offer.png");
        user->tapKey(kReturn); // open
        EXPECT_TRUE(isTitled("*"));
        EXPECT_EQ(recovered(".kwe"), 0u) << "it goes on as the present song";
        EXPECT_EQ(recovered(".song"), 1u);
        close();
        user->tapKey(0xFF53); // from SAVE on to DON'T SAVE
        user->tapKey(kReturn);
        EXPECT_EQ(program->wait(), 0);
        EXPECT_EQ(recovered(""), 0u);
    }
}

TEST_F(SongDocuments, ASignalSavesWithoutAQuestion)
{
    start();
    edit();
    control('s');
    for (const char letter : std::string("mine"))
        user->tapKey(static_cast<unsigned long>(letter));
    user->tapKey(kReturn);
    EXPECT_TRUE(isTitled("mine"));
    edit();
    EXPECT_TRUE(isTitled("*mine"));
    program->signal(SIGUSR1);
    EXPECT_TRUE(isTitled("mine"));
}

} // namespace

} // namespace ormund
