#include "data/tracks/EditTools.h"
#include "data/music/KWSystemInfo.h"
#include "data/parameters/Parameters.h"
#include "data/tracks/EditButtons.h"
#include "data/tracks/Tracks.h"

#include <gmock/gmock.h>

#include <set>

namespace ormund {

using testing::ElementsAre;

namespace {
struct Lanes {
    KWSystemInfo info;
    Tracks tracks{info};

    std::vector<int> hundredths(KWTableXY& table, int count) const
    {
        std::vector<int> values;
        for (int i = 0; i < count; ++i)
            values.push_back(static_cast<int>(table.step(i) * 100 + 0.5f));
        return values;
    }
    void use(EditTool tool, int button, int hits = 4)
    {
        tracks.editTool = static_cast<int>(tool);
        tracks.toolHits = hits;
        ASSERT_TRUE(performEdit(button, tracks));
    }
};
constexpr int kPitchTool = Tag::ToolButton, kVelocityTool = Tag::ToolButton + 2;
constexpr int kGateTool = Tag::ToolButton + 3, kModTool = Tag::ToolButton + 4;
} // namespace

TEST(EditTools, EuclidSpreadsItsHitsAsEvenlyAsTheyCanBe)
{
    const auto pattern = [](int hits, int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += euclidHit(i, hits, count) ? 'x' : '.';
        return text;
    };
    EXPECT_EQ(pattern(3, 8), "x..x..x.");
    EXPECT_EQ(pattern(4, 16), "x...x...x...x...");
    EXPECT_EQ(pattern(8, 8), "xxxxxxxx");
    for (int count = 1; count <= kTrackSteps; ++count)
        for (int hits = 1; hits <= count; ++hits) {
            const std::string text = pattern(hits, count);
            ASSERT_EQ(std::ranges::count(text, 'x'), hits) << count;
            std::set<size_t> gaps;
            for (size_t at = 0; at < text.size();) {
                size_t next = text.find('x', at + 1);
                next = std::min(next, text.size());
                gaps.insert(next - at);
                at = next;
            }
            ASSERT_LE(*gaps.rbegin() - *gaps.begin(), 1u) << hits << " of " << count;
        }

    Lanes lanes;
    lanes.tracks.velocityLoop.setZone(0, {2, 9});
    lanes.tracks.velocity.setValue(0, 0.3f);
    lanes.tracks.velocity.setValue(2, 0.5f);
    lanes.tracks.velocity.setValue(3, 0.5f);
    lanes.use(EditTool::Euclid, kVelocityTool, 3);
    EXPECT_THAT(lanes.hundredths(lanes.tracks.velocity, 11),
        ElementsAre(30, 0, 50, 0, 0, 80, 0, 0, 80, 0, 0));
    EXPECT_EQ(lanes.tracks.velocityOn.step(5), 1);
    EXPECT_EQ(lanes.tracks.velocityOn.step(4), 0);
}

TEST(EditTools, StepsAreMovedWithinTheLoop)
{
    Lanes lanes;
    KWTableXY& steps = lanes.tracks.mods[0];
    lanes.tracks.modLoops[0].setZone(0, {1, 5});
    const auto write = [&] {
        for (int i = 0; i < 7; ++i)
            steps.setValue(i, 0.1f * static_cast<float>(i + 1));
    };
    const auto after = [&](EditTool tool) {
        write();
        lanes.use(tool, kModTool);
        return lanes.hundredths(steps, 7);
    };
    EXPECT_THAT(after(EditTool::Reverse), ElementsAre(10, 60, 50, 40, 30, 20, 70));
    EXPECT_THAT(after(EditTool::Mirror), ElementsAre(10, 20, 30, 40, 30, 20, 70));
    EXPECT_THAT(after(EditTool::Double), ElementsAre(10, 20, 20, 30, 30, 40, 70));
    EXPECT_THAT(after(EditTool::Half), ElementsAre(10, 20, 40, 60, 30, 50, 70));
    EXPECT_THAT(after(EditTool::Thin), ElementsAre(10, 20, 0, 40, 0, 60, 70));
}

TEST(EditTools, LinesAndSwitchesGoWithTheirTablesAndHumaniseStaysInRange)
{
    Lanes lanes;
    Tracks& tracks = lanes.tracks;
    tracks.pitchLock.setStep(0, 1);
    tracks.pitch.setValue(0, 7);
    lanes.use(EditTool::Reverse, kPitchTool);
    EXPECT_EQ(tracks.pitch.step(31), 7);
    EXPECT_EQ(tracks.pitchLock.step(31), 1);
    tracks.chord.setStep(0, 9);
    tracks.chance.setStep(0, 9);
    tracks.performancePage = 1;
    lanes.use(EditTool::Reverse, Tag::ToolButton + 1);
    EXPECT_EQ(tracks.chord.step(0), 9);
    EXPECT_EQ(tracks.chance.step(31), 9);
    for (int i = 0; i < kTrackSteps; ++i)
        tracks.gateTime.setValue(i, i % 2 ? 1.0f : 0.02f);
    for (int pass = 0; pass < 50; ++pass)
        lanes.use(EditTool::Humanise, kGateTool);
    int moved = 0;
    for (int i = 0; i < kTrackSteps; ++i) {
        EXPECT_GT(tracks.gateTime.step(i), 0.0f);
        EXPECT_LE(tracks.gateTime.step(i), 1.0f);
        moved += tracks.gateTime.step(i) != (i % 2 ? 1.0f : 0.02f);
    }
    EXPECT_GT(moved, 20);
}

} // namespace ormund
