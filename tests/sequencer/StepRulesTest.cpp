// Steps that are left to chance or to their turn, and that play late, strummed or several times.

#include "data/tracks/StepRules.h"
#include "base/ParkMiller.h"
#include "data/parameters/Tags.h"
#include "tests/support/SequencerPlayer.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ormund {

using testing::ElementsAre;

namespace {
constexpr int kManySteps = 10000;
constexpr double kStepFrames = 60.0 / 480.0 / 8.0 * 44100.0;

// Eight steps a beat at 480 beats a minute, all of them sounding.
std::unique_ptr<SequencerPlayer> fastPlayer(int loopLength)
{
    auto player = std::make_unique<SequencerPlayer>(SequencerPlayer::Setup{.tempo = 480});
    player->writePlainNotes();
    player->engine().setParameter(Tag::StepSpeed, 1);
    player->engine().tracks.performanceLoop.setZone(0, {0, loopLength - 1});
    return player;
}

// Which of the steps since the start has a note.
std::vector<bool> playedSteps(SequencerPlayer& player, int steps)
{
    player.forget();
    player.start();
    player.play(static_cast<int64_t>(kStepFrames * (steps - 0.5)));
    std::vector<bool> played(static_cast<size_t>(steps));
    for (const MidiOut& on : player.noteOns())
        played[static_cast<size_t>(static_cast<double>(on.frame) / kStepFrames + 0.01)] = true;
    return played;
}

// Every line filled, and chords and arpeggios under it.
void leaveToChance(Tracks& tracks, int seed)
{
    ParkMiller random(seed);
    const auto below = [&](int count) {
        return static_cast<float>(
            static_cast<int>(random.nextMagnitude() * 0.9999f * static_cast<float>(count)));
    };
    for (int row = 0; row < kTrackRows; ++row)
        for (int i = 0; i < kTrackSteps; ++i) {
            tracks.velocityOn.setStepAt(row, i, 1);
            tracks.velocity.setRowValue(row, i, 0.8f);
            tracks.gateTime.setRowValue(row, i, random.nextMagnitude());
            tracks.chord.setStepAt(row, i, below(30));
            tracks.arpeggio.setStepAt(row, i, std::max(below(40) - 21, 0.0f));
            tracks.chance.setStepAt(row, i, below(60));
            tracks.condition.setStepAt(row, i, std::max(below(80) - 39, 0.0f));
            tracks.ratchet.setStepAt(row, i, below(kRatchets));
            tracks.late.setStepAt(row, i, below(kLateParts));
            tracks.strum.setStepAt(row, i, below(kStrums));
        }
}

std::vector<std::pair<int, int>> ticksAndNotes(const SequencerPlayer& player)
{
    std::vector<std::pair<int, int>> found;
    for (const MidiOut& on : player.noteOns())
        found.emplace_back(static_cast<int>(on.frame / kTickSamples), on.data1);
    return found;
}

// Step 0 alone sounds: a step long, at 5512.5 samples, which are 172.27 ticks.
std::unique_ptr<SequencerPlayer> oneNote()
{
    auto player = std::make_unique<SequencerPlayer>();
    player->writePlainNotes();
    player->engine().tracks.velocity.clear();
    player->engine().tracks.velocity.setValue(0, 0.8f);
    player->engine().tracks.gateTime.setValue(0, 1.0f);
    player->engine().setParameter(Tag::GateTimeMultiply, 1.1f / 14.0f); // a quarter
    return player;
}
} // namespace

