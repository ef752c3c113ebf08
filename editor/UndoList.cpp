#include "editor/UndoList.h"

#include "controls/KWFrame.h"
#include "data/parameters/Tags.h"
#include "data/tracks/Tracks.h"
#include "editor/EditRecorder.h"
#include "panel/Look.h"
#include "view/CDrawContext.h"
#include "view/FittedText.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace ormund {

namespace {

constexpr int kLeft = 540;
constexpr int kTop = 50;
constexpr int kWidth = 248;
constexpr int kRow = 20;
constexpr int kMostRows = 10;
constexpr int kListHeadHeight = 28;
constexpr int kFootHeight = 26;
constexpr int kListMargin = 12;
constexpr int kMark = 14; // for check mark and arrow
constexpr int kSquare = 6;
constexpr int kTimeWidth = 46;

CColor hueOf(int tag)
{
    switch (tag) {
    case Tag::Pitch:
    case Tag::PitchLock:
        return look::kPitch;
    case Tag::Velocity:
    case Tag::VelocityOn:
        return look::kVelocity;
    case Tag::GateTime:
        return look::kGate;
    default:
        break;
    }
    for (int track = 0; track < kModTracks; ++track)
        if (Tag::modSteps(track) == tag)
            return look::kModulation;
    return trackRow(tag) ? look::kPerformance : look::kNeutral;
}

std::string ageText(std::chrono::steady_clock::time_point time)
{
    const auto age = std::chrono::steady_clock::now() - time;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(age).count();
    constexpr long kMinute = 60;
    constexpr long kHour = 3600;
    if (seconds < 2)
        return "now";
    if (seconds < kMinute)
        return std::to_string(seconds) + " s";
    if (seconds < kHour)
        return std::to_string(seconds / kMinute) + " min";
    return std::to_string(seconds / kHour) + " h";
}

} // namespace

UndoList::UndoList(
    KWFrame* ownFrame, const EditRecorder& ownRecorder, std::function<void(size_t)> goTo)
    : KWControl({0, 0, 1, 1}, nullptr, 0, ownFrame), recorder(ownRecorder), go(std::move(goTo))
{
    KWControl::setVisible(false);
}

int UndoList::rowCount() const { return static_cast<int>(recorder.levels()) + 1; }
size_t UndoList::levelOf(int row) const { return recorder.levels() - static_cast<size_t>(row); }
int UndoList::currentRow() const
{
    return static_cast<int>(recorder.levels() - recorder.list().undoable());
}

std::string UndoList::rowText(int row) const
{
    const size_t level = levelOf(row);
    return level > 0 ? recorder.list().at(level - 1).name.text : "As it was before";
}

void UndoList::beginModal(int, const CPoint*, long)
{
    if (open)
        return;
    open = true;
    hovered = -1;
    const int rows = std::min(rowCount(), kMostRows);
    firstRow = std::clamp(currentRow() - kMostRows / 2, 0, rowCount() - rows);
    CView::setViewSize(
        {kLeft, kTop, kLeft + kWidth, kTop + kListHeadHeight + rows * kRow + kFootHeight});
    setVisible(true);
    KWControl::beginModal(3, nullptr, 0);
}

void UndoList::endModal(int result)
{
    if (!open)
        return;
    open = false;
    KWControl::endModal(result);
    setVisible(false);
}

CRect UndoList::rowRect(int row) const
{
    const int line = row - firstRow;
    if (!open || row < 0 || row >= rowCount() || line < 0 || line >= kMostRows)
        return {};
    const int top = size.top + kListHeadHeight + line * kRow;
    return {size.left + 4, top, size.right - 4, top + kRow};
}

int UndoList::rowAt(const CPoint& where) const
{
    for (int row = firstRow; row < firstRow + kMostRows && row < rowCount(); ++row)
        if (rowRect(row).pointInside(where))
            return row;
    return -1;
}

void UndoList::choose(int row)
{
    const size_t level = levelOf(row);
    endModal(0);
    go(level);
}

void UndoList::hover(int row)
{
    hovered = std::clamp(row, 0, rowCount() - 1);
    firstRow = std::clamp(firstRow, hovered - kMostRows + 1, hovered);
    setDirty(true);
}

CMouseEventResult UndoList::onMouseDown(const CPoint& where, int)
{
    if (!open)
        return kMouseEventNotHandled;
    if (const int row = rowAt(where); row >= 0)
        choose(row);
    else if (!size.pointInside(where))
        endModal(0);
    return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
}

