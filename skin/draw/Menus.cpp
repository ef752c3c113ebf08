// Menus and choice grids: a sheet above the panel.
#include "panel/ChoiceGrids.h"
#include "skin/draw/Parts.h"

#include <string>

namespace ormund {

using namespace palette;

namespace {

void numberGlyph(Paint& paint, int index, double cx, double cy)
{
    paint.text(std::to_string(index + 1), cx, cy, type::kLabel, kText, Align::Centre);
}

Glyph glyphOf(int bitmap)
{
    switch (bitmap) {
    case 1086:
        return octaveGlyph;
    case 1087:
        return bendGlyph;
    case 1088:
        return chordGlyph;
    case 1089:
        return arpeggioGlyph;
    case 1090:
        return randomGlyph;
    default:
        return numberGlyph;
    }
}

} // namespace

void choiceGrid(Paint& paint, int number)
{
    paint.rounded(0, 0, paint.width(), paint.height(), 4, kMenu);
    paint.frame(0, 0, paint.width(), paint.height(), 4, kMenuFrame);
    for (const ChoiceGrid& grid : kChoiceGrids) {
        if (grid.bitmap != number)
            continue;
        const Glyph glyph = glyphOf(number);
        for (int i = 0; i < grid.values; ++i) {
            const double x = grid.kLeft + (i % grid.columns) * grid.kCell;
            const double y = grid.kTop + double(i / grid.columns) * grid.kCell;
            glyph(paint, i, x + 9, y + 9);
        }
    }
}

// Lies over the cell: what it marks stays to be seen.
void drawChoiceMark(Paint& paint, int frame)
{
    if (frame == 0) {
        paint.rounded(0, 0, 18, 18, 3, kPerformance.faded(0.42));
        paint.frame(0, 0, 18, 18, 3, mix(kPerformance, kWhite, 0.3));
    } else {
        paint.frame(0, 0, 18, 18, 3, kText);
    }
}

void drawMenuArrow(Paint& paint, int) { drawIcon(paint, Icon::Next, 4, 4, 7, kIcon, 1.5); }

void drawMenuRow(Paint& paint, int) { paint.rect(0, 0, paint.width(), paint.height(), kMenu); }

void drawMenuCheck(Paint& paint, int) { drawIcon(paint, Icon::Check, 4, 4, 8.5, kText, 1.5); }

// A field with the arrow of its menu; the text is printed by the menu. The preset's field is part
// of the panel, and the synth preset's ends before the arrow button that lies on its right end.
void drawField(Paint& paint, int)
{
    constexpr double kPresetWidth = 184, kSynthPresetWidth = 87;
    const double w = paint.width() - (paint.width() == kSynthPresetWidth ? 7 : 0);
    const double h = paint.height();
    const bool preset = paint.width() == kPresetWidth;
    if (h < 14) {
        // The scale's names are long, and its arrow buttons stand on both sides: no arrow.
        paint.rounded(0, 0, w, h, kFieldRadius, kWell);
        return;
    }
    if (!preset)
        well(paint, 0, 0, w, h);
    drawIcon(paint, Icon::DropDown, w - (preset ? 13 : 8), h / 2 + 0.5, preset ? 8 : 7, kLabel);
}

void drawScrollThumb(Paint& paint, int frame)
{
    paint.rounded(1, 0, 7, 16, 3, frame == 0 ? kMenuFrame : kFrameHover);
}

} // namespace ormund
