#include "data/library/Settings.h"
#include "data/library/PresetTree.h"
#include "platform/KWFileio.h"
#include "tests/platform/TestFolder.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <stdlib.h>

namespace ormund {

using testing::ElementsAre;

namespace {

class Home : public testing::Test {
protected:
    TestFolder folder;
    UserPlaces places{folder / "config/settings.db", folder / "content", folder / "installed"};
    void touch(const std::string& name)
    {
        KWFileio::makeFolder(KWFileio::folderOf(folder / name));
        std::ofstream(folder / name) << "x";
    }
};

} // namespace

TEST_F(Home, AFirstRunWritesItsPathsAndLinksTheShippedContent)
{
    touch("installed/Global Presets/Factory/Bass/a.kwe");
    const std::string factory = folder / "content/Global Presets/Factory";
    Settings settings(places);
    settings.startUp();
    std::string text;
    int32_t number = 0;
    const SettingStore& store = settings.store();
    EXPECT_TRUE(store.readInt("firstuse", number));
    EXPECT_EQ(number, 1);
    EXPECT_TRUE(store.readInt("ignorePrgChange", number));
    EXPECT_EQ(number, 1);
    EXPECT_TRUE(store.readInt("CC Map Recall isolate", number));
    EXPECT_EQ(number, 0);
    for (const char* key : {"presetpath0", "Global Presets"}) {
        EXPECT_TRUE(store.readString(key, text)) << key;
        EXPECT_EQ(text, factory);
    }
    for (const char* key : {"presetsavepath1", "Synth Presetssave"}) {
        EXPECT_TRUE(store.readString(key, text)) << key;
        EXPECT_EQ(text, folder / "content/Synth Presets/User");
    }
    EXPECT_TRUE(store.readString("installpath", text));
    EXPECT_EQ(text, places.installed);
    EXPECT_TRUE(KWFileio::isFolder(folder / "content/Global Presets/User"));
    EXPECT_TRUE(KWFileio::exists(factory + "/Bass/a.kwe"));

    // What the user has changed stays, and a link that leads nowhere is made again.
    settings.setPresetPath(PresetKind::Global, "/elsewhere");
    std::filesystem::remove(factory);
    std::filesystem::create_symlink(folder / "gone", factory);
    settings.startUp();
    EXPECT_EQ(settings.presetPath(PresetKind::Global), "/elsewhere");
    EXPECT_TRUE(KWFileio::exists(factory + "/Bass/a.kwe"));
}

TEST_F(Home, TheOlderNameOfTheFirstPathIsTakenOver)
{
    Settings settings(places);
    settings.store().writeInt("firstuse", 1);
    settings.store().writeString("presetpath", "/old/place");
    settings.startUp();
    EXPECT_TRUE(settings.hasPresetPath(PresetKind::Global));
    EXPECT_EQ(settings.presetPath(PresetKind::Global), "/old/place");
}

TEST_F(Home, WithoutAnyPlaceEverythingBehavesAsMissing)
{
    Settings settings(UserPlaces{});
    settings.startUp();
    EXPECT_TRUE(settings.option(Settings::kIgnoreProgramChange));
    EXPECT_FALSE(settings.option(Settings::kKeepMidiMap));
    EXPECT_FALSE(settings.hasPresetPath(PresetKind::Global));
    EXPECT_EQ(settings.presetPath(PresetKind::Global), "");
    settings.setOption(Settings::kKeepMidiMap, true);
    EXPECT_FALSE(settings.option(Settings::kKeepMidiMap));
}

TEST_F(Home, PlacesFollowTheEnvironmentAndRelativeOnesDoNotCount)
{
    const std::string config = ::getenv("XDG_CONFIG_HOME");
    const std::string data = ::getenv("XDG_DATA_HOME");
    const std::string home = ::getenv("HOME");
    EXPECT_EQ(UserPlaces::find().store, config + "/Kelda Works/Ormund/settings.db");
    ::setenv("XDG_CONFIG_HOME", "relative", 1);
    ::unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(UserPlaces::find().store, home + "/.config/Kelda Works/Ormund/settings.db");
    EXPECT_EQ(UserPlaces::find().content, home + "/.local/share/Kelda Works/Ormund");
    ::unsetenv("HOME");
    UserPlaces::find(); // whatever it is, it is no crash
    ::setenv("HOME", home.c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", config.c_str(), 1);
    ::setenv("XDG_DATA_HOME", data.c_str(), 1);
}

TEST_F(Home, ATreeListsFoldersInOrderAndOnlyThoseWithPresets)
{
    for (const char* name :
        {"F/b.kwe", "F/a.kwe", "F/Zoo/z.kwe", "F/Ape/y.kwe", "F/Ape/y.kws", "F/Empty/readme",
            "F/Ape/.hidden.kwe", "F/Ape/Deep \xC3\xBC/x.kwe", "U/u.kwe", "F/.kwe"})
        touch(name);
    std::filesystem::create_directory(folder / "F/folder.kwe");
    std::filesystem::create_symlink(folder / "F", folder / "F/Zoo/back");
    PresetTree tree;
    tree.scan({folder / "F", folder / "U", folder / "F", folder / "missing"}, "kwe");
    std::vector<std::string> all;
    for (int f = 0; f < tree.folderCount(); ++f)
        for (int i = 0; i < tree.fileCount(f); ++i)
            if (tree.folderPath(f).find("back") == std::string::npos)
                all.push_back(tree.folderName(f) + "/" + tree.fileAt(f, i)->name);
    EXPECT_THAT(all, ElementsAre("F/a", "F/b", "Ape/y", "Deep \xC3\xBC/x", "Zoo/z", "U/u"));
    EXPECT_EQ(tree.fileAt(0, 2), nullptr);
    EXPECT_EQ(tree.fileAt(-1, 0), nullptr);
    EXPECT_EQ(tree.fileAt(1 << 30, -1), nullptr);
    int place = 9;
    int index = 9;
    EXPECT_FALSE(tree.find("/nowhere", place, index));
    EXPECT_TRUE(tree.find(folder / "F/Ape/y.kwe", place, index));
    EXPECT_EQ(place, tree.folderNamed("Ape"));
    EXPECT_EQ(index, 0);
}

TEST_F(Home, ATreeOfLinksIsScannedInBoundedWork)
{
    // Followed four levels down, sixty links back up would be thirteen million folders.
    touch("F/a.kwe");
    for (int i = 0; i < 60; ++i)
        std::filesystem::create_directory_symlink(
            folder / "F", folder / ("F/back " + std::to_string(i)));
    PresetTree tree;
    tree.scan({folder / "F"}, "kwe");
    EXPECT_GT(tree.folderCount(), 100);
    EXPECT_LE(tree.folderCount(), PresetTree::kMostFolders);
}

} // namespace ormund
