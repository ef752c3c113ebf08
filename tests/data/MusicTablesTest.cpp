#include "data/music/ArpeggioTable.h"
#include "data/music/BendShapes.h"
#include "data/music/ChordTable.h"
#include "data/music/ScaleTable.h"

#include <gmock/gmock.h>

#include <set>
#include <string>
#include <vector>

namespace ormund {

using ::testing::ElementsAre;

namespace {

std::vector<int> degrees(int scale, int from, int to) // of the short rows, around the root
{
    std::vector<int> notes;
    for (int degree = from; degree <= to; ++degree)
        notes.push_back(scaleNote(scale, degree + 24));
    return notes;
}

constexpr int kPhrygian = 3;
constexpr int kJapanese = 27;

} // namespace

TEST(Scales, FollowTheirIntervalsThroughTheOctaves)
{
    for (int degree = -24; degree <= 24; ++degree)
        EXPECT_EQ(scaleNote(0, degree + 24), degree);
    EXPECT_THAT(
        degrees(1, -7, 8), ElementsAre(-12, -10, -8, -7, -5, -3, -1, 0, 2, 4, 5, 7, 9, 11, 12, 14));
    EXPECT_THAT(degrees(12, -6, 5), ElementsAre(-14, -12, -9, -7, -5, -2, 0, 3, 5, 7, 10, 12));
    for (int scale = 0; scale < kScales; ++scale) {
        EXPECT_EQ(scaleNote(scale, 24), 0) << scale;
        EXPECT_EQ(arpeggioNote(scale, 27), 0) << scale;
    }
}

TEST(Scales, TheLongRowsAreTheShortOnesAndThreeMoreAtEachEnd)
{
    for (int scale = 0; scale < kScales; ++scale) {
        for (int i = 0; i < kScaleDegrees; ++i)
            EXPECT_EQ(arpeggioNote(scale, i + 3), scaleNote(scale, i)) << scale << ' ' << i;
        if (scale == kPhrygian || scale == kJapanese)
            continue;
        for (int i = 1; i < kArpeggioDegrees; ++i)
            EXPECT_GT(arpeggioNote(scale, i), arpeggioNote(scale, i - 1)) << scale << ' ' << i;
    }
}

TEST(Scales, TwoBreakTheirRuleAboveTheRoot)
{
    EXPECT_THAT(degrees(kPhrygian, 1, 24),
        ElementsAre(1, 3, 5, 7, 8, 10, 12, 13, 15, 17, 19, 21, 12, 13, 15, 17, 19, 20, 22, 24, 25,
            27, 29, 31));
    EXPECT_THAT(degrees(kJapanese, 1, 24),
        ElementsAre(1, 5, 7, 8, 12, 13, 17, 19, 20, 24, 25, 28, 24, 25, 29, 31, 32, 36, 37, 41, 43,
            44, 48, 49));
    EXPECT_EQ(arpeggioNote(kPhrygian, 54), 36);
    EXPECT_EQ(arpeggioNote(kJapanese, 52), 53);
    // Below it they keep it.
    EXPECT_EQ(scaleNote(kPhrygian, 23), -2);
    EXPECT_EQ(scaleNote(kJapanese, 19), -12);
}

TEST(Scales, HaveNamesThatFitTheirField)
{
    std::set<std::string_view> names;
    for (int scale = 0; scale < kScales; ++scale) {
        EXPECT_LT(scaleName(scale).size(), 18u);
        EXPECT_TRUE(scaleMenuName(scale).starts_with(scaleName(scale)));
        EXPECT_TRUE(names.insert(scaleName(scale)).second);
        EXPECT_EQ(scaleOctave(scale).size(), 13u);
    }
    EXPECT_EQ(scaleMenuName(0), "Chromatic ");
    EXPECT_EQ(scaleOctave(kPhrygian)[12], 21);
}

TEST(MusicTables, HostileIndexesStayInside)
{
    for (const int bad : {-2147483647, -1, 55, 1000000}) {
        EXPECT_GE(scaleNote(bad, bad), -48) << bad;
        EXPECT_LE(arpeggioNote(bad, bad), 96) << bad;
        EXPECT_LE(chordOffset(bad, bad), 21) << bad;
        EXPECT_GE(arpeggioGate(bad, bad), 0.0f) << bad;
        EXPECT_LE(arpeggioSelect(bad, bad), 3) << bad;
        EXPECT_LE(bendShapePoint(bad, bad), 1.0f) << bad;
        EXPECT_FALSE(scaleName(bad).empty());
    }
}

TEST(Chords, KeepTheirOrderAndTheirTwoRepeats)
{
    EXPECT_THAT(chordRow(0), ElementsAre(0, 4, 7, 0));
    EXPECT_THAT(chordRow(11), ElementsAre(-8, -5, 0, 2));
    EXPECT_THAT(chordRow(23), ElementsAre(0, 2, 4, 7));
    EXPECT_THAT(chordRow(27), ElementsAre(0, 3, 7, 10));
    EXPECT_THAT(chordRow(35), ElementsAre(-9, -5, 0, 2));
    EXPECT_THAT(chordRow(53), ElementsAre(0, 7, 14, 21));
    EXPECT_EQ(chordRow(16), chordRow(14));
    EXPECT_EQ(chordRow(40), chordRow(38));
    EXPECT_THAT(chordRow(54), ElementsAre(0, 0, 0, 0));
}

// A note starts when the factor changes, so equal neighbours would swallow one.
TEST(Arpeggio, NeighboursThatSoundDiffer)
{
    for (int row = 1; row <= kRhythms; ++row) {
        const int subSteps = row == 2 ? 3 : kSubSteps;
        bool sounds = false;
        for (int sub = 0; sub < subSteps; ++sub) {
            const float gate = arpeggioGate(row, sub);
            EXPECT_GE(gate, 0.0f);
            EXPECT_LE(gate, 1.0f);
            sounds = sounds || gate > 0;
            if (gate > 0) {
                EXPECT_NE(gate, arpeggioGate(row, (sub + 1) % subSteps)) << row << ' ' << sub;
            }
        }
        EXPECT_TRUE(sounds) << row;
    }
}

TEST(Arpeggio, WalksByItsRhythm)
{
    const std::vector<std::vector<int>> walks = {{0, 1, 2, 3}, {0, 1, 2, 3}, {0, 1, 1, 2},
        {0, 1, 1, 0}, {0, 1, 1, 0}, {0, 1, 0, 1}, {0, 1, 0, 1}};
    for (int rhythm = 0; rhythm < static_cast<int>(walks.size()); ++rhythm)
        for (int sub = 0; sub < kSubSteps; ++sub)
            EXPECT_EQ(arpeggioSelect(sub, rhythm),
                walks[static_cast<size_t>(rhythm)][static_cast<size_t>(sub)]);
}

TEST(BendShapes, AreTwentyDifferentMovesInsideTheRange)
{
    std::set<std::vector<float>> shapes;
    std::set<std::string_view> names;
    for (int shape = 0; shape < kBendShapes; ++shape) {
        const auto points = bendShape(shape);
        ASSERT_EQ(points.size(), 32u);
        bool moves = false;
        for (const float point : points) {
            EXPECT_GE(point, -1.0f);
            EXPECT_LE(point, 1.0f);
            moves = moves || point != 0;
        }
        EXPECT_TRUE(moves) << bendShapeName(shape);
        shapes.emplace(points.begin(), points.end());
        names.insert(bendShapeName(shape));
    }
    EXPECT_EQ(shapes.size(), 20u);
    EXPECT_EQ(names.size(), 20u);
}

} // namespace ormund
