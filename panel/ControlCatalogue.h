#pragma once

#include "data/parameters/ControllerNames.h"
#include "data/parameters/Tags.h"
#include "panel/Hues.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ormund {

// The whole face of the instrument as one table, a row per control, in the order of building: what
// comes later lies above and gets the mouse first. Building, value dispatch, hints, learning and
// the tests all walk this table; nothing about a control is said twice.
//
// Rectangles are in panel pixels of a panel of 1001 x 695. Constant data: any thread may read it.

enum class ControlClass : uint8_t {
    Knob,
    Button,
    Menu,
    Table,
    SwitchLine,
    ListLine,
    Zone,
    Hint, // a display in the hint line, hidden until the mouse rests on its owner
    Display,
    Image,
    MouseArea,
    Overlay, // a set of rectangles over the keyboard
    Keyboard,
    Link,
    Container,
    DragSource,
};

// The lanes that have a position of their own, in the order of the screen.
enum class ScreenLane : int8_t {
    Pitch,
    Velocity,
    Gate,
    Performance,
    Mod1,
    Mod8 = Mod1 + kModTracks - 1,
    Song,
    Count
};
constexpr int kLanes = int(ScreenLane::Count);
constexpr ScreenLane modLane(int track) // 1 to 8
{
    return ScreenLane(int(ScreenLane::Mod1) + track - 1);
}

constexpr Hue hueOf(ScreenLane lane)
{
    return lane == ScreenLane::Song ? Hue::Neutral
        : lane >= ScreenLane::Mod1  ? Hue::Modulation
                                    : Hue(int(Hue::Pitch) + int(lane));
}

// Which part of the state a control's gesture can change.
enum class EditScope : uint8_t {
    None,      // pages, play, the keyboard: nothing to take back
    Parameter, // one parameter, in all patterns
    Looper,    // the looper and its length, which the roll area moves together
    Steps,     // one track or loop
    Tracks,    // every track and loop
    Song,      // all of these
    Map,       // which controller moves what
    Load,      // all that a preset replaces
};

// What a control shows.
enum class Binding : uint8_t {
    None,
    Raw,    // the normalised value of its parameter
    Mapped, // the engine's value of its parameter: a switch's state, a menu's item
    Steps,  // the step table, line or loop of its tag
    Marker, // the running step of a lane
    Value,  // a value that the engine computes for the screen
};

// What a change of the control does, besides the scaled call of setParameter that its row gives.
enum class Action : uint8_t {
    SetParameter, // tag, value * scale; tags 0 to 45 notify the host too
    Nothing,
    LoadMap,
    SaveMap,
    Setting,
    GlobalPreset,
    SynthPreset,
    About,
    Learn,        // the right-click menu
    LearnMenu,    // the learn menu of tag 563
    LearnSubMenu, // the popups of the step views
    LockArea,
    RollArea,
    TargetItem, // an item of a target sub-menu stands for the whole menu
    DragMidi,
    Undo,
    Redo,
    PanelScale,
};

enum class HintFormat : uint8_t {
    None,
    Percent,
    Pan,
    Integer,
    Hundredths,
    Count,
    GateMultiple,
    NoteName
};

enum class MenuItems : uint8_t {
    None,
    Learn,
    LearnTitled,
    LearnSteps,
    Choices,  // those of its parameter
    Pictures, // the same, shown as pictures at rest
    TrackPages,
    TwoPages,
    Drivers,
    Targets,
    TargetGroup,
    GlobalPresets,
    SynthPresets,
    PanelScales,
};

struct Place {
    int16_t left = 0, top = 0, right = 0, bottom = 0;
    constexpr int width() const { return right - left; }
    constexpr int height() const { return bottom - top; }
    constexpr bool empty() const { return right <= left || bottom <= top; }
};

constexpr int kNoGroup = -1;

