// The two pages of the right column, each over the whole band: its place is (789, 49).
#include "skin/draw/Parts.h"

#include <initializer_list>

namespace ormund {

using namespace palette;

namespace {

constexpr double kLeft = 789;
constexpr double kTop = 49;

struct Word {
    const char* text;
    double x, middle; // on the panel
    Align align = Align::Left;
};

void words(Paint& paint, std::initializer_list<Word> list)
{
    for (const Word& word : list)
        paint.text(word.text, word.x - kLeft, word.middle - kTop, type::kLabel, kLabel, word.align);
}

void section(Paint& paint, const char* name, double middle)
{
    const double width = paint.textWidth(name, type::kTitle);
    paint.text(name, 797 - kLeft, middle - kTop, type::kTitle, kBodyText);
    const double from = 797 - kLeft + width + 7;
    paint.rect(from, middle - kTop - 0.5, 987 - kLeft - from, 1, kHairline);
}

void page(Paint& paint)
{
    paint.rounded(0, 0, paint.width(), paint.height(), 4, kPanel);
    paint.rect(3, 0, paint.width() - 6, 1, kPanelEdge);
}

void knobNames(Paint& paint, double top, std::initializer_list<const char*> names)
{
    constexpr double kCentres[] = {826.5, 872.5, 917.5, 962.5};
    int column = 0;
    for (const char* name : names)
        words(paint, {{name, kCentres[column++], top + 37, Align::Centre}});
}

// What the filter does, as a picture.
void filterCurve(Paint& paint, double x, double y)
{
    paint.rect(x, y + 12, 36, 1, kHairline);
    paint.stroke(1.5, mix(kPanel, kLabel, 0.75), [&](cairo_t* cr) {
        cairo_move_to(cr, x, y + 2);
        cairo_line_to(cr, x + 11, y + 2);
        cairo_curve_to(cr, x + 16, y + 2, x + 16, y - 6, x + 20, y - 6);
        cairo_curve_to(cr, x + 25, y - 5, x + 25, y + 10, x + 35, y + 11);
    });
}

} // namespace

void drawSettingsPage(Paint& paint, int)
{
    page(paint);
    section(paint, "KEYS", 100.5);
    section(paint, "CLOCK", 268.5);
    words(paint,
        {{"SYNTH", 987, 85.5, Align::Right}, {"IN", 865, 110.5, Align::Centre},
            {"OUT", 923, 110.5, Align::Centre}, {"OCTAVE", 838, 128.5, Align::Right},
            {"OCT", 951, 128.5}, {"TRANS-", 838, 153.5, Align::Right},
            {"POSE", 838, 163.5, Align::Right}, {"SEMI", 951, 158.5},
            {"SOURCE", 865, 184.5, Align::Centre}, {"MODE", 923, 184.5, Align::Centre},
            {"TRIGGER", 838, 202.5, Align::Right}, {"KEY", 838, 228.5, Align::Right},
            {"SYNC", 838, 238.5, Align::Right}, {"NOTE", 951, 233.5},
            {"SPEED", 838, 293.5, Align::Right}, {"NOTE", 951, 293.5},
            {"SWING", 838, 337.5, Align::Right}, {"MELODY", 838, 359.5, Align::Right},
            {"%", 951, 337.5}});
}

void drawSynthPage(Paint& paint, int)
{
    page(paint);
    section(paint, "VOICE", 85.5);
    section(paint, "FILTER", 194.5);
    section(paint, "DELAY", 304.5);
    knobNames(paint, 90, {"LEVEL", "PAN", "WAVE", "DETUNE"});
    knobNames(paint, 139, {"ATTACK", "DECAY", "SUSTAIN", "RELEASE"});
    knobNames(paint, 201, {"CUTOFF", "RESO", "PEAK"});
    knobNames(paint, 249, {"ATTACK", "DECAY", "SUSTAIN", "RELEASE"});
    knobNames(paint, 311, {"LEFT", "RIGHT", "FEED", "MIX"});
    filterCurve(paint, 945 - kLeft, 217 - kTop);
}

} // namespace ormund
