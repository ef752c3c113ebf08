#include "editor/FileSheet.h"

#include "controls/KWFrame.h"
#include "editor/TypedText.h"
#include "panel/Look.h"
#include "platform/KWFileio.h"
#include "platform/UserPlaces.h"
#include "view/CDrawContext.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace ormund {

namespace fs = std::filesystem;

namespace {

constexpr int kSheetWidth = 420;
constexpr int kSheetHeight = 372;
constexpr int kMargin = 16;
constexpr int kRowHeight = 16;
constexpr int kVisibleRows = 15;
constexpr int kListTop = 56;
constexpr int kButtonWidth = 80;
constexpr int kButtonHeight = 22;
constexpr size_t kMaxRows = 2000;
constexpr size_t kMaxNames = 200'000; // looked at in one folder
constexpr size_t kMaxName = 200;      // bytes; file systems take 255

} // namespace

FileSheet::FileSheet(KWFrame* ownFrame) : KWControl({0, 0, 1, 1}, nullptr, 0, ownFrame)
{
    KWControl::setVisible(false);
}

void FileSheet::ask(const KWFileChooser::Request& request, KWFileChooser::Answer answer)
{
    if (isOpenNow)
        return;
    asked = request;
    continuation = std::move(answer);
    isOpenNow = true;
    mayReplace = false;
    const CRect panel = frame->getViewSize();
    const int left = (panel.width() - kSheetWidth) / 2;
    const int top = (panel.height() - kSheetHeight) / 2;
    CView::setViewSize({left, top, left + kSheetWidth, top + kSheetHeight});
    std::error_code error;
    const bool isThere = fs::is_directory(asked.startFolder, error);
    enter(isThere ? asked.startFolder : homeFolder());
    // Without its ending, which accept() adds: typing on replaces the name.
    name = asked.kind == KWFileChooser::Kind::Save ? asked.fileName : "";
    if (name.ends_with("." + asked.extension))
        name.resize(name.size() - asked.extension.size() - 1);
    nameMarked = !name.empty();
    setVisible(true);
    beginModal(3, nullptr, 0);
}

void FileSheet::enter(const std::string& newFolder)
{
    folder = newFolder;
    while (folder.size() > 1 && folder.back() == '/')
        folder.pop_back();
    rows.clear();
    selected = hovered = -1;
    firstRow = 0;
    const std::string suffix = "." + asked.extension;
    size_t most = kMaxNames;
    for (KWFileio::Entry& found : KWFileio::list(folder, most)) {
        const bool isWanted = found.isFolder
            || (asked.kind != KWFileChooser::Kind::Folder
                && (asked.extension.empty() || fs::path(found.name).extension() == suffix));
        if (found.name.front() != '.' && isWanted && rows.size() < kMaxRows)
            rows.push_back({std::move(found.name), found.isFolder});
    }
    std::stable_partition(rows.begin(), rows.end(), [](const Row& row) { return row.isFolder; });
    if (folder != "/")
        rows.insert(rows.begin(), {"..", true});
    setDirty(true);
}

std::string FileSheet::fullPath(const std::string& file) const
{
    return folder == "/" ? folder + file : folder + "/" + file;
}

void FileSheet::select(int index)
{
    selected = std::clamp(index, -1, static_cast<int>(rows.size()) - 1);
    if (selected >= 0) {
        firstRow = std::clamp(firstRow, selected - kVisibleRows + 1, selected);
        const Row& row = rows[static_cast<size_t>(selected)];
        if (!row.isFolder)
            setName(row.name);
    }
    setDirty(true);
}

void FileSheet::activate(int index)
{
    if (index < 0 || index >= static_cast<int>(rows.size()))
        return;
    const Row row = rows[static_cast<size_t>(index)];
    if (row.isFolder) {
        enter(row.name == ".." ? fs::path(folder).parent_path().string() : fullPath(row.name));
    } else {
        select(index);
        accept();
    }
}

void FileSheet::setName(const std::string& newName)
{
    name = newName;
    nameMarked = false;
    mayReplace = false;
    setDirty(true);
}

void FileSheet::markName(bool marked)
{
    nameMarked = marked && !name.empty();
    setDirty(true);
}

