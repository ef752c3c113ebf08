// What the preset browser shows of its list, and where each line of it is.
#include "editor/Browser.h"

#include "editor/BrowserPlaces.h"

#include <algorithm>
#include <utility>

namespace ormund {

using namespace browser;

namespace {
constexpr size_t kMostTags = 24;
}

bool Browser::isOn(const ListedPreset& preset, Shelf which, const std::string& folder) const
{
    switch (which) {
    case Shelf::Favourites:
        return favourites->contains(preset.path);
    case Shelf::Recent:
        return recent->contains(preset.path);
    case Shelf::Mine:
        return preset.isMine;
    case Shelf::Folder:
        return preset.folder == folder;
    case Shelf::All:
        break;
    }
    return true;
}

void Browser::refill()
{
    commonTags = list.commonTags(kMostTags);
    std::vector<PresetList::Hit> found = list.find(query);
    countShelves(found);
    const auto& all = list.all();
    std::erase_if(found,
        [&](const PresetList::Hit& hit) { return !isOn(all[hit.preset], shelf, shelfFolder); });
    hits = found.size();
    addLines(found);
    chosen = lineOf(chosenPath);
    if (chosen < 0 && !query.text.empty())
        for (int i = 0; i < static_cast<int>(lines.size()) && chosen < 0; ++i)
            if (presetOf(i))
                chosen = i;
    scroll = std::clamp(scroll, 0, std::max(0, listHeight() - kList.height()));
    setDirty(true);
}

void Browser::countShelves(const std::vector<PresetList::Hit>& found)
{
    shelves = {{Shelf::All, "All", 0, {}}, {Shelf::Favourites, "Favourites", 0, {}},
        {Shelf::Recent, "Recent", 0, {}}, {Shelf::Mine, "Mine", 0, {}}};
    std::map<std::string, int> folders;
    for (const ListedPreset& preset : list.all())
        folders.emplace(preset.folder, 0);
    for (const PresetList::Hit& hit : found) {
        const ListedPreset& preset = list.all()[hit.preset];
        ++folders[preset.folder];
        for (ShelfRow& row : shelves)
            row.count += isOn(preset, row.shelf, {});
    }
    for (const auto& [name, count] : folders)
        shelves.push_back({Shelf::Folder, name, count, {}});
    placeShelves();
}

void Browser::placeShelves()
{
    constexpr int kGap = 26; // a line and the title of the folders
    int top = kShelfTop;
    for (size_t i = 0; i < shelves.size(); ++i) {
        if (i > 0 && shelves[i].shelf == Shelf::Folder && shelves[i - 1].shelf != Shelf::Folder)
            top += kGap;
        if (top + kShelfHeight <= kList.bottom)
            shelves[i].place = {kShelfLeft, top, kShelfRight, top + kShelfHeight};
        top += kShelfStep;
    }
}

void Browser::sort(std::vector<PresetList::Hit>& found) const
{
    const auto& all = list.all();
    const auto less = [&](const PresetList::Hit& one, const PresetList::Hit& other) {
        const ListedPreset& a = all[one.preset];
        const ListedPreset& b = all[other.preset];
        switch (sortBy) {
        case Column::Folder:
            return a.folder < b.folder;
        case Column::Author:
            return a.summary.about.author < b.summary.about.author;
        case Column::Tempo:
            return a.summary.about.tempo < b.summary.about.tempo;
        case Column::Name:
            break;
        }
        return a.name < b.name;
    };
    std::stable_sort(found.begin(), found.end(),
        [&](const auto& a, const auto& b) { return sortsDown ? less(b, a) : less(a, b); });
}

void Browser::addGroup(const char* title, const std::vector<int>& presets)
{
    int top = lines.empty() ? 0 : lines.back().top + lines.back().height;
    if (title && !presets.empty()) {
        lines.push_back({-1, title + ("  " + std::to_string(presets.size())), top, kGroup});
        top += kGroup;
    }
    for (const int preset : presets) {
        lines.push_back({preset, {}, top, kRow});
        top += kRow;
    }
}

void Browser::addLines(std::vector<PresetList::Hit>& found)
{
    lines.clear();
    sort(found);
    std::vector<int> byName;
    std::vector<int> others;
    for (const PresetList::Hit& hit : found)
        (hit.byName ? byName : others).push_back(static_cast<int>(hit.preset));
    if (shelf == Shelf::Recent && query.text.empty()) {
        const auto place = [&](int preset) {
            const auto& paths = recent->all();
            return std::find(paths.begin(), paths.end(), list.all()[size_t(preset)].path)
                - paths.begin();
        };
        std::sort(byName.begin(), byName.end(), [&](int a, int b) { return place(a) < place(b); });
    }
    const bool isSearched = !query.text.empty();
    addGroup(isSearched ? "BY NAME" : nullptr, byName);
    addGroup(isSearched ? "BY TAG OR DESCRIPTION" : nullptr, others);
}

const ListedPreset* Browser::presetOf(int line) const
{
    if (line < 0 || line >= static_cast<int>(lines.size()) || lines[size_t(line)].preset < 0)
        return nullptr;
    return &list.all()[size_t(lines[size_t(line)].preset)];
}

int Browser::lineOf(const std::string& path) const
{
    for (int i = 0; i < static_cast<int>(lines.size()); ++i)
        if (const ListedPreset* preset = presetOf(i); preset && preset->path == path)
            return i;
    return -1;
}

int Browser::lineNamed(const std::string& name) const
{
    for (int i = 0; i < static_cast<int>(lines.size()); ++i)
        if (const ListedPreset* preset = presetOf(i); preset && preset->name == name)
            return i;
    return -1;
}

int Browser::listHeight() const
{
    return lines.empty() ? 0 : lines.back().top + lines.back().height;
}

// ---- where things are ----

CRect Browser::lineRect(int line) const
{
    if (line < 0 || line >= static_cast<int>(lines.size()))
        return {};
    const Line& which = lines[size_t(line)];
    CRect place{kList.left, kList.top + which.top - scroll, kList.right,
        kList.top + which.top + which.height - scroll};
    return place.rectOverlap(kList) ? place : CRect{};
}

int Browser::lineAt(const CPoint& where) const
{
    if (!kList.pointInside(where))
        return -1;
    const int y = where.y - kList.top + scroll;
    const auto after = std::upper_bound(lines.begin(), lines.end(), y,
        [](int place, const Line& line) { return place < line.top; });
    const int line = static_cast<int>(after - lines.begin()) - 1;
    return lineRect(line).pointInside(where) ? line : -1;
}

CRect Browser::rowOf(const std::string& name) const { return lineRect(lineNamed(name)); }

CRect Browser::starOf(const std::string& name) const
{
    CRect place = rowOf(name);
    if (!place.isEmpty()) {
        place.left = kStarColumn;
        place.right = kStarEnd;
    }
    return place;
}

CRect Browser::folderOf(const std::string& name) const
{
    for (const ShelfRow& row : shelves)
        if (row.name == name)
            return row.place;
    return {};
}

CRect Browser::tagOf(const std::string& word) const
{
    for (const TagPlace& each : tagPlaces)
        if (each.tag == word)
            return each.place;
    return {};
}

std::string Browser::chosenName() const
{
    const ListedPreset* preset = presetOf(chosen);
    return preset ? preset->name : "";
}

} // namespace ormund
