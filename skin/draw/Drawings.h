// What draws the frames of the strips, a function for each look. All are handed a clear frame.
#pragma once

#include "skin/draw/Icons.h"
#include "skin/draw/Paint.h"

namespace ormund {

// Normal, pressed and hover of each state, as buttons pick their frames.
enum class Look { Normal, Pressed, Hover };
struct ButtonFrame {
    int state;
    Look look;
};
constexpr ButtonFrame buttonFrame(int frame) { return {frame / 3, Look(frame % 3)}; }

void drawNothing(Paint& paint, int frame);

// Panel.cpp, Pages.cpp
void drawBackground(Paint& paint, int frame);
void drawSettingsPage(Paint& paint, int frame);
void drawSynthPage(Paint& paint, int frame);
void drawHintGround(Paint& paint, int frame);

// Knobs.cpp, Sliders.cpp
void drawPadKnob(Paint& paint, int frame);
void drawKnobMark(Paint& paint, int frame);
void drawSmallKnob(Paint& paint, int frame);
void drawSynthKnob(Paint& paint, int frame);
void drawRootKey(Paint& paint, int frame);
void drawGateMultiply(Paint& paint, int frame);
void drawSwing(Paint& paint, int frame);
void drawModSelect(Paint& paint, int frame);
void drawBars(Paint& paint, int frame);
void drawOctaveBox(Paint& paint, int frame);
void drawTransposeBox(Paint& paint, int frame);

// Pads.cpp
void drawPadWith(Paint& paint, int frame, Icon icon);
void drawPlay(Paint& paint, int frame);
template <Icon icon>
void drawPad(Paint& paint, int frame)
{
    drawPadWith(paint, frame, icon);
}

// EditButtons.cpp
void drawEditButton(Paint& paint, int frame, Icon icon);
void drawArrowButton(Paint& paint, int frame, Icon icon);
void drawPresetButton(Paint& paint, int frame, Icon icon);
void drawGlobalRandom(Paint& paint, int frame);
void drawOrder(Paint& paint, int frame);
template <Icon icon>
void drawEdit(Paint& paint, int frame)
{
    drawEditButton(paint, frame, icon);
}
template <Icon icon>
void drawArrow(Paint& paint, int frame)
{
    drawArrowButton(paint, frame, icon);
}
template <Icon icon>
void drawPresetStep(Paint& paint, int frame)
{
    drawPresetButton(paint, frame, icon);
}

// Switches.cpp
void drawPlainSwitch(Paint& paint, int frame);
void drawTrackSwitch(Paint& paint, int frame);
void drawSynthSwitch(Paint& paint, int frame);
void drawSynthPower(Paint& paint, int frame);
void drawAllOff(Paint& paint, int frame);
void drawCheckBox(Paint& paint, int frame);
void drawRecordMode(Paint& paint, int frame);
void drawRecord(Paint& paint, int frame);
void drawLoadMap(Paint& paint, int frame);
void drawSaveMap(Paint& paint, int frame);
void drawLoopMode(Paint& paint, int frame);
void drawTransposeMode(Paint& paint, int frame);
void drawTriggerSource(Paint& paint, int frame);
void drawTriggerMode(Paint& paint, int frame);
void drawPageButton(Paint& paint, int frame);
void drawManualLink(Paint& paint, int frame);
void drawMidiDrag(Paint& paint, int frame);

// TrackStrips.cpp
void drawPitchStep(Paint& paint, int frame);
void drawVelocityStep(Paint& paint, int frame);
void drawGateStep(Paint& paint, int frame);
void drawModulationStep(Paint& paint, int frame);
void drawNoteName(Paint& paint, int frame);
void drawGateValue(Paint& paint, int frame);
void drawModulationValue(Paint& paint, int frame);
void drawLoopCell(Paint& paint, int frame);
void drawRunningMark(Paint& paint, int frame);

// LineGlyphs.cpp: the glyph alone, in a cell of 18 by 16 whose middle is (cx, cy).
void octaveGlyph(Paint& paint, int index, double cx, double cy);
void bendGlyph(Paint& paint, int index, double cx, double cy);
void chordGlyph(Paint& paint, int index, double cx, double cy);
void arpeggioGlyph(Paint& paint, int index, double cx, double cy);
void randomGlyph(Paint& paint, int index, double cx, double cy);

// LineCells.cpp
using Glyph = void (*)(Paint& paint, int index, double cx, double cy);
void drawLineCell(Paint& paint, int frame, Glyph glyph, bool running);
void lockCell(Paint& paint, bool running);
void muteCell(Paint& paint, bool running);
void songCell(Paint& paint, int frame, bool running);
void drawPatternCell(Paint& paint, int frame);
template <Glyph glyph, bool running>
void drawRuleCell(Paint& paint, int frame)
{
    drawLineCell(paint, frame, glyph, running);
}

// RuleGlyphs.cpp
void chanceGlyph(Paint& paint, int index, double cx, double cy);
void conditionGlyph(Paint& paint, int index, double cx, double cy);
void ratchetGlyph(Paint& paint, int index, double cx, double cy);
void lateGlyph(Paint& paint, int index, double cx, double cy);
void strumGlyph(Paint& paint, int index, double cx, double cy);
void drawPerformancePage(Paint& paint, int frame);
void drawFill(Paint& paint, int frame);
void drawRuleNames(Paint& paint, int frame);

template <bool running>
void drawLockCell(Paint& paint, int)
{
    lockCell(paint, running);
}
template <bool running>
void drawMuteCell(Paint& paint, int)
{
    muteCell(paint, running);
}
template <bool running>
void drawSongCell(Paint& paint, int frame)
{
    songCell(paint, frame, running);
}
template <bool running>
void drawOctaveCell(Paint& paint, int frame)
{
    drawLineCell(paint, frame, octaveGlyph, running);
}
template <bool running>
void drawBendCell(Paint& paint, int frame)
{
    drawLineCell(paint, frame, bendGlyph, running);
}
template <bool running>
void drawChordCell(Paint& paint, int frame)
{
    drawLineCell(paint, frame, chordGlyph, running);
}
template <bool running>
void drawArpeggioCell(Paint& paint, int frame)
{
    drawLineCell(paint, frame, arpeggioGlyph, running);
}
template <bool running>
void drawRandomCell(Paint& paint, int frame)
{
    drawLineCell(paint, frame, randomGlyph, running);
}

// TrackFields.cpp
void drawLaneSpeed(Paint& paint, int frame);
void drawTrackMode(Paint& paint, int frame);
void drawDrumNote(Paint& paint, int frame);
void drawChannel(Paint& paint, int frame);
void drawDrumGate(Paint& paint, int frame);
void drawLaunch(Paint& paint, int frame);
void drawPadsOnStep(Paint& paint, int frame);
void drawPlayThrough(Paint& paint, int frame);
void drawToolButton(Paint& paint, int frame);
void drawToolHits(Paint& paint, int frame);

// Keyboard.cpp
void drawKeyboardMode(Paint& paint, int frame);
void drawKeyboardSecond(Paint& paint, int frame);
void drawWhiteKey(Paint& paint, int frame);
void drawBlackKey(Paint& paint, int frame);
void drawKeyMark(Paint& paint, int frame);
void drawRollArea(Paint& paint, int frame);

// Menus.cpp
void choiceGrid(Paint& paint, int number);
template <int number>
void drawChoiceGrid(Paint& paint, int)
{
    choiceGrid(paint, number);
}
void drawChoiceMark(Paint& paint, int frame);
void drawMenuArrow(Paint& paint, int frame);
void drawMenuRow(Paint& paint, int frame);
void drawMenuCheck(Paint& paint, int frame);
void drawField(Paint& paint, int frame);
void drawScrollThumb(Paint& paint, int frame);

// Marks.cpp
void drawMakerMark(Paint& paint, int frame);
void drawProductMark(Paint& paint, int frame);
void drawAboutPage(Paint& paint, int frame);
void drawLearnRing(Paint& paint, int frame);
void drawFocusRing(Paint& paint, int frame);
void drawShadow(Paint& paint, int frame);
// The ring of eight steps with one of them lit, as on the panel and in the icon.
void productRing(Paint& paint, double cx, double cy, double radius, const Ink& plain);

} // namespace ormund
