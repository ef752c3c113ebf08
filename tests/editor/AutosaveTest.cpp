// What stands in the recovery folder after a process has died, and after one has ended.

#include "data/library/Recovery.h"
#include "host/plugin/KWUniClient.h"
#include "platform/KWFileio.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace ormund {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using testing::IsEmpty;
using testing::SizeIs;

constexpr float kTick = 1.0f / 4096; // of the velocity, exact in a float

class Autosaves : public testing::Test {
protected:
    Autosaves()
    {
        std::string pattern = (fs::temp_directory_path() / "ormund-state-XXXXXX").string();
        folder = mkdtemp(pattern.data());
        setenv("XDG_STATE_HOME", folder.c_str(), 1);
    }
    ~Autosaves() override
    {
        unsetenv("XDG_STATE_HOME");
        fs::remove_all(folder);
    }
    static std::string place() { return UserPlaces::find().recovery; }
    static size_t filesThere()
    {
        size_t most = 1000;
        return KWFileio::list(place(), most).size();
    }

    std::string folder;
};

// Writes how many times 50 ms it has lived into the first and the last step of all.
[[noreturn]] void playUntilKilled(Clock::time_point start)
{
    KWUniClient plugin(nullptr);
    plugin.library.beginAutosave();
    plugin.presets.setName(PresetKind::Global, "Played");
    for (;;) {
        const auto age = static_cast<float>((Clock::now() - start) / std::chrono::milliseconds(50));
        plugin.tracks.velocity.setValue(0, age * kTick);
        plugin.tracks.gateTime.setValue(31, age * kTick);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

// ORMUND_KILLS=100 for more of them.
TEST_F(Autosaves, AKilledProcessLeavesAWholeSongOfTheLastSeconds)
{
    struct Player {
        pid_t process;
        double seconds;
    };
    const char* wanted = std::getenv("ORMUND_KILLS");
    const int kills = wanted ? std::atoi(wanted) : 6;
    constexpr int kAtOnce = 10;
    std::mt19937 random(20);
    std::uniform_real_distribution<double> times(3.3, wanted ? 12.0 : 5.0);
    double oldest = 0;
    for (int done = 0; done < kills; done += kAtOnce) {
        std::vector<Player> players;
        const auto start = Clock::now();
        for (int i = 0; i < std::min(kAtOnce, kills - done); ++i) {
            const double seconds = times(random);
            const pid_t process = fork();
            if (process == 0)
                playUntilKilled(start);
            players.push_back({process, seconds});
        }
        std::sort(players.begin(), players.end(),
            [](const Player& a, const Player& b) { return a.seconds < b.seconds; });
        for (const Player& player : players) {
            std::this_thread::sleep_until(start + std::chrono::duration<double>(player.seconds));
            const std::chrono::duration<double> age = Clock::now() - start;
            kill(player.process, SIGKILL);
            waitpid(player.process, nullptr, 0);
            const auto left = settleRecovered(place());
            ASSERT_THAT(left, SizeIs(1));
            KWUniClient next(nullptr);
            ASSERT_EQ(next.presets.recover(left[0]), LoadResult::Done);
            const float first = next.tracks.velocity.getRowAtIndex(0, 0) / kTick;
            const float last = next.tracks.gateTime.getRowAtIndex(0, 31) / kTick;
            EXPECT_LE(std::abs(first - last), 4.0f);
            EXPECT_EQ(recoveredName(left[0]), "Played");
            oldest = std::max(oldest, age.count() - static_cast<double>(first) * 0.05);
            fs::remove(left[0]);
        }
    }
    EXPECT_LE(oldest, 6.0);
    RecordProperty("oldest", std::to_string(oldest));
    std::printf("oldest song after %d kills: %.2f s\n", kills, oldest);
    EXPECT_EQ(filesThere(), 0u);
}

TEST_F(Autosaves, AnOrderlyEndLeavesNothingAndWhatIsInAFileIsNotKept)
{
    {
        KWUniClient plugin(nullptr);
        plugin.library.beginAutosave();
        EXPECT_TRUE(plugin.library.autosave.look());
        EXPECT_EQ(filesThere(), 1u) << "the lock alone";
        plugin.tracks.velocity.setValue(0, 0.125f);
        EXPECT_TRUE(plugin.library.autosave.look());
        EXPECT_THAT(settleRecovered(place()), IsEmpty()) << "its process lives";
        EXPECT_EQ(filesThere(), 2u);
        plugin.presets.save(PresetKind::Global, folder + "/saved.kwe");
        EXPECT_TRUE(plugin.library.autosave.look());
        EXPECT_EQ(filesThere(), 1u);
        plugin.tracks.velocity.setValue(0, 0.25f);
        EXPECT_TRUE(plugin.library.autosave.look());
    }
    EXPECT_EQ(filesThere(), 0u);
}

TEST_F(Autosaves, AProgramThatIsAskedToEndLeavesItsSong)
{
    {
        KWUniClient plugin(nullptr);
        plugin.library.beginAutosave();
        plugin.tracks.velocity.setValue(0, 0.125f);
        EXPECT_TRUE(plugin.library.autosave.keepForNextStart());
    }
    KWUniClient next(nullptr);
    const std::string left = next.library.beginAutosave();
    EXPECT_TRUE(left.ends_with(".kwe")) << left;
    next.library.recover(left);
    EXPECT_EQ(next.tracks.velocity.getRowAtIndex(0, 0), 0.125f);
    EXPECT_FALSE(KWFileio::exists(left)) << "it is the present song, kept as that";
    EXPECT_EQ(filesThere(), 2u);
    EXPECT_EQ(next.library.ownSongPath(), "");
}

TEST_F(Autosaves, TheOldestGoAndAStrangersFileStays)
{
    fs::create_directories(place());
    const auto put = [](const std::string& name, char bytes) {
        const std::string text(static_cast<size_t>(bytes) << 16, 'x');
        KWFileio::write(KWFileio::join(place(), name), text.data(), text.size());
    };
    put("notes.txt", 1);
    for (int i = 0; i < 20; ++i)
        put("2026-01-01 00.0" + std::to_string(i) + " Song.kwe", 1);
    settleRecovered(place());
    EXPECT_EQ(filesThere(), kMostRecovered + 1);
    put("2026-01-02 00.00 Large.kwe", 63);
    settleRecovered(place());
    EXPECT_EQ(filesThere(), 3u) << "4 MB";
    EXPECT_TRUE(KWFileio::exists(KWFileio::join(place(), "2026-01-02 00.00 Large.kwe")));
}

} // namespace

} // namespace ormund
