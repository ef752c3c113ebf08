#include "data/tracks/Tracks.h"
#include "data/music/KWKeyState.h"
#include "data/music/KWSystemInfo.h"
#include "data/parameters/Parameters.h"
#include "data/tracks/Clipboard.h"
#include "data/tracks/EditButtons.h"
#include "data/tracks/RandomSource.h"

#include <gmock/gmock.h>

#include <limits>
#include <set>
#include <vector>

namespace ormund {

using ::testing::Each;
using ::testing::ElementsAre;

namespace {

struct Instance {
    KWSystemInfo info;
    Tracks tracks{info};
};

class TracksTest : public ::testing::Test {
protected:
    TracksTest()
    {
        RandomDraws::restart();
        ClipboardAccess clipboard;
        clipboard->forgetAll();
    }
    Instance instance = {};
    Tracks& tracks = instance.tracks;

    static std::vector<float> steps(KWTableXY& table, int count = kTrackSteps)
    {
        std::vector<float> values;
        for (int i = 0; i < count; ++i)
            values.push_back(table.step(i));
        return values;
    }
    static void ramp(KWTableXY& table)
    {
        for (int i = 0; i < kTrackSteps; ++i)
            table.setValue(i, static_cast<float>(i) / 64.0f);
    }
};

} // namespace

TEST_F(TracksTest, EveryTrackParameterHasItsTrackAndNoOther)
{
    std::set<void*> found;
    for (const ParameterEntry& entry : allParameters()) {
        EXPECT_EQ(tracks.tableAt(entry.tag) != nullptr, entry.backing == Backing::TableXY)
            << entry.tag;
        EXPECT_EQ(tracks.btnLineAt(entry.tag) != nullptr, entry.backing == Backing::BtnLine);
        EXPECT_EQ(tracks.listLineAt(entry.tag) != nullptr, entry.backing == Backing::ListLine);
        EXPECT_EQ(tracks.zonesAt(entry.tag) != nullptr, entry.backing == Backing::Zones);
        if (!entry.hasValue()) {
            EXPECT_TRUE(found.insert(tracks.chunkableAt(entry.tag)).second) << entry.tag;
        }
    }
    EXPECT_EQ(found.size(), 30u + 13u);
    EXPECT_EQ(tracks.chunkableAt(-1), nullptr);
}

TEST_F(TracksTest, TheGlobalButtonsReachThemInOrder)
{
    const std::vector<KWInitInterface*> order = {&tracks.patternRepeats, &tracks.patternNumbers,
        &tracks.performance, &tracks.pitch, &tracks.pitchLock, &tracks.arpeggio, &tracks.velocityOn,
        &tracks.velocity, &tracks.gateTime, &tracks.chord, &tracks.octave, &tracks.pitchBend};
    for (size_t i = 0; i < order.size(); ++i)
        EXPECT_EQ(tracks.inOrder()[i], order[i]) << i;
    int grouped = 0;
    for (const KWInitInterface* track : tracks.inOrder())
        grouped += track->group == 1;
    EXPECT_EQ(grouped, 18);
    for (const KWListLine* line :
        {&tracks.chance, &tracks.condition, &tracks.ratchet, &tracks.late, &tracks.strum})
        EXPECT_EQ(line->group, 2);
}

TEST_F(TracksTest, APatternIsARowOfAllOfThem)
{
    tracks.selectRow(7);
    for (const TrackRow& row : kTrackTable)
        if (KWTableXY* table = tracks.tableAt(row.tag)) {
            EXPECT_EQ(table->row(), row.rows == 16 ? 7 : 0) << row.word;
        } else {
            EXPECT_EQ(tracks.lineAt(row.tag)->row(), row.rows == 16 ? 7 : 0) << row.word;
        }
    EXPECT_EQ(tracks.modLoops[4].row(), 7);
    EXPECT_EQ(tracks.sequenceLoop.row(), 0);
    for (const int bad : {-1, 16, 1000000})
        tracks.selectRow(bad);
    EXPECT_EQ(tracks.selectedRow(), 7);
}

TEST_F(TracksTest, AControllerWritesOneStepOfTheSelectedRow)
{
    tracks.selectRow(2);
    tracks.writeStep(Tag::Pitch, 3, 1.0f);
    tracks.writeStep(Tag::Velocity, 3, 0.25f);
    tracks.writeStep(Tag::Chord, 3, 1.0f);
    tracks.writeStep(Tag::VelocityOn, 3, 0.5f);
    tracks.writeStep(Tag::Repeat, 3, 1.0f);
    tracks.writeStep(Tag::modSteps(7), 31, 1.0f);
    EXPECT_EQ(tracks.pitch.getRowAtIndex(2, 3), 12.0f);
    EXPECT_EQ(tracks.velocity.step(3), 0.25f);
    EXPECT_EQ(tracks.chord.stepAt(2, 3), 53.0f);
    EXPECT_EQ(tracks.velocityOn.step(3), 1.0f);
    EXPECT_EQ(tracks.patternRepeats.step(3), 15.0f);
    EXPECT_EQ(tracks.mods[7].step(31), 1.0f);

    // What is no step, no track or no number changes nothing outside.
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const int step : {-1, 32, 1000000, -2147483647})
        for (int tag = -1; tag <= kTagCount; ++tag)
            tracks.writeStep(tag, step, 1.0f);
    tracks.writeStep(Tag::Velocity, 3, nan);
    EXPECT_EQ(tracks.velocity.step(3), 0.0f);
    tracks.writeStep(Tag::PitchLoop, 3, 1.0f);
    EXPECT_EQ(tracks.pitchLoop.zone(2), (LoopZone{0, 31}));
}

