// Modulation tracks, patterns and keys.

#include "data/parameters/Tags.h"
#include "tests/support/SequencerPlayer.h"

#include <gmock/gmock.h>

#include <random>

namespace ormund {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {
std::vector<std::vector<int>> controllers(const SequencerPlayer& player)
{
    std::vector<std::vector<int>> found;
    for (const MidiOut& event : player.events())
        if ((event.status & 0xF0) != 0x90)
            found.push_back({event.status, event.data1, event.data2});
    return found;
}

void setTarget(SequencerPlayer& player, int track, int target)
{
    player.engine().setParameter(
        Tag::ModTarget + track, (static_cast<float>(target) + 0.5f) / 130.0f);
}

void switchOn(SequencerPlayer& player, int track)
{
    player.engine().setParameter(Tag::ModTrackOn + track, 1);
}

void fill(KWTableXY& table, float value)
{
    for (int i = 0; i < 32; ++i)
        table.setValue(i, value);
}

int pitchOf(SequencerPlayer& player, int beats = 1)
{
    player.forget();
    player.playBeats(beats);
    return player.noteOns().empty() ? -1 : player.noteOns().back().data1;
}
} // namespace

TEST(Mods, AValueGoesOutOnceWhenItMoves)
{
    SequencerPlayer player;
    switchOn(player, 0);
    setTarget(player, 0, 74);
    fill(player.engine().tracks.mods[0], 0.5f);
    player.start();
    player.playBeats(4);
    EXPECT_THAT(controllers(player), ElementsAre(ElementsAre(0xB0, 74, 63)));
}

TEST(Mods, PressureAndProgramTargetsHaveTheirOwnMessages)
{
    SequencerPlayer player;
    switchOn(player, 0);
    switchOn(player, 1);
    setTarget(player, 0, 128);
    setTarget(player, 1, 129);
    fill(player.engine().tracks.mods[0], 0.5f);
    fill(player.engine().tracks.mods[1], 0.5f);
    player.start();
    player.playBeats(1);
    EXPECT_THAT(
        controllers(player), ElementsAre(ElementsAre(0xD0, 63, 127), ElementsAre(0xC0, 63, 63)));
}

TEST(Mods, OffFreezesMuteBringsToZeroAndAllOffFreezesAll)
{
    SequencerPlayer player;
    switchOn(player, 2);
    setTarget(player, 2, 10);
    KWTableXY& table = player.engine().tracks.mods[2];
    for (int i = 0; i < 32; ++i)
        table.setValue(i, i % 2 == 0 ? 1.0f : 0.5f);
    player.start();
    player.playBeats(0.9); // steps 0 to 3
    EXPECT_EQ(controllers(player).size(), 4u);
    player.engine().setParameter(Tag::ModTrackOn + 2, 0);
    player.playBeats(2);
    EXPECT_EQ(controllers(player).size(), 4u);
    switchOn(player, 2);
    player.forget();
    player.engine().setParameter(Tag::AllModsOff, 1);
    player.playBeats(1);
    EXPECT_THAT(controllers(player), IsEmpty());
    player.engine().setParameter(Tag::AllModsOff, 0);
    player.engine().setParameter(Tag::Mute, 1);
    player.playBeats(1);
    EXPECT_THAT(controllers(player).back(), ElementsAre(0xB0, 10, 0));
    player.engine().setParameter(Tag::Mute, 0);
    player.playBeats(1);
    EXPECT_GT(controllers(player).back().at(2), 0);
}

TEST(Mods, ATrackDrivesItsSynthParameter)
{
    const int targets[] = {17, 18, 19, 20, 25, 26, 27, 35};
    SequencerPlayer player;
    for (int k = 0; k < 8; ++k) {
        switchOn(player, k);
        player.engine().setParameter(Tag::ModToSynth + k, 1);
        fill(player.engine().tracks.mods[static_cast<size_t>(k)],
            0.2f + 0.05f * static_cast<float>(k));
    }
    player.start();
    player.playBeats(0.5);
    for (int k = 0; k < 8; ++k)
        EXPECT_FLOAT_EQ(
            player.engine().parameters.raw(targets[k]), 0.2f + 0.05f * static_cast<float>(k));
}

namespace {

// Sixteen patterns that differ in their pitch.
Tracks& writeRowsByPitch(SequencerPlayer& player)
{
    Tracks& tracks = player.engine().tracks;
    for (int row = 0; row < 16; ++row) {
        tracks.selectRow(row);
        player.writePlainNotes();
        fill(tracks.pitch, static_cast<float>(row - 8));
    }
    tracks.selectRow(0);
    return tracks;
}

std::vector<int> rowsHeard(const SequencerPlayer& player)
{
    std::vector<int> rows;
    for (const MidiOut& on : player.noteOns())
        rows.push_back(on.data1 - 48 + 8);
    return rows;
}

} // namespace

TEST(Patterns, TheSongRowChainsPatternsWithRepeats)
{
    SequencerPlayer player;
    Tracks& tracks = writeRowsByPitch(player);
    const int song[] = {3, 5, 1};
    for (int i = 0; i < 3; ++i)
        tracks.patternNumbers.setStep(i, static_cast<float>(song[i]));
    tracks.patternRepeats.setStep(1, 1);
    tracks.sequenceLoop.setZone(0, {0, 2});
    player.engine().setParameter(Tag::SongSpeed, 1.5f / 6.0f); // two steps
    player.engine().setParameter(Tag::SongOn, 1);
    player.start();
    player.playBeats(2.6);
    EXPECT_THAT(rowsHeard(player), ElementsAre(3, 3, 5, 5, 5, 5, 1, 1, 3, 3, 5));
}

TEST(Patterns, AChangeReplaysTheStoredParametersInItsTick)
{
    SequencerPlayer player;
    Sequencer& engine = player.engine();
    for (int row = 0; row < 16; ++row) {
        engine.tracks.selectRow(row);
        player.writePlainNotes();
    }
    engine.tracks.selectRow(0);
    engine.patternStore.fillWithDefaults();
    engine.patternStore.setAt(7, 0, 0.0f); // root key 36
    engine.tracks.patternNumbers.setStep(1, 7);
    engine.tracks.sequenceLoop.setZone(0, {0, 1});
    engine.setParameter(Tag::SongOn, 1);
    player.start();
    player.playBeats(0.74);
    std::vector<int> notes;
    for (const MidiOut& on : player.noteOns())
        notes.push_back(on.data1);
    EXPECT_THAT(notes, ElementsAre(48, 24, 48));
}

TEST(Patterns, ASlowerPatternsFirstNoteIsAsLongAsItsOthers)
{
    SequencerPlayer player;
    Sequencer& engine = player.engine();
    engine.tracks.selectRow(1);
    player.writePlainNotes();
    engine.tracks.selectRow(0);
    engine.patternStore.fillWithDefaults();
    engine.patternStore.setAt(1, 8, 0.35f); // a step is a quarter note
    player.send(0x90, 37, 100);
    player.start();
    player.playBeats(1.9);
    std::vector<int64_t> starts;
    std::vector<int64_t> ends;
    for (const MidiOut& event : player.events())
        if (event.isNoteOn() || event.isNoteOff())
            (event.isNoteOn() ? starts : ends).push_back(event.frame);
    ASSERT_EQ(starts.size(), 2u);
    ASSERT_EQ(ends.size(), 2u);
    for (size_t i = 0; i < 2; ++i)
        EXPECT_NEAR(static_cast<double>(ends[i] - starts[i]), 0.4 * 22050, 32) << i;
}

TEST(Patterns, LockingHoldsAndUnlockingJumpsAtOnce)
{
    SequencerPlayer player;
    Sequencer& engine = player.engine();
    engine.tracks.patternNumbers.setStep(0, 2);
    engine.tracks.sequenceLoop.setZone(0, {0, 0});
    engine.setParameter(Tag::SongOn, 1);
    player.start();
    player.playBeats(1);
    EXPECT_EQ(engine.patternStore.currentPattern, 2);
    engine.setParameter(Tag::LockArea, 9.5f / 15.99f);
    player.play(64);
    EXPECT_EQ(engine.patternStore.currentPattern, 2);
    engine.setLockButton(true);
    player.play(64);
    engine.setLockButton(false);
    EXPECT_EQ(engine.patternStore.currentPattern, 9);
    player.playBeats(2);
    EXPECT_EQ(engine.patternStore.currentPattern, 9);
    engine.setLockButton(true);
    player.play(64);
    EXPECT_EQ(engine.patternStore.currentPattern, 2);
}

TEST(Patterns, AReloadComesBackOnItsPattern)
{
    SequencerPlayer player;
    Sequencer& engine = player.engine();
    engine.tracks.patternNumbers.setStep(0, 3);
    engine.tracks.sequenceLoop.setZone(0, {0, 0});
    engine.setParameter(Tag::SongOn, 1);
    player.start();
    player.playBeats(1);
    ASSERT_EQ(engine.patternStore.currentPattern, 3);
    engine.countReload();
    player.play(32);
    EXPECT_EQ(engine.patternStore.currentPattern, 0);
    player.play(96);
    EXPECT_EQ(engine.patternStore.currentPattern, 3);
}

TEST(Parameters, ANewInstanceStandsOnTheDefaultsAndSecondControlsAgree)
{
    SequencerPlayer player({.empty = false});
    Sequencer& engine = player.engine();
    for (int tag = 0; tag < kHostParameters; ++tag)
        EXPECT_EQ(engine.parameters.raw(tag), parameterEntry(tag)->defaultRaw) << tag;
    const std::pair<int, int> pairs[] = {{Tag::LoopbarMode, Tag::LoopbarModeSecond},
        {Tag::Page, Tag::PageSecond}, {Tag::SynthOn, Tag::SynthOnSecond}};
    for (const auto& [first, second] : pairs) {
        EXPECT_EQ(engine.parameters.index(first), 1) << first;
        EXPECT_EQ(engine.parameters.index(second), 1) << second;
        engine.setParameter(second, 0.0f);
        EXPECT_EQ(engine.parameters.index(first), 0) << first;
        engine.setParameter(first, 1.0f);
        EXPECT_EQ(engine.parameters.index(second), 1) << second;
        engine.setSampleRate(48000);
        EXPECT_EQ(engine.parameters.index(first), 1) << first;
    }
}

TEST(Patterns, ARetriggerBeginsTheSongAnew)
{
    SequencerPlayer player;
    Tracks& tracks = writeRowsByPitch(player);
    for (int i = 0; i < 8; ++i)
        tracks.patternNumbers.setStep(i, static_cast<float>(i + 3));
    player.engine().setParameter(Tag::SongSpeed, 1.5f / 6.0f); // two steps
    player.engine().setParameter(Tag::SongOn, 1);
    player.start();
    player.playBeats(1.1);
    player.engine().setParameter(Tag::Retrigger, 1);
    player.playBeats(0.6);
    EXPECT_THAT(rowsHeard(player), ElementsAre(3, 3, 4, 4, 5, 3, 4));
}

TEST(Keys, TheUpperZoneTransposesAndLockedStepsStay)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::TransposeMode, 1);
    player.start();
    player.send(0x90, 75, 100);
    EXPECT_EQ(pitchOf(player), 51);
    player.send(0x90, 60, 100); // a second key does not take over
    EXPECT_EQ(pitchOf(player), 51);
    player.send(0x80, 75, 0); // the last one left does
    EXPECT_EQ(pitchOf(player), 36);
    for (int i = 0; i < 32; ++i)
        player.engine().tracks.pitchLock.setStep(i, 1);
    EXPECT_EQ(pitchOf(player), 48);
    player.send(0xB0, 123, 0);
    for (int i = 0; i < 32; ++i)
        player.engine().tracks.pitchLock.setStep(i, 0);
    EXPECT_EQ(pitchOf(player), 48);
}

