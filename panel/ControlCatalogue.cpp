#include "panel/ControlCatalogue.h"

#include <algorithm>

namespace ormund {

namespace {

// The words of the table below: each makes a row of one class and leaves the rest at its default.

using Lane = ScreenLane;

constexpr EditScope scopeOf(Action action)
{
    switch (action) {
    case Action::SetParameter:
        return EditScope::Parameter;
    case Action::GlobalPreset:
    case Action::SynthPreset:
        return EditScope::Load;
    case Action::Learn:
    case Action::LearnMenu:
    case Action::LearnSubMenu:
        return EditScope::Map;
    case Action::RollArea:
        return EditScope::Looper;
    default:
        return EditScope::None;
    }
}

constexpr ControlRow knob(
    int tag, Place place, int bitmap, int height, int frames, int group = 0, int flags = 0)
{
    ControlRow row;
    row.tag = tag;
    row.kind = ControlClass::Knob;
    row.place = place;
    row.bitmap = int16_t(bitmap);
    row.frameHeight = int16_t(height);
    row.frames = int16_t(frames);
    row.group = int8_t(group);
    row.binding = Binding::Raw;
    row.scope = EditScope::Parameter;
    row.flags = uint16_t(flags);
    return row;
}

constexpr ControlRow button(
    int tag, Place place, int bitmap, int type, float scale, int group, int states, Action action)
{
    ControlRow row;
    row.tag = tag;
    row.kind = ControlClass::Button;
    row.place = place;
    row.bitmap = int16_t(bitmap);
    row.frameHeight = int16_t(place.height());
    row.group = int8_t(group);
    row.buttonType = int8_t(type);
    row.states = int8_t(states);
    row.binding = type == 1 ? Binding::Mapped : Binding::None;
    row.action = action;
    row.scope = scopeOf(action);
    row.scale = scale;
    return row;
}

// Stays as it is set. Its parameter reads 0.5 as on.
constexpr ControlRow toggle(int tag, Place place, int bitmap, int group = 0, float scale = 0.5f,
    int states = 2, Action action = Action::SetParameter)
{
    return button(tag, place, bitmap, 1, scale, group, states, action);
}

// Down while pressed. Edit operations and steps through a list act on its release.
constexpr ControlRow push(int tag, Place place, int bitmap, int group = 0,
    Action action = Action::SetParameter, float scale = 0.5f)
{
    return button(tag, place, bitmap, 0, scale, group, 2, action);
}

constexpr ControlRow menu(int tag, Place place, int bitmap, MenuItems items, float scale,
    int group = 0, Action action = Action::SetParameter)
{
    ControlRow row;
    row.tag = tag;
    row.kind = ControlClass::Menu;
    row.place = place;
    row.bitmap = int16_t(bitmap);
    row.group = int8_t(group);
    row.binding = Binding::Mapped;
    row.action = action;
    row.scope = scopeOf(action);
    row.scale = scale;
    row.items = items;
    if (place.empty())
        row.flags = kPopupOnly;
    return row;
}

constexpr ControlRow steps(ControlClass kind, int tag, Place place, int bitmap, int running,
    int frames, Lane lane, int group = kAlways, int choices = 0)
{
    ControlRow row;
    row.tag = tag;
    row.kind = kind;
    row.place = place;
    row.bitmap = int16_t(bitmap);
    row.runningBitmap = int16_t(running);
    row.frameHeight = int16_t(place.height());
    row.frames = int16_t(frames);
    row.group = int8_t(group);
    row.binding = Binding::Steps;
    row.lane = lane;
    row.hue = hueOf(lane);
    row.scope = EditScope::Steps;
    row.choiceBitmap = int16_t(choices);
    return row;
}

constexpr ControlRow table(
    int tag, Place place, int bitmap, int frames, Lane lane, int group = kAlways)
{
    return steps(ControlClass::Table, tag, place, bitmap, 0, frames, lane, group);
}

constexpr ControlRow switches(int tag, Place place, int bitmap, int running, Lane lane)
{
    return steps(ControlClass::SwitchLine, tag, place, bitmap, running, 1, lane);
}

constexpr ControlRow list(int tag, Place place, int bitmap, int running, int frames, int choices,
    Lane lane, int group = kAlways)
{
    return steps(ControlClass::ListLine, tag, place, bitmap, running, frames, lane, group, choices);
}

constexpr ControlRow zone(int tag, Place place, int columns, Lane lane, int group = kAlways)
{
    return steps(ControlClass::Zone, tag, place, 1105, 0, columns, lane, group);
}

constexpr ControlRow marker(int tag, Place place, Lane lane, int group = kAlways)
{
    ControlRow row;
    row.tag = tag;
    row.kind = ControlClass::Image;
    row.place = place;
    row.bitmap = 1085;
    row.group = int8_t(group);
    row.binding = Binding::Marker;
    row.lane = lane;
    row.action = Action::Nothing;
    row.flags = kNoMouse | kTransparent;
    return row;
}

constexpr ControlRow plain(ControlClass kind, int tag, Place place, int bitmap, int group,
    Binding binding, Action action, int flags = 0)
{
    ControlRow row;
    row.tag = tag;
    row.kind = kind;
    row.place = place;
    row.bitmap = int16_t(bitmap);
    row.group = int8_t(group);
    row.binding = binding;
    row.action = action;
    row.scope = scopeOf(action);
    row.flags = uint16_t(flags);
    return row;
}

constexpr ControlRow hint(int tag, int owner, const char* text, int secondOwner = -1)
{
    ControlRow row = plain(ControlClass::Hint, tag, kHintLine, 1020, kAlways, Binding::None,
        Action::Nothing, kNoMouse);
    row.owner = owner;
    row.secondOwner = secondOwner;
    row.text = text;
    return row;
}

// A hint that shows its owner's value while the owner moves.
constexpr ControlRow value(int tag, int owner, const char* prefix, HintFormat format,
    const char* suffix = "", int flags = 0)
{
    ControlRow row = hint(tag, owner, prefix);
    row.binding = flags & kOwnerMapped ? Binding::Mapped : Binding::Raw;
    row.format = format;
    row.suffix = suffix;
    row.flags = uint16_t(row.flags | flags);
    return row;
}

// A hint without words: nothing shows it.
constexpr ControlRow mute(int tag)
{
    ControlRow row = hint(tag, -1, nullptr);
    row.flags |= kHidden;
    return row;
}

// Where a row is not as its kind is.
constexpr ControlRow in(Hue hue, ControlRow row)
{
    row.hue = hue;
    return row;
}

constexpr ControlRow changes(EditScope scope, ControlRow row)
{
    row.scope = scope;
    return row;
}

using enum ControlClass;
using enum Action;
using enum HintFormat;
constexpr auto kMenuOnly = Place{};
constexpr float kLaneSpeedScale = 0.08334f;

// How a tag of the mod track family runs over the eight tracks: the first track's, the second's,
// and the step from there on.
struct FamilyTags {
    int first, second, step;
    constexpr int of(int track) const { return track == 1 ? first : second + step * (track - 2); }
};

struct FamilyRow {
    FamilyTags tags;
    ControlRow row; // track 1's; `group` is the first track's
    FamilyTags owner{-1, -1, 0};
};

// ---- What is built before all else: the popups, the about page and what lies lowest.

constexpr ControlRow kOpening[] = {
    // clang-format off
    // tag                    place                     bitmap
    menu(  kRightClickTag,    kMenuOnly,                0,    MenuItems::Learn, 1, kNoGroup, Learn),
    plain( Container, kAboutTag, { 300, 200, 701, 495 }, 1109, kNoGroup, Binding::None, Nothing),
    marker(261, { 172, 493, 189, 494 }, modLane(1), 20),
    marker(266, { 172, 493, 189, 494 }, modLane(2), 21),
    marker(271, { 172, 493, 189, 494 }, modLane(3), 22),
    marker(276, { 172, 493, 189, 494 }, modLane(4), 23),
    marker(281, { 172, 493, 189, 494 }, modLane(5), 24),
    marker(286, { 172, 493, 189, 494 }, modLane(6), 25),
    marker(291, { 172, 493, 189, 494 }, modLane(7), 26),
    marker(296, { 172, 493, 189, 494 }, modLane(8), 27),
    marker(350, { 823, 654, 840, 655 }, Lane::Song),
    marker(362, { 172,  54, 189,  55 }, Lane::Pitch),
    marker(498, { 172, 163, 189, 164 }, Lane::Velocity),
    marker(503, { 172, 273, 189, 274 }, Lane::Gate),
    marker(508, { 172, 383, 189, 384 }, Lane::Performance),
    plain( Image,     516, { 789,  49, 995, 370 }, 1101, kSynthPage, Binding::None, Nothing, kNoMouse),
    // The selector lies below the eight values that stand in its rows.
    changes(EditScope::None, knob(   80, {  20, 481,  51, 570 }, 1061, 89, 8, kAlways, kRoundFrame)),
    hint(  260,  80, "mod track selector / display"),
    // clang-format on
};

// ---- One mod track: eight times on the same rectangles, one of them live.

constexpr FamilyRow kModTrackFamily[] = {
    // clang-format off
    // first second step          place                   bitmap
    { {  38,  39,  1 }, toggle( 38, { 135, 489, 150, 504 }, 1031, kTrackPages) },
    { {  82, 104, 22 }, push(   82, { 104, 513, 113, 523 }, 1021, kTrackPages) },
    { {  83, 105, 22 }, push(   83, { 122, 513, 131, 523 }, 1022, kTrackPages) },
    { {  84, 106, 22 }, push(   84, { 113, 504, 122, 514 }, 1023, kTrackPages) },
    { {  85, 107, 22 }, push(   85, { 113, 522, 122, 532 }, 1024, kTrackPages) },
    { {  86, 108, 22 }, push(   86, {  57, 506,  80, 529 }, 1013, kTrackPages) },
    { {  87, 109, 22 }, push(   87, {  81, 506, 104, 529 }, 1014, kTrackPages) },
    { {  88, 118, 22 }, push(   88, { 763, 487, 782, 506 }, 1016, kTrackPages) },
    { {  89, 110, 22 }, table(  89, { 172, 499, 748, 564 }, 1064, 66, Lane::Mod1, kTrackPages) },
    { {  98, 120, 22 }, push(   98, { 763, 507, 782, 526 }, 1017, kTrackPages) },
    { {  99, 121, 22 }, push(   99, { 763, 527, 782, 546 }, 1018, kTrackPages) },
    { { 102, 124, 22 }, plain(Display, 102, {  20, 552,  51, 569 }, 1062, kAlways, Binding::Value,
                            Nothing, kNoMouse | kTransparent) },
    { { 262, 267,  5 }, menu(  262, { 132, 506, 155, 529 }, 1015, MenuItems::Pictures, 0.16666667f, kTrackLoops) },
    { { 264, 269,  5 }, zone(  264, { 172, 489, 748, 498 }, 32, Lane::Mod1, kTrackLoops) },
    { { 302, 303,  1 }, toggle(302, { 135, 562, 150, 577 }, 1032, kTrackPages) },

    // first second step    words                                      whose
    { {  90, 111, 22 }, hint( 90, 0, "Mod track %d Copy"),             {  86, 108, 22 } },
    { {  91, 112, 22 }, hint( 91, 0, "Mod track %d paste"),            {  87, 109, 22 } },
    { {  92, 113, 22 }, hint( 92, 0, "Mod track %d shift forward"),    {  83, 105, 22 } },
    { {  93, 114, 22 }, hint( 93, 0, "Mod track %d shift backward"),   {  82, 104, 22 } },
    { {  94, 119, 22 }, hint( 94, 0, "clear"),                         {  88, 118, 22 } },
    { {  95, 115, 22 }, hint( 95, 0, "Mod track %d shift down"),       {  85, 107, 22 } },
    { {  96, 116, 22 }, hint( 96, 0, "Mod track %d shift up"),         {  84, 106, 22 } },
    { {  97, 117, 22 }, hint( 97, 0, "mod track %d"),                  {  89, 110, 22 } },
    { { 100, 122, 22 }, hint(100, 0, "random"),                        {  98, 120, 22 } },
    { { 101, 123, 22 }, hint(101, 0, "mutate"),                        {  99, 121, 22 } },
    { { 103, 125, 22 }, hint(103, 0, "mod track %d on/off"),           {  38,  39,  1 } },
    { { 263, 268,  5 }, hint(263, 0, "sequencer playback mode"),       { 262, 267,  5 } },
    { { 265, 270,  5 }, hint(265, 0, "playback loop"),                 { 264, 269,  5 } },
    { { 310, 311,  1 }, hint(310, 0, "internal modulation On/Off"),    { 302, 303,  1 } },
    // clang-format on
};

// ---- A mod track that plays a drum, its channel and its speed.

constexpr FamilyRow kDrumFamily[] = {
    // clang-format off
    { { 605, 606,  1 }, toggle(605, {  57, 489,  93, 504 }, 1139, kTrackPages) },
    { { 613, 614,  1 }, knob(  613, {  57, 540,  88, 553 }, 1140, 13, 128, kTrackDrums, kRoundFrame) },
    { { 621, 622,  1 }, knob(  621, {  91, 540, 122, 553 }, 1142, 13, 100, kTrackDrums, kRoundFrame) },
    { { 629, 630,  1 }, knob(  629, { 107, 563, 134, 576 }, 1141, 13,  16, kTrackPages, kRoundFrame) },
    { { 641, 642,  1 }, menu(  641, { 132, 529, 155, 538 }, 1138, MenuItems::Pictures, kLaneSpeedScale, kTrackLoops) },

    { { 766, 767,  1 }, push(  766, { 763, 547, 782, 562 }, 1146, kTrackPages) },

    { { 790, 791,  1 }, hint(  790, 0, "tool: does to the loop what the tool menu says"), { 766, 767,  1 } },
    { { 700, 701,  1 }, hint(  700, 0, "track %d: controller or drum"), { 605, 606,  1 } },
    { { 710, 711,  1 }, value( 710, 0, "drum note  ", NoteName, "", kOwnerMapped), { 613, 614,  1 } },
    { { 720, 721,  1 }, value( 720, 0, "drum gate  ", Integer, " %% of a step", kOwnerMapped), { 621, 622,  1 } },
    { { 730, 731,  1 }, value( 730, 0, "track %d: MIDI channel  ", Integer, "", kOwnerMapped), { 629, 630,  1 } },
    { { 741, 742,  1 }, hint(  741, 0, "speed of the lane"), { 641, 642,  1 } },
    // clang-format on
};

// ---- The target of a mod track: a menu of thirteen sub-menus between two arrows.

constexpr FamilyRow kTargetFamily[] = {
    // clang-format off
    { {  48,  49,  1 }, menu(   48, {  68, 538, 140, 553 }, 1115, MenuItems::Targets, 0.007702308f, kTrackControllers) },
    { {  56,  58,  2 }, push(   56, {  57, 540,  68, 551 }, 1025, kTrackControllers) },
    { {  57,  59,  2 }, push(   57, { 140, 540, 151, 551 }, 1026, kTrackControllers) },
    { {  72,  73,  1 }, hint(   72, 0, "select modulation target cc"), {  48,  49,  1 } },
    // clang-format on
};

// ---- Everything else, in the order of the tags. Out of that order stand only the key zones,
// which lie above the keyboard.

constexpr ControlRow kPanel[] = {
    // clang-format off
    // tag        place                    bitmap height frames page         looks
    knob(    0, {  26,  65,  45, 140 }, 1063, 75,  49, kAlways,       kRoundFrame),
    in(Hue::Pitch, menu(    1, {  68, 100, 144, 112 }, 1116, MenuItems::Choices, 0.029421765f)),
    knob(    2, { 901, 118, 945, 139 }, 1097, 21,   5, kSettingsPage, kRoundFrame | kHorizontal),
    knob(    3, { 901, 148, 945, 169 }, 1119, 21,  25, kSettingsPage, kRoundFrame),
    knob(    4, { 844, 327, 945, 348 }, 1091, 21,  79, kSettingsPage, kHorizontal),
    toggle(  5, { 834, 380, 885, 427 }, 1008),
    knob(    6, { 795, 380, 832, 417 }, 1011, 37, 127),
    toggle(  7, { 904, 380, 955, 427 }, 1009),
    knob(    8, { 957, 380, 994, 417 }, 1011, 37, 127),
    toggle(  9, { 834, 431, 885, 478 }, 1002),
    knob(   10, { 795, 431, 832, 468 }, 1011, 37, 127),
    toggle( 11, { 904, 431, 955, 478 }, 1003),
    knob(   12, { 957, 431, 994, 468 }, 1011, 37, 127),
    toggle( 13, { 834, 482, 885, 529 }, 1004),
    toggle( 14, { 904, 482, 955, 529 }, 1005),
    toggle( 15, { 834, 533, 885, 580 }, 1006),
    toggle( 16, { 904, 533, 955, 580 }, 1007),
    knob(   17, { 806,  90, 847, 131 }, 1103, 41, 127, kSynthPage),
    knob(   18, { 852,  90, 893, 131 }, 1103, 41, 127, kSynthPage,    kFromTop),
    knob(   19, { 897,  90, 938, 131 }, 1103, 41, 127, kSynthPage),
    knob(   20, { 942,  90, 983, 131 }, 1103, 41, 127, kSynthPage,    kFromTop),
    knob(   21, { 806, 139, 847, 180 }, 1103, 41, 127, kSynthPage),
    knob(   22, { 852, 139, 893, 180 }, 1103, 41, 127, kSynthPage),
    knob(   23, { 897, 139, 938, 180 }, 1103, 41, 127, kSynthPage),
    knob(   24, { 942, 139, 983, 180 }, 1103, 41, 127, kSynthPage),
    knob(   25, { 806, 201, 847, 242 }, 1103, 41, 127, kSynthPage),
    knob(   26, { 852, 201, 893, 242 }, 1103, 41, 127, kSynthPage),
    knob(   27, { 897, 201, 938, 242 }, 1103, 41, 127, kSynthPage),
    knob(   28, { 806, 249, 847, 290 }, 1103, 41, 127, kSynthPage),
    knob(   29, { 852, 249, 893, 290 }, 1103, 41, 127, kSynthPage),
    knob(   30, { 897, 249, 938, 290 }, 1103, 41, 127, kSynthPage),
    knob(   31, { 942, 249, 983, 290 }, 1103, 41, 127, kSynthPage),
    knob(   32, { 806, 311, 847, 352 }, 1103, 41, 127, kSynthPage),
    knob(   33, { 852, 311, 893, 352 }, 1103, 41, 127, kSynthPage),
    knob(   34, { 897, 311, 938, 352 }, 1103, 41, 127, kSynthPage),
    knob(   35, { 942, 311, 983, 352 }, 1103, 41, 127, kSynthPage),
    knob(   36, {  60, 317, 152, 334 }, 1110, 17,  15, kAlways,       kHorizontal),
    toggle( 37, {  10, 571,  51, 584 }, 1033),
    changes(EditScope::None, menu(   46, kMenuOnly, 0, MenuItems::TrackPages, 0.0625f, kNoGroup)),
    mute(   81),
    table( 258, { 172, 565, 748, 576 }, 1060, 128, Lane::Pitch),
    hint(  318,  37, "all modulations off"),
    changes(EditScope::None, toggle(319, { 834, 592, 955, 631 }, 1010, kAlways, 1.0f)),
    hint(  320,  13, "retrigger action"),
    value( 321,  12, "Slowdown Rate  ", Percent),
    hint(  322,  11, "slowdown action"),
    value( 323,  10, "looper  ", Integer, "  Steps", kOwnerMapped),
    hint(  324,   9, "looper action"),
    toggle(325, { 901, 192, 945, 213 }, 1042, kSettingsPage, 0.33333334f, 3),
    hint(  326,  14, "half speed action"),
    hint(  327, 319, "play button"),
    hint(  328, 325, "trigger mode"),
    value( 329,   4, "swing amount  ", Percent),
    in(Hue::Neutral, menu(  330, { 855, 286, 934, 301 }, 1114, MenuItems::Choices, 0.10001f, kSettingsPage)),
    hint(  331, 330, "sequencer speed / resolution of one step"),
    push(  332, { 844, 288, 855, 299 }, 1025, kSettingsPage),
    push(  333, { 934, 288, 945, 299 }, 1026, kSettingsPage),
    hint(  334,  15, "manual Step action"),
    //      tag   place                     strip running frames  choice grid
    list(  337, { 172, 405, 748, 421 }, 1072, 1073, 20, 1087, Lane::Performance, kStepsPage),
    hint(  338, 337, "pitch bend sequencer"),
    list(  339, { 172, 421, 748, 437 }, 1074, 1075, 54, 1088, Lane::Performance, kStepsPage),
    hint(  340,  16, "mute action"),
    list(  341, { 172, 389, 748, 405 }, 1070, 1071,  4, 1086, Lane::Performance, kStepsPage),
    hint(  342, 339, "chord sequencer"),
    hint(  343, 341, "octave sequencer"),
    menu(  344, kMenuOnly, 0, MenuItems::TwoPages, 0.5f, kNoGroup),
    list(  346, { 824, 681, 969, 692 }, 1080, 1081, 15, 1092, Lane::Song),
    zone(  347, { 823, 650, 967, 659 }, 8, Lane::Song),
    hint(  348, 347, "playback loop"),
    list(  349, { 824, 665, 969, 676 }, 1082, 1083, 15, 1092, Lane::Song),
    hint(  351, 349, "pattern sequencer"),
    hint(  352, 346, "number of repeats"),
    in(Hue::Neutral, menu(  353, { 855, 633, 934, 648 }, 1114, MenuItems::Choices, 0.16666667f)),
    hint(  354, 353, "pattern sequencer playback speed"),
    push(  355, { 841, 635, 852, 646 }, 1025),
    push(  356, { 934, 635, 945, 646 }, 1026),
    toggle(357, { 825, 633, 840, 648 }, 1001),
    plain(MouseArea, 358, { 459, 589, 752, 626 }, 0, kAlways, Binding::None, LockArea),
    plain(Display, 359, { 459, 589, 752, 626 }, 1084, kAlways, Binding::Value, Nothing, kNoMouse | kTransparent),
    hint(  360, 358, "click to lock, click to unlock"),
    hint(  361, 357, "pattern sequencer on/off switch"),
    in(Hue::Pitch, menu(  363, { 132,  64, 155,  87 }, 1015, MenuItems::Pictures, 0.16666667f)),
    hint(  364, 363, "sequencer playback mode"),
    zone(  365, { 172,  50, 748,  59 }, 32, Lane::Pitch),
    hint(  366, 365, "playback loop"),
    toggle(367, { 307, 597, 381, 618 }, 1039),
    hint(  368, 367, "Global/Individual Loopbar", 369),
    toggle(369, { 385, 600, 400, 615 }, 1001),
    mute(  371),
    mute(  372),
    menu(  373, kMenuOnly, 0, MenuItems::Drivers, 1.0f, kNoGroup, Nothing),
    push(  374, {  82, 150, 148, 165 }, 1037, kAlways, LoadMap),
    push(  375, {   7, 150,  73, 165 }, 1038, kAlways, SaveMap),
    toggle(378, {   8, 230,  22, 243 }, 1034, kAlways, 1.0f, 2, Setting),
    toggle(379, {   8, 210,  22, 223 }, 1034, kAlways, 1.0f, 2, Setting),
    plain(Display, kLearnLineTag, { 809,   0, 984,  25 }, 1118, kAlways, Binding::Value, Nothing, kNoMouse | kTransparent),
    table( 382, { 172, 124, 748, 135 }, 1058, 12, Lane::Pitch),
    hint(  384,   1, "scale selector"),
    push(  385, {  56, 100,  67, 112 }, 1027),
    push(  386, { 145, 100, 156, 112 }, 1028),
    toggle(387, { 843, 148, 887, 169 }, 1040, kSettingsPage),
    switches(388, { 172, 135, 748, 144 }, 1066, 1069, Lane::Pitch),
    push(  389, { 104,  71, 113,  81 }, 1021),
    push(  390, { 122,  71, 131,  81 }, 1022),
    push(  391, { 113,  62, 122,  72 }, 1023),
    push(  392, { 113,  80, 122,  90 }, 1024),
    push(  393, {  57,  64,  80,  87 }, 1013),
    push(  394, {  81,  64, 104,  87 }, 1014),
    push(  395, { 763,  48, 782,  67 }, 1016),
    toggle(396, {  60, 122, 103, 137 }, 1035),
    table( 397, { 172,  59, 748, 124 }, 1055, 25, Lane::Pitch),
    hint(  398, 393, "Pitch track Copy"),
    hint(  399, 394, "Pitch track paste"),
    hint(  400, 390, "Pitch track shift forward"),
    hint(  401, 389, "Pitch track shift backward"),
    hint(  402, 395, "Pitch track clear"),
    hint(  403, 392, "Pitch track shift down"),
    hint(  404, 391, "Pitch track shift up"),
    hint(  405, 396, "recording mode"),
    hint(  406,   0, "rootkey selector"),
    hint(  407, 397, "pitch sequencer"),
    hint(  408, 388, "pitch lock sequencer"),
    push(  409, { 763,  68, 782,  87 }, 1017),
    push(  410, { 763,  88, 782, 107 }, 1018),
    hint(  411, 409, "random"),
    hint(  412, 410, "mutate"),
    switches(413, { 172, 235, 748, 248 }, 1067, 1068, Lane::Velocity),
    push(  414, { 104, 187, 113, 197 }, 1021),
    push(  415, { 122, 187, 131, 197 }, 1022),
    push(  416, { 113, 178, 122, 188 }, 1023),
    push(  417, { 113, 196, 122, 206 }, 1024),
    push(  418, {  57, 180,  80, 203 }, 1013),
    push(  419, {  81, 180, 104, 203 }, 1014),
    push(  420, { 763, 157, 782, 176 }, 1016),
    push(  421, { 104, 290, 113, 300 }, 1021),
    push(  422, { 122, 290, 131, 300 }, 1022),
    push(  423, { 113, 281, 122, 291 }, 1023),
    push(  424, { 113, 299, 122, 309 }, 1024),
    push(  425, {  57, 283,  80, 306 }, 1013),
    push(  426, {  81, 283, 104, 306 }, 1014),
    push(  427, { 763, 267, 782, 286 }, 1016),
    table( 428, { 172, 346, 748, 366 }, 1059, 41, Lane::Gate),
    table( 430, { 172, 169, 748, 234 }, 1056, 66, Lane::Velocity),
    table( 431, { 172, 280, 748, 345 }, 1057, 66, Lane::Gate),
    value( 432,   6, "Gate Time  ", Hundredths),
    hint(  433, 418, "velocity track copy"),
    hint(  434, 419, "velocity track paste"),
    hint(  435, 415, "velocity shift forward"),
    hint(  436, 414, "velocity shift backward"),
    hint(  437, 420, "velocity track clear"),
    hint(  438, 417, "velocity track shift down"),
    hint(  439, 416, "velocity track shift up"),
    hint(  440, 425, "gate time copy"),
    hint(  441, 426, "gate time paste"),
    hint(  442, 422, "gate time shift forward"),
    hint(  443, 421, "gate time shift backward"),
    hint(  444, 427, "gate time clear"),
    hint(  445, 424, "gate time shift down"),
    hint(  446, 423, "gate time shift up"),
    hint(  447, 430, "velocity sequencer"),
    hint(  448, 431, "gate time sequencer"),
    hint(  449, 413, "mute sequencer"),
    hint(  450,   5, "gate time action"),
    push(  451, { 763, 177, 782, 196 }, 1017),
    push(  452, { 763, 197, 782, 216 }, 1018),
    hint(  453, 451, "random"),
    hint(  454, 452, "mutate"),
    push(  455, { 763, 287, 782, 306 }, 1017),
    push(  456, { 763, 307, 782, 326 }, 1018),
    hint(  457, 455, "random"),
    hint(  458, 456, "mutate"),
    value( 459,  36, "", GateMultiple, "    gate time multiply", kOwnerMapped),
    value( 460,   8, "Velocity Threshold  ", Percent),
    hint(  461,   7, "velocity gate action"),
    list(  463, { 172, 437, 748, 453 }, 1076, 1077, 18, 1089, Lane::Performance, kStepsPage),
    list(  464, { 172, 453, 748, 469 }, 1078, 1079, 17, 1090, Lane::Performance, kStepsPage),
    hint(  465, 464, "random sequencer"),
    in(Hue::Neutral, menu(  466, { 318,  22, 502,  38 }, 1111, MenuItems::GlobalPresets, 1.0f, kAlways, GlobalPreset)),
    value( 467,  17, "Synth Level  ", Percent),
    value( 468,  25, "Filter Cutoff  ", Percent),
    value( 469,  26, "Synth Resonance  ", Percent),
    value( 470,  18, "Synth Pan  ", Pan),
    value( 471,  21, "Synth Attack  ", Percent),
    value( 472,  22, "Synth Decay  ", Percent),
    value( 473,  23, "Synth Sustain  ", Percent),
    value( 474,  24, "Synth Release  ", Percent),
    value( 475,  19, "Synth Wave  ", Percent),
    value( 476,  28, "Filter Attack  ", Percent),
    value( 477,  29, "Filter Decay  ", Percent),
    value( 478,  30, "Filter Sustain  ", Percent),
    value( 479,  31, "Filter Release  ", Percent),
    value( 480,  27, "Filter Peak  ", Percent),
    value( 481,  20, "Synth Detune  ", Percent),
    value( 482,  32, "Delay Left  ", Integer, "   /16 notes", kOwnerMapped),
    value( 483,  33, "Delay Right  ", Integer, "  /16 notes", kOwnerMapped),
    value( 484,  34, "Delay Feedback  ", Percent),
    value( 485,  35, "Delay MIX  ", Percent),
    toggle(486, { 843, 192, 887, 213 }, 1041, kSettingsPage),
    knob(  487, { 843, 118, 887, 139 }, 1097, 21,   5, kSettingsPage, kRoundFrame | kHorizontal),
    hint(  490, 486, "trigger source"),
    hint(  491, 487, "midi input octave shift"),
    mute(  492),
    in(Hue::Neutral, menu(  493, { 855, 226, 934, 241 }, 1114, MenuItems::Choices, 0.16666667f, kSettingsPage)),
    hint(  494, 493, "Midi Input Keysync"),
    push(  495, { 844, 228, 855, 239 }, 1025, kSettingsPage),
    push(  496, { 934, 228, 945, 239 }, 1026, kSettingsPage),
    mute(  497),
    in(Hue::Velocity, menu(  499, { 132, 180, 155, 203 }, 1015, MenuItems::Pictures, 0.16666667f, kSeparateLoops)),
    hint(  500, 499, "sequencer playback mode"),
    zone(  501, { 172, 159, 748, 168 }, 32, Lane::Velocity, kSeparateLoops),
    hint(  502, 501, "playback loop"),
    in(Hue::Gate, menu(  504, { 132, 283, 155, 306 }, 1015, MenuItems::Pictures, 0.16666667f, kSeparateLoops)),
    hint(  505, 504, "sequencer playback mode"),
    zone(  506, { 172, 269, 748, 278 }, 32, Lane::Gate, kSeparateLoops),
    hint(  507, 506, "playback loop"),
    menu(  509, {  87, 414, 110, 437 }, 1015, MenuItems::Pictures, 0.16666667f, kSeparateLoops),
    hint(  510, 509, "sequencer playback mode"),
    zone(  511, { 172, 379, 748, 388 }, 32, Lane::Performance, kSeparateLoops),
    hint(  512, 511, "playback loop"),
    toggle(513, { 964,  56, 987,  79 }, 1044, kSettingsPage),
    in(Hue::Neutral, menu(  515, { 852,  61, 939,  76 }, 1113, MenuItems::SynthPresets, 1.0f, kSynthPage, SynthPreset)),
    changes(EditScope::None, toggle(517, { 795,  56, 836,  79 }, 1043)),
    changes(EditScope::None, menu(  518, kMenuOnly, 0, MenuItems::TwoPages, 0.5f, kNoGroup)),
    value( 520, 517, "switch between settings and synth  ", Percent),
    plain(Link, 521, { 862,  69, 926,  84 }, 1049, kSettingsPage, Binding::None, Nothing),
    push(  522, {  59, 421,  68, 431 }, 1021),
    push(  523, {  77, 421,  86, 431 }, 1022),
    push(  524, {  12, 414,  35, 437 }, 1013),
    push(  525, {  36, 414,  59, 437 }, 1014),
    push(  526, { 763, 377, 782, 396 }, 1016),
    hint(  527, 524, "performance Copy"),
    hint(  528, 525, "performance paste"),
    hint(  529, 523, "performance shift forward"),
    hint(  530, 522, "performance shift backward"),
    hint(  531, 526, "performance clear"),
    push(  532, { 763, 397, 782, 416 }, 1017),
    push(  533, { 763, 417, 782, 436 }, 1018),
    hint(  534, 532, "random"),
    hint(  535, 533, "mutate"),
    push(  536, { 108, 603, 117, 613 }, 1051),
    push(  537, { 122, 603, 131, 613 }, 1052),
    push(  538, {  57, 596,  80, 619 }, 1053),
    changes(EditScope::Song, push(  539, {  81, 596, 104, 619 }, 1054)),
    hint(  540, 538, "Global Copy"),
    hint(  541, 539, "Global paste"),
    hint(  542, 537, "Global shift forward"),
    hint(  543, 536, "global shift backward"),
    push(  544, { 194, 598, 213, 617 }, 1019),
    hint(  545, 544, "Global Random"),
    mute(  546),
    push(  547, { 829,  16, 952,  43 }, 1047, kAlways, About),
    plain(MouseArea, 548, { 728, 646, 752, 695 }, 1108, kAlways, Binding::None, RollArea),
    plain(Keyboard, 551, {  55, 646, 727, 695 }, 1098, kAlways, Binding::Value, Nothing),
    plain(Overlay, 489, {  55, 646, 754, 695 }, 1106, kKeyMode0, Binding::Value, Nothing, kNoMouse | kTransparent),
    hint(  549, 551, "fully assigned keyboard"),
    hint(  550, 551, "fully assigned keyboard"),
    hint(  552,   2, "midi output octave shift"),
    value( 553,   3, "midi output transpose  ", Integer, " semitones", kOwnerMapped),
    hint(  554, 548, "roll sequencer"),
    changes(EditScope::None, toggle(555, { 106, 122, 149, 137 }, 1036)),
    hint(  556, 555, "activate recording"),
    changes(EditScope::Load, push(  557, { 286,  19, 318,  41 }, 1029)),
    changes(EditScope::Load, push(  558, { 499,  19, 531,  41 }, 1030)),
    changes(EditScope::Load, push(  559, { 841,  63, 852,  74 }, 1025, kSynthPage)),
    changes(EditScope::Load, push(  560, { 934,  63, 945,  74 }, 1026, kSynthPage)),
    hint(  561, 513, "synthesizer on/off", 571),
    hint(  562, 547, "open about screen"),
    menu(  563, kMenuOnly, 0, MenuItems::LearnTitled, 0.50001f, kNoGroup, LearnMenu),
    push(  565, {  50,  19, 186,  40 }, 1048, kAlways, About),
    hint(  566, 558, "next preset"),
    hint(  567, 557, "previous preset"),
    hint(  568, 560, "next preset"),
    hint(  569, 559, "previous preset"),
    hint(  570, 565, "open aboutscreen"),
    toggle(571, { 964,  56, 987,  79 }, 1044, kSynthPage),
    knob(  572, { 171, 597, 192, 618 }, 1065, 21, 127),
    value( 573, 572, "random minimum amount  ", Percent),
    value( 574, 575, "random maximum amount  ", Percent),
    knob(  575, { 216, 597, 237, 618 }, 1065, 21, 127),
    plain(Overlay, 577, {  55, 646, 754, 695 }, 1107, kKeyMode1, Binding::Value, Nothing, kNoMouse | kTransparent),
    changes(EditScope::None, toggle(578, {  55, 628, 753, 646 }, 1045)),
    knob(  581, {  14, 333,  45, 346 }, 1112, 13,  14, kAlways,       kRoundFrame),
    hint(  582, kMidiDragTag, "drag midi file from here"),
    value( 583, 581, "", Count, "    bars midi file length", kOwnerMapped),
    hint(  584, 585, "change keyboard mode here", 578),
    changes(EditScope::None, toggle(585, {  55, 628, 753, 646 }, 1046)),
    plain(DragSource, kMidiDragTag, { 14, 305, 45, 331 }, 1050, kAlways, Binding::None, DragMidi),
    // The second page of the performance lane.
    list(  586, { 172, 389, 748, 405 }, 1125, 1126, 100, 1586, Lane::Performance, kRulesPage),
    list(  587, { 172, 405, 748, 421 }, 1127, 1128,  41, 1587, Lane::Performance, kRulesPage),
    list(  588, { 172, 421, 748, 437 }, 1129, 1130,  21, 1588, Lane::Performance, kRulesPage),
    list(  589, { 172, 437, 748, 453 }, 1131, 1132,  15, 1589, Lane::Performance, kRulesPage),
    list(  590, { 172, 453, 748, 469 }, 1133, 1134,  24, 1590, Lane::Performance, kRulesPage),
    changes(EditScope::None, push(  592, {  12, 450,  53, 465 }, 1136)),
    changes(EditScope::None, toggle(593, {  42, 381,  75, 395 }, 1135)),
    hint(  594, 586, "chance that the step plays, in percent"),
    hint(  595, 587, "condition of the step"),
    hint(  596, 588, "ratchet: strikes of the step"),
    hint(  597, 589, "step late, in 16ths of its length"),
    hint(  598, 590, "strum of the step's chord"),
    hint(  599, 592, "fill: held, steps with FILL play"),
    hint(  600, 593, "page of the performance lines"),
    // The speed of the lanes, and the melody's channel.
    in(Hue::Pitch, menu(  637, { 132,  88, 155,  97 }, 1138, MenuItems::Pictures, kLaneSpeedScale)),
    menu(  638, {  87, 438, 110, 447 }, 1138, MenuItems::Pictures, kLaneSpeedScale, kSeparateLoops),
    in(Hue::Velocity, menu(  639, { 132, 204, 155, 213 }, 1138, MenuItems::Pictures, kLaneSpeedScale, kSeparateLoops)),
    in(Hue::Gate, menu(  640, { 132, 307, 155, 316 }, 1138, MenuItems::Pictures, kLaneSpeedScale, kSeparateLoops)),
    hint(  752, 637, "speed of the lane"),
    hint(  753, 638, "speed of the lane"),
    hint(  754, 639, "speed of the lane"),
    hint(  755, 640, "speed of the lane"),
    knob(  601, { 843, 353, 870, 366 }, 1141, 13,  16, kSettingsPage, kRoundFrame),
    value( 751, 601, "MIDI channel of the melody  ", Integer, "", kOwnerMapped),
    // When a pattern and the pads act, and the keys outside the zones.
    in(Hue::Neutral, menu(  602, { 753, 589, 785, 626 }, 1143, MenuItems::Pictures, 0.20001f)),
    toggle(603, { 874, 352, 929, 367 }, 1144, kSettingsPage),
    toggle(604, { 932, 352, 989, 367 }, 1145, kSettingsPage),
    hint(  756, 602, "when a chosen pattern begins"),
    hint(  757, 603, "pads HALF and STEP: now or on the next step"),
    hint(  758, 604, "keys outside the zones sound at once"),
    // The tools for steps: the choice, and a button at each lane.
    in(Hue::Neutral, changes(EditScope::None, menu(  760, { 590,   4, 669,  19 }, 1114, MenuItems::Choices, 0.14287f))),
    changes(EditScope::None, knob(  761, { 672,   5, 699,  18 }, 1147, 13,  16, kAlways, kRoundFrame)),
    push(  762, { 763, 108, 782, 123 }, 1146),
    push(  763, { 763, 437, 782, 452 }, 1146),
    push(  764, { 763, 217, 782, 232 }, 1146),
    push(  765, { 763, 327, 782, 342 }, 1146),
    hint(  780, 760, "tool for the steps of a lane"),
    value( 781, 761, "Euclid: hits in the loop  ", Integer, "", kOwnerMapped),
    hint(  782, 762, "tool: does to the loop what the tool menu says"),
    hint(  783, 763, "tool: does to the loop what the tool menu says"),
    hint(  784, 764, "tool: does to the loop what the tool menu says"),
    hint(  785, 765, "tool: does to the loop what the tool menu says"),
    // The popups of the step views, which know a step.
    menu(kLearnStepsTag,     kMenuOnly, 0, MenuItems::LearnSteps, 1, kNoGroup, LearnSubMenu),
    menu(kLearnStepsTag + 1, kMenuOnly, 0, MenuItems::LearnSteps, 1, kNoGroup, LearnSubMenu),
    // clang-format on
};

constexpr ControlRow kExtra[] = {
    // clang-format off
    plain(Image, kSettingsBackTag, { 789, 49, 995, 370 }, 1117, kSettingsPage, Binding::None, Nothing, kNoMouse),
    plain(Display, kTrackNumberTag, { 93, 489, 106, 504 }, 0, kAlways, Binding::Value, Nothing, kNoMouse | kTransparent),
    plain(Image, kRuleNamesTag, { 84, 389, 157, 469 }, 1137, kRulesPage, Binding::None, Nothing, kNoMouse),
    push(kUndoTag, { 752, 22, 768, 38 }, 0, kAlways, Undo),
    push(kRedoTag, { 769, 22, 785, 38 }, 0, kAlways, Redo),
    menu(kPanelScaleTag, { 955, 22, 997, 38 }, 0, MenuItems::PanelScales, 1.0f, kAlways, PanelScale),
    hint(kExtraHintsTag,     kUndoTag, "undo"),
    hint(kExtraHintsTag + 1, kRedoTag, "redo"),
    hint(kExtraHintsTag + 2, kPanelScaleTag, "size of the panel"),
    // clang-format on
};

// ---- The table of the panel, the families written out.

constexpr ControlRow member(const FamilyRow& family, int track)
{
    ControlRow row = family.row;
    row.tag = family.tags.of(track);
    row.track = int8_t(track);
    row.lane = modLane(track);
    row.hue = Hue::Modulation;
    if (row.group >= kTrackPages)
        row.group = int8_t(row.group + track - 1);
    if (row.kind == ControlClass::Hint)
        row.owner = family.owner.of(track);
    if (row.kind == ControlClass::Display) { // the eight values stand one above the other
        row.place.top = int16_t(row.place.top - 10 * (track - 1));
        row.place.bottom = int16_t(row.place.bottom - 10 * (track - 1));
    }
    return row;
}

constexpr ControlRow targetSubMenu(int track, int group)
{
    ControlRow row = menu(kTargetSubMenuTag + 100 * track + group, kMenuOnly, 0,
        MenuItems::TargetGroup, 0.007702308f, kNoGroup, TargetItem);
    row.track = int8_t(track);
    row.owner = kTargetFamily[0].tags.of(track);
    return row;
}

constexpr size_t kControls = std::size(kOpening) + std::size(kPanel)
    + kModTracks
        * (std::size(kModTrackFamily) + std::size(kDrumFamily) + std::size(kTargetFamily)
            + kControllerMenus);

constexpr std::array<ControlRow, kControls> buildCatalogue()
{
    std::array<ControlRow, kControls> all{};
    size_t count = 0;
    for (const ControlRow& row : kOpening)
        all[count++] = row;
    for (int track = 1; track <= kModTracks; ++track)
        for (const FamilyRow& family : kModTrackFamily)
            all[count++] = member(family, track);
    for (int track = 1; track <= kModTracks; ++track)
        for (const FamilyRow& family : kDrumFamily)
            all[count++] = member(family, track);
    for (int track = 1; track <= kModTracks; ++track) {
        for (const FamilyRow& family : kTargetFamily)
            all[count++] = member(family, track);
        for (int group = 0; group < kControllerMenus; ++group)
            all[count++] = targetSubMenu(track, group);
    }
    for (const ControlRow& row : kPanel)
        all[count++] = row;
    return all;
}

constexpr std::array<ControlRow, kControls> kCatalogue = buildCatalogue();

constexpr bool tagsAreUnique()
{
    std::array<int, kControls> tags{};
    for (size_t i = 0; i < kControls; ++i)
        tags[i] = kCatalogue[i].tag;
    std::sort(tags.begin(), tags.end());
    return std::adjacent_find(tags.begin(), tags.end()) == tags.end();
}

static_assert(tagsAreUnique());
static_assert(std::ranges::all_of(kCatalogue, [](const ControlRow& row) {
    const Place& p = row.place;
    return p.left >= 0 && p.top >= 0 && p.right <= kPanelWidth && p.bottom <= kPanelHeight
        && p.left <= p.right && p.top <= p.bottom;
}));

} // namespace

std::span<const ControlRow> controlCatalogue() { return kCatalogue; }
std::span<const ControlRow> extraControls() { return kExtra; }

const ControlRow* findControl(int tag)
{
    for (const ControlRow& row : kCatalogue)
        if (row.tag == tag)
            return &row;
    for (const auto rows : {extraControls(), moreHints()})
        for (const ControlRow& row : rows)
            if (row.tag == tag)
                return &row;
    return nullptr;
}

} // namespace ormund