CMouseEventResult UndoList::onMouseMoved(const CPoint& where, int)
{
    if (std::exchange(hovered, rowAt(where)) != hovered)
        setDirty(true);
    return kMouseEventHandled;
}

bool UndoList::onWheel(const CPoint& where, float distance, int)
{
    constexpr float kRowsPerNotch = 3;
    const int last = std::max(0, rowCount() - kMostRows);
    firstRow = std::clamp(firstRow - static_cast<int>(distance * kRowsPerNotch), 0, last);
    hovered = rowAt(where);
    setDirty(true);
    return true;
}

bool UndoList::onKeyDown(const CKeyEvent& event)
{
    switch (event.key) {
    case CKey::Escape:
        endModal(0);
        break;
    case CKey::Up:
        hover(hovered < 0 ? currentRow() - 1 : hovered - 1);
        break;
    case CKey::Down:
        hover(hovered < 0 ? currentRow() + 1 : hovered + 1);
        break;
    case CKey::Return:
    case CKey::Enter:
        choose(hovered < 0 ? currentRow() : hovered);
        break;
    default:
        break;
    }
    return true;
}

void UndoList::drawRow(CDrawContext* context, int row) const
{
    CRect place = rowRect(row);
    const int current = currentRow();
    const bool isCurrent = row == current;
    const bool isRedo = row < current;
    if (isCurrent) {
        context->setFillColor(look::kRaisedHover);
        context->fillRect(place);
        context->setFillColor(look::kText);
        context->fillRect({place.left, place.top + 3, place.left + 2, place.bottom - 3});
    }
    if (row == hovered) {
        context->setFrameColor(look::kFrameHover);
        context->drawRect(place, kDrawStroked);
    }
    place.left += kListMargin - 4;
    place.right -= kListMargin - 4;
    const CColor ink = isCurrent ? look::kText : isRedo ? look::kTextDim : look::kTextRaised;
    context->setFont(nullptr, 11, isCurrent ? kBoldFace : kNormalFace);
    context->setFontColor(ink);
    if (isCurrent || isRedo)
        context->drawString(isCurrent ? "✓" : "→", place, false, kLeftText);
    const size_t level = levelOf(row);
    CRect square = place;
    square.left += kMark;
    square.right = square.left + kSquare;
    square.top += (kRow - kSquare) / 2;
    square.bottom = square.top + kSquare;
    context->setFillColor(hueOf(level > 0 ? recorder.list().at(level - 1).name.track : -1));
    context->fillRect(square);
    CRect text = place;
    text.left = square.right + 6;
    text.right -= kTimeWidth;
    const std::string fitted = fittedText(rowText(row), text.width(),
        [&](std::string_view part) { return context->getStringWidth(part); });
    context->drawString(fitted, text, false, kLeftText);
    context->setFont(nullptr, 11, kNormalFace);
    if (isRedo)
        context->drawString("redo", place, false, kRightText);
    else if (level > 0)
        context->drawString(ageText(recorder.list().at(level - 1).time), place, false, kRightText);
}

void UndoList::draw(CDrawContext* context)
{
    setDirty(false);
    if (!isLive() || !open)
        return;
    context->setLineWidth(1);
    context->setFillColor(look::kMenu);
    context->setFrameColor(look::kMenuFrame);
    context->drawRoundRect(size, 4, kDrawFilledAndStroked);
    CRect line{size.left + kListMargin, size.top + 4, size.right - kListMargin,
        size.top + kListHeadHeight - 2};
    context->setFont(nullptr, 9, kBoldFace);
    context->setFontColor(look::kTextRaised);
    context->drawString("UNDO", line, false, kLeftText);
    context->setFont(nullptr, 9, kNormalFace);
    context->drawString(std::to_string(recorder.list().undoable()) + " back, "
            + std::to_string(currentRow()) + " forward",
        line, false, kRightText);
    for (int row = firstRow; row < firstRow + kMostRows && row < rowCount(); ++row)
        drawRow(context, row);
    line.top = size.bottom - kFootHeight + 2;
    line.bottom = size.bottom - 2;
    context->setFont(nullptr, 9, kNormalFace);
    context->setFontColor(look::kTextRaised);
    context->drawString(
        "Ctrl+Z undo   Ctrl+Y redo   Up, Down, Return: level", line, false, kLeftText);
}

} // namespace ormund
