#include "platform/ChildProcess.h"
#include "platform/KWFileChooser.h"
#include "platform/OpenLink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace ormund {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

using Kind = KWFileChooser::Kind;

// A desktop whose dialog programs are small scripts: they write down how they were called and
// answer what the test wants.
class FileChooserTest : public testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/chooser-XXXXXX";
        folder = mkdtemp(pattern);
        path = std::getenv("PATH");
        setenv("PATH", (folder + ":/usr/bin:/bin").c_str(), 1);
        setenv("XDG_CURRENT_DESKTOP", "GNOME", 1);
    }
    void TearDown() override
    {
        setenv("PATH", path.c_str(), 1);
        fs::remove_all(folder);
    }
    void install(const std::string& program, const std::string& body)
    {
        const std::string file = folder + "/" + program;
        std::ofstream(file) << "#!/bin/sh\nfor a in \"$@\"; do echo \"$a\" >>" << folder
                            << "/calls; done\n"
                            << body << "\n";
        fs::permissions(file, fs::perms::owner_all);
    }
    std::string calls() const
    {
        std::ifstream file(folder + "/calls");
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void ask(Kind kind, const std::string& extension = "kwe")
    {
        isAnswered = false;
        isOpened = chooser.open(
            {kind, "Ormund CC Map", extension, "", folder, "name.kwe"}, [this](const auto& found) {
                answer = found;
                isAnswered = true;
            });
    }
    // As the host's idle does; gives up after two seconds.
    bool waitForAnswer()
    {
        for (int i = 0; i < 400 && !isAnswered; ++i) {
            chooser.poll();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return isAnswered;
    }

    std::string folder;
    std::string path;
    KWFileChooser chooser;
    std::string answer = "none";
    bool isOpened = false;
    bool isAnswered = false;
};

} // namespace

TEST_F(FileChooserTest, OpenReturnsAtOnceAndTheAnswerComesAtIdle)
{
    install("zenity", "sleep 0.2; echo '/some/where/a file.kwe'");
    const auto start = std::chrono::steady_clock::now();
    ask(Kind::Load);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(150));
    EXPECT_TRUE(isOpened);
    EXPECT_TRUE(chooser.isOpen());
    ask(Kind::Load); // the first dialog gives way
    EXPECT_TRUE(isOpened);
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answer, "/some/where/a file.kwe");
    EXPECT_FALSE(chooser.isOpen());
    EXPECT_THAT(calls(), HasSubstr("--title=Ormund CC Map\n--filename=" + folder + "/\n"));
    EXPECT_THAT(calls(), HasSubstr("--file-filter=*.kwe | *.kwe\n"));
}

TEST_F(FileChooserTest, ACancelledDialogAnswersNothing)
{
    install("zenity", "echo /half/written; exit 1");
    ask(Kind::Load);
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answer, "");
}

TEST_F(FileChooserTest, ASavedNameGetsItsExtensionAndAnExistingFileIsAskedAbout)
{
    const std::string file = folder + "/song";
    // The first call chooses, the second is the question.
    const std::string choose =
        "case \"$1\" in --question) exit $(cat " + folder + "/reply);; *) echo " + file + ";; esac";
    install("zenity", choose);
    ask(Kind::Save);
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answer, file + ".kwe");
    EXPECT_THAT(calls(), HasSubstr("--save\n--confirm-overwrite\n"));
    EXPECT_THAT(calls(), HasSubstr("/name.kwe\n"));

    std::ofstream(file + ".kwe") << "x";
    std::ofstream(folder + "/reply") << "1";
    ask(Kind::Save);
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answer, "") << "the user keeps the file";
    std::ofstream(folder + "/reply") << "0";
    ask(Kind::Save);
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answer, file + ".kwe");
}

