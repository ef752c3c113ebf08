// The open list of a menu: where it stands and what mouse and keys do in it.
#include "controls/KWMenuHelper.h"
#include "controls/KWOptionMenu.h"

#include "controls/KWFrame.h"
#include "panel/Look.h"
#include "view/CBitmap.h"
#include "view/Typeface.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ormund {

namespace {
constexpr int kFrameInset = 2; // the list keeps this distance from the frame's edges
constexpr int kTextMargin = 8;
constexpr int kWiderBy = 16;
constexpr int kArrowWidth = 10;
constexpr int kMotion = 2; // pixels that count as motion
constexpr int kBarWidth = 11;
constexpr int kBarGap = 2;
constexpr int kBarTop = 19;
constexpr int kBarBottom = 18;
constexpr float kWheelRows = 0.4f;
} // namespace

int KWOptionMenu::textHeight() const { return std::max(fontSize - fontReduction, 1); }

CRect KWOptionMenu::scrollbarRectFor(const CRect& rect) const
{
    return {rect.right - kBarWidth - kBarGap, rect.top + kBarTop, rect.right - kBarGap,
        std::max(rect.bottom - kBarBottom, rect.top + kBarTop)};
}

int KWOptionMenu::visibleRows() const
{
    return std::max((menuRect.height() - topMargin - bottomMargin) / std::max(fontSize, 1), 0);
}

int KWOptionMenu::firstRow() const
{
    if (!scrollbar->isLive())
        return 0;
    const float hiddenRows = static_cast<float>(getEntryCount() - visibleRows());
    return std::max(static_cast<int>(hiddenRows * scrollPosition), 0);
}

CRect KWOptionMenu::rowRect(int index) const
{
    const int right = menuRect.right - (scrollbar->isLive() ? kBarWidth + kBarGap : 0) - 1;
    const int top = menuRect.top + topMargin + (index - firstRow()) * fontSize;
    return {menuRect.left + 1, top, right, top + fontSize};
}

int KWOptionMenu::rowAt(const CPoint& where) const
{
    if (!open || fontSize <= 0 || !menuRect.pointInside(where)
        || where.x >= rowRect(firstRow()).right)
        return -1;
    const int offset = where.y - menuRect.top - topMargin;
    if (offset < 0 || offset / fontSize >= visibleRows())
        return -1;
    const int row = firstRow() + offset / fontSize;
    return isIndex(row) ? row : -1;
}

int KWOptionMenu::widestRow() const
{
    Typeface& face = Typeface::medium();
    double widest = 0;
    bool branches = false;
    for (const KWOptionMenuEntryInfo& entry : entries) {
        widest = std::max(widest, face.width(entry.text, textHeight()));
        branches = branches || entry.subMenu;
    }
    int width = static_cast<int>(std::ceil(widest)) + checkColumn();
    width = std::max(width, size.width() - leftMargin - rightMargin - kTextMargin);
    width += leftMargin + rightMargin + kTextMargin + textOffset;
    if (hasStyle(kWider))
        width += kWiderBy;
    if (branches)
        width += arrowBitmap ? arrowBitmap->getWidth() : kArrowWidth;
    if (listBitmap)
        width = listBitmap->getWidth();
    if (minWidth > 0)
        width = std::max(width, minWidth);
    if (maxWidth > 0)
        width = std::min(width, maxWidth);
    return width;
}

