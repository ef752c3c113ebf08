#include "tests/editor/EditorRig.h"

#include "controls/KWDisplay.h"
#include "controls/KWKeyboardView.h"
#include "controls/KWOptionMenu.h"
#include "controls/KWPolyObjectView.h"
#include "editor/AboutBox.h"
#include "editor/BitmapTable.h"
#include "editor/PanelScale.h"
#include "platform/Messages.h"
#include "tests/support/Checked.h"
#include "tests/support/ReadableText.h"
#include "view/TextUse.h"

#include <gmock/gmock.h>

namespace ormund {

namespace {

KWDisplay& hintOf(EditorRig& rig, int tag)
{
    return static_cast<KWDisplay&>(*rig.editor.getControl(tag));
}

} // namespace

TEST(Editor, BuildsEveryControlAndFreesAllAtTheEnd)
{
    EXPECT_EQ(BitmapTable::get(1000), nullptr);
    {
        EditorRig rig;
        EXPECT_EQ(BitmapTable::references(), 1);
        EXPECT_NE(BitmapTable::get(1147), nullptr);
        EXPECT_EQ(BitmapTable::get(999), nullptr);
        EXPECT_EQ(BitmapTable::get(1148), nullptr);
        for (const ControlRow& row : controlCatalogue())
            if (row.items != MenuItems::TargetGroup) {
                EXPECT_TRUE(rig.editor.getControl(row.tag)) << row.tag;
            }

        EditorRig second;
        EXPECT_EQ(BitmapTable::references(), 2);
        second.editor.close();
        EXPECT_EQ(BitmapTable::references(), 1);
        EXPECT_TRUE(rig.editor.isOpen());
    }
    EXPECT_EQ(BitmapTable::references(), 0);
    EXPECT_EQ(BitmapTable::get(1000), nullptr);
}

TEST(Editor, OpensAndClosesAgainAndAgain)
{
    EditorRig rig;
    for (int i = 0; i < rounds(50); ++i) {
        rig.editor.close();
        EXPECT_FALSE(rig.editor.isOpen());
        EXPECT_EQ(rig.editor.getFrame(), nullptr);
        rig.editor.close(); // once is enough, twice does no harm
        rig.editor.idle();
        EXPECT_TRUE(
            rig.editor.openIn(std::make_unique<OffscreenWindow>(kPanelWidth, kPanelHeight)));
        rig.editor.idle();
    }
    KWFrame* frame = rig.editor.getFrame();
    EXPECT_TRUE(rig.editor.openIn(nullptr)); // already open: nothing happens
    EXPECT_EQ(rig.editor.getFrame(), frame);
}

TEST(Editor, AWindowThatGoesDuringAPressLeavesNothingHeldDown)
{
    EditorRig rig;
    const auto& key = *findControl(551);
    const KWKeyState& keys = *static_cast<KWKeyboardView*>(rig.editor.getControl(551))->keyState;
    rig.user->press({key.place.left + 100, key.place.bottom - 5});
    EXPECT_FALSE(keys.noteOn.isEmpty());
    rig.editor.close();
    EXPECT_TRUE(keys.noteOn.isEmpty());
    EXPECT_FALSE(keys.noteOff.isEmpty());

    rig.open();
    rig.user->press(EditorRig::middle(*findControl(548))); // the roll area holds the looper down
    EXPECT_EQ(rig.engine.parameters.index(Tag::Looper), 1);
    rig.editor.close();
    EXPECT_EQ(rig.engine.parameters.index(Tag::Looper), 0);

    rig.open();
    const float before = rig.engine.parameters.raw(Tag::RootKey);
    rig.user->press(EditorRig::middle(*findControl(Tag::RootKey)));
    rig.user->move({35, 80});
    EXPECT_NE(rig.engine.parameters.raw(Tag::RootKey), before);
    rig.editor.close();
    rig.open();
    rig.user->key({.character = 'z', .modifiers = kControl});
    EXPECT_EQ(rig.engine.parameters.raw(Tag::RootKey), before); // the gesture was whole
}

TEST(Editor, TellsItsSizeBeforeItIsOpen)
{
    KWUniClient engine(nullptr);
    KWUniClientEditor editor(engine);
    ERect* rect = nullptr;
    ASSERT_TRUE(editor.getRect(&rect));
    EXPECT_EQ(rect->right - rect->left, kPanelWidth);
    EXPECT_EQ(rect->bottom - rect->top, kPanelHeight);
}

TEST(Editor, TwoWindowsShowTheirOwnEngines)
{
    EditorRig one, two;
    const ControlRow& level = *findControl(Tag::MasterGateTime);
    one.user->drag(
        EditorRig::middle(level), {EditorRig::middle(level).x, EditorRig::middle(level).y - 30});
    two.idle();
    EXPECT_NE(one.engine.parameters.raw(level.tag), two.engine.parameters.raw(level.tag));
    EXPECT_FLOAT_EQ(static_cast<CControl*>(one.editor.getControl(level.tag))->getValue(),
        one.engine.parameters.raw(level.tag));
}

TEST(Editor, APageThatTheEngineFlipsShowsAtTheNextIdle)
{
    EditorRig rig;
    rig.engine.setParameter(Tag::Page, 0.0f);
    rig.idle(1);
    rig.engine.setParameter(Tag::Page, 1.0f);
    EXPECT_FALSE(rig.editor.getPages().shown().synth);
    rig.idle(1);
    EXPECT_TRUE(rig.editor.getPages().shown().synth);
    EXPECT_TRUE(rig.editor.getControl(17)->isLive());
    EXPECT_FALSE(rig.editor.getControl(4)->isLive());

    rig.engine.setParameter(Tag::ModSelect, 4.5f / 8.0f);
    rig.idle(1);
    EXPECT_EQ(rig.editor.getPages().shown().modTrack, 4);
    EXPECT_TRUE(rig.editor.getControl(176)->isLive());
    EXPECT_FALSE(rig.editor.getControl(89)->isLive());
}

TEST(Editor, AHintShowsItsWordsAndTheValueThatMoves)
{
    EditorRig rig;
    const ControlRow& cutoff = *findControl(25);
    rig.show(cutoff);
    KWDisplay& hint = hintOf(rig, 468);
    EXPECT_FALSE(hint.isLive());
    rig.user->move(EditorRig::middle(cutoff));
    rig.idle(6);
    EXPECT_TRUE(hint.isLive());
    rig.engine.setParameter(25, 0.38f);
    rig.idle();
    EXPECT_EQ(hint.valueText(), "Filter Cutoff  38 %");
    rig.user->move({600, 10});
    rig.idle(10);
    EXPECT_FALSE(hint.isLive());
}

TEST(Editor, HintsWriteWhatAPlayerReads)
{
    EditorRig rig;
    const struct {
        int hint, tag;
        float raw;
        const char* text;
    } cases[] = {
        {323, Tag::LooperSteps, 1.0f, "looper  8  Steps"},
        {459, Tag::GateTimeMultiply, 0.0f, "0.125    gate time multiply"},
        {459, Tag::GateTimeMultiply, 1.0f, "8    gate time multiply"},
        {470, Tag::SynthPan, 0.5f, "Synth Pan  centre"},
        {470, Tag::SynthPan, 0.0f, "Synth Pan  100 left"},
        {482, Tag::DelayLeft, 1.0f, "Delay Left  16   /16 notes"},
        {553, Tag::MidiOutTranspose, 0.0f, "midi output transpose  -12 semitones"},
        {583, Tag::FileBars, 0.0f, "1    bars midi file length"},
        {583, Tag::FileBars, 1.0f, "14    bars midi file length"},
    };
    for (const auto& hint : cases) {
        rig.engine.setParameter(hint.tag, hint.raw);
        hintOf(rig, hint.hint).setVisible(true);
        rig.idle();
        EXPECT_EQ(hintOf(rig, hint.hint).valueText(), hint.text);
    }
}

TEST(Editor, TheMenusFollowTheEngine)
{
    EditorRig rig;
    rig.engine.setParameter(Tag::Scale, 0.029421765f * 14);
    rig.engine.setParameter(Tag::ModTarget, 0.007702308f * 74);
    rig.idle();
    EXPECT_EQ(static_cast<KWOptionMenu*>(rig.editor.getControl(Tag::Scale))->currentEntry, 14);
    EXPECT_EQ(static_cast<KWOptionMenu*>(rig.editor.getControl(Tag::ModTarget))->getLeaf(), 74);
}

TEST(Editor, ARightClickLearnsTheControlAndTheStepUnderTheMouse)
{
    EditorRig rig;
    const auto choose = [&](int menuTag, int item) {
        auto& menu = static_cast<KWOptionMenu&>(*rig.editor.getControl(menuTag));
        ASSERT_TRUE(menu.isOpen());
        rig.click({menu.rowRect(item).left + 10, menu.rowRect(item).top + 8});
        EXPECT_FALSE(menu.isOpen());
    };
    rig.click(EditorRig::middle(*findControl(Tag::LooperSteps)), kRButton);
    choose(kRightClickTag, 0);
    EXPECT_EQ(rig.engine.midiMap.learnTag(), Tag::LooperSteps);

    rig.engine.midiMap.addAssignment(7, Tag::LooperSteps, 0);
    rig.click(EditorRig::middle(*findControl(Tag::LooperSteps)), kRButton);
    choose(kRightClickTag, 1);
    EXPECT_FALSE(rig.engine.midiMap.isAssigned(Tag::LooperSteps));

    rig.engine.midiMap.addAssignment(7, 430, 5);
    rig.click({172 + 5 * 18 + 9, 200}, kRButton);
    choose(kLearnStepsTag, 2);
    EXPECT_EQ(rig.engine.midiMap.learnTag(), 430);
    EXPECT_EQ(rig.engine.midiMap.learnStep(), 5);
    EXPECT_FALSE(rig.engine.midiMap.isAssigned(430, 5));

    const Place& line = findControl(Tag::Chord)->place; // here a right click alone clears
    rig.user->click({line.left + 3 * 18 + 9, line.top + 5}, kRButton, kShift);
    rig.idle();
    choose(kLearnStepsTag + 1, 2);
    EXPECT_EQ(rig.engine.midiMap.learnTag(), Tag::Chord);
    EXPECT_EQ(rig.engine.midiMap.learnStep(), 3);

    rig.user->key({.key = CKey::Escape});
    EXPECT_EQ(rig.engine.midiMap.learnTag(), -1);
    rig.engine.midiMap.setLearnTarget(Tag::LooperSteps, 0);
    rig.click(EditorRig::middle(*findControl(Tag::LooperSteps)), kRButton);
    choose(kRightClickTag, 1);
    EXPECT_EQ(rig.engine.midiMap.learnTag(), -1);
}

TEST(Editor, TheAboutBoxClosesAtAnyClick)
{
    EditorRig rig;
    auto& about = static_cast<AboutBox&>(*rig.editor.getControl(kAboutTag));
    rig.click(EditorRig::middle(*findControl(547)));
    EXPECT_TRUE(about.isOpen);
    rig.click(EditorRig::middle(*findControl(547))); // the box has the mouse alone
    EXPECT_FALSE(about.isOpen);
    rig.click(EditorRig::middle(*findControl(565)));
    EXPECT_TRUE(about.isOpen);
    rig.click({about.getViewSize().right - 16, about.getViewSize().top + 16});
    EXPECT_FALSE(about.isOpen);
    rig.click(EditorRig::middle(*findControl(565)));
    EXPECT_TRUE(about.isOpen);
    rig.click({about.getViewSize().left + 60, about.getViewSize().top + 90});
    EXPECT_FALSE(about.isOpen);
}

TEST(Editor, AMessageIsShownUntilItIsConfirmed)
{
    EditorRig rig;
    std::vector<std::string> seen;
    textObserver = [&](const TextUse& text) { seen.emplace_back(text.words); };
    showMessage("The file %s could not be found!", "somewhere.kwe");
    rig.idle();
    textObserver = nullptr;
    EXPECT_THAT(seen, testing::IsSupersetOf({"The file somewhere.kwe could not be found!", "OK"}));
    EXPECT_TRUE(rig.editor.getFrame()->modalControl);
    rig.user->key({.character = 0, .key = CKey::Return, .modifiers = 0});
    rig.idle(3);
    EXPECT_FALSE(rig.editor.getFrame()->modalControl);
    EXPECT_FALSE(hasMessage());
}

TEST(Editor, KnobsThatLieFlatFollowTheMouseSideways)
{
    EditorRig rig;
    rig.engine.setParameter(Tag::Page, 0.0f);
    rig.idle();
    for (const int tag : {2, 4, 36, 487}) {
        const CPoint knob = EditorRig::middle(*findControl(tag));
        const float before = rig.engine.parameters.raw(tag);
        rig.user->drag(knob, {knob.x + 30, knob.y});
        EXPECT_GT(rig.engine.parameters.raw(tag), before) << tag;
    }
}

TEST(Editor, TheMarksOfTheKeysMoveWithTheInputOctave)
{
    EditorRig rig;
    const auto leftOfDot = [&](int keyMode) {
        const auto* marks =
            dynamic_cast<KWPolyObjectView*>(rig.editor.getControl(keyMode ? 577 : 489));
        const int frame = 8 * marks->getHeight(); // after the eight actions
        for (const auto& mark : marks->objectSet->objects)
            if (mark.frameY == frame)
                return int(mark.left);
        return -1;
    };
    const int zero = leftOfDot(0), zeroOfFour = leftOfDot(1);
    rig.engine.setParameter(Tag::InputOctave, 1.0f);
    rig.idle();
    EXPECT_EQ(leftOfDot(0), zero - 2 * 7 * 12);
    EXPECT_EQ(leftOfDot(1), zeroOfFour - 2 * 7 * 12);
    rig.engine.setParameter(Tag::InputOctave, 0.5f);
    rig.idle();
    EXPECT_EQ(leftOfDot(0), zero);
}

TEST(Editor, PatternsAreLockedByAClick)
{
    EditorRig rig;
    const Place area = findControl(358)->place;
    rig.click({area.left + 9 * area.width() / 16 + 6, area.top + 10});
    EXPECT_EQ(int(rig.engine.parameters.raw(Tag::LockArea) * 15.99f), 9);
}

TEST(Editor, TheSpaceBarPlaysAndStops)
{
    EditorRig rig;
    const CKeyEvent space{.character = U' ', .key = CKey::Space, .modifiers = 0};
    const int first = rig.engine.parameters.index(Tag::Play);
    EXPECT_TRUE(rig.user->key(space));
    EXPECT_EQ(rig.engine.parameters.index(Tag::Play), 1 - first);
    CKeyEvent held = space;
    held.isRepeat = true;
    EXPECT_TRUE(rig.user->key(held));
    EXPECT_EQ(rig.engine.parameters.index(Tag::Play), 1 - first);
    EXPECT_TRUE(rig.user->key(space));
    EXPECT_EQ(rig.engine.parameters.index(Tag::Play), first);
}

TEST(Editor, TheWindowGrowsWithTheChosenScale)
{
    EditorRig rig;
    EXPECT_TRUE(rig.user->key({.character = U'+', .key = CKey::None, .modifiers = kControl}));
    EXPECT_EQ(rig.editor.getScale(), 1.25);
    for (int more = 0; more < 3; ++more)
        rig.user->key({.character = U'+', .key = CKey::None, .modifiers = kControl});
    EXPECT_EQ(rig.editor.getScale(), 2);
    EXPECT_EQ(rig.window->getWidth(), 2 * kPanelWidth);
    ERect* rect = nullptr;
    rig.editor.getRect(&rect);
    EXPECT_EQ(rect->right, 2 * kPanelWidth);
    for (int fewer = 0; fewer < 4; ++fewer)
        rig.user->key({.character = U'-', .key = CKey::None, .modifiers = kControl});
    EXPECT_EQ(rig.editor.getScale(), 1);
    // A window that a host makes larger or smaller takes the nearest size that fits.
    const struct {
        int width, height;
        double scale;
    } offers[] = {
        {1400, 2000, 1.25}, {3003, 1390, 2}, {1, 1, 0.75}, {65536, 65536, 3}, {1001, 700, 1}};
    for (auto [offeredWidth, offeredHeight, scale] : offers) {
        int width = offeredWidth, height = offeredHeight;
        EXPECT_TRUE(rig.editor.fitInto(width, height, false));
        EXPECT_EQ(width, std::lround(kPanelWidth * scale));
        EXPECT_TRUE(rig.editor.fitInto(width, height, true));
        EXPECT_EQ(rig.editor.getScale(), scale);
        EXPECT_EQ(rig.window->getHeight(), std::lround(kPanelHeight * scale));
    }
}

TEST(PanelScale, FitsTheScreenAndFollowsTheWishUpToIt)
{
    const struct {
        double wanted;
        Desktop desktop;
        double scale;
    } cases[] = {
        {2, {}, 2}, // nothing is known of the screen
        {1.25, {3840, 2160, 1.25}, 1.25}, {1.5, {3840, 2160, 1.5}, 1.5}, {3, {3840, 2160, 3}, 3},
        {2, {1920, 1080, 2}, 1.5}, {2, {1366, 768, 1}, 1}, {1, {1024, 600, 1}, 0.75},
        {1.5, {640, 480, 1}, 0.75}, // larger than the screen, but there is no smaller one
    };
    for (const auto& each : cases)
        EXPECT_EQ(fittingPanelScale(each.wanted, each.desktop), each.scale)
            << each.wanted << " on " << each.desktop.width;
}

TEST(PanelScale, IsChosenFromItsMenu)
{
    EditorRig rig;
    const ControlRow& row = *findControl(kPanelScaleTag);
    const auto& menu = static_cast<KWOptionMenu&>(*rig.editor.getControl(kPanelScaleTag));
    for (const int index : {5, 4, 3, 2, 0, 1}) {
        rig.click(EditorRig::middle(row));
        ASSERT_TRUE(menu.isOpen());
        const CRect line = menu.rowRect(index);
        rig.click({line.left + 10, line.top + 8});
        EXPECT_EQ(rig.editor.getScale(), kPanelScales[size_t(index)]);
        EXPECT_EQ(menu.currentEntry, index);
    }
    rig.user->wheel(EditorRig::middle(row), 1.0f); // a turn of the wheel is no choice
    EXPECT_EQ(rig.editor.getScale(), 1);
}

TEST(Editor, TheAboutBoxSwitchesTheOfflineRendering)
{
    EditorRig rig;
    auto& about = static_cast<AboutBox&>(*rig.editor.getControl(kAboutTag));
    const auto press = [&] {
        const CRect box = about.switchRect();
        rig.click({box.left + 5, box.top + 5});
    };
    EXPECT_FALSE(rig.engine.settings.rendersOffline());
    rig.click(EditorRig::middle(*findControl(547)));
    press();
    EXPECT_TRUE(about.isOpen);
    EXPECT_TRUE(rig.engine.settings.rendersOffline());
    {
        EditorRig next; // the key store knows it
        EXPECT_TRUE(next.engine.settings.rendersOffline());
    }
    press();
    EXPECT_FALSE(rig.engine.settings.rendersOffline());
}

TEST(Editor, EveryTextOnThePanelCanBeRead)
{
    EditorRig rig;
    ReadableText reader;
    const auto look = [&] {
        rig.editor.getFrame()->invalidAll();
        rig.idle();
    };
    for (const int page : {0, 1})
        for (const int track : {0, 7}) {
            rig.engine.setParameter(Tag::Page, float(page));
            rig.engine.setParameter(Tag::ModSelect, (float(track) + 0.5f) / 8);
            look();
        }
    for (const int tag : {1, 48, 330, 466, 515, kPanelScaleTag}) {
        const ControlRow& row = *findControl(tag);
        rig.show(row);
        rig.click({row.place.left + 8, EditorRig::middle(row).y});
        look();
        rig.user->key({.character = 0, .key = CKey::Escape, .modifiers = 0});
    }
    for (const ControlRow& row : controlCatalogue()) { // hints, and what lies under the mouse
        if (row.kind == ControlClass::Hint || row.place.empty() || (row.flags & kNoMouse))
            continue;
        rig.show(row);
        rig.user->move(EditorRig::middle(row));
        rig.idle(6);
    }
    rig.click(EditorRig::middle(*findControl(547)));
    look();
    rig.click(EditorRig::middle(*findControl(547)));
    showMessage("The file %s could not be found!", "somewhere.kwe");
    look();
    forgetMessage();
    EXPECT_GT(reader.texts, 500);
    EXPECT_THAT(reader.complaints, testing::IsEmpty());
}

} // namespace ormund
