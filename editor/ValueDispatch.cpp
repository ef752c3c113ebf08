#include "editor/ValueDispatch.h"

#include "controls/KWMouseArea.h"
#include "controls/KWOptionMenu.h"
#include "editor/EditorActions.h"
#include "editor/EngineLink.h"

namespace ormund {

void ValueDispatch::setParameter(const ControlRow& row, float value)
{
    const float scaled = parameterValue(row, value);
    if (row.tag < kHostParameters)
        engine.setParameterAutomated(row.tag, scaled);
    else
        engine.setParameter(row.tag, scaled);
}

void ValueDispatch::valueChanged(CControl& control)
{
    const ControlRow* row = findControl(int(control.getTag()));
    if (!row)
        return;
    const float value = control.getValue();
    switch (row->action) {
    case Action::LearnSubMenu:
        learnOfSubMenu(static_cast<KWOptionMenu&>(control), value);
        break;
    case Action::LearnMenu:
    case Action::Learn:
        learn(static_cast<KWOptionMenu&>(control), value);
        break;
    case Action::SetParameter:
        if (row->items == MenuItems::Targets) // the item's place in the whole tree
            setParameter(*row, float(static_cast<KWOptionMenu&>(control).getLeaf()));
        else
            setParameter(*row, value);
        break;
    case Action::LockArea:
        engine.copyLockArea(static_cast<KWMouseArea&>(control).getState());
        setParameter(*row, value);
        break;
    case Action::RollArea:
        roll(static_cast<KWMouseArea&>(control).getState());
        setParameter(*row, value);
        break;
    case Action::LoadMap:
        if (value == 1.0f)
            actions.askForMapToLoad();
        break;
    case Action::SaveMap:
        if (value == 1.0f)
            actions.askForMapToSave();
        break;
    case Action::Setting:
        engine.setSetting(row->tag, value >= 0.5f);
        break;
    case Action::GlobalPreset:
        preset(static_cast<KWOptionMenu&>(control), value, PresetKind::Global);
        break;
    case Action::SynthPreset:
        preset(static_cast<KWOptionMenu&>(control), value, PresetKind::Synth);
        break;
    case Action::About:
        if (value == 0.0f)
            actions.showAbout();
        break;
    case Action::Undo:
        if (value == 0.0f)
            actions.undo();
        break;
    case Action::Redo:
        if (value == 0.0f)
            actions.redo();
        break;
    case Action::PanelScale:
        actions.choosePanelScale(int(value));
        break;
    case Action::TargetItem: // its menu reports
    case Action::DragMidi:   // the pad asks the editor itself
    case Action::Nothing:
        break;
    }
    control.setDirty(true);
}

// The menu that a right click on a control opens. It carries the tag of that control.
void ValueDispatch::learn(KWOptionMenu& menu, float value)
{
    const int tag = int(menu.getMenuTag());
    if (value == 0.0f)
        engine.setLearnTarget(tag, 0);
    else if (value == 1.0f)
        engine.clearMapping(tag);
    actions.redrawFrame();
}

// The menus of the step views have two titles before their entries. Entries between the titles and
// the last two stand for a controller of that number.
void ValueDispatch::learnOfSubMenu(KWOptionMenu& menu, float value)
{
    const int tag = int(menu.getMenuTag());
    const int step = menu.getMenuStep() < 0 ? 0 : menu.getMenuStep();
    const int index = int(value) - 2;
    if (index >= 0 && index < menu.getEntryCount() - 4) {
        engine.clearMapping(tag, step);
        engine.addAssignment(index, tag, step);
    } else if (index == 0) {
        engine.clearMapping(tag, step);
        engine.setLearnTarget(tag, step);
    } else if (index == 1) {
        engine.clearMapping(tag, step);
    }
    actions.redrawFrame();
}

void ValueDispatch::preset(KWOptionMenu& menu, float value, PresetKind kind)
{
    if (value == 0.0f && (menu.menuStyle & KWOptionMenu::kHeaderSave))
        actions.askForPresetToSave(kind);
    else if (value == 1.0f && (menu.menuStyle & KWOptionMenu::kHeaderLoad))
        actions.askForPresetToLoad(kind);
    else
        actions.loadPresetOfMenu(menu, kind);
    actions.redrawFrame();
}

// Holding the roll area loops the last steps, as many as the pointer's height says: two at its
// upper end, eight at its lower one. Letting go plays on, and the looper is as it was.
void ValueDispatch::roll(const KWMouseArea::State& state)
{
    if (state.leftButton > 0.0f) {
        if (!beforeRoll)
            beforeRoll = {*engine.raw(Tag::LooperSteps), *engine.raw(Tag::Looper)};
        engine.setParameterAutomated(Tag::LooperSteps, state.y);
        engine.setParameterAutomated(Tag::Looper, 1.0f);
    } else if (beforeRoll) {
        engine.setParameterAutomated(Tag::LooperSteps, beforeRoll->steps);
        engine.setParameterAutomated(Tag::Looper, beforeRoll->looper);
        beforeRoll.reset();
    }
}

} // namespace ormund