TEST(Keys, FourCountAndBeyondAnOctaveTransposesNoFurther)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::TransposeMode, 1);
    player.start();
    for (const auto& [key, pitch] : {std::pair{84, 60}, {85, 48}, {96, 48}, {60, 36}, {59, 48}}) {
        player.send(0x90, key, 100);
        EXPECT_EQ(pitchOf(player), pitch) << key;
        player.send(0x80, key, 0);
        pitchOf(player);
    }
    for (const int key : {73, 74, 75, 76})
        player.send(0x90, key, 100);
    EXPECT_EQ(pitchOf(player), 49);
    player.send(0x90, 77, 100); // takes the place of the oldest
    EXPECT_EQ(pitchOf(player), 53);
    for (const int key : {74, 75, 76, 77})
        player.send(0x80, key, 0);
    EXPECT_EQ(pitchOf(player), 48);
}

TEST(Keys, AKeyOfTheLowerZoneTransposesNothing)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::TransposeMode, 1);
    player.start();
    for (const int key : {72, 74, 76})
        player.send(0x90, key, 100);
    player.send(0x90, 72, 0);
    EXPECT_EQ(pitchOf(player), 48);
    player.send(0x90, 36, 100);
    player.send(0x90, 36, 100); // where the first key was
    EXPECT_THAT(pitchOf(player), testing::AnyOf(50, 52));
}