// `besides` is the row of the outer menu that a sub-menu opens beside; null for an outer menu.
void KWOptionMenu::placeList(const CPoint& corner, const CRect* besides)
{
    CRect bounds = frame->getViewSize();
    bounds.inset(kFrameInset, kFrameInset);
    const int wanted = getEntryCount() * fontSize + topMargin + bottomMargin;
    const int margins = topMargin + bottomMargin;
    const bool fits = wanted <= bounds.height();
    const int height =
        fits ? wanted : (bounds.height() - margins) / std::max(fontSize, 1) * fontSize + margins;
    menuWidth =
        std::min(widestRow() + (fits || listBitmap ? 0 : kBarWidth + kBarGap), bounds.width());
    int left = corner.x;
    if (besides && left + menuWidth > bounds.right)
        left = besides->left - menuWidth; // on the outer menu's other side
    left = std::max(std::min(left, bounds.right - menuWidth), bounds.left);
    const int top = std::max(std::min(corner.y, bounds.bottom - height), bounds.top);
    menuRect = CRect(left, top, left + menuWidth, top + height);
    scrollbar->setVisible(!fits);
    scrollbar->setViewSize({menuRect.right - kBarWidth - kBarGap, menuRect.top + kBarGap,
                               menuRect.right - kBarGap, menuRect.bottom - kBarGap},
        false);
    scrollPosition = 0;
    scrollShare = 1;
    const int hiddenRows = getEntryCount() - visibleRows();
    if (!fits && hiddenRows > 0) {
        scrollShare = static_cast<float>(visibleRows()) / static_cast<float>(getEntryCount());
        // The current entry stands in the middle, as far as the list's ends allow.
        const float middle = static_cast<float>(currentEntry - visibleRows() / 2);
        scrollPosition = std::clamp(middle / static_cast<float>(hiddenRows), 0.0f, 1.0f);
    }
}

void KWOptionMenu::openMenu(const CPoint* where)
{
    if (!frame || open)
        return;
    if (hasStyle(kPresetMode))
        scanFolder(nullptr, nullptr);
    else if (currentEntry < 0 && !entries.empty())
        currentEntry = 0;
    entryTaken = false;
    hoverEntry = -1;
    moved = false;
    ignoreNextUp = true;
    mouseOnScrollbar = false;
    open = true;
    const CPoint corner = where ? *where : CPoint(size.left, size.bottom);
    if (!frame->getCurrentMouseLocation(openPoint))
        openPoint = corner;
    placeList(corner, nullptr);
    helper->beginModal(0, nullptr, getTag());
    invalidateList();
    if (extraCallBack)
        extraCallBack->menuOpened();
}

void KWOptionMenu::beginModal(int, const CPoint* where, long forTag)
{
    menuTag = forTag;
    openMenu(where);
    onModalStart();
}

void KWOptionMenu::endModal(int)
{
    if (open)
        closeList();
}

void KWOptionMenu::closeList()
{
    invalidateList();
    closeSub();
    // A look into a branch chooses nothing.
    if (entryBeforeBranch)
        currentEntry = *entryBeforeBranch;
    entryBeforeBranch.reset();
    open = false;
    hoverEntry = -1;
    mouseOnScrollbar = false;
    if (scrollbar->isDragging())
        scrollbar->onMouseUp(openPoint, 0);
    scrollbar->setVisible(false);
    if (parentMenu && parentMenu->openSubMenu == this)
        return; // a sub-menu lives in its outermost menu's modal display
    helper->leaveChain();
    setDirty(true);
    if (extraCallBack)
        extraCallBack->menuClosed();
}

void KWOptionMenu::openSub(int index)
{
    KWOptionMenu* const sub = getSubMenu(index);
    if (openSubMenu == sub)
        return;
    closeSub();
    if (!sub)
        return;
    openSubMenu = sub;
    sub->parentMenu = this;
    sub->hoverEntry = -1;
    sub->open = true;
    const CRect row = rowRect(index);
    const CRect beside(menuRect.left, row.top, menuRect.right, row.bottom);
    sub->placeList({menuRect.right - 1, row.top - sub->topMargin}, &beside);
    sub->invalidateList();
}

void KWOptionMenu::closeSub()
{
    if (!openSubMenu)
        return;
    openSubMenu->closeList();
    openSubMenu = nullptr;
}

CRect KWOptionMenu::listArea() const
{
    return {menuRect.left, menuRect.top, menuRect.right, menuRect.bottom + look::kMenuShadow};
}

