#include "data/parameters/Tags.h"
#include "tests/support/SequencerPlayer.h"

#include <gmock/gmock.h>

#include <map>
#include <set>

namespace ormund {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {
constexpr int kMiddle = 48; // root key 60, output octave -12

// The pitches of the first step's notes.
std::vector<int> firstStep(SequencerPlayer& player)
{
    player.forget();
    player.start(0);
    player.play(32);
    std::vector<int> pitches;
    for (const MidiOut& on : player.noteOns())
        pitches.push_back(on.data1);
    return pitches;
}
} // namespace

TEST(Notes, ScalesTransposesAndOctavesAddUp)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().tracks.pitch.setValue(0, 2);
    EXPECT_THAT(firstStep(player), ElementsAre(kMiddle + 2)); // chromatic

    SequencerPlayer major;
    major.writePlainNotes();
    major.engine().tracks.pitch.setValue(0, -3);
    major.engine().setParameter(Tag::Scale, 1.5f / 34.0f);
    major.engine().setParameter(Tag::MidiOutTranspose, 15.5f / 25.0f); // +3
    major.engine().tracks.octave.setStep(0, 1);                        // +2
    EXPECT_THAT(firstStep(major), ElementsAre(kMiddle - 5 + 3 + 24));
}

TEST(Notes, PitchesStopAtTheEndsOfMidi)
{
    SequencerPlayer low;
    low.writePlainNotes();
    low.engine().tracks.pitch.setValue(0, -12);
    low.engine().setParameter(Tag::RootKey, 0);       // 36
    low.engine().setParameter(Tag::MidiOutOctave, 0); // -36
    EXPECT_THAT(firstStep(low), ElementsAre(0));
    SequencerPlayer high;
    high.writePlainNotes();
    high.engine().tracks.pitch.setValue(0, 12);
    high.engine().setParameter(Tag::RootKey, 1);       // 84
    high.engine().setParameter(Tag::MidiOutOctave, 1); // +12
    high.engine().tracks.octave.setStep(0, 1);
    EXPECT_THAT(firstStep(high), ElementsAre(127));
}

TEST(Notes, ChordsPlayTheirRowAndADoubledRootPlaysOnce)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().tracks.chord.setStep(0, 4); // 0 4 7 10
    EXPECT_THAT(firstStep(player), ElementsAre(kMiddle, kMiddle + 4, kMiddle + 7, kMiddle + 10));
    SequencerPlayer doubled;
    doubled.writePlainNotes();
    doubled.engine().tracks.chord.setStep(0, 1); // 0 4 7 0
    EXPECT_THAT(
        firstStep(doubled), testing::UnorderedElementsAre(kMiddle, kMiddle + 4, kMiddle + 7));
    doubled.playBeats(8);
    doubled.stop();
    doubled.playBeats(2);
    EXPECT_EQ(doubled.soundingNotes(), 0);
}

TEST(Notes, TheVelocityThresholdIsAGateNotAScale)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().tracks.velocity.setValue(0, 0.5f);
    player.engine().tracks.velocity.setValue(1, 0.95f);
    player.engine().setParameter(Tag::VelocityGateButton, 1);
    player.engine().setParameter(Tag::VelocityThreshold, 1); // 0.9
    player.start();
    player.playBeats(0.5);
    const std::vector<MidiOut> ons = player.noteOns();
    ASSERT_EQ(ons.size(), 1u);
    EXPECT_EQ(ons[0].data2, 120);
}

TEST(Notes, GateTimesAreStepsLong)
{
    const auto length = [](float gate, float multiply) {
        SequencerPlayer player;
        player.writePlainNotes();
        player.engine().tracks.velocity.clear();
        player.engine().tracks.velocity.setValue(0, 1.0f);
        player.engine().tracks.gateTime.setValue(0, gate);
        player.engine().setParameter(Tag::GateTimeMultiply, multiply);
        player.start();
        player.playBeats(4);
        const int64_t on = player.noteOns().at(0).frame;
        for (const MidiOut& event : player.events())
            if (event.isNoteOff())
                return static_cast<double>(event.frame - on) / 5512.5;
        return -1.0;
    };
    EXPECT_NEAR(length(0.5f, 1.1f / 14.0f), 0.5, 0.01); // index 1 is a quarter
    EXPECT_NEAR(length(0.0f, 1.1f / 14.0f), 0.025, 0.006);
    EXPECT_NEAR(length(0.5f, 0.5f), 2.0, 0.01);
}