// The live pages: bit n of the page gate shows the controls of group n.
enum Group : int8_t {
    kAlways = 0,
    kSynthPage = 2,
    kSettingsPage = 3,
    kSeparateLoops = 5,
    kKeyMode0 = 10,
    kKeyMode1 = 11,
    kTrackPages = 20,       // 20 to 27
    kTrackLoops = 28,       // 28 to 35
    kStepsPage = 36,        // what the steps of the performance lane play
    kRulesPage = 37,        // and when and how
    kTrackControllers = 40, // 40 to 47: the track sends a controller
    kTrackDrums = 48,       // 48 to 55: it plays a drum
};

enum ControlFlags : uint16_t {
    kRoundFrame = 1,
    kHorizontal = 2,
    kNoMouse = 4,       // seen, never hit
    kTransparent = 8,   // lets the panel show through
    kHidden = 16,       // a control that no page shows
    kPopupOnly = 32,    // a menu that opens at the pointer alone
    kSmoothBar = 64,    // steps are joined by lines
    kOwnerMapped = 128, // a hint that shows the engine's value rather than the knob's
    kFromTop = 256,     // a knob whose value goes both ways from its middle
};

struct ControlRow {
    int tag = 0;
    ControlClass kind = ControlClass::Display;
    Place place;
    int16_t bitmap = 0; // 1000 to 1147; 0 for none
    int16_t runningBitmap = 0;
    int16_t frameHeight = 0; // strips: height of a frame
    int16_t frames = 0;      // strips: number of frames; zones: columns
    int8_t group = kAlways;
    int8_t buttonType = 0;
    int8_t states = 2;
    int8_t track = 0;                    // mod track 1 to 8 in its family, else 0
    ScreenLane lane = ScreenLane::Pitch; // of step views, loops and markers
    Hue hue = Hue::Performance;          // of step views and loops, and of a menu's marked entry
    EditScope scope = EditScope::None;   // edit buttons: their row in EditButtons says it
    Binding binding = Binding::None;
    Action action = Action::SetParameter;
    float scale = 1.0f;
    uint16_t flags = 0;
    MenuItems items = MenuItems::None;
    int16_t choiceBitmap = 0; // list lines: the sheet from which a cell is chosen, see ChoiceGrids
    // Hints: whose, what they say ("%d" is the mod track), and how they show a value.
    int owner = -1;
    int secondOwner = -1;
    const char* text = nullptr;
    HintFormat format = HintFormat::None;
    const char* suffix = "";
};

constexpr Place kHintLine{537, 24, 747, 35};

constexpr int kPanelWidth = 1001;
constexpr int kPanelHeight = 695;

constexpr int kRightClickTag = 1000000;
constexpr int kMidiDragTag = 1000002;
constexpr int kAboutTag = 179873360;
constexpr int kLearnLineTag = 380; // names what a learning control waits for
// Ours alone; they stand above every tag that files or hosts know.
constexpr int kLearnStepsTag = 2000000; // 2: learn popups of the grids and of the lines
constexpr int kSettingsBackTag = 2000009;
constexpr int kTrackNumberTag = 2000008;
constexpr int kUndoTag = 2000010;
constexpr int kRedoTag = 2000011;
constexpr int kPanelScaleTag = 2000012;
constexpr int kExtraHintsTag = 2000013;    // 3: of undo, redo and the panel's size
constexpr int kRuleNamesTag = 2000016;     // names of the second page of performance lines
constexpr int kTargetSubMenuTag = 2001000; // + 100 * track + group, 104 of them

// All controls of the panel, in building order.
std::span<const ControlRow> controlCatalogue();
// What stands beside the instrument's own controls: the ground of the settings page, which lies
// below them all, the chosen mod track's number, undo and redo, the panel's size.
std::span<const ControlRow> extraControls();
// Hints of controls that have none among the catalogue's rows.
std::span<const ControlRow> moreHints();
// The hint of a control; null for none.
const ControlRow* hintRowOf(int ownerTag);
// What it says, without its value; empty for none.
std::string hintWordsOf(int ownerTag);
// The row of a tag; null for none. Sub-menus have tags of their own.
const ControlRow* findControl(int tag);

// The fixed texts of a menu, in the order of its values; empty for none.
std::vector<std::string> menuTexts(const ControlRow& row);

} // namespace ormund
