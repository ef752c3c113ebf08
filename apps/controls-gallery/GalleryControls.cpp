// Knobs, buttons, displays, pictures and menus of the gallery.
#include "apps/controls-gallery/Gallery.h"
#include "controls/KWButton.h"
#include "controls/KWDisplay.h"
#include "controls/KWImage.h"
#include "controls/KWKnob.h"
#include "controls/KWLocalLink.h"
#include "controls/KWMouseArea.h"
#include "controls/KWOptionMenu.h"
#include "controls/KWScrollbarY.h"
#include "controls/KWViewContainer.h"
#include "panel/Look.h"

#include <cstdio>

namespace ormund {

namespace {

void noteName(float value, char* text)
{
    static const char* const kNames[] = {
        "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
    const int note = static_cast<int>(value * 12.0f);
    std::snprintf(text, kValueTextSize, "%s", kNames[note % 12]);
}

void colourMenu(KWOptionMenu& menu)
{
    menu.fontSize = 16;
    menu.backColor = look::kWell;
    menu.textColor = look::kText;
    menu.listBackColor = look::kMenu;
    menu.listTextColor = look::kText;
    menu.selectedBackColor = look::kPerformance;
    menu.selectedTextColor = look::kInk;
    menu.frameColor = look::kMenuFrame;
    menu.separatorColor = look::kTextDim;
}

} // namespace

void Gallery::addKnobs()
{
    caption(10, 8, "KNOBS: RELATIVE, MARKER, SMALL, BOX");
    KWFrame* f = panel.get();
    auto* synth = add(new KWKnob(at(10, 24, 41, 41), this, 1, f, bitmap(1103), 41, 127, 1));
    synth->setTransparency(true);
    synth->setDefaultValue(0.25f);
    synth->setValue(0.7f);
    hint(synth, "relative, default a quarter");
    auto* ring = add(new KWKnob(at(60, 26, 37, 37), this, 2, f, bitmap(1011), 37, 127, 1));
    ring->setTransparency(true);
    ring->setValue(0.4f);
    ring->markerBitmap = bitmap(1012);
    ring->markerMode = KWKnob::kMarkerFrame;
    ring->markerSource = &modulated;
    hint(ring, "ring: the modulated value");
    auto* small = add(new KWKnob(at(106, 34, 21, 21), this, 3, f, bitmap(1065), 21, 127, 1));
    small->setTransparency(true);
    auto* box = add(new KWKnob(at(136, 34, 44, 21), this, 4, f, bitmap(1119), 21, 25, 1));
    box->roundFrame = true;
    box->setValue(0.5f);
    hint(box, "whole frames, rounded");

    caption(10, 76, "ABSOLUTE, SLIDERS");
    auto* swing = add(new KWKnob(at(10, 92, 101, 21), this, 5, f, bitmap(1091), 21, 79, 1));
    swing->mode = KWKnob::kAbsolute;
    swing->horizontal = true;
    auto* gate = add(new KWKnob(at(10, 118, 92, 17), this, 6, f, bitmap(1110), 17, 15, 1));
    gate->horizontal = true;
    gate->mode = KWKnob::kAbsolute;
    auto* root = add(new KWKnob(at(128, 74, 19, 75), this, 7, f, bitmap(1063), 75, 49, 1));
    root->mode = KWKnob::kAbsolute;
    root->setValue(0.5f);
    auto* handle = add(new KWKnob(at(154, 88, 14, 56), this, 8, f, bitmap(1121), 16, 2, 1));
    handle->mode = KWKnob::kSliderHandle;
    handle->markerMode = KWKnob::kMarkerY;
    handle->setTransparency(true);
    hint(handle, "a bitmap as the handle");
    add(new KWKnob(at(174, 92, 30, 16), this, 9, f, nullptr, 0, 0, 1));
}

void Gallery::addButtons()
{
    caption(214, 8, "BUTTONS: PADS, SWITCHES, STATES");
    KWFrame* f = panel.get();
    struct Row {
        CRect place;
        long tag;
        long strip;
        int type;
        int states;
        const char* words;
    };
    const Row rows[] = {
        {at(214, 24, 51, 47), 20, 1002, KWButton::kCycle, 2, "pad: on and off"},
        {at(270, 24, 51, 47), 21, 1004, KWButton::kHeld, 2, "on while a button is down"},
        {at(328, 24, 15, 15), 22, 1031, KWButton::kToggleTwo, 2, "two kinds of on"},
        {at(328, 44, 15, 15), 23, 1031, KWButton::kCycle, 2, "switch"},
        {at(350, 24, 44, 21), 24, 1042, KWButton::kCycle, 3, "three states, right: the first"},
        {at(350, 50, 44, 21), 25, 1040, KWButton::kOnRelease, 2, "acts on release"},
        {at(400, 24, 23, 23), 26, 1013, KWButton::kMomentary, 2, "momentary"},
        {at(400, 50, 23, 23), 27, 1014, KWButton::kTrigger, 2, "a trigger that stays"},
        {at(426, 24, 23, 23), 28, 1013, KWButton::kMomentaryMoving, 2, "tells of moves too"},
        {at(350, 78, 74, 21), kPageSwitch, 1039, KWButton::kCycle, 2, "changes the page"},
    };
    for (const Row& row : rows) {
        auto* button = new KWButton(row.place, this, row.tag, f, "", false, row.type);
        button->setBackground(bitmap(row.strip));
        button->setTransparency(true);
        button->frameMask = KWButton::kPressedFrame | KWButton::kHoverFrame;
        button->stateCount = row.states;
        add(button);
        hint(button, row.words);
    }
    auto* plain = add(new KWButton(at(214, 86, 60, 21), this, 29, f, "plain", false, 1));
    plain->textColor = kWhiteCColor;
    plain->label = "a label";

    pages.set(1, true);
    for (int page = 1; page <= 2; ++page) {
        const char* const words = page == 1 ? "page one" : "page two";
        auto* shownOnPage =
            add(new KWDisplay(at(214, 112, 100, 18), this, 30 + page, f, words, false));
        shownOnPage->backColor = page == 1 ? look::kGate : look::kVelocity;
        shownOnPage->textColor = look::kInk;
        shownOnPage->setGate(&pages, page);
    }
    auto* opener = add(new KWButton(at(330, 112, 96, 21), this, 33, f, "menu opener", false, 8));
    opener->textColor = kWhiteCColor;
    auto* list = new KWOptionMenu(at(330, 112, 96, 21), this, 34, f, "", 0);
    colourMenu(*list);
    for (const char* word : {"forward", "backward", "random", "each 2nd", "each 3rd", "each 4th"})
        list->addEntry(word);
    list->extraCallBack = opener;
    list->setVisible(false);
    add(list);
    opener->setPopupControl(list);
}

void Gallery::addDisplays()
{
    caption(464, 8, "DISPLAYS: DRAG, WHEEL");
    KWFrame* f = panel.get();
    const auto field = [&](int x, int y, long tag, const char* title) {
        auto* display = new KWDisplay(at(x, y, 110, 18), this, tag, f, title, true);
        display->backColor = look::kWell;
        display->textColor = look::kText;
        display->fontSize = 11;
        return add(display);
    };
    auto* tempo = field(464, 24, 40, "");
    tempo->setMin(45);
    tempo->setMax(500);
    tempo->setValue(120);
    tempo->sensitivity = 100;
    tempo->numberPrecision = 1;
    tempo->unit = " bpm";
    auto* bars = field(464, 46, 41, "");
    bars->setMax(16);
    bars->setValue(4);
    bars->intValue = true;
    bars->sensitivity = 10;
    bars->prefix = "bars ";
    bars->horizontalDrag = true;
    auto* name = field(464, 68, 42, "root  ");
    name->alignment = kLeftText;
    name->textLeft = 38;
    name->valueToString = noteName;
    name->setMax(0.99f);
    auto* level = field(464, 90, 43, "");
    level->belowThreshold = 0.1f;
    level->belowText = "off";
    level->unit = " dB";
    auto* strip = add(new KWDisplay(at(464, 112, 44, 21), this, 44, f));
    strip->strip = bitmap(1097);
    strip->showValue = false;
    strip->frameHeight = 21;
    strip->frameCount = 5;
    strip->valueSource = &modulated;
    strip->roundFrame = true;
    hint(strip, "frames of a strip");
}

void Gallery::addPictures()
{
    caption(590, 8, "AREA, OBJECTS, SCROLL BAR, LINK");
    KWFrame* f = panel.get();
    auto* ground = add(new KWDisplay(at(590, 24, 90, 60), this, 0, f, "mouse area", false));
    ground->backColor = look::kWell;
    ground->textColor = look::kTextDim;
    ground->setMouseEnabled(false);
    add(new KWMouseArea(at(590, 24, 90, 60), this, 50, f));

    shapes.objects = {{6, 40, 14, 13, 0, 0}, {30, 24, 14, 13, 0, 39}, {56, 8, 14, 13, 0, 39}};
    shapes.alpha = {255, 120, 255};
    auto* field = add(new KWDisplay(at(690, 24, 90, 60), this, 0, f, "", false));
    field->backColor = look::kWell;
    field->setMouseEnabled(false);
    auto* objects = add(new KWPolyObjectView(at(690, 24, 90, 60), this, 51, f));
    objects->objectSet = &shapes;
    objects->strip = bitmap(1034);

    auto* bar = add(new KWScrollbarY(at(790, 24, 11, 60), this, 52, f, &scroll, &scrollShare));
    bar->backColor = look::kWell;
    bar->barColor = look::kRaisedFrame;
    auto* link = add(new KWLocalLink(at(590, 92, 64, 15), this, 53, f, "/usr/share/doc"));
    link->setBackground(bitmap(1049));
    link->textColor = look::kText;
    auto* mark = add(new KWImage(at(590, 114, 8, 8), this, 54, f, bitmap(1096), nullptr));
    mark->xSource = &markerX;
    mark->setTransparency(true);
}

void Gallery::addMenus()
{
    caption(814, 8, "MENUS");
    KWFrame* f = panel.get();
    auto* modes = new KWOptionMenu(at(814, 24, 130, 16), this, 60, f, "",
        KWOptionMenu::kShowCurrent | KWOptionMenu::kCheckCurrent);
    colourMenu(*modes);
    for (int i = 1; i <= 60; ++i)
        modes->addEntry(("entry " + std::to_string(i)).c_str(), -1, i == 1);
    modes->setEntryEnabled(3, false);
    add(modes);
    hint(modes, "sixty entries scroll");

    auto* nested = new KWOptionMenu(at(814, 46, 130, 16), this, 61, f, "", 0);
    colourMenu(*nested);
    nested->title = "nested";
    nested->arrowBitmap = bitmap(1094);
    for (int group = 0; group < 4; ++group) {
        auto inner =
            std::make_unique<KWOptionMenu>(at(814, 46, 130, 16), nullptr, 62 + group, f, "", 0u);
        colourMenu(*inner);
        for (int i = 1; i <= 10; ++i)
            inner->addEntry(("Ctrl " + std::to_string(group * 10 + i)).c_str());
        const std::string text = "Controllers " + std::to_string(group * 10 + 1);
        nested->addSubMenu(std::move(inner), text.c_str());
    }
    add(nested);

    auto* folder = new KWOptionMenu(at(814, 68, 130, 16), this, 70, f, "txt",
        KWOptionMenu::kPresetMode | KWOptionMenu::kNestedFolders | KWOptionMenu::kSortFiles
            | KWOptionMenu::kHeaderSave | KWOptionMenu::kHeaderPresets);
    colourMenu(*folder);
    folder->title = "a folder";
    folder->arrowBitmap = bitmap(1094);
    folder->scanFolder("/usr/share/doc/fonts-inter", "gz");
    add(folder);

    auto* popup = new KWOptionMenu(at(0, 0, 1, 1), this, 71, f, "", 0);
    colourMenu(*popup);
    popup->addEntry("midi Learn");
    popup->addEntry("clear");
    popup->setVisible(false);
    add(popup);
    rightClickMenu = popup;
    for (CView* view : panel->views())
        if (auto* knob = dynamic_cast<KWKnob*>(view))
            knob->setPopupControl(popup);

    // A container that opens over the sheet.
    auto* box = new KWViewContainer(at(690, 92, 180, 60), this, 72, f);
    box->style = KWControl::kFillBackground | KWControl::kDropShadow;
    box->backColor = look::kMenu;
    auto* words = new KWDisplay(at(0, 0, 160, 18), this, 0, f, "a container with a knob", false);
    words->noFill = true;
    words->textColor = look::kText;
    box->addItem(words, 10, 2);
    auto* inner = new KWKnob(at(0, 0, 41, 41), this, 73, f, bitmap(1103), 41, 127, 1);
    inner->setTransparency(true);
    inner->setPopupControl(popup);
    box->addItem(inner, 70, 18);
    add(box);
}

} // namespace ormund
