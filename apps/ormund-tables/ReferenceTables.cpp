#include "apps/ormund-tables/ReferenceTables.h"

#include "data/parameters/Parameters.h"
#include "editor/PassiveControls.h"
#include "panel/ControlCatalogue.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

namespace ormund {

namespace {

std::string number(float value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", static_cast<double>(value));
    return text;
}

std::string valuesText(const ParameterEntry& entry)
{
    if (entry.backing == Backing::Zones)
        return "a loop; set by its bar alone";
    if (!entry.hasValue())
        return "one step of the current pattern";
    if (isAction(entry.tag))
        return "acts on release";
    const int choices = choiceCount(entry.tag);
    if (entry.isButton() || choices < 2)
        return entry.isButton() ? "off, on" : "0 to 1";
    return std::to_string(choices) + ": " + std::string(choiceText(entry.tag, 0)) + " to "
        + std::string(choiceText(entry.tag, choices - 1));
}

std::string asCode(std::string_view name)
{
    std::string text(1, '`');
    text.append(name);
    text.push_back('`');
    return text;
}

const char* className(ControlClass kind)
{
    switch (kind) {
    case ControlClass::Knob:
        return "knob";
    case ControlClass::Button:
        return "button";
    case ControlClass::Menu:
        return "menu";
    case ControlClass::Table:
        return "grid";
    case ControlClass::SwitchLine:
        return "line of switches";
    case ControlClass::ListLine:
        return "line of choices";
    case ControlClass::Zone:
        return "loop bar";
    case ControlClass::Hint:
        return "hint";
    case ControlClass::Display:
        return "display";
    case ControlClass::Image:
        return "image";
    case ControlClass::MouseArea:
        return "mouse area";
    case ControlClass::Overlay:
        return "overlay";
    case ControlClass::Keyboard:
        return "keyboard";
    case ControlClass::Link:
        return "link";
    case ControlClass::Container:
        return "container";
    case ControlClass::DragSource:
        return "drag source";
    }
    return "";
}

std::string pageText(const ControlRow& row)
{
    if (row.flags & kHidden)
        return "hidden";
    if (row.group >= kTrackLoops)
        return "track " + std::to_string(row.group - kTrackLoops + 1) + ", loops apart";
    if (row.group >= kTrackPages)
        return "track " + std::to_string(row.group - kTrackPages + 1);
    switch (row.group) {
    case kSynthPage:
        return "synth page";
    case kSettingsPage:
        return "settings page";
    case kSeparateLoops:
        return "loops apart";
    case kKeyMode0:
        return "2 octaves";
    case kKeyMode1:
        return "4 octaves";
    default:
        return "";
    }
}

std::string hintOf(const std::vector<const ControlRow*>& hints, int tag)
{
    for (const ControlRow* hint : hints) {
        if (hint->owner != tag && hint->secondOwner != tag)
            continue;
        char text[128];
        std::snprintf(text, sizeof text, "%s", hint->text ? hint->text : "");
        std::string words = text;
        if (const size_t place = words.find("%d"); place != std::string::npos)
            words = words.substr(0, place) + std::to_string(hint->track) + words.substr(place + 2);
        return words;
    }
    return "";
}

std::string passiveTable(std::span<const PassiveControl> list)
{
    std::string text = "| Tag | Why |\n|---|---|\n";
    for (const PassiveControl& still : list)
        text += "| " + std::to_string(still.tag) + " | " + still.why + " |\n";
    return text;
}

} // namespace

std::string passiveControlTable() { return passiveTable(passiveControls()); }
std::string passiveParameterTable() { return passiveTable(passiveParameters()); }

std::string parameterTable()
{
    std::string text = "| Tag | Name | Key | Default | Values | Kept in | Per pattern |\n"
                       "|---|---|---|---|---|---|---|\n";
    for (const ParameterEntry& entry : allParameters()) {
        text += "| " + std::to_string(entry.tag) + " | " + asCode(entry.name) + " | "
            + (entry.fileKey < 0 ? std::string() : std::to_string(entry.fileKey)) + " | "
            + (entry.hasValue() ? number(entry.defaultRaw) : std::string()) + " | "
            + valuesText(entry) + " | " + savedText(entry.saved) + " | "
            + (patternSlot(entry.tag) >= 0 ? "yes" : "") + " |\n";
    }
    return text;
}

std::string controlTable()
{
    std::vector<const ControlRow*> hints;
    for (const ControlRow& row : controlCatalogue())
        if (row.kind == ControlClass::Hint)
            hints.push_back(&row);
    std::vector<const ControlRow*> rows;
    for (const ControlRow& row : controlCatalogue())
        if (row.kind != ControlClass::Hint && row.tag < kLearnStepsTag)
            rows.push_back(&row);
    std::stable_sort(rows.begin(), rows.end(),
        [](const ControlRow* a, const ControlRow* b) { return a->tag < b->tag; });

    std::string text = "| Tag | Control | Left, top, right, bottom | Shown | Parameter | Hint |\n"
                       "|---|---|---|---|---|---|\n";
    for (const ControlRow* row : rows) {
        const ParameterEntry* entry = parameterEntry(row->tag);
        const Place& place = row->place;
        text += "| " + std::to_string(row->tag) + " | " + className(row->kind) + " | "
            + std::to_string(place.left) + ", " + std::to_string(place.top) + ", "
            + std::to_string(place.right) + ", " + std::to_string(place.bottom) + " | "
            + pageText(*row) + " | " + (entry ? asCode(entry->name) : std::string()) + " | "
            + hintOf(hints, row->tag) + " |\n";
    }
    return text;
}

} // namespace ormund
