// A menu's entries and what its children report. Drawing, the open list and the folders have files
// of their own.
#include "controls/KWOptionMenu.h"

#include "controls/KWFrame.h"
#include "controls/KWMenuHelper.h"
#include "panel/Look.h"
#include "platform/Messages.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr int kMenuKind = 3;
} // namespace

KWOptionMenu::KWOptionMenu(const CRect& viewSize, CControlListener* controlListener,
    long controlTag, KWFrame* ownFrame, const char* fileExtension, uint32_t styleBits)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
    , listBackColor(look::kMenu)
    , listTextColor(look::kText)
    , selectedBackColor(look::kPerformance)
    , selectedTextColor(look::kInk)
    , separatorColor(look::kHairline)
    , frameColor(look::kMenuFrame)
    , alternateBackColor(look::kRaised)
    , extension(fileExtension ? fileExtension : "")
    , menuStyle(styleBits)
{
    controlKind = kMenuKind;
    backColor = look::kWell;
    textColor = look::kText;
    fontSize = look::kMenuRow;
    helper = std::make_unique<KWMenuHelper>(this, ownFrame);
    scrollbar = std::make_unique<KWScrollbarY>(
        scrollbarRectFor(viewSize), this, 0, ownFrame, &scrollPosition, &scrollShare);
    scrollbar->setVisible(false);
}

KWOptionMenu::~KWOptionMenu()
{
    if (open)
        closeList();
}

bool KWOptionMenu::checkUpdate(const CRect& updateRect) const
{
    return KWControl::checkUpdate(updateRect) || (open && menuRect.rectOverlap(updateRect));
}

void KWOptionMenu::getViewRect(CRect& rect) const { rect = open ? menuRect : size; }

void KWOptionMenu::setViewSize(const CRect& rect, bool invalidate)
{
    KWControl::setViewSize(rect, invalidate);
    scrollbar->setViewSize(scrollbarRectFor(rect), false);
}

