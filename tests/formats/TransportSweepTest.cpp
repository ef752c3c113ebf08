// Seeded transports, through each format, against a model of the steps that they must play. More of
// them where ORMUND_TRANSPORTS gives their number.
#include "host/formats/Base64.h"
#include "tests/formats/Formats.h"
#include "tests/support/StepRunner.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>

namespace ormund {

namespace {
constexpr int kTick = 32;
constexpr unsigned kTransports = 40;

unsigned transports()
{
    const char* given = std::getenv("ORMUND_TRANSPORTS");
    return given ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : kTransports;
}

// From a host that stands still, on a tick.
std::vector<SoundedStep> playScript(FormatHost& host, TransportScript& script)
{
    const std::vector<char> song = plainSong(script.speedIndex());
    host.restoreChunk(toBase64({reinterpret_cast<const uint8_t*>(song.data()), song.size()}));
    host.play(ReportedBlock{.frames = 3 * kTick - static_cast<int>(host.played() % kTick)});
    host.events.clear();
    const int64_t begin = host.played();
    for (const ReportedBlock& block : script.blocks())
        host.play(block);
    std::vector<SoundedStep> heard;
    for (const MidiOut& event : host.events)
        if (event.isNoteOn())
            heard.push_back({event.frame - begin, plainSongStep(event.data1)});
    return heard;
}

class FormatSweep : public testing::TestWithParam<Format> { };
INSTANTIATE_TEST_SUITE_P(All, FormatSweep, testing::ValuesIn(kFormats),
    [](const auto& made) { return made.param.name; });
} // namespace

// LV2 hosts cannot report what they loop; CLAP's and LV2's places are rounded on the way.
TEST_P(FormatSweep, LosesAndDoublesNoStep)
{
    const bool isLv2 = std::string(GetParam().name) == "LV2";
    const auto host = GetParam().make();
    StepFaults sum;
    size_t steps = 0;
    for (unsigned seed = 1; seed <= transports(); ++seed) {
        TransportScript script(seed, {.onlyRate = FormatHost::kRate, .reportsLoops = !isLv2});
        const std::vector<SoundedStep> wanted = script.model().steps();
        const StepFaults faults = compareSteps(
            wanted, playScript(*host, script), std::max<int64_t>(script.tolerance(), kTick));
        EXPECT_EQ(faults.lost + faults.added, 0) << "seed " << seed;
        steps += wanted.size();
        sum.lost += faults.lost;
        sum.added += faults.added;
        sum.late += faults.late;
    }
    std::printf("%u transports, %zu steps: %d lost, %d added, %d a tick or two off\n", transports(),
        steps, sum.lost, sum.added, sum.late);
}

} // namespace ormund
