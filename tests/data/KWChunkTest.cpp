#include "data/state/KWChunk.h"
#include "data/state/ChunkFormat.h"
#include "data/state/PackedChunk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace ormund {

TEST(KWChunk, WritesInTwoPassesAndReadsTheSameBack)
{
    KWChunk chunk;
    chunk.tempo = 97.5f;
    const auto write = [&chunk] {
        chunk.writeHeader(kProgramVersion);
        chunk.writeString("");
        chunk.writeString("abcd");
        chunk.writeString("abcde");
        chunk.writeBytes("12345678901", 11);
        chunk.writeFloat(-0.25f);
    };
    chunk.beginMeasure();
    write();
    EXPECT_EQ(chunk.cursor(), 5u + 1 + 2 + 3 + 2 + 1);
    chunk.beginFill();
    write();
    ASSERT_FALSE(chunk.isBroken());

    KWChunk reader;
    reader.assign(chunk.bytes(), chunk.byteCount());
    ASSERT_TRUE(reader.readHeader());
    EXPECT_EQ(reader.totalWords, 14);
    EXPECT_EQ(reader.tempo, 97.5f);
    EXPECT_EQ(reader.readString(), "");
    EXPECT_EQ(reader.readString(), "abcd");
    EXPECT_EQ(reader.readString(), "abcde");
    char bytes[11];
    reader.readBytes(bytes, sizeof bytes);
    EXPECT_EQ(std::string(bytes, 8), "12345678");
    EXPECT_EQ(reader.readFloat(), -0.25f);
    EXPECT_EQ(reader.remaining(), 0u);
    EXPECT_FALSE(reader.isBroken());
}

TEST(KWChunk, AReadPastTheEndGivesZerosAndRemembersTheFirstMissingWord)
{
    KWChunk chunk;
    chunk.assign(std::vector<uint32_t>{1, 2});
    EXPECT_EQ(chunk.readInt(), 1);
    EXPECT_EQ(chunk.readInt(), 2);
    EXPECT_FALSE(chunk.isBroken());
    EXPECT_EQ(chunk.readInt(), 0);
    EXPECT_EQ(chunk.readFloat(), 0.0f);
    EXPECT_TRUE(chunk.isBroken());
    EXPECT_EQ(chunk.brokenWord(), 2u);
}

TEST(KWChunk, AStringThatClaimsTooMuchIsEmptyAndBreaksTheChunk)
{
    for (const uint32_t length : {9u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        KWChunk chunk;
        chunk.assign(std::vector<uint32_t>{length, 0x41414141, 0x41414141});
        EXPECT_EQ(chunk.readString(), "");
        EXPECT_TRUE(chunk.isBroken()) << length;
        EXPECT_EQ(chunk.brokenWord(), 0u);
    }
}

TEST(KWChunk, ALimitStopsReadsAndPlacesTheCursorBehindTheRecord)
{
    KWChunk chunk;
    chunk.assign(std::vector<uint32_t>{1, 2, 3, 4, 5});
    {
        const ChunkLimit record(chunk, 3);
        EXPECT_EQ(chunk.readInt(), 1);
        EXPECT_EQ(chunk.remaining(), 2u);
    }
    EXPECT_FALSE(chunk.isBroken());
    EXPECT_EQ(chunk.readInt(), 4);
    {
        const ChunkLimit record(chunk, 2);
        EXPECT_TRUE(chunk.isBroken());
        EXPECT_EQ(chunk.readInt(), 5);
        EXPECT_EQ(chunk.readInt(), 0);
    }
    EXPECT_EQ(chunk.cursor(), 5u);
}

TEST(KWChunk, PackedItComesBackWordByWord)
{
    EXPECT_TRUE(PackedChunk().isEmpty());
    EXPECT_TRUE(PackedChunk(KWChunk()).isEmpty());
    EXPECT_TRUE(PackedChunk().unpacked().words().empty());

    std::vector<uint32_t> words(10000);
    for (size_t i = 0; i < words.size(); ++i)
        words[i] = static_cast<uint32_t>(i * i * (i / 5000));
    KWChunk chunk;
    chunk.assign(words);
    const PackedChunk packed(chunk);
    ASSERT_FALSE(packed.isEmpty());
    KWChunk again = packed.unpacked();
    EXPECT_TRUE(std::ranges::equal(again.words(), words));
    EXPECT_EQ(again.remaining(), words.size());
}

} // namespace ormund
