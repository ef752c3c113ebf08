// The manual says what is so: its filler refuses what is not, and what its card and its chapters
// promise of mouse and keys holds on the panel itself.
#include "apps/ormund-manual/ManualPage.h"
#include "apps/ormund-manual/ManualTables.h"
#include "editor/KeyZones.h"
#include "tests/editor/EditorRig.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace ormund {

using testing::HasSubstr;

namespace {

// A page with one chapter.
class Chapter : public testing::Test {
protected:
    void SetUp() override
    {
        std::filesystem::create_directories(folder);
        write("page.html", "<nav><x-contents/></nav>\n<x-chapters/>");
    }
    void TearDown() override { std::filesystem::remove_all(folder); }
    void write(const std::string& name, const std::string& text)
    {
        std::ofstream(folder / name) << text;
    }
    std::string filled(const std::string& chapter)
    {
        write("10-one.html", chapter);
        PanelPicture picture{40, 30, {1, 2, 3}};
        return ManualPage({{"pitch", picture}}, "9.9").fill(folder);
    }

    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("ormund-manual-" + std::to_string(::getpid()));
};

const std::string kHead = "<h2 id=\"a\">A</h2>";

} // namespace

TEST_F(Chapter, IsFilledFromTheTables)
{
    const std::string page = filled(kHead
        + "<x-control tag=\"13\">retrigger action</x-control>; <x-range tag=\"10\"/>;"
          " <x-range tag=\"8\" as=\"percent\"/>; <x-default tag=\"330\"/>; <x-key note=\"60\"/>;"
          " <x-zone of=\"action\" mode=\"1\"/>; <x-number of=\"patterns\"/> patterns"
          "<x-picture name=\"pitch\" alt=\"the block\">with <x-number of=\"steps\"/> steps"
          "</x-picture>");
    EXPECT_THAT(page, HasSubstr("retrigger action</b>; 2 to 8; 10 % to 90 %; 1 / 16; "));
    EXPECT_THAT(page, HasSubstr("C4</kbd>; E3 to B3; 16 patterns"));
    EXPECT_THAT(page, HasSubstr("width=\"40\" height=\"30\" src=\"data:image/png;base64,AQID\""));
    EXPECT_THAT(page, HasSubstr("with 32 steps</figcaption>"));
    EXPECT_THAT(page, testing::Not(HasSubstr("<x-")));
}

TEST_F(Chapter, RefusesWhatIsNotSo)
{
    for (const char* text : {"<x-control tag=\"13\">looper action</x-control>",
             "<x-control tag=\"9999\">looper action</x-control>", "<x-range tag=\"397\"/>",
             "<x-table of=\"nothing\"/>", "<x-number of=\"moons\"/>",
             "<x-zone of=\"action\" mode=\"0\"/>",
             "<x-picture name=\"moon\" alt=\"a moon\">no</x-picture>", "<x-nothing/>",
             "<x-control tag=\"13\">retrigger action", "<x-range tag=10/>"}) {
        EXPECT_THROW(filled(kHead + text), std::runtime_error) << text;
    }
    EXPECT_THROW(filled("no heading"), std::runtime_error);
}

TEST_F(Chapter, ContentsNestTheSecondLevel)
{
    const std::string page = filled("<h2 id=\"a\">A</h2><h3 id=\"b\">B <i>b</i></h3>"
                                    "<h2 id=\"c\">C</h2><h2 id=\"d\">D</h2><h3 id=\"e\">E</h3>");
    EXPECT_THAT(page,
        HasSubstr("<li><a href=\"#a\">A</a><ul><li><a href=\"#b\">B</a></li></ul></li>\n"
                  "<li><a href=\"#c\">C</a></li>\n"
                  "<li><a href=\"#d\">D</a><ul><li><a href=\"#e\">E</a></li></ul></li>\n"));
}

TEST(ManualTables, NameTheChordsAndScalesByTheirNotes)
{
    EXPECT_THAT(manualTable("chords"), HasSubstr("<td>2</td><td>2</td>"));
    EXPECT_THAT(manualTable("chords"), HasSubstr("<td>0 3 7 10</td><td>C D# G A#</td>"));
    EXPECT_THAT(manualTable("scales"),
        HasSubstr("<td>Dorian</td><td>7</td><td>0 2 3 5 7 9 10</td><td>C D D# F G A A#</td>"));
    EXPECT_THAT(
        manualTable("action keys"), HasSubstr("<td>B3</td><td>59</td><td>mute action</td>"));
    EXPECT_THAT(manualTable("targets"), HasSubstr("<td>127</td><td>Poly ON</td>"));
    EXPECT_THAT(manualTable("host parameters"),
        HasSubstr("<td>looper</td><td>2 steps</td><td>8 steps</td>"));
}

// ---- The card

namespace {

class Card : public testing::Test {
protected:
    CPoint at(int tag, int step, float height)
    {
        const Place& place = findControl(tag)->place;
        return {
            place.left + step * 18 + 9, int(float(place.bottom) - height * float(place.height()))};
    }
    float velocity(int step) { return rig.engine.tracks.velocity.getAtIndex(step); }
    float pitch(int step) { return rig.engine.tracks.pitch.getAtIndex(step); }
    bool key(CKey key, char32_t character, int modifiers)
    {
        return rig.user->key({.character = character, .key = key, .modifiers = modifiers});
    }

