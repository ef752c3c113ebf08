#include "data/library/PresetList.h"

#include "data/library/ChunkFile.h"
#include "data/state/DetachedSong.h"
#include "data/state/StateWriter.h"
#include "tests/platform/TestFolder.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <thread>

namespace ormund {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PresetListTest : public testing::Test {
protected:
    void save(const std::string& folder, const std::string& name, const PresetAbout& about)
    {
        DetachedSong song;
        setAbout(song.parts.kept[0], about);
        KWChunk chunk;
        writeState(chunk, song.parts, PresetKind::Global);
        std::filesystem::create_directories(root / folder);
        ASSERT_TRUE(writeChunkFile(root / (folder + "/" + name + ".kwe"), chunk));
    }
    void fill()
    {
        tree.scan({root.path()}, "kwe");
        list.fill(tree, root / "User");
    }
    void readAll()
    {
        for (int i = 0; i < 2000 && list.isReading(); ++i) {
            list.takeRead();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        ASSERT_FALSE(list.isReading());
    }
    std::vector<std::string> found(const PresetList::Query& query)
    {
        std::vector<std::string> names;
        for (const PresetList::Hit& hit : list.find(query))
            names.push_back((hit.byName ? "" : "~") + list.all()[hit.preset].name);
        return names;
    }
    const TestFolder root;
    PresetTree tree;
    PresetList list;
};

} // namespace

TEST_F(PresetListTest, WordsAndTagsFindNamesFirstAndThenWhatIsSaidOfAPreset)
{
    save("Techno", "Acid rain", {"Ann", "fast mono", "", 130});
    save("Dub", "Wet stone", {"Bo", "slow mono", "No acid at all", 70});
    save("User", "Plain", {});
    std::ofstream(root / "Techno/broken.kwe") << "nothing";
    fill();
    EXPECT_THAT(found({"ACID", {}}), ElementsAre("Acid rain")) << "names are there at once";
    readAll();
    EXPECT_THAT(found({"ACID", {}}), ElementsAre("Acid rain", "~Wet stone"));
    EXPECT_THAT(found({"acid bo", {}}), ElementsAre("~Wet stone"));
    EXPECT_THAT(found({"", {"mono"}}), ElementsAre("Wet stone", "Acid rain"));
    EXPECT_THAT(found({"", {"mono", "fast"}}), ElementsAre("Acid rain"));
    EXPECT_THAT(found({"", {"mon"}}), IsEmpty()) << "a tag is a whole word";
    EXPECT_THAT(list.commonTags(2), ElementsAre("mono", "fast"));
    for (const ListedPreset& preset : list.all()) {
        EXPECT_EQ(preset.isMine, preset.name == "Plain");
        EXPECT_EQ(preset.summary.isReadable, preset.name != "broken");
    }
}

TEST_F(PresetListTest, ARefillKeepsWhatWasReadUntilItIsReadAgain)
{
    save("Techno", "Acid rain", {"Ann", "fast", "", 130});
    fill();
    readAll();
    save("Techno", "Acid rain", {"Ann", "slow", "", 130});
    fill();
    EXPECT_EQ(found({"", {"fast"}}).size() + found({"", {"slow"}}).size(), 1u);
    readAll();
    EXPECT_THAT(found({"", {"slow"}}), ElementsAre("Acid rain"));
    fill(); // and goes while its worker reads
}

TEST(PresetMarks, LastFromOneSessionToTheNextWithTheNewestInFront)
{
    const TestFolder folder;
    const std::string file = folder / "below/Marks.txt";
    {
        PresetMarks marks(file, 2);
        for (const char* path : {"/a", "/b", "/a", "/c", "/two\nlines", ""})
            marks.bringToFront(path);
        EXPECT_THAT(marks.all(), ElementsAre("/c", "/a"));
        marks.toggle("/c");
    }
    PresetMarks marks(file, 2);
    EXPECT_THAT(marks.all(), ElementsAre("/a"));
    EXPECT_TRUE(marks.contains("/a"));
}

} // namespace ormund
