#include "tests/controls/ControlRig.h"

#include "controls/KWDisplay.h"
#include "controls/KWImage.h"
#include "controls/KWKnob.h"
#include "controls/KWMouseArea.h"

#include <cmath>
#include <limits>

namespace ormund {

namespace {

class Knobs : public ControlRig {
protected:
    KWKnob* knob(int frames = 11)
    {
        strip = makeStrip(40, 40, frames);
        return add<KWKnob>(CRect(100, 100, 140, 140), 4, strip.get(), 40, frames, 1.0f);
    }
    CShared<CBitmap> strip;
};

TEST_F(Knobs, ADragMovesByHundredPixelsForTheRangeAndTwoThousandWithShift)
{
    auto* up = knob();
    user.press({120, 120});
    user.move({120, 95});
    EXPECT_FLOAT_EQ(up->getValue(), 0.25f);
    user.move({120, 85}, kShift);
    EXPECT_FLOAT_EQ(up->getValue(), 0.255f);
    user.move({120, -400});
    EXPECT_FLOAT_EQ(up->getValue(), 1.0f);
    user.release({120, -400});
    const std::string heard = ear.take();
    EXPECT_EQ(heard.substr(0, 2), "[ ");
    EXPECT_EQ(heard.substr(heard.size() - 2), "] ");
    EXPECT_EQ(std::count(heard.begin(), heard.end(), '['), 1);

    up->horizontal = true;
    user.wait(1000);
    user.drag({120, 120}, {110, 60});
    EXPECT_FLOAT_EQ(up->getValue(), 0.9f);
}

TEST_F(Knobs, AbsoluteModeTakesThePlaceUnderThePointer)
{
    auto* slider = knob();
    slider->mode = KWKnob::kAbsolute;
    slider->horizontal = true;
    user.press({110, 105});
    EXPECT_FLOAT_EQ(slider->getValue(), 0.25f);
    user.move({130, 105});
    EXPECT_FLOAT_EQ(slider->getValue(), 0.75f);
    user.move({300, 105});
    EXPECT_FLOAT_EQ(slider->getValue(), 1.0f);
    user.release({300, 105});
    slider->horizontal = false;
    user.wait(1000);
    user.press({110, 110});
    EXPECT_FLOAT_EQ(slider->getValue(), 0.75f);
    user.move({110, 120}); // from here on it moves relatively
    EXPECT_FLOAT_EQ(slider->getValue(), 0.65f);
    user.release({110, 120});
}

TEST_F(Knobs, ControlAndADoubleClickResetOnce)
{
    auto* reset = knob();
    reset->setDefaultValue(0.3f);
    user.click({120, 120}, kLButton, kControl);
    EXPECT_EQ(ear.take(), "[ 4=0.3 ] ");
    reset->setValue(0.9f);
    user.wait(1000);
    user.doubleClick({120, 120});
    EXPECT_FLOAT_EQ(reset->getValue(), 0.3f);
}

TEST_F(Knobs, AListTakesTheClickedRowAndIsDraggedLikeAnyOther)
{
    auto* list = knob(4);
    list->roundFrame = true;
    list->rowHeight = 9;
    list->rowsEnd = 38;
    for (const auto& [y, row] :
        {std::pair{137, 0}, {129, 0}, {128, 1}, {111, 2}, {110, 3}, {100, 3}}) {
        user.click({120, y}); // a second click at once is no reset
        user.click({120, y});
        EXPECT_EQ(list->frameAt(list->getValue()), row) << y;
    }
    ear.take();
    list->setValue(0.5f);
    user.wait(1000);
    user.press({120, 137});
    user.move({120, 127});
    user.move({120, 137});
    user.release({120, 137});
    EXPECT_EQ(ear.take(), "[ 4=0.6 4=0.5 ] ");
}

TEST_F(Knobs, TheWheelHasTwoSpeedsAndCanBeOff)
{
    auto* wheeled = knob();
    user.wheel({120, 120}, 1);
    EXPECT_FLOAT_EQ(wheeled->getValue(), 0.0175f);
    user.wheel({120, 120}, 1, kShift);
    EXPECT_FLOAT_EQ(wheeled->getValue(), 0.023f);
    user.wheel({120, 120}, -50);
    EXPECT_EQ(wheeled->getValue(), 0);
    wheeled->noWheel = true;
    user.wheel({120, 120}, 1);
    EXPECT_EQ(wheeled->getValue(), 0);
}

TEST_F(Knobs, TheFrameIsTruncatedAndTheTopValueShowsTheLastOne)
{
    auto* shown = knob(11);
    struct Case {
        float value;
        int plain;
        int rounded;
    };
    for (const Case& c : {Case{0, 0, 0}, {0.099f, 0, 1}, {0.5f, 5, 5}, {0.999f, 9, 10}, {1, 10, 10},
             {7, 10, 10}, {-1, 0, 0}}) {
        shown->roundFrame = false;
        EXPECT_EQ(shown->frameAt(c.value), c.plain) << c.value;
        shown->roundFrame = true;
        EXPECT_EQ(shown->frameAt(c.value), c.rounded) << c.value;
    }
    shown->setValue(1);
    shown->setDirty(true);
    EXPECT_EQ(shownFrame(120, 120), 10);
}

TEST_F(Knobs, ItFollowsItsSourceExceptDuringADrag)
{
    auto* follower = knob(11);
    Crossing<float> source = 5.0f;
    Crossing<float> press = 0.0f;
    follower->valueSource = &source;
    follower->sourceMax = 10;
    follower->pressFlag = &press;
    EXPECT_EQ(shownFrame(120, 120), 5);
    EXPECT_FLOAT_EQ(follower->getValue(), 0.5f);
    user.press({120, 120});
    EXPECT_EQ(press, 1.0f);
    source = 0.0f;
    user.move({120, 100});
    idle();
    EXPECT_FLOAT_EQ(follower->getValue(), 0.7f);
    EXPECT_EQ(shownFrame(120, 120), 7);
    user.release({120, 100});
    EXPECT_EQ(press, 0.0f);
    EXPECT_EQ(shownFrame(120, 120), 0);
    follower->sourceMax = follower->sourceMin; // no range to divide by
    EXPECT_EQ(shownFrame(120, 120), 0);
}

TEST_F(Knobs, ArrowKeysGoByPositionsThatTruncateBack)
{
    auto* steps = knob(25);
    steps->roundFrame = true;
    user.click({120, 120});
    for (int k = 1; k < 25; ++k) {
        user.key({.key = CKey::Right});
        EXPECT_EQ(static_cast<int>(steps->getValue() * 25), k);
    }
    ear.take();
    user.key({.key = CKey::Right});
    EXPECT_EQ(ear.take(), ""); // at the end
}

TEST_F(Knobs, TheHandleAndTheMarkerStandWhereTheirValuesAre)
{
    auto handle = makeStrip(10, 10, 3);
    auto marker = makeStrip(4, 4, 20);
    auto* slider = add<KWKnob>(CRect(0, 100, 100, 110), 4, handle.get(), 10, 1, 1.0f);
    slider->mode = KWKnob::kSliderHandle;
    slider->markerMode = KWKnob::kMarkerX;
    slider->setValue(0.5f);
    EXPECT_EQ(shownFrame(44, 105), -1);
    EXPECT_EQ(shownFrame(45, 109), 0);
    EXPECT_EQ(shownFrame(54, 105), 0);
    EXPECT_EQ(shownFrame(55, 105), -1);
    Crossing<float> modulated = 1.0f;
    slider->markerBitmap = marker.get();
    slider->markerSource = &modulated;
    idle();
    EXPECT_EQ(shownFrame(97, 101), 0);
    modulated = -1.0f; // none
    idle();
    EXPECT_EQ(shownFrame(97, 101), -1);
    slider->markerMode = KWKnob::kMarkerY;
    slider->setViewSize({0, 100, 10, 200});
    slider->setValue(1);
    EXPECT_EQ(shownFrame(5, 105), 0); // vertical handles rise with the value
}

TEST_F(Knobs, AnAreaGrowsByThePaddingAndNullStripsDrawPlainly)
{
    auto* plain = add<KWKnob>(CRect(100, 100, 140, 140), 4, nullptr, 0, 0, 1.0f);
    plain->padding = 5;
    plain->setSizeAndArea({100, 100, 140, 140});
    EXPECT_TRUE(plain->hitTest({96, 120}));
    EXPECT_FALSE(plain->hitTest({94, 120}));
    idle();
    EXPECT_EQ(window->pixel(102, 102), 0xFFFFFFu);
}

class Displays : public ControlRig {
protected:
    KWDisplay* display() { return add<KWDisplay>(CRect(100, 100, 160, 120), 9); }
};

void percent(float value, char* text)
{
    std::snprintf(text, kValueTextSize, "%d %%", static_cast<int>(value * 100));
}

TEST_F(Displays, TheTextIsBuiltFromFormatPrefixAndUnit)
{
    auto* shown = display();
    shown->setValue(0.5f);
    EXPECT_EQ(shown->valueText(), "0.500");
    shown->numberPrecision = 1;
    shown->numberWidth = 5;
    shown->unit = " s";
    EXPECT_EQ(shown->valueText(), "  0.5 s");
    shown->prefix = "time";
    EXPECT_EQ(shown->valueText(), "time   0.5 s");
    shown->valueToString = percent;
    shown->prefix = "Level  ";
    shown->unit = " full";
    EXPECT_EQ(shown->valueText(), "Level  50 % full");
    shown->valueToString = nullptr;
    shown->intValue = true;
    shown->prefix.clear();
    shown->unit = "  Steps";
    shown->setValue(7.9f);
    EXPECT_EQ(shown->valueText(), "7  Steps");
    shown->belowText = "off";
    EXPECT_EQ(shown->valueText(), "7  Steps"); // the threshold is far away
    shown->belowThreshold = 8;
    EXPECT_EQ(shown->valueText(), "off");
    shown->belowThreshold = -300000;
    shown->textSource = shown;
    EXPECT_EQ(shown->valueText(), "no info");
}

TEST_F(Displays, ADragKeepsFractionsAndTheReleaseTruncates)
{
    auto* edited = display();
    edited->setMax(16);
    edited->intValue = true;
    edited->sensitivity = 16;
    user.press({120, 110});
    user.move({120, 100});
    EXPECT_FLOAT_EQ(edited->getValue(), 1.6f);
    user.release({120, 100});
    EXPECT_EQ(edited->getValue(), 1);
    EXPECT_EQ(ear.take(), "[ 9=1.6 ] ");
    edited->horizontalDrag = true;
    edited->setValue(20); // past the maximum: limited at the next drag, not by itself
    EXPECT_EQ(edited->getValue(), 20);
    user.drag({120, 110}, {130, 110});
    EXPECT_EQ(edited->getValue(), 16);
}

TEST_F(Displays, ATitleAloneIsNotEdited)
{
    auto* title = add<KWDisplay>(CRect(100, 100, 160, 120), 9, "words", false);
    user.drag({120, 110}, {120, 60});
    user.wheel({120, 110}, 3);
    EXPECT_EQ(title->getValue(), 0);
    EXPECT_EQ(ear.take(), "");
}

TEST_F(Displays, AChangeBelowTheShownFrameCostsNoRedraw)
{
    auto strip = makeStrip(60, 20, 5);
    auto* shown = add<KWDisplay>(CRect(100, 100, 160, 120), 9, "", false);
    Crossing<float> source = 0.0f;
    shown->strip = strip.get();
    shown->frameHeight = 20;
    shown->frameCount = 5;
    shown->valueSource = &source;
    EXPECT_EQ(shownFrame(120, 110), 0);
    const int before = window->presents;
    source = 0.2f;
    idle();
    EXPECT_EQ(window->presents, before);
    source = 0.26f;
    EXPECT_EQ(shownFrame(120, 110), 1);
    shown->roundFrame = true;
    source = 0.4f;
    EXPECT_EQ(shownFrame(120, 110), 2);
    shown->sourceIsIndex = true;
    source = 4.0f;
    EXPECT_EQ(shownFrame(120, 110), 4);
}

TEST_F(Displays, AHintThatAppearsShowsThePresentValue)
{
    Crossing<float> source = 3.0f;
    auto* hint = display();
    hint->valueSource = &source;
    hint->sourceIsIndex = true;
    hint->intValue = true;
    hint->setVisible(false);
    idle(3);
    source = 5.0f;
    hint->setVisible(true);
    idle();
    EXPECT_EQ(hint->valueText(), "5");
}

TEST_F(Displays, AnImageSlidesStretchesScrollsAndFades)
{
    auto strip = makeStrip(20, 10, 4);
    auto* image = add<KWImage>(CRect(100, 100, 120, 110), 5, strip.get(), nullptr);
    Crossing<float> x = 0.0f;
    Crossing<float> width = 0.0f;
    Crossing<float> offset = 0.0f;
    image->xSource = &x;
    image->widthSource = &width;
    image->offsetYSource = &offset;
    EXPECT_EQ(shownFrame(105, 105), 0);
    x = 50.9f;
    offset = 20.0f;
    idle();
    EXPECT_EQ(shownFrame(105, 105), -1);
    EXPECT_EQ(shownFrame(150, 105), 2);
    width = -15.0f;
    idle();
    EXPECT_EQ(shownFrame(160, 105), -1);
    EXPECT_FALSE(image->hitTest({151, 105})); // the mouse goes to what lies below
    image->mouseEnabledImage = true;
    EXPECT_TRUE(image->hitTest({151, 105}));
    Crossing<float> alpha = 0.0f;
    image->alphaSource = &alpha;
    image->setDirty(true);
    EXPECT_EQ(shownFrame(151, 105), -1);
}

TEST_F(Displays, AMouseAreaGivesNumbersAndLimitsThemOnlyWhileDragging)
{
    auto* area = add<KWMouseArea>(CRect(100, 100, 200, 150), 358);
    user.press({150, 110}, kLButton, kShift);
    EXPECT_FLOAT_EQ(area->getState().x, 0.5f);
    EXPECT_FLOAT_EQ(area->getState().y, 0.2f);
    EXPECT_EQ(area->getState().leftButton, 1);
    EXPECT_EQ(area->getState().shift, 1);
    user.move({300, 0});
    EXPECT_EQ(area->getState().x, 1);
    EXPECT_EQ(area->getState().y, 0);
    area->clamp = false;
    user.move({300, 0});
    EXPECT_EQ(area->getState().x, 2);
    user.release({300, 0});
    EXPECT_EQ(area->getState().leftButton, 0);
    EXPECT_EQ(area->getState().x, 2);
    EXPECT_FALSE(area->isTracking());
    const std::string heard = ear.take();
    EXPECT_EQ(std::count(heard.begin(), heard.end(), '['), 1);
    EXPECT_EQ(heard.back() == ' ' && heard[heard.size() - 2] == ']', true);
}

} // namespace

} // namespace ormund
