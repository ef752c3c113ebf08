#include "tests/controls/ControlRig.h"

#include "controls/KWOptionMenu.h"
#include "platform/Messages.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <unistd.h>

namespace ormund {

namespace fs = std::filesystem;
using testing::ElementsAre;

namespace {

class Menu : public ControlRig {
protected:
    KWOptionMenu* menu(int count, uint32_t styleBits = KWOptionMenu::kAlignLeft)
    {
        auto* made = add<KWOptionMenu>(CRect(20, 20, 100, 36), 330, "", styleBits);
        for (int i = 0; i < count; ++i)
            made->addEntry(("item " + std::to_string(i)).c_str());
        return made;
    }
    static CPoint middleOf(const KWOptionMenu& menu, int row)
    {
        const CRect rect = menu.rowRect(row);
        return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    }
    static std::vector<std::string> texts(const KWOptionMenu& menu)
    {
        std::vector<std::string> all(static_cast<size_t>(menu.getEntryCount()));
        for (int i = 0; i < menu.getEntryCount(); ++i)
            menu.getEntryText(i, all[static_cast<size_t>(i)]);
        return all;
    }
    // A menu over three branches of three leaves each.
    KWOptionMenu* tree(CControlListener* leafListener = nullptr)
    {
        auto* made = menu(0, KWOptionMenu::kShowCurrent);
        for (int branch = 0; branch < 3; ++branch) {
            auto sub = std::make_unique<KWOptionMenu>(CRect(), leafListener, 77, frame, "", 0u);
            for (int leaf = 0; leaf < 3; ++leaf)
                sub->addEntry(("leaf " + std::to_string(branch * 3 + leaf)).c_str());
            made->addSubMenu(std::move(sub), ("branch " + std::to_string(branch)).c_str());
        }
        return made;
    }
};

TEST_F(Menu, ClickAndClickChoosesAndTellsOnceAsAGesture)
{
    auto* speeds = menu(10);
    user.click({60, 28});
    ASSERT_TRUE(speeds->isOpen()); // the release of the opening click changes nothing
    user.click(middleOf(*speeds, 3));
    EXPECT_FALSE(speeds->isOpen());
    EXPECT_EQ(speeds->currentEntry, 3);
    EXPECT_EQ(ear.take(), "[ 330=3 ] ");
    EXPECT_EQ(frame->modalControl, nullptr);
}

TEST_F(Menu, PressDragAndLetGoChoosesToo)
{
    auto* speeds = menu(10);
    user.press({60, 28});
    user.move(middleOf(*speeds, 7));
    EXPECT_EQ(speeds->getHoverEntry(), 7);
    user.release(middleOf(*speeds, 7));
    EXPECT_EQ(ear.take(), "[ 330=7 ] ");
}

TEST_F(Menu, APopupAtThePointerIgnoresTheFirstReleaseWithoutMotion)
{
    KWOptionMenu popup({}, &ear, 1000000, frame, "", 0u);
    popup.addEntry("midi Learn");
    popup.addEntry("clear");
    const CPoint at(200, 100);
    user.press(at, kRButton);
    popup.setMenuStep(5);
    popup.beginModal(2, &at, 89);
    EXPECT_EQ(popup.getMenuTag(), 89);
    EXPECT_EQ(popup.getMenuStep(), 5);
    user.release(at, kRButton);
    EXPECT_TRUE(popup.isOpen());
    EXPECT_EQ(ear.take(), "");
    user.click(middleOf(popup, 1));
    EXPECT_EQ(ear.take(), "[ 1000000=1 ] ");
    popup.beginModal(2, &at, 89);
    user.click({20, 250}); // outside
    EXPECT_FALSE(popup.isOpen());
    EXPECT_EQ(ear.take(), "");
}

TEST_F(Menu, TitlesDisabledEntriesAndBranchesAreNotChosen)
{
    auto* mixed = menu(2);
    mixed->addEntry("a title", -1, true);
    mixed->addEntry("last");
    mixed->setEntryEnabled(1, false);
    user.click({60, 28});
    user.click(middleOf(*mixed, 1));
    user.click(middleOf(*mixed, 2));
    EXPECT_TRUE(mixed->isOpen());
    EXPECT_EQ(ear.take(), "");
    user.key({.key = CKey::Escape});
    EXPECT_FALSE(mixed->isOpen());
    std::string text;
    mixed->setCurrent(3, true);
    EXPECT_EQ(mixed->getCurrent(text, true), 3);
    EXPECT_EQ(mixed->getCurrent(text, false), 2); // the title does not count
    EXPECT_EQ(text, "last");
    EXPECT_TRUE(mixed->setCurrent(2, false));
    EXPECT_EQ(mixed->currentEntry, 3);
    EXPECT_FALSE(mixed->setCurrent(3, false));
}

TEST_F(Menu, EntriesAreInsertedFoundCheckedAndRemoved)
{
    auto* list = menu(3, KWOptionMenu::kCheckCurrent);
    std::string text;
    list->setValue(1);
    EXPECT_TRUE(list->isEntryChecked(1));
    list->addEntry("first", 0);
    EXPECT_THAT(texts(*list), ElementsAre("first", "item 0", "item 1", "item 2"));
    EXPECT_EQ(list->currentEntry, 2); // still the same text
    list->addEntryWithUser("far", 99, 42);
    EXPECT_EQ(list->findEntry("far"), 4);
    EXPECT_EQ(list->getUserWord(4), 42);
    EXPECT_EQ(list->findEntry("fa"), -1);
    list->checkOnly(3);
    EXPECT_FALSE(list->isEntryChecked(2));
    EXPECT_TRUE(list->isEntryChecked(3));
    EXPECT_TRUE(list->removeEntry(2));
    EXPECT_EQ(list->currentEntry, -1);
    EXPECT_FALSE(list->removeEntry(99));
    EXPECT_FALSE(list->setEntryText(-1, "x"));
    list->removeAllEntries();
    EXPECT_EQ(list->getCurrent(text, true), -1);
    EXPECT_EQ(text, "Empty");
}

TEST_F(Menu, ItHoldsExactlyItsLimitOfEntries)
{
    auto* full = menu(KWOptionMenu::kMaxEntries);
    EXPECT_EQ(full->getEntryCount(), KWOptionMenu::kMaxEntries);
    EXPECT_FALSE(full->addEntry("one more"));
    EXPECT_FALSE(full->addSubMenu(
        std::make_unique<KWOptionMenu>(CRect(), nullptr, 1, frame, "", 0u), "sub"));
    EXPECT_EQ(full->getEntryCount(), KWOptionMenu::kMaxEntries);
}

TEST_F(Menu, AListThatDoesNotFitScrollsByWheelAndByItsBar)
{
    auto* longList = menu(100);
    longList->setValue(50);
    user.click({60, 28});
    const CRect sheet = longList->getMenuRect();
    EXPECT_GE(sheet.top, 2);
    EXPECT_LE(sheet.bottom, kHeight - 2);
    EXPECT_GE(longList->rowRect(50).top, sheet.top); // the current entry is in sight
    EXPECT_LT(longList->rowRect(50).bottom, sheet.bottom);
    const CPoint inside(60, 150);
    const int before = longList->rowAt(inside);
    user.wheel(inside, -3);
    const int after = longList->rowAt(inside);
    EXPECT_GT(after, before);
    EXPECT_LT(after, before + 4);
    user.wheel(inside, -1000);
    EXPECT_EQ(longList->rowAt({60, sheet.bottom - 5}), 99);
    user.wheel(inside, 1000);
    EXPECT_EQ(longList->rowAt({60, sheet.top + 5}), 0);
    // The bar in the right edge: down to its end.
    user.press({sheet.right - 6, sheet.top + 10});
    user.move({sheet.right - 6, sheet.bottom + 50});
    user.release({sheet.right - 6, sheet.bottom + 50});
    EXPECT_EQ(longList->rowAt({60, sheet.bottom - 5}), 99);
    EXPECT_TRUE(longList->isOpen());
    EXPECT_EQ(ear.take(), "");
    user.click({60, sheet.bottom - 5});
    EXPECT_EQ(ear.take(), "[ 330=99 ] ");
}

TEST_F(Menu, SheetsStayWithinTheFrameAtEveryCorner)
{
    KWOptionMenu popup({}, &ear, 1, frame, "", 0u);
    for (int i = 0; i < 5; ++i)
        popup.addEntry("a rather long entry");
    for (const CPoint at : {CPoint(0, 0), CPoint(399, 0), CPoint(0, 299), CPoint(399, 299)}) {
        popup.beginModal(2, &at, 0);
        const CRect bounds(2, 2, kWidth - 2, kHeight - 2);
        EXPECT_TRUE(bounds.contains(popup.getMenuRect())) << at.x << "," << at.y;
        popup.endModal(0);
    }
}

TEST_F(Menu, ABranchOpensUnderTheMouseAndItsLeafCountsOverTheWholeTree)
{
    auto* targets = tree();
    user.click({60, 28});
    user.move(middleOf(*targets, 1));
    KWOptionMenu* sub = targets->getSubMenu(1);
    ASSERT_TRUE(sub->isOpen());
    EXPECT_FALSE(targets->getSubMenu(0)->isOpen());
    user.click(middleOf(*sub, 2));
    EXPECT_FALSE(targets->isOpen());
    EXPECT_FALSE(sub->isOpen());
    EXPECT_EQ(ear.take(), "[ 330=5 ] ");
    EXPECT_EQ(targets->getLeaf(), 5);
    EXPECT_EQ(targets->selectedText, "leaf 5");
    targets->setValue(7);
    EXPECT_EQ(targets->currentEntry, 2);
    EXPECT_EQ(targets->getSubMenu(2)->currentEntry, 1);
    EXPECT_EQ(targets->getLeafCount(), 9);
    EXPECT_FALSE(targets->setLeaf(9));
}

TEST_F(Menu, WhoOnlyLooksIntoABranchHasChosenNothing)
{
    auto* targets = tree();
    targets->setLeaf(4);
    user.click({60, 28});
    user.click(middleOf(*targets, 2));
    user.key({.key = CKey::Escape});
    EXPECT_EQ(targets->getLeaf(), 4);
    user.wheel({60, 28}, 1);
    EXPECT_EQ(ear.take(), "[ 330=5 ] ");

    user.click({60, 28});
    user.click(middleOf(*targets, 2));
    user.click(middleOf(*targets->getSubMenu(2), 1));
    EXPECT_EQ(ear.take(), "[ 330=7 ] ");
    EXPECT_EQ(targets->getLeaf(), 7);
}

TEST_F(Menu, ABranchWithAListenerOfItsOwnTellsThatOne)
{
    Ear leafEar;
    auto* targets = tree(&leafEar);
    user.click({60, 28});
    user.move(middleOf(*targets, 2));
    user.click(middleOf(*targets->getSubMenu(2), 0));
    EXPECT_EQ(leafEar.take(), "[ 77=0 ] ");
    EXPECT_EQ(ear.take(), "");
    EXPECT_EQ(targets->getLeaf(), 6);
}

TEST_F(Menu, LosingTheFocusClosesAllLevels)
{
    auto* targets = tree();
    user.click({60, 28});
    user.move(middleOf(*targets, 0));
    ASSERT_TRUE(targets->getSubMenu(0)->isOpen());
    frame->looseFocus();
    EXPECT_FALSE(targets->isOpen());
    EXPECT_FALSE(targets->getSubMenu(0)->isOpen());
    EXPECT_EQ(frame->modalControl, nullptr);
}

TEST_F(Menu, AMenuOverAModalControlGivesBackTheModality)
{
    auto* sheet = add<KWControl>(CRect(0, 0, 200, 200), 1);
    sheet->beginModal(0, nullptr, 0);
    KWOptionMenu popup({}, &ear, 2, frame, "", 0u);
    popup.addEntry("one");
    const CPoint at(50, 50);
    popup.beginModal(2, &at, 0);
    EXPECT_NE(frame->modalControl, sheet);
    popup.endModal(0);
    EXPECT_EQ(frame->modalControl, sheet);
}

TEST_F(Menu, TheWheelAtRestStaysWithinTheEntries)
{
    auto* speeds = menu(3);
    speeds->setValue(1);
    user.wheel({60, 28}, 2);
    user.wheel({60, 28}, 2);
    EXPECT_EQ(speeds->getValue(), 2);
    user.wheel({60, 28}, -2);
    EXPECT_EQ(ear.take(), "[ 330=2 ] [ 330=1 ] ");
}

TEST_F(Menu, KeysOpenWalkAndChoose)
{
    auto* speeds = menu(5);
    speeds->addEntry("title", 1, true);
    speeds->setValue(0);
    user.click({60, 28});
    user.key({.key = CKey::Escape});
    user.key({.key = CKey::Down}); // over the title
    EXPECT_EQ(ear.take(), "[ 330=2 ] ");
    user.key({.key = CKey::Return});
    ASSERT_TRUE(speeds->isOpen());
    user.key({.key = CKey::Down});
    user.key({.key = CKey::Down});
    EXPECT_EQ(speeds->getHoverEntry(), 2);
    user.key({.key = CKey::Up});
    user.key({.key = CKey::Return});
    EXPECT_EQ(ear.take(), "[ 330=0 ] ");
    speeds->checkOnly(3);
    speeds->setValue(3);
    user.key({.key = CKey::Return});
    user.key({.key = CKey::Down});
    EXPECT_EQ(speeds->getHoverEntry(), 4) << "from the one that is checked";
    user.key({.key = CKey::Escape});

    auto* targets = tree();
    frame->removeView(speeds);
    user.click({60, 28});
    user.key({.key = CKey::Down});
    user.key({.key = CKey::Down});
    user.key({.key = CKey::Right});
    user.key({.key = CKey::Down});
    user.key({.key = CKey::Return});
    EXPECT_EQ(targets->getLeaf(), 4);
}

TEST_F(Menu, TheButtonsBesideItStepOnReleaseAndWrap)
{
    auto* scales = menu(3);
    KWControl next({}, nullptr, KWOptionMenu::kNext, frame);
    KWControl previous({}, nullptr, KWOptionMenu::kPrevious, frame);
    scales->setValue(1);
    next.setValue(1);
    scales->valueChanged(&next);
    EXPECT_EQ(ear.take(), ""); // its press
    next.setValue(0);
    scales->valueChanged(&next);
    scales->valueChanged(&next);
    EXPECT_EQ(ear.take(), "[ 330=2 ] [ 330=0 ] ");
    scales->valueChanged(&previous);
    EXPECT_EQ(scales->getValue(), 2);
    ear.take();
    int dialogues = 0;
    scales->saveDialogue = [&] { ++dialogues; };
    KWControl save({}, nullptr, KWOptionMenu::kSave, frame);
    save.setValue(1);
    scales->valueChanged(&save);
    EXPECT_EQ(dialogues, 1);
    save.setValue(0);
    scales->valueChanged(&save);
    EXPECT_EQ(ear.take(), "[ 330=10054 ] ");
    EXPECT_EQ(scales->currentEntry, 2); // 10054 is no entry
    forgetMessage();
    testing::internal::CaptureStderr();
    save.setTag(4711);
    scales->valueChanged(&save);
    testing::internal::GetCapturedStderr();
    EXPECT_THAT(currentMessage(),
        testing::StartsWith("unknown value in KWOptionMenu::valueChanged : val:"));
    forgetMessage();
}

TEST_F(Menu, AnOwnerHearsOfOpeningAndClosing)
{
    struct Owner : KWOptionMenuExtraCallBack {
        void menuOpened() override { heard += "opened "; }
        void menuClosed() override { heard += "closed "; }
        std::string heard;
    } owner;
    auto* speeds = menu(3);
    speeds->extraCallBack = &owner;
    user.click({60, 28});
    user.click(middleOf(*speeds, 0));
    EXPECT_EQ(owner.heard, "opened closed ");
}

TEST_F(Menu, ItFollowsItsSourceAndTheSheetIsDrawnAboveOthersAndGoesAgain)
{
    auto* speeds = menu(10, KWOptionMenu::kShowCurrent);
    Crossing<float> source = 4.0f;
    speeds->valueSource = &source;
    idle();
    EXPECT_EQ(speeds->currentEntry, 4);
    const CRect later(20, 60, 100, 100);
    auto* cover = add<KWControl>(later, 9);
    (void)cover;
    idle();
    EXPECT_EQ(window->pixel(60, 90), 0u);
    user.click({60, 28});
    idle();
    EXPECT_NE(window->pixel(23, 90), 0u);
    user.move(middleOf(*speeds, 2));
    idle();
    const CRect row = speeds->rowRect(2);
    EXPECT_EQ(window->pixel(row.left + 5, row.top + 3), 0x9B7EDEu);
    user.key({.key = CKey::Escape});
    idle();
    EXPECT_EQ(window->pixel(23, 90), 0u);
}

// A real folder of presets.
class PresetMenu : public Menu {
protected:
    PresetMenu()
    {
        root = fs::temp_directory_path() / ("presets-" + std::to_string(::getpid()));
        fs::remove_all(root);
        fs::create_directories(root / "Factory" / "Bass");
        fs::create_directories(root / "User");
        for (const char* name : {"b.kwe", "a.kwe", "notes.txt", "c.kws", "C.kwe"})
            touch(name);
        for (const char* name :
            {"Factory/deep.kwe", "Factory/Bass/one.kwe", "Factory/Bass/two.kwe"})
            touch(name);
    }
    ~PresetMenu() override { fs::remove_all(root); }
    void touch(const std::string& name) { std::ofstream(root / name) << "x"; }
    static constexpr uint32_t kGlobal = KWOptionMenu::kPresetMode | KWOptionMenu::kNestedFolders
        | KWOptionMenu::kStepFiles | KWOptionMenu::kHeaderSave | KWOptionMenu::kHeaderLoad
        | KWOptionMenu::kSortFiles | KWOptionMenu::kAlignLeft | KWOptionMenu::kCheckCurrent;
    KWOptionMenu* presets(uint32_t styleBits)
    {
        auto* made = add<KWOptionMenu>(CRect(20, 20, 100, 36), 466, "kwe", styleBits);
        made->scanFolder(root.c_str(), "kwe");
        return made;
    }
    fs::path root;
};

TEST_F(PresetMenu, HeadersComeFirstThenFoldersAndFilesInOrder)
{
    auto* nested = presets(kGlobal);
    EXPECT_THAT(texts(*nested),
        ElementsAre("Save Preset", "Load Preset", "Factory", "User", "C", "a", "b"));
    EXPECT_EQ(nested->path, root.string() + "/");
    EXPECT_THAT(texts(*nested->getSubMenu(2)), ElementsAre("Bass", "deep"));
    EXPECT_THAT(texts(*nested->getSubMenu(2)->getSubMenu(0)), ElementsAre("one", "two"));

    auto* flat = presets(KWOptionMenu::kPresetMode | KWOptionMenu::kSortFiles
        | KWOptionMenu::kHeaderSelectFolder | KWOptionMenu::kHeaderSave | KWOptionMenu::kHeaderLoad
        | KWOptionMenu::kHeaderPresets | KWOptionMenu::kBracketHeaders);
    EXPECT_THAT(texts(*flat),
        ElementsAre(
            "[Select Folder]", "[Save Preset]", "[Load Preset]", "--Presets--", "C", "a", "b"));
    auto* saveOnly = presets(KWOptionMenu::kPresetMode | KWOptionMenu::kHeaderSave);
    EXPECT_EQ(saveOnly->findEntry("Save Preset"), 0);
    saveOnly->scanFolder((root / "missing").c_str(), nullptr);
    EXPECT_THAT(texts(*saveOnly), ElementsAre("Save Preset"));
}

TEST_F(PresetMenu, AForestOfLinksEndsSomewhere)
{
    // Each level would open eight times as many folders as the one above it.
    for (int i = 0; i < 8; ++i) {
        const std::string name = "Factory/" + std::to_string(i);
        fs::create_directories(root / name);
        for (int k = 0; k < 8; ++k)
            fs::create_directory_symlink(
                root / "Factory" / std::to_string(k), root / name / ("to " + std::to_string(k)));
    }
    int menus = 0;
    const std::function<void(const KWOptionMenu&)> count = [&](const KWOptionMenu& menu) {
        ++menus;
        for (int i = 0; i < menu.getEntryCount(); ++i)
            if (const KWOptionMenu* sub = menu.getSubMenu(i))
                count(*sub);
    };
    count(*presets(kGlobal));
    EXPECT_GT(menus, 100);
    EXPECT_LE(menus, KWOptionMenu::kMaxScannedFolders);
}

TEST_F(PresetMenu, AtMostSoManyFilesAreTaken)
{
    for (int i = 0; i < 140; ++i)
        touch("User/" + std::to_string(i) + ".kwe");
    EXPECT_EQ(presets(kGlobal)->getSubMenu(3)->getEntryCount(), KWOptionMenu::kMaxFiles);
}

TEST_F(PresetMenu, AFileInAFolderIsReportedBehindTheHeadersAndGivesItsPath)
{
    auto* nested = presets(kGlobal);
    std::string path;
    EXPECT_FALSE(nested->getPresetPath(path, "kwe"));
    user.click({60, 28});
    user.move(middleOf(*nested, 2));
    KWOptionMenu* factory = nested->getSubMenu(2);
    user.move(middleOf(*factory, 0));
    KWOptionMenu* bass = factory->getSubMenu(0);
    ASSERT_TRUE(bass->isOpen());
    user.click(middleOf(*bass, 1));
    EXPECT_EQ(ear.take(), "[ 466=2 ] ");
    EXPECT_TRUE(nested->getPresetPath(path, "kwe"));
    EXPECT_EQ(path, root.string() + "/Factory/Bass/two.kwe");
    EXPECT_EQ(nested->selectedText, "two");

    // Opening reads the folder again and keeps the choice.
    touch("Factory/Bass/onehalf.kwe");
    user.click({60, 28});
    EXPECT_TRUE(nested->getPresetPath(path, nullptr));
    EXPECT_EQ(path, root.string() + "/Factory/Bass/two.kwe");
    EXPECT_EQ(nested->getSubMenu(2)->getSubMenu(0)->getEntryCount(), 3);
    user.key({.key = CKey::Escape});

    user.click({60, 28});
    user.click(middleOf(*nested, 0)); // "Save Preset" is reported and not kept
    EXPECT_EQ(ear.take(), "[ 466=0 ] ");
    EXPECT_TRUE(nested->getPresetPath(path, "kwe"));
    EXPECT_EQ(path, root.string() + "/Factory/Bass/two.kwe");
    EXPECT_EQ(nested->selectedText, "two");
}

TEST_F(PresetMenu, NextAndPreviousGoThroughAllFilesAndWrap)
{
    auto* nested = presets(kGlobal);
    KWControl next({}, nullptr, KWOptionMenu::kNext, frame);
    std::vector<std::string> visited;
    for (int i = 0; i < 7; ++i) {
        nested->valueChanged(&next);
        visited.push_back(nested->selectedText);
    }
    EXPECT_THAT(visited, ElementsAre("one", "two", "deep", "C", "a", "b", "one"));
    next.setTag(KWOptionMenu::kPrevious);
    nested->valueChanged(&next);
    EXPECT_EQ(nested->selectedText, "b");
}

TEST_F(PresetMenu, ALinkBackToAnOuterFolderEnds)
{
    std::error_code error;
    fs::create_directory_symlink(root, root / "User" / "loop", error);
    ASSERT_FALSE(error);
    auto* nested = presets(kGlobal);
    EXPECT_EQ(nested->getSubMenu(3)->getEntryCount(), 0);
}

TEST_F(PresetMenu, AListenerMayFillTheMenuAnewWhileItHearsAChoice)
{
    struct Rescanner : CControlListener {
        void valueChanged(CControl* control) override
        {
            static_cast<KWOptionMenu*>(control)->removeAllEntries();
        }
    } rescanner;
    auto* nested = presets(kGlobal);
    nested->setListener(&rescanner);
    user.click({60, 28});
    user.move(middleOf(*nested, 2));
    KWOptionMenu* factory = nested->getSubMenu(2);
    user.click(middleOf(*factory, 1));
    EXPECT_EQ(nested->getEntryCount(), 0);
    EXPECT_EQ(frame->modalControl, nullptr);
}

} // namespace

} // namespace ormund
