#include "data/library/StateDescription.h"
#include "data/state/ChunkFormat.h"
#include "tests/data/SongSupport.h"
#include "tests/support/Checked.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

namespace ormund {

using testing::HasSubstr;

TEST(StateDescription, TellsEveryWordOfAFileOnce)
{
    const auto song = std::make_unique<DetachedSong>();
    randomise(*song, 11);
    for (const PresetKind kind : {PresetKind::Global, PresetKind::Synth}) {
        const Words words = saved(*song, kind);
        // The ending may lie: a whole file shows by itself which it is.
        const StateDescription description(words, "kws");
        EXPECT_FALSE(description.isBroken());
        size_t next = 0;
        for (const WordNote& note : description.notes()) {
            ASSERT_EQ(note.word, next) << note.meaning;
            next += note.count;
        }
        EXPECT_EQ(next, words.size());
        const auto json = nlohmann::json::parse(description.json());
        EXPECT_EQ(json["kind"],
            kind == PresetKind::Global ? "global preset (kwe)" : "synth preset (kws)");
        // The later ones stand there only where they differ from their default.
        const auto old = std::ranges::count_if(json["parameters"],
            [](const auto& parameter) { return parameter["key"] < kFirstLaterKey; });
        EXPECT_EQ(old, kind == PresetKind::Global ? 117 : 23);
        EXPECT_THAT(description.text(), HasSubstr("name=Filter_Cutoff"));
    }
}

TEST(StateDescription, TellsADamagedFileAsFarAsItReads)
{
    const auto song = std::make_unique<DetachedSong>();
    randomise(*song, 12);
    const Words good = saved(*song);
    for (size_t count = 0; count < good.size(); count += kChecked ? 411 : 41) {
        const StateDescription description(
            {good.begin(), good.begin() + static_cast<long>(count)}, "kwe");
        ASSERT_TRUE(description.isBroken());
        ASSERT_LE(description.brokenWord(), count);
        ASSERT_FALSE(nlohmann::json::parse(description.json())["broken"]["reason"].empty());
    }
    Words bad = good;
    bad[10] = 0x7FFFFFFF;
    const StateDescription description(bad, "kwe");
    EXPECT_EQ(description.brokenWord(), 10u);
    EXPECT_THAT(description.text(), HasSubstr("a record is longer than the file"));
    EXPECT_THAT(description.text(), HasSubstr("tempo="));
}

} // namespace ormund
