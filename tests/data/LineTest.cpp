#include "data/music/KWSystemInfo.h"
#include "data/tracks/KWBtnLine.h"
#include "data/tracks/KWListLine.h"
#include "data/tracks/KWZoneHandlerContainer.h"
#include "data/tracks/RandomSource.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <vector>

namespace ormund {

using ::testing::Each;
using ::testing::ElementsAre;

namespace {

std::vector<float> rowOf(const StepLine& line, int row)
{
    std::vector<float> steps;
    for (int i = 0; i < line.steps(); ++i)
        steps.push_back(line.stepAt(row, i));
    return steps;
}

void fill(StepLine& line, int row, float value)
{
    for (int i = 0; i < line.steps(); ++i)
        line.setStepAt(row, i, value);
}

class LineTest : public ::testing::Test {
protected:
    LineTest()
    {
        chords.range = 54;
        chords.maximum = 54;
        RandomDraws::restart();
    }
    KWSystemInfo info;
    KWBtnLine switches{&info, 4, 16};
    KWListLine chords{&info, 128, 16};
};

} // namespace

TEST_F(LineTest, ClearingSwitchesClearsAllRowsAndClearingAListOne)
{
    for (int row = 0; row < 16; ++row) {
        fill(switches, row, 1);
        fill(chords, row, 7);
    }
    switches.setRow(3);
    chords.setRow(3);
    switches.clear();
    chords.clear();
    EXPECT_THAT(rowOf(switches, 9), Each(0.0f));
    EXPECT_THAT(rowOf(chords, 3), Each(0.0f));
    EXPECT_THAT(rowOf(chords, 9), Each(7.0f));

    fill(switches, 9, 1);
    switches.clearAlternates = true;
    switches.clear();
    EXPECT_THAT(rowOf(switches, 3), ElementsAre(1, 0, 1, 0));
    EXPECT_THAT(rowOf(switches, 9), Each(1.0f));
}

TEST_F(LineTest, WhatIsOutsideIsIgnoredOrPulledIn)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const int bad : {-2147483647, -1, 128, 1000000}) {
        chords.setStep(bad, 1);
        chords.setStepAt(bad, 0, 1);
        chords.setRow(bad);
        EXPECT_EQ(chords.step(bad), 0.0f);
        EXPECT_EQ(chords.stepAt(bad, 0), 0.0f);
    }
    chords.setStep(0, nan);
    EXPECT_THAT(rowOf(chords, 0), Each(0.0f));
    chords.setStep(0, 1e30f);
    chords.setStep(1, -5);
    EXPECT_EQ(chords.step(0), 54.0f);
    EXPECT_EQ(chords.step(1), 0.0f);
    EXPECT_EQ(chords.row(), 0);
    EXPECT_FALSE(chords.resize(0, 16));
    EXPECT_FALSE(chords.resize(8, 100000));
    EXPECT_TRUE(chords.resize(8, 2));
    EXPECT_EQ(chords.step(0), 54.0f);
    EXPECT_TRUE(chords.resize(128, 16));
    EXPECT_EQ(chords.step(9), 0.0f);
}

TEST_F(LineTest, RotatesInsideItsRegionOnly)
{
    for (int i = 0; i < 4; ++i)
        switches.setStep(i, i == 1 ? 1.0f : 0.0f);
    switches.shiftBackward(0, 2);
    EXPECT_THAT(rowOf(switches, 0), ElementsAre(1, 0, 0, 0));
    switches.shiftBackward(0, 0);
    EXPECT_THAT(rowOf(switches, 0), ElementsAre(0, 0, 0, 1));
    switches.shiftForward(2, 4);
    EXPECT_THAT(rowOf(switches, 0), ElementsAre(0, 0, 1, 0));
    switches.shiftForward(-7, 9000);
    EXPECT_THAT(rowOf(switches, 0), ElementsAre(0, 0, 0, 1));
}

TEST_F(LineTest, ARandomListIsMostlyEmptyAndHoldsWholeNumbers)
{
    chords.randomThreshold = 0.9f;
    int filled = 0;
    for (int round = 0; round < 20; ++round) {
        chords.randomize();
        for (const float v : rowOf(chords, 0)) {
            EXPECT_EQ(v, std::trunc(v));
            EXPECT_LT(v, 53.0f);
            filled += v > 0 ? 1 : 0;
        }
    }
    EXPECT_NEAR(filled / (20.0 * 128), 0.1, 0.03);

    chords.randomThreshold = 0;
    chords.randomize();
    EXPECT_GT(std::ranges::count_if(rowOf(chords, 0), [](float v) { return v > 0; }), 110);
}