TEST(Keys, TheLowerZoneChoosesThePattern)
{
    SequencerPlayer player;
    player.start();
    player.send(0x90, 41, 100);
    player.playBeats(1);
    EXPECT_EQ(player.engine().patternStore.currentPattern, 5);
    player.send(0x90, 41, 0);
    player.playBeats(1);
    EXPECT_EQ(player.engine().patternStore.currentPattern, 0);
}

TEST(Keys, AnOctaveShiftActsAtTheNextKey)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::TransposeMode, 1);
    player.engine().setParameter(Tag::InputOctave, 1.0f); // +24
    player.start();
    player.send(0x90, 50, 100); // 74
    EXPECT_EQ(pitchOf(player), 50);
    player.engine().setParameter(Tag::InputOctave, 0.5f);
    EXPECT_EQ(pitchOf(player), 50);
}

TEST(Keys, KeySyncHoldsAKeyUntilTheNextBeat)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::TransposeMode, 1);
    player.engine().setParameter(Tag::KeySync, 3.5f / 6.0f); // a quarter: a beat
    player.start();
    player.playBeats(0.1);
    player.send(0x90, 77, 100);
    player.forget();
    player.playBeats(0.85); // steps 1 to 3
    for (const MidiOut& on : player.noteOns())
        EXPECT_EQ(on.data1, 48);
    player.forget();
    player.playBeats(0.2);
    ASSERT_FALSE(player.noteOns().empty());
    EXPECT_EQ(player.noteOns().back().data1, 53);
}

