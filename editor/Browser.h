// The presets as a sheet over the panel: search, folders, tags and favourites. What the arrows pass
// is played at once; Return keeps it and Escape brings back what was there.
#pragma once

#include "controls/KWControl.h"
#include "data/library/PresetList.h"
#include "editor/PresetWalk.h"

#include <array>
#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ormund {

// Screen thread.
class Browser : public KWControl {
public:
    Browser(KWFrame* ownFrame, KWUniClient& ownEngine, EditRecorder& recorder);

    void show();
    bool isOpen() const { return isOpenNow; }

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    bool onKeyDown(const CKeyEvent& event) override;
    void updateControl(void* context) override;
    void endModal(int result) override;
    CRect focusRect() const override { return {}; }

    // For whoever drives it: places, empty where nothing is shown, and what is chosen.
    CRect rowOf(const std::string& name) const;
    CRect folderOf(const std::string& name) const;
    CRect tagOf(const std::string& word) const;
    CRect starOf(const std::string& name) const;
    std::string chosenName() const;
    size_t hitCount() const { return hits; }
    bool isReading() const { return list.isReading(); }

private:
    enum class Shelf : uint8_t { All, Favourites, Recent, Mine, Folder };
    enum class Column : uint8_t { Name, Folder, Author, Tempo };
    // A line of the list: a preset, or the title of a group.
    struct Line {
        int preset = -1; // -1: a title
        std::string title;
        int top = 0; // from the list's beginning
        int height = 0;
    };
    struct ShelfRow {
        Shelf shelf;
        std::string name;
        int count = 0;
        CRect place;
    };
    struct TagPlace {
        std::string tag;
        CRect place;
    };

    // ---- Browser.cpp: what is shown, and the keys
    void refill(); // after every change of text, tags or shelf
    void countShelves(const std::vector<PresetList::Hit>& found);
    void placeShelves();
    void addLines(std::vector<PresetList::Hit>& found);
    void sort(std::vector<PresetList::Hit>& found) const;
    void addGroup(const char* title, const std::vector<int>& presets);
    bool isOn(const ListedPreset& preset, Shelf which, const std::string& folder) const;
    void move(int steps);
    void choose(int line);
    void reveal(int line);
    void stepShelf(int steps);
    void setShelf(const ShelfRow& row);
    void setText(const std::string& newText);
    void toggleTag(const std::string& word);
    void star(int line);
    void close(bool keeps);
    void escape();
    int lineOf(const std::string& path) const;
    int lineNamed(const std::string& name) const;
    const ListedPreset* presetOf(int line) const;
    int lineAt(const CPoint& where) const;
    CRect lineRect(int line) const;
    int listHeight() const;

    // ---- BrowserDraw.cpp
    void placeTags(CDrawContext* context);
    void drawSheet(CDrawContext* context) const;
    void drawShelves(CDrawContext* context) const;
    void drawSearch(CDrawContext* context) const;
    void drawTags(CDrawContext* context) const;
    void drawHead(CDrawContext* context) const;
    void drawLines(CDrawContext* context) const;
    void drawRow(CDrawContext* context, int index, const CRect& row) const;
    void drawChosen(CDrawContext* context) const;
    void drawFooter(CDrawContext* context) const;
    void drawEmpty(CDrawContext* context) const;

    KWUniClient& engine;
    PresetWalk walk;
    PresetList list;
    std::unique_ptr<PresetMarks> favourites;
    std::unique_ptr<PresetMarks> recent;

    PresetList::Query query;
    Shelf shelf = Shelf::All;
    std::string shelfFolder;
    Column sortBy = Column::Name;
    bool sortsDown = false;
    bool listHasFocus = false;

    std::vector<Line> lines;
    std::vector<ShelfRow> shelves;
    std::vector<std::string> commonTags;
    std::vector<TagPlace> tagPlaces; // as drawn last
    size_t hits = 0;
    int chosen = -1; // of `lines`
    std::string chosenPath;
    std::string loadedPath;
    std::string playingPath; // what the walk has loaded
    bool waitsToPlay = false;
    std::chrono::steady_clock::time_point restSince;
    int scroll = 0; // pixels
    CPoint pointer;
    bool isOpenNow = false;
};

} // namespace ormund
