// What one sees of a playing pattern.
#include "tests/editor/EditorRig.h"

#include <gtest/gtest.h>

namespace ormund {

namespace {

constexpr int kFirstCell = 172;
constexpr int kStep = 18;

int brightness(uint32_t pixel)
{
    return int(pixel >> 16 & 255) + int(pixel >> 8 & 255) + int(pixel & 255);
}

// How much brighter a step's cell is at this height than it is while nothing plays, on average.
class Columns : public testing::Test {
protected:
    static constexpr int kHeights[] = {70, 180, 290, 400, 510}; // of the five lanes

    std::vector<int> row(int y, int step)
    {
        std::vector<int> pixels;
        for (int x = 0; x < kStep - 1; ++x)
            pixels.push_back(brightness(rig.window->pixel(kFirstCell + kStep * step + x, y)));
        return pixels;
    }
    int gain(int y, int step)
    {
        const auto now = row(y, step);
        rig.engine.screen.playing = 0.0f;
        rig.idle();
        const auto stopped = row(y, step);
        rig.engine.screen.playing = 1.0f;
        rig.idle();
        int sum = 0;
        for (size_t x = 0; x < now.size(); ++x)
            sum += now[x] - stopped[x];
        return sum / int(now.size());
    }
    EditorRig rig;
};

TEST_F(Columns, EachLaneHasItsOwnAndEmptyCellsToo)
{
    rig.engine.setParameter(Tag::LoopbarMode, 1.0f);
    for (const int tag : {397, 430, 431, 89}) // all cells empty
        if (KWTableXY* table = rig.engine.tracks.tableAt(tag))
            for (int step = 0; step < table->size(); ++step)
                table->setNormalized(float(step), 0.0f);
    ScreenValues& values = rig.engine.screen;
    rig.idle();
    std::vector<uint32_t> before;
    const auto picture = [&] {
        std::vector<uint32_t> pixels;
        for (int y = 0; y < kPanelHeight; ++y)
            for (int x = 0; x < kPanelWidth; ++x)
                pixels.push_back(rig.window->pixel(x, y));
        return pixels;
    };
    before = picture();
    values.playing = 1.0f;
    values.mainStep = 3.0f;
    values.velocityStep = 7.0f;
    values.gateStep = 11.0f;
    values.performanceStep = 15.0f;
    values.modStep[0] = 19.0f;
    rig.idle();
    const int steps[] = {3, 7, 11, 15, 19};
    for (size_t lane = 0; lane < 5; ++lane) {
        EXPECT_GT(gain(kHeights[lane], steps[lane]), 80) << "lane " << lane;
        EXPECT_LT(std::abs(gain(kHeights[lane], steps[lane] + 2)), 3) << "lane " << lane;
    }
    // It jumps and leaves nothing behind.
    values.mainStep = 4.0f;
    rig.idle();
    EXPECT_GT(gain(kHeights[0], 4), 80);
    EXPECT_LT(std::abs(gain(kHeights[0], 3)), 12);
    values.playing = 0.0f;
    rig.idle();
    EXPECT_EQ(picture(), before) << "stopped, nothing of it is left";
}

} // namespace

} // namespace ormund
