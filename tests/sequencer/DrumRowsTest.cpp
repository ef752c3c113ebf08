// Modulation tracks that play drums, MIDI channels, and lanes with a speed of their own.

#include "data/parameters/ChoiceLists.h"
#include "data/parameters/Tags.h"
#include "engine/KWNoteSchedule.h"
#include "tests/support/SequencerPlayer.h"

#include <gmock/gmock.h>

#include <cmath>
#include <map>
#include <set>

namespace ormund {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {
constexpr double kStep = 5512.5; // frames: a 16th at 120 beats a minute

float rawOfSpeed(int index) { return (static_cast<float>(index) + 0.5f) / kLaneSpeeds; }
float rawOfChannel(int channel) { return (static_cast<float>(channel) - 0.5f) / 16; }

void makeDrum(Sequencer& engine, int track, const std::vector<float>& steps)
{
    engine.setParameter(Tag::DrumRow + track, 1);
    engine.setParameter(Tag::ModTrackOn + track, 1);
    for (int i = 0; i < kTrackSteps; ++i)
        engine.tracks.mods[static_cast<size_t>(track)].setValue(
            i, steps[static_cast<size_t>(i) % steps.size()]);
}

// Where the notes of a pitch begin, in 32nds of a step.
std::vector<int> onsets(const SequencerPlayer& player, int note, int channel = 0)
{
    std::vector<int> places;
    for (const MidiOut& on : player.noteOns())
        if (on.data1 == note && (on.status & 15) == channel)
            places.push_back(static_cast<int>(static_cast<double>(on.frame) / kStep * 32 + 0.2));
    return places;
}
} // namespace

TEST(DrumRows, PlayTheirNoteWithTheirGateAndNothingElse)
{
    SequencerPlayer player;
    Sequencer& engine = player.engine();
    makeDrum(engine, 0, {1, 0, 0.5f, 0});
    makeDrum(engine, 4, {0, 0.25f});
    engine.setParameter(Tag::DrumGate + 4, 0.995f);
    engine.setParameter(Tag::ModChannel + 4, rawOfChannel(10));
    engine.tracks.modLoops[4].setZone(0, {0, 2});
    player.start();
    player.playBeats(1.95);
    EXPECT_THAT(onsets(player, 36), ElementsAre(0, 64, 128, 192));
    EXPECT_THAT(onsets(player, 39, 9), ElementsAre(32, 128, 224)); // its loop has three steps
    std::map<int, int64_t> began;
    for (const MidiOut& event : player.events()) {
        ASSERT_EQ(event.status & 0xF0, 0x90) << "a drum sends no controller";
        if (event.isNoteOn()) {
            EXPECT_EQ(event.data2, event.data1 == 39 ? 32 : began.count(36) ? event.data2 : 127);
            began[event.data1] = event.frame;
        } else {
            const double part = event.data1 == 36 ? 0.5 : 1.0;
            EXPECT_NEAR(double(event.frame - began[event.data1]), kStep * part, kTickSamples);
        }
    }
    player.stop();
    player.playBeats(1);
    EXPECT_EQ(player.soundingNotes(), 0);
    player.forget();
    engine.setParameter(Tag::ModTrackOn, 0);
    engine.setParameter(Tag::AllModsOff, 1);
    player.start();
    player.playBeats(1);
    EXPECT_THAT(player.noteOns(), IsEmpty());
}

TEST(DrumRows, ALoopOfOneStepStrikesOnEveryStepAndTheSynthOnlyWhenItIsSentThere)
{
    SequencerPlayer player;
    Sequencer& engine = player.engine();
    engine.setParameter(Tag::SynthOn, 1);
    player.keepAudio(true);
    makeDrum(engine, 2, {1});
    engine.tracks.modLoops[2].setZone(0, {0, 0});
    for (const bool toSynth : {false, true}) {
        engine.setParameter(Tag::ModToSynth + 2, toSynth ? 1.0f : 0.0f);
        player.forget();
        player.forgetAudio();
        player.start();
        player.playBeats(1.9);
        EXPECT_THAT(player.noteOns(), testing::SizeIs(8));
        float loudest = 0;
        for (const float sample : player.left())
            loudest = std::max(loudest, std::abs(sample));
        EXPECT_EQ(loudest > 0.001f, toSynth);
        player.stop();
        player.playBeats(1);
    }
}

TEST(Channels, EveryNoteEndsWhereItBeganWhateverIsSwitchedMeanwhile)
{
    SequencerPlayer player;
    Sequencer& engine = player.engine();
    player.writePlainNotes();
    makeDrum(engine, 0, {1});
    engine.setParameter(Tag::DrumNote, (48 + 0.5f) / 128); // the melody's pitch
    for (int i = 0; i < kTrackSteps; ++i) {
        engine.tracks.ratchet.setStep(i, float(i % 22));
        engine.tracks.late.setStep(i, float(i % 16));
        engine.tracks.pitchBend.setStep(i, 3);
    }
    player.start();
    std::map<int, int> bend;
    for (int i = 0; i < 64; ++i) {
        engine.setParameter(Tag::MelodyChannel, rawOfChannel(1 + i % 3));
        engine.setParameter(Tag::ModChannel, rawOfChannel(1 + i % 5));
        engine.setParameter(Tag::DrumRow, i % 7 == 0 ? 0.0f : 1.0f);
        player.play(1777);
    }
    player.stop();
    player.playBeats(4);
    std::map<std::pair<int, int>, int> held;
    std::set<int> channels;
    for (const MidiOut& event : player.events()) {
        if ((event.status & 0xF0) == 0xE0)
            bend[event.status & 15] = event.data2;
        const std::pair<int, int> key{event.status & 15, event.data1};
        if (event.isNoteOn()) {
            EXPECT_EQ(++held[key], 1);
            channels.insert(key.first);
        } else if (event.isNoteOff()) {
            EXPECT_EQ(--held[key], 0);
        }
    }
    EXPECT_EQ(channels.size(), 5u);
    for (const auto& [key, count] : held)
        EXPECT_EQ(count, 0) << key.first << " " << key.second;
    for (const auto& [channel, value] : bend)
        EXPECT_EQ(value, 64) << channel;
}

TEST(Channels, AVoiceEndsWithTheLastNoteOfItsPitch)
{
    struct Voices final : KWSimpleMidiManagerBase {
        void noteEvent(unsigned note, unsigned velocity) override
        {
            heard.emplace_back(note, velocity);
        }
        void reset() override { }
        std::vector<std::pair<unsigned, unsigned>> heard;
    } voices;
    KWNoteSchedule schedule;
    OutgoingList outgoing;
    schedule.addNote(0, 60, 100, 64, 0);
    schedule.addNote(0, 60, 90, 128, 3);
    schedule.addNote(0, 61, 80, 32, 5, false);
    for (int tick = 0; tick < 8; ++tick)
        schedule.drain(outgoing, voices);
    EXPECT_TRUE(schedule.isEmpty());
    EXPECT_EQ(outgoing.count(), 6);
    EXPECT_THAT(
        voices.heard, ElementsAre(std::pair(60u, 100u), std::pair(60u, 90u), std::pair(60u, 0u)));
}

TEST(Channels, AControllerIsSentAgainOnItsNewChannel)
{
    SequencerPlayer player;
    Sequencer& engine = player.engine();
    engine.setParameter(Tag::ModTrackOn, 1);
    for (int i = 0; i < kTrackSteps; ++i)
        engine.tracks.mods[0].setValue(i, 0.5f);
    player.start();
    player.playBeats(0.5);
    player.forget();
    engine.setParameter(Tag::ModChannel, rawOfChannel(7));
    player.playBeats(0.5);
    ASSERT_THAT(player.events(), testing::SizeIs(1));
    EXPECT_EQ(player.events()[0].status, 0xB6);
    EXPECT_EQ(player.events()[0].data2, 63);
}

// The count of a lane at a place of the song is the place times its speed, wherever play began and
// however the host jumped.
TEST(LaneSpeed, EveryLaneIsInPhaseWithTheSong)
{
    for (int speed = 0; speed < kLaneSpeeds; ++speed) {
        const LaneSpeed row = kLaneSpeedTable[static_cast<size_t>(speed)];
        const double length = double(row.in) / row.steps; // of a lane's step, in steps
        std::vector<int64_t> first;
        for (const int block : {1000, 64, 33}) {
            SequencerPlayer player({.block = block});
            makeDrum(player.engine(), 0, {1});
            player.engine().setParameter(Tag::LaneSpeed + 4, rawOfSpeed(speed));
            std::vector<int64_t> found;
            int64_t began = 0;
            for (const double from : {0.0, 7.3, 2.125, 16.0}) {
                player.forget();
                player.start(from);
                const double steps = from * 4;
                player.playBeats(4);
                for (const MidiOut& on : player.noteOns()) {
                    const double place = steps + double(on.frame - began) / kStep;
                    const double line = std::round(place / length) * length;
                    // A strike at the very start may stand inside its step.
                    if (on.frame - began >= 2 * kTickSamples) {
                        EXPECT_GE(place, line - 0.001) << row.steps << "/" << row.in;
                        EXPECT_LE(place, line + 1.1 * kTickSamples / kStep) << from;
                    }
                    found.push_back(on.frame);
                }
                const auto count = static_cast<int>(player.noteOns().size());
                EXPECT_NEAR(count, 16 / length + 0.5, 1.51) << row.steps << "/" << row.in << from;
                began += int64_t(4 * 22050);
            }
            if (first.empty())
                first = found;
            EXPECT_EQ(found, first) << "block " << block;
        }
    }
}

TEST(LaneSpeed, EffectsOnTimeKeepTheCountRisingAndStoppedLanesStand)
{
    for (const int effect : {Tag::HalfSpeed, Tag::Slowdown, Tag::Swing}) {
        SequencerPlayer player;
        makeDrum(player.engine(), 0, {1});
        player.engine().setParameter(Tag::LaneSpeed + 4, rawOfSpeed(9)); // x 2
        player.engine().setParameter(effect, effect == Tag::Swing ? 0.5f : 1.0f);
        player.start();
        player.playBeats(8);
        const size_t count = player.noteOns().size();
        if (effect == Tag::Slowdown)
            EXPECT_LT(count, 60u);
        else
            EXPECT_NEAR(double(count), effect == Tag::HalfSpeed ? 32 : 64, 1) << effect;
        player.stop();
        player.playBeats(1);
        player.forget();
        player.playBeats(2);
        EXPECT_THAT(player.events(), IsEmpty());
    }
}

} // namespace ormund
