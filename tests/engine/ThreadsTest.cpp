// The audio thread beside everybody else. The thread sanitizer is the judge; without it the test
// still sees a crash, a hang or a sample that is no number.

#include "data/parameters/Tags.h"
#include "tests/support/Player.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <random>
#include <thread>
#include <vector>

namespace ormund {

TEST(Threads, PlayingBesideAutomationEditsAndTheScreen)
{
    Player player({.block = 64, .empty = false});
    KWUniClient& engine = player.engine();
    engine.setParameter(Tag::SongOn, 1);
    player.keepAudio(true);
    std::atomic<bool> plays{true};

    std::thread automation([&] {
        std::mt19937 random(1);
        while (plays) {
            const auto value = static_cast<float>(random() % 1000) / 999.0f;
            engine.setParameter(static_cast<int>(random() % 46), value);
        }
    });
    std::thread screen([&] {
        std::mt19937 random(2);
        float seen = 0;
        while (plays) {
            // A drag over a grid, buttons, a loop, clicks on the keyboard, and polling.
            engine.tracks.velocity.setNormalized(
                static_cast<float>(random() % 32), static_cast<float>(random() % 100) / 99.0f);
            const int button = Tag::PitchShiftBackward + static_cast<int>(random() % 40);
            engine.setParameter(button, 1);
            engine.setParameter(button, 0);
            engine.tracks.pitchLoop.setZone(
                static_cast<int>(random() % 16), {0, static_cast<int>(random() % 32)});
            if (engine.keyState.noteOn.isEmpty()) {
                engine.keyState.noteOnVelocity = 90;
                engine.keyState.noteOn.post(36 + static_cast<int>(random() % 50));
            }
            engine.keyState.noteOff.post(36 + static_cast<int>(random() % 50));
            engine.midiMap.addAssignment(static_cast<int>(random() % 128), Tag::FilterCutoff, 0);
            if (random() % 16 == 0)
                engine.midiMap.clearMap();
            seen += engine.screen.mainStep + engine.screen.pattern + engine.screen.modValue[0];
        }
        EXPECT_TRUE(std::isfinite(seen));
    });

    player.start();
    for (int i = 0; i < 40; ++i) {
        player.send(0xB0, i % 128, i * 3 % 128);
        player.play(4410);
    }
    plays = false;
    automation.join();
    screen.join();
    for (const float sample : player.left()) {
        ASSERT_TRUE(std::isfinite(sample));
        ASSERT_LE(std::abs(sample), 4.0f);
    }
}

TEST(Threads, ARateThatChangesWaitsForTheBlock)
{
    Player player({.block = 64, .empty = false});
    KWUniClient& engine = player.engine();
    engine.setParameter(Tag::SynthOn, 1);
    engine.setParameter(Tag::DelayMix, 1);
    std::atomic<bool> plays{true};
    std::thread host([&] {
        for (int i = 0; i < 60; ++i)
            engine.setSampleRate(i % 2 ? 192000.0f : 22050.0f);
        plays = false;
    });
    player.start();
    while (plays)
        player.play(64);
    host.join();
    player.keepAudio(true);
    player.play(4410);
    for (const float sample : player.left())
        ASSERT_TRUE(std::isfinite(sample));
}

TEST(Threads, TwoInstancesStartAndKeepSettingsAtOnce)
{
    const auto live = [] {
        for (int i = 0; i < 5; ++i) {
            Player player({.block = 256});
            KWUniClient& engine = player.engine();
            std::thread audio([&] { player.play(44100); });
            for (int k = 0; k < 4; ++k) {
                engine.library.setSetting(Settings::kKeepMidiMap, k % 2 == 0, true);
                engine.library.setRendersOffline(k % 2 == 0);
            }
            audio.join();
        }
    };
    std::thread other(live);
    live();
    other.join();
    EXPECT_FALSE(Settings().rendersOffline());
}

} // namespace ormund
