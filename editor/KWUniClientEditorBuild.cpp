// Opening: the frame, all controls of the catalogue, and what belongs to them.

#include "editor/KWUniClientEditor.h"

#include "base/Product.h"
#include "controls/KWDisplay.h"
#include "controls/KWFrame.h"
#include "controls/KWOptionMenu.h"
#include "editor/AboutBox.h"
#include "editor/BitmapTable.h"
#include "editor/Browser.h"
#include "editor/FileSheet.h"
#include "editor/MessageBox.h"
#include "editor/MidiDragPad.h"
#include "editor/PanelScale.h"
#include "editor/QuestionLine.h"
#include "editor/UndoButton.h"
#include "editor/UndoList.h"
#include "host/plugin/KWUniClient.h"
#include "panel/Look.h"
#include "platform/Messages.h"
#include "view/CBitmap.h"

#include <algorithm>

namespace ormund {

bool KWUniClientEditor::openFrame(void* parent, std::unique_ptr<FrameWindow> window)
{
    if (isOpenNow)
        return true;
    if (!window) {
        chooseFirstScale();
        window = openSystemWindow(parent);
        if (!window)
            return false;
    }
    bitmaps = std::make_unique<BitmapTable>();
    AEffGUIEditor::open(parent);
    isOpenNow = true;
    makeFrame(parent, std::move(window));
    frame->setBackground(getBitmap(BitmapTable::kFirst));
    factory = std::make_unique<ControlFactory>(*frame, *this, link, screen, pages.gate());
    addMessageViewer();
    buildControls();
    pushPages();
    refresh();
    // Seen at once, also in a host that is slow with its first idle.
    frame->repaint();
    return true;
}

void KWUniClientEditor::buildControls()
{
    const auto add = [this](const ControlRow& row) {
        KWControl* control = factory->make(row);
        if (!control)
            return;
        controls.emplace(row.tag, control);
        frame->addView(control);
        if (row.kind == ControlClass::Menu && row.binding == Binding::Mapped)
            if (const Crossing<float>* source = link.mapped(row.tag);
                source && !(row.flags & kPopupOnly))
                menus.push_back({static_cast<KWOptionMenu*>(control), source, -1});
    };
    for (const ControlRow& row : extraControls())
        if (row.kind == ControlClass::Image)
            add(row);
    for (const ControlRow& row : controlCatalogue())
        add(row);
    for (const ControlRow& row : extraControls())
        if (row.kind != ControlClass::Image)
            add(row);
    std::ranges::for_each(moreHints(), add);
    raiseMarkers();
    bindRunningSteps();
    bindHints();
    bindPopups();
    bindHandles();
    for (int i = 0; i < int(kPanelScales.size()); ++i)
        scaleMenu->setEntryEnabled(
            i, fittingPanelScale(kPanelScales[size_t(i)], desktop) == kPanelScales[size_t(i)]);
    messageBox = new MessageBox(frame, product::kName);
    fileSheet = new FileSheet(frame);
    undoList = new UndoList(frame, recorder, [this](size_t level) {
        recorder.goTo(level);
        redrawFrame();
    });
    frame->addView(undoList);
    for (UndoButton* button : {undoButton, redoButton})
        button->setPopupControl(undoList);
    questionLine = new QuestionLine(frame);
    frame->addView(questionLine);
    frame->addView(fileSheet);
    browser = new Browser(frame, engine, recorder);
    frame->addView(browser);
    static_cast<KWOptionMenu*>(getControl(466))->pressedText = [this] { browser->show(); };
    frame->addView(messageBox);
}

// The controls that the editor itself moves. Here alone a tag stands for a class.
void KWUniClientEditor::bindHandles()
{
    bindDragPad(*getControl(kMidiDragTag));
    scaleMenu = static_cast<KWOptionMenu*>(getControl(kPanelScaleTag));
    undoButton = static_cast<UndoButton*>(getControl(kUndoTag));
    redoButton = static_cast<UndoButton*>(getControl(kRedoTag));
    aboutBox = static_cast<AboutBox*>(getControl(kAboutTag));
    learnLine = static_cast<KWDisplay*>(getControl(kLearnLineTag));
    trackNumber = static_cast<KWDisplay*>(getControl(kTrackNumberTag));
    for (const ControlRow& row : controlCatalogue()) {
        KWControl* control = getControl(row.tag);
        if (row.kind == ControlClass::Display && row.track > 0)
            trackValues[size_t(row.track - 1)] = static_cast<KWDisplay*>(control);
        else if (row.items == MenuItems::GlobalPresets)
            presetMenus[size_t(PresetKind::Global)] = static_cast<KWOptionMenu*>(control);
        else if (row.items == MenuItems::SynthPresets)
            presetMenus[size_t(PresetKind::Synth)] = static_cast<KWOptionMenu*>(control);
    }
}

// The markers are made first but seen last: they run over the loop bars. They take no mouse.
void KWUniClientEditor::raiseMarkers()
{
    for (const ControlRow& row : controlCatalogue())
        if (row.binding == Binding::Marker)
            if (KWControl* marker = getControl(row.tag); frame->removeView(marker, false))
                frame->addView(marker);
}

void KWUniClientEditor::bindRunningSteps()
{
    for (const ControlRow& row : controlCatalogue()) {
        if (KWTableXY* table = engine.tracks.tableAt(row.tag))
            runningCells.push_back({&table->runningPosition, row.lane});
        else if (StepLine* line = engine.tracks.lineAt(row.tag))
            runningCells.push_back({&line->runningStep, row.lane});
    }
}

void KWUniClientEditor::bindHints()
{
    const auto bind = [this](const ControlRow& row) {
        if (row.kind != ControlClass::Hint)
            return;
        for (const int owner : {row.owner, row.secondOwner})
            if (KWControl* control = getControl(owner))
                control->addHoverView(getControl(row.tag));
    };
    std::ranges::for_each(controlCatalogue(), bind);
    std::ranges::for_each(extraControls(), bind);
    std::ranges::for_each(moreHints(), bind);
}

// A right click learns on every control that has a parameter; on the step views it also knows the
// step under the mouse.
void KWUniClientEditor::bindPopups()
{
    for (const ControlRow& row : controlCatalogue()) {
        KWControl* control = getControl(row.tag);
        if (!control || row.tag >= kTagCount)
            continue;
        switch (row.kind) {
        case ControlClass::Table:
            control->setPopupControl(getControl(kLearnStepsTag));
            break;
        case ControlClass::SwitchLine:
        case ControlClass::ListLine:
            control->setPopupControl(getControl(kLearnStepsTag + 1));
            break;
        case ControlClass::Knob:
        case ControlClass::Button:
        case ControlClass::Menu:
            control->setPopupControl(getControl(kRightClickTag));
            break;
        default:
            break;
        }
    }
}

void KWUniClientEditor::bindDragPad(KWControl& control)
{
    auto& pad = static_cast<MidiDragPad&>(control);
    pad.beginDrag = [this] { dragMidiFile(); };
    pad.clicked = [this] { askForMidiFile(); };
}

// So that pages and engine start in step.
void KWUniClientEditor::pushPages()
{
    for (const int tag :
        {Tag::ModTrackPage, Tag::PageOff, Tag::LoopbarMode, Tag::Page, Tag::KeyboardMode})
        link.setParameter(tag, engine.parameters.raw(tag));
}

} // namespace ormund