TEST(StepRules, EveryTurnPlaysExactlyItsPasses)
{
    constexpr int kLoop = 11;
    for (int first = 1; first < 36; first += kLoop) {
        const auto player = fastPlayer(kLoop);
        for (int i = 0; i < kLoop; ++i)
            player->engine().tracks.condition.setStep(i, static_cast<float>(first + i));
        const std::vector<bool> played = playedSteps(*player, kManySteps);
        // Counted by hand: 1:2, 2:2, 1:3, 2:3 and so on, then first and not first.
        std::vector<std::pair<int, int>> turns;
        for (int of = 2; of <= 8; ++of)
            for (int turn = 0; turn < of; ++turn)
                turns.emplace_back(turn, of);
        for (int step = 0; step < kManySteps; ++step) {
            const auto value = static_cast<size_t>(first - 1 + step % kLoop);
            const int pass = step / kLoop;
            if (value >= turns.size())
                continue;
            const auto [turn, of] = turns[value];
            ASSERT_EQ(played[static_cast<size_t>(step)], pass % of == turn)
                << turn + 1 << ":" << of << " in pass " << pass;
        }
    }
}

TEST(StepRules, FirstFillAndTheStepBeforeDecideToo)
{
    const auto player = fastPlayer(8);
    Tracks& tracks = player->engine().tracks;
    const auto turns = {36, 37, 38, 39, 0, 40, 41, 0};
    int place = 0;
    for (const int value : turns)
        tracks.condition.setStep(place++, static_cast<float>(value));
    tracks.chance.setStep(4, 50);
    const std::vector<bool> played = playedSteps(*player, 8000);
    int chances = 0;
    for (size_t step = 0; step < played.size(); step += 8) {
        const bool isFirst = step == 0;
        ASSERT_EQ(played[step], isFirst) << step;
        ASSERT_EQ(played[step + 1], !isFirst) << step;
        ASSERT_FALSE(played[step + 2]) << step; // nobody fills
        ASSERT_TRUE(played[step + 3]) << step;
        chances += played[step + 4];
        ASSERT_EQ(played[step + 5], played[step + 4]) << step;
        ASSERT_EQ(played[step + 6], !played[step + 5]) << step;
        ASSERT_TRUE(played[step + 7]) << step;
    }
    EXPECT_NEAR(chances, 500, 3 * std::sqrt(1000 * 0.25));

    const auto filled = fastPlayer(8);
    filled->engine().tracks.condition.setStep(0, 38);
    filled->engine().tracks.condition.setStep(1, 39);
    filled->engine().setParameter(Tag::Fill, 1);
    EXPECT_THAT(playedSteps(*filled, 4), ElementsAre(true, false, true, true));
}

TEST(StepRules, ChanceIsWhatItSays)
{
    for (const int percent : {0, 1, 25, 50, 90, 99, 100}) {
        const auto player = fastPlayer(7);
        for (int i = 0; i < kTrackSteps; ++i)
            player->engine().tracks.chance.setStep(i, static_cast<float>(100 - percent));
        player->engine().setParameter(Tag::ChanceSeed, 0.3f);
        const std::vector<bool> played = playedSteps(*player, kManySteps);
        const double p = percent / 100.0;
        EXPECT_NEAR(static_cast<double>(std::ranges::count(played, true)), kManySteps * p,
            3 * std::sqrt(kManySteps * p * (1 - p)))
            << percent;
    }
}

TEST(StepRules, ASeedAlwaysPlaysTheSameAndAnotherDoesNot)
{
    const auto play = [](float seed) {
        const auto player = fastPlayer(16);
        for (int i = 0; i < kTrackSteps; ++i)
            player->engine().tracks.chance.setStep(i, 50);
        player->engine().setParameter(Tag::ChanceSeed, seed);
        return playedSteps(*player, 200);
    };
    EXPECT_EQ(play(0.25f), play(0.25f));
    EXPECT_NE(play(0.25f), play(0.26f));
}

// A loop of the host's that is as long as the pattern brings the second pass too.
TEST(StepRules, PassesGoOnThroughTheHostsLoop)
{
    SequencerPlayer player;
    player.writePlainNotes();
    player.engine().tracks.performanceLoop.setZone(0, {0, 15});
    for (int i = 1; i < 16; ++i)
        player.engine().tracks.velocityOn.setStep(i, 0);
    player.engine().tracks.velocityLoop.setZone(0, {0, 15});
    player.engine().tracks.condition.setStep(0, static_cast<float>(turnCondition(2, 3)));
    player.cycle(0, 4);
    player.start(0);
    player.playBeats(35.9);
    std::vector<int> bars;
    for (const MidiOut& on : player.noteOns())
        bars.push_back(static_cast<int>(std::lround(static_cast<double>(on.frame) / 88200.0)));
    EXPECT_THAT(bars, ElementsAre(1, 4, 7));
}

