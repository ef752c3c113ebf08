#include "editor/EditNames.h"

#include "data/tracks/EditButtons.h"
#include "host/plugin/KWUniClient.h"
#include "panel/ControlCatalogue.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace ormund {

namespace {

constexpr size_t kRoom = 64;

const char* wordOf(EditOperation operation)
{
    switch (operation) {
    case EditOperation::ShiftBackward:
        return "Shift left";
    case EditOperation::ShiftForward:
        return "Shift right";
    case EditOperation::ShiftUp:
        return "Shift up";
    case EditOperation::ShiftDown:
        return "Shift down";
    case EditOperation::Copy:
        return "Copy";
    case EditOperation::Paste:
        return "Paste";
    case EditOperation::Clear:
        return "Clear";
    case EditOperation::Random:
        return "Random";
    case EditOperation::Mutate:
        return "Mutate";
    case EditOperation::Tool:
        return "Tool";
    }
    return "";
}

EditName nameOf(const EditButton& edit)
{
    const std::string word = wordOf(edit.operation);
    switch (edit.target) {
    case EditTarget::Mod:
        return {word + ", modulation " + std::to_string(edit.track + 1), Tag::modSteps(edit.track)};
    case EditTarget::Pitch:
        return {word + ", pitch", Tag::Pitch};
    case EditTarget::Velocity:
        return {word + ", velocity", Tag::Velocity};
    case EditTarget::Gate:
        return {word + ", gate", Tag::GateTime};
    case EditTarget::Performance:
        return {word + ", performance", Tag::Performance};
    case EditTarget::All:
        break;
    }
    return {word + ", all tracks", -1};
}

// What the control says of itself when the mouse is over it.
std::string hintOf(int tag)
{
    const ControlRow* control = findControl(tag);
    for (const ControlRow& row : controlCatalogue()) {
        if (row.kind != ControlClass::Hint || !row.text
            || (row.owner != tag && row.secondOwner != tag))
            continue;
        std::array<char, kRoom> text{};
        std::snprintf(text.data(), text.size(), row.text, control ? int(control->track) : 0);
        return text.data();
    }
    const ParameterEntry* entry = parameterEntry(tag);
    return entry ? std::string(entry->name) : "";
}

std::string capital(std::string text)
{
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z')
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

std::string trackWord(int tag)
{
    for (int track = 0; track < kModTracks; ++track)
        if (Tag::modSteps(track) == tag)
            return "modulation " + std::to_string(track + 1);
    const TrackRow* row = trackRow(tag);
    return row ? row->word : "loop";
}

// A choice by its text, a number without the digits that say nothing.
std::string valueText(const KWUniClient& engine, int tag)
{
    const float raw = engine.parameters.raw(tag);
    if (const int choices = choiceCount(tag); choices > 0)
        return std::string(choiceText(tag, engine.parameters.index(tag)));
    std::array<char, kRoom> text{};
    std::snprintf(text.data(), text.size(), "%.0f %%", static_cast<double>(raw * 100.0f));
    return text.data();
}

std::string tracksText(std::span<const int> tags)
{
    const int first = tags.empty() ? -1 : tags.front();
    const bool isOne = std::all_of(tags.begin(), tags.end(), [&](int tag) { return tag == first; });
    return tags.empty() ? "" : isOne ? trackWord(first) : "several tracks";
}

} // namespace

EditName nameOfGesture(const KWUniClient& engine, EditScope scope, int tag)
{
    switch (scope) {
    case EditScope::Map:
        return {"Controllers", -1};
    case EditScope::Looper:
        return {"Looper", -1};
    case EditScope::Steps:
        return {capital(trackWord(tag)) + " drawn", tag};
    default:
        break;
    }
    if (const EditButton* edit = editButton(tag))
        return nameOf(*edit);
    const ParameterEntry* entry = parameterEntry(tag);
    std::string text = capital(hintOf(tag));
    if (scope == EditScope::Parameter && entry && entry->hasValue())
        if (const std::string value = valueText(engine, tag); !value.empty())
            text += " to " + value;
    return {text.empty() ? "Change" : text, -1};
}

EditName nameOfTake(std::span<const int> tags)
{
    const auto notes = std::count(tags.begin(), tags.end(), Tag::Pitch);
    if (notes == 0)
        return {"Recorded, " + tracksText(tags), tags.empty() ? -1 : tags.front()};
    return {"Recorded " + std::to_string(notes) + (notes == 1 ? " note" : " notes") + ", pitch",
        Tag::Pitch};
}

EditName nameOfOutsideEdit(std::span<const int> tags)
{
    const std::string steps = tags.size() == 1 ? "1 step" : std::to_string(tags.size()) + " steps";
    return {"Controlled " + steps + ", " + tracksText(tags), tags.empty() ? -1 : tags.front()};
}

} // namespace ormund
