#include "editor/ControlFactory.h"

#include "controls/KWBtnLineView.h"
#include "controls/KWButton.h"
#include "controls/KWDisplay.h"
#include "controls/KWFrame.h"
#include "controls/KWImage.h"
#include "controls/KWKeyboardView.h"
#include "controls/KWKnob.h"
#include "controls/KWListLineView.h"
#include "controls/KWListLineViewMenu.h"
#include "controls/KWLocalLink.h"
#include "controls/KWMouseArea.h"
#include "controls/KWTableView.h"
#include "controls/KWZoneView.h"
#include "editor/AboutBox.h"
#include "editor/BitmapTable.h"
#include "editor/EngineLink.h"
#include "editor/HintTexts.h"
#include "editor/KeyZones.h"
#include "editor/MidiDragPad.h"
#include "editor/PatternCells.h"
#include "editor/PlayheadColumn.h"
#include "editor/RollArea.h"
#include "editor/ScreenState.h"
#include "editor/UndoButton.h"
#include "panel/ChoiceGrids.h"
#include "panel/KnobShapes.h"
#include "panel/Look.h"
#include "platform/KWFileio.h"
#include "platform/Messages.h"
#include "platform/OpenLink.h"
#include "view/CBitmap.h"

#include <algorithm>
#include <cstdio>