// The names of presets are suggested to the dialog, and a preset may come from anybody.
TEST_F(FileChooserTest, ANameIsOneArgumentAndNoCommandWhateverStandsInIt)
{
    const std::string evil = folder + "/evil";
    for (const char* program : {"zenity", "kdialog"}) {
        setenv("XDG_CURRENT_DESKTOP", program[0] == 'k' ? "KDE" : "GNOME", 1);
        install(program, "exit 1");
        for (const std::string& name :
            {"$(touch " + evil + ")", "`touch " + evil + "`", "a'\"; touch " + evil + "; #",
                "a\" | touch " + evil, std::string("--version"), std::string("%n * ~ \\")}) {
            fs::remove(folder + "/calls");
            isAnswered = false;
            ASSERT_TRUE(chooser.open({Kind::Save, name, "kwe", name, folder, name},
                [this](const auto&) { isAnswered = true; }));
            ASSERT_TRUE(waitForAnswer());
            EXPECT_THAT(calls(), HasSubstr(folder + "/" + name + "\n")) << program;
            EXPECT_FALSE(fs::exists(evil)) << program << " " << name;
        }
    }
}

TEST_F(FileChooserTest, AFolderComesWithoutItsSlashAndTheOtherDesktopHasItsOwnProgram)
{
    install("kdialog", "echo /presets/mine/");
    install("zenity", "echo /wrong");
    setenv("XDG_CURRENT_DESKTOP", "KDE", 1);
    ask(Kind::Folder, "");
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answer, "/presets/mine");
    EXPECT_THAT(calls(), HasSubstr("--getexistingdirectory\n"));
}

TEST_F(FileChooserTest, ADialogThatIsOpenWhenThePlugInGoesIsClosed)
{
    install("zenity", "echo $$ >" + folder + "/pid; sleep 100");
    {
        KWFileChooser shortLived;
        ASSERT_TRUE(shortLived.open({}, [this](const auto&) { isAnswered = true; }));
        for (int i = 0; i < 400 && !fs::exists(folder + "/pid"); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    std::ifstream file(folder + "/pid");
    pid_t process = 0;
    file >> process;
    ASSERT_GT(process, 0);
    EXPECT_EQ(kill(process, 0), -1);
    EXPECT_FALSE(isAnswered);
}

TEST_F(FileChooserTest, AMissingFolderGivesTheHomeOfWhateverKindItIs)
{
    install("zenity", "exit 1");
    const std::string home = std::getenv("HOME");
    for (const char* place : {"", "relative", "/"}) {
        fs::remove(folder + "/calls");
        setenv("HOME", place, 1);
        isAnswered = false;
        ASSERT_TRUE(chooser.open({Kind::Load, "", "kwe", "", folder + "/missing", ""},
            [this](const auto&) { isAnswered = true; }));
        ASSERT_TRUE(waitForAnswer());
        EXPECT_THAT(calls(), HasSubstr("--filename=/")) << place;
    }
    setenv("HOME", home.c_str(), 1);
}

TEST_F(FileChooserTest, WithoutADialogProgramOpenSaysSo)
{
    setenv("PATH", folder.c_str(), 1);
    EXPECT_FALSE(KWFileChooser::isAvailable());
    ask(Kind::Load);
    EXPECT_FALSE(isOpened);
}

TEST_F(FileChooserTest, ALinkOpensInAProgramThatNobodyWaitsFor)
{
    install("xdg-open", "sleep 0.1; echo done >" + folder + "/done");
    EXPECT_TRUE(openLink("/usr/share/doc/a b'c/Manual.htm"));
    EXPECT_FALSE(openLink("--help"));
    EXPECT_FALSE(fs::exists(folder + "/done"));
    for (int i = 0; i < 400 && !fs::exists(folder + "/done"); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(calls(), "/usr/share/doc/a b'c/Manual.htm\n");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child is left";
}

TEST(ChildProcess, OutputIsReadWholeAndLibraryPathsOfTheHostStayWithIt)
{
    setenv("LD_LIBRARY_PATH", "/nowhere", 1);
    ChildProcess child;
    ASSERT_TRUE(child.start({"sh", "-c",
        "i=0; while [ $i -lt 2000 ]; do echo 0123456789012345678; i=$((i+1)); done; "
        "echo \"<$LD_LIBRARY_PATH>\"; exit 3"}));
    unsetenv("LD_LIBRARY_PATH");
    for (int i = 0; i < 1000 && !child.poll(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_EQ(child.output().size(), 2000u * 20 + 3);
    EXPECT_THAT(child.output(), HasSubstr("<>"));
    EXPECT_EQ(child.exitStatus(), 3);
    EXPECT_FALSE(child.start({"no-such-program-anywhere"}));
}

} // namespace ormund