CRect KWOptionMenu::openArea() const
{
    CRect area;
    for (const KWOptionMenu* menu = this; menu && menu->open; menu = menu->openSubMenu)
        area.unite(menu->listArea());
    return area;
}

void KWOptionMenu::invalidateList()
{
    if (frame && open)
        frame->invalidRect(listArea());
}

KWOptionMenu* KWOptionMenu::outermost()
{
    KWOptionMenu* menu = this;
    while (menu->parentMenu)
        menu = menu->parentMenu;
    return menu;
}

CMouseEventResult KWOptionMenu::onMouseUp(const CPoint& where, int buttons)
{
    return open ? listMouseUp(where, buttons) : kMouseEventNotHandled;
}

CMouseEventResult KWOptionMenu::onMouseMoved(const CPoint& where, int buttons)
{
    return open ? listMouseMoved(where, buttons) : kMouseEventNotHandled;
}

bool KWOptionMenu::covers(const CPoint& where) const
{
    return open && (menuRect.pointInside(where) || (openSubMenu && openSubMenu->covers(where)));
}

CMouseEventResult KWOptionMenu::listMouseDown(const CPoint& where, int buttons)
{
    ignoreNextUp = false;
    moved = true;
    if (openSubMenu && openSubMenu->covers(where))
        return openSubMenu->listMouseDown(where, buttons);
    if (scrollbar->isLive() && scrollbar->onMouseDown(where, buttons) == kMouseEventHandled) {
        mouseOnScrollbar = true;
        return kMouseEventHandled;
    }
    if (!menuRect.pointInside(where)) {
        outermost()->endModal(0);
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    const int row = rowAt(where);
    hoverRow(row);
    if (getSubMenu(row) && entries[static_cast<size_t>(row)].enabled) {
        if (!entryBeforeBranch)
            entryBeforeBranch = currentEntry;
        currentEntry = row;
        entryTaken = true;
    }
    return kMouseEventHandled;
}

CMouseEventResult KWOptionMenu::listMouseMoved(const CPoint& where, int buttons)
{
    if (std::abs(where.x - openPoint.x) > kMotion || std::abs(where.y - openPoint.y) > kMotion)
        moved = true;
    if (mouseOnScrollbar) {
        scrollbar->onMouseMoved(where, buttons);
        return kMouseEventHandled;
    }
    if (openSubMenu && openSubMenu->covers(where))
        return openSubMenu->listMouseMoved(where, buttons);
    const int row = rowAt(where);
    // On the way to an open sub-menu, or outside, its row stays lit.
    if (row >= 0 || !openSubMenu)
        hoverRow(row);
    if (openSubMenu)
        openSubMenu->hoverRow(-1);
    return kMouseEventHandled;
}

void KWOptionMenu::hoverRow(int index)
{
    if (index == hoverEntry)
        return;
    hoverEntry = index;
    invalidateList();
    const bool opens =
        getSubMenu(index) && entries[static_cast<size_t>(std::max(index, 0))].enabled;
    if (opens)
        openSub(index);
    else
        closeSub();
}

// A click and a drag both choose: press, hold and let go on a row, or click and click on a row. So
// the release that belongs to the opening press does nothing unless the mouse went to a row.
CMouseEventResult KWOptionMenu::listMouseUp(const CPoint& where, int buttons)
{
    if (mouseOnScrollbar) {
        mouseOnScrollbar = false;
        scrollbar->onMouseUp(where, buttons);
        invalidateList();
        return kMouseEventHandled;
    }
    const bool isFirst = ignoreNextUp;
    ignoreNextUp = false;
    if (isFirst && !moved)
        return kMouseEventHandled;
    KWOptionMenu* menu = this;
    while (menu->openSubMenu && menu->openSubMenu->covers(where))
        menu = menu->openSubMenu;
    const int row = menu->rowAt(where);
    if (menu->isChoosable(row))
        menu->take(row);
    return kMouseEventHandled;
}

// Closes before it reports: the listener may fill the menu, which ends this sub-menu. So nothing
// of this object is touched after the report.
void KWOptionMenu::take(int index)
{
    if (isHeader(index)) {
        takeHeader(index);
        return;
    }
    selectedText = entries[static_cast<size_t>(index)].text;
    markCurrent(index);
    CControl::setValue(static_cast<float>(countsLeaves() ? getLeaf() : index));
    KWOptionMenu* reporter = this;
    for (KWOptionMenu* menu = this; menu->parentMenu; menu = menu->parentMenu) {
        menu->parentMenu->childChose(*menu);
        if (!reporter->getListener() || reporter->getListener() == reporter->parentMenu)
            reporter = menu->parentMenu;
    }
    KWOptionMenu* const root = outermost();
    entryTaken = true;
    root->entryTaken = true;
    root->endModal(0);
    reporter->notify();
}

// A header is an order and no choice: it is the current entry while the listener hears of it, and
// then the chosen file is again.
void KWOptionMenu::takeHeader(int index)
{
    outermost()->endModal(0);
    const int chosen = currentEntry;
    const float chosenValue = getValue();
    currentEntry = index;
    CControl::setValue(static_cast<float>(index));
    entryTaken = true;
    notify();
    if (currentEntry != index)
        return; // the listener chose another
    currentEntry = chosen;
    CControl::setValue(chosenValue);
}

bool KWOptionMenu::listWheel(const CPoint& where, float distance)
{
    if (openSubMenu && openSubMenu->covers(where))
        return openSubMenu->listWheel(where, distance);
    if (!menuRect.pointInside(where))
        return true;
    const int hiddenRows = getEntryCount() - visibleRows();
    if (hiddenRows <= 0)
        return true;
    const float rows = static_cast<float>(hiddenRows);
    scrollPosition = std::clamp((rows * scrollPosition - distance * kWheelRows) / rows, 0.0f, 1.0f);
    hoverRow(rowAt(where));
    invalidateList();
    scrollbar->setDirty(true);
    return true;
}

bool KWOptionMenu::listKey(CKey key)
{
    if (openSubMenu && openSubMenu->hoverEntry >= 0) {
        if (key != CKey::Left)
            return openSubMenu->listKey(key);
        openSubMenu->hoverRow(-1);
        return true;
    }
    switch (key) {
    case CKey::Up:
    case CKey::Down: {
        const int direction = key == CKey::Down ? 1 : -1;
        int row = hoverEntry;
        if (row < 0 && !parentMenu && isEntryChecked(currentEntry))
            row = currentEntry;
        else if (row < 0 && direction < 0)
            row = getEntryCount();
        do {
            row += direction;
        } while (isIndex(row) && !isChoosable(row) && !getSubMenu(row));
        if (isIndex(row)) {
            revealRow(row);
            hoverRow(row);
        }
        return true;
    }
    case CKey::Right:
        if (openSubMenu && openSubMenu->getEntryCount() > 0)
            openSubMenu->listKey(CKey::Down);
        return true;
    case CKey::Return:
    case CKey::Enter:
        if (isChoosable(hoverEntry))
            take(hoverEntry);
        return true;
    default:
        return false;
    }
}

// Scrolls as far as a row needs to be seen.
void KWOptionMenu::revealRow(int row)
{
    const int hiddenRows = getEntryCount() - visibleRows();
    if (!scrollbar->isLive() || hiddenRows <= 0)
        return;
    int first = firstRow();
    if (row < first)
        first = row;
    else if (row >= first + visibleRows())
        first = row - visibleRows() + 1;
    else
        return;
    // The half keeps the truncation in firstRow() at this row.
    scrollPosition =
        std::min((static_cast<float>(first) + 0.5f) / static_cast<float>(hiddenRows), 1.0f);
    invalidateList();
}

} // namespace ormund
