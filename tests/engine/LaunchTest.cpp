// When a chosen pattern begins, pads that wait for the step, and keys that play through.

#include "data/parameters/ChoiceLists.h"
#include "data/parameters/Tags.h"
#include "tests/support/Player.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ormund {

using testing::ElementsAre;

namespace {
constexpr double kStep = 5512.5; // frames: a 16th at 120 beats a minute

// Patterns 1 and 2 play other pitches, on every step; 2 has a loop of 12 steps.
std::unique_ptr<Player> twoPatterns(int block)
{
    auto player = std::make_unique<Player>(Player::Setup{.block = block});
    for (const int pattern : {1, 0}) {
        player->engine().tracks.selectRow(pattern);
        player->writePlainNotes();
        for (int i = 0; i < kTrackSteps; ++i)
            player->engine().tracks.pitch.setValue(i, static_cast<float>(pattern * 7));
        player->engine().tracks.pitchLoop.setZone(pattern, {0, 11});
    }
    return player;
}

// In 16ths, where the first note of another pitch stands.
double changeAt(const Player& player)
{
    const std::vector<MidiOut> ons = player.noteOns();
    for (const MidiOut& on : ons)
        if (on.data1 != ons.front().data1)
            return static_cast<double>(on.frame) / kStep;
    return -1;
}
} // namespace

TEST(Launch, AChosenPatternBeginsWhereItShould)
{
    struct {
        Launch launch;
        double from, expected; // 16ths
    } const rows[] = {
        {Launch::Now, 5.4, 6}, // the melody's next note
        {Launch::Step, 5.4, 6},
        {Launch::Beat, 5.4, 8},
        {Launch::Bar, 5.4, 16},
        {Launch::Loop, 5.4, 12},
        {Launch::Beat, 8.1, 12},
        {Launch::Bar, 16.2, 32},
        {Launch::Loop, 12.2, 24},
    };
    for (const auto& row : rows)
        for (const int block : {33, 512, 1000}) {
            const auto player = twoPatterns(block);
            KWUniClient& engine = player->engine();
            engine.setParameter(Tag::Launch,
                (static_cast<float>(row.launch) + 0.5f) / static_cast<float>(kLaunches));
            player->start();
            player->play(static_cast<int64_t>(row.from * kStep));
            player->send(0x90, 37, 100);
            player->play(static_cast<int64_t>((row.expected - row.from - 0.3) * kStep));
            const bool waits = row.launch != Launch::Now && row.expected - row.from > 0.5;
            EXPECT_EQ(engine.screen.waitingPattern, waits ? 1.0f : -1.0f);
            player->play(static_cast<int64_t>(4 * kStep));
            EXPECT_EQ(engine.screen.waitingPattern, -1.0f);
            EXPECT_NEAR(changeAt(*player), row.expected, 0.03)
                << int(row.launch) << " from " << row.from << " block " << block;
        }
}

TEST(Launch, WhoChangesHisMindBeforeTheBarHearsNothingOfIt)
{
    const auto player = twoPatterns(512);
    KWUniClient& engine = player->engine();
    engine.setParameter(Tag::Launch, 0.7f);
    player->start();
    player->playBeats(1);
    player->send(0x90, 37, 100);
    player->playBeats(0.5);
    player->send(0x80, 37, 0);
    player->playBeats(8);
    EXPECT_EQ(changeAt(*player), -1);
    player->stop();
    player->playBeats(0.1);
    player->send(0x90, 37, 100);
    player->playBeats(0.1);
    EXPECT_EQ(engine.screen.pattern, 1.0f) << "stopped, there is nothing to wait for";
}

TEST(Pads, ReleasedBetweenTwoStepsTheyPlayNoExtraStep)
{
    int extra[2] = {};
    for (const int onStep : {0, 1})
        for (const int pad : {Tag::HalfSpeed, Tag::StepPlay})
            for (int part = 1; part < 18; ++part) {
                Player player;
                player.writePlainNotes();
                player.engine().setParameter(Tag::PadsOnStep, static_cast<float>(onStep));
                player.start();
                player.play(static_cast<int64_t>(2.5 * kStep));
                player.engine().setParameter(pad, 1);
                player.play(static_cast<int64_t>((3 + part / 18.0) * kStep));
                player.engine().setParameter(pad, 0);
                player.play(static_cast<int64_t>(4 * kStep));
                for (const MidiOut& on : player.noteOns()) {
                    const double place = static_cast<double>(on.frame) / kStep;
                    extra[onStep] += std::abs(place - std::round(place)) > 0.03;
                }
            }
    EXPECT_GT(extra[0], 0);
    EXPECT_EQ(extra[1], 0);
}

TEST(PlayThrough, KeysOutsideTheZonesSoundUntilTheyAreReleased)
{
    Player player;
    KWUniClient& engine = player.engine();
    engine.setParameter(Tag::PlayThrough, 1);
    engine.setParameter(Tag::MelodyChannel, 4.5f / 16);
    player.send(0x90, 90, 77, 40);
    player.send(0x90, 24, 50, 40);
    player.play(44100);
    engine.setParameter(Tag::MelodyChannel, 0);
    engine.setParameter(Tag::PlayThrough, 0);
    engine.setParameter(Tag::InputOctave, 1);
    player.send(0x80, 90, 0);
    player.play(4410);
    EXPECT_EQ(player.soundingNotes(), 1);
    player.send(0xB0, 123, 0);
    player.play(4410);
    ASSERT_EQ(player.events().size(), 4u);
    EXPECT_EQ(player.events()[0].status, 0x94);
    EXPECT_EQ(player.events()[0].data1 + player.events()[1].data1, 90 + 24);
    EXPECT_EQ(player.events()[2].data1, 90);
    EXPECT_EQ(player.events()[2].status, 0x94) << "where it began";
    EXPECT_EQ(player.soundingNotes(), 0);
    player.forget();
    player.send(0x90, 90, 77);
    player.play(4410);
    EXPECT_TRUE(player.events().empty());
}

TEST(PlayThrough, ARecordingTakesThem)
{
    Player player;
    KWUniClient& engine = player.engine();
    engine.setParameter(Tag::PlayThrough, 1);
    engine.setParameter(Tag::RecordMode, 1); // step by step
    engine.setParameter(Tag::Record, 1);
    for (const int key : {86, 86, 98, 23}) {
        player.send(0x90, key, 100);
        player.play(4410);
        player.send(0x80, key, 0);
        player.play(4410);
    }
    std::vector<float> degrees;
    for (int i = 0; i < 4; ++i)
        degrees.push_back(engine.tracks.pitch.step(i));
    EXPECT_THAT(degrees, ElementsAre(2, 2, 2, -1));
}

} // namespace ormund