TEST(StepRules, LateStepsAndRatchetsStartInTheirTick)
{
    const auto late = oneNote();
    late->engine().tracks.late.setStep(0, 8);
    late->start();
    late->playBeats(1);
    EXPECT_THAT(ticksAndNotes(*late), ElementsAre(std::pair(86, 48)));

    const auto ratchet = oneNote();
    ratchet->engine().tracks.ratchet.setStep(0, 1 + 2 * 3 + 1); // four, rising
    ratchet->start();
    ratchet->playBeats(1);
    EXPECT_THAT(ticksAndNotes(*ratchet),
        ElementsAre(std::pair(0, 48), std::pair(43, 48), std::pair(86, 48), std::pair(129, 48)));
    std::vector<int> velocities;
    for (const MidiOut& on : ratchet->noteOns())
        velocities.push_back(on.data2);
    EXPECT_THAT(velocities, ElementsAre(40, 61, 81, 101));
    EXPECT_EQ(ratchet->soundingNotes(), 0);
}

TEST(StepRules, AStrumGoesUpDownOrByTurns)
{
    const auto strummed = [](int way) {
        const auto player = oneNote();
        player->engine().tracks.chord.setStep(0, 4);   // 0 4 7 10
        player->engine().tracks.ratchet.setStep(0, 1); // twice
        player->engine().tracks.strum.setStep(
            0, static_cast<float>(10 + way)); // an eighth of a step
        player->start();
        player->playBeats(1);
        std::vector<int> notes;
        for (const auto& [tick, note] : ticksAndNotes(*player))
            notes.push_back(note - 48);
        return std::pair(notes, ticksAndNotes(*player));
    };
    const auto [up, times] = strummed(0);
    EXPECT_THAT(up, ElementsAre(0, 4, 7, 10, 0, 4, 7, 10));
    std::vector<int> ticks;
    for (const auto& [tick, note] : times)
        ticks.push_back(tick);
    EXPECT_THAT(ticks, ElementsAre(0, 22, 43, 65, 86, 108, 129, 151));
    EXPECT_THAT(strummed(1).first, ElementsAre(10, 7, 4, 0, 10, 7, 4, 0));
    EXPECT_THAT(strummed(2).first, ElementsAre(0, 4, 7, 10, 10, 7, 4, 0));
}

TEST(StepRules, StoppingDropsWhatHasNotStartedAndEndsTheRest)
{
    SequencerPlayer player;
    leaveToChance(player.engine().tracks, 77);
    player.start();
    for (int i = 0; i < 40; ++i) {
        player.play(7000 + 333 * i);
        player.stop();
        player.play(512);
        player.forget();
        player.playBeats(8);
        EXPECT_TRUE(player.noteOns().empty()) << i;
        player.start(i * 1.37);
    }
}

TEST(StepRules, SameMidiForEveryBlockSizeAcrossLoopsAndLocates)
{
    const auto trace = [](int block) {
        SequencerPlayer player({.tempo = 131, .block = block});
        leaveToChance(player.engine().tracks, 4711);
        player.engine().setParameter(Tag::ChanceSeed, 0.7f);
        player.cycle(8, 12);
        player.start(7);
        player.play(4096 * 90);
        player.start(9.3);
        player.play(4096 * 60);
        player.engine().setParameter(Tag::Fill, 1);
        player.play(4096 * 60);
        player.stop();
        player.play(4096 * 20);
        EXPECT_EQ(player.soundingNotes(), 0) << block;
        return player.trace();
    };
    const std::string expected = trace(512);
    EXPECT_GT(expected.size(), 2000u);
    for (const int block : {1, 7, 32, 100, 333, 1024, 4096})
        EXPECT_TRUE(trace(block) == expected) << "blocks of " << block;
}

} // namespace ormund
