// The same classes as they draw without bitmaps, and the modes that the panel uses least.
#include "apps/controls-gallery/Gallery.h"
#include "controls/KWBtnLineView.h"
#include "controls/KWButton.h"
#include "controls/KWDisplay.h"
#include "controls/KWImage.h"
#include "controls/KWKnob.h"
#include "controls/KWListLineView.h"
#include "controls/KWListLineViewMenu.h"
#include "controls/KWLocalLink.h"
#include "controls/KWOptionMenu.h"
#include "controls/KWTableView.h"
#include "controls/KWZoneView.h"
#include "panel/Look.h"

#include <cmath>

namespace ormund {

namespace {

constexpr int kTop = 470;
constexpr float kPi = 3.14159265f;

KWTableView* colourView(
    const CRect& place, CControlListener* listener, long tag, KWFrame* frame, const CColor& hue)
{
    auto* view = new KWTableView(place, listener, tag, frame, false);
    view->colorBack = look::kWell;
    view->colorBar = kWhiteCColor;
    view->colorGrid = look::kHairline;
    view->colorOther = hue;
    view->colorLine = hue;
    return view;
}

} // namespace

void Gallery::addPlainTables()
{
    KWFrame* f = panel.get();
    caption(10, kTop, "CONNECTED BARS");
    connected.setFlags(0x1220200); // editable, over the skin, connecting lines
    for (int i = 0; i < 32; ++i)
        connected.setNormalized(
            static_cast<float>(i), 0.5f - 0.5f * std::cos(static_cast<float>(i) * kPi / 8));
    auto* ground = add(new KWDisplay(at(10, kTop + 14, 288, 65), this, 0, f, "", false));
    ground->backColor = look::kWell;
    ground->setMouseEnabled(false);
    auto* lines = add(colourView(at(10, kTop + 14, 288, 65), this, 84, f, look::kModulation));
    lines->setTable(&connected);
    lines->setStrip(bitmap(1064), 66);

    caption(310, kTop, "RUNNING STEP, CENTRED, TOGGLE");
    centred.setRange(-1, 1, 0);
    centred.setFlags(
        kTableCells | kTableCentred | kTableCentreLine | kTableEditable | kTableRunningStep);
    for (int i = 0; i < 16; ++i)
        centred.setValue(i, std::sin(static_cast<float>(i) * kPi / 8));
    auto* bars = add(colourView(at(310, kTop + 14, 160, 40), this, 85, f, look::kGate));
    bars->setTable(&centred);
    toggles.setFlags(kTableCells | kTableToggle | kTableEditable | kTableRunningStep);
    for (int i = 0; i < 16; i += 3)
        toggles.setValue(i, 1);
    auto* switches = add(colourView(at(310, kTop + 58, 160, 21), this, 86, f, look::kVelocity));
    switches->setTable(&toggles);
}

void Gallery::addPlainSteps()
{
    KWFrame* f = panel.get();
    caption(484, kTop, "LOOP BAR AND CHOICE GRID, DRAWN");
    auto* zone = add(new KWZoneView(at(484, kTop + 14, 288, 11), this, 94, f, &plainLoop));
    zone->zoneColor = look::kPitch;
    plainLoop.setZone(0, {2, 9});
    auto* ground = add(new KWDisplay(at(484, kTop + 32, 288, 16), this, 0, f, "", false));
    ground->backColor = look::kWell;
    ground->setMouseEnabled(false);
    bends.range = 20.0f;
    bends.maximum = 20.0f;
    for (int i = 0; i < 16; i += 2)
        bends.setStep(i, static_cast<float>(1 + i));
    auto* list = add(new KWListLineView(at(484, kTop + 32, 288, 16), this, 95, f));
    list->line = &bends;
    list->strip = bitmap(1072);
    list->runningStrip = bitmap(1073);
    list->getMenu()->columns = 8;
    auto* paint = add(new KWBtnLineView(at(484, kTop + 54, 288, 13), this, 96, f));
    paint->line = &mutes;
    paint->strip = bitmap(1067);
    paint->runningStrip = bitmap(1068);
    for (int i = 0; i < 16; i += 5)
        mutes.setStep(i, 1);
}

void Gallery::addPlainControls()
{
    KWFrame* f = panel.get();
    caption(786, kTop, "FIELDS, LINK, FADED, PICKER");
    auto* left = add(new KWOptionMenu(at(786, kTop + 14, 80, 16), this, 74, f, "",
        KWOptionMenu::kShowCurrent | KWOptionMenu::kAlignLeft | KWOptionMenu::kCheckCurrent));
    auto* right = add(new KWOptionMenu(at(872, kTop + 14, 78, 16), this, 75, f, "",
        KWOptionMenu::kShowCurrent | KWOptionMenu::kAlignRight | KWOptionMenu::kAlternateBack));
    for (KWOptionMenu* menu : {left, right}) {
        menu->font = font;
        menu->addEntry("speeds", -1, true);
        for (const char* word : {"1 / 4", "1 / 8", "1 / 16", "1 / 32"})
            menu->addEntry(word);
        menu->setValue(3);
    }
    left->selectedBackColor = look::kNeutral;
    auto* link = add(new KWLocalLink(at(786, kTop + 36, 64, 16), this, 55, f, "/usr/share/doc"));
    link->text = "read me";
    auto* disabled =
        add(new KWButton(at(872, kTop + 34, 44, 21), this, 35, f, "", true, KWButton::kCycle));
    disabled->setBackground(bitmap(1040));
    disabled->disabledLook = true;
    disabled->setMouseEnabled(false);
    auto* faded = add(new KWImage(at(926, kTop + 34, 23, 23), this, 56, f, bitmap(1013), nullptr));
    faded->alphaSource = &opacity;
    auto* picker = add(new KWKeyboardView(at(786, kTop + 60, 168, 49), this, 101, f));
    picker->keyState = &pickedKeys;
    picker->whiteLeft = bitmap(1098);
    picker->whiteMiddle = bitmap(1099);
    picker->whiteRight = bitmap(1100);
    picker->blackKey = bitmap(1102);
    picker->octaves = 2;
    picker->pickMode = true;
    constexpr int kBlackLeft[] = {8, 20, 44, 56, 68};
    for (size_t i = 0; i < 5; ++i)
        picker->blackKeyRects[i] = {kBlackLeft[i], 0, kBlackLeft[i] + 8, 30};
}

} // namespace ormund