TEST(Notes, MuteActsAtTheNextStep)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.start();
    player.playBeats(0.1);
    player.engine().setParameter(Tag::Mute, 1);
    EXPECT_EQ(player.noteOns().size(), 1u);
    player.playBeats(1);
    EXPECT_EQ(player.noteOns().size(), 1u);
    player.engine().setParameter(Tag::Mute, 0);
    player.playBeats(0.5);
    EXPECT_EQ(player.noteOns().size(), 3u);
}

TEST(Notes, ArpeggioPlaysFourSubSteps)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::Scale, 1.5f / 34.0f);
    for (int i = 0; i < 32; ++i)
        player.engine().tracks.arpeggio.setStep(i, 7); // second family, first rhythm
    player.start();
    player.playBeats(0.24);
    ASSERT_GE(player.noteOns().size(), 2u);
    for (const MidiOut& on : player.noteOns()) {
        const int above = (on.data1 - kMiddle + 120) % 12;
        EXPECT_THAT(above, testing::AnyOf(0, 2, 4, 5, 7, 9, 11));
    }
    player.stop();
    player.playBeats(2);
    EXPECT_EQ(player.soundingNotes(), 0);
}

TEST(Notes, EveryStepOfAnArpeggioBeginsWithItsFirstSubStep)
{
    SequencerPlayer player;
    player.writePlainNotes();
    for (int i = 0; i < 32; ++i)
        player.engine().tracks.arpeggio.setStep(i, 7);
    // The sub-steps go on while nothing plays, so the first step begins anywhere within them.
    player.play(32 * 32);
    std::vector<int> ticks = player.stepTicks(12);
    std::erase_if(ticks, [](int tick) { return tick <= 32 + 173; });
    EXPECT_THAT(ticks, ElementsAre(249, 292, 335, 377, 421, 464, 507));
}

TEST(Notes, RandomCommandsChangeOneValueOfTheStep)
{
    SequencerPlayer player;
    player.writePlainNotes();
    for (int i = 0; i < 32; ++i)
        player.engine().tracks.performance.setStep(i, i % 2 == 0 ? 1 : 2);
    player.start();
    player.playBeats(8);
    std::set<int> pitches;
    std::set<int> velocities;
    const std::vector<MidiOut> ons = player.noteOns();
    for (size_t i = 0; i < ons.size(); ++i) {
        if (i % 2 == 0) {
            pitches.insert(ons[i].data1);
            EXPECT_EQ(ons[i].data2, static_cast<int>(0.8f * 127.0f));
            EXPECT_GE(ons[i].data1, kMiddle - 12);
            EXPECT_LE(ons[i].data1, kMiddle + 12);
        } else {
            EXPECT_EQ(ons[i].data1, kMiddle);
            velocities.insert(ons[i].data2);
        }
    }
    EXPECT_GT(pitches.size(), 5u);
    EXPECT_GT(velocities.size(), 5u);
}

