#include "apps/controls-gallery/Gallery.h"

#include "controls/KWDisplay.h"
#include "panel/Look.h"

#include <cstdio>

namespace ormund {

namespace {
constexpr int kTicksPerStep = 6;
}

Gallery::Gallery(void* parentWindow) : font(new CFontDesc("Inter", 12))
{
    CBitmap::setProvider(&skin);
    panel = std::make_unique<KWFrame>(CRect{0, 0, kWidth, kHeight}, parentWindow, nullptr, this);
    panel->font = font;
    panel->setBackgroundColor(look::kPanel);

    eventLine = add(new KWDisplay({10, 614, 950, 632}, this, 0, panel.get(), "", false));
    eventLine->backColor = look::kWell;
    eventLine->textColor = look::kText;
    eventLine->alignment = kLeftText;
    eventLine->textLeft = 8;
    addKnobs();
    addButtons();
    addDisplays();
    addPictures();
    addTables();
    addLines();
    addKeyboard();
    addPlainTables();
    addPlainSteps();
    addPlainControls();
    addMenus();
    tell("Right click: menu.  Shift: fine.  Ctrl: reset, ramp.  Alt: tilt.");
    panel->repaint();
}

Gallery::~Gallery()
{
    panel.reset();
    for (CBitmap* each : bitmaps)
        each->forget();
    font->forget();
    CBitmap::setProvider(nullptr);
}

void Gallery::idle()
{
    if (isPlaying && ++songTick % kTicksPerStep == 0) {
        const int step = songTick / kTicksPerStep % 32;
        const auto position = static_cast<float>(step);
        for (KWTable* table : {&pitch, &velocity, &curve})
            table->runningPosition = position;
        locks.runningStep = position;
        octaves.runningStep = position;
        chords.runningStep = position;
        for (KWTable* table : {&centred, &toggles})
            table->runningPosition = static_cast<float>(step % 16);
        choice.runningStep = static_cast<float>(step % 16);
        bends.runningStep = choice.runningStep;
        mutes.runningStep = choice.runningStep;
        opacity = 255.0f * position / 31.0f;
        markerX = position * 18.0f;
        modulated = position / 31.0f;
        keys.clearNotes();
        keys.setNote(36 + static_cast<int>(pitch.ownStep(step)), true);
    }
    panel->idle();
}

CBitmap* Gallery::bitmap(long id)
{
    for (CBitmap* known : bitmaps)
        if (known->getResourceId() == id)
            return known;
    bitmaps.push_back(new CBitmap(id));
    return bitmaps.back();
}

void Gallery::caption(int x, int y, const char* text)
{
    auto* words = new KWDisplay({x, y, x + 220, y + 12}, this, 0, panel.get(), text, false);
    words->noFill = true;
    words->fontSize = 9;
    words->alignment = kLeftText;
    words->textColor = look::kTextDim;
    words->setMouseEnabled(false);
    add(words);
}

void Gallery::hint(KWControl* control, const char* text)
{
    CRect place = control->getViewSize();
    place.offset(0, place.height() + 2);
    place.setWidth(150);
    place.setHeight(14);
    auto* words = new KWDisplay(place, this, 0, panel.get(), text, false);
    words->backColor = look::kMenu;
    words->textColor = look::kText;
    words->fontSize = 11;
    words->setMouseEnabled(false);
    add(words);
    control->addHoverView(words);
}

void Gallery::tell(const std::string& text)
{
    eventText = text;
    eventLine->title = text;
    eventLine->setDirty();
}

void Gallery::valueChanged(CControl* control)
{
    if (control->getTag() == kPageSwitch) {
        pages.set(1, control->getValue() < 0.5f);
        pages.set(2, control->getValue() >= 0.5f);
        panel->invalidAll();
    }
    char text[120];
    std::snprintf(text, sizeof text, "tag %ld: %.3f%s", control->getTag(),
        static_cast<double>(control->getValue()), openEdits > 0 ? "  (gesture)" : "");
    tell(text);
}

void Gallery::controlBeginEdit(CControl*) { ++openEdits; }
void Gallery::controlEndEdit(CControl*) { --openEdits; }

void Gallery::keyClicked(int note, int velocityOfKey, bool right)
{
    tell("key " + std::to_string(note) + " at " + std::to_string(velocityOfKey)
        + (right ? ", held" : ""));
}

} // namespace ormund
