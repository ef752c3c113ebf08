#include "tests/controls/ControlRig.h"

#include "controls/KWDisplay.h"
#include "controls/KWKnob.h"
#include "controls/KWViewContainer.h"

namespace ormund {

namespace {

class ControlBase : public ControlRig {
protected:
    // A control with one hover view, and the mouse above neither.
    KWControl* withHint()
    {
        auto* control = add<KWControl>(CRect(10, 10, 50, 50), 7);
        hint = add<KWDisplay>(CRect(200, 10, 300, 30), 8, "a hint", false);
        control->addHoverView(hint);
        idle();
        return control;
    }
    KWDisplay* hint = nullptr;
};

TEST(BitSet, CoversFourWordsAndIndexesBeyondReadTheFourthWord)
{
    KWBitSet128 set;
    for (const int bit : {0, 31, 32, 64, 127}) {
        EXPECT_FALSE(set.test(bit));
        set.set(bit, true);
        EXPECT_TRUE(set.test(bit)) << bit;
        EXPECT_FALSE(set.test(bit == 127 ? 126 : bit + 1));
    }
    EXPECT_TRUE(set.test(128 + 31));
    EXPECT_FALSE(set.test(128 + 30));
    set.set(31, false);
    EXPECT_FALSE(set.test(31));
    EXPECT_TRUE(set.test(0));
}

TEST_F(ControlBase, AClosedGateTakesAwayDrawingDirtAndMouse)
{
    KWBitSet128 gates;
    auto strip = makeStrip(40, 40, 2);
    auto* knob = add<KWKnob>(CRect(10, 10, 50, 50), 7, strip.get(), 40, 2, 1.0f);
    knob->setGate(&gates, 3);
    EXPECT_EQ(shownFrame(20, 20), -1);
    EXPECT_FALSE(knob->hitTest({20, 20}));
    knob->setDirty(true);
    EXPECT_FALSE(knob->isDirty());
    EXPECT_EQ(knob->onMouseDown({20, 20}, kLButton), kMouseEventNotHandled);

    gates.set(3, true);
    frame->setDirty(true);
    EXPECT_EQ(shownFrame(20, 20), 0);
    EXPECT_TRUE(knob->hitTest({20, 20}));
    knob->setVisible(false);
    EXPECT_EQ(shownFrame(20, 20), -1);
}

TEST_F(ControlBase, HintsComeAtTheThirdIdleAndGoAtTheSixth)
{
    withHint();
    user.move({20, 20});
    idle(2);
    EXPECT_FALSE(hint->isVisible());
    idle();
    EXPECT_TRUE(hint->isVisible());
    idle(20);
    EXPECT_TRUE(hint->isVisible()); // as long as the mouse rests
    user.move({100, 100});
    idle(5);
    EXPECT_TRUE(hint->isVisible());
    idle();
    EXPECT_FALSE(hint->isVisible());
}

TEST_F(ControlBase, LeavingBeforeTheDelayShowsNothing)
{
    withHint();
    user.move({20, 20});
    idle(2);
    user.move({100, 100});
    idle(30);
    EXPECT_FALSE(hint->isVisible());
}

TEST_F(ControlBase, AGateThatClosesUnderTheMouseTakesTheHintAway)
{
    KWControl* control = withHint();
    KWBitSet128 gates;
    gates.set(127, true);
    control->setGate(&gates, 127);
    user.move({20, 20});
    idle(3);
    ASSERT_TRUE(hint->isVisible());
    gates.set(127, false);
    idle();
    EXPECT_FALSE(hint->isVisible());
}

// A modal control that writes down its end and can be asked to open another.
class Sheet : public KWControl {
public:
    using KWControl::KWControl;
    void draw(CDrawContext* context) override
    {
        ++draws;
        KWControl::draw(context);
    }
    void endModal(int result) override
    {
        ++ends;
        KWControl::endModal(result);
    }
    bool closesWithFocus() const override { return isMenu; }
    int draws = 0;
    int ends = 0;
    bool isMenu = false;
};

TEST_F(ControlBase, ModalDisplayNestsAndMenusAloneCloseWithTheFocus)
{
    auto* first = add<Sheet>(CRect(0, 0, 100, 100), 1);
    auto* second = add<Sheet>(CRect(50, 50, 150, 150), 2);
    auto* under = add<KWKnob>(CRect(200, 200, 240, 240), 3, nullptr, 0, 0, 1.0f);
    first->beginModal(0, nullptr, 0);
    EXPECT_EQ(frame->getView(frame->getNbViews() - 1), first); // on top of the drawing order
    second->beginModal(0, nullptr, 0);
    EXPECT_EQ(frame->modalControl, second);
    EXPECT_EQ(second->previousModal, first);

    user.drag({220, 220}, {220, 200});
    EXPECT_EQ(under->getValue(), 0); // the modal control alone sees the mouse

    frame->looseFocus();
    EXPECT_EQ(frame->modalControl, second);
    second->isMenu = true;
    frame->looseFocus();
    EXPECT_EQ(frame->modalControl, first);
    first->endModal(0);
    EXPECT_EQ(frame->modalControl, nullptr);
    EXPECT_EQ(first->ends, 1);
    user.drag({220, 220}, {220, 200});
    EXPECT_FLOAT_EQ(under->getValue(), 0.2f);
}

TEST_F(ControlBase, AModalChildIsDrawnOnceAndAStrayOneLast)
{
    auto* child = add<Sheet>(CRect(0, 0, 100, 100), 1);
    child->beginModal(0, nullptr, 0);
    idle();
    child->draws = 0;
    frame->invalidRect(child->getViewSize());
    idle();
    EXPECT_EQ(child->draws, 1);
    child->endModal(0);

    Sheet stray({0, 0, 100, 100}, &ear, 9, frame);
    stray.beginModal(0, nullptr, 0);
    idle();
    EXPECT_GE(stray.draws, 1);
    stray.endModal(0);
}

TEST_F(ControlBase, AControlThatIsDestroyedLeavesNoTraceInTheModalChain)
{
    auto* first = add<Sheet>(CRect(0, 0, 100, 100), 1);
    auto middle = std::make_unique<Sheet>(CRect(), &ear, 2, frame);
    auto top = std::make_unique<Sheet>(CRect(), &ear, 3, frame);
    first->beginModal(0, nullptr, 0);
    middle->beginModal(0, nullptr, 0);
    top->beginModal(0, nullptr, 0);
    middle.reset();
    top.reset();
    EXPECT_EQ(frame->modalControl, first);
}

TEST_F(ControlBase, AContainerMovesItsChildrenClampsItselfAndClosesAtAPressOutside)
{
    auto* container = new KWViewContainer({0, 0, 100, 80}, &ear, 50, frame);
    container->style = KWControl::kFillBackground;
    auto* knob = new KWKnob({0, 0, 20, 20}, &ear, 51, frame, nullptr, 0, 0, 1.0f);
    auto* fixed = new KWDisplay({300, 200, 320, 210}, &ear, 52, frame);
    container->addItem(knob, 10, 5);
    container->addItem(fixed, KWViewContainer::kKeepPlace, 0);
    EXPECT_EQ(knob->getViewSize(), CRect(10, 5, 30, 25));
    EXPECT_EQ(fixed->getViewSize(), CRect(300, 200, 320, 210));

    const CPoint corner(380, 290); // beyond the frame's right and bottom edge
    container->beginModal(3, &corner, 0);
    EXPECT_EQ(container->getViewSize(), CRect(300, 220, 400, 300));
    EXPECT_EQ(knob->getViewSize(), CRect(310, 225, 330, 245));
    EXPECT_EQ(container->modalResult, 3);
    idle();
    EXPECT_EQ(window->pixel(395, 295), 0x0000FFu);

    user.drag({320, 240}, {320, 230}); // to the child, while the container is modal
    EXPECT_FLOAT_EQ(knob->getValue(), 0.1f);
    EXPECT_TRUE(container->isOpen);
    user.click({20, 20});
    EXPECT_FALSE(container->isOpen);
    EXPECT_EQ(frame->modalControl, nullptr);
    EXPECT_EQ(shownFrame(395, 295), -1);
    container->forget();
}

TEST_F(ControlBase, AContainerSendsEnterAndExitToTheChildUnderTheMouse)
{
    auto* container = add<KWViewContainer>(CRect(100, 100, 200, 200), 50);
    auto* child = new KWControl({0, 0, 20, 20}, &ear, 51, frame);
    container->addItem(child, 0, 0);
    hint = add<KWDisplay>(CRect(200, 10, 300, 30), 8, "a hint", false);
    child->addHoverView(hint);
    user.move({150, 150});
    idle(5);
    EXPECT_FALSE(hint->isVisible());
    user.move({110, 110});
    idle(5);
    EXPECT_TRUE(hint->isVisible());
    user.move({150, 150});
    idle(8);
    EXPECT_FALSE(hint->isVisible());
}

TEST_F(ControlBase, AShadowFadesOutToTheRightAndBelow)
{
    frame->setBackgroundColor(kWhiteCColor);
    auto* container = add<KWViewContainer>(CRect(100, 100, 150, 150), 50);
    container->style = KWControl::kFillBackground | KWControl::kDropShadow;
    container->beginModal(0, nullptr, 0);
    idle();
    const auto grey = [&](int x, int y) { return window->pixel(x, y) & 255; };
    EXPECT_NEAR(grey(150, 130), 255 - 128, 2);
    EXPECT_NEAR(grey(154, 130), 255 - 48, 2);
    EXPECT_NEAR(grey(130, 151), 255 - 108, 2);
    EXPECT_EQ(grey(155, 130), 255u);
}

TEST_F(ControlBase, ArrowKeysMoveTheFocusedControlAsOneGestureAndShowARing)
{
    auto* knob = add<KWKnob>(CRect(100, 100, 140, 140), 5, nullptr, 0, 0, 1.0f);
    EXPECT_FALSE(user.key({.key = CKey::Up}));
    user.click({120, 120});
    ear.take();
    idle();
    const uint32_t ground = window->pixel(97, 120);
    EXPECT_TRUE(user.key({.key = CKey::Up}));
    EXPECT_EQ(ear.take(), "[ 5=0.01 ] ");
    EXPECT_TRUE(user.key({.key = CKey::Left, .modifiers = kShift}));
    EXPECT_EQ(ear.take(), "[ 5=0.009 ] ");
    idle();
    EXPECT_NE(window->pixel(98, 120), ground);
    user.click({300, 200});
    idle();
    EXPECT_EQ(window->pixel(98, 120), ground);
    EXPECT_FALSE(user.key({.key = CKey::Up}));
    EXPECT_EQ(knob->getValue(), knob->getValue());
}

TEST_F(ControlBase, ALabelStandsAboveItsControl)
{
    auto* control = add<KWControl>(CRect(100, 100, 140, 120), 5);
    control->label = "Wide label";
    frame->invalidAll();
    idle();
    bool inkAbove = false;
    for (int x = 80; x < 160; ++x)
        for (int y = 88; y < 100; ++y)
            inkAbove = inkAbove || window->pixel(x, y) != 0;
    EXPECT_TRUE(inkAbove);
}

TEST_F(ControlBase, NothingDirtyMeansNothingPainted)
{
    auto strip = makeStrip(20, 20, 3);
    Crossing<float> source = 0.0f;
    for (int i = 0; i < 10; ++i)
        add<KWKnob>(CRect(i * 30, 0, i * 30 + 20, 20), i, strip.get(), 20, 3, 1.0f)->valueSource =
            &source;
    idle(3);
    const int before = window->presents;
    idle(50);
    EXPECT_EQ(window->presents, before);
    source = 1.0f;
    idle();
    EXPECT_EQ(window->presents, before + 1);
}

} // namespace

} // namespace ormund
