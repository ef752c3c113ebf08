// Damaged files that are let in: what they become can be saved and read again for ever.
#include "data/parameters/Tags.h"
#include "data/state/DetachedSong.h"
#include "data/state/KWChunk.h"
#include "data/state/MidiMapFile.h"
#include "data/state/StateReader.h"
#include "data/state/StateWriter.h"
#include "data/tracks/FactoryContent.h"
#include "tests/support/Checked.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

namespace ormund {

namespace {

enum class Kind { State, Global, Synth, Map };
constexpr Kind kKinds[] = {Kind::State, Kind::Global, Kind::Synth, Kind::Map};
using Words = std::vector<uint32_t>;

Words save(DetachedSong& song, Kind kind)
{
    KWChunk chunk;
    if (kind == Kind::Map)
        writeMidiMap(chunk, song.midiMap);
    else
        writeState(chunk, song.parts, kind == Kind::Synth ? PresetKind::Synth : PresetKind::Global);
    return {chunk.words().begin(), chunk.words().end()};
}

bool load(DetachedSong& song, Kind kind, const Words& words)
{
    KWChunk chunk;
    chunk.assign(words);
    if (kind == Kind::Map)
        return readMidiMap(chunk, song.midiMap) == LoadResult::Done;
    StateReader::Options options;
    options.kind = kind == Kind::Synth ? PresetKind::Synth : PresetKind::Global;
    options.force = kind == Kind::State;
    return StateReader(song.parts).load(chunk, options) == LoadResult::Done;
}

Words example(Kind kind)
{
    DetachedSong song;
    writeFactoryContent(song.tracks, song.patterns);
    for (int list = 0; list < MidiMap::kLists; list += 16)
        for (int tag = 1; tag < 5; ++tag)
            song.midiMap.addAssignment(list, 100 * tag + list, tag);
    song.position.names = {"A song", "A sound"};
    return save(song, kind);
}

void mutate(Words& words, std::mt19937& random)
{
    constexpr uint32_t kStrange[] = {0xFFFFFFFE, 0xFFFFFFFD, 0xFFFFFFFC, 0xFFFFFFFF, 65532, 65533,
        65534, 65535, 0x7FFFFFFF, 0x80000000, 0x7FC00000, 0x7F800000, 0, 1, 586, 63, 64, 1024};
    const auto draw = [&random](size_t below) { return random() % std::max<size_t>(below, 1); };
    for (size_t changes = 1 + draw(4); changes > 0; --changes) {
        // What follows the large tables is where lists end.
        const size_t place =
            draw(2) == 0 ? draw(words.size()) : words.size() - 1 - draw(words.size() / 8);
        switch (draw(3)) {
        case 0:
            words[place] = kStrange[draw(std::size(kStrange))];
            break;
        case 1:
            words[place] ^= 1u << draw(32);
            break;
        default:
            words[place] = words[draw(words.size())];
            break;
        }
    }
}

} // namespace

TEST(Mutants, WhatIsLetInIsStable)
{
    // The environment asks for more than is wanted at every test.
    const char* asked = std::getenv("ORMUND_MUTANTS");
    const int count = asked ? std::atoi(asked) : rounds(2000);
    DetachedSong first;
    DetachedSong second;
    int let = 0;
    for (const Kind kind : kKinds) {
        const Words whole = example(kind);
        std::mt19937 random(static_cast<unsigned>(kind) + 1);
        for (int i = 0; i < count / 4; ++i) {
            Words words = whole;
            mutate(words, random);
            if (!load(first, kind, words))
                continue;
            ++let;
            const Words saved = save(first, kind);
            ASSERT_TRUE(load(second, kind, saved)) << int(kind) << " mutant " << i;
            ASSERT_EQ(save(second, kind), saved) << int(kind) << " mutant " << i;
        }
    }
    EXPECT_GT(let, count / 10);
}

TEST(Mutants, AStepThatIsNoNumberStaysWithinTheRangeOfItsFile)
{
    constexpr float kMark = 0.7123f;
    DetachedSong song;
    song.tracks.velocity.setRange(0.25f, 1.0f, 0.5f);
    song.tracks.velocity.setRowValue(0, 3, kMark);
    Words words = save(song, Kind::Global);
    std::ranges::replace(words, std::bit_cast<uint32_t>(kMark), 0x7FC00000u);
    DetachedSong loaded;
    ASSERT_TRUE(load(loaded, Kind::Global, words));
    EXPECT_EQ(loaded.tracks.velocity.getRowAtIndex(0, 3), 0.25f);
}

TEST(Mutants, AnAssignmentThatWouldReadAsAnEndMarkIsNone)
{
    for (const int32_t tag : {65534, 65532, -2, -4, kTagCount})
        EXPECT_FALSE(assignmentOfWords(tag, 0)) << tag;
    EXPECT_EQ(assignmentOfWords(kTagCount - 1, 31), (CcAssignment{kTagCount - 1, 31}));
}

} // namespace ormund
