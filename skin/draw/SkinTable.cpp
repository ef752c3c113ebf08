#include "skin/draw/SkinTable.h"

#include "skin/draw/Drawings.h"

#include <array>

namespace ormund {

namespace {

// Buttons: the frames of a state stand together, normal, pressed, hover.
// clang-format off
constexpr SkinRow kTable[] = {
// number  width height frames  what                                               draws
    { 1000, 1001, 695,   1, "the panel: wells, cells, printed labels",             drawBackground },
    { 1001,   15,  15,   6, "switch of no track, off and on",                      drawPlainSwitch },
    { 1002,   51,  47,   6, "pad looper",                                          drawPad<Icon::Looper> },
    { 1003,   51,  47,   6, "pad slowdown",                                        drawPad<Icon::Slowdown> },
    { 1004,   51,  47,   6, "pad retrigger",                                       drawPad<Icon::Retrigger> },
    { 1005,   51,  47,   6, "pad half speed",                                      drawPad<Icon::HalfSpeed> },
    { 1006,   51,  47,   6, "pad step",                                            drawPad<Icon::Step> },
    { 1007,   51,  47,   6, "pad mute",                                            drawPad<Icon::Mute> },
    { 1008,   51,  47,   6, "pad gate time",                                       drawPad<Icon::Gate> },
    { 1009,   51,  47,   6, "pad velocity gate",                                   drawPad<Icon::VelocityGate> },
    { 1010,  121,  39,   6, "play",                                                drawPlay },
    { 1011,   37,  37, 127, "knob beside a pad",                                   drawPadKnob },
    { 1012,   37,  37, 127, "mark of a moved value on 1011",                       drawKnobMark },
    { 1013,   23,  23,   3, "copy",                                                drawEdit<Icon::Copy> },
    { 1014,   23,  23,   3, "paste",                                               drawEdit<Icon::Paste> },
    { 1015,   23,  23,   6, "order of playing, a frame for each",                  drawOrder },
    { 1016,   19,  19,   3, "clear",                                               drawEdit<Icon::Clear> },
    { 1017,   19,  19,   3, "random",                                              drawEdit<Icon::Random> },
    { 1018,   19,  19,   3, "mutate",                                              drawEdit<Icon::Mutate> },
    { 1019,   19,  19,   3, "random of all tracks",                                drawGlobalRandom },
    { 1020,  210,  11,   1, "ground of the hint line",                             drawHintGround },
    { 1021,    9,  10,   3, "shift left",                                          drawArrow<Icon::ShiftLeft> },
    { 1022,    9,  10,   3, "shift right",                                         drawArrow<Icon::ShiftRight> },
    { 1023,    9,  10,   3, "shift up",                                            drawArrow<Icon::ShiftUp> },
    { 1024,    9,  10,   3, "shift down",                                          drawArrow<Icon::ShiftDown> },
    { 1025,   11,  11,   3, "previous entry",                                      drawArrow<Icon::Previous> },
    { 1026,   11,  11,   3, "next entry",                                          drawArrow<Icon::Next> },
    { 1027,   11,  12,   3, "previous scale",                                      drawArrow<Icon::Previous> },
    { 1028,   11,  12,   3, "next scale",                                          drawArrow<Icon::Next> },
    { 1029,   32,  22,   3, "previous preset",                                     drawPresetStep<Icon::Previous> },
    { 1030,   32,  22,   3, "next preset",                                         drawPresetStep<Icon::Next> },
    { 1031,   15,  15,   6, "switch of a modulation track, off and on",            drawTrackSwitch },
    { 1032,   15,  15,   6, "modulation to the synth, off and on",                 drawSynthSwitch },
    { 1033,   41,  13,   6, "all modulations off, idle and off",                   drawAllOff },
    { 1034,   14,  13,   6, "check box",                                           drawCheckBox },
    { 1035,   43,  15,   6, "recording into the track or step by step",            drawRecordMode },
    { 1036,   43,  15,   6, "record, off and on",                                  drawRecord },
    { 1037,   66,  15,   3, "load map",                                            drawLoadMap },
    { 1038,   66,  15,   3, "save map",                                            drawSaveMap },
    { 1039,   74,  21,   6, "loops shared or separate",                            drawLoopMode },
    { 1040,   44,  21,   6, "transpose in scale steps or semitones",               drawTransposeMode },
    { 1041,   44,  21,   6, "trigger from any key or the zone",                    drawTriggerSource },
    { 1042,   44,  21,   9, "trigger by key, play button or host",                 drawTriggerMode },
    { 1043,   41,  23,   6, "page setup or synth",                                 drawPageButton },
    { 1044,   23,  23,   6, "synth, off and on",                                   drawSynthPower },
    { 1045,  698,  18,   6, "keyboard mode, with the zones of the mode",           drawKeyboardMode },
    { 1046,  698,  18,   6, "second control over 1045: nothing but the mouse",   drawKeyboardSecond },
    { 1047,  123,  27,   3, "maker's mark",                                        drawMakerMark },
    { 1048,  136,  21,   3, "product's mark",                                      drawProductMark },
    { 1049,   64,  15,   2, "manual, normal and pressed",                          drawManualLink },
    { 1050,   31,  26,   3, "pad that a MIDI file is dragged from",                drawMidiDrag },
    { 1051,    9,  10,   3, "shift all tracks left",                               drawArrow<Icon::ShiftLeft> },
    { 1052,    9,  10,   3, "shift all tracks right",                              drawArrow<Icon::ShiftRight> },
    { 1053,   23,  23,   3, "copy all tracks",                                     drawEdit<Icon::Copy> },
    { 1054,   23,  23,   3, "paste all tracks",                                    drawEdit<Icon::Paste> },
    { 1055,   18,  65,  25, "pitch step, a frame for each of the 25 notes",        drawPitchStep },
    { 1056,   18,  65,  66, "velocity step, frame k a bar of k pixels",            drawVelocityStep },
    { 1057,   18,  65,  66, "gate step, frame k a bar of k pixels",                drawGateStep },
    { 1058,   18,  11,  12, "note names",                                          drawNoteName },
    { 1059,   18,  20,  41, "gate values 0 to 40",                                 drawGateValue },
    { 1060,   18,  11, 128, "modulation values 0 to 127",                          drawModulationValue },
    { 1061,   31,  89,   8, "selector of the modulation track, frame 0 lowest",    drawModSelect },
    { 1062,   31,  17,   1, "ground of a modulation value: nothing",               drawNothing },
    { 1063,   19,  75,  49, "root key, C2 to C6",                                  drawRootKey },
    { 1064,   18,  65,  66, "modulation step, frame k a bar of k pixels",          drawModulationStep },
    { 1065,   21,  21, 127, "small knob",                                          drawSmallKnob },
    { 1066,   18,   9,   1, "pitch lock",                                          drawLockCell<false> },
    { 1067,   18,  13,   1, "velocity on",                                         drawMuteCell<false> },
    { 1068,   18,  13,   1, "velocity on, running",                                drawMuteCell<true> },
    { 1069,   18,   9,   1, "pitch lock, running",                                 drawLockCell<true> },
    { 1070,   18,  16,   4, "octave: +2, +1, -1, -2",                              drawOctaveCell<false> },
    { 1071,   18,  16,   4, "octave, running",                                     drawOctaveCell<true> },
    { 1072,   18,  16,  20, "pitch bend shapes",                                   drawBendCell<false> },
    { 1073,   18,  16,  20, "pitch bend shapes, running",                          drawBendCell<true> },
    { 1074,   18,  16,  54, "chords",                                              drawChordCell<false> },
    { 1075,   18,  16,  54, "chords, running",                                     drawChordCell<true> },
    { 1076,   18,  16,  18, "arpeggios: three families of six rhythms",            drawArpeggioCell<false> },
    { 1077,   18,  16,  18, "arpeggios, running",                                  drawArpeggioCell<true> },
    { 1078,   18,  16,  17, "random: a die for what is thrown",                    drawRandomCell<false> },
    { 1079,   18,  16,  17, "random, running",                                     drawRandomCell<true> },
    { 1080,   18,  11,  15, "repeats 2 to 16",                                     drawSongCell<false> },
    { 1081,   18,  11,  15, "repeats, running",                                    drawSongCell<true> },
    { 1082,   18,  11,  15, "patterns 2 to 16",                                    drawSongCell<false> },
    { 1083,   18,  11,  15, "patterns, running",                                   drawSongCell<true> },
    { 1084,   18,  37,   4, "cell of a pattern: idle, locked, running, both",      drawPatternCell },
    { 1085,   17,   1,   1, "running step",                                        drawRunningMark },
    { 1086,   78,  22,   1, "choice of an octave",                                 drawChoiceGrid<1086> },
    { 1087,  150,  58,   1, "choice of a pitch bend",                              drawChoiceGrid<1087> },
    { 1088,  222,  94,   1, "choice of a chord",                                   drawChoiceGrid<1088> },
    { 1089,  114,  58,   1, "choice of an arpeggio",                               drawChoiceGrid<1089> },
    { 1090,  168,  40,   1, "choice of a random action",                           drawChoiceGrid<1090> },
    { 1091,  101,  21,  79, "swing",                                               drawSwing },
    { 1092,  150,  40,   1, "choice of a pattern or a number of repeats",          drawChoiceGrid<1092> },
    { 1093,   18,  18,   2, "cell of a choice grid: chosen, under the mouse",      drawChoiceMark },
    { 1094,    8,   8,   1, "arrow of a menu's row with a sub-menu",               drawMenuArrow },
    { 1095,  245,  16,   1, "row of a wide menu",                                  drawMenuRow },
    { 1096,    8,   8,   1, "check mark of a menu",                                drawMenuCheck },
    { 1097,   44,  21,   5, "octave shift in five marks; its ranges differ",       drawOctaveBox },
    { 1098,   12,  49,   9, "white keys C and F: a pair per zone, idle and lit",   drawWhiteKey },
    { 1099,   12,  49,   9, "white keys D, G and A",                               drawWhiteKey },
    { 1100,   12,  49,   9, "white keys E and B",                                  drawWhiteKey },
    { 1101,  206, 321,   1, "synth page",                                          drawSynthPage },
    { 1102,    8,  30,   8, "black keys: a pair per zone, idle and lit",           drawBlackKey },
    { 1103,   41,  41, 254, "knob of the synth, then one that grows from the top",  drawSynthKnob },
    { 1104,   12,  49,   9, "first white key",                                     drawWhiteKey },
    { 1105,   18,   9,  24, "loop bar in six hues: outside, left, inside, right",  drawLoopCell },
    { 1106,   12,  49,  10, "marks on keys: eight actions, transpose by 0, C",     drawKeyMark },
    { 1107,   12,  49,  10, "marks on keys, second mode",                          drawKeyMark },
    { 1108,   24,  49,   2, "roll area, normal and pressed",                       drawRollArea },
    { 1109,  401, 295,   1, "about page",                                          drawAboutPage },
    { 1110,   92,  17,  15, "gate time multiply",                                  drawGateMultiply },
    { 1111,  184,  16,   1, "field of the preset menu",                            drawField },
    { 1112,   31,  13,  14, "bars of the MIDI file",                               drawBars },
    { 1113,   87,  15,   1, "field of the synth preset menu",                      drawField },
    { 1114,   79,  15,   1, "field of a list",                                     drawField },
    { 1115,   72,  15,   1, "field of a modulation target",                        drawField },
    { 1116,   76,  12,   1, "field of the scale menu",                             drawField },
    { 1117,  206, 321,   1, "settings page",                                       drawSettingsPage },
    { 1118,  175,  25,   1, "ground of the head display: nothing",                 drawNothing },
    { 1119,   44,  21,  25, "transpose -12 to +12",                                drawTransposeBox },
    { 1120,   15,  15,   3, "close",                                               drawEdit<Icon::Clear> },
    { 1121,    9,  16,   2, "thumb of a scroll bar, normal and dragged",           drawScrollThumb },
    { 1122,   41,  41,   1, "ring of a control that learns",                       drawLearnRing },
    { 1123,   23,  23,   1, "ring of the keyboard focus",                          drawFocusRing },
    { 1124,    1,   1,   1, "shadow",                                              drawShadow },
    { 1125,   18,  16, 100, "chance, 99 to 0 %",                                   drawRuleCell<chanceGlyph, false> },
    { 1126,   18,  16, 100, "chance, running",                                     drawRuleCell<chanceGlyph, true> },
    { 1127,   18,  16,  41, "conditions",                                          drawRuleCell<conditionGlyph, false> },
    { 1128,   18,  16,  41, "conditions, running",                                 drawRuleCell<conditionGlyph, true> },
    { 1129,   18,  16,  21, "ratchets: 2 to 8 strikes, flat, rising, falling",     drawRuleCell<ratchetGlyph, false> },
    { 1130,   18,  16,  21, "ratchets, running",                                   drawRuleCell<ratchetGlyph, true> },
    { 1131,   18,  16,  15, "late by sixteenths of a step",                        drawRuleCell<lateGlyph, false> },
    { 1132,   18,  16,  15, "late, running",                                       drawRuleCell<lateGlyph, true> },
    { 1133,   18,  16,  24, "strums: eight widths up, down, by turns",             drawRuleCell<strumGlyph, false> },
    { 1134,   18,  16,  24, "strums, running",                                     drawRuleCell<strumGlyph, true> },
    { 1135,   33,  14,   6, "page of the performance lines",                       drawPerformancePage },
    { 1136,   41,  15,   3, "fill",                                                drawFill },
    { 1137,   73,  80,   1, "names of the second page of performance lines",       drawRuleNames },
    { 1138,   23,   9,  12, "speed of a lane",                                     drawLaneSpeed },
    { 1139,   36,  15,   6, "a modulation track, or a drum",                       drawTrackMode },
    { 1140,   31,  13, 128, "note of a drum",                                      drawDrumNote },
    { 1141,   27,  13,  16, "MIDI channel",                                        drawChannel },
    { 1142,   31,  13, 100, "gate of a drum, 1 to 100 %",                          drawDrumGate },
    { 1143,   32,  37,   5, "when a chosen pattern begins",                        drawLaunch },
    { 1144,   55,  15,   6, "pads act now or on the step",                         drawPadsOnStep },
    { 1145,   57,  15,   6, "keys play through, off and on",                       drawPlayThrough },
    { 1146,   19,  15,   3, "tool for the steps of a lane",                        drawToolButton },
    { 1147,   27,  13,  16, "hits of the tool",                                    drawToolHits },
};
// clang-format on

constexpr bool numbersRiseWithoutGap()
{
    int expected = kFirstBitmap;
    for (const SkinRow& row : kTable)
        if (row.number != expected++)
            return false;
    return expected == kLastBitmap + 1;
}

// The largest scale must stay inside what an image surface can hold.
constexpr bool everyStripFits()
{
    for (const SkinRow& row : kTable)
        if (row.frameWidth < 1 || row.frameHeight < 1 || row.frames < 1 || row.height() * 3 > 32767)
            return false;
    return true;
}

static_assert(numbersRiseWithoutGap());
static_assert(everyStripFits());

} // namespace

std::span<const SkinRow> skinTable() { return kTable; }

const SkinRow& skinRow(int number) { return kTable[number - kFirstBitmap]; }

} // namespace ormund
