// The whole window in memory, used and drawn on one thread while blocks run on another and a third
// moves the host's parameters. The thread sanitizer is the judge.

#include "controls/KWFrame.h"
#include "data/parameters/Tags.h"
#include "editor/KWUniClientEditor.h"
#include "panel/ControlCatalogue.h"
#include "tests/support/Checked.h"
#include "tests/support/Player.h"
#include "view/offscreen/FrameUser.h"
#include "view/offscreen/OffscreenWindow.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <random>
#include <thread>
#include <vector>

namespace ormund {

namespace {
constexpr int kFirstLine = 60; // the file menus lie above
}

TEST(Threads, TheWindowIsUsedWhileBlocksRun)
{
    Player player({.block = 256, .empty = false});
    KWUniClient& engine = player.engine();
    engine.setParameter(Tag::SongOn, 1);
    engine.setParameter(Tag::SynthOn, 1);
    KWUniClientEditor editor(engine);
    std::atomic<bool> plays{true};

    std::thread automation([&] {
        std::mt19937 random(1);
        while (plays) {
            engine.setParameter(static_cast<int>(random() % 46), static_cast<float>(random() % 2));
            std::this_thread::yield();
        }
    });
    std::thread screen([&] {
        std::mt19937 random(2);
        const auto place = [&] {
            return CPoint(static_cast<int>(random() % kPanelWidth),
                kFirstLine + static_cast<int>(random() % (kPanelHeight - kFirstLine)));
        };
        for (int opening = 0; opening < 2; ++opening) {
            EXPECT_TRUE(
                editor.openIn(std::make_unique<OffscreenWindow>(kPanelWidth, kPanelHeight)));
            FrameUser user(*editor.getFrame());
            for (int i = 0; i < rounds(150); ++i) {
                user.wait(2000);
                if (i % 2 == 0)
                    user.click(place());
                else
                    user.drag(place(), place());
                editor.idle();
            }
            editor.close();
        }
        plays = false;
    });
    player.keepAudio(true);
    player.start();
    while (plays) {
        player.send(0xB0, static_cast<int>(player.events().size() % 128), 64);
        player.play(2048);
        for (const float sample : player.left())
            ASSERT_TRUE(std::isfinite(sample));
        player.forgetAudio();
    }
    automation.join();
    screen.join();
}

} // namespace ormund
