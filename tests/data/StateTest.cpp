#include "data/state/ChunkFormat.h"
#include "tests/data/SongSupport.h"
#include "tests/support/Checked.h"

#include <algorithm>
#include <bit>
#include <gtest/gtest.h>
#include <memory>

namespace ormund {

namespace {

uint32_t word(int32_t value) { return static_cast<uint32_t>(value); }
uint32_t word(float value) { return std::bit_cast<uint32_t>(value); }

// A file by hand, of any age.
struct HandMade {
    Words words{0, word(kProgramVersion), word(120.0f), word(44100.0f), word(kChunkMagic),
        word(kHeaderWords), word(kChunkKind)};

    explicit HandMade(int32_t revision)
    {
        add(revision);
        if (revision > 1)
            add(kFormatMagic);
    }
    template <typename... T>
    HandMade& add(T... values)
    {
        (words.push_back(word(values)), ...);
        return *this;
    }
    HandMade& plain(int32_t key, float value) { return add(key, 1, value); }
    const Words& done()
    {
        words[0] = static_cast<uint32_t>(words.size());
        return words;
    }
};

int keyOf(int tag) { return parameterEntry(tag)->fileKey; }

} // namespace

TEST(State, AThousandRandomSongsComeBackByteForByte)
{
    for (unsigned seed = 0; seed < unsigned{rounds(1000)}; ++seed) {
        DetachedSong song;
        randomise(song, seed);
        const Words first = saved(song);
        DetachedSong other;
        randomise(other, seed + 5000);
        other.patterns.currentPattern = song.patterns.currentPattern.load();
        other.info.setTempo(song.info.tempo);
        // The lines' selected rows are written too, and no load moves them.
        other.tracks.selectRow(song.patterns.currentPattern);
        ASSERT_EQ(load(other, first), LoadResult::Done);
        ASSERT_EQ(saved(other), first) << "seed " << seed;
    }
}

TEST(State, ASynthPresetMovesTheSynthAndNothingElse)
{
    DetachedSong song;
    randomise(song, 1);
    DetachedSong other;
    randomise(other, 2);
    const Words before = saved(other);
    ASSERT_EQ(load(other, saved(song, PresetKind::Synth), PresetKind::Synth), LoadResult::Done);
    for (const ParameterEntry* entry : presetParameters())
        if (entry->hasValue()) {
            const bool synth = entry->saved == Saved::PresetAndSynth;
            DetachedSong untouched;
            randomise(untouched, 2);
            EXPECT_EQ(other.parameters.raw(entry->tag),
                (synth ? song : untouched).parameters.raw(entry->tag))
                << entry->name;
        }
    EXPECT_EQ(other.position.names[1], song.position.names[1]);
    // With the synth's values put back, not a byte differs.
    DetachedSong again;
    randomise(again, 2);
    other.position.names = again.position.names;
    ASSERT_EQ(load(other, saved(again, PresetKind::Synth), PresetKind::Synth), LoadResult::Done);
    EXPECT_EQ(saved(other), before);
}

TEST(State, WhatAFileLacksStandsAtItsDefaultAfterwards)
{
    DetachedSong song;
    randomise(song, 3);
    HandMade file(kFormatRevision);
    file.plain(keyOf(Tag::SynthLevel), 0.25f)
        .add(kEndOfRecords, kEndOfMap, 0, kTailRevision, 3, 1, 0, kEndOfPressure, 0, 0, 0);
    ASSERT_EQ(load(song, file.done()), LoadResult::Done);
    DetachedSong fresh;
    resetSong(fresh.tracks, fresh.patterns);
    fresh.setParameter(Tag::SynthLevel, 0.25f);
    fresh.position = song.position;
    fresh.patterns.currentPattern = song.patterns.currentPattern.load();
    fresh.tracks.selectRow(song.tracks.selectedRow());
    fresh.info.setTempo(song.info.tempo);
    EXPECT_EQ(saved(song), saved(fresh));
    EXPECT_EQ(song.position.program, 3);
}

TEST(State, EveryOldLayoutStillLoads)
{
    DetachedSong song;
    // Revision 1: no second magic word; the tag alone on a controller; no numbers in the tail.
    HandMade first(1);
    first.plain(keyOf(Tag::Swing), 0.5f)
        .add(kEndOfRecords, 74, 0x00190019, kEndOfController, kEndOfMap, 1, 3, 0x636261, 9);
    ASSERT_EQ(load(song, first.done()), LoadResult::Done);
    EXPECT_EQ(song.parameters.raw(Tag::Swing), 0.5f);
    EXPECT_EQ(song.midiMap.at(74, 0), (CcAssignment{0x19, 0}));
    EXPECT_EQ(song.position.names[0], "abc");

    // Tail 12: a program and a folder that meant something else; 14: pressure and no patterns.
    song.position.program = 5;
    HandMade twelve(3);
    twelve.add(kEndOfRecords, 74, 25, 3, kEndOfController, kEndOfMap, 0, 12, 77, 78);
    ASSERT_EQ(load(song, twelve.done()), LoadResult::Done);
    EXPECT_EQ(song.position.program, 5);
    EXPECT_EQ(song.midiMap.at(74, 0), (CcAssignment{25, 3}));
    HandMade fourteen(4);
    fourteen.add(kEndOfRecords, kEndOfMap, 0, 14, 77, 78, 1, 430, 7, kEndOfPressure);
    ASSERT_EQ(load(song, fourteen.done()), LoadResult::Done);
    EXPECT_EQ(song.position.program, 77);
    EXPECT_EQ(song.position.folder, 78);
    EXPECT_EQ(song.midiMap.at(MidiMap::kPressure, 0), (CcAssignment{430, 7}));
    EXPECT_FALSE(song.midiMap.isAssigned(25));

    // A tail from the future is read as far as it is known.
    HandMade future(9);
    future.add(kEndOfRecords, kEndOfMap, 0, 99, 1, 2, 0, kEndOfPressure, 0, 0, 0, 5, 5, 5);
    EXPECT_EQ(load(song, future.done()), LoadResult::Done);
}

TEST(State, OldTablesFillTheSelectedRowOrAreDropped)
{
    DetachedSong song;
    song.tracks.selectRow(5);
    const int key = keyOf(Tag::Velocity);
    const auto tail = [](HandMade& file) -> const Words& {
        return file.add(kEndOfRecords, kEndOfMap, 0, 9).done();
    };
    // Range, count, values as parts of the range.
    HandMade bare(4);
    bare.add(key, 6, 0.0f, 1.0f, 0.0f, 2, 0.25f, 2.0f);
    ASSERT_EQ(load(song, tail(bare)), LoadResult::Done);
    EXPECT_EQ(song.tracks.velocity.getRowAtIndex(5, 0), 0.25f);
    EXPECT_EQ(song.tracks.velocity.getRowAtIndex(5, 1), 1.0f);
    EXPECT_EQ(song.tracks.velocity.getRowAtIndex(0, 0), 0.0f);
    // With magic and revision: values as they are.
    HandMade marked(4);
    marked.add(keyOf(Tag::Pitch), 7, 0.5f, 12.0f, -12.0f, kOldTableMagic, 1, 1, -7.0f);
    ASSERT_EQ(load(song, tail(marked)), LoadResult::Done);
    EXPECT_EQ(song.tracks.pitch.getRowAtIndex(5, 0), -7.0f);
    // The oldest: nothing of it can be used, and what follows is found.
    HandMade oldest(4);
    oldest.add(key, 8, kOldestTable, 1.0f, 0.0f, kOldTableMagic, 2, 2, 0.7f, 0.7f)
        .plain(keyOf(Tag::Swing), 0.75f);
    ASSERT_EQ(load(song, tail(oldest)), LoadResult::Done);
    EXPECT_EQ(song.tracks.velocity.getRowAtIndex(5, 0), 0.0f);
    EXPECT_EQ(song.parameters.raw(Tag::Swing), 0.75f);
    // Rows of parts of the range, without a label; fewer rows than the track has.
    HandMade rows(4);
    rows.add(
        key, 13, kTableMagic, 1000, 0.0f, 1.0f, 0.0f, 3, 2, 0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f);
    ASSERT_EQ(load(song, tail(rows)), LoadResult::Done);
    EXPECT_EQ(song.tracks.velocity.rowCount(), 2);
    EXPECT_EQ(song.tracks.velocity.getRowAtIndex(1, 2), 0.6f);
    // The next file brings the shape back.
    HandMade empty(4);
    ASSERT_EQ(load(song, tail(empty)), LoadResult::Done);
    EXPECT_EQ(song.tracks.velocity.rowCount(), kTrackRows);
}

TEST(State, ASizeWordRulesWhereTheNextRecordBegins)
{
    DetachedSong song;
    HandMade file(kFormatRevision);
    file.add(999, 3, 1, 2, 3)                                       // a key of a later program
        .add(keyOf(Tag::SynthPan), 2, 0.125f, -1)                   // more than is known of it
        .add(999, 0)                                                // nothing at all
        .add(keyOf(Tag::IgnoreProgramChange), 1, 0.0f)              // no part of a preset
        .plain(keyOf(Tag::Swing), std::bit_cast<float>(0x7FC00000)) // no number
        .plain(keyOf(Tag::SynthLevel), 0.5f)
        .add(kEndOfRecords, kEndOfMap, 0, 9);
    ASSERT_EQ(load(song, file.done()), LoadResult::Done);
    EXPECT_EQ(song.parameters.raw(Tag::SynthPan), 0.125f);
    EXPECT_EQ(song.parameters.raw(Tag::SynthLevel), 0.5f);
    EXPECT_EQ(song.parameters.raw(Tag::Swing), 0.0f);
    EXPECT_EQ(song.parameters.raw(Tag::IgnoreProgramChange), 1.0f);
}

TEST(State, WhatALaterProgramWroteIsSavedAgainAsItStands)
{
    const auto places = [](const Words& file, const Words& sequence) {
        return std::search(file.begin(), file.end(), sequence.begin(), sequence.end())
            - file.begin();
    };
    DetachedSong plain;
    const Words without = saved(plain);
    HandMade file(kFormatRevision);
    file.add(29999, 3, 7, -1, 0x7FC00001)
        .plain(keyOf(Tag::SynthPan), 0.125f)
        .add(999, 1, 5)                    // an unknown key of old: dropped, as ever
        .add(keyOf(Tag::LockAssign), 1, 0) // known, and no part of a preset
        .add(kFirstLaterKey + 30000, 0)
        .add(29999, 1, 8)
        .add(kEndOfRecords, kEndOfMap, 0, 9);
    ASSERT_EQ(load(plain, file.done()), LoadResult::Done);
    const Words first = saved(plain);
    const Words kept = {29999, 3, 7, word(-1), 0x7FC00001, word(kFirstLaterKey + 30000), 0, 29999,
        1, 8, word(kEndOfRecords)};
    EXPECT_EQ(first.size(), without.size() + kept.size() - 1);
    EXPECT_LT(static_cast<size_t>(places(first, kept)), first.size());
    DetachedSong other;
    ASSERT_EQ(load(other, first), LoadResult::Done);
    EXPECT_EQ(saved(other), first);

    // A synth preset keeps its own and leaves the song's; both go with the next song.
    HandMade synth(kFormatRevision);
    synth.add(29999, 1, 9).add(kEndOfRecords, 0, kTailRevision, 0, 0, 0);
    ASSERT_EQ(load(other, synth.done(), PresetKind::Synth), LoadResult::Done);
    const Words own = {29999, 1, 9, word(kEndOfRecords)};
    const Words sound = saved(other, PresetKind::Synth);
    EXPECT_LT(static_cast<size_t>(places(sound, own)), sound.size());
    const Words song = saved(other);
    EXPECT_LT(static_cast<size_t>(places(song, kept)), song.size());
    ASSERT_EQ(load(other, without), LoadResult::Done);
    EXPECT_EQ(saved(other), without);
    EXPECT_EQ(saved(other, PresetKind::Synth).size(), sound.size() - 3);
}

TEST(State, UnknownRecordsOfAnySizeAreKeptOrRefused)
{
    DetachedSong song;
    randomise(song, 8);
    const Words before = saved(song);
    for (const int32_t size : {1, 1000, 0x7FFFFFFF, -1}) {
        HandMade file(kFormatRevision);
        file.add(30000, size); // and nothing behind it
        EXPECT_EQ(load(song, file.done()), LoadResult::NoFormat) << size;
    }
    HandMade many(kFormatRevision);
    for (size_t words = 0; words <= KeptRecords::kMostWords; words += 2)
        many.add(30000, 0);
    many.add(kEndOfRecords, kEndOfMap, 0, 9);
    EXPECT_EQ(load(song, many.done()), LoadResult::NoFormat);
    EXPECT_EQ(saved(song), before);
}

TEST(State, LaterKeysAreWrittenOnlyWhereTheyDiffer)
{
    DetachedSong song;
    const size_t plain = saved(song).size();
    song.parameters.store(Tag::ChanceSeed, 0.25f); // without a step of chance nobody reads it
    EXPECT_EQ(saved(song).size(), plain);
    for (const int tag :
        {Tag::StepChance, Tag::StepCondition, Tag::StepRatchet, Tag::StepLate, Tag::StepStrum}) {
        StepLine& line = *song.tracks.lineAt(tag);
        const size_t before = saved(song).size();
        line.setStepAt(15, 31, 3);
        EXPECT_GT(saved(song).size(), before + 16 * 32) << tag;
    }
    DetachedSong other;
    ASSERT_EQ(load(other, saved(song)), LoadResult::Done);
    EXPECT_EQ(saved(other), saved(song));
    EXPECT_EQ(other.parameters.raw(Tag::ChanceSeed), 0.25f);
    EXPECT_EQ(other.tracks.strum.stepAt(15, 31), 3.0f);
    // A song without them takes them all back.
    DetachedSong empty;
    ASSERT_EQ(load(other, saved(empty)), LoadResult::Done);
    EXPECT_EQ(saved(other).size(), plain);
}

TEST(State, TheUsersMapStandsWhileItIsKeptUnlessAHostLoads)
{
    DetachedSong source;
    source.midiMap.addAssignment(1, 4, 0);
    source.midiMap.addAssignment(MidiMap::kPressure, 6, 0);
    const Words file = saved(source);
    DetachedSong song;
    song.midiMap.addAssignment(2, 8, 0);
    song.keepMap = 1;
    ASSERT_EQ(load(song, file, PresetKind::Global, false), LoadResult::Done);
    EXPECT_TRUE(song.midiMap.isAssigned(8, 0));
    EXPECT_FALSE(song.midiMap.isAssigned(4));
    EXPECT_FALSE(song.midiMap.isAssigned(6));
    ASSERT_EQ(load(song, file, PresetKind::Global, true), LoadResult::Done);
    EXPECT_FALSE(song.midiMap.isAssigned(8));
    EXPECT_TRUE(song.midiMap.isAssigned(4, 0));
    EXPECT_TRUE(song.midiMap.isAssigned(6, 0));
}

TEST(State, EachRefusalHasItsReasonAndChangesNothing)
{
    DetachedSong song;
    randomise(song, 4);
    const Words good = saved(song);
    struct Case {
        size_t place;
        int32_t value;
        LoadResult result;
    };
    for (const Case& bad : {Case{4, 0x018E48D8, LoadResult::NoFormat},
             Case{0, static_cast<int32_t>(good.size()) + 1, LoadResult::NoFormat},
             Case{0, -1, LoadResult::NoFormat}, Case{0, 8, LoadResult::NoFormat},
             Case{6, 2, LoadResult::WrongVersion}, Case{7, 0, LoadResult::NoFormat},
             Case{8, 0x50E6, LoadResult::WrongFile}, Case{10, -2, LoadResult::NoFormat}}) {
        Words file = good;
        file[bad.place] = word(bad.value);
        EXPECT_EQ(load(song, file), bad.result) << bad.place << " " << bad.value;
        EXPECT_EQ(saved(song), good);
    }
    EXPECT_EQ(loadMessage(LoadResult::NoFormat), "\t This is no valid Ormund format!");
    EXPECT_EQ(
        loadMessage(LoadResult::NewerVersion), "preset was written with a newer version of Ormund");
    EXPECT_EQ(loadMessage(LoadResult::MapNotSaved, "/a/%s"), "saving cc map to /a/%s failed");
}

// Every length and many single words: either it loads, or nothing has changed.
TEST(State, DamageAnywhereLoadsOrChangesNothing)
{
    DetachedSong song;
    randomise(song, 5);
    const Words good = saved(song);
    const auto target = std::make_unique<DetachedSong>();
    randomise(*target, 6);
    const Words before = saved(*target);
    KWChunk chunk;
    for (size_t bytes = 0; bytes < 4 * good.size(); bytes += kChecked ? 37 : 1) {
        chunk.assign(good.data(), bytes);
        ASSERT_NE(StateReader(target->parts).load(chunk, {}), LoadResult::Done) << bytes;
    }
    EXPECT_EQ(saved(*target), before);
    // With the word count made to fit, the readers themselves meet the end.
    size_t loaded = 0;
    for (size_t count = 10; count < good.size(); count += 7) {
        Words cut(good.begin(), good.begin() + static_cast<long>(count));
        cut[0] = static_cast<uint32_t>(count);
        chunk.assign(std::move(cut));
        StateReader reader(target->parts);
        loaded += reader.check(chunk, {}) == LoadResult::Done;
    }
    EXPECT_EQ(loaded, 0u);

    std::mt19937 draw(7);
    constexpr uint32_t kEvil[] = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0xFFFFFFFD, 0x7FC00000};
    size_t refused = 0;
    for (size_t place = 5; place < good.size(); place += place < 200 ? 1 : 1 + draw() % 12) {
        Words bad = good;
        bad[place] = kEvil[draw() % std::size(kEvil)];
        chunk.assign(std::move(bad));
        StateReader reader(target->parts);
        if (reader.load(chunk, {}) == LoadResult::Done)
            continue;
        ++refused;
        ASSERT_LE(chunk.brokenWord(), good.size());
    }
    EXPECT_GT(refused, 20u);
    // Whatever was let in, the song is still one that saves and loads.
    const Words after = saved(*target);
    EXPECT_EQ(load(*target, after), LoadResult::Done);
}

} // namespace ormund