    EditorRig rig;
};

} // namespace

TEST_F(Card, GridsDrawRampsTiltAndFineSteps)
{
    rig.user->drag(at(Tag::Velocity, 2, 0.5f), at(Tag::Velocity, 9, 0.5f));
    for (int step = 2; step <= 9; ++step)
        EXPECT_NEAR(velocity(step), 0.5f, 0.03f) << step;
    rig.user->drag(at(Tag::Velocity, 2, 0.2f), at(Tag::Velocity, 8, 0.8f), kLButton, kControl);
    EXPECT_NEAR(velocity(5), 0.5f, 0.05f);
    const float before = velocity(3), other = velocity(20);
    rig.user->drag(at(Tag::Velocity, 3, 0.5f), at(Tag::Velocity, 3, 0.8f), kLButton, kAlt);
    EXPECT_GT(velocity(3), before);
    EXPECT_GT(velocity(20), other);
    rig.user->drag(at(Tag::Velocity, 4, 0.5f), at(Tag::Velocity, 9, 0.8f), kLButton, kShift);
    EXPECT_NEAR(velocity(4), 0.5f + 0.002f * 19.5f, 0.03f);

    rig.user->wheel(at(Tag::Velocity, 4, 0.5f), 1);
    const float nudged = velocity(4);
    rig.user->wheel(at(Tag::Velocity, 4, 0.5f), 1);
    EXPECT_NEAR(velocity(4) - nudged, 0.0175f, 1e-4f);
    const float note = pitch(4);
    rig.user->wheel(at(Tag::Pitch, 4, 0.5f), 1);
    EXPECT_EQ(pitch(4), note + 1);
}

TEST_F(Card, LinesPaintClearAndTurn)
{
    KWListLine& chords = rig.engine.tracks.chord;
    rig.user->wheel(at(Tag::Chord, 3, 0.5f), 1);
    const float chosen = chords.step(3);
    EXPECT_GT(chosen, 0);
    rig.user->drag(at(Tag::Chord, 3, 0.5f), at(Tag::Chord, 7, 0.5f), kLButton, kShift);
    EXPECT_EQ(chords.step(7), chosen);
    rig.click(at(Tag::Chord, 5, 0.5f), kRButton);
    EXPECT_EQ(chords.step(5), 0);
    EXPECT_EQ(chords.step(6), chosen);
    rig.user->click(at(Tag::Chord, 6, 0.5f), kLButton, kControl);
    EXPECT_EQ(chords.step(7), 0);
}

TEST_F(Card, ClearingVelocityEmptiesTheSwitchesOfAllPatternsAndADragBringsThemBack)
{
    KWBtnLine& on = rig.engine.tracks.velocityOn;
    rig.click(EditorRig::middle(*findControl(Tag::VelocityClear)));
    for (int pattern = 0; pattern < kPatterns; ++pattern)
        EXPECT_EQ(on.stepAt(pattern, 4), 0) << pattern;
    EXPECT_EQ(velocity(4), 0);
    rig.click(at(Tag::VelocityOn, 0, 0.5f));
    rig.user->drag(at(Tag::VelocityOn, 0, 0.5f), at(Tag::VelocityOn, 31, 0.5f));
    for (int step = 0; step < kTrackSteps; ++step)
        EXPECT_EQ(on.step(step), 1) << step;
}

TEST_F(Card, KnobsAndLoopBarsComeBack)
{
    const CPoint knob = EditorRig::middle(*findControl(Tag::VelocityThreshold));
    rig.user->drag(knob, {knob.x, knob.y + 40});
    const float moved = rig.engine.parameters.raw(Tag::VelocityThreshold);
    rig.user->wait(2000);
    rig.user->doubleClick(knob);
    const float start = parameterEntry(Tag::VelocityThreshold)->defaultRaw;
    EXPECT_NE(moved, start);
    EXPECT_EQ(rig.engine.parameters.raw(Tag::VelocityThreshold), start);

    const KWZoneHandlerContainer& loop = rig.engine.tracks.pitchLoop;
    rig.user->drag(at(Tag::PitchLoop, 31, 0.5f), at(Tag::PitchLoop, 15, 0.5f));
    EXPECT_EQ(loop.end(0), 15);
    rig.user->drag(at(Tag::PitchLoop, 8, 0.5f), at(Tag::PitchLoop, 12, 0.5f));
    EXPECT_EQ(loop.start(0), 4);
    EXPECT_EQ(loop.end(0), 19);
    rig.user->doubleClick(at(Tag::PitchLoop, 10, 0.5f));
    EXPECT_EQ(loop.end(0) - loop.start(0), 31);
}

