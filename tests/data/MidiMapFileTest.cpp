#include "data/state/MidiMapFile.h"
#include "data/state/ChunkFormat.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>

namespace ormund {

namespace {

using Words = std::vector<uint32_t>;

Words fileOf(const MidiMap& map)
{
    KWChunk chunk;
    writeMidiMap(chunk, map);
    return {chunk.words().begin(), chunk.words().end()};
}

LoadResult load(MidiMap& map, Words words)
{
    KWChunk chunk;
    chunk.assign(std::move(words));
    return readMidiMap(chunk, map);
}

void fill(MidiMap& map, unsigned seed)
{
    std::mt19937 draw(seed);
    for (int i = 0; i < 100; ++i)
        map.addAssignment(static_cast<int>(draw() % 128), static_cast<int>(draw() % 586),
            static_cast<int>(draw() % 32));
}

} // namespace

TEST(MidiMapFile, ComesBackWordForWordAndLeavesPressureAlone)
{
    MidiMap map;
    fill(map, 1);
    MidiMap other;
    fill(other, 2);
    other.addAssignment(MidiMap::kPressure, 4, 0);
    ASSERT_EQ(load(other, fileOf(map)), LoadResult::Done);
    EXPECT_EQ(fileOf(other), fileOf(map));
    EXPECT_EQ(other.count(MidiMap::kPressure), 1);
}

TEST(MidiMapFile, OldRevisionsHaveNoStepsAndLaterOnesArePassedOver)
{
    MidiMap map;
    map.addAssignment(5, 4, 0);
    Words old = fileOf(MidiMap());
    old.insert(old.begin() + 8, {25, 30});
    old[0] = static_cast<uint32_t>(old.size());
    old[5] = 100;
    old[7] = 2;
    ASSERT_EQ(load(map, old), LoadResult::Done);
    EXPECT_EQ(map.at(0, 1), (CcAssignment{30, 0}));
    EXPECT_EQ(map.count(5), 0);

    const Words before = fileOf(map);
    for (const size_t place : {5u, 6u}) {
        Words other = fileOf(MidiMap());
        other[place] += 1;
        EXPECT_EQ(load(map, other), LoadResult::Done);
        EXPECT_EQ(fileOf(map), before);
    }
    Words newer = fileOf(MidiMap());
    newer[1] = kProgramVersion + 1;
    EXPECT_EQ(load(map, newer), LoadResult::NewerMap);
}

TEST(MidiMapFile, DamageLoadsOrChangesNothing)
{
    MidiMap source;
    fill(source, 3);
    const Words good = fileOf(source);
    MidiMap map;
    fill(map, 4);
    const Words before = fileOf(map);
    for (size_t count = 0; count < good.size(); ++count) {
        Words cut(good.begin(), good.begin() + static_cast<long>(count));
        if (count > 0)
            cut[0] = static_cast<uint32_t>(count);
        const LoadResult result = load(map, std::move(cut));
        ASSERT_NE(result, LoadResult::NewerMap);
        ASSERT_EQ(fileOf(map), before) << count;
    }
    for (size_t place = 0; place < good.size(); ++place)
        for (const uint32_t evil : {0x7FFFFFFFu, 0xFFFFFFFFu}) {
            Words bad = good;
            bad[place] = evil;
            MidiMap target;
            fill(target, 4);
            if (load(target, std::move(bad)) != LoadResult::Done) {
                ASSERT_EQ(fileOf(target), before) << place;
            }
        }
}

} // namespace ormund
