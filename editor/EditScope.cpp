#include "editor/EditScope.h"

#include "data/parameters/ChoiceArrows.h"
#include "data/tracks/EditButtons.h"
#include "panel/ControlCatalogue.h"

namespace ormund {

namespace {

EditScope scopeOfParameter(const ControlRow& row)
{
    switch (row.tag) {
    case Tag::Play:
    case Tag::Record:
    case Tag::ModSelect:
    case Tag::ModTrackPage:
    case Tag::Page:
    case Tag::PageTwin:
    case Tag::PerformancePage:
    case Tag::Fill:
    case Tag::KeyboardMode:
    case Tag::KeyboardModeTwin:
        return EditScope::None;
    case Tag::PreviousPreset:
    case Tag::NextPreset:
    case Tag::PreviousSynthPreset:
    case Tag::NextSynthPreset:
        return EditScope::Load;
    case Tag::GlobalPaste:
        return EditScope::Song;
    default:
        break;
    }
    if (const EditButton* edit = editButton(row.tag))
        return edit->operation == EditOperation::Copy ? EditScope::None : EditScope::Tracks;
    return EditScope::Parameter;
}

} // namespace

EditScope scopeOf(const ControlRow& row)
{
    switch (row.action) {
    case Action::GlobalPreset:
    case Action::SynthPreset:
        return EditScope::Load;
    case Action::Learn:
    case Action::LearnMenu:
    case Action::LearnSubMenu:
        return EditScope::Map;
    case Action::RollArea:
        return EditScope::Looper;
    case Action::SetParameter:
        break;
    default:
        return EditScope::None;
    }
    switch (row.kind) {
    case ControlClass::Table:
    case ControlClass::SwitchLine:
    case ControlClass::ListLine:
    case ControlClass::Zone:
        return EditScope::Steps;
    case ControlClass::Knob:
    case ControlClass::Button:
    case ControlClass::Menu:
        return scopeOfParameter(row);
    default:
        return EditScope::None;
    }
}

int editedTag(const ControlRow& row)
{
    const ChoiceArrow* arrow = choiceArrow(row.tag);
    return arrow ? arrow->target : row.tag;
}

} // namespace ormund
