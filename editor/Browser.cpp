#include "editor/Browser.h"

#include "controls/KWFrame.h"
#include "editor/BrowserPlaces.h"
#include "editor/TypedText.h"
#include "host/plugin/KWUniClient.h"
#include "platform/KWFileio.h"

#include <algorithm>
#include <utility>

namespace ormund {

using namespace browser;

namespace {

constexpr std::chrono::milliseconds kRest{120}; // before a passed row plays
constexpr size_t kMostFavourites = 10'000;
constexpr size_t kMostRecent = 30;
constexpr size_t kMostText = 100; // bytes
constexpr int kWheelRows = 3;

} // namespace

Browser::Browser(KWFrame* ownFrame, KWUniClient& ownEngine, EditRecorder& recorder)
    : KWControl({0, 0, 1, 1}, nullptr, 0, ownFrame), engine(ownEngine), walk(ownEngine, recorder)
{
    KWControl::setVisible(false);
}

void Browser::show()
{
    if (isOpenNow)
        return;
    isOpenNow = true;
    const CRect panel = frame->getViewSize();
    CView::setViewSize({0, kHeadEnd, panel.width(), panel.height()});
    const std::string mine = engine.settings.presetSavePath(PresetKind::Global);
    const std::string content = engine.settings.contentPath();
    favourites =
        std::make_unique<PresetMarks>(KWFileio::join(content, "Favourites.txt"), kMostFavourites);
    recent = std::make_unique<PresetMarks>(KWFileio::join(content, "Recent.txt"), kMostRecent);
    list.fill(engine.presets.tree(PresetKind::Global), mine);
    query = {};
    shelf = Shelf::All;
    listHasFocus = false;
    waitsToPlay = false;
    loadedPath = chosenPath = engine.presets.path(PresetKind::Global);
    playingPath.clear();
    scroll = 0;
    refill();
    reveal(chosen);
    setVisible(true);
    beginModal(3, nullptr, 0);
}

// ---- what a hand does ----

void Browser::choose(int line)
{
    const ListedPreset* preset = presetOf(line);
    if (!preset)
        return;
    chosen = line;
    chosenPath = preset->path;
    reveal(line);
    waitsToPlay = true;
    restSince = std::chrono::steady_clock::now();
    setDirty(true);
}

void Browser::reveal(int line)
{
    if (line < 0 || line >= static_cast<int>(lines.size()))
        return;
    const Line& which = lines[size_t(line)];
    // The first row shows its group's title too.
    const int above = line == 1 && lines[0].preset < 0 ? lines[0].height : 0;
    scroll = std::clamp(scroll, which.top + which.height - kList.height(), which.top - above);
    scroll = std::max(scroll, 0);
}

// To the row so many rows further; titles do not count.
void Browser::move(int steps)
{
    listHasFocus = true;
    // The first hit is only marked until then.
    if (const ListedPreset* marked = presetOf(chosen); marked && marked->path != chosenPath)
        return choose(chosen);
    int line = chosen;
    const int way = steps < 0 ? -1 : 1;
    if (line < 0)
        line = way > 0 ? -1 : static_cast<int>(lines.size());
    int last = chosen;
    for (int left = std::abs(steps); left > 0;) {
        line += way;
        if (line < 0 || line >= static_cast<int>(lines.size()))
            break;
        if (!presetOf(line))
            continue;
        last = line;
        --left;
    }
    if (last != chosen)
        choose(last);
    setDirty(true);
}

void Browser::setShelf(const ShelfRow& row)
{
    shelf = row.shelf;
    shelfFolder = row.name;
    scroll = 0;
    refill();
    reveal(chosen);
}

void Browser::stepShelf(int steps)
{
    const auto here = std::find_if(shelves.begin(), shelves.end(), [this](const ShelfRow& row) {
        return row.shelf == shelf && (shelf != Shelf::Folder || row.name == shelfFolder);
    });
    const int count = static_cast<int>(shelves.size());
    const int index = here == shelves.end() ? 0 : static_cast<int>(here - shelves.begin());
    const ShelfRow row = shelves[size_t((index + steps + count) % count)];
    setShelf(row);
}

void Browser::setText(const std::string& newText)
{
    query.text = newText;
    listHasFocus = false;
    scroll = 0;
    refill();
    reveal(chosen);
}

void Browser::toggleTag(const std::string& word)
{
    const auto found = std::find(query.tags.begin(), query.tags.end(), word);
    if (found == query.tags.end())
        query.tags.push_back(word);
    else
        query.tags.erase(found);
    scroll = 0;
    refill();
}

void Browser::star(int line)
{
    if (const ListedPreset* preset = presetOf(line))
        favourites->toggle(preset->path);
    refill();
}

void Browser::close(bool keeps)
{
    if (!isOpenNow)
        return;
    if (keeps) {
        // Return before the row has had its rest counts as well.
        if (const ListedPreset* preset = presetOf(chosen);
            preset && preset->path != loadedPath && preset->path != playingPath)
            walk.play(preset->path);
        if (const ListedPreset* preset = presetOf(chosen))
            recent->bringToFront(preset->path);
        walk.keep();
    } else {
        walk.giveUp();
    }
    isOpenNow = false;
    KWControl::endModal(0);
    setVisible(false);
}

// The frame's answer to Escape, and to a window that goes, until it is closed.
void Browser::endModal(int) { escape(); }

// First the text, then the tags, then the sheet. What was passed by ear goes with the sheet.
void Browser::escape()
{
    if (!query.text.empty() && !listHasFocus) {
        setText("");
    } else if (!query.tags.empty() && !listHasFocus) {
        query.tags.clear();
        refill();
    } else {
        close(false);
    }
}

CMouseEventResult Browser::onMouseDown(const CPoint& where, int buttons)
{
    constexpr auto kDone = kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    if (!isOpenNow)
        return kMouseEventNotHandled;
    if (!kSheet.pointInside(where)) {
        close(false);
        return kDone;
    }
    if (const int line = lineAt(where); presetOf(line)) {
        if (where.x >= kStarColumn && where.x < kStarEnd) {
            star(line);
            return kDone;
        }
        listHasFocus = true;
        choose(line);
        if (buttons & kDoubleClick)
            close(true);
        return kDone;
    }
    for (const ShelfRow& row : shelves)
        if (row.place.pointInside(where)) {
            setShelf(ShelfRow(row));
            return kDone;
        }
    for (const TagPlace& each : tagPlaces)
        if (each.place.pointInside(where)) {
            toggleTag(std::string(each.tag));
            return kDone;
        }
    if (!query.tags.empty() && kClearTags.pointInside(where)) {
        query.tags.clear();
        refill();
    } else if (kSearchCross.pointInside(where)) {
        setText("");
    } else if (kHeadRow.pointInside(where)) {
        const Column column = where.x < kFolderColumn ? Column::Name
            : where.x < kAuthorColumn                 ? Column::Folder
            : where.x < kTempoRight - 30              ? Column::Author
                                                      : Column::Tempo;
        sortsDown = column == sortBy && !sortsDown;
        sortBy = column;
        refill();
    }
    listHasFocus = listHasFocus && !kSearch.pointInside(where);
    setDirty(true);
    return kDone;
}

CMouseEventResult Browser::onMouseMoved(const CPoint& where, int)
{
    pointer = where;
    setDirty(true);
    return kMouseEventHandled;
}

bool Browser::onWheel(const CPoint& where, float distance, int)
{
    pointer = where;
    const int most = std::max(0, listHeight() - kList.height());
    scroll = std::clamp(scroll - static_cast<int>(distance * kWheelRows * kRow), 0, most);
    setDirty(true);
    return true;
}

bool Browser::onKeyDown(const CKeyEvent& event)
{
    const int page = kList.height() / kRow - 1;
    const int all = static_cast<int>(lines.size());
    switch (event.key) {
    case CKey::Return:
    case CKey::Enter:
        close(true);
        return true;
    case CKey::Up:
    case CKey::Down:
        move(event.key == CKey::Up ? -1 : 1);
        return true;
    case CKey::PageUp:
    case CKey::PageDown:
        move(event.key == CKey::PageUp ? -page : page);
        return true;
    case CKey::Home:
    case CKey::End:
        move(event.key == CKey::Home ? -all : all);
        return true;
    case CKey::Left:
    case CKey::Right:
        stepShelf(event.key == CKey::Left ? -1 : 1);
        return true;
    case CKey::Backspace: {
        std::string shorter = query.text;
        dropLastCharacter(shorter);
        setText(shorter);
        return true;
    }
    default:
        break;
    }
    const char32_t letter = event.character | 0x20;
    if (event.modifiers & (kControl | kAlt | kApple)) {
        listHasFocus = listHasFocus && letter != U'f';
        return true;
    }
    if (listHasFocus && letter == U's') {
        star(chosen);
    } else if ((event.character >= U' ' || event.key == CKey::Space)
        && query.text.size() < kMostText) {
        std::string longer = query.text;
        appendCharacter(longer, event.character >= U' ' ? event.character : U' ');
        setText(longer);
    }
    return true;
}

void Browser::updateControl(void* context)
{
    KWControl::updateControl(context);
    if (!isOpenNow)
        return;
    if (list.takeRead()) {
        const int above = lineRect(chosen).top;
        const bool isShown = !lineRect(chosen).isEmpty();
        refill();
        if (isShown && chosen >= 0) // new rows never move the one under the arrows
            scroll = std::clamp(kList.top + lines[size_t(chosen)].top - above, 0,
                std::max(0, listHeight() - kList.height()));
    }
    if (!waitsToPlay || std::chrono::steady_clock::now() - restSince < kRest)
        return;
    waitsToPlay = false;
    const ListedPreset* preset = presetOf(chosen);
    if (!preset || preset->path == playingPath)
        return;
    playingPath = preset->path;
    walk.play(playingPath);
    setDirty(true);
}

} // namespace ormund