CMouseEventResult KWOptionMenu::onMouseDown(const CPoint& where, int buttons)
{
    if (!isLive() || !getMouseEnabled() || !size.pointInside(where))
        return kMouseEventNotHandled;
    if ((buttons & (kRButton | kApple)) && popupControl) {
        popupControl->setMenuTag(getTag());
        popupControl->beginModal(kPopupMode, &where, getTag());
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    takeKeyboard();
    if (pressedText && where.x < size.right - restRight)
        pressedText();
    else
        openMenu(nullptr);
    return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
}

CMouseEventResult KWOptionMenu::onMouseEntered(const CPoint& where, int buttons)
{
    hovered = true;
    setDirty(true);
    return KWControl::onMouseEntered(where, buttons);
}

CMouseEventResult KWOptionMenu::onMouseExited(const CPoint& where, int buttons)
{
    hovered = false;
    setDirty(true);
    return KWControl::onMouseExited(where, buttons);
}

bool KWOptionMenu::onWheel(const CPoint& where, float distance, int)
{
    if (open)
        return listWheel(where, distance);
    if (!isLive() || !getMouseEnabled() || noWheel || hasStyle(kStepFiles))
        return false;
    stepLeaf(distance > 0 ? 1 : -1, false);
    return true;
}

bool KWOptionMenu::onKeyDown(const CKeyEvent& event)
{
    if (open)
        return listKey(event.key);
    const bool modalElsewhere = frame && frame->modalControl;
    if (event.modifiers != 0 || !isLive() || modalElsewhere)
        return false;
    switch (event.key) {
    case CKey::Return:
    case CKey::Enter:
        openMenu(nullptr);
        return true;
    // Down a list is onward, unlike down a scale of values.
    case CKey::Down:
    case CKey::Right:
        stepLeaf(1, false);
        break;
    case CKey::Up:
    case CKey::Left:
        stepLeaf(-1, false);
        break;
    default:
        return false;
    }
    if (frame)
        frame->showFocusRing(true);
    return true;
}

// A menu of branches counts its value in leaves; any other in rows.
void KWOptionMenu::setValue(float newValue)
{
    const int index = static_cast<int>(newValue);
    if (countsLeaves()) {
        setLeaf(index);
        return;
    }
    KWControl::setValue(newValue);
    if (isIndex(index))
        markCurrent(index);
}

void KWOptionMenu::markCurrent(int index)
{
    if (currentEntry != index)
        setDirty(true);
    currentEntry = index;
    entryBeforeBranch.reset();
    if (hasStyle(kCheckCurrent))
        checkOnly(index);
}

bool KWOptionMenu::countsLeaves() const
{
    return !hasStyle(kPresetMode)
        && std::any_of(entries.begin(), entries.end(),
            [](const KWOptionMenuEntryInfo& entry) { return entry.subMenu != nullptr; });
}

void KWOptionMenu::updateControl(void* context)
{
    if (valueSource && !open && isLive()) {
        const float now = valueSource->load();
        if (static_cast<int>(now) != static_cast<int>(getValue())) {
            setValue(now);
            setDirty(true);
        }
    }
    KWControl::updateControl(context);
}

bool KWOptionMenu::addEntry(const char* text, int index, bool isTitle)
{
    if (getEntryCount() >= kMaxEntries)
        return false;
    KWOptionMenuEntryInfo entry;
    entry.text = text ? text : "";
    entry.isTitle = isTitle;
    const int at = isIndex(index) ? index : getEntryCount();
    entries.insert(entries.begin() + at, std::move(entry));
    if (currentEntry >= at)
        ++currentEntry;
    return true;
}

bool KWOptionMenu::addSubMenu(std::unique_ptr<KWOptionMenu> sub, const char* text)
{
    if (!sub || !addEntry(text))
        return false;
    sub->parentMenu = this;
    entries.back().subMenu = std::move(sub);
    return true;
}

bool KWOptionMenu::addEntryWithUser(const char* text, int index, long user)
{
    const int at = isIndex(index) ? index : getEntryCount();
    if (!addEntry(text, index))
        return false;
    entries[static_cast<size_t>(at)].userEntry = std::make_unique<KWOptionMenuUserEntryLong>(user);
    return true;
}

bool KWOptionMenu::isPlain(int index) const
{
    if (!isIndex(index) || isHeader(index))
        return false;
    const KWOptionMenuEntryInfo& entry = entries[static_cast<size_t>(index)];
    return !entry.isTitle && !std::string_view(entry.text).ends_with("-T");
}

bool KWOptionMenu::isChoosable(int index) const
{
    if (!isIndex(index))
        return false;
    const KWOptionMenuEntryInfo& entry = entries[static_cast<size_t>(index)];
    return entry.enabled && !entry.isTitle && !entry.subMenu;
}

int KWOptionMenu::getCurrent(std::string& text, bool withHeaders) const
{
    if (entries.empty()) {
        text = "Empty";
        return -1;
    }
    if (!isIndex(currentEntry)) {
        text.clear();
        return -1;
    }
    text = entries[static_cast<size_t>(currentEntry)].text;
    if (withHeaders)
        return currentEntry;
    if (!isPlain(currentEntry))
        return -1;
    int plain = 0;
    for (int i = 0; i < currentEntry; ++i)
        plain += isPlain(i) ? 1 : 0;
    return plain;
}

bool KWOptionMenu::setCurrent(int index, bool withHeaders)
{
    for (int i = 0, plain = 0; i < getEntryCount(); ++i) {
        if (!withHeaders && !isPlain(i))
            continue;
        if ((withHeaders ? i : plain++) != index)
            continue;
        markCurrent(i);
        if (!countsLeaves())
            CControl::setValue(static_cast<float>(i));
        return true;
    }
    return false;
}

bool KWOptionMenu::getEntryText(int index, std::string& text) const
{
    if (!isIndex(index))
        return false;
    text = entries[static_cast<size_t>(index)].text;
    return true;
}

bool KWOptionMenu::setEntryText(int index, const char* text)
{
    if (!isIndex(index) || !text)
        return false;
    entries[static_cast<size_t>(index)].text = text;
    setDirty(true);
    return true;
}

bool KWOptionMenu::removeEntry(int index)
{
    if (!isIndex(index))
        return false;
    closeSub();
    entries.erase(entries.begin() + index);
    if (currentEntry == index)
        currentEntry = -1;
    else if (currentEntry > index)
        --currentEntry;
    setDirty(true);
    return true;
}

void KWOptionMenu::removeAllEntries()
{
    closeSub();
    entries.clear();
    currentEntry = -1;
    entryBeforeBranch.reset();
    hoverEntry = -1;
    setDirty(true);
}

int KWOptionMenu::findEntry(const char* text) const
{
    for (int i = 0; text && i < getEntryCount(); ++i) {
        if (entries[static_cast<size_t>(i)].text == text)
            return i;
    }
    return -1;
}

void KWOptionMenu::setEntryChecked(int index, bool checked)
{
    if (isIndex(index))
        entries[static_cast<size_t>(index)].checked = checked;
}

void KWOptionMenu::setEntryEnabled(int index, bool enabled)
{
    if (isIndex(index))
        entries[static_cast<size_t>(index)].enabled = enabled;
}

void KWOptionMenu::checkOnly(int index)
{
    for (int i = 0; i < getEntryCount(); ++i)
        entries[static_cast<size_t>(i)].checked = i == index;
}

bool KWOptionMenu::isEntryChecked(int index) const
{
    return isIndex(index) && entries[static_cast<size_t>(index)].checked;
}

KWOptionMenu* KWOptionMenu::getSubMenu(int index) const
{
    return isIndex(index) ? entries[static_cast<size_t>(index)].subMenu.get() : nullptr;
}

long KWOptionMenu::getUserWord(int index, long fallback) const
{
    if (!isIndex(index))
        return fallback;
    const auto* word = dynamic_cast<const KWOptionMenuUserEntryLong*>(
        entries[static_cast<size_t>(index)].userEntry.get());
    return word ? word->value : fallback;
}

int KWOptionMenu::getLeafCount() const
{
    int count = 0;
    for (int i = 0; i < getEntryCount(); ++i) {
        const KWOptionMenu* const sub = getSubMenu(i);
        count += sub ? sub->getLeafCount() : isPlain(i) ? 1 : 0;
    }
    return count;
}

int KWOptionMenu::getLeaf() const
{
    if (!isIndex(currentEntry))
        return -1;
    int before = 0;
    for (int i = 0; i < currentEntry; ++i) {
        const KWOptionMenu* const sub = getSubMenu(i);
        before += sub ? sub->getLeafCount() : isPlain(i) ? 1 : 0;
    }
    if (const KWOptionMenu* const sub = getSubMenu(currentEntry)) {
        const int inside = sub->getLeaf();
        return inside < 0 ? -1 : before + inside;
    }
    return isPlain(currentEntry) ? before : -1;
}

bool KWOptionMenu::setLeaf(int leaf)
{
    int before = 0;
    for (int i = 0; leaf >= 0 && i < getEntryCount(); ++i) {
        KWOptionMenu* const sub = getSubMenu(i);
        const int count = sub ? sub->getLeafCount() : isPlain(i) ? 1 : 0;
        if (leaf - before < count) {
            if (sub)
                sub->setLeaf(leaf - before);
            selectedText = sub ? sub->selectedText : entries[static_cast<size_t>(i)].text;
            markCurrent(i);
            CControl::setValue(static_cast<float>(countsLeaves() ? leaf : i));
            setDirty(true);
            return true;
        }
        before += count;
    }
    return false;
}

// One leaf on or back. With `wrap` the ends meet, else they hold.
bool KWOptionMenu::stepLeaf(int steps, bool wrap)
{
    const int count = getLeafCount();
    if (count == 0)
        return false;
    const int now = getLeaf();
    int next = now < 0 ? (steps > 0 ? 0 : count - 1) : now + steps;
    next = wrap ? (next % count + count) % count : std::clamp(next, 0, count - 1);
    if (next == now)
        return true;
    setLeaf(next);
    setDirty(true);
    notify();
    return true;
}

// From the buttons beside the menu, the scrollbar, and sub-menus.
void KWOptionMenu::valueChanged(CControl* sender)
{
    if (!sender)
        return;
    if (sender == scrollbar.get()) {
        invalidateList();
        return;
    }
    const long button = sender->getTag();
    if (button == getTag())
        return; // a choice comes through childChose
    const bool released = sender->getValue() == 0;
    switch (button) {
    case kNext:
    case kPrevious:
        // With files the leaves are the files of the folder and of those below it.
        if (released)
            stepLeaf(button == kNext ? 1 : -1, true);
        break;
    case kLoad:
    case kSave:
        if (released) {
            entryTaken = true;
            CControl::setValue(static_cast<float>(button));
            notify();
            entryTaken = false;
        } else if (button == kSave && sender->getValue() == 1.0f && saveDialogue) {
            saveDialogue();
        }
        break;
    default:
        showMessage("unknown value in KWOptionMenu::valueChanged : val:%ld", button);
        break;
    }
}

// A sub-menu has taken a leaf: the row that holds it is now the current one here.
void KWOptionMenu::childChose(const KWOptionMenu& sub)
{
    for (int i = 0; i < getEntryCount(); ++i) {
        if (getSubMenu(i) == &sub) {
            selectedText = sub.selectedText;
            markCurrent(i);
            CControl::setValue(static_cast<float>(countsLeaves() ? getLeaf() : i));
            setDirty(true);
            break;
        }
    }
}

} // namespace ormund
