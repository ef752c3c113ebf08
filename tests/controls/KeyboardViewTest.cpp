#include "tests/controls/ControlRig.h"

#include "controls/KWKeyboardView.h"
#include "controls/KWPolyObjectView.h"
#include "data/music/KWKeyState.h"
#include "platform/Messages.h"

namespace ormund {

using testing::ElementsAre;

namespace {

// Two octaves of 12 pixel keys, 50 high, at (100, 100), from note 24.
class Keyboard : public ControlRig {
protected:
    Keyboard()
    {
        view = add<KWKeyboardView>(CRect(100, 100, 268, 150), 551);
        view->octaves = 2;
        view->keyState = &keys;
        view->baseNote = &base;
        view->whiteLeft = white.get();
        view->whiteMiddle = white.get();
        view->whiteRight = white.get();
        view->blackKey = black.get();
        const int lefts[] = {8, 20, 44, 56, 68};
        for (size_t i = 0; i < 5; ++i)
            view->blackKeyRects[i] = CRect(lefts[i], 0, lefts[i] + 8, 30);
    }
    static CPoint whiteKey(int index, int depth = 45) { return {106 + index * 12, 100 + depth}; }

    KWKeyState keys;
    Crossing<float> base = 24.0f;
    CShared<CBitmap> white = makeStrip(12, 50, 9);
    CShared<CBitmap> black = makeStrip(8, 30, 6);
    KWKeyboardView* view;
};

TEST_F(Keyboard, FindsEveryKeyOfAnOctaveWithTheBlackOnesOnTop)
{
    std::vector<int> whites;
    for (int i = 0; i < 7; ++i)
        whites.push_back(view->noteAt(whiteKey(7 + i)));
    EXPECT_THAT(whites, ElementsAre(36, 38, 40, 41, 43, 45, 47));
    std::vector<int> blacks;
    for (const CRect& key : view->blackKeyRects)
        blacks.push_back(view->noteAt({100 + key.left + 4, 110}));
    EXPECT_THAT(blacks, ElementsAre(25, 27, 30, 32, 34));
    EXPECT_EQ(view->noteAt({112, 140}), 26); // below a black key the white one answers
    EXPECT_EQ(view->noteAt({268, 140}), -1); // the edge lies in an octave that is not drawn
    view->baseNote = nullptr;
    EXPECT_EQ(view->noteAt(whiteKey(0)), 0);
}

TEST_F(Keyboard, AZoneThatIsNamedAfterTheFirstPaintIsShown)
{
    EXPECT_EQ(shownFrame(106, 145), 0);
    keys.setClass(24, 4);
    keys.setClass(25, 2);
    EXPECT_EQ(shownFrame(106, 145), 4);
    EXPECT_EQ(shownFrame(112, 110), 2);
}

TEST_F(Keyboard, APressPostsANoteLouderTheLowerItIs)
{
    user.press(whiteKey(0, 0));
    EXPECT_EQ(keys.noteOn.peek(), 24);
    EXPECT_EQ(keys.noteOnVelocity, 27);
    EXPECT_EQ(keys.noteOn.take(), 24);
    keys.setNote(24, true);
    user.release(whiteKey(0, 0));
    EXPECT_EQ(keys.noteOff.take(), 24);
    keys.setNote(24, false);
    user.press(whiteKey(0, 49));
    EXPECT_EQ(keys.noteOnVelocity, 125);
    user.release({390, 290});                       // also outside the view
    EXPECT_EQ(keys.noteOn.peek(), Mailbox::kEmpty); // not taken, so it never sounds
    EXPECT_EQ(keys.noteOff.take(), 24);
}

TEST_F(Keyboard, ALitNoteGoesToTheOffSlotAndTheRightButtonLatches)
{
    keys.setNote(26, true);
    user.press(whiteKey(1));
    EXPECT_EQ(keys.noteOff.take(), 26);
    EXPECT_EQ(keys.noteOn.peek(), Mailbox::kEmpty);
    user.release(whiteKey(1));
    EXPECT_EQ(keys.noteOff.peek(), Mailbox::kEmpty);
    user.press(whiteKey(2), kRButton);
    EXPECT_EQ(keys.noteOn.take(), 28);
    user.release(whiteKey(2), kRButton);
    EXPECT_EQ(keys.noteOff.peek(), Mailbox::kEmpty); // stays on
}

TEST_F(Keyboard, AGlissandoGoesAsFastAsTheEngineTakesIt)
{
    user.press(whiteKey(0));
    user.move(whiteKey(1)); // the slot is still full
    EXPECT_EQ(keys.noteOn.take(), 24);
    keys.setNote(24, true);
    user.move(whiteKey(2));
    EXPECT_EQ(keys.noteOff.take(), 24); // first the old note ends
    EXPECT_EQ(keys.noteOn.peek(), Mailbox::kEmpty);
    keys.setNote(24, false);
    user.move({whiteKey(2).x + 1, 145});
    EXPECT_EQ(keys.noteOn.take(), 28);
    user.release(whiteKey(2));
    EXPECT_EQ(keys.noteOff.take(), 28);
}

TEST_F(Keyboard, PickModeReportsNotesAndTouchesNoState)
{
    view->pickMode = true;
    view->whiteLeft = nullptr;
    user.press(whiteKey(0));
    user.move(whiteKey(1));
    user.release(whiteKey(1));
    EXPECT_EQ(ear.take(), "551=24 551=26 551=-1 ");
    EXPECT_EQ(keys.noteOn.peek(), Mailbox::kEmpty);
    view->pickMode = false; // no pictures and no picking: not a keyboard
    EXPECT_EQ(view->onMouseDown(whiteKey(0), kLButton), kMouseEventNotHandled);
}

TEST_F(Keyboard, KeysShowTheirClassPlusWhetherTheyAreLit)
{
    EXPECT_EQ(shownFrame(106, 145), 0);
    keys.setNote(24, true);
    keys.setNote(26, true);
    EXPECT_EQ(shownFrame(106, 145), 1);
    EXPECT_EQ(shownFrame(118, 145), 1); // runs are broken without chainWhite
    view->chainWhite = true;
    view->setDirty(true);
    EXPECT_EQ(shownFrame(118, 145), 2);
    keys.setClass(24, 3);
    keys.setClass(25, 2);
    keys.setNote(25, true);
    EXPECT_EQ(shownFrame(106, 145), 4);
    EXPECT_EQ(shownFrame(112, 110), 3);
    base = 26.0f;
    EXPECT_EQ(shownFrame(106, 145), 1);
    const int before = window->presents;
    idle(5);
    EXPECT_EQ(window->presents, before);
}

TEST_F(Keyboard, OctaveButtonsStayWithinTheNotesAndNeverComeBackToZero)
{
    KWControl button({}, nullptr, KWKeyboardView::kOctaveUp, frame);
    view->valueChanged(&button);
    EXPECT_EQ(base, 24.0f); // its release
    button.setValue(1);
    for (int i = 0; i < 20; ++i)
        view->valueChanged(&button);
    EXPECT_EQ(base, 96.0f);
    button.setTag(KWKeyboardView::kOctaveDown);
    for (int i = 0; i < 20; ++i)
        view->valueChanged(&button);
    EXPECT_EQ(base, 12.0f);
    forgetMessage();
    testing::internal::CaptureStderr();
    button.setTag(3);
    view->valueChanged(&button);
    testing::internal::GetCapturedStderr();
    EXPECT_THAT(currentMessage(), testing::StartsWith("unknown value in KWKeyboardView"));
    forgetMessage();
}

TEST_F(Keyboard, ItsListenerHearsOfClicks)
{
    struct Listener : KWKeyListener {
        void keyClicked(int note, int velocity, bool right) override
        {
            heard += std::to_string(note) + (velocity > 100 ? " loud" : " soft")
                + (right ? " right " : " left ");
        }
        std::string heard;
    } listener;
    view->keyListener = &listener;
    user.click(whiteKey(0));
    user.click(whiteKey(1, 5), kRButton);
    EXPECT_EQ(listener.heard, "24 loud left 26 soft right ");
}

class Objects : public ControlRig {
protected:
    Objects()
    {
        set.objects = {{0, 0, 20, 10, 0, 10}, {10, 5, 20, 10, 0, 30}};
        view = add<KWPolyObjectView>(CRect(100, 100, 200, 150), 489);
        view->objectSet = &set;
        view->strip = strip.get();
    }
    KWPolyObjectSet set;
    CShared<CBitmap> strip = makeStrip(20, 10, 5);
    KWPolyObjectView* view;
};

TEST_F(Objects, LieFromTheBottomUpwardAndTheLaterOnTop)
{
    EXPECT_EQ(view->objectRect(0), CRect(100, 140, 120, 150));
    EXPECT_EQ(view->objectAt({115, 142}), 1);
    EXPECT_EQ(view->objectAt({115, 147}), 0);
    EXPECT_EQ(view->objectAt({150, 120}), -1);
    EXPECT_EQ(shownFrame(105, 145), 1);
    EXPECT_EQ(shownFrame(115, 142), 3);
    set.alpha = {0, 0};
    ++set.revision;
    EXPECT_EQ(shownFrame(105, 145), -1);
}

TEST_F(Objects, ReportGesturesAndMoveNothingThemselves)
{
    EXPECT_EQ(view->onMouseDown({150, 120}, kLButton), kMouseEventNotHandled);
    user.press({105, 145}, kRButton);
    EXPECT_EQ(view->getGesture().pressed, 1);
    EXPECT_EQ(view->getGesture().rightPressed, 1);
    EXPECT_EQ(view->getGesture().objectIndex, 0);
    user.move({112, 141});
    EXPECT_EQ(view->getGesture().deltaX, 7);
    EXPECT_EQ(view->getGesture().deltaY, -4);
    EXPECT_EQ(view->objectRect(0), CRect(100, 140, 120, 150));
    user.release({112, 141}, kRButton);
    EXPECT_EQ(view->getGesture().pressed, 0);
    EXPECT_EQ(view->getGesture().deltaX, 0);
    view->enabled = false;
    EXPECT_EQ(view->onMouseDown({105, 145}, kLButton), kMouseEventNotHandled);
    view->objectSet = nullptr;
    view->setDirty(true);
    idle();
}

} // namespace

} // namespace ormund