TEST(Keys, PerformanceKeysHoldTheirButtons)
{
    SequencerPlayer player;
    Sequencer& engine = player.engine();
    engine.setParameter(Tag::KeyboardMode, 1);
    player.start();
    player.play(64);
    for (const PerformanceKey& key : kPerformanceKeyTable) {
        player.send(0x90, key.note, 90);
        player.play(64);
        EXPECT_EQ(engine.parameters.index(key.tag), 1) << key.note;
        player.send(0x80, key.note, 0);
        player.play(64);
        EXPECT_EQ(engine.parameters.index(key.tag), 0) << key.note;
    }
    engine.setParameter(Tag::KeyboardMode, 0);
    player.play(64);
    player.send(0x90, 59, 90);
    player.play(64);
    EXPECT_EQ(engine.parameters.index(Tag::Mute), 0);
}

TEST(Keys, StepModeMovesOneStepAKey)
{
    SequencerPlayer player;
    player.writePlainNotes();
    Sequencer& engine = player.engine();
    for (int i = 0; i < 32; ++i)
        engine.tracks.pitch.setValue(i, static_cast<float>(i % 12));
    for (int i = 0; i < 32; ++i)
        engine.tracks.pitchLock.setStep(i, 1);
    engine.setParameter(Tag::StepPlay, 1);
    player.start();
    player.play(640);
    player.forget();
    for (int i = 0; i < 4; ++i) {
        player.send(0x90, 72, 100);
        player.play(640);
        player.send(0x80, 72, 0);
        player.play(640);
    }
    std::vector<int> pitches;
    for (const MidiOut& on : player.noteOns())
        pitches.push_back(on.data1 - 48);
    EXPECT_EQ(pitches.size(), 3u); // the first key restarts the count
    EXPECT_TRUE(std::is_sorted(pitches.begin(), pitches.end()));
}