TEST_F(TracksTest, ButtonsActInsideTheLoopOfTheirTrack)
{
    ramp(tracks.velocity);
    tracks.velocityLoop.setZone(0, {0, 3});
    performEdit(Tag::VelocityShiftForward, tracks);
    EXPECT_THAT(
        steps(tracks.velocity, 5), ElementsAre(3 / 64.0f, 0, 1 / 64.0f, 2 / 64.0f, 4 / 64.0f));
    performEdit(Tag::VelocityShiftUp, tracks);
    EXPECT_FLOAT_EQ(tracks.velocity.step(1), 0.05f);
    EXPECT_FLOAT_EQ(tracks.velocity.step(4), 4 / 64.0f);

    tracks.pitchLoop.setZone(0, {2, 2});
    performEdit(Tag::PitchShiftDown, tracks);
    EXPECT_FLOAT_EQ(tracks.pitch.step(2), -0.5f);
    EXPECT_FLOAT_EQ(tracks.pitch.step(3), 0.5f);
}

TEST_F(TracksTest, SwitchesMoveWithTheirTableButNotWithItsValues)
{
    tracks.pitchLock.setStep(1, 1);
    tracks.velocityOn.setStep(1, 1);
    for (const int tag : {Tag::PitchShiftUp, Tag::PitchShiftDown, Tag::PitchRandom,
             Tag::PitchMutate, Tag::VelocityShiftUp, Tag::VelocityRandom, Tag::VelocityMutate})
        performEdit(tag, tracks);
    EXPECT_EQ(tracks.pitchLock.step(1), 1.0f);
    EXPECT_EQ(tracks.velocityOn.step(1), 1.0f);
    performEdit(Tag::PitchShiftBackward, tracks);
    performEdit(Tag::VelocityShiftForward, tracks);
    EXPECT_EQ(tracks.pitchLock.step(0), 1.0f);
    EXPECT_EQ(tracks.velocityOn.step(2), 1.0f);
    tracks.selectRow(5);
    performEdit(Tag::VelocityClear, tracks); // of all patterns
    EXPECT_EQ(tracks.velocityOn.stepAt(0, 2), 0.0f);
}

