#include "editor/Browser.h"
#include "tests/editor/EditorRig.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <stdexcept>
#include <thread>

namespace ormund {

namespace {

// The factory bank in the editor's browser, and a user with keys and mouse.
class BrowserTest : public testing::Test {
protected:
    Browser& browser()
    {
        auto* found = dynamic_cast<Browser*>(rig.editor.getFrame()->modalControl);
        if (!found)
            throw std::runtime_error("the browser is not open");
        return *found;
    }
    bool isOpen() { return rig.editor.getFrame()->modalControl != nullptr; }
    void open()
    {
        rig.user->key({.character = U'/'});
        for (int i = 0; i < 2000 && browser().isReading(); ++i) {
            rest(1);
            rig.idle();
        }
        rig.idle();
    }
    void type(const char* text)
    {
        for (; *text; ++text)
            rig.user->key({.character = static_cast<char32_t>(*text)});
        rig.idle();
    }
    void key(CKey code)
    {
        rig.user->key({.key = code});
        rig.idle();
    }
    static void rest(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }
    void listen()
    {
        rest(130);
        rig.idle();
    }
    void click(const CRect& place)
    {
        ASSERT_FALSE(place.isEmpty());
        rig.click({place.left + 8, place.top + 6});
    }
    // Without the seed of chance, which a song that leaves nothing to chance does not hold.
    std::set<int> changedSince(const StateImage& before)
    {
        std::set<int> tags = StateImage(rig.engine).changedSince(before);
        tags.erase(Tag::ChanceSeed);
        return tags;
    }
    std::string name() { return rig.engine.presets.name(PresetKind::Global); }

    EditorRig rig;
};

} // namespace

TEST_F(BrowserTest, AWordAndThreeKeysLoadASongAsOneLevelOfTheUndo)
{
    rig.engine.setParameter(Tag::FilterCutoff, 0.33f);
    const StateImage before(rig.engine);
    const std::string old = name();
    open();
    type("wet cem");
    EXPECT_EQ(browser().hitCount(), 1u);
    key(CKey::Down);
    listen();
    EXPECT_EQ(name(), "Wet cement");
    key(CKey::Return);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(name(), "Wet cement");
    rig.user->key({.character = U'z', .modifiers = kControl});
    rig.idle();
    EXPECT_EQ(name(), old);
    EXPECT_EQ(changedSince(before), std::set<int>{Tag::Play}) << "what plays goes on";
}

TEST_F(BrowserTest, EscapeBringsBackWhatWasThereUnsavedEditsToo)
{
    rig.engine.setParameter(Tag::FilterCutoff, 0.123f);
    const StateImage before(rig.engine);
    const std::string old = name();
    open();
    key(CKey::Down);
    listen();
    const std::string first = name();
    EXPECT_EQ(rig.engine.parameters.index(Tag::Play), 1);
    key(CKey::Down);
    listen();
    EXPECT_NE(name(), first);
    EXPECT_NE(StateImage(rig.engine), before);
    key(CKey::Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(name(), old);
    EXPECT_EQ(changedSince(before), std::set<int>{});
    rig.user->key({.character = U'z', .modifiers = kControl});
    EXPECT_EQ(changedSince(before), std::set<int>{}) << "there is nothing to undo";
}

TEST_F(BrowserTest, FoldersTagsAndFavouritesNarrowTheList)
{
    open();
    const size_t all = browser().hitCount();
    click(browser().folderOf("Dub"));
    const size_t dub = browser().hitCount();
    EXPECT_LT(dub, all);
    EXPECT_FALSE(browser().rowOf("Wet cement").isEmpty());
    click(browser().starOf("Wet cement"));
    EXPECT_EQ(rig.engine.parameters.index(Tag::Play), 0) << "a star plays nothing";
    click(browser().folderOf("Favourites"));
    EXPECT_EQ(browser().hitCount(), 1u);
    click(browser().folderOf("All"));
    click(browser().tagOf("dark"));
    EXPECT_LT(browser().hitCount(), all);
    EXPECT_GT(browser().hitCount(), 1u);
    key(CKey::Escape); // the tags first
    EXPECT_EQ(browser().hitCount(), all);
    type("no such thing anywhere");
    EXPECT_EQ(browser().hitCount(), 0u);
    key(CKey::Down);
    key(CKey::Escape);
    key(CKey::Escape);
    EXPECT_FALSE(isOpen());
}

TEST_F(BrowserTest, OpensByAClickOnTheNameAndClosesBesideItAndWithTheWindow)
{
    const ControlRow& field = *findControl(466);
    rig.click({field.place.left + 8, EditorRig::middle(field).y});
    ASSERT_TRUE(isOpen());
    rig.click({10, 300});
    EXPECT_FALSE(isOpen());
    const std::string old = name();
    open();
    key(CKey::Down);
    listen();
    rig.editor.close();
    EXPECT_EQ(name(), old);
}

} // namespace ormund
