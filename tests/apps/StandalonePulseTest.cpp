// The stand-alone program on a PulseAudio server: what the device plays is what the module plays,
// at the device's rate and at others, and a server that dies is survived.
#include "apps/host/ScriptedHost.h"
#include "tests/apps/StandaloneRig.h"
#include "tests/support/PulseServer.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <numeric>

namespace ormund {

using testing::HasSubstr;

namespace {

constexpr size_t kWindow = PulseServer::kRate / 100; // of the loudness, frames
constexpr size_t kSecond = PulseServer::kRate;

class OnPulse : public Standalone {
protected:
    void SetUp() override
    {
        if (!PulseServer::isInstalled())
            GTEST_SKIP() << "no PulseAudio server is installed";
        Standalone::SetUp();
        startServer();
    }
    void startServer()
    {
        server.reset();
        server = std::make_unique<PulseServer>(home.file("pulse"));
        ASSERT_TRUE(server->isRunning());
    }
    std::vector<float> record(std::vector<std::string> arguments, double seconds)
    {
        arguments.insert(arguments.begin(), {"--device", "pulse", "--no-window", "--play"});
        server->record();
        Running program(home, arguments);
        EXPECT_TRUE(program.says("PulseAudio")) << program.said();
        said = program.said();
        return server->endRecord(seconds);
    }
    std::unique_ptr<PulseServer> server;
    std::string said;
};

// The song from its start; `blocksBefore` ran while the transport stood.
std::vector<float> moduleSound(double seconds, double tempo, int blocksBefore = 0)
{
    ScriptedHost host;
    EXPECT_TRUE(host.load(
        ORMUND_BIN_DIR "/ormund-vst2.so", {static_cast<float>(PulseServer::kRate), 512, tempo}));
    host.run(blocksBefore * 512);
    host.left.clear();
    host.start();
    host.run(static_cast<int64_t>(seconds * PulseServer::kRate));
    return host.left;
}

// How many samples from `first` on stand in `whole` as they are, once the first hundredth of a
// second was found there.
size_t samplesKept(const std::vector<float>& whole, const float* first, size_t size)
{
    const auto same = [](float a, float b) { return std::abs(a - b) < 1e-6f; };
    const auto start = std::search(whole.begin(), whole.end(), first, first + kWindow, same);
    const size_t there = std::min(size, static_cast<size_t>(whole.end() - start));
    return static_cast<size_t>(
        std::mismatch(start, start + static_cast<ptrdiff_t>(there), first, same).first - start);
}

// Large blocks, and another try where a busy machine was late all the same: every sample is then
// the module's own. The program may begin to play with its first block or after some that stood
// still, and where the voices' oscillators then stand differs.
TEST_F(OnPulse, PlaysEverySampleOfTheModule)
{
    constexpr size_t kCompared = 3 * kSecond / 2;
    constexpr size_t kFirst =
        kSecond / 2; // the first moments of a stream are the server's to shift
    const std::vector<float> atOnce = moduleSound(3, 133);
    const std::vector<float> later = moduleSound(3, 133, 100);
    size_t kept = 0;
    for (int tries = 0; tries < 3 && kept < kCompared; ++tries) {
        const auto recorded = record({"--block", "4096", "--tempo", "133"}, 2.5);
        EXPECT_THAT(said, HasSubstr(", 48000 Hz"));
        for (const std::vector<float>& sound : {atOnce, later})
            kept = std::max(kept, samplesKept(recorded, sound.data() + kFirst, kCompared));
    }
    EXPECT_EQ(kept, kCompared);
}

// Energy of each hundredth of a second.
std::vector<double> energies(const std::vector<float>& sound)
{
    std::vector<double> all(sound.size() / kWindow);
    for (size_t i = 0; i < all.size() * kWindow; ++i) {
        const auto sample = static_cast<double>(sound[i]);
        all[i / kWindow] += sample * sample;
    }
    return all;
}

double product(const double* a, const double* b, size_t size)
{
    return std::inner_product(a, a + size, b, 0.0);
}

// Another rate than the device's and a block of no round size: the server converts, so the shape in
// time and the level are compared.
TEST_F(OnPulse, KeepsTempoAndLevelAtARateAndABlockThatAreNotTheDevices)
{
    constexpr size_t kWindows = 120;
    const auto expected = energies(moduleSound(2, 120));
    const double* part = expected.data() + 50; // past the first moments
    const double own = product(part, part, kWindows);
    for (const std::vector<std::string>& format :
        {std::vector<std::string>{"--rate", "96000", "--block", "5003"},
            std::vector<std::string>{"--rate", "22050", "--block", "1501"}}) {
        const auto heard = energies(record(format, 2.5));
        EXPECT_THAT(said, HasSubstr(format[1] + " Hz"));
        ASSERT_GT(heard.size(), kWindows);
        double best = 0;
        double level = 0;
        for (size_t start = 0; start + kWindows <= heard.size(); ++start) {
            const double power = product(&heard[start], &heard[start], kWindows);
            const double likeness = product(&heard[start], part, kWindows) / std::sqrt(power * own);
            if (likeness > best) {
                best = likeness;
                level = std::sqrt(power / own);
            }
        }
        // A tempo that is off by a thirtieth gives less than 0.91 without any other difference.
        EXPECT_GT(best, 0.85) << said;
        EXPECT_NEAR(level, 1, 0.2) << said;
    }
}

TEST_F(OnPulse, RunsOnWhenTheServerDiesAndComesBackToIt)
{
    Running program(home, {"--device", "pulse", "--no-window", "--play"});
    ASSERT_TRUE(program.says("PulseAudio")) << program.said();
    server->kill();
    EXPECT_TRUE(program.says("sound lost")) << program.said();
    startServer();
    server->record();
    EXPECT_TRUE(program.says("sound lost, runs on without. Ctrl+C ends.\nOrmund is on: PulseAudio"))
        << program.said();
    const std::vector<float> sound = server->endRecord(0.5);
    EXPECT_GT(*std::max_element(sound.begin(), sound.end()), 0.01f) << "the song runs on";
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
}

} // namespace

} // namespace ormund
