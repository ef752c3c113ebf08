#include "platform/KWFileio.h"
#include "tests/platform/TestFolder.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <signal.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace ormund {

using testing::ElementsAre;

namespace {

std::string contentOf(const std::string& path)
{
    std::string content(static_cast<size_t>(std::max(KWFileio::size(path), 0LL)), '\0');
    return KWFileio::read(path, content.data(), content.size()) ? content : "?";
}

std::vector<std::string> namesIn(const std::string& folder)
{
    size_t most = 100;
    std::vector<std::string> names;
    for (const KWFileio::Entry& entry : KWFileio::list(folder, most))
        names.push_back(entry.name);
    return names;
}

} // namespace

TEST(KWFileio, ReadsBackWhatItWroteAndNeverMore)
{
    const TestFolder folder;
    const std::string path = folder / "a song \xC3\xBC.kwe";
    ASSERT_TRUE(KWFileio::write(path, "12345678", 8));
    ASSERT_TRUE(KWFileio::write(path, "abcd", 4));
    EXPECT_EQ(contentOf(path), "abcd");
    char more[5];
    EXPECT_FALSE(KWFileio::read(path, more, sizeof more));
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("a song \xC3\xBC.kwe"));
    EXPECT_EQ(KWFileio::nameOf(path), "a song \xC3\xBC");
}

TEST(KWFileio, AFailedWriteKeepsTheOldFileAndLeavesNothingBehind)
{
    const TestFolder folder;
    EXPECT_FALSE(KWFileio::write(folder / "missing/x", "a", 1));
    const std::string path = folder / "song";
    ASSERT_TRUE(KWFileio::write(path, "old", 3));
    ASSERT_EQ(::symlink(path.c_str(), (folder / "link").c_str()), 0);
    ASSERT_TRUE(KWFileio::write(folder / "link", "new", 3));
    EXPECT_EQ(contentOf(path), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
    std::filesystem::create_directory(folder / "taken");
    EXPECT_FALSE(KWFileio::write(folder / "taken", "a", 1));
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("link", "song", "taken"));
}

TEST(KWFileio, AFullDiskKeepsTheOldFile)
{
    const TestFolder folder;
    const std::string path = folder / "song";
    ASSERT_TRUE(KWFileio::write(path, "old", 3));
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{1000, before.rlim_max};
    ::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool written = KWFileio::write(path, std::string(5000, 'x').data(), 5000);
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(written);
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("song"));
}

TEST(KWFileio, PipesAndFoldersAreNoFiles)
{
    const TestFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    char byte = 0;
    EXPECT_FALSE(KWFileio::read(folder / "pipe", &byte, 1));
    EXPECT_EQ(KWFileio::size(folder / "pipe"), -1);
    EXPECT_FALSE(KWFileio::read(folder.path(), &byte, 1));
    EXPECT_TRUE(namesIn(folder / "pipe").empty());
    std::filesystem::create_directory(folder / "below");
    std::filesystem::create_directory_symlink(folder / "below", folder / "link");
    std::filesystem::create_symlink(folder / "nowhere", folder / "dead");
    size_t most = 100;
    const KWFileio::Entry entries[] = {{"below", true}, {"link", true}};
    EXPECT_THAT(KWFileio::list(folder.path(), most), testing::ElementsAreArray(entries));
    most = 1;
    EXPECT_LE(KWFileio::list(folder.path(), most).size(), 1u);
    EXPECT_EQ(most, 0u);
}

TEST(KWFileio, KilledDuringASaveTheOldOrTheNewFileIsThereWhole)
{
    const TestFolder folder;
    const std::string path = folder / "song.kwe";
    constexpr size_t kBytes = 40000;
    ASSERT_TRUE(KWFileio::write(path, std::string(kBytes, 'a').data(), kBytes));
    int rounds = 0;
    for (; rounds < 100; ++rounds) {
        const pid_t writer = ::fork();
        ASSERT_GE(writer, 0);
        if (writer == 0)
            for (char letter = 'b';; letter = letter == 'z' ? 'b' : static_cast<char>(letter + 1))
                KWFileio::write(path, std::string(kBytes, letter).data(), kBytes);
        ::usleep(static_cast<useconds_t>(rounds * 70));
        ::kill(writer, SIGKILL);
        ::waitpid(writer, nullptr, 0);
        const std::string content = contentOf(path);
        ASSERT_EQ(content.size(), kBytes) << "round " << rounds;
        ASSERT_EQ(content, std::string(kBytes, content[0])) << "round " << rounds;
    }
}

} // namespace ormund

namespace ormund {

TEST(KWFileio, WritesOverPlainFilesAndLinksToThemAlone)
{
    const TestFolder folder;
    std::ofstream(folder / "plain") << "old";
    std::filesystem::create_symlink(folder / "plain", folder / "link");
    std::filesystem::create_symlink("/dev/null", folder / "device");
    std::filesystem::create_symlink(folder / "nowhere", folder / "loose");
    std::filesystem::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    for (const char* name : {"device", "loose", "folder", "pipe"}) {
        const auto before = std::filesystem::symlink_status(folder / name).type();
        EXPECT_FALSE(KWFileio::write(folder / name, "new", 3)) << name;
        EXPECT_EQ(std::filesystem::symlink_status(folder / name).type(), before) << name;
    }
    EXPECT_FALSE(KWFileio::write("/dev/null", "new", 3));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_TRUE(KWFileio::write(folder / "link", "new", 3));
    char text[3];
    EXPECT_TRUE(KWFileio::read(folder / "plain", text, 3));
    EXPECT_EQ(std::string(text, 3), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
}

TEST(KWFileio, ASaveRemovesWhatAKilledOneLeftADayAgo)
{
    const TestFolder folder;
    const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(25);
    for (const char* name : {".song.kwe.123.0.part", ".young.kwe.9.1.part", ".else.part",
             "song.kwe.123.0.part", ".a.b.12.part"}) {
        std::ofstream(folder / name) << "half";
        if (std::string(name).find("young") == std::string::npos)
            std::filesystem::last_write_time(folder / name, old);
    }
    EXPECT_TRUE(KWFileio::write(folder / "song.kwe", "new", 3));
    EXPECT_FALSE(KWFileio::exists(folder / ".song.kwe.123.0.part"));
    for (const char* name :
        {".young.kwe.9.1.part", ".else.part", "song.kwe.123.0.part", ".a.b.12.part"})
        EXPECT_TRUE(KWFileio::exists(folder / name)) << name;
}

} // namespace ormund
