#include "controls/KWZoneView.h"

#include "controls/KWFrame.h"
#include "data/tracks/KWZoneHandlerContainer.h"
#include "panel/Look.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr float kEdgeShare = 0.2f; // of the bar's length drags an end
constexpr int kReset = 10063;
constexpr int kStepBack = 10065;
constexpr int kStepOn = 10066;
constexpr int kCapWidth = 6;
constexpr int kBarHeight = 7;
constexpr int kDash = 3;
constexpr double kBarRadius = 2.5;
enum StripFrame { kOutside, kLeftCap, kInside, kRightCap };

CColor mixed(const CColor& a, const CColor& b, float share)
{
    const auto mix = [share](uint8_t x, uint8_t y) {
        return static_cast<int>(
            static_cast<float>(x) * (1 - share) + static_cast<float>(y) * share);
    };
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue)};
}
} // namespace

KWZoneView::KWZoneView(const CRect& viewSize, CControlListener* controlListener, long controlTag,
    KWFrame* ownFrame, KWZoneHandlerContainer* zoneHandler)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
    , handler(zoneHandler)
    , cellColor(kGreyCColor)
    , zoneColor(look::kNeutral)
    , columns(zoneHandler ? zoneHandler->steps() : 32)
{
}

float KWZoneView::columnWidth() const
{
    return static_cast<float>(size.width()) / static_cast<float>(std::max(columns, 1));
}

int KWZoneView::columnLeft(int column) const
{
    return static_cast<int>(
        static_cast<float>(column) * columnWidth() + static_cast<float>(size.left));
}

int KWZoneView::firstColumn() const { return firstZone ? static_cast<int>(firstZone->load()) : 0; }

// The step of the first column whose pixels hold x, limited to the columns there are.
int KWZoneView::columnAt(int x) const
{
    for (int i = 0; i < columns; ++i) {
        if (static_cast<float>(x) <= static_cast<float>(columnLeft(i)) + columnWidth()
            && x >= columnLeft(i))
            return i + firstColumn();
    }
    return firstColumn() + (x < size.left ? 0 : std::max(columns - 1, 0));
}

bool KWZoneView::readsMouse(const CPoint& where) const
{
    return isLive() && handler && columns > 0 && size.pointInside(where);
}

void KWZoneView::draw(CDrawContext* context)
{
    if (!isLive() || !handler || columns <= 0)
        return;
    const LoopZone zone = handler->current();
    const int first = firstColumn();
    if (strip) {
        for (int i = 0; i < columns; ++i)
            drawColumn(context, i, zone.start - first, zone.end - first);
    } else {
        drawBar(context, zone.start - first, zone.end - first);
    }
    KWControl::draw(context);
}

void KWZoneView::drawColumn(CDrawContext* context, int column, int start, int end)
{
    CRect cell(columnLeft(column), size.top, columnLeft(column + 1), size.bottom);
    const int height = size.height();
    int picture = kOutside;
    if (column >= start && column <= end)
        picture = column == start ? kLeftCap : column == end ? kRightCap : kInside;
    if (column != start || column != end) {
        drawFrameOf(context, strip, cell, (firstFrame + picture) * height);
        return;
    }
    // A loop of one step has both its ends in one cell.
    const int middle = cell.left + cell.width() / 2;
    const int right = cell.right;
    cell.right = middle;
    drawFrameOf(context, strip, cell, (firstFrame + kLeftCap) * height);
    cell.left = middle;
    cell.right = right;
    const CPoint offset(middle - columnLeft(column), (firstFrame + kRightCap) * height);
    if (getTransparency())
        strip->drawTransparent(context, cell, offset);
    else
        strip->draw(context, cell, offset);
}

void KWZoneView::drawBar(CDrawContext* context, int start, int end)
{
    const CRect header(
        size.left, size.top, size.right, size.top + std::min(size.height(), headerHeight));
    if (size.height() > headerHeight) {
        context->setFillColor(cellColor);
        context->drawRect({size.left, header.bottom, size.right, size.bottom}, kDrawFilled);
    }
    const int middle = (header.top + header.bottom) / 2;
    context->setFillColor(look::kOutsideDash);
    for (int i = 0; i < columns; ++i) {
        const int x = (columnLeft(i) + columnLeft(i + 1)) / 2 - 1;
        context->drawRect({x, middle, x + kDash, middle + 1}, kDrawFilled);
    }
    const int height = std::min(kBarHeight, header.height());
    CRect bar(columnLeft(std::max(start, 0)), middle - height / 2,
        columnLeft(std::min(end, columns - 1) + 1) - 1, middle - height / 2 + height);
    if (bar.isEmpty())
        return;
    context->setFillColor(mixed(zoneColor, look::kWell, 0.32f));
    context->drawRoundRect(bar, kBarRadius, kDrawFilled);
    context->setFillColor(zoneColor);
    const int cap = std::min(kCapWidth, bar.width() / 2);
    context->drawRoundRect(
        {bar.left, bar.top, bar.left + cap, bar.bottom}, kBarRadius, kDrawFilled);
    context->drawRoundRect(
        {bar.right - cap, bar.top, bar.right, bar.bottom}, kBarRadius, kDrawFilled);
}

