// What a further instance takes of memory once it has played.

#include "data/parameters/Tags.h"
#include "tests/support/BusySong.h"
#include "tests/support/Player.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <vector>

namespace ormund {

namespace {
constexpr int kInstances = 16;
constexpr int kThreeSeconds = 3 * 44100;

double privateKilobytes()
{
    std::ifstream file("/proc/self/smaps_rollup");
    double sum = 0;
    for (std::string word; file >> word;) {
        double kilobytes = 0;
        if (word == "Private_Dirty:" && file >> kilobytes)
            sum += kilobytes;
    }
    return sum;
}

std::vector<char> busyState()
{
    KWUniClient client(nullptr);
    writeBusySong(client);
    void* bytes = nullptr;
    const VstInt32 size = client.getChunk(&bytes, false);
    const char* first = static_cast<const char*>(bytes);
    return {first, first + size};
}

// As from a host that opens a project.
std::unique_ptr<Player> played(bool withSynth)
{
    auto player = std::make_unique<Player>(Player::Setup{.block = 64, .empty = false});
    static std::vector<char> state = busyState();
    player->engine().setChunk(state.data(), static_cast<VstInt32>(state.size()), false);
    player->engine().setParameter(Tag::SynthOn, withSynth ? 1.0f : 0.0f);
    player->start();
    player->play(kThreeSeconds);
    return player;
}

using Players = std::vector<std::unique_ptr<Player>>;

double kilobytesEach(Players& all, bool withSynth)
{
    all.push_back(played(withSynth));
    const double first = privateKilobytes();
    for (int i = 0; i < kInstances; ++i)
        all.push_back(played(withSynth));
    return (privateKilobytes() - first) / kInstances;
}
} // namespace

// The delay lines are 689 KB of it, four beats of this tempo for two sides.
TEST(Footprint, AFurtherInstanceThatHasPlayedTakesLessThanAMegabyte)
{
#if !defined(NDEBUG) || defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "reckoned for the release build; a checker keeps memory of its own";
#endif
    malloc_trim(0); // what others before it in this process gave back would count for nothing
    Players all;
    const double silent = kilobytesEach(all, false);
    const double sounding = kilobytesEach(all, true);
    std::printf("a further instance: %.0f KB, with the synth %.0f KB\n", silent, sounding);
    EXPECT_GT(silent, 100);
    EXPECT_LT(silent, 210);
    EXPECT_GT(sounding, 689);
    EXPECT_LT(sounding, 915);
}

} // namespace ormund
