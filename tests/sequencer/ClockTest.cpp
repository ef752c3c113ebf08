#include "data/parameters/Tags.h"
#include "tests/support/SequencerPlayer.h"

#include <gmock/gmock.h>

namespace ormund {

using testing::ElementsAre;

namespace {
// Four steps a beat at 120 bpm: a step is 172.27 ticks.
std::vector<int> ticksWith(std::initializer_list<std::pair<int, float>> settings, int count)
{
    SequencerPlayer player;
    player.writePlainNotes();
    for (const auto& [tag, value] : settings)
        player.engine().setParameter(tag, value);
    return player.stepTicks(count);
}
} // namespace

TEST(Swing, OddStepsAreLateByHalfAStepAtMostAndEvenStepsAreNot)
{
    EXPECT_THAT(ticksWith({}, 4), ElementsAre(0, 173, 345, 517));
    EXPECT_THAT(ticksWith({{Tag::Swing, 1.0f}}, 4), ElementsAre(0, 259, 345, 603));
    const std::vector<int> half = ticksWith({{Tag::Swing, 0.5f}}, 2);
    EXPECT_NEAR(half[1] - 173, 86 * 0.536, 1.0); // 0.5 to the power 0.9
}

TEST(Clock, AllSpeedsFollowTheHost)
{
    const double stepsPerBeat[] = {0.25, 0.5, 2 / 3.0, 1, 4 / 3.0, 2, 3, 4, 6, 8};
    for (int index = 0; index < 10; ++index) {
        const float value = (static_cast<float>(index) + 0.5f) / 10.0f;
        const double ticks = 22050.0 / stepsPerBeat[index] / 32.0;
        const std::vector<int> seen = ticksWith({{Tag::StepSpeed, value}}, 3);
        EXPECT_NEAR(seen[1], ticks, 1.0) << index;
        EXPECT_NEAR(seen[2], 2 * ticks, 1.0) << index;
    }
}

TEST(Clock, SlowTemposAreRaisedAndFastOnesIgnored)
{
    SequencerPlayer slow({.tempo = 30});
    slow.start();
    slow.play(4096);
    EXPECT_DOUBLE_EQ(slow.engine().info.tempo, 45.0);
    SequencerPlayer fast({.tempo = 600});
    fast.start();
    fast.play(4096);
    EXPECT_DOUBLE_EQ(fast.engine().info.tempo, 120.0);
}

TEST(Clock, AStoppedHostIsSilentInEveryTriggerMode)
{
    for (const float mode : {0.0f, 0.5f, 1.0f}) {
        SequencerPlayer player;
        player.writePlainNotes();
        player.engine().setParameter(Tag::TriggerMode, mode);
        player.play(44100);
        EXPECT_TRUE(player.events().empty()) << mode;
    }
}

TEST(Clock, AHeldKeyIsTheGateInKeyboardMode)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::TriggerMode, 0.0f);
    player.start();
    player.playBeats(1.1);
    EXPECT_TRUE(player.noteOns().empty());
    player.send(0x90, 72, 100);
    player.playBeats(1);
    EXPECT_EQ(player.noteOns().size(), 5u); // the step that it falls into, too
    player.send(0x80, 72, 0);
    player.play(64);
    player.forget();
    player.playBeats(1);
    EXPECT_TRUE(player.noteOns().empty());
}

TEST(Clock, TheKeyboardTogglesItsOwnClock)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::TriggerMode, 0.5f);
    player.start();
    player.playBeats(1.1);
    EXPECT_TRUE(player.noteOns().empty());
    player.send(0x90, 72, 100);
    player.play(64);
    player.send(0x80, 72, 0);
    player.playBeats(1);
    const size_t count = player.noteOns().size();
    EXPECT_GE(count, 4u);
    player.send(0x90, 72, 100);
    player.play(64);
    player.send(0x80, 72, 0);
    player.play(64);
    player.forget();
    player.playBeats(2);
    EXPECT_TRUE(player.noteOns().empty());
}

TEST(Chain, HalfSpeedDoublesEveryStep)
{
    EXPECT_THAT(ticksWith({{Tag::HalfSpeed, 1.0f}}, 3), ElementsAre(0, 345, 690));
}

TEST(Chain, RetriggerPlaysFromTheFirstStepAndTheMainCountRunsOn)
{
    SequencerPlayer player;
    player.writePlainNotes();
    for (int i = 0; i < 32; ++i)
        player.engine().tracks.pitch.setValue(i, static_cast<float>(i % 12));
    const int root = 60 - 12;
    player.start();
    player.playBeats(1.3); // in step 5
    player.engine().setParameter(Tag::Retrigger, 1.0f);
    player.playBeats(0.9); // steps 6, 7, 8 become 0, 1, 2
    player.engine().setParameter(Tag::Retrigger, 0.0f);
    player.playBeats(0.5);
    std::vector<int> pitches;
    for (const MidiOut& on : player.noteOns())
        pitches.push_back(on.data1 - root);
    EXPECT_THAT(pitches, ElementsAre(0, 1, 2, 3, 4, 5, 0, 1, 2, 9, 10));
}

TEST(Chain, LooperRepeatsItsSteps)
{
    SequencerPlayer player;
    player.writePlainNotes();
    for (int i = 0; i < 32; ++i)
        player.engine().tracks.pitch.setValue(i, static_cast<float>(i % 12));
    player.engine().setParameter(Tag::LooperSteps, 0.15f); // 3 steps
    player.start();
    player.playBeats(0.9);
    player.engine().setParameter(Tag::Looper, 1.0f);
    player.playBeats(1.75);
    std::vector<int> pitches;
    for (const MidiOut& on : player.noteOns())
        pitches.push_back(on.data1 - 48);
    EXPECT_THAT(pitches, ElementsAre(0, 1, 2, 3, 4, 5, 6, 4, 5, 6, 4));
}

TEST(Chain, SlowdownSpacesStepsEverWider)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::SlowdownRate, 1.0f);
    player.start();
    player.playBeats(1);
    player.forget();
    player.engine().setParameter(Tag::Slowdown, 1.0f);
    player.playBeats(8);
    const std::vector<MidiOut> ons = player.noteOns();
    ASSERT_GE(ons.size(), 4u);
    for (size_t i = 2; i + 1 < ons.size(); ++i)
        EXPECT_GT(ons[i + 1].frame - ons[i].frame, ons[i].frame - ons[i - 1].frame);
    EXPECT_LT(ons.size(), 30u);
}

} // namespace ormund
