#include "data/tracks/PatternStore.h"
#include "data/music/KWSystemInfo.h"
#include "data/parameters/ChoiceLists.h"
#include "data/parameters/ParameterSink.h"
#include "data/tracks/FactoryContent.h"
#include "data/tracks/Tracks.h"

#include <gmock/gmock.h>

#include <limits>
#include <set>
#include <vector>

namespace ormund {

namespace {

struct Recorder : ParameterSink {
    void setParameter(int tag, float value) override { calls.emplace_back(tag, value); }
    std::vector<std::pair<int, float>> calls;
};

} // namespace

TEST(PatternStore, RemembersInThePatternThatIsGiven)
{
    PatternStore store;
    store.currentPattern = 3;
    store.write(Tag::Scale, 0.75f);
    store.write(Tag::Swing, 5, 0.5f);
    EXPECT_EQ(store.at(3, 2), 0.75f);
    EXPECT_FLOAT_EQ(store.at(2, 2), 0.0233644f);
    EXPECT_EQ(store.at(5, 9), 0.5f);
    // Both write the same place.
    store.write(Tag::ModTarget, 0.25f);
    store.write(Tag::MidiLearn, 0.5f);
    EXPECT_EQ(store.at(3, 10), 0.5f);

    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const int bad : {-1, 16, 1000000}) {
        store.write(Tag::Scale, bad, 1);
        store.setAt(bad, 0, 1);
        store.setAt(0, bad == 16 ? 34 : bad, 1);
        EXPECT_EQ(store.at(bad, 0), 0.0f);
    }
    store.write(Tag::Play, 0, 1); // not stored by patterns
    store.setAt(0, 0, nan);
    EXPECT_EQ(store.at(0, 0), 0.0f);
    store.fillWithDefaults();
    EXPECT_EQ(store.at(0, 0), 0.5f);
}

TEST(PatternStore, ReplaysItsValuesInOrderThePlaceholderIncluded)
{
    PatternStore store;
    store.setAt(6, 10, 0.125f);
    store.currentPattern = 6;
    Recorder recorder;
    store.replay(recorder);
    ASSERT_EQ(recorder.calls.size(), 34u);
    EXPECT_EQ(recorder.calls[0], std::pair(0, 0.5f));
    EXPECT_EQ(recorder.calls[10], std::pair(563, 0.125f));
    EXPECT_EQ(recorder.calls[24].first, -1);
    EXPECT_EQ(recorder.calls[33], std::pair(45, 0.5f));
    store.replay(16, recorder);
    EXPECT_EQ(recorder.calls.size(), 34u);
}

TEST(PatternStore, ACopyReachesOtherPatternsAndOtherInstances)
{
    PatternStore::forgetCopy();
    PatternStore store;
    PatternStore other;
    EXPECT_FALSE(other.paste());
    store.currentPattern = 1;
    store.write(Tag::Swing, 0.75f);
    store.copy();
    store.write(Tag::Swing, 0.0f);
    other.currentPattern = 9;
    EXPECT_TRUE(other.paste());
    EXPECT_EQ(other.at(9, 9), 0.75f);
    EXPECT_EQ(other.at(8, 9), 0.0f);
}

TEST(FactoryContent, GivesSixteenPatternsThatDifferAndSound)
{
    KWSystemInfo info;
    Tracks tracks(info);
    PatternStore store;
    writeFactoryContent(tracks, store);

    std::set<std::vector<float>> melodies;
    std::set<std::vector<float>> rhythms;
    for (int row = 0; row < kPatterns; ++row) {
        std::vector<float> melody;
        std::vector<float> rhythm;
        int sounding = 0;
        for (int i = 0; i < kTrackSteps; ++i) {
            melody.push_back(tracks.pitch.getRowAtIndex(row, i));
            rhythm.push_back(tracks.velocity.getRowAtIndex(row, i));
            sounding += rhythm.back() > 0 && tracks.velocityOn.stepAt(row, i) > 0 ? 1 : 0;
            EXPECT_GT(tracks.gateTime.getRowAtIndex(row, i), 0.0f);
        }
        EXPECT_GE(sounding, 8) << row;
        EXPECT_GT(std::set<float>(melody.begin(), melody.end()).size(), 2u) << row;
        EXPECT_GT(rhythm[0], 0.5f) << row; // the downbeat
        melodies.insert(melody);
        rhythms.insert(rhythm);
    }
    EXPECT_EQ(melodies.size(), 16u);
    EXPECT_GE(rhythms.size(), 15u);
    // A new instance has the defaults in its first pattern; the others bring their own.
    EXPECT_FLOAT_EQ(store.at(0, 2), 0.0233644f);
    std::set<float> scales;
    for (int pattern = 1; pattern < kPatterns; ++pattern)
        scales.insert(store.at(pattern, 2));
    EXPECT_GE(scales.size(), 6u);
}

TEST(FactoryContent, UsesEveryLineInsideItsRangeAndChainsPatterns)
{
    KWSystemInfo info;
    Tracks tracks(info);
    PatternStore store;
    writeFactoryContent(tracks, store);
    for (const TrackRow& row : kTrackTable) {
        const StepLine* line = tracks.lineAt(row.tag);
        if (!line || row.tag == Tag::PitchLock)
            continue;
        float highest = 0;
        for (int r = 0; r < row.rows; ++r)
            for (int i = 0; i < row.steps; ++i)
                highest = std::max(highest, line->stepAt(r, i));
        // Its songs are older than chance and time.
        EXPECT_EQ(highest > 0.0f, row.group != 2) << row.word;
        EXPECT_LE(highest, row.maximum) << row.word;
    }
    std::set<float> chained;
    for (int i = 0; i < kSongSteps; ++i)
        chained.insert(tracks.patternNumbers.step(i));
    EXPECT_GE(chained.size(), 4u);
    EXPECT_EQ(tracks.pitchLoop.zone(5), (LoopZone{0, 11}));
    EXPECT_NE(tracks.pitchLoop.zone(5), tracks.velocityLoop.zone(5));
}

// Bank select stands at the list's start. A track that is on and has no target of its own would
// send it with every step.
TEST(FactoryContent, SendsNoBankSelect)
{
    KWSystemInfo info;
    Tracks tracks(info);
    PatternStore store;
    writeFactoryContent(tracks, store);
    for (int pattern = 0; pattern < kPatterns; ++pattern)
        for (int track = 0; track < kModTracks; ++track) {
            const bool on = store.at(pattern, patternSlot(Tag::ModTrackOn + track)) >= 0.5f;
            const float target = store.at(pattern, patternSlot(Tag::ModTarget + track));
            EXPECT_TRUE(!on || target * 130 >= 1) << pattern << ' ' << track;
        }
}

} // namespace ormund
