// Switches, named buttons and buttons that step through words.
#include "skin/draw/Parts.h"

#include <initializer_list>

namespace ormund {

using namespace palette;

namespace {

void iconSwitch(Paint& paint, int frame, Icon icon, const Ink& hue, double size, double line)
{
    const ButtonFrame button = buttonFrame(frame);
    const double w = paint.width(), h = paint.height();
    const bool on = button.state == 1;
    if (on)
        lit(paint, 0, 0, w, h, hue, button.look);
    else
        raised(paint, 0, 0, w, h, button.look);
    drawIcon(paint, icon, w / 2, h / 2 + pressShift(button.look), size,
        on ? kDarkInk : contentInk(button.look), line);
}

void wordButton(Paint& paint, Look look, const char* word, const TextStyle& style = type::kButton)
{
    raised(paint, 0, 0, paint.width(), paint.height(), look);
    paint.text(word, paint.width() / 2, paint.height() / 2 + pressShift(look), style,
        contentInk(look), Align::Centre);
}

// The word of the state, and below it a dash for each state with the current one white.
void choice(Paint& paint, int frame, std::initializer_list<const char*> words)
{
    const ButtonFrame button = buttonFrame(frame);
    const double w = paint.width(), h = paint.height(), shift = pressShift(button.look);
    raised(paint, 0, 0, w, h, button.look, 3);
    const double middle = h > 21 ? 9.5 : 8.5;
    paint.text(
        words.begin()[button.state], w / 2, middle + shift, type::kButton, kText, Align::Centre);
    const int states = int(words.size());
    const double left = w / 2 - (states * 10 - 2) / 2.0;
    for (int state = 0; state < states; ++state)
        paint.rounded(left + state * 10, middle + (h > 21 ? 7.5 : 6.5) + shift, 8, 2, 1,
            state == button.state ? kText : ink(0x535C68));
}

} // namespace

void drawPlainSwitch(Paint& paint, int frame)
{
    iconSwitch(paint, frame, Icon::Power, kNeutral, 8.4, 1.25);
}

void drawTrackSwitch(Paint& paint, int frame)
{
    iconSwitch(paint, frame, Icon::Power, kModulation, 8.4, 1.25);
}

void drawSynthSwitch(Paint& paint, int frame)
{
    iconSwitch(paint, frame, Icon::ToSynth, kModulation, 9, 1.25);
}

void drawSynthPower(Paint& paint, int frame)
{
    iconSwitch(paint, frame, Icon::Power, kNeutral, 12, 1.5);
}

void drawAllOff(Paint& paint, int frame)
{
    const ButtonFrame button = buttonFrame(frame);
    const double w = paint.width(), h = paint.height();
    const TextStyle style{9, -0.05, Weight::SemiBold};
    if (button.state == 1)
        lit(paint, 0, 0, w, h, kNeutral, button.look);
    else
        raised(paint, 0, 0, w, h, button.look);
    paint.text("ALL OFF", w / 2, h / 2 + pressShift(button.look), style,
        button.state == 1 ? kDarkInk : contentInk(button.look), Align::Centre);
}

void drawCheckBox(Paint& paint, int frame)
{
    const ButtonFrame button = buttonFrame(frame);
    const bool on = button.state == 1, hover = button.look == Look::Hover;
    const bool pressed = button.look == Look::Pressed;
    const Ink ground = hover ? kBody : pressed ? kBodyFrame : kWell;
    const Ink edge = pressed || (on && hover) ? kWhite : on ? kText : hover ? kLabel : kFrameHover;
    paint.rounded(0.5, 0, 13, 13, kFieldRadius, ground);
    paint.frame(0.5, 0, 13, 13, kFieldRadius, edge);
    if (on)
        drawIcon(paint, Icon::Check, 7, 6.5 + pressShift(button.look), 9, kText, 1.6);
}

void drawRecordMode(Paint& paint, int frame)
{
    const ButtonFrame button = buttonFrame(frame);
    wordButton(paint, button.look, button.state == 0 ? "TRACK" : "STEP");
    // A second state is named by the word; the bar at the edge makes it seen from afar.
    if (button.state == 1)
        paint.rounded(2, 4, 2, 7, 1, kText);
}

void drawRecord(Paint& paint, int frame)
{
    const ButtonFrame button = buttonFrame(frame);
    const double w = paint.width(), h = paint.height(), shift = pressShift(button.look);
    const bool on = button.state == 1;
    // The red is too dark for the dark ink while it is pressed.
    const Ink onRed = button.look == Look::Pressed ? kWhite : kRecordInk;
    if (on)
        lit(paint, 0, 0, w, h, kRecord, button.look);
    else
        raised(paint, 0, 0, w, h, button.look);
    if (on)
        paint.rounded(7, 4.5 + shift, 6, 6, 1, onRed);
    else
        paint.disc(10, 7.5 + shift, 2.9, kRecord);
    paint.text("REC", 26.5, 7.5 + shift, type::kButton, on ? onRed : contentInk(button.look),
        Align::Centre);
}

void drawLoadMap(Paint& paint, int frame) { wordButton(paint, Look(frame), "LOAD MAP"); }

void drawSaveMap(Paint& paint, int frame) { wordButton(paint, Look(frame), "SAVE MAP"); }

void drawManualLink(Paint& paint, int frame) { wordButton(paint, Look(frame), "MANUAL"); }

void drawLoopMode(Paint& paint, int frame)
{
    const ButtonFrame button = buttonFrame(frame);
    const double w = paint.width(), h = paint.height();
    const bool separate = button.state == 1;
    if (separate)
        lit(paint, 0, 0, w, h, kNeutral, button.look);
    else
        raised(paint, 0, 0, w, h, button.look);
    paint.text(separate ? "SEPARATE" : "SHARED", w / 2, h / 2 + pressShift(button.look),
        type::kButton, separate ? kDarkInk : contentInk(button.look), Align::Centre);
}

void drawTransposeMode(Paint& paint, int frame) { choice(paint, frame, {"SCALE", "SEMI"}); }

void drawTriggerSource(Paint& paint, int frame) { choice(paint, frame, {"ANY", "ZONE"}); }

void drawTriggerMode(Paint& paint, int frame) { choice(paint, frame, {"KEY", "PLAY", "HOST"}); }

void drawPageButton(Paint& paint, int frame) { choice(paint, frame, {"SETUP", "SYNTH"}); }

void drawMidiDrag(Paint& paint, int frame)
{
    const Look look = Look(frame);
    raised(paint, 0, 0, paint.width(), paint.height(), look, 3);
    drawIcon(paint, Icon::MidiDrag, 15, 13.2 + pressShift(look), 14, contentInk(look), 1.25);
}

} // namespace ormund
