// What the editor looks at once an idle: the engine's running values, the pages, the names.

#include "editor/KWUniClientEditor.h"

#include "controls/KWDisplay.h"
#include "controls/KWFrame.h"
#include "controls/KWOptionMenu.h"
#include "editor/MessageBox.h"
#include "editor/PanelScale.h"
#include "editor/UndoButton.h"
#include "editor/ValueRows.h"
#include "host/plugin/KWUniClient.h"
#include "panel/Look.h"
#include "platform/Messages.h"
#include "view/FittedText.h"

#include <cmath>

namespace ormund {

namespace {
constexpr int kStepWidth = 18;
}

void KWUniClientEditor::refresh()
{
    engine.library.runDeferred();
    recorder.watch();
    refreshLanes();
    fillValueRows(engine);
    refreshPages();
    refreshMenus();
    refreshHead();
    refreshMessages();
    refreshDocument();
    chooser.poll();
}

void KWUniClientEditor::showLane(ScreenLane lane, float step)
{
    const bool runs = engine.screen.playing > 0.0f && step >= 0.0f;
    for (const RunningCell& running : runningCells)
        if (running.lane == lane)
            *running.cell = runs ? std::floor(step) : -1.0f;
    screen.markerX[size_t(lane)] = runs ? std::floor(step) * kStepWidth : ScreenState::kNowhere;
}

void KWUniClientEditor::refreshLanes()
{
    const ScreenValues& values = engine.screen;
    const bool separate = pages.shown().separateLoops;
    const float main = values.mainStep;
    showLane(ScreenLane::Pitch, main);
    showLane(ScreenLane::Velocity, separate ? values.velocityStep.load() : main);
    showLane(ScreenLane::Gate, separate ? values.gateStep.load() : main);
    showLane(ScreenLane::Performance, separate ? values.performanceStep.load() : main);
    for (int track = 0; track < kModTracks; ++track) {
        showLane(ScreenLane(int(ScreenLane::Mod1) + track), values.modStep[size_t(track)]);
        screen.controllerValue[size_t(track)] = values.modValue[size_t(track)] * 127.0f;
    }
    showLane(ScreenLane::Song, values.songStep);
    screen.pattern = values.pattern;
    screen.lockState = values.patternLocked;
    screen.waitingPattern = values.waitingPattern;
    screen.beatHalf = values.beatHalf;
    screen.lockedPattern =
        std::floor(std::min(engine.parameters.raw(Tag::LockArea), 1.0f) * 15.99f);
}

void KWUniClientEditor::refreshPages()
{
    const Parameters& values = engine.parameters;
    factory->shiftKeyZones(values.index(Tag::InputOctave));
    PageGates::Pages wanted;
    wanted.synth = values.index(Tag::Page) != 0;
    wanted.separateLoops = values.index(Tag::LoopbarMode) != 0;
    wanted.modTrack = values.index(Tag::ModTrackPage) % kModTracks;
    wanted.drum = values.index(Tag::DrumRow + wanted.modTrack) != 0;
    wanted.keyMode = values.index(Tag::KeyboardMode) != 0 ? 1 : 0;
    wanted.rules = values.index(Tag::PerformancePage) != 0;
    if (!pages.show(wanted) && pagesShown)
        return;
    pagesShown = true;
    for (int track = 0; track < kModTracks; ++track)
        trackValues[size_t(track)]->textColor =
            track == wanted.modTrack ? look::kInk : look::kTextDim;
    trackNumber->title = std::to_string(wanted.modTrack + 1);
    frame->invalidAll();
}

void KWUniClientEditor::refreshMenus()
{
    for (FollowingMenu& following : menus) {
        const int item = int(*following.source);
        if (item == following.shown)
            continue;
        following.shown = item;
        following.menu->setLeaf(item);
        following.menu->setDirty(true);
    }
    ScreenValues& values = engine.screen;
    if (values.presetListRebuild.isRaised()) {
        values.presetListRebuild.lower();
        for (const PresetKind kind : {PresetKind::Global, PresetKind::Synth})
            factory->fillPresetMenu(*presetMenus[size_t(kind)], kind);
        values.presetNamesChanged.raise();
    }
    if (values.presetNamesChanged.isRaised()) {
        values.presetNamesChanged.lower();
        for (const PresetKind kind : {PresetKind::Global, PresetKind::Synth}) {
            presetMenus[size_t(kind)]->selectedText = link.presetName(kind);
            presetMenus[size_t(kind)]->invalid();
        }
    }
}

// What the learning waits for, and for three seconds what it has found.
std::string KWUniClientEditor::learnText()
{
    constexpr int kShownIdles = 90;
    constexpr double kLetters = 33; // that have room
    const auto fitted = [](const std::string& text) {
        return fittedText(
            text, kLetters, [](std::string_view part) { return double(part.size()); });
    };
    const int before = learningTag;
    learningTag = link.learnTag();
    if (learningTag >= 0) {
        learnedIdles = 0;
        return fitted("move a controller for " + hintWordsOf(learningTag));
    }
    if (before >= 0)
        if (const int controller = link.controllerOf(before); controller >= 0) {
            learnedIdles = kShownIdles;
            return fitted((controller == MidiMap::kPressure ? std::string("pressure")
                                                            : "CC " + std::to_string(controller))
                + " \u2192 " + hintWordsOf(before));
        }
    return learnedIdles > 0 && learnedIdles-- > 0 ? headText : std::string();
}

// The line above the maker's name.
void KWUniClientEditor::refreshHead()
{
    const std::string wanted = learnText();
    if (wanted != headText) {
        headText = wanted;
        learnLine->title = headText;
        learnLine->invalid();
    }
    const int scaleIndex = panelScaleIndex(getScale());
    if (scaleMenu->currentEntry != scaleIndex) {
        scaleMenu->setCurrent(scaleIndex, true);
        scaleMenu->setDirty(true);
    }
    undoButton->setUsable(recorder.canUndo());
    redoButton->setUsable(recorder.canRedo());
}

void KWUniClientEditor::refreshMessages()
{
    if (!hasMessage())
        return;
    if (messageNumber() != shownMessage) {
        shownMessage = messageNumber();
        messageBox->show(currentMessage());
    } else if (!messageBox->isOpen) {
        forgetMessage();
    }
}

} // namespace ormund