void FileSheet::accept()
{
    using Kind = KWFileChooser::Kind;
    if (asked.kind == Kind::Folder) {
        finish(folder);
        return;
    }
    if (name.empty() || name.find('/') != std::string::npos)
        return;
    std::string file = name;
    if (asked.kind == Kind::Save && !asked.extension.empty()
        && !file.ends_with("." + asked.extension))
        file += "." + asked.extension;
    const std::string path = fullPath(file);
    std::error_code error;
    const bool isThere = fs::exists(fs::symlink_status(path, error));
    if (asked.kind == Kind::Load && !isThere)
        return;
    if (asked.kind == Kind::Save && isThere && !std::exchange(mayReplace, true)) {
        setDirty(true);
        return;
    }
    finish(path);
}

// The answer may put up a message, or ask the next question, so the sheet has gone by then.
void FileSheet::finish(const std::string& path)
{
    if (!isOpenNow)
        return;
    isOpenNow = false;
    KWControl::endModal(0);
    setVisible(false);
    const KWFileChooser::Answer answer = std::exchange(continuation, nullptr);
    if (answer)
        answer(path);
}

void FileSheet::endModal(int) { finish(""); }

// ---- where things are ----

CRect FileSheet::listRect() const
{
    return {size.left + kMargin, size.top + kListTop, size.right - kMargin,
        size.top + kListTop + kVisibleRows * kRowHeight};
}

CRect FileSheet::nameRect() const
{
    return {size.left + kMargin, size.bottom - kMargin - 56, size.right - kMargin,
        size.bottom - kMargin - 36};
}

CRect FileSheet::acceptRect() const
{
    const int right = size.right - kMargin;
    const int bottom = size.bottom - kMargin;
    return {right - kButtonWidth, bottom - kButtonHeight, right, bottom};
}

CRect FileSheet::cancelRect() const
{
    CRect place = acceptRect();
    return place.offset(-kButtonWidth - 8, 0);
}

CRect FileSheet::rowRect(int index) const
{
    const int line = index - firstRow;
    if (index < 0 || index >= static_cast<int>(rows.size()) || line < 0 || line >= kVisibleRows)
        return {};
    CRect place = listRect();
    place.top += line * kRowHeight;
    place.bottom = place.top + kRowHeight;
    return place;
}

int FileSheet::rowAt(const CPoint& where) const
{
    const CRect list = listRect();
    if (!list.pointInside(where))
        return -1;
    const int index = firstRow + (where.y - list.top) / kRowHeight;
    return index < static_cast<int>(rows.size()) ? index : -1;
}

int FileSheet::findRow(const std::string& wanted) const
{
    for (size_t i = 0; i < rows.size(); ++i)
        if (rows[i].name == wanted)
            return static_cast<int>(i);
    return -1;
}

// ---- what a hand does ----

CMouseEventResult FileSheet::onMouseDown(const CPoint& where, int buttons)
{
    constexpr auto kDone = kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    if (!isOpenNow)
        return kMouseEventNotHandled;
    if (!size.pointInside(where) || cancelRect().pointInside(where)) {
        finish("");
    } else if (acceptRect().pointInside(where)) {
        accept();
    } else if (nameRect().pointInside(where)) {
        markName((buttons & kDoubleClick) != 0);
    } else if (const int index = rowAt(where); index >= 0) {
        if (rows[static_cast<size_t>(index)].isFolder || (buttons & kDoubleClick))
            activate(index);
        else
            select(index);
    }
    return kDone;
}

CMouseEventResult FileSheet::onMouseMoved(const CPoint& where, int)
{
    pointer = where;
    const int index = rowAt(where);
    if (std::exchange(hovered, index) != index)
        setDirty(true);
    return kMouseEventHandled;
}

bool FileSheet::onWheel(const CPoint& where, float distance, int)
{
    constexpr int kRowsPerNotch = 3;
    const int last = std::max(0, static_cast<int>(rows.size()) - kVisibleRows);
    firstRow = std::clamp(firstRow - static_cast<int>(distance * kRowsPerNotch), 0, last);
    hovered = rowAt(where);
    setDirty(true);
    return true;
}

bool FileSheet::onKeyDown(const CKeyEvent& event)
{
    switch (event.key) {
    case CKey::Escape:
        finish("");
        return true;
    case CKey::Return:
    case CKey::Enter:
        if (selected >= 0 && rows[static_cast<size_t>(selected)].isFolder)
            activate(selected);
        else
            accept();
        return true;
    case CKey::Up:
        select(std::max(0, selected - 1));
        return true;
    case CKey::Down:
        select(selected + 1);
        return true;
    case CKey::PageUp:
        select(std::max(0, selected - kVisibleRows));
        return true;
    case CKey::PageDown:
        select(selected + kVisibleRows);
        return true;
    case CKey::Backspace:
        if (asked.kind == KWFileChooser::Kind::Save) {
            std::string shorter = nameMarked ? "" : name;
            dropLastCharacter(shorter);
            setName(shorter);
        } else {
            activate(findRow(".."));
        }
        return true;
    case CKey::Right:
    case CKey::End:
        markName(false);
        return true;
    default:
        break;
    }
    if ((event.modifiers & kControl) && (event.character | 0x20) == U'a') {
        markName(true);
        return true;
    }
    const bool isText = event.character >= U' ' && !(event.modifiers & (kControl | kAlt | kApple));
    if (isText && asked.kind == KWFileChooser::Kind::Save && name.size() < kMaxName) {
        std::string longer = nameMarked ? "" : name;
        appendCharacter(longer, event.character);
        selected = -1;
        setName(longer);
    }
    return true;
}

