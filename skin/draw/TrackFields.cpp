// The small fields of a lane and of a modulation track that plays a drum.
#include "data/parameters/ChoiceLists.h"
#include "skin/draw/Parts.h"

#include <string>

namespace ormund {

using namespace palette;

namespace {
constexpr TextStyle kFieldText{9, -0.1, Weight::SemiBold};

void field(Paint& paint, const std::string& text, const Ink& ink_ = kText)
{
    well(paint, 0, 0, paint.width(), paint.height());
    TextStyle style = kFieldText;
    const double room = paint.width() - 3;
    if (const double width = paint.textWidth(text.c_str(), style); width > room)
        style.tracking -= (width - room) / double(text.size());
    paint.text(text, paint.width() / 2, paint.height() / 2, style, ink_, Align::Centre);
}
} // namespace

// The plain speed is dim: what is told is the difference.
void drawLaneSpeed(Paint& paint, int frame)
{
    std::string text;
    for (const char c : kLaneSpeedNames[size_t(frame)])
        if (c != ' ')
            text += c == 'x' ? "\u00d7" : std::string(1, c);
    field(paint, text, frame == kPlainLaneSpeed ? kBodyText : kWhite);
}

void drawTrackMode(Paint& paint, int frame)
{
    const ButtonFrame button = buttonFrame(frame);
    const bool isDrum = button.state == 1;
    const double shift = pressShift(button.look);
    paint.rect(0, 0, paint.width(), paint.height(), kPanel);
    const Ink word = button.look == Look::Hover ? kWhite : nameOf(kModulation);
    paint.text(isDrum ? "DRUM" : "TRACK", 0.5, 6 + shift, {9, 0.4, Weight::SemiBold}, word);
    for (int state = 0; state < 2; ++state)
        paint.rounded(0.5 + 10 * state, 12 + shift, 8, 2, 1,
            state == button.state ? nameOf(kModulation) : kFourLine);
}

void drawDrumNote(Paint& paint, int frame)
{
    field(paint, std::string(kMidiNoteNames[size_t(frame)]));
}

void drawChannel(Paint& paint, int frame) { field(paint, "ch" + std::to_string(frame + 1)); }

void drawDrumGate(Paint& paint, int frame) { field(paint, std::to_string(frame + 1) + "%"); }

} // namespace ormund
