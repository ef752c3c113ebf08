// Hints of controls that the catalogue's own rows leave out, and the words of all.
#include "panel/ControlCatalogue.h"

#include <array>
#include <cstdio>

namespace ormund {

namespace {

constexpr int kFirstTag = 2000100;

struct MoreHint {
    int owner;
    const char* text;
    int track = 0;
};

constexpr MoreHint kMore[] = {
    // clang-format off
    {332, "longer steps"},
    {333, "shorter steps"},
    {355, "song: fewer steps for a place"},
    {356, "song: more steps for a place"},
    {374, "load a map of controllers"},
    {375, "save the map of controllers"},
    {378, "ignore program changes"},
    {379, "presets leave the controllers"},
    {382, "notes of the pitch steps"},
    {385, "previous scale"},
    {386, "next scale"},
    {387, "transpose by scale or semitone"},
    {428, "values of the gate steps"},
    {258, "values of the mod track"},
    {463, "arpeggio sequencer"},
    {466, "preset"},
    {495, "key sync: previous grid"},
    {496, "key sync: next grid"},
    {515, "synth preset"},
    {521, "open the manual"},
    {56, "previous target of mod track %d", 1}, {57, "next target of mod track %d", 1},
    {58, "previous target of mod track %d", 2}, {59, "next target of mod track %d", 2},
    {60, "previous target of mod track %d", 3}, {61, "next target of mod track %d", 3},
    {62, "previous target of mod track %d", 4}, {63, "next target of mod track %d", 4},
    {64, "previous target of mod track %d", 5}, {65, "next target of mod track %d", 5},
    {66, "previous target of mod track %d", 6}, {67, "next target of mod track %d", 6},
    {68, "previous target of mod track %d", 7}, {69, "next target of mod track %d", 7},
    {70, "previous target of mod track %d", 8}, {71, "next target of mod track %d", 8},
    // clang-format on
};

constexpr auto kRows = [] {
    std::array<ControlRow, std::size(kMore)> rows{};
    for (size_t i = 0; i < rows.size(); ++i) {
        ControlRow& row = rows[i];
        row.tag = kFirstTag + int(i);
        row.kind = ControlClass::Hint;
        row.place = kHintLine;
        row.bitmap = 1020;
        row.track = int8_t(kMore[i].track);
        row.action = Action::Nothing;
        row.flags = kNoMouse;
        row.owner = kMore[i].owner;
        row.text = kMore[i].text;
    }
    return rows;
}();

} // namespace

std::span<const ControlRow> moreHints() { return kRows; }

const ControlRow* hintRowOf(int ownerTag)
{
    for (const auto rows : {controlCatalogue(), extraControls(), moreHints()})
        for (const ControlRow& row : rows)
            if (row.kind == ControlClass::Hint && row.text
                && (row.owner == ownerTag || row.secondOwner == ownerTag))
                return &row;
    return nullptr;
}

std::string hintWordsOf(int ownerTag)
{
    const ControlRow* row = ownerTag < 0 ? nullptr : hintRowOf(ownerTag);
    if (!row)
        return {};
    std::array<char, 128> words{};
    std::snprintf(words.data(), words.size(), row->text, int(row->track)); // "%d": its track
    std::string text = words.data();
    if (text.find_first_not_of(' ') == std::string::npos) // the value comes first
        text = row->suffix;
    const size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace ormund