// ---- how it looks ----

void FileSheet::drawRow(CDrawContext* context, int index) const
{
    const Row& row = rows[static_cast<size_t>(index)];
    CRect place = rowRect(index);
    const bool isChosen = index == selected;
    if (isChosen || index == hovered) {
        context->setFillColor(isChosen ? look::kPerformance : look::kRaisedHover);
        context->fillRect(place);
    }
    context->setFontColor(isChosen ? look::kInk : row.isFolder ? look::kTextRaised : look::kText);
    place.left += 8;
    context->drawString(row.isFolder ? row.name + "/" : row.name, place, false, kLeftText);
}

void FileSheet::drawButton(CDrawContext* context, const CRect& place, const char* text) const
{
    const bool isUnder = place.pointInside(pointer);
    context->setFillColor(isUnder ? look::kRaisedHover : look::kRaised);
    context->setFrameColor(isUnder ? look::kFrameHover : look::kRaisedFrame);
    context->drawRoundRect(place, 2.5, kDrawFilledAndStroked);
    context->setFont(nullptr, 11, kBoldFace);
    context->setFontColor(isUnder ? look::kText : look::kTextRaised);
    context->drawString(text, place);
}

const char* FileSheet::acceptText() const
{
    if (asked.kind == KWFileChooser::Kind::Save)
        return mayReplace ? "Replace" : "Save";
    return asked.kind == KWFileChooser::Kind::Load ? "Open" : "Choose";
}

void FileSheet::draw(CDrawContext* context)
{
    setDirty(false);
    if (!isLive() || !isOpenNow)
        return;
    context->setLineWidth(1);
    context->setFillColor(look::kMenu);
    context->setFrameColor(look::kMenuFrame);
    context->drawRoundRect(size, 4, kDrawFilledAndStroked);
    CRect line{size.left + kMargin, size.top + 10, size.right - kMargin, size.top + 28};
    context->setFont(nullptr, 13, kBoldFace);
    context->setFontColor(look::kText);
    context->drawString(asked.title, line, false, kLeftText);
    line.offset(0, 22);
    context->setFont(nullptr, 11, kNormalFace);
    context->setFontColor(look::kTextRaised);
    // Of a long path the end shows where one is.
    const bool fits = context->getStringWidth(folder) <= line.width();
    context->drawString(folder, line, false, fits ? kLeftText : kRightText);

    context->setFillColor(look::kWell);
    context->setFrameColor(look::kHairline);
    context->drawRect(listRect(), kDrawFilledAndStroked);
    context->setFont(nullptr, 11, kNormalFace);
    const int end = std::min(static_cast<int>(rows.size()), firstRow + kVisibleRows);
    for (int index = firstRow; index < end; ++index)
        drawRow(context, index);
    if (asked.kind == KWFileChooser::Kind::Save) {
        CRect field = nameRect();
        context->setFillColor(look::kWell);
        context->drawRect(field, kDrawFilledAndStroked);
        field.inset(8, 0);
        if (nameMarked) {
            CRect mark = field;
            mark.right = std::min(field.right, field.left + int(context->getStringWidth(name)) + 1);
            mark.inset(0, 3);
            context->setFillColor(look::kPerformance);
            context->fillRect(mark);
        }
        context->setFontColor(nameMarked ? look::kInk : look::kText);
        context->drawString(nameMarked ? name : name + "_", field, false, kLeftText);
    }
    if (mayReplace) {
        const CRect place{
            size.left + kMargin, acceptRect().top, cancelRect().left - 8, acceptRect().bottom};
        context->setFontColor(look::kVelocity);
        context->drawString("This file exists.", place, false, kLeftText);
    }
    drawButton(context, cancelRect(), "Cancel");
    drawButton(context, acceptRect(), acceptText());
}

} // namespace ormund