namespace ormund {

namespace {

CRect rectOf(const Place& place) { return {place.left, place.top, place.right, place.bottom}; }

CBitmap* bitmapOf(const ControlRow& row)
{
    return row.bitmap ? BitmapTable::get(row.bitmap) : nullptr;
}

CColor withAlpha(CColor color, int alpha)
{
    color.alpha = uint8_t(alpha);
    return color;
}

// The hint line is lower than its letters are deep: what hangs out of it goes with it.
class HintDisplay : public KWDisplay {
public:
    using KWDisplay::KWDisplay;
    void invalidRect(const CRect& rect) override
    {
        constexpr int kDescenders = 2;
        KWDisplay::invalidRect({rect.left, rect.top, rect.right, rect.bottom + kDescenders});
    }
};

// Where the connecting line meets the block of each of the 25 notes, pixels from the grid's bottom.
const std::vector<int> kNoteHeights = {
    1, 3, 6, 8, 12, 15, 19, 21, 24, 26, 28, 30, 33, 36, 38, 40, 42, 45, 47, 51, 54, 58, 60, 63, 65};

} // namespace

ControlFactory::ControlFactory(KWFrame& ownFrame, CControlListener& ownListener,
    EngineLink& ownEngine, const ScreenState& screenState, const KWBitSet128& pageGate)
    : frame(ownFrame), listener(ownListener), engine(ownEngine), screen(screenState), gate(pageGate)
{
}

ControlFactory::~ControlFactory() = default;

KWControl* ControlFactory::make(const ControlRow& row)
{
    KWControl* control = nullptr;
    switch (row.kind) {
    case ControlClass::Knob:
        control = makeKnob(row);
        break;
    case ControlClass::Button:
    case ControlClass::DragSource:
        control = makeButton(row);
        break;
    case ControlClass::Menu:
        control = makeMenu(row);
        break;
    case ControlClass::Table:
        control = makeTable(row);
        break;
    case ControlClass::SwitchLine:
        control = makeSwitches(row);
        break;
    case ControlClass::ListLine:
        control = makeList(row);
        break;
    case ControlClass::Zone:
        control = makeZone(row);
        break;
    case ControlClass::Hint:
        control = makeHint(row);
        break;
    case ControlClass::Display:
        control = makeDisplay(row);
        break;
    case ControlClass::Image:
        control = makeImage(row);
        break;
    case ControlClass::MouseArea:
        control = makeMouseArea(row);
        break;
    case ControlClass::Overlay:
        control = makeOverlay(row);
        break;
    case ControlClass::Keyboard:
        control = makeKeyboard(row);
        break;
    case ControlClass::Link:
        control = makeLink(row);
        break;
    case ControlClass::Container:
        control = makeAbout(row);
        break;
    }
    if (!control)
        return nullptr;
    if (row.group != kNoGroup)
        control->setGate(&gate, row.group);
    if (row.flags & kNoMouse)
        control->setMouseEnabled(false);
    if (row.flags & kTransparent)
        control->setTransparency(true);
    if (row.flags & (kHidden | kPopupOnly))
        control->setVisible(false);
    return control;
}

KWControl* ControlFactory::makeKnob(const ControlRow& row)
{
    auto* knob = new KWKnob(rectOf(row.place), &listener, row.tag, &frame,
        BitmapTable::get(row.bitmap), row.frameHeight, row.frames, 1.0f);
    knob->valueSource = engine.raw(row.tag);
    knob->setDefaultValue(engine.defaultRaw(row.tag));
    knob->roundFrame = row.flags & kRoundFrame;
    knob->horizontal = row.flags & kHorizontal;
    if (row.flags & kFromTop)
        knob->firstFrame = row.frames; // the strip's second half
    for (const KnobShape& shape : kKnobShapes)
        if (shape.bitmap == row.bitmap) {
            knob->capCentre = {shape.x, shape.y};
            knob->capRadius = shape.capRadius();
        }
    if (row.bitmap == kModTrackList.bitmap) {
        knob->rowHeight = kModTrackList.height;
        knob->rowsEnd = kModTrackList.end;
    }
    if (knob->valueSource)
        knob->setValue(*knob->valueSource);
    return knob;
}

KWControl* ControlFactory::makeButton(const ControlRow& row)
{
    const CRect place = rectOf(row.place);
    KWButton* button = nullptr;
    if (row.kind == ControlClass::DragSource)
        button = new MidiDragPad(place, &listener, row.tag, &frame, "", false, row.buttonType);
    else if (row.action == Action::Undo || row.action == Action::Redo)
        button = new UndoButton(place, &listener, row.tag, &frame, row.action == Action::Redo);
    else
        button = new KWButton(place, &listener, row.tag, &frame, "", false, row.buttonType);
    button->setBackground(BitmapTable::get(row.bitmap));
    button->setTransparency(true);
    button->frameMask = KWButton::kPressedFrame | KWButton::kHoverFrame;
    button->stateCount = row.states;
    button->setMax(float(row.states - 1));
    if (row.binding == Binding::Mapped)
        // A second button of a value shows the value itself, wherever that was set.
        button->valueSource = engine.mapped(firstControlOf(row.tag));
    return button;
}

KWControl* ControlFactory::makeTable(const ControlRow& row)
{
    const CColor hue = look::colourOf(row.hue);
    auto* view = new KWTableView(rectOf(row.place), &listener, row.tag, &frame, true);
    view->setTable(engine.table(row.tag));
    view->colorBack = look::kWell;
    view->colorBar = hue;
    view->colorGrid = look::kHairline;
    view->colorOther = withAlpha(hue, 140);
    view->colorLine = withAlpha(hue, 179);
    view->setStrip(BitmapTable::get(row.bitmap), row.frames);
    if (row.tag == Tag::Pitch)
        view->noteHeights = &kNoteHeights;
    return view;
}

KWControl* ControlFactory::makeSwitches(const ControlRow& row)
{
    auto* view = new KWBtnLineView(rectOf(row.place), &listener, row.tag, &frame);
    view->line = engine.switchLine(row.tag);
    view->strip = BitmapTable::get(row.bitmap);
    view->runningStrip = BitmapTable::get(row.runningBitmap);
    return view;
}

KWControl* ControlFactory::makeList(const ControlRow& row)
{
    auto* view = new KWListLineView(rectOf(row.place), &listener, row.tag, &frame);
    view->line = engine.listLine(row.tag);
    view->strip = BitmapTable::get(row.bitmap);
    view->runningStrip = BitmapTable::get(row.runningBitmap);
    KWListLineViewMenu& sheet = *view->getMenu();
    for (const ChoiceGrid& grid : kChoiceGrids) {
        if (grid.bitmap != row.choiceBitmap)
            continue;
        sheet.columns = grid.columns;
        sheet.rows = grid.rows;
        sheet.left = ChoiceGrid::kLeft;
        sheet.top = ChoiceGrid::kTop;
        sheet.cellWidth = sheet.cellHeight = ChoiceGrid::kCell;
        sheet.isShiftedByOne = grid.values == row.frames; // else value 0 has a cell too
        sheet.setViewSize({row.place.left, row.place.top, row.place.left + grid.width(),
            row.place.top + grid.height()});
    }
    sheet.hue = look::colourOf(row.hue);
    sheet.background = BitmapTable::get(row.choiceBitmap);
    sheet.selection = BitmapTable::get(1093);
    sheet.zeroText = "\u2013";
    return view;
}

KWControl* ControlFactory::makeZone(const ControlRow& row)
{
    auto* view =
        new KWZoneView(rectOf(row.place), &listener, row.tag, &frame, engine.zone(row.tag));
    view->columns = row.frames;
    view->strip = BitmapTable::get(row.bitmap);
    view->firstFrame = loopFrame(row.hue);
    view->zoneColor = look::colourOf(row.hue);
    view->cellColor = look::kOutsideDash;
    return view;
}

KWControl* ControlFactory::makeHint(const ControlRow& row)
{
    char text[256] = "";
    if (row.text)
        std::snprintf(text, sizeof text, row.text, int(row.track));
    KWDisplay* hint = nullptr;
    if (row.format == HintFormat::None) {
        hint = new HintDisplay(rectOf(row.place), &listener, row.tag, &frame, text, false);
    } else {
        hint = new HintDisplay(rectOf(row.place), &listener, row.tag, &frame);
        hint->prefix = text;
        hint->unit = row.suffix;
        hint->valueSource =
            row.binding == Binding::Mapped ? engine.mapped(row.owner) : engine.raw(row.owner);
        switch (row.format) {
        case HintFormat::Percent:
            hint->valueToString = percentText;
            break;
        case HintFormat::Pan:
            hint->valueToString = panText;
            break;
        case HintFormat::Hundredths:
            hint->valueToString = hundredthsText;
            break;
        case HintFormat::Count:
            hint->valueToString = countText;
            break;
        case HintFormat::NoteName:
            hint->valueToString = noteNameText;
            break;
        case HintFormat::GateMultiple:
            hint->valueToString = gateMultipleText;
            break;
        default:
            hint->valueToString = integerText;
            break;
        }
    }
    hint->setBackground(bitmapOf(row));
    hint->alignment = kLeftText;
    hint->fontSize = 11;
    hint->textLeft = 10;
    hint->textColor = look::kText;
    hint->noFill = true;
    hint->setVisible(false);
    return hint;
}

KWControl* ControlFactory::makeDisplay(const ControlRow& row)
{
    if (row.tag == 359) {
        auto* cells = new PatternCells(rectOf(row.place), &listener, row.tag, &frame);
        cells->strip = BitmapTable::get(row.bitmap);
        cells->runningPattern = &screen.pattern;
        cells->lockedPattern = &screen.lockedPattern;
        cells->lockState = &screen.lockState;
        cells->waitingPattern = &screen.waitingPattern;
        cells->beatHalf = &screen.beatHalf;
        return cells;
    }
    auto* display = new KWDisplay(rectOf(row.place), &listener, row.tag, &frame);
    display->noFill = true;
    if (row.track > 0) { // a controller's value
        display->valueSource = &screen.controllerValue[size_t(row.track - 1)];
        display->intValue = true;
        display->alignment = kRightText;
        display->textRight = 3;
        display->fontSize = 9;
        display->textColor = look::kTextDim;
    } else if (row.tag == kTrackNumberTag) {
        display->showValue = false;
        display->alignment = kLeftText;
        display->fontSize = 9;
        display->textColor = look::kModulation;
    } else { // the line of the head that names what is waited for
        display->showValue = false;
        display->fontSize = 10;
        display->textColor = look::kPitch;
    }
    return display;
}

KWControl* ControlFactory::makeImage(const ControlRow& row)
{
    if (row.binding == Binding::Marker) {
        const ScreenLane lane = row.lane;
        return new PlayheadColumn(&listener, row.tag, &frame, lane, screen.markerX[size_t(lane)]);
    }
    return new KWImage(rectOf(row.place), &listener, row.tag, &frame, bitmapOf(row), nullptr);
}

KWControl* ControlFactory::makeOverlay(const ControlRow& row)
{
    auto* view = new KWPolyObjectView(rectOf(row.place), &listener, row.tag, &frame);
    const int keyMode = row.group == kKeyMode0 ? 0 : 1;
    auto marks = std::make_unique<KWPolyObjectSet>(makeKeyZones(keyMode, row.place.height()));
    view->objectSet = marks.get();
    keyZones.push_back({view, std::move(marks), keyMode});
    view->strip = BitmapTable::get(row.bitmap);
    return view;
}

void ControlFactory::shiftKeyZones(int semitones)
{
    if (semitones == keyShift)
        return;
    keyShift = semitones;
    for (const KeyZones& zones : keyZones) {
        *zones.marks = makeKeyZones(zones.keyMode, zones.view->getHeight(), semitones);
        zones.view->invalid();
    }
}

KWControl* ControlFactory::makeKeyboard(const ControlRow& row)
{
    auto* view = new KWKeyboardView(rectOf(row.place), &listener, row.tag, &frame);
    view->keyState = engine.keyState();
    view->whiteLeft = BitmapTable::get(1098);
    view->whiteMiddle = BitmapTable::get(1099);
    view->whiteRight = BitmapTable::get(1100);
    view->blackKey = BitmapTable::get(1102);
    view->firstWhite = BitmapTable::get(1104);
    view->octaves = kKeyboardOctaves;
    view->baseNote = const_cast<Crossing<float>*>(&screen.keyboardBase);
    for (int key = 0; key < 5; ++key)
        view->blackKeyRects[size_t(key)] = blackKeyRect(key);
    return view;
}

KWControl* ControlFactory::makeMouseArea(const ControlRow& row)
{
    if (row.action != Action::RollArea)
        return new KWMouseArea(rectOf(row.place), &listener, row.tag, &frame);
    auto* area = new RollArea(rectOf(row.place), &listener, row.tag, &frame);
    area->strip = bitmapOf(row);
    return area;
}

KWControl* ControlFactory::makeLink(const ControlRow& row)
{
    const std::string manual = engine.manualPath();
    auto* link = new KWLocalLink(rectOf(row.place), &listener, row.tag, &frame, manual.c_str());
    link->opener = [](const std::string& path) {
        const bool opened = KWFileio::exists(path) && openLink(path);
        if (!opened)
            showMessage("The manual %s cannot be opened here.", path.c_str());
        return opened;
    };
    link->setBackground(BitmapTable::get(row.bitmap));
    link->setTransparency(true);
    return link;
}

KWControl* ControlFactory::makeAbout(const ControlRow& row)
{
    auto* about = new AboutBox(rectOf(row.place), row.tag, &frame, bitmapOf(row),
        BitmapTable::get(1120), BitmapTable::get(1034));
    about->rendersOffline = [this] { return engine.rendersOffline(); };
    about->setRendersOffline = [this](bool on) { engine.setRendersOffline(on); };
    return about;
}

} // namespace ormund
