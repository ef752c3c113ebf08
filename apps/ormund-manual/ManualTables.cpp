#include "apps/ormund-manual/ManualTables.h"

#include "data/music/BendShapes.h"
#include "data/music/ChordTable.h"
#include "data/music/ScaleTable.h"
#include "data/parameters/ChoiceLists.h"
#include "data/parameters/ControllerNames.h"
#include "data/parameters/Parameters.h"
#include "data/tracks/Tracks.h"
#include "engine/KWKeys.h"
#include "engine/KWMods.h"
#include "panel/ChoiceGrids.h"
#include "panel/ControlCatalogue.h"
#include "synth/Lanes.h"

#include <array>
#include <cstdio>
#include <functional>
#include <initializer_list>
#include <span>
#include <stdexcept>
#include <vector>

namespace ormund {

namespace {

constexpr const char* kNotes[] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
constexpr int kSemitones = 12;

std::string_view trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// One more word of a list with blanks between.
void addWord(std::string& list, std::string_view word)
{
    if (!list.empty())
        list.push_back(' ');
    list.append(word);
}

class HtmlTable {
public:
    HtmlTable(std::string_view kind, std::initializer_list<const char*> heads)
        : html("<div class=\"wide\"><table class=\"" + std::string(kind) + "\"><thead><tr>")
    {
        for (const char* head : heads)
            html += "<th>" + escaped(head) + "</th>";
        html += "</tr></thead><tbody>\n";
    }
    void row(std::initializer_list<std::string> cells)
    {
        html += "<tr>";
        for (const std::string& cell : cells)
            html += "<td>" + escaped(cell) + "</td>";
        html += "</tr>\n";
    }
    void section(const std::string& words, int columns)
    {
        html += "<tr><th class=\"section\" colspan=\"" + std::to_string(columns) + "\">"
            + escaped(words) + "</th></tr>\n";
    }
    std::string text() const { return html + "</tbody></table></div>\n"; }

private:
    std::string html;
};

// The words that parameterText writes, a number as short as it goes.
std::string shownValue(int tag, float raw)
{
    std::array<char, 64> room{};
    parameterText(tag, raw, room);
    const std::string text = room.data();
    double number = 0;
    int used = 0;
    if (std::sscanf(text.c_str(), "%lf%n", &number, &used) != 1 || choiceCount(tag) > 0)
        return std::string(trimmed(text));
    char small[32];
    std::snprintf(small, sizeof small, "%.3g", number);
    return small + text.substr(size_t(used));
}

std::string targets()
{
    HtmlTable table("targets", {"Number", "Name in the menu"});
    for (const ControllerMenu& menu : kControllerMenuTable) {
        table.section(std::string(trimmed(menu.title)), 2);
        for (int target = menu.first; target <= menu.last; ++target)
            table.row({target < kTargetAftertouch ? std::to_string(target) : "\u2013",
                std::string(controllerName(target))});
    }
    return table.text();
}

std::string scales()
{
    HtmlTable table("scales", {"Scale", "Notes", "Semitones above the root", "On C"});
    for (int scale = 0; scale < kScales; ++scale) {
        std::string semitones, notes;
        int count = 0;
        for (const int semitone : scaleOctave(scale)) {
            if (semitone >= kSemitones)
                break;
            ++count;
            addWord(semitones, std::to_string(semitone));
            addWord(notes, kNotes[semitone]);
        }
        table.row(
            {std::string(trimmed(scaleName(scale))), std::to_string(count), semitones, notes});
    }
    return table.text();
}

const ChoiceGrid& gridOf(int tag)
{
    const ControlRow* row = findControl(tag);
    for (const ChoiceGrid& grid : kChoiceGrids)
        if (row && grid.bitmap == row->choiceBitmap)
            return grid;
    throw std::runtime_error("no choice grid belongs to tag " + std::to_string(tag));
}

std::string chords()
{
    const int columns = gridOf(Tag::Chord).columns;
    HtmlTable table("chords", {"Row", "Cell", "Semitones from the step's note", "On C"});
    for (int chord = 0; chord < kChords; ++chord) {
        std::string semitones, notes;
        const auto& offsets = chordRow(chord);
        for (size_t i = 0; i < offsets.size(); ++i) {
            if (i > 0 && offsets[i] == 0)
                continue; // the root once more
            addWord(semitones, std::to_string(offsets[i]));
            addWord(notes, kNotes[(offsets[i] + 2 * kSemitones) % kSemitones]);
        }
        table.row({std::to_string(chord / columns + 1), std::to_string(chord % columns + 1),
            semitones, notes});
    }
    return table.text();
}

std::string bends()
{
    HtmlTable table("bends", {"Row", "Cell", "Shape"});
    const int columns = gridOf(Tag::PitchBend).columns;
    for (int shape = 0; shape < kBendShapes; ++shape)
        table.row({std::to_string(shape / columns + 1), std::to_string(shape % columns + 1),
            std::string(bendShapeName(shape))});
    return table.text();
}

std::string automation()
{
    HtmlTable table("host", {"Number", "Name in the host", "Control", "From", "To", "At first"});
    for (const ParameterEntry* entry : hostParameters()) {
        std::string hint = hintOfControl(entry->tag);
        if (entry->tag == Tag::GateTimeMultiply)
            hint = "gate time multiply";
        table.row({std::to_string(entry->tag), std::string(entry->name), hint,
            shownValue(entry->tag, 0.0f), shownValue(entry->tag, 1.0f),
            shownValue(entry->tag, entry->defaultRaw)});
    }
    return table.text();
}

std::string actionKeys()
{
    HtmlTable table("keys", {"Key", "MIDI note", "Holds"});
    for (const PerformanceKey& key : kPerformanceKeyTable)
        table.row({keyName(key.note), std::to_string(key.note), hintOfControl(key.tag)});
    return table.text();
}

std::string patternKeys()
{
    HtmlTable table("keys", {"Key", "MIDI note", "Pattern"});
    for (int note = kPatternZoneLow; note <= kPatternZoneHigh; ++note)
        table.row(
            {keyName(note), std::to_string(note), std::to_string(note - kPatternZoneLow + 1)});
    return table.text();
}

std::string synthKnobs()
{
    HtmlTable table("knobs", {"Modulation track", "Knob of the synth"});
    for (int track = 0; track < KWMods::kTracks; ++track)
        table.row({std::to_string(track + 1), hintOfControl(KWMods::kSynthTargets[size_t(track)])});
    return table.text();
}

struct Maker {
    std::string_view name;
    std::function<std::string()> make;
};
const Maker kMakers[] = {
    {"targets", targets},
    {"scales", scales},
    {"chords", chords},
    {"bends", bends},
    {"host parameters", automation},
    {"action keys", actionKeys},
    {"synth knobs", synthKnobs},
    {"pattern keys", patternKeys},
};

struct Number {
    std::string_view name;
    int value;
};
const Number kNumbers[] = {
    {"patterns", kPatterns},
    {"steps", kTrackSteps},
    {"mod tracks", kModTracks},
    {"song steps", kSongSteps},
    {"voices", kVoices},
    {"scales", kScales},
    {"chords", kChords},
    {"bend shapes", kBendShapes},
    {"targets", kModTargets},
    {"host parameters", kHostParameters},
    {"pattern values", kPatternValues},
    {"actions", kPerformanceKeys},
    {"chord notes", kChordNotes},
};

} // namespace

std::string escaped(std::string_view text)
{
    std::string html;
    for (const char c : text) {
        switch (c) {
        case '&':
            html += "&amp;";
            break;
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        case '"':
            html += "&quot;";
            break;
        default:
            html.push_back(c);
        }
    }
    return html;
}

std::string keyName(int note)
{
    return kNotes[note % kSemitones] + std::to_string(note / kSemitones - 1);
}

std::string zoneName(std::string_view zone, int keyboardMode)
{
    const KeyZone wanted = zone == "pattern" ? KeyZone::Pattern
        : zone == "transpose"                ? KeyZone::Transpose
        : zone == "action"                   ? KeyZone::Performance
                                             : KeyZone::None;
    int low = -1, high = -1;
    for (int note = 0; note < 128 && wanted != KeyZone::None; ++note) {
        if (keyZoneOf(note, keyboardMode) != wanted)
            continue;
        low = low < 0 ? note : low;
        high = note;
    }
    if (low < 0)
        throw std::runtime_error("the keyboard has no zone " + std::string(zone));
    return keyName(low) + " to " + keyName(high);
}

std::string hintOfControl(int tag)
{
    for (const std::span<const ControlRow> rows : {controlCatalogue(), extraControls()})
        for (const ControlRow& row : rows) {
            if (row.kind != ControlClass::Hint || !row.text)
                continue;
            if (row.owner != tag && row.secondOwner != tag)
                continue;
            char words[128];
            std::snprintf(words, sizeof words, row.text, int(row.track)); // "%d": its track
            std::string hint(trimmed(words));
            if (hint.empty()) // the value comes first, the words behind it
                hint = trimmed(row.suffix);
            return hint;
        }
    return {};
}

std::string manualTable(std::string_view name)
{
    for (const Maker& maker : kMakers)
        if (maker.name == name)
            return maker.make();
    throw std::runtime_error("no table is called " + std::string(name));
}

int manualNumber(std::string_view name)
{
    for (const Number& number : kNumbers)
        if (number.name == name)
            return number.value;
    throw std::runtime_error("no number is called " + std::string(name));
}

} // namespace ormund
