// Presets and maps as a player saves and loads them, on a desktop without a dialogue program, where
// the panel's own sheet asks.

#include "tests/editor/EditorRig.h"

#include "controls/KWOptionMenu.h"
#include "editor/FileSheet.h"
#include "platform/Messages.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace ormund {

namespace fs = std::filesystem;

namespace {

class Files : public testing::Test {
protected:
    Files() : programs(std::getenv("PATH")) { setenv("PATH", "/nowhere", 1); }
    ~Files() override { setenv("PATH", programs.c_str(), 1); }

    FileSheet* sheet() { return dynamic_cast<FileSheet*>(rig.editor.getFrame()->modalControl); }
    void type(const char* text)
    {
        for (; *text; ++text)
            rig.user->key({.character = char32_t(*text)});
    }
    void confirm()
    {
        rig.user->key({.key = CKey::Return});
        rig.idle();
    }
    KWOptionMenu& menuOf(int tag)
    {
        return static_cast<KWOptionMenu&>(*rig.editor.getControl(tag));
    }
    void choose(int tag, int row)
    {
        const ControlRow& control = *findControl(tag);
        rig.click({control.place.right - 6, EditorRig::middle(control).y});
        ASSERT_TRUE(menuOf(tag).isOpen());
        const CRect line = menuOf(tag).rowRect(row);
        rig.click({line.left + 10, line.top + 8});
    }
    EditorRig rig;
    std::string programs;
};

} // namespace

TEST_F(Files, APresetIsSavedUnderANameAndComesBackFromTheMenu)
{
    const struct {
        int menu;
        PresetKind kind;
    } kinds[] = {{466, PresetKind::Global}, {515, PresetKind::Synth}};
    for (const auto& each : kinds) {
        rig.show(*findControl(each.menu));
        rig.engine.setParameter(Tag::FilterCutoff, 0.77f);
        choose(each.menu, 0);
        ASSERT_TRUE(sheet()) << each.menu;
        for (int i = 0; i < 60; ++i)
            rig.user->key({.key = CKey::Backspace});
        type("Mine");
        confirm();
        EXPECT_FALSE(sheet());
        const std::string file = rig.engine.settings.presetSavePath(each.kind) + "/Mine."
            + presetKindRow(each.kind).extension;
        ASSERT_TRUE(fs::exists(file)) << file;
        EXPECT_EQ(rig.engine.presets.name(each.kind), "Mine");
        EXPECT_EQ(menuOf(each.menu).selectedText, "Mine");

        rig.engine.setParameter(Tag::FilterCutoff, 0.1f);
        choose(each.menu, 1);
        ASSERT_TRUE(sheet()) << each.menu;
        const CRect row = sheet()->rowRect(sheet()->findRow("User"));
        if (!row.isEmpty())
            rig.click({row.left + 10, row.top + 5});
        const CRect mine = sheet()->rowRect(
            sheet()->findRow("Mine." + std::string(presetKindRow(each.kind).extension)));
        ASSERT_FALSE(mine.isEmpty());
        rig.click({mine.left + 10, mine.top + 5});
        confirm();
        EXPECT_FLOAT_EQ(rig.engine.parameters.raw(Tag::FilterCutoff), 0.77f);
        rig.user->key({.character = U'z', .key = CKey::None, .modifiers = kControl});
        EXPECT_FLOAT_EQ(rig.engine.parameters.raw(Tag::FilterCutoff), 0.1f);
    }
}

TEST_F(Files, AProgramThatTheHostChoosesOrNamesShowsItsName)
{
    rig.idle();
    const std::string before = menuOf(466).selectedText;
    rig.engine.setProgram(2);
    rig.idle();
    EXPECT_EQ(menuOf(466).selectedText, rig.engine.presets.name(PresetKind::Global));
    EXPECT_NE(menuOf(466).selectedText, before);
    char evening[] = "Evening";
    rig.engine.setProgramName(evening);
    rig.idle();
    EXPECT_EQ(menuOf(466).selectedText, "Evening");
}

TEST_F(Files, AFileThatCannotBeLoadedGivesNoName)
{
    const fs::path folder = rig.engine.settings.presetSavePath(PresetKind::Global);
    fs::create_directories(folder);
    std::ofstream(folder / "broken.kwe") << "nothing of ours";
    KWOptionMenu& presets = menuOf(466);
    const std::string before = presets.selectedText;
    const ControlRow& control = *findControl(466);
    rig.click({control.place.right - 6, EditorRig::middle(control).y});
    const int user = presets.findEntry("User");
    rig.user->move({presets.rowRect(user).left + 10, presets.rowRect(user).top + 8});
    const KWOptionMenu* files = presets.getSubMenu(user);
    ASSERT_TRUE(files && files->isOpen());
    const CRect line = files->rowRect(files->findEntry("broken"));
    rig.click({line.left + 10, line.top + 8});
    std::string path;
    EXPECT_TRUE(presets.getPresetPath(path, "kwe"));
    EXPECT_EQ(path, (folder / "broken.kwe").string());
    EXPECT_EQ(presets.selectedText, before);
    rig.idle();
    EXPECT_EQ(currentMessage(), path + " cannot be read");
    rig.user->key({.key = CKey::Return});
    rig.idle(3);
    fs::remove(folder / "broken.kwe");
}

TEST_F(Files, AMapIsSavedAndLoaded)
{
    rig.engine.midiMap.addAssignment(7, Tag::FilterCutoff, 0);
    rig.click(EditorRig::middle(*findControl(375)));
    ASSERT_TRUE(sheet());
    confirm();
    rig.engine.midiMap.clearMap();
    rig.click(EditorRig::middle(*findControl(374)));
    ASSERT_TRUE(sheet());
    const CRect file = sheet()->rowRect(sheet()->findRow("map.kwm"));
    ASSERT_FALSE(file.isEmpty());
    rig.click({file.left + 10, file.top + 5});
    confirm();
    EXPECT_TRUE(rig.engine.midiMap.isAssigned(Tag::FilterCutoff));
}

TEST_F(Files, AMissingManualIsTold)
{
    rig.show(*findControl(521));
    rig.click(EditorRig::middle(*findControl(521)));
    rig.idle();
    EXPECT_TRUE(rig.editor.getFrame()->modalControl);
    rig.user->key({.key = CKey::Return});
    rig.idle(3);
    EXPECT_FALSE(rig.editor.getFrame()->modalControl);
}

TEST(Keyboard, AKeyOfThePanelGoesToTheEngine)
{
    EditorRig rig;
    const Place& keys = findControl(551)->place;
    rig.user->press({keys.left + 14 * 12 + 6, keys.bottom - 5}); // the first C of the third octave
    EXPECT_EQ(rig.engine.keyState.noteOn.peek(), 48);
    rig.user->release({keys.left + 14 * 12 + 6, keys.bottom - 5});
    EXPECT_EQ(rig.engine.keyState.noteOff.peek(), 48);
}

} // namespace ormund