TEST(Keys, RecordingWritesStepByStepOrLive)
{
    SequencerPlayer player;
    Sequencer& engine = player.engine();
    engine.tracks.pitch.clear();
    engine.setParameter(Tag::RecordMode, 1);
    engine.setParameter(Tag::Record, 1);
    player.start();
    player.play(32);
    for (const int key : {72, 74, 60, 84}) {
        player.send(0x90, key, 100);
        player.play(64);
        player.send(0x80, key, 0);
        player.play(64);
    }
    EXPECT_EQ(engine.tracks.pitch.step(0), 0.0f);
    EXPECT_EQ(engine.tracks.pitch.step(1), 2.0f);
    EXPECT_EQ(engine.tracks.pitch.step(2), -12.0f);
    EXPECT_EQ(engine.tracks.pitch.step(3), 12.0f);
    engine.setParameter(Tag::RecordMode, 0);
    player.start(2.55); // step 10
    player.play(64);
    player.send(0x90, 79, 100);
    player.play(64);
    EXPECT_EQ(engine.tracks.pitch.step(10), 7.0f);
    player.start(3.05); // step 12
    player.play(64);
    const float drawn = engine.tracks.pitch.step(12);
    player.send(0x90, 81, 100); // legato
    player.play(64);
    EXPECT_EQ(engine.tracks.pitch.step(12), drawn);
}

TEST(Keys, AKeyPressedAndReleasedBeforeItsTickSoundsNothing)
{
    SequencerPlayer player({.block = 16});
    player.writePlainNotes();
    player.engine().setParameter(Tag::TriggerMode, 0);
    player.start();
    player.play(16); // the first tick is over
    player.send(0x90, 72, 100, 2);
    player.send(0x80, 72, 0, 9);
    player.play(16);
    player.play(640);
    EXPECT_THAT(player.noteOns(), IsEmpty());
}

TEST(Keys, AReleaseOfAKeyThatIsNotHeldCallsOffItsNextPress)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::TriggerMode, 0);
    player.start();
    player.play(512);
    player.send(0x80, 72, 0, 0);
    player.send(0x90, 72, 100, 300);
    player.play(2048);
    EXPECT_THAT(player.noteOns(), IsEmpty());
    player.send(0x80, 72, 0, 0);
    player.send(0x90, 74, 100, 300);
    player.play(2048);
    EXPECT_FALSE(player.noteOns().empty()) << "another key plays";
}

TEST(Keys, AnyOrderOfKeysComesToRest)
{
    std::mt19937 random(3);
    for (int round = 0; round < 60; ++round) {
        SequencerPlayer player({.block = 100});
        player.writePlainNotes();
        player.engine().setParameter(Tag::TriggerMode, 0);
        player.engine().setParameter(Tag::KeyboardMode, round % 2 == 0 ? 1.0f : 0.0f);
        player.start();
        for (int i = 0; i < 40; ++i) {
            const int key = 30 + static_cast<int>(random() % 60);
            player.send(
                random() % 2 == 0 ? 0x90 : 0x80, key, 100, static_cast<int>(random() % 100));
            if (random() % 4 == 0)
                player.play(100);
        }
        player.play(100);
        player.send(0xB0, 123, 0);
        player.play(320);
        player.forget();
        player.playBeats(2);
        EXPECT_THAT(player.noteOns(), IsEmpty()) << round;
        for (const PerformanceKey& key : kPerformanceKeyTable)
            EXPECT_EQ(player.engine().parameters.index(key.tag), 0);
    }
}

TEST(Keys, RandomBytesHangNothing)
{
    std::mt19937 random(5);
    SequencerPlayer player({.block = 64, .empty = false});
    player.start();
    for (int i = 0; i < 3000; ++i) {
        const int status = 0x80 + static_cast<int>(random() % 128);
        if (status < 0xC0 || status >= 0xD0) // a program change would load a file
            player.send(status, static_cast<int>(random() % 256), static_cast<int>(random() % 256),
                static_cast<int>(random() % 80) - 8);
        if (i % 3 == 0)
            player.play(64);
    }
    player.send(0xB0, 123, 0);
    player.stop();
    player.playBeats(40);
    EXPECT_EQ(player.soundingNotes(), 0);
}

} // namespace ormund