TEST_F(LineTest, ARandomSwitchIsOnHalfTheTime)
{
    int on = 0;
    for (int round = 0; round < 500; ++round) {
        switches.randomize();
        for (const float v : rowOf(switches, 0)) {
            EXPECT_TRUE(v == 0 || v == 1);
            on += v == 1 ? 1 : 0;
        }
    }
    EXPECT_NEAR(on / 2000.0, 0.5, 0.05);
}

TEST_F(LineTest, MutationLeavesEmptyStepsAndTurnsOverAtTheEnd)
{
    for (int i = 0; i < 128; ++i)
        chords.setStep(i, i % 4 == 0 ? 0.0f : i % 4 == 1 ? 53.9f : 10.0f);
    chords.mutate();
    for (int i = 0; i < 128; ++i) {
        const float v = chords.step(i);
        if (i % 4 == 0) {
            EXPECT_EQ(v, 0.0f);
        } else if (i % 4 == 1) {
            EXPECT_TRUE(v == 1.0f || v >= 53.9f) << v;
        } else {
            EXPECT_TRUE(v >= 10.0f && v <= 36.6f) << v;
        }
    }
    EXPECT_EQ(chords.step(1), 1.0f);
    // A step at 0 draws nothing: the same seed gives the second step the first draw.
    RandomDraws::restart();
    chords.setStep(0, 0);
    chords.setStep(1, 1);
    chords.mutate();
    RandomDraws::restart();
    RandomDraws draws;
    EXPECT_FLOAT_EQ(chords.step(1), draws.unit() * 0.5f * 53.0f + 1.0f);
}

TEST_F(LineTest, AControllerReachesBothEndsOfTheList)
{
    EXPECT_EQ(chords.fromController(0), 0.0f);
    EXPECT_EQ(chords.fromController(1), 53.0f);
    EXPECT_EQ(switches.fromController(0.49f), 0.0f);
    EXPECT_EQ(switches.fromController(0.5f), 1.0f);
}

TEST_F(LineTest, EveryWriteIsSeenByAWatcher)
{
    uint32_t seen = chords.generation();
    const auto moved = [&] {
        const uint32_t now = chords.generation();
        const bool changed = now != seen;
        seen = now;
        return changed;
    };
    chords.setStep(3, 3);
    EXPECT_TRUE(moved());
    chords.setRow(4);
    EXPECT_TRUE(moved());
    chords.clearAll();
    EXPECT_TRUE(moved());
    chords.shiftForward(0, 0);
    EXPECT_TRUE(moved());
    chords.setStep(-1, 3);
    EXPECT_FALSE(moved());
}

TEST(Loops, KeepTheirEndsInOrderAndInsideTheTrack)
{
    KWZoneHandlerContainer loops(32, 16);
    EXPECT_EQ(loops.zone(0), (LoopZone{0, 31}));
    loops.setZone(2, {9, 4});
    EXPECT_EQ(loops.zone(2), (LoopZone{4, 9}));
    loops.setZone(2, {-100, 1000000});
    EXPECT_EQ(loops.zone(2), (LoopZone{0, 31}));
    loops.setEnd(2, 7);
    loops.setStart(2, 20);
    EXPECT_EQ(loops.zone(2), (LoopZone{7, 7}));
    for (const int row : {-1, 16, 1000000}) {
        loops.setZone(row, {1, 2});
        loops.setRow(row);
    }
    EXPECT_EQ(loops.row(), 0);
    EXPECT_EQ(loops.zone(15), (LoopZone{0, 31}));
    EXPECT_FALSE(loops.setHandlers(0));
    EXPECT_FALSE(loops.setHandlers(64));
    loops.clearAll();
    EXPECT_EQ(loops.zone(2), (LoopZone{0, 31}));

    KWZoneHandlerContainer song(8, 1);
    song.setZone(0, {2, 5});
    EXPECT_EQ(song.start(11), 2); // one loop for every row
}

} // namespace ormund
