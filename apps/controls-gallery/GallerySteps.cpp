// Step views and the keyboard of the gallery.
#include "apps/controls-gallery/Gallery.h"
#include "controls/KWBtnLineView.h"
#include "controls/KWListLineView.h"
#include "controls/KWListLineViewMenu.h"
#include "controls/KWTableView.h"
#include "controls/KWZoneView.h"
#include "panel/Look.h"

#include <cmath>

namespace ormund {

namespace {

constexpr int kLeft = 10;
constexpr int kStepsWidth = 576;
constexpr uint32_t kTableWord =
    kTableBeatGrid | kTableCells | kTableEditable | kTableRunningStep | kTableWatchValues;

CRect row(int y, int height) { return {kLeft, y, kLeft + kStepsWidth, y + height}; }

void colourTable(KWTableView& view, const CColor& hue)
{
    view.colorBack = look::kWell;
    view.colorBar = kWhiteCColor;
    view.colorGrid = look::kHairline;
    view.colorOther = hue;
    view.colorLine = hue;
}

} // namespace

void Gallery::addTables()
{
    caption(kLeft, 156, "LOOP BAR, RAW TABLE, BARS");
    KWFrame* f = panel.get();
    auto* zone = add(new KWZoneView(row(170, 9), this, 80, f, &loop));
    zone->strip = bitmap(1105);
    loop.setZone(0, {0, 15});

    pitch.setRange(0, 24, 12);
    pitch.setQuantised(true);
    pitch.setFlags(kTableWord | kTableRawValues | kTableConnect);
    static constexpr int kMelody[] = {
        12, 12, 14, 16, 15, 12, 19, 18, 16, 14, 12, 9, 10, 14, 16, 14};
    for (int i = 0; i < 32; ++i)
        pitch.setValue(i, static_cast<float>(kMelody[i % 16]));
    auto* notes = add(new KWTableView(row(179, 65), this, 81, f, false));
    colourTable(*notes, look::kPitch);
    notes->setTable(&pitch);
    notes->setStrip(bitmap(1055), 25);
    notes->setPopupControl(rightClickMenu);

    velocity.setFlags(kTableWord);
    for (int i = 0; i < 32; ++i)
        velocity.setNormalized(static_cast<float>(i), 0.3f + 0.2f * static_cast<float>(i % 4));
    auto* bars = add(new KWTableView(row(250, 65), this, 82, f, false));
    colourTable(*bars, look::kVelocity);
    bars->setTable(&velocity);
    bars->setStrip(bitmap(1056), 66);

    caption(600, 156, "CURVE, WITHOUT A STRIP");
    curve.setFlags(kTableBeatGrid | kTableEditable | kTableCurve | kTableDropLines
        | kTableWatchValues | kTableRuler | kTableLoopBar);
    for (int i = 0; i < 32; ++i)
        curve.setNormalized(
            static_cast<float>(i), 0.5f + 0.4f * std::sin(static_cast<float>(i) * 0.4f));
    auto* wave = add(new KWTableView({600, 170, 950, 315}, this, 83, f, false));
    colourTable(*wave, look::kModulation);
    curve.loopStart = 8.0f;
    curve.loopEnd = 24.0f;
    wave->colorOther = look::kPitch;
    wave->setTable(&curve);
    wave->drawZeroLine = true;
}

void Gallery::addLines()
{
    caption(kLeft, 324, "LINES: LOCK, OCTAVE, CHORD; ONE OF SIXTEEN");
    KWFrame* f = panel.get();
    auto* lock = add(new KWBtnLineView(row(338, 9), this, 90, f));
    lock->line = &locks;
    lock->strip = bitmap(1066);
    lock->runningStrip = bitmap(1069);
    locks.setStep(3, 1);

    struct Row {
        KWListLine* line;
        int y;
        long tag;
        long strip;
        int last;
        int columns;
        int rows;
        long grid;
    };
    const Row rows[] = {
        {&octaves, 352, 91, 1070, 4, 4, 1, 1086},
        {&chords, 370, 92, 1074, 54, 14, 6, 1088},
    };
    for (const Row& r : rows) {
        r.line->range = static_cast<float>(r.last);
        r.line->maximum = static_cast<float>(r.last);
        for (int i = 0; i < 32; i += 3)
            r.line->setStep(i, static_cast<float>(1 + i % r.last));
        auto* list = add(new KWListLineView(row(r.y, 16), this, r.tag, f));
        list->line = r.line;
        list->strip = bitmap(r.strip);
        list->runningStrip = bitmap(r.strip + 1);
        list->getMenu()->columns = r.columns;
        list->getMenu()->rows = r.rows;
        list->getMenu()->background = bitmap(r.grid);
        list->getMenu()->selection = bitmap(1093);
    }
    auto* patterns = add(new KWBtnLineView({600, 338, 888, 375}, this, 93, f));
    patterns->line = &choice;
    patterns->strip = bitmap(1084);
    patterns->exclusive = 1;
    choice.setStep(1, 1);
}

void Gallery::addKeyboard()
{
    caption(kLeft, 396, "KEYBOARD");
    KWFrame* f = panel.get();
    auto* piano = add(new KWKeyboardView({kLeft, 410, kLeft + 672, 459}, this, 100, f));
    piano->keyState = &keys;
    piano->keyListener = this;
    piano->whiteLeft = bitmap(1098);
    piano->whiteMiddle = bitmap(1099);
    piano->whiteRight = bitmap(1100);
    piano->blackKey = bitmap(1102);
    piano->firstWhite = bitmap(1104);
    piano->baseNote = &baseNote;
    piano->octaves = 8;
    constexpr int kBlackLeft[] = {8, 20, 44, 56, 68};
    for (size_t i = 0; i < 5; ++i)
        piano->blackKeyRects[i] = {kBlackLeft[i], 0, kBlackLeft[i] + 8, 30};
}

} // namespace ormund
