#include "controls/KWListLineViewMenu.h"

#include "controls/KWFrame.h"
#include "controls/KWListLineView.h"
#include "panel/Look.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>
#include <cstdlib>

namespace ormund {

namespace {
constexpr double kRadius = 3;
constexpr double kCellRadius = 2;
constexpr int kTextSize = 11;
constexpr int kMotion = 2;
constexpr int kChosenAlpha = 107;
} // namespace

KWListLineViewMenu::KWListLineViewMenu(
    const CRect& viewSize, KWListLineView* ownerView, long controlTag, KWFrame* ownFrame)
    : KWControl(viewSize, nullptr, controlTag, ownFrame), hue(look::kPerformance), owner(ownerView)
{
}

void KWListLineViewMenu::ownerGone()
{
    owner = nullptr;
    if (inFrame)
        endModal(0);
}

// As many rows as the choices up to `lastValue` need.
void KWListLineViewMenu::fitTo(int lastValue)
{
    choices = std::max(isShiftedByOne ? lastValue : lastValue + 1, 0);
    columns = std::max(columns, 1);
    rows = std::max(rows, (choices + columns - 1) / columns);
}

CPoint KWListLineViewMenu::gridSize() const
{
    if (background)
        return {background->getWidth(), background->getHeight()};
    return {2 * left + columns * cellWidth, 2 * top + rows * cellHeight};
}

CRect KWListLineViewMenu::cellRect(int index) const
{
    const int x = size.left + left + index % std::max(columns, 1) * cellWidth;
    const int y = size.top + top + index / std::max(columns, 1) * cellHeight;
    return {x, y, x + cellWidth, y + cellHeight};
}

int KWListLineViewMenu::cellIndexAt(const CPoint& where) const
{
    const int x = where.x - size.left - left;
    const int y = where.y - size.top - top;
    if (x < 0 || y < 0 || cellWidth <= 0 || cellHeight <= 0 || x >= columns * cellWidth)
        return -1;
    const int index = y / cellHeight * columns + x / cellWidth;
    return index < cellCount() ? index : -1;
}

int KWListLineViewMenu::cellCount() const { return std::min(columns * rows, choices); }

void KWListLineViewMenu::draw(CDrawContext* context)
{
    if (!isLive())
        return;
    if (background) {
        drawFrameOf(context, background, size, 0);
    } else {
        CRect shadow = size;
        context->setFillColor(CColor(0, 0, 0, look::kMenuShadowAlpha));
        context->drawRoundRect(shadow.offset(0, look::kMenuShadow), kRadius, kDrawFilled);
        context->setFillColor(look::kMenu);
        context->setFrameColor(look::kMenuFrame);
        context->drawRoundRect(size, kRadius, kDrawFilledAndStroked);
    }
    const int chosen = static_cast<int>(getValue());
    for (int i = 0; i < cellCount(); ++i)
        drawCell(context, i, i == chosen);
    setDirty(false);
}

void KWListLineViewMenu::drawCell(CDrawContext* context, int index, bool chosen)
{
    const CRect cell = cellRect(index);
    const bool under = index == hoverCell;
    if (selection) {
        if (chosen)
            selection->drawTransparent(context, cell, {0, 0});
        if (under)
            selection->drawTransparent(context, cell, {0, cellHeight});
    } else {
        CRect inner = cell;
        inner.inset(1, 1);
        context->setFillColor(hue.withAlpha(kChosenAlpha)); // the glyph stays to be seen
        context->setFrameColor(under ? look::kText : hue);
        if (chosen)
            context->drawRoundRect(inner, kCellRadius, kDrawFilled);
        if (chosen || under)
            context->drawRoundRect(inner, kCellRadius, kDrawStroked);
    }
    if (!owner || background)
        return; // its pictures are part of the background
    const int choice = isShiftedByOne ? index + 1 : index;
    CBitmap* const glyphs = owner->strip;
    if (choice == 0) {
        context->setFont(font, kTextSize);
        context->setFontColor(look::kText);
        context->drawString(zeroText, cell, false, kCenterText);
    } else if (glyphs) {
        const int height = owner->getHeight();
        const int x = cell.left + (cell.width() - glyphs->getWidth()) / 2;
        const int y = cell.top + (cell.height() - height) / 2;
        glyphs->drawTransparent(
            context, {x, y, x + glyphs->getWidth(), y + height}, {0, (choice - 1) * height});
    }
}

void KWListLineViewMenu::beginModal(int mode, const CPoint* where, long forTag)
{
    if (!frame)
        return;
    armed = false;
    hoverCell = -1;
    if (!frame->getCurrentMouseLocation(openPoint))
        openPoint = CPoint(-1, -1);
    if (!inFrame && frame->addView(this)) {
        remember(); // for the frame, until endModal
        inFrame = true;
    }
    KWControl::beginModal(mode, where, forTag);
}

void KWListLineViewMenu::endModal(int result)
{
    KWControl::endModal(result);
    if (owner)
        owner->menuClosed();
    if (inFrame) {
        inFrame = false;
        frame->removeView(this, true);
    }
}

void KWListLineViewMenu::getViewRect(CRect& rect) const
{
    rect = size;
    rect.bottom += look::kMenuShadow;
}

CMouseEventResult KWListLineViewMenu::onMouseDown(const CPoint& where, int)
{
    armed = true;
    const int index = cellIndexAt(where);
    if (index >= 0)
        choose(index);
    else if (!size.pointInside(where))
        endModal(0);
    return kMouseEventHandled;
}

CMouseEventResult KWListLineViewMenu::onMouseMoved(const CPoint& where, int)
{
    if (std::abs(where.x - openPoint.x) > kMotion || std::abs(where.y - openPoint.y) > kMotion)
        armed = true;
    hover(cellIndexAt(where));
    return kMouseEventHandled;
}

// The release of the press that opened the grid chooses only where the mouse went to a cell.
CMouseEventResult KWListLineViewMenu::onMouseUp(const CPoint& where, int)
{
    const int index = cellIndexAt(where);
    if (armed && index >= 0) {
        choose(index);
        endModal(0);
    }
    return kMouseEventHandled;
}

bool KWListLineViewMenu::onKeyDown(const CKeyEvent& event)
{
    int move = 0;
    switch (event.key) {
    case CKey::Left:
        move = -1;
        break;
    case CKey::Right:
        move = 1;
        break;
    case CKey::Up:
        move = -columns;
        break;
    case CKey::Down:
        move = columns;
        break;
    case CKey::Return:
    case CKey::Enter:
        endModal(0);
        return true;
    default:
        return false;
    }
    const int now = static_cast<int>(getValue());
    const int next = now < 0 ? 0 : now + move;
    if (next >= 0 && next < cellCount())
        choose(next);
    return true;
}

void KWListLineViewMenu::choose(int index)
{
    setValue(static_cast<float>(index));
    setDirty(true);
    if (owner)
        owner->valueChanged(this);
}

void KWListLineViewMenu::hover(int index)
{
    if (index == hoverCell)
        return;
    hoverCell = index;
    setDirty(true);
}

void KWListLineViewMenu::updateControl(void* context)
{
    CPoint where;
    if (frame && inFrame)
        hover(frame->getCurrentMouseLocation(where) ? cellIndexAt(where) : -1);
    KWControl::updateControl(context);
}

} // namespace ormund
