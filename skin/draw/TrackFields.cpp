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

// Five dashes for the five choices, the chosen one lit.
void drawLaunch(Paint& paint, int frame)
{
    constexpr const char* kWords[] = {"NOW", "STEP", "BEAT", "BAR", "LOOP"};
    raised(paint, 0, 0, paint.width(), paint.height(), Look::Normal);
    paint.text("START", paint.width() / 2, 9, {9, -0.3, Weight::Medium}, kBodyText, Align::Centre);
    paint.text(kWords[frame], paint.width() / 2, 21, kFieldText, kWhite, Align::Centre);
    for (int choice = 0; choice < 5; ++choice)
        paint.rect(4 + 5 * choice, 31, 4, 2, choice == frame ? kWhite : kFourLine);
}

void drawPadsOnStep(Paint& paint, int frame)
{
    const ButtonFrame button = buttonFrame(frame);
    raised(paint, 0, 0, paint.width(), paint.height(), button.look);
    paint.text(button.state == 0 ? "PADS NOW" : "PADS STEP", paint.width() / 2,
        paint.height() / 2 + pressShift(button.look), {9, -0.2, Weight::SemiBold},
        contentInk(button.look), Align::Centre);
}

void drawPlayThrough(Paint& paint, int frame)
{
    const ButtonFrame button = buttonFrame(frame);
    const bool on = button.state == 1;
    if (on)
        lit(paint, 0, 0, paint.width(), paint.height(), kNeutral, button.look);
    else
        raised(paint, 0, 0, paint.width(), paint.height(), button.look);
    paint.text("PLAY THRU", paint.width() / 2, paint.height() / 2 + pressShift(button.look),
        {9, -0.2, Weight::SemiBold}, on ? kDarkInk : contentInk(button.look), Align::Centre);
}

// Steps in a row, every third of them set.
void drawToolButton(Paint& paint, int frame)
{
    const Look look = Look(frame);
    raised(paint, 0, 0, paint.width(), paint.height(), look);
    for (int step = 0; step < 4; ++step)
        paint.rounded(3 + 3.5 * step, (step % 3 == 0 ? 4 : 8) + pressShift(look), 2.5,
            step % 3 == 0 ? 7 : 3, 0.8, contentInk(look));
}

void drawToolHits(Paint& paint, int frame) { field(paint, std::to_string(frame + 1)); }

} // namespace ormund