TEST_F(TracksTest, AShortCopyIsTiledOverALongerLoop)
{
    for (int i = 0; i < 4; ++i)
        tracks.chord.setStep(i, static_cast<float>(i + 1));
    tracks.performanceLoop.setZone(0, {0, 3});
    performEdit(Tag::PerformanceCopy, tracks);
    tracks.selectRow(1);
    performEdit(Tag::PerformancePaste, tracks);
    for (int i = 0; i < kTrackSteps; ++i)
        EXPECT_EQ(tracks.chord.step(i), static_cast<float>(i % 4 + 1)) << i;

    // Into a shorter loop only as much as fits, and nothing outside it.
    tracks.selectRow(2);
    tracks.performanceLoop.setZone(2, {5, 6});
    performEdit(Tag::PerformancePaste, tracks);
    EXPECT_EQ(tracks.chord.step(4), 0.0f);
    EXPECT_EQ(tracks.chord.step(5), 1.0f);
    EXPECT_EQ(tracks.chord.step(6), 2.0f);
    EXPECT_EQ(tracks.chord.step(7), 0.0f);
}

TEST_F(TracksTest, TracksOfAFamilyShareTheirClipboardAndOthersDoNot)
{
    ramp(tracks.mods[0]);
    performEdit(Tag::modCopy(0), tracks);
    ramp(tracks.pitch);
    const auto pitch = steps(tracks.pitch);
    performEdit(Tag::modPaste(4), tracks);
    performEdit(Tag::VelocityPaste, tracks);
    performEdit(Tag::PitchPaste, tracks); // nothing of its family was copied
    EXPECT_EQ(steps(tracks.mods[4]), steps(tracks.mods[0]));
    EXPECT_EQ(steps(tracks.velocity), steps(tracks.mods[0]));
    EXPECT_EQ(steps(tracks.pitch), pitch);

    // A copy is a copy: later edits of its track do not change it, and it reaches other instances.
    const auto copied = steps(tracks.mods[0]);
    tracks.mods[0].clear();
    Instance other = {};
    performEdit(Tag::modPaste(2), other.tracks);
    EXPECT_EQ(steps(other.tracks.mods[2]), copied);
}

TEST_F(TracksTest, TheGlobalClipboardGivesEachTrackItsOwnAndTheLoops)
{
    for (size_t track = 0; track < kModTracks; ++track)
        tracks.mods[track].setValue(0, 0.1f * static_cast<float>(track));
    tracks.pitch.setValue(0, 5);
    tracks.chord.setStep(9, 12);
    tracks.pitchLock.setStep(9, 1);
    tracks.gateLoop.setZone(0, {3, 8});
    tracks.modLoops[7].setZone(0, {1, 2});
    tracks.patternNumbers.setStep(0, 3);
    performEdit(Tag::GlobalCopy, tracks);
    tracks.selectRow(9);
    performEdit(Tag::GlobalPaste, tracks);
    for (size_t track = 0; track < kModTracks; ++track)
        EXPECT_FLOAT_EQ(tracks.mods[track].getRowAtIndex(9, 0), 0.1f * static_cast<float>(track));
    EXPECT_EQ(tracks.pitch.getRowAtIndex(9, 0), 5.0f);
    EXPECT_EQ(tracks.chord.stepAt(9, 9), 12.0f);
    EXPECT_EQ(tracks.pitchLock.stepAt(9, 9), 1.0f);
    EXPECT_EQ(tracks.gateLoop.zone(9), (LoopZone{3, 8}));
    EXPECT_EQ(tracks.modLoops[7].zone(9), (LoopZone{1, 2}));
    EXPECT_EQ(tracks.velocityLoop.zone(9), (LoopZone{0, 31}));
}