TEST(Notes, EachRandomCommandMovesItsOwnValue)
{
    // What eight beats of one command at every step let out.
    struct Heard {
        std::set<int> pitches, velocities, lengths, statuses, chordSizes, controllers;
        size_t notes = 0;
    };
    const auto hear = [](int command) {
        SequencerPlayer player;
        player.writePlainNotes();
        for (int k = 0; k < kModTracks; ++k) {
            player.engine().setParameter(Tag::ModTrackOn + k, 1);
            player.engine().setParameter(Tag::ModTarget + k, (float(20 + k) + 0.5f) / 130.0f);
        }
        for (int step = 0; step < 32; ++step)
            player.engine().tracks.performance.setStep(step, float(command));
        player.start();
        player.playBeats(8);
        Heard heard;
        std::map<int64_t, int> together;
        std::map<int, int64_t> started;
        for (const MidiOut& event : player.events()) {
            if (event.frame > 0) // all controllers go out at the start
                heard.statuses.insert(event.status & 0xF0);
            if (event.isNoteOn()) {
                ++heard.notes;
                ++together[event.frame];
                heard.pitches.insert(event.data1);
                heard.velocities.insert(event.data2);
                started[event.data1] = event.frame;
            } else if (event.isNoteOff()) {
                heard.lengths.insert(int(event.frame - started[event.data1]) / 64);
            } else if ((event.status & 0xF0) == 0xB0 && event.frame > 0) {
                heard.controllers.insert(event.data1);
            }
        }
        for (const auto& [frame, size] : together)
            heard.chordSizes.insert(size);
        return heard;
    };
    const Heard plain = hear(0);
    EXPECT_EQ(plain.notes, 32u);
    EXPECT_THAT(plain.pitches, ElementsAre(kMiddle));

    const size_t muted = hear(int(StepCommand::VelocityOn)).notes;
    EXPECT_GT(muted, 5u);
    EXPECT_LT(muted, 27u);

    const Heard gates = hear(int(StepCommand::Gate));
    EXPECT_GT(gates.lengths.size(), plain.lengths.size() + 5);
    EXPECT_EQ(gates.pitches, plain.pitches);

    const Heard octaves = hear(int(StepCommand::Octave));
    EXPECT_GT(octaves.pitches.size(), 2u);
    for (const int pitch : octaves.pitches)
        EXPECT_EQ((pitch - kMiddle) % 12, 0) << pitch;

    EXPECT_THAT(hear(int(StepCommand::PitchBend)).statuses, testing::Contains(0xE0));
    EXPECT_THAT(plain.statuses, testing::Not(testing::Contains(0xE0)));

    for (const StepCommand chord : {StepCommand::MajorChord, StepCommand::MinorChord})
        EXPECT_GE(*hear(int(chord)).chordSizes.rbegin(), 3) << int(chord);

    EXPECT_GT(hear(int(StepCommand::Arpeggio)).notes, 40u);

    for (int k = 0; k < kModTracks; ++k)
        EXPECT_THAT(hear(int(StepCommand::FirstMod) + k).controllers, ElementsAre(20 + k)) << k;
    EXPECT_THAT(plain.controllers, IsEmpty());
}

TEST(Lanes, EveryModeWalksItsLoop)
{
    const auto walked = [](int mode, int start, int end) {
        SequencerPlayer player;
        player.writePlainNotes();
        for (int i = 0; i < 32; ++i)
            player.engine().tracks.pitch.setValue(i, static_cast<float>(i % 12));
        player.engine().tracks.pitchLoop.setZone(0, {start, end});
        player.engine().setParameter(Tag::PitchMode, (static_cast<float>(mode) + 0.5f) / 6.0f);
        player.engine().setParameter(Tag::LoopbarMode, 0);
        player.start();
        player.playBeats(1.24);
        std::vector<int> steps;
        for (const MidiOut& on : player.noteOns())
            steps.push_back(on.data1 - kMiddle);
        return steps;
    };
    EXPECT_THAT(walked(0, 2, 4), ElementsAre(2, 3, 4, 2, 3));
    EXPECT_THAT(walked(1, 2, 4), ElementsAre(4, 3, 2, 4, 3));
    EXPECT_THAT(walked(3, 2, 5), ElementsAre(2, 4, 2, 4, 2));
    EXPECT_THAT(walked(4, 2, 6), ElementsAre(2, 5, 3, 6, 4));
    for (const int step : walked(2, 2, 5)) {
        EXPECT_GE(step, 2);
        EXPECT_LE(step, 5);
    }
}

TEST(Lanes, ALoopOfOneStepTriggersOnceAndHolds)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().tracks.pitchLoop.setZone(0, {3, 3});
    player.engine().setParameter(Tag::LoopbarMode, 0);
    player.start();
    player.playBeats(2);
    EXPECT_EQ(player.noteOns().size(), 1u);
}

TEST(Bend, AShapeGoesOutAndReturnsToTheCentre)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.start();
    player.playBeats(1);
    for (const MidiOut& event : player.events())
        EXPECT_NE(event.status, 0xE0);
    player.engine().tracks.pitchBend.setStep(5, 1);
    player.playBeats(8);
    std::vector<int> bends;
    std::vector<int64_t> frames;
    for (const MidiOut& event : player.events()) {
        if (event.status == 0xE0) {
            bends.push_back(event.data2);
            frames.push_back(event.frame);
        }
    }
    ASSERT_GT(bends.size(), 1u);
    EXPECT_EQ(bends.back(), 64);
    constexpr int kEighthOfABeat = 22050 / 8;
    for (size_t i = 2; i < frames.size(); ++i)
        EXPECT_GT(frames[i] - frames[i - 1], kEighthOfABeat - 64) << i;
}

} // namespace ormund