// In the left fifth of the bar a press takes its start, in the right fifth its end, between them
// the bar; beside it a new one is drawn. A double click takes the whole track.
CMouseEventResult KWZoneView::onMouseDown(const CPoint& where, int buttons)
{
    if (!readsMouse(where))
        return kMouseEventNotHandled;
    const int column = columnAt(where.x);
    if (buttons & (kRButton | kApple)) {
        if (!popupControl) // the right button sets no loop
            return kMouseEventNotHandled;
        setDirty(true);
        popupControl->setVisible(true);
        popupControl->setMenuTag(getTag());
        popupControl->setMenuStep(column);
        popupControl->beginModal(kPopupMode, &where, getTag());
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    showHoverViews();
    takeKeyboard();
    const LoopZone zone = handler->current();
    const int left = columnLeft(zone.start - firstColumn());
    const int right = columnLeft(zone.end - firstColumn() + 1);
    const float along =
        static_cast<float>(where.x - left) / static_cast<float>(std::max(right - left, 1));
    grabbed = column;
    grabbedStart = zone.start;
    grabbedEnd = zone.end;
    if (where.x >= left && where.x < right)
        gesture = along < kEdgeShare ? kDragStart : along > 1 - kEdgeShare ? kDragEnd : kMoveZone;
    else if (canEdit)
        gesture = kDrawZone;
    else
        return kMouseEventNotHandled;
    openBracket();
    if (buttons & kDoubleClick) {
        gesture = kNone;
        setZone(0, handler->steps() - 1);
        closeBracket();
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    if (gesture == kDrawZone)
        setZone(column, column);
    return kMouseEventHandled;
}

CMouseEventResult KWZoneView::onMouseMoved(const CPoint& where, int)
{
    if (gesture == kNone || !handler)
        return kMouseEventNotHandled;
    const int column = std::clamp(columnAt(where.x), 0, handler->steps() - 1);
    switch (gesture) {
    case kDragStart:
        setZone(std::min(column, grabbedEnd), grabbedEnd);
        break;
    case kDragEnd:
        setZone(grabbedStart, std::max(column, grabbedStart));
        break;
    case kMoveZone:
        shiftZone(column - grabbed);
        break;
    default:
        setZone(std::min(column, grabbed), std::max(column, grabbed));
        break;
    }
    return kMouseEventHandled;
}

CMouseEventResult KWZoneView::onMouseUp(const CPoint&, int)
{
    if (gesture == kNone)
        return kMouseEventNotHandled;
    gesture = kNone;
    closeBracket();
    startHideTimer();
    return kMouseEventHandled;
}

// Moves the grabbed zone as far as the track's ends let it; its length stays.
void KWZoneView::shiftZone(int steps)
{
    const int moved =
        std::clamp(steps, -grabbedStart, std::max(handler->steps() - 1 - grabbedEnd, 0));
    setZone(grabbedStart + moved, grabbedEnd + moved);
}

void KWZoneView::setZone(int start, int end)
{
    const LoopZone wanted{start, end};
    if (handler->current() == wanted)
        return;
    // A container of one handler serves all rows.
    handler->setZone(std::min(handler->row(), handler->handlers() - 1), wanted);
    setValue(static_cast<float>(start));
    tellListener();
    setDirty(true);
}

bool KWZoneView::stepValue(int steps, bool)
{
    if (!handler)
        return false;
    grabbedStart = handler->current().start;
    grabbedEnd = handler->current().end;
    openBracket();
    shiftZone(steps);
    closeBracket();
    return true;
}

void KWZoneView::valueChanged(CControl* sender)
{
    if (!sender || !handler || sender->getValue() != 1.0f)
        return;
    switch (sender->getTag()) {
    case kReset:
        openBracket();
        setZone(0, handler->steps() - 1);
        closeBracket();
        break;
    case kStepBack:
        stepValue(-1, false);
        break;
    case kStepOn:
        stepValue(1, false);
        break;
    default:
        break;
    }
    setDirty(true);
}

void KWZoneView::updateControl(void* context)
{
    if (handler && isLive()) {
        const uint32_t revision = handler->generation();
        if (revision != lastRevision || handler->row() != lastRow || columns != lastCount) {
            lastRevision = revision;
            lastRow = handler->row();
            lastCount = columns;
            setDirty(true);
        }
    }
    KWControl::updateControl(context);
}

} // namespace ormund
