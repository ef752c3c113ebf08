// Whatever numbers come in, by whichever door, the sound stays finite and bounded, and it never
// reckons with denormals, which cost a hundred times as much.

#include "data/parameters/Tags.h"
#include "data/state/ChunkFormat.h"
#include "tests/support/Player.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <thread>
#include <vector>
#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace ormund {

namespace {
// The voices end in a limiter, and the delay's clip gives no more than it.
constexpr float kLoudest = 1.001f;

constexpr float kBadValues[] = {std::numeric_limits<float>::quiet_NaN(),
    -std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
    -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::max(),
    std::numeric_limits<float>::lowest(), std::numeric_limits<float>::denorm_min(), -1e-40f, 1e-38f,
    -0.0f, 1.0000001f, 2147483648.0f, -1e10f};

// The parameters that choose a file: there is none here, and a dialogue would wait for somebody.
bool asksForFiles(int tag) { return tag >= 355 && tag <= 375; }

// The loudest sample since the last call; infinite when one was no number.
float loudestOf(Player& player)
{
    float peak = 0;
    for (const std::vector<float>* side : {&player.left(), &player.right()})
        for (const float sample : *side)
            peak = std::isfinite(sample) ? std::max(peak, std::abs(sample)) : HUGE_VALF;
    player.forgetAudio();
    return peak;
}

void makeItSound(KWUniClient& engine)
{
    engine.setParameter(Tag::SynthOn, 1);
    engine.setParameter(Tag::TriggerMode, 1);
    engine.setParameter(Tag::SynthLevel, 1);
    engine.setParameter(Tag::Mute, 0);
}
} // namespace

TEST(Numbers, NoParameterLetsABadValueThrough)
{
    Player player({.empty = false});
    KWUniClient& engine = player.engine();
    player.keepAudio(true);
    player.start();
    for (int tag = -2; tag < kTagCount + 20; ++tag) {
        if (asksForFiles(tag))
            continue;
        for (const float value : kBadValues) {
            engine.setParameter(tag, value);
            for (int step = 0; step < 32; step += 31) {
                engine.sequencer.remoteStep = step;
                engine.setParameter(tag, value);
            }
            const float kept = engine.parameters.raw(tag);
            EXPECT_TRUE(kept >= 0 && kept <= 1) << tag << " keeps " << kept;
        }
        if (tag % 8 == 0)
            makeItSound(engine);
        player.play(512);
    }
    EXPECT_LT(loudestOf(player), kLoudest);
    makeItSound(engine);
    player.play(44100);
    EXPECT_LT(loudestOf(player), kLoudest);
}

TEST(Numbers, NoStateLetsABadValueThrough)
{
    Player player({.block = 2048, .empty = false});
    KWUniClient& engine = player.engine();
    void* data = nullptr;
    const VstInt32 bytes = engine.getChunk(&data, false);
    std::vector<uint32_t> state(static_cast<size_t>(bytes) / 4);
    std::memcpy(state.data(), data, state.size() * 4);
    player.keepAudio(true);
    player.start();
    std::mt19937 random(5);
    int taken = 0;
    float peak = 0;
    for (int round = 0; round < 300; ++round) {
        std::vector<uint32_t> damaged = state;
        for (size_t word = 9; word < damaged.size(); ++word) {
            float value = 0;
            std::memcpy(&value, &damaged[word], 4);
            // What looks like a value is one: counts and keys look like denormals, marks like none.
            if (!(std::abs(value) > 1e-6f && std::abs(value) < 1000) || random() % 3 != 0)
                continue;
            const float& bad = kBadValues[random() % std::size(kBadValues)];
            std::memcpy(&damaged[word], &bad, 4);
        }
        taken += engine.setChunk(damaged.data(), bytes, false);
        makeItSound(engine);
        player.play(8192);
        peak = std::max(peak, loudestOf(player));
    }
    EXPECT_EQ(taken, 300);
    EXPECT_LT(peak, kLoudest);
    ASSERT_TRUE(engine.setChunk(state.data(), bytes, false));
    player.play(44100 * 4);
    peak = loudestOf(player);
    EXPECT_GT(peak, 0.01f); // and nothing of it stays
    EXPECT_LT(peak, kLoudest);
}