TEST_F(TracksTest, TheGlobalButtonsIgnoreLoopsAndLeaveTheChainAlone)
{
    tracks.velocity.setValue(31, 1);
    tracks.velocityLoop.setZone(0, {0, 3});
    tracks.patternNumbers.setStep(0, 3);
    performEdit(Tag::GlobalShiftForward, tracks);
    EXPECT_EQ(tracks.velocity.step(0), 1.0f);
    performEdit(Tag::GlobalShiftBackward, tracks);
    EXPECT_EQ(tracks.velocity.step(31), 1.0f);
    performEdit(Tag::GlobalRandom, tracks);
    EXPECT_GE(tracks.velocity.step(5), 0.2f);
    EXPECT_EQ(tracks.patternNumbers.step(0), 3.0f);
    EXPECT_EQ(tracks.patternNumbers.step(1), 0.0f);
}

TEST_F(TracksTest, WhoeverComesWhileTheClipboardIsInUseDoesNothing)
{
    ramp(tracks.velocity);
    performEdit(Tag::VelocityCopy, tracks);
    tracks.velocity.clear();
    const ClipboardAccess held;
    ASSERT_TRUE(held);
    performEdit(Tag::VelocityPaste, tracks);
    EXPECT_THAT(steps(tracks.velocity), Each(0.0f));
    EXPECT_FALSE(ClipboardAccess());
}

TEST_F(TracksTest, WithoutAKeyTheLastCopiedRowIsPasted)
{
    ramp(tracks.pitch);
    tracks.pitch.copyFamily = -1;
    tracks.pitch.copyRegion(0, 4);
    tracks.selectRow(3);
    tracks.pitch.pasteRegion(0, 4);
    EXPECT_EQ(tracks.pitch.getRowAtIndex(3, 31), 31 / 64.0f);
    tracks.octave.setStep(31, 4);
    tracks.octave.copyFamily = -1;
    tracks.octave.copyRegion(0, 4);
    tracks.selectRow(4);
    tracks.octave.pasteRegion(0, 4);
    EXPECT_EQ(tracks.octave.step(31), 4.0f);
}

TEST_F(TracksTest, EveryButtonEndsInsideTheRangesOfItsTracks)
{
    EXPECT_EQ(editButtons().size(), 80u + 43u);
    EXPECT_FALSE(performEdit(-1, tracks));
    EXPECT_FALSE(performEdit(Tag::Scale, tracks));
    EXPECT_FALSE(performEdit(1000000, tracks));
    for (int round = 0; round < 20; ++round)
        for (const EditButton& button : editButtons()) {
            EXPECT_TRUE(performEdit(button.tag, tracks));
            tracks.selectRow(round % 16);
            tracks.performanceLoop.setZone(round % 16, {round, 31 - round});
        }
    for (const TrackRow& row : kTrackTable)
        for (int r = 0; r < row.rows; ++r)
            for (int i = 0; i < row.steps; ++i)
                if (KWTableXY* table = tracks.tableAt(row.tag)) {
                    EXPECT_GE(table->getRowAtIndex(r, i), row.least) << row.word;
                    EXPECT_LE(table->getRowAtIndex(r, i), row.most) << row.word;
                } else {
                    EXPECT_GE(tracks.lineAt(row.tag)->stepAt(r, i), 0.0f) << row.word;
                    EXPECT_LE(tracks.lineAt(row.tag)->stepAt(r, i), row.most) << row.word;
                }
}

TEST(KeyState, HoldsNotesAndRefusesWhatIsNone)
{
    KWKeyState keys;
    for (const int note : {0, 31, 32, 127})
        keys.setNote(note, true);
    for (const int note : {-1, 128, 1000000}) {
        keys.setNote(note, true);
        keys.setClass(note, 3);
        EXPECT_FALSE(keys.hasNote(note));
        EXPECT_EQ(keys.classOf(note), 0);
    }
    EXPECT_THAT(keys.words(), ElementsAre(0x80000001u, 1u, 0u, 0x80000000u));
    keys.setNote(31, false);
    EXPECT_FALSE(keys.hasNote(31));
    EXPECT_TRUE(keys.hasNote(0));
    keys.clearNotes();
    EXPECT_THAT(keys.words(), Each(0u));
    EXPECT_EQ(keys.noteOn.take(), -1);
}

} // namespace ormund
