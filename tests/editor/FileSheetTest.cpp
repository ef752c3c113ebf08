#include "editor/FileSheet.h"
#include "controls/KWFrame.h"
#include "view/offscreen/FrameUser.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>

namespace ormund {

namespace fs = std::filesystem;

namespace {

using Kind = KWFileChooser::Kind;

// A folder with a file of each sort and a sub-folder, and a user before the sheet.
class FileSheetTest : public testing::Test {
protected:
    FileSheetTest()
    {
        char pattern[] = "/tmp/sheet-XXXXXX";
        root = mkdtemp(pattern);
        fs::create_directories(root + "/banks");
        for (const char* file : {"/b.kwe", "/a.kwe", "/other.txt", "/.hidden.kwe", "/banks/c.kwe"})
            std::ofstream(root + file) << "x";
        sheet = new FileSheet(&frame);
        frame.addView(sheet);
    }
    ~FileSheetTest() override { fs::remove_all(root); }

    void ask(Kind kind, const std::string& fileName = "")
    {
        answer.reset();
        sheet->ask({kind, "Ormund preset", "kwe", "", root, fileName},
            [this](const std::string& path) { answer = path; });
        frame.idle();
    }
    void click(const CRect& place)
    {
        ASSERT_FALSE(place.isEmpty());
        user.click({place.left + 10, place.top + 5});
        frame.idle();
    }
    void clickRow(const char* name) { click(sheet->rowRect(sheet->findRow(name))); }
    void type(const char* text)
    {
        for (; *text; ++text)
            user.key({.character = static_cast<char32_t>(*text)});
    }

    std::string root;
    KWFrame frame{CRect{0, 0, 1001, 695}, nullptr, nullptr, nullptr};
    FrameUser user{frame};
    FileSheet* sheet = nullptr;
    std::optional<std::string> answer;
};

} // namespace

TEST_F(FileSheetTest, LoadsAFileFromAFolderBelow)
{
    ask(Kind::Load);
    EXPECT_EQ(sheet->findRow("other.txt"), -1);
    EXPECT_EQ(sheet->findRow(".hidden.kwe"), -1);
    EXPECT_LT(sheet->findRow("banks"), sheet->findRow("a.kwe"));
    EXPECT_LT(sheet->findRow("a.kwe"), sheet->findRow("b.kwe"));
    click(sheet->acceptRect());
    EXPECT_TRUE(sheet->isOpen()) << "nothing is chosen yet";
    clickRow("banks");
    clickRow("c.kwe");
    EXPECT_FALSE(answer);
    click(sheet->acceptRect());
    EXPECT_EQ(answer, root + "/banks/c.kwe");
    EXPECT_EQ(frame.modalControl, nullptr);
}

TEST_F(FileSheetTest, SavesUnderATypedNameAndAsksBeforeItReplaces)
{
    ask(Kind::Save, "x.kwe");
    type("new one"); // instead of the name that is offered
    user.key({.key = CKey::Return});
    EXPECT_EQ(answer, root + "/new one.kwe");
    ask(Kind::Save, "x.kwe");
    user.key({.key = CKey::End});
    type("!");
    user.key({.character = U'a', .modifiers = kControl});
    user.key({.key = CKey::Backspace});
    type("x");
    type(" too");
    user.key({.key = CKey::Return});
    EXPECT_EQ(answer, root + "/x too.kwe");

    ask(Kind::Save, "a.kwe");
    click(sheet->acceptRect());
    EXPECT_FALSE(answer) << "the first press asks";
    user.key({.key = CKey::End});
    user.key({.key = CKey::Backspace});
    user.key({.character = U'a'});
    click(sheet->acceptRect());
    EXPECT_FALSE(answer) << "a changed name is asked about again";
    click(sheet->acceptRect());
    EXPECT_EQ(answer, root + "/a.kwe");
}

TEST_F(FileSheetTest, NamesOutsideTheFolderAreNotTaken)
{
    ask(Kind::Save, "");
    type("../up");
    click(sheet->acceptRect());
    EXPECT_TRUE(sheet->isOpen());
    EXPECT_FALSE(answer);
}

TEST_F(FileSheetTest, ChoosesAFolderAndGoesUpByKeys)
{
    ask(Kind::Folder);
    EXPECT_EQ(sheet->findRow("a.kwe"), -1);
    clickRow("banks");
    EXPECT_EQ(sheet->getFolder(), root + "/banks");
    user.key({.key = CKey::Backspace});
    EXPECT_EQ(sheet->getFolder(), root);
    user.key({.key = CKey::Down});
    user.key({.key = CKey::Down});
    user.key({.key = CKey::Return});
    click(sheet->acceptRect());
    EXPECT_EQ(answer, root + "/banks");
}

TEST_F(FileSheetTest, EveryOtherWayOutAnswersNothingOnce)
{
    for (int way = 0; way < 3; ++way) {
        ask(Kind::Load);
        if (way == 0)
            user.click({5, 5});
        else if (way == 1)
            click(sheet->cancelRect());
        else
            user.key({.key = CKey::Escape});
        EXPECT_EQ(answer, "") << way;
        EXPECT_FALSE(sheet->isOpen()) << way;
    }
    ask(Kind::Load);
    frame.windowLostFocus();
    EXPECT_FALSE(answer);
    EXPECT_TRUE(sheet->isOpen()) << "what was typed or found stays";
    sheet->ask({}, [](const std::string&) { FAIL() << "one question at a time"; });
}

} // namespace ormund