TEST(Numbers, NoTransportMakesItLeaveItsBounds)
{
    Player player({.empty = false});
    player.keepAudio(true);
    player.start();
    const double bad[] = {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL, 1e300,
        -1e300, 5e-324, -1, 0, 499.999999, 1e9};
    std::mt19937 random(6);
    const auto pick = [&] { return bad[random() % std::size(bad)]; };
    for (int round = 0; round < 3000; ++round) {
        player.setTempo(random() % 3 ? 120 : pick());
        player.start(random() % 3 ? round : pick());
        player.cycle(random() % 2 ? 0 : pick(), random() % 2 ? 4 : pick());
        player.play(512);
    }
    EXPECT_LT(loudestOf(player), kLoudest);
    player.setTempo(120);
    player.start();
    player.cycle(0, 1e6);
    player.forget();
    player.play(44100 * 4);
    EXPECT_LT(loudestOf(player), kLoudest);
    EXPECT_GT(player.noteOns().size(), 8u);
}

TEST(Numbers, ThreeThreadsOfAutomationLetNothingThrough)
{
    Player player({.block = 64, .empty = false});
    KWUniClient& engine = player.engine();
    std::atomic<bool> plays{true};
    std::vector<std::thread> automation;
    for (unsigned seed = 0; seed < 3; ++seed)
        automation.emplace_back([&, seed] {
            std::mt19937 random(seed);
            while (plays) {
                const int tag = static_cast<int>(random() % (seed ? 46 : kTagCount));
                if (asksForFiles(tag))
                    continue;
                const auto unit = static_cast<float>(random() % 1000) / 999.0f;
                engine.setParameter(
                    tag, random() % 2 ? unit : kBadValues[random() % std::size(kBadValues)]);
                EXPECT_TRUE(std::isfinite(engine.getParameter(tag)));
            }
        });
    player.keepAudio(true);
    player.start();
    for (int round = 0; round < 100; ++round) {
        makeItSound(engine);
        player.play(1024);
    }
    plays = false;
    for (std::thread& thread : automation)
        thread.join();
    EXPECT_LT(loudestOf(player), kLoudest);
}

TEST(Numbers, TheLoudestSettingsStayInBounds)
{
    Player player({.block = 2048, .empty = false});
    KWUniClient& engine = player.engine();
    player.keepAudio(true);
    player.start();
    std::mt19937 random(7);
    float peak = 0;
    for (int round = 0; round < 150; ++round) {
        for (int tag = KWSynth::kFirstTag; tag <= KWSynth::kLastTag; ++tag)
            engine.setParameter(tag, static_cast<float>(random() % 5) / 4);
        makeItSound(engine);
        engine.setParameter(Tag::SynthReso, random() % 2 ? 1 : 0.9f);
        engine.setParameter(Tag::SynthSustain, 1);
        for (int note = 0; note < 8; ++note)
            player.send(0x90, 24 + static_cast<int>(random() % 80), 127);
        player.play(22050);
        peak = std::max(peak, loudestOf(player));
    }
    RecordProperty("peak", std::to_string(peak));
    EXPECT_LT(peak, kLoudest);
    EXPECT_GT(peak, 0.9f);
}

#ifdef __SSE2__
TEST(Numbers, NoDenormalIsReckonedWithAfterTheLastNote)
{
    // The processor's own mark, which stays once an operation has met a denormal operand.
    constexpr unsigned kDenormalMet = 0x0002;
    ASSERT_EQ(_mm_getcsr() & 0x8040u, 0u) << "denormals are on, as in a host that does not care";
    std::mt19937 random(8);
    for (const float feedback : {0.0f, 0.3f, 1.0f})
        for (const float cutoff : {0.0f, 0.5f, 1.0f}) {
            Player player({.block = 256, .empty = false});
            KWUniClient& engine = player.engine();
            makeItSound(engine);
            engine.setParameter(Tag::DelayFeed, feedback);
            engine.setParameter(Tag::DelayMix, 1);
            // Short, so that the echoes reach the smallest numbers within the two minutes.
            engine.setParameter(Tag::DelayLeft, 0);
            engine.setParameter(Tag::DelayRight, 0.1f);
            engine.setParameter(Tag::FilterCutoff, cutoff);
            engine.setParameter(Tag::SynthRelease, 0.8f);
            player.start();
            player.play(44100 * 3);
            player.stop();
            player.send(0xB0, 123, 0);
            int blocks = 0;
            for (int second = 0; second < 120; ++second)
                for (int block = 0; block < 44100 / 256; ++block) {
                    _mm_setcsr(_mm_getcsr() & ~kDenormalMet);
                    player.play(256);
                    blocks += (_mm_getcsr() & kDenormalMet) != 0;
                }
            EXPECT_EQ(blocks, 0) << "feedback " << feedback << ", cutoff " << cutoff;
        }
}
#endif

} // namespace ormund
