// What stands between clocks: the queue, the shared song, the smoothed start of a block, and the
// panel's play button.
#include "apps/ormund/BlockClock.h"
#include "apps/ormund/PlayLink.h"
#include "apps/ormund/SharedSong.h"
#include "apps/ormund/TransportStrip.h"
#include "base/Ring.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <thread>

namespace ormund {

namespace {

TEST(Ring, HandsEverythingOverInOrderAndRefusesWhenFull)
{
    struct Item {
        uint64_t number;
        uint64_t check;
    };
    constexpr uint64_t kItems = 200000;
    Ring<Item, 64> ring;
    std::thread writer([&] {
        for (uint64_t i = 0; i < kItems;)
            if (ring.push({i, ~i}))
                ++i;
            else
                std::this_thread::yield();
    });
    for (uint64_t expected = 0; expected < kItems;) {
        Item item;
        if (!ring.take(item)) {
            std::this_thread::yield();
            continue;
        }
        ASSERT_EQ(item.number, expected);
        ASSERT_EQ(item.check, ~expected);
        ++expected;
    }
    writer.join();
    EXPECT_EQ(ring.front(), nullptr);
    int pushed = 0;
    while (ring.push({1, 1}))
        ++pushed;
    EXPECT_EQ(pushed, 64);
}

constexpr double kRate = 48000;
constexpr int kBlock = 256;
constexpr double kBeat120 = 120.0 / 60 / kRate; // quarter notes a frame

TEST(SharedSong, CountsFramesAndATempoOnTheWayMovesNothing)
{
    SharedSong song(kRate);
    SharedSong::Report report{.rolling = true};
    double before = 0;
    for (int block = 0; block < 400; ++block, report.frame += kBlock) {
        const double tempo = block < 200 ? 120 : 180;
        const auto place = song.follow(report, tempo, kBlock);
        EXPECT_EQ(place.tempo, tempo);
        const double gone = block == 0 ? 0 : kBlock * kBeat120 * (block <= 200 ? 1 : 1.5);
        EXPECT_NEAR(place.beat - before, gone, 1e-9);
        before = place.beat;
    }
    // After a jump the frame counts at the tempo of now.
    report.frame = 10 * 48000;
    EXPECT_NEAR(song.follow(report, 180, kBlock).beat, 30, 1e-9);
    report.frame = 0;
    EXPECT_EQ(song.follow(report, 180, kBlock).beat, 0);
}

TEST(SharedSong, WhatIsToldForTheNextBlockIsWhereItThenStands)
{
    SharedSong song(kRate);
    SharedSong::Report report{.rolling = true};
    for (int block = 0; block < 100; ++block) {
        const double tempo = 100 + block;
        const double here = song.follow(report, tempo, kBlock).beat;
        report.frame += kBlock;
        const double next = song.beatAt(report.frame, tempo, kBlock);
        EXPECT_NEAR(next - here, kBlock * tempo / 60 / kRate, 1e-9);
        EXPECT_NEAR(song.follow(report, tempo, kBlock).beat, next, 1e-12);
    }
}

TEST(SharedSong, OthersBarsLeadAndTheirWholeTicksDoNotShake)
{
    constexpr double kTicks = 1920;
    SharedSong song(kRate);
    double before = 0;
    for (int block = 0; block < 3000; ++block) {
        const int64_t frame = int64_t{block} * kBlock;
        const double exact = 2 + static_cast<double>(frame) * kBeat120;
        const auto place = song.follow({.rolling = true,
                                           .frame = frame,
                                           .hasBars = true,
                                           .quarters = std::floor(exact * kTicks) / kTicks,
                                           .tempo = 120,
                                           .resolution = 1 / kTicks},
            90, kBlock);
        EXPECT_EQ(place.tempo, 120);
        if (block > 0) {
            ASSERT_NEAR(place.beat - before, kBlock * kBeat120, 1e-9) << block;
        }
        before = place.beat;
    }
    // A jump that the bars tell is followed at once.
    const auto place = song.follow({.rolling = true,
                                       .frame = 3000 * kBlock,
                                       .hasBars = true,
                                       .quarters = 8,
                                       .tempo = 120,
                                       .resolution = 1 / kTicks},
        90, kBlock);
    EXPECT_EQ(place.beat, 8);
    // Without them the song goes on from there, by the own tempo.
    EXPECT_NEAR(song.follow({.rolling = true, .frame = 3001 * kBlock}, 120, kBlock).beat,
        8 + kBlock * kBeat120, 1e-9);
}

TEST(FoldIntoCycle, RunsStraightToTheEndAndThenRound)
{
    EXPECT_EQ(foldIntoCycle(3.5, 0, 4), 3.5);
    EXPECT_EQ(foldIntoCycle(4, 0, 4), 0);
    EXPECT_NEAR(foldIntoCycle(21.25, 8, 12), 9.25, 1e-12);
    EXPECT_EQ(foldIntoCycle(2, 8, 12), 2);    // before the cycle
    EXPECT_EQ(foldIntoCycle(100, 4, 4), 100); // none
}

// The spread of the times between blocks, in milliseconds.
double spread(const std::vector<int64_t>& starts)
{
    double most = 0;
    for (size_t i = starts.size() / 2; i < starts.size(); ++i)
        most = std::max(most,
            std::abs(
                static_cast<double>(starts[i] - starts[i - 1]) / 1e6 - 1000.0 * kBlock / kRate));
    return most;
}

TEST(BlockClock, SmoothsCallbacksThatComeEarlyAndLate)
{
    BlockClock clock(kRate, kBlock);
    std::mt19937 random(7);
    std::uniform_int_distribution<int64_t> jitter(0, 2000000); // two milliseconds
    std::vector<int64_t> starts;
    double error = 0;
    for (int block = 0; block < 4000; ++block) {
        // The card's clock is a little slow.
        const auto exact = static_cast<int64_t>(block * 1e9 * kBlock / kRate * 1.0002);
        starts.push_back(clock.blockStart(exact + jitter(random)));
        if (block > 2000)
            error = std::max(error, std::abs(static_cast<double>(starts.back() - exact) - 1e6));
    }
    EXPECT_LT(spread(starts), 0.05) << "of 2 ms that came in";
    EXPECT_LT(error, 0.5e6);
    EXPECT_NEAR(clock.nanosPerFrame(), 1.0002 * 1e9 / kRate, 10);
    // After a gap it begins again.
    EXPECT_EQ(clock.blockStart(900000000000), 900000000000);
}

TEST(PlayLink, TheUsersChangeMovesTheTransportAndTheEnginesDoesNot)
{
    using Wish = PlayLink::Wish;
    PlayLink link;
    const auto look = [&link](bool panel, bool rolls, int idles, bool follows = true) {
        Wish last = Wish::Nothing;
        for (int i = 0; i < idles; ++i)
            if (const Wish wish = link.look({panel, follows, rolls}); wish != Wish::Nothing)
                last = wish;
        return last;
    };
    EXPECT_EQ(look(false, false, 20), Wish::Nothing);
    EXPECT_EQ(look(true, false, 1), Wish::Start);
    // The transport rolls a little later; nothing more is asked.
    EXPECT_EQ(look(true, false, 3), Wish::Nothing);
    EXPECT_EQ(look(true, true, 20), Wish::Nothing);
    EXPECT_EQ(look(false, true, 1), Wish::Stop);
    EXPECT_EQ(look(false, false, 20), Wish::Nothing);
    // Started elsewhere: the engine sets the button by itself, early or late.
    EXPECT_EQ(look(false, true, 3), Wish::Nothing);
    EXPECT_EQ(look(true, true, 20), Wish::Nothing);
    // Stopped and the button follows a moment later.
    EXPECT_EQ(look(true, false, 2), Wish::Nothing);
    EXPECT_EQ(look(false, false, 20), Wish::Nothing);
    // Pressed twice in a hurry: the second press is not lost.
    EXPECT_EQ(look(true, false, 1), Wish::Start);
    EXPECT_EQ(look(true, true, 2), Wish::Nothing);
    EXPECT_EQ(look(false, true, 3), Wish::Nothing);
    EXPECT_EQ(look(false, true, 8), Wish::Stop);
    EXPECT_EQ(look(false, false, 20), Wish::Nothing);
    // Keys that play move the button too, and nobody wants that.
    EXPECT_EQ(look(true, false, 20, false), Wish::Nothing);
}

TEST(TransportStrip, TellsThePlaceFromOne)
{
    EXPECT_EQ(placeText(0), "1.1.1");
    EXPECT_EQ(placeText(3.99), "1.4.4");
    EXPECT_EQ(placeText(4), "2.1.1");
    EXPECT_EQ(placeText(17.5), "5.2.3");
    EXPECT_EQ(placeText(-1), "1.1.1");
}

} // namespace

} // namespace ormund
