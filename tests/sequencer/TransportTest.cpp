// Where the song stands for hosts that round, jump, loop, count in or have no tempo.

#include "data/parameters/Tags.h"
#include "engine/KWTransport.h"
#include "tests/support/SequencerPlayer.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>

namespace ormund {

using testing::ElementsAre;

namespace {
// Step k of all 32 has pitch k above the lowest.
void writeScale(SequencerPlayer& player)
{
    player.writePlainNotes();
    for (int i = 0; i < 32; ++i)
        player.engine().tracks.pitch.setValue(i, static_cast<float>(i % 16 - 8));
}

std::vector<int> stepsHeard(const SequencerPlayer& player)
{
    std::vector<int> steps;
    for (const MidiOut& on : player.noteOns())
        steps.push_back(on.data1 - 48 + 8);
    return steps;
}

std::string traceAt(int block, double tempo, float speed)
{
    SequencerPlayer player({.tempo = tempo, .block = block});
    writeScale(player);
    player.engine().setParameter(Tag::StepSpeed, speed);
    player.engine().setParameter(Tag::Swing, 0.4f);
    player.cycle(1.0 / 3, 3.1);
    player.start(0.1);
    player.playBeats(9);
    return player.trace();
}
} // namespace

TEST(Transport, ALocateIsTakenOverAtOnceAndADriftIsSteeredAway)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.start(0.2);
    player.play(512);
    player.forget();
    player.start(player.position() + 0.46); // two steps on
    player.play(1);
    EXPECT_DOUBLE_EQ(player.engine().info.songPosition, player.position());
    player.play(511);
    EXPECT_EQ(player.noteOns().size(), 1u) << "the step between is not played";
    player.forget();
    player.start(player.position() + 0.03);
    player.play(512);
    ASSERT_EQ(player.noteOns().size(), 1u) << "the step on the way is";
    EXPECT_GT(player.noteOns()[0].frame, 1024 + 300) << "where it lies";
    EXPECT_NEAR(player.engine().info.songPosition, player.position(), 1e-9);
}

TEST(Transport, AStartIsTakenOverWhereverItIs)
{
    for (const double place : {0.25, 0.45, 0.02}) {
        SequencerPlayer player;
        writeScale(player);
        player.start(place);
        player.play(512);
        EXPECT_THAT(stepsHeard(player), ElementsAre(static_cast<int>(place * 4))) << place;
    }
}

TEST(Transport, APlaceThatIsRoundedToASampleIsOnItsLine)
{
    for (const float rate : {44100.0f, 48000.0f}) {
        for (double tempo = 40.5; tempo < 300; tempo += 20.5) {
            const double beat = static_cast<double>(rate) * 60 / tempo;
            for (const double bar : {1, 7, 32, 33}) {
                SequencerPlayer player({.tempo = tempo, .rate = rate});
                writeScale(player);
                player.start(std::round(bar * 4 * beat) / beat);
                player.play(512);
                EXPECT_THAT(stepsHeard(player), ElementsAre(0)) << tempo << ", bar " << bar;
            }
        }
    }
    SequencerPlayer player({.tempo = 61});
    writeScale(player);
    player.start(3.999995);
    player.play(512);
    EXPECT_THAT(stepsHeard(player), ElementsAre(0));
}

TEST(Transport, TheMidiIsTheSameAtEveryBlockSize)
{
    for (const double tempo : {33.0, 61.7, 93.8, 120.0, 174.0, 611.0})
        for (const float speed : {0.45f, 0.75f, 0.85f}) {
            const std::string wanted = traceAt(512, tempo, speed);
            for (const int block : {32, 100, 441, 1024})
                EXPECT_EQ(traceAt(block, tempo, speed), wanted) << tempo << ", " << block;
        }
}

TEST(Transport, TheFirstStepOfACountInSoundsAtItsTick)
{
    for (const int block : {64, 441, 2048}) {
        SequencerPlayer player({.block = block});
        writeScale(player);
        player.start(-0.5);
        player.playBeats(0.4);
        EXPECT_EQ(player.engine().info.songPosition, 0);
        player.playBeats(0.2);
        ASSERT_EQ(player.noteOns().size(), 1u) << block;
        EXPECT_EQ(player.noteOns()[0].frame, 11040) << block; // 11025 samples, to the next tick
        EXPECT_THAT(stepsHeard(player), ElementsAre(0)) << block;
    }
}

TEST(Transport, AHostWithoutATempoIsFollowedByItsPlaces)
{
    KWSystemInfo info;
    KWTransport transport(info);
    constexpr double kPace = 170 / 60.0 / 44100;
    constexpr int kFrames = 256;
    BlockTransport block{.playing = true, .tempoValid = false};
    for (int i = 0; i < 100; ++i, block.position += kFrames * kPace) {
        transport.evaluate(&block, kFrames);
        EXPECT_NEAR(info.songPosition, block.position, i > 2 ? 1e-9 : 0.01) << i;
        transport.advance(kFrames);
    }
}

TEST(Transport, LoopsThatAreNoneAndPlacesOfAnySizeLeaveANumber)
{
    KWSystemInfo info;
    KWTransport transport(info);
    for (const double place : {0.0, -1e300, 1e300, -1e-9, 4.0})
        for (const double start : {-1e300, 0.0, 4.0, 5.0, HUGE_VAL})
            for (const double end : {1e300, 0.0, 4.0, 4.0 + 1e-9, 5.0, static_cast<double>(NAN)})
                for (const double tempo : {0.0, 120.0, 1e300}) {
                    const BlockTransport block{.position = place,
                        .tempo = tempo,
                        .playing = true,
                        .tempoValid = tempo > 0,
                        .loopOn = true,
                        .loopStart = start,
                        .loopEnd = end};
                    transport.evaluate(&block, 64);
                    transport.advance(32);
                    transport.advance(32);
                    EXPECT_TRUE(std::isfinite(info.songPosition));
                }
}

// Its block does not end where the loop does, and it reports the return a block too late.
TEST(Transport, ALoopsEndThatTheHostPassesIsNoJump)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.cycle(0, 2);
    constexpr double kBlock = 512 * 2 / 44100.0; // beats
    double place = 0;
    for (double played = 0; played < 8.1; played += kBlock) {
        player.start(place);
        player.play(512);
        place += kBlock - (place >= 2 ? 2 : 0);
    }
    EXPECT_EQ(player.noteOns().size(), 33u);
}

TEST(Transport, ACycleLosesAndDoublesNoStep)
{
    for (const int block : {64, 441, 1024, 4096})
        for (const double length : {2.0, 3.0}) {
            SequencerPlayer player({.block = block});
            writeScale(player);
            player.cycle(0, length);
            player.start(0);
            player.playBeats(8.1);
            const std::vector<int> steps = stepsHeard(player);
            ASSERT_EQ(steps.size(), 33u) << block;
            const int inLoop = static_cast<int>(length * 4);
            for (int i = 0; i < 33; ++i)
                EXPECT_EQ(steps[static_cast<size_t>(i)], i % inLoop) << block;
        }
}

} // namespace ormund
