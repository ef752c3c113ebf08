#include "data/library/PresetAbout.h"

#include "data/library/ChunkFile.h"
#include "data/parameters/Tags.h"
#include "data/state/ChunkFormat.h"
#include "data/state/DetachedSong.h"
#include "data/state/StateReader.h"
#include "data/state/StateWriter.h"
#include "tests/platform/TestFolder.h"

#include <gtest/gtest.h>
#include <limits>

namespace ormund {

namespace {

const PresetAbout kFull{"Ann O. Ther", "dark slow", "A line, \xC3\xA4 la carte", 92.5f};

KWChunk chunkOf(DetachedSong& song, PresetKind kind = PresetKind::Global)
{
    KWChunk chunk;
    writeState(chunk, song.parts, kind);
    return chunk;
}

} // namespace

TEST(PresetAbout, GoesWithTheSongThroughAFileAndOnlyWhereItSaysSomething)
{
    DetachedSong song;
    const KWChunk plain = chunkOf(song);
    KeptRecords& kept = song.parts.kept[0];
    ASSERT_TRUE(kept.add(29999, {7}));
    ASSERT_TRUE(setAbout(kept, kFull));
    KWChunk chunk = chunkOf(song);
    DetachedSong other;
    ASSERT_EQ(StateReader(other.parts).load(chunk, {}), LoadResult::Done);
    EXPECT_EQ(aboutOf(other.parts.kept[0]), kFull);
    EXPECT_EQ(other.parts.kept[0].all().back().key, 29999) << "what another program wrote stays";
    ASSERT_TRUE(setAbout(other.parts.kept[0], {}));
    other.parts.kept[0].clear();
    EXPECT_EQ(chunkOf(other).byteCount(), plain.byteCount());
}

TEST(PresetAbout, IsReadFromAFileWithoutLoadingItWithASketchOfTheFirstPattern)
{
    const TestFolder folder;
    DetachedSong song;
    setAbout(song.parts.kept[0], kFull);
    for (int step = 0; step < 8; ++step) {
        song.tracks.pitch.setRowValue(0, step, static_cast<float>(step));
        song.tracks.velocity.setRowValue(0, step, step == 3 ? 0.0f : 0.5f);
    }
    ASSERT_TRUE(writeChunkFile(folder / "a.kwe", chunkOf(song)));
    const PresetSummary summary = summaryOfFile(folder / "a.kwe");
    EXPECT_TRUE(summary.isReadable);
    EXPECT_EQ(summary.about, kFull);
    EXPECT_EQ(summary.sketch.front(), 0);
    EXPECT_EQ(summary.sketch.back(), 1);
    EXPECT_LT(summary.sketch[3], 0);
    EXPECT_FALSE(summaryOfFile(folder / "none.kwe").isReadable);
}

TEST(PresetAbout, HostileRecordsCountAsMissing)
{
    KeptRecords kept;
    const auto big = static_cast<uint32_t>(std::numeric_limits<int32_t>::max());
    kept.add(kAuthorKey, {big, 0x41414141});
    kept.add(kTagsKey, {});
    kept.add(kDescriptionKey, {4, 0x1B0A0041}); // ends at its zero byte
    kept.add(kTempoKey, {0x7FC00001});
    EXPECT_EQ(aboutOf(kept), (PresetAbout{"", "", "A", 0}));
    ASSERT_TRUE(setAbout(kept, {std::string(99, 'x') + "\xC3\xA4", "", "two\nlines", 0}));
    EXPECT_EQ(aboutOf(kept).author, std::string(99, 'x')) << "cut between characters";
    EXPECT_EQ(aboutOf(kept).description, "two lines");

    // A state cut at every word is refused or read as far as it goes.
    DetachedSong song;
    setAbout(song.parts.kept[0], kFull);
    const KWChunk whole = chunkOf(song);
    for (size_t words = 0; words < whole.words().size(); words += 7) {
        KWChunk cut;
        cut.assign(whole.bytes(), words * sizeof(uint32_t));
        summaryOf(cut);
    }
}

} // namespace ormund
