// The panel itself: bands, wells with their cells, and every printed label. Controls lie on it
// and let it show through.
#include "skin/draw/Parts.h"

#include <initializer_list>
#include <string>

namespace ormund {

using namespace palette;

namespace {

constexpr double kBottom = 695;

// ---- Bands

struct Box {
    double left, top, right, bottom;
};

constexpr Box kBands[] = {
    {4, 48, 158, 146}, {4, 148, 158, 264}, {4, 266, 158, 373}, {4, 375, 158, 473},
    {4, 475, 158, 585}, // left column
    {160, 48, 786, 146}, {160, 148, 786, 264}, {160, 266, 786, 373}, {160, 375, 786, 473},
    {160, 475, 786, 585},                                                    // grids
    {4, 587, 786, 626}, {4, 628, 786, kBottom + 6},                          // global row, keyboard
    {789, 49, 995, 370}, {789, 374, 995, 586}, {789, 589, 995, kBottom + 6}, // right column
};

void band(Paint& paint, const Box& box)
{
    const double w = box.right - box.left, h = box.bottom - box.top;
    paint.rounded(box.left, box.top, w, h, 4, kPanel);
    paint.rect(box.left + 3, box.top, w - 6, 1, kPanelEdge);
}

// ---- Cells

constexpr double kCell = 18;
constexpr double kGridLeft = 172;
constexpr int kSteps = 32;

enum class Lines { None, Cells };

void cells(Paint& paint, double left, double top, double bottom, int count, const Ink& even,
    const Ink& odd, Lines lines)
{
    const double h = bottom - top;
    for (int i = 0; i < count; ++i) {
        const double x = left + i * kCell;
        const Ink& ground = i / 4 % 2 ? odd : even;
        paint.rect(x, top, kCell, h, ground);
        if (lines == Lines::None)
            continue;
        const int next = i + 1;
        paint.rect(x + kCell - 1, top, 1, h,
            next == 16 && count > 16 ? kSixteenLine
                : next % 4 == 0      ? kFourLine
                                     : kCellLine);
    }
}

void wellCells(Paint& paint, double top, double bottom)
{
    cells(paint, kGridLeft, top, bottom, kSteps, kWell, kWellGroup, Lines::Cells);
}

void valueCells(Paint& paint, double top, double bottom, Lines lines)
{
    cells(paint, kGridLeft, top, bottom, kSteps, kValueRow, kValueRowGroup, lines);
}

// What an empty cell of a line shows.
void dashes(Paint& paint, double top, double height)
{
    for (int i = 0; i < kSteps; ++i)
        paint.rect(kGridLeft + i * kCell + 7, top + height / 2 - 0.5, 3, 1, kDash);
}

// What stands where a track has no loop and no order of its own: it follows the others.
void sharedLoops(Paint& paint)
{
    for (const double top : {50.0, 159.0, 269.0, 379.0, 489.0})
        for (int i = 0; i < kSteps; ++i)
            paint.rounded(kGridLeft + i * kCell + 1, top + 3, 16, 3, 1.5, kLoopRest);
    constexpr struct {
        double x, y;
    } kOrders[] = {{132, 64}, {132, 180}, {132, 283}, {87, 414}, {132, 506}};
    for (const auto& order : kOrders) {
        paint.frame(order.x, order.y, 23, 23, 3, kHairline);
        paint.rect(order.x + 9, order.y + 11, 5, 1, kDisabled);
    }
}

void grids(Paint& paint)
{
    wellCells(paint, 59, 124);
    paint.rect(kGridLeft, 92, kSteps * kCell, 1, kPitch.faded(0.28)); // the root
    valueCells(paint, 124, 135, Lines::None);
    wellCells(paint, 135, 144);
    dashes(paint, 135, 9);

    wellCells(paint, 169, 234);
    wellCells(paint, 235, 248);
    dashes(paint, 235, 13);

    wellCells(paint, 280, 345);
    valueCells(paint, 346, 366, Lines::None);

    for (int row = 0; row < 5; ++row) {
        const double top = 389 + row * 16;
        wellCells(paint, top, top + 16);
        if (row < 4)
            paint.rect(kGridLeft, top + 15, kSteps * kCell, 1, kRowLine);
        dashes(paint, top, 16);
    }

    wellCells(paint, 499, 564);
    valueCells(paint, 565, 576, Lines::Cells);
}

// ---- Words

struct Label {
    const char* words;
    double x, middle;
    Align align = Align::Left;
};

void labels(
    Paint& paint, const TextStyle& style, const Ink& colour, std::initializer_list<Label> list)
{
    for (const Label& label : list)
        paint.text(label.words, label.x, label.middle, style, colour, label.align);
}

void editLabels(Paint& paint, double left, double middle)
{
    labels(paint, type::kLabel, kLabel,
        {{"EDIT", left + 23.5, middle, Align::Centre},
            {"SHIFT", left + 60.5, middle, Align::Centre},
            {"DIR", left + 86.5, middle, Align::Centre}});
}

void leftColumn(Paint& paint)
{
    editLabels(paint, 57, 56.5);
    editLabels(paint, 57, 172.5);
    editLabels(paint, 57, 275.5);
    editLabels(paint, 12, 406.5);
    labels(paint, type::kLabel, kLabel,
        {{"ROOT", 35.5, 56.5, Align::Centre}, {"SCALE", 57.5, 94.5}, {"LOCK MAP", 28, 216.5},
            {"IGNORE PROGRAM CH.", 28, 236.5}, {"DRAG", 29.5, 298.5, Align::Centre},
            {"BARS", 29.5, 353.5, Align::Centre}, {"PAGE", 12, 388.5}, {"MULTIPLY", 60.5, 311},
            {"ON", 131, 496.5, Align::Right}, {"TO SYNTH", 57.5, 569.5}});
    for (int track = 0; track < 8; ++track)
        paint.text(std::to_string(track + 1), 13.5, 560.5 - 10 * track, type::kLabel, kLabel,
            Align::Centre);
}

void gridLabels(Paint& paint)
{
    constexpr double kNameX = 166.5;
    constexpr TextStyle kLongName{9, 0.6, Weight::SemiBold};
    paint.verticalText("PITCH", kNameX, 91.5, type::kVertical, nameOf(kPitch));
    paint.verticalText("VELOCITY", kNameX, 201.5, type::kVertical, nameOf(kVelocity));
    paint.verticalText("GATE", kNameX, 312.5, type::kVertical, nameOf(kGate));
    paint.verticalText("PERFORMANCE", kNameX, 429, kLongName, nameOf(kPerformance));
    paint.verticalText("MODULATION", kNameX, 531.5, type::kVertical, nameOf(kModulation));
    labels(paint, type::kLabel, kLabel,
        {{"NOTE", 752.5, 129.5}, {"LOCK", 752.5, 139.5}, {"ON", 752.5, 241.5},
            {"VALUE", 752.5, 356}, {"VALUE", 752.5, 570.5}, {"OCTAVE", 154, 397, Align::Right},
            {"BEND", 154, 413, Align::Right}, {"CHORD", 154, 429, Align::Right},
            {"ARP", 154, 445, Align::Right}, {"RANDOM", 154, 461, Align::Right}});
}

void globalRow(Paint& paint)
{
    labels(paint, type::kTitle, kBodyText,
        {{"GLOBAL", 14.5, 607.5}, {"PATTERN", 455, 602.5, Align::Right}});
    labels(paint, type::kLabel, kLabel,
        {{"MIN", 167.5, 607.5, Align::Right}, {"MAX", 240, 607.5},
            {"LOOPS", 303, 607.5, Align::Right}, {"LOCK", 455, 613.5, Align::Right}});
}

void keyboard(Paint& paint)
{
    paint.rect(55, 646, 672, 49, kHeadEdge);
    paint.rounded(55, 628, 698, 22, 3, kHead);
    paint.rect(55, 646, 672, 49, kHeadEdge);
    paint.verticalText("KEYBOARD", 30.5, 660.5, type::kVertical, kBodyText);
}

void rightColumn(Paint& paint)
{
    labels(paint, type::kLabel, kLabel,
        {{"TIME", 813.5, 422.5, Align::Centre}, {"THRESH", 975, 422.5, Align::Centre},
            {"STEPS", 813.5, 473.5, Align::Centre}, {"RATE", 975.5, 473.5, Align::Centre},
            {"LOOP", 819, 654.5, Align::Right}, {"PATT.", 819, 670.5, Align::Right},
            {"REP.", 819, 686.5, Align::Right}, {"EACH", 948.5, 640.5}});
    paint.verticalText("ACTIONS", 894.5, 480, type::kVertical, kBodyText);
    paint.text("SONG", 793.5, 640.5, {9, 0.4, Weight::SemiBold}, kBodyText);
    for (const double top : {665.0, 681.0}) {
        cells(paint, 824, top, top + 11, 8, kWell, kWellGroup, Lines::Cells);
        for (int i = 0; i < 8; ++i)
            paint.text("1", 824 + i * kCell + 8.5, top + 5.5, {9, 0, Weight::Medium}, kText,
                Align::Centre);
    }
}

void head(Paint& paint)
{
    paint.rect(0, 0, paint.width(), 45, kHead);
    paint.rect(0, 45, paint.width(), 1, kHeadEdge);
    paint.text("PRESET", 318.5, 13, type::kLabel, kLabel);
    // Higher than the menu that lies in it, as high as the buttons beside it.
    well(paint, 318, 19, 181, 22, 3);
    paint.rect(534, 22, 1, 15, kHairline);
}

} // namespace

void drawBackground(Paint& paint, int)
{
    paint.rect(0, 0, paint.width(), paint.height(), kGround);
    head(paint);
    for (const Box& box : kBands)
        band(paint, box);
    sharedLoops(paint);
    grids(paint);
    leftColumn(paint);
    gridLabels(paint);
    globalRow(paint);
    keyboard(paint);
    rightColumn(paint);
}

void drawHintGround(Paint& paint, int) { paint.rect(0, 0, paint.width(), paint.height(), kHead); }

} // namespace ormund
