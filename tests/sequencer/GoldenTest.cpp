// What a new instance plays, event by event, against a trace that one can read.

#include "data/parameters/Tags.h"
#include "tests/support/SequencerPlayer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace ormund {

namespace {
// With ORMUND_WRITE_GOLDEN set the trace is written; look at the difference before keeping it.
void expectGolden(const std::string& name, const std::string& trace)
{
    const std::string path = std::string(ORMUND_SOURCE_DIR "/tests/golden/") + name;
    if (std::getenv("ORMUND_WRITE_GOLDEN"))
        std::ofstream(path) << trace;
    std::ifstream file(path);
    std::ostringstream golden;
    golden << file.rdbuf();
    ASSERT_FALSE(golden.str().empty()) << path;
    std::istringstream expected(golden.str());
    std::istringstream seen(trace);
    std::string expectedLine;
    std::string seenLine;
    for (int line = 1; std::getline(expected, expectedLine); ++line) {
        std::getline(seen, seenLine);
        ASSERT_EQ(seenLine, expectedLine) << name << ", line " << line;
    }
    EXPECT_FALSE(std::getline(seen, seenLine)) << "more events than in " << name;
}
} // namespace

TEST(Golden, TheFactorySongWithSwing)
{
    SequencerPlayer player({.empty = false});
    player.engine().setParameter(Tag::SynthOn, 0);
    player.engine().setParameter(Tag::SongOn, 1);
    player.engine().setParameter(Tag::Swing, 0.3f);
    player.start();
    player.playBeats(32);
    expectGolden("factory-song.txt", player.trace());
}

TEST(Golden, EveryEffectOnTimeInTurn)
{
    SequencerPlayer player({.empty = false});
    player.engine().setParameter(Tag::SynthOn, 0);
    player.start();
    for (const int effect :
        {Tag::HalfSpeed, Tag::Retrigger, Tag::Slowdown, Tag::Looper, Tag::GateTimeButton}) {
        player.playBeats(1.5);
        player.engine().setParameter(effect, 1);
        player.playBeats(2.25);
        player.engine().setParameter(effect, 0);
    }
    expectGolden("effects-on-time.txt", player.trace());
}

} // namespace ormund