TEST_F(Card, KeysPlayUndoAndSize)
{
    rig.engine.setParameter(Tag::Play, 0.0f);
    VstKeyCode f2{};
    f2.virt = 41;
    EXPECT_TRUE(rig.editor.onKeyDown(f2));
    EXPECT_EQ(rig.engine.parameters.index(Tag::Play), 1);
    EXPECT_TRUE(key(CKey::Space, ' ', 0));
    EXPECT_EQ(rig.engine.parameters.index(Tag::Play), 0);

    const float before = velocity(4);
    rig.click(at(Tag::Velocity, 4, before > 0.5f ? 0.2f : 0.9f));
    const float after = velocity(4);
    EXPECT_NE(after, before);
    EXPECT_TRUE(key(CKey::None, 'z', kControl));
    EXPECT_EQ(velocity(4), before);
    EXPECT_TRUE(key(CKey::None, 'z', kControl | kShift));
    EXPECT_EQ(velocity(4), after);
    EXPECT_TRUE(key(CKey::None, 'z', kControl));
    EXPECT_TRUE(key(CKey::None, 'y', kControl));
    EXPECT_EQ(velocity(4), after);

    const double scale = rig.editor.getScale();
    EXPECT_TRUE(key(CKey::None, '+', kControl));
    EXPECT_GT(rig.editor.getScale(), scale);
    EXPECT_TRUE(key(CKey::None, '-', kControl));
    EXPECT_EQ(rig.editor.getScale(), scale);
}

TEST_F(Card, TabWalksArrowsMoveAndMenusAnswerToKeys)
{
    std::set<const CView*> visited;
    const CView* first = nullptr;
    for (int i = 0; i < 30; ++i) {
        ASSERT_TRUE(key(CKey::Tab, 0, 0));
        visited.insert(rig.editor.getFrame()->getFocusView());
        first = first ? first : rig.editor.getFrame()->getFocusView();
    }
    EXPECT_EQ(visited.size(), 30u);
    for (int i = 0; i < 29; ++i)
        ASSERT_TRUE(key(CKey::Tab, 0, kShift));
    EXPECT_EQ(rig.editor.getFrame()->getFocusView(), first);

    const auto focus = [&](int tag) {
        for (int i = 0; i < 700; ++i) {
            key(CKey::Tab, 0, 0);
            const auto* control = dynamic_cast<CControl*>(rig.editor.getFrame()->getFocusView());
            if (control && control->getTag() == tag)
                return true;
        }
        return false;
    };
    ASSERT_TRUE(focus(Tag::MasterGateTime));
    const float before = rig.engine.parameters.raw(Tag::MasterGateTime);
    EXPECT_TRUE(key(CKey::Up, 0, 0));
    const float coarse = rig.engine.parameters.raw(Tag::MasterGateTime) - before;
    EXPECT_GT(coarse, 0);
    EXPECT_TRUE(key(CKey::Up, 0, kShift));
    const float fine = rig.engine.parameters.raw(Tag::MasterGateTime) - before - coarse;
    EXPECT_GT(fine, 0);
    EXPECT_LT(fine, coarse);

    ASSERT_TRUE(focus(Tag::HalfSpeed));
    EXPECT_TRUE(key(CKey::Return, 0, 0));
    EXPECT_EQ(rig.engine.parameters.index(Tag::HalfSpeed), 1);
    ASSERT_TRUE(focus(Tag::PitchRandom));
    const StateImage drawn(rig.engine);
    EXPECT_TRUE(key(CKey::Return, 0, 0));
    EXPECT_THAT(StateImage(rig.engine).changedSince(drawn), testing::ElementsAre(Tag::Pitch));

    ASSERT_TRUE(focus(Tag::Scale));
    const int scale = rig.engine.parameters.index(Tag::Scale);
    for (const CKey last : {CKey::Escape, CKey::Return}) {
        EXPECT_TRUE(key(CKey::Return, 0, 0));
        rig.idle();
        EXPECT_TRUE(key(CKey::Down, 0, 0));
        EXPECT_TRUE(key(CKey::Down, 0, 0));
        EXPECT_TRUE(key(last, 0, 0));
        rig.idle();
        EXPECT_EQ(rig.engine.parameters.index(Tag::Scale) == scale, last == CKey::Escape);
    }
}

TEST_F(Card, TheKeyboardHoldsAndLatches)
{
    const CRect white = keyRect(60, findControl(551)->place.height());
    const Place& keys = findControl(551)->place;
    const CPoint middleC(keys.left + white.left + 6, keys.bottom - 6);
    const auto tick = [&] {
        float left[64] = {}, right[64] = {};
        float* outputs[] = {left, right};
        rig.engine.processBlock(outputs, 64);
    };
    rig.user->press(middleC);
    tick();
    EXPECT_TRUE(rig.engine.keyState.hasNote(60));
    rig.user->release(middleC);
    tick();
    EXPECT_FALSE(rig.engine.keyState.hasNote(60));
    rig.click(middleC, kRButton);
    tick();
    EXPECT_TRUE(rig.engine.keyState.hasNote(60));
    rig.click(middleC, kRButton);
    tick();
    EXPECT_FALSE(rig.engine.keyState.hasNote(60));
}

} // namespace ormund
