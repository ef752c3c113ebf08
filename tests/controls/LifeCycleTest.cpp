// Frames that go in the middle of something, many of them, and two at once.
#include "tests/controls/ControlRig.h"

#include "controls/KWBtnLineView.h"
#include "controls/KWButton.h"
#include "controls/KWKeyboardView.h"
#include "controls/KWKnob.h"
#include "controls/KWListLineView.h"
#include "controls/KWListLineViewMenu.h"
#include "controls/KWOptionMenu.h"
#include "controls/KWTableView.h"
#include "controls/KWViewContainer.h"
#include "controls/KWZoneView.h"
#include "data/music/KWKeyState.h"
#include "data/music/KWSystemInfo.h"
#include "data/tracks/KWBtnLine.h"
#include "data/tracks/KWListLine.h"
#include "data/tracks/KWTableXY.h"
#include "data/tracks/KWZoneHandlerContainer.h"

#include <algorithm>
#include <random>

namespace ormund {

namespace {

// What outlives the frames: the engine's side.
struct Engine {
    Engine()
    {
        table.setFlags(0x1A28300);
        table.setRange(-12, 12, 0);
        list.maximum = 18.0f;
    }
    KWSystemInfo info;
    KWTableXY table{&info, 32};
    KWBtnLine switches{&info, 32, 16};
    KWListLine list{&info, 32, 16};
    KWZoneHandlerContainer loop{32, 16};
    KWKeyState keys;
    Crossing<float> value = 0.5f;
};

// A small editor over it, with everything that a hand can hold open.
class Editor {
public:
    explicit Editor(Engine& engine)
        : frame(new KWFrame(
            {0, 0, 400, 300}, std::make_unique<OffscreenWindow>(400, 300), nullptr, nullptr))
        , user(*frame)
    {
        auto* knob = add(new KWKnob({0, 0, 40, 40}, &ear, 1, frame, nullptr, 0, 0, 1));
        knob->valueSource = &engine.value;
        auto* grid = add(new KWTableView({0, 50, 320, 115}, &ear, 2, frame, true));
        grid->setTable(&engine.table);
        grid->setStrip(strip.get(), 25);
        auto* line = add(new KWBtnLineView({0, 120, 320, 130}, &ear, 3, frame));
        line->line = &engine.switches;
        line->strip = strip.get();
        auto* list = add(new KWListLineView({0, 140, 320, 156}, &ear, 4, frame));
        list->line = &engine.list;
        list->strip = strip.get();
        add(new KWZoneView({0, 160, 320, 169}, &ear, 5, frame, &engine.loop));
        auto* piano = add(new KWKeyboardView({0, 180, 336, 229}, &ear, 6, frame));
        piano->keyState = &engine.keys;
        piano->whiteLeft = piano->whiteMiddle = piano->whiteRight = strip.get();
        piano->blackKey = strip.get();
        auto* menu = add(new KWOptionMenu({340, 0, 400, 16}, &ear, 7, frame, "", 0u));
        for (int branch = 0; branch < 3; ++branch) {
            auto sub = std::make_unique<KWOptionMenu>(CRect(), nullptr, 8, frame, "", 0u);
            for (int i = 0; i < 40; ++i)
                sub->addEntry("leaf");
            menu->addSubMenu(std::move(sub), "branch");
        }
        knob->setPopupControl(menu);
        grid->setPopupControl(menu);
        auto* box = new KWViewContainer({100, 100, 200, 160}, &ear, 9, frame);
        box->addItem(new KWKnob({0, 0, 30, 30}, &ear, 10, frame, nullptr, 0, 0, 1), 5, 5);
        add(box);
        auto* button = add(new KWButton(
            {340, 20, 400, 40}, &ear, 11, frame, "menu", false, KWButton::kMenuOpener));
        button->setPopupControl(menu);
    }
    ~Editor() { frame->forget(); }

    template <typename Control>
    Control* add(Control* control)
    {
        frame->addView(control);
        return control;
    }

    Ear ear;
    CShared<CBitmap> strip = makeStrip(10, 65, 25);
    KWFrame* frame;
    FrameUser user;
};

TEST(LifeCycle, AFrameMayGoWithAMenuAGridOrADragOpen)
{
    Engine engine;
    for (int round = 0; round < 300; ++round) {
        Editor editor(engine);
        editor.frame->idle();
        switch (round % 5) {
        case 0:
            editor.user.click({370, 8});
            editor.user.move({370, 28}); // a branch is open
            break;
        case 1:
            editor.user.click({50, 148});
            break;
        case 2:
            editor.user.press({50, 80});
            break;
        case 3:
            editor.user.press({20, 20}, kRButton);
            break;
        default:
            editor.user.press({20, 200});
            break;
        }
        editor.frame->idle();
    }
}

TEST(LifeCycle, TwoEditorsOnOneEngineShowEachOthersEdits)
{
    Engine engine;
    Editor left(engine);
    Editor right(engine);
    left.user.click({370, 8}); // its open menu holds up this one alone
    right.user.drag({50, 110}, {50, 55});
    EXPECT_GT(engine.table.getAtIndex(5), 8);
    auto& window = static_cast<OffscreenWindow&>(left.frame->getWindow());
    left.frame->idle();
    EXPECT_GT(window.pixel(55, 80) & 255, 200u); // one of the highest frames
}

// Whatever comes in whatever order, nothing breaks, and every gesture that begins also ends.
TEST(LifeCycle, AThousandRandomGesturesLeaveNoGestureOpen)
{
    Engine engine;
    Editor editor(engine);
    std::minstd_rand random(7);
    const auto upTo = [&](int count) {
        return static_cast<int>(random() % static_cast<uint32_t>(count));
    };
    constexpr int kButtons[] = {kLButton, kRButton, kMButton};
    constexpr int kKeys[] = {0, kShift, kControl, kAlt, kApple, kShift | kControl};
    for (int i = 0; i < 1000; ++i) {
        const CPoint from(upTo(420) - 10, upTo(320) - 10);
        const CPoint to(upTo(420) - 10, upTo(320) - 10);
        const int button = kButtons[upTo(3)];
        const int keys = kKeys[upTo(6)];
        switch (upTo(6)) {
        case 0:
            editor.user.drag(from, to, button, keys);
            break;
        case 1:
            editor.user.click(from, button, keys);
            break;
        case 2:
            editor.user.wheel(from, static_cast<float>(upTo(7) - 3), keys);
            break;
        case 3:
            editor.user.doubleClick(from, keys);
            break;
        case 4:
            editor.user.key({.key = static_cast<CKey>(upTo(20)), .modifiers = keys});
            break;
        default:
            editor.frame->looseFocus();
            break;
        }
        editor.frame->idle();
    }
    while (editor.frame->modalControl)
        editor.frame->looseFocus();
    const std::string heard = editor.ear.take();
    EXPECT_EQ(
        std::count(heard.begin(), heard.end(), '['), std::count(heard.begin(), heard.end(), ']'));
    EXPECT_GT(std::count(heard.begin(), heard.end(), '['), 100);
}

} // namespace

} // namespace ormund
