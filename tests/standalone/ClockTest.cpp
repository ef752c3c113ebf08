// MIDI clock out and in: what is sent, and how soon and how well a clock is followed that comes
// early and late.
#include "apps/ormund/ClockFollower.h"
#include "apps/ormund/ClockSender.h"
#include "apps/ormund/SongSync.h"

#include <cmath>
#include <deque>
#include <gmock/gmock.h>
#include <random>
#include <vector>

namespace ormund {

using namespace midiclock;

namespace {

constexpr double kClockRate = 48000;
constexpr int kClockBlock = 256;
constexpr double kTick = 32; // frames; the engine's

double clockFrames(double tempo) { return kClockRate * 60 / tempo / kPerBeat; }

// Another machine's clock, and the song that follows it block by block.
class Clocked {
public:
    explicit Clocked(const SharedPlace& from = {})
    {
        follower.setSampleRate(kClockRate);
        follower.adopt(from);
    }
    void say(std::vector<uint8_t> bytes) { follower.hear(bytes.data(), bytes.size(), frame); }
    // Sends clocks for so long. Each comes late by up to `jitter` frames.
    void run(double seconds, double tempo, double jitter = 0)
    {
        const double until = frame + seconds * kClockRate;
        for (; frame < until; frame += kClockBlock) {
            for (; nextClock < frame + kClockBlock; nextClock += clockFrames(tempo)) {
                const double late = jitter * std::uniform_real_distribution<>(0, 1)(random);
                queue.push_back(nextClock + late);
            }
            for (; !queue.empty() && queue.front() < frame + kClockBlock; queue.pop_front()) {
                const uint8_t clock = kClock;
                follower.hear(&clock, 1, std::max(queue.front(), frame));
            }
            block();
        }
    }
    void silence(double seconds)
    {
        for (const double until = frame + seconds * kClockRate; frame < until; frame += kClockBlock)
            block();
        nextClock = frame;
    }
    ClockFollower follower;
    SharedPlace place; // of the last block
    double frame = 0;  // of the next block
    double nextClock = 100;
    double mostBack = 0; // beats that the song ran back
    int tempoChanges = 0;

private:
    void block()
    {
        const SharedPlace before = place;
        place = follower.follow(frame, kClockBlock);
        if (before.playing && place.playing)
            mostBack = std::max(mostBack, before.beat - place.beat);
        tempoChanges += place.tempo != before.tempo;
    }
    std::deque<double> queue;
    std::mt19937 random{1};
};

TEST(ClockFollower, IsLockedWithinTwoBeatsAndHoldsTempoAndPlaceForTenMinutes)
{
    constexpr double kTempo = 127.3;
    Clocked song;
    song.say({kStart});
    song.run(2 * 60 / kTempo, kTempo);
    EXPECT_EQ(song.follower.state(), ClockFollower::State::Locked);
    EXPECT_DOUBLE_EQ(song.place.tempo, kTempo);
    song.tempoChanges = 0;
    song.run(600, kTempo);
    const double expected = (song.frame - kClockBlock - 100) / clockFrames(kTempo) / kPerBeat;
    EXPECT_NEAR((song.place.beat - expected) * clockFrames(kTempo) * kPerBeat, 0, kTick);
    EXPECT_EQ(song.tempoChanges, 0);
    EXPECT_EQ(song.mostBack, 0);
}

// A millisecond is what a busy USB port has.
TEST(ClockFollower, ClocksThatComeLateShakeNeitherTempoNorPlace)
{
    constexpr double kJitter = kClockRate / 1000;
    Clocked song;
    song.say({kStart});
    song.run(8, 120, kJitter);
    EXPECT_EQ(song.place.tempo, 120);
    song.tempoChanges = 0;
    double worst = 0;
    for (int i = 0; i < 600; ++i) {
        song.run(0.1, 120, kJitter);
        const double expected =
            (song.frame - kClockBlock - 100 - kJitter / 2) / clockFrames(120) / kPerBeat;
        worst = std::max(worst, std::abs(song.place.beat - expected) * clockFrames(120) * kPerBeat);
    }
    EXPECT_LT(worst, kTick);
    EXPECT_LE(song.tempoChanges, 2);
    EXPECT_EQ(song.mostBack, 0);
}

TEST(ClockFollower, FollowsAnotherTempoStopContinueAndPlace)
{
    Clocked song;
    song.run(1, 120);
    EXPECT_FALSE(song.place.playing) << "clocks alone start nothing";
    song.say({kStart});
    song.run(2, 120);
    EXPECT_NEAR(song.place.beat, 4, 0.06);
    song.run(2, 150);
    EXPECT_EQ(song.place.tempo, 150);
    EXPECT_NEAR(song.place.beat, 9, 0.08);
    song.say({kStop});
    song.run(1, 150);
    EXPECT_FALSE(song.place.playing);
    const double stopped = song.place.beat;
    EXPECT_NEAR(stopped, 9, 0.08);
    song.say({kContinue});
    song.run(2, 150);
    EXPECT_NEAR(song.place.beat, stopped + 5, 0.05);
    song.say({kStop});
    song.say({kPosition, 32, 1}); // 160 sixteenths
    song.say({kContinue});
    song.run(1, 150);
    EXPECT_NEAR(song.place.beat, 42.5, 0.05);
    song.say({kStart});
    song.run(1, 150);
    EXPECT_NEAR(song.place.beat, 2.5, 0.05);
}

TEST(ClockFollower, ASongRunsOnWithoutItsClockAndKeepsItsPlaceWhenThatComesBack)
{
    Clocked song({true, 17.3, 132});
    EXPECT_EQ(song.follower.state(), ClockFollower::State::Silent);
    song.silence(1);
    EXPECT_NEAR(song.place.beat, 17.3 + 2.2, 0.02) << "no clock has come yet";
    song.run(3, 132);
    EXPECT_NEAR(song.place.beat, 17.3 + 4 * 2.2, 0.03);
    song.silence(1);
    EXPECT_EQ(song.follower.state(), ClockFollower::State::Lost);
    EXPECT_TRUE(song.place.playing);
    EXPECT_EQ(song.place.tempo, 132);
    song.run(2, 132);
    EXPECT_EQ(song.follower.state(), ClockFollower::State::Locked);
    EXPECT_NEAR(song.place.beat, 17.3 + 7 * 2.2, 0.05);
    EXPECT_EQ(song.mostBack, 0);
}

TEST(ClockFollower, NonsenseLeavesANumber)
{
    Clocked song;
    song.say({kStart});
    for (int i = 0; i < 500; ++i)
        song.say({kClock}); // all at one frame
    song.say({kPosition});
    song.say({0xFF, 0xF7});
    song.run(3, 9000);
    song.run(3, 3);
    EXPECT_TRUE(std::isfinite(song.place.beat));
    EXPECT_GE(song.place.beat, 0);
    EXPECT_GT(song.place.tempo, 0);
    song.nextClock = song.frame;
    song.say({kStart});
    song.run(4, 120);
    EXPECT_EQ(song.place.tempo, 120);
    EXPECT_NEAR(song.place.beat, 8, 0.06);
}

// What a receiver makes of it: each event with its frame, through several blocks.
struct Sent {
    ClockSender sender;
    std::vector<std::pair<int64_t, uint8_t>> events;
    std::vector<int> positions;
    int64_t frame = 0;
    void run(bool playing, double& beat, double seconds, double tempo = 120)
    {
        const double perFrame = tempo / 60 / kClockRate;
        for (const int64_t until = frame + std::llround(seconds * kClockRate); frame < until;
             frame += kClockBlock) {
            sender.run(playing, beat, perFrame, kClockBlock);
            for (const ClockSender::Event& each : sender.toSend()) {
                events.emplace_back(frame + each.frame, each.bytes[0]);
                if (each.bytes[0] == kPosition)
                    positions.push_back(each.bytes[1] | each.bytes[2] << 7);
            }
            if (playing)
                beat += perFrame * kClockBlock;
        }
    }
    std::vector<uint8_t> withoutClocks() const
    {
        std::vector<uint8_t> all;
        for (const auto& [when, status] : events)
            if (status != kClock)
                all.push_back(status);
        return all;
    }
};

TEST(ClockSender, SendsTwentyFourABeatToTheFrame)
{
    Sent sent;
    double beat = 0;
    sent.run(true, beat, 10);
    ASSERT_GT(sent.events.size(), 480u);
    EXPECT_EQ(sent.events[0], (std::pair<int64_t, uint8_t>{0, kStart}));
    for (size_t i = 1; i < sent.events.size(); ++i)
        ASSERT_EQ(sent.events[i].first, int64_t(i - 1) * 1000);
    // It goes on while the song stands.
    sent.events.clear();
    sent.run(false, beat, 1);
    EXPECT_EQ(sent.events[0].second, kStop);
    EXPECT_NEAR(double(sent.events.size()), 49, 1);
    for (size_t i = 2; i < sent.events.size(); ++i)
        ASSERT_EQ(sent.events[i].first - sent.events[i - 1].first, 1000);
}

TEST(ClockSender, SaysThePlaceOfAStartAndOfAJump)
{
    Sent sent;
    double beat = 10.1; // between two sixteenths
    sent.run(true, beat, 1);
    EXPECT_THAT(sent.withoutClocks(), testing::ElementsAre(kPosition, kContinue));
    EXPECT_THAT(sent.positions, testing::ElementsAre(41));
    for (const auto& [when, status] : sent.events)
        if (status == kContinue) {
            EXPECT_NEAR(double(when), 0.15 * kClockRate / 2, 1);
        }
    sent.events.clear();
    beat = 4.0 + 1e-3; // the return of a cycle, some frames late
    sent.run(true, beat, 1);
    EXPECT_THAT(sent.withoutClocks(), testing::ElementsAre(kStop, kPosition, kContinue));
    EXPECT_THAT(sent.positions, testing::ElementsAre(41, 16));
    EXPECT_EQ(sent.events[2].first, sent.events[0].first) << "joined at once";
}

TEST(ClockSender, IsUnderstoodByTheFollower)
{
    Sent sent;
    double beat = 23.7;
    sent.run(false, beat, 0.5, 97);
    sent.run(true, beat, 5, 97);
    Clocked song;
    size_t next = 0;
    for (int64_t frame = 0; frame < sent.frame; frame += kClockBlock) {
        size_t position = 0;
        for (; next < sent.events.size() && sent.events[next].first < frame + kClockBlock; ++next) {
            std::array<uint8_t, 3> bytes{sent.events[next].second, 0, 0};
            if (bytes[0] == kPosition) {
                bytes[1] = static_cast<uint8_t>(sent.positions[position] & 0x7F);
                bytes[2] = static_cast<uint8_t>(sent.positions[position++] >> 7);
            }
            song.follower.hear(bytes.data(), 3, double(sent.events[next].first));
        }
        song.place = song.follower.follow(double(frame), kClockBlock);
    }
    EXPECT_EQ(song.place.tempo, 97);
    EXPECT_NEAR(
        song.place.beat, beat - kClockBlock * 97 / 60 / kClockRate, kTick * 97 / 60 / kClockRate);
}

TEST(SongSync, ALeaderThatChangesWhileTheSongPlaysKeepsItsPlace)
{
    SongSync sync;
    sync.setSampleRate(kClockRate);
    SharedPlace song{true, 30, 120};
    const auto block = [&](const SharedPlace* jack) {
        if (const SharedPlace* led = sync.lead(song, jack, kClockBlock))
            song = *led;
        const double before = song.beat;
        song.beat += kClockBlock * song.tempo / 60 / kClockRate;
        return before;
    };
    sync.choose(Leader::Own);
    SharedPlace jack{false, 0, 120};
    double beat = block(&jack);
    const auto go = [&](Leader leader, int jackRollsAfter) {
        sync.choose(leader);
        for (int i = 0; i < 20; ++i) {
            if (i >= jackRollsAfter)
                jack = {true,
                    i == jackRollsAfter ? song.beat : jack.beat + kClockBlock / kClockRate * 2,
                    120};
            const double now = block(&jack);
            ASSERT_NEAR(now - beat, kClockBlock / kClockRate * 2, 1e-6)
                << int(leader) << " block " << i;
            beat = now;
        }
        EXPECT_EQ(sync.leads(), leader);
    };
    go(Leader::Jack, 5);
    go(Leader::MidiClock, 0);
    go(Leader::Own, 0);
    EXPECT_TRUE(sync.takeHandedBack());
    go(Leader::MidiClock, 0);
    EXPECT_EQ(sync.clockState(), ClockFollower::State::Silent);
}

} // namespace

} // namespace ormund
