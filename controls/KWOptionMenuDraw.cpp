// How a menu looks at rest and open.
#include "controls/KWOptionMenu.h"

#include "controls/KWMenuHelper.h"
#include "panel/Look.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"
#include "view/FittedText.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr int kRestInset = 4;
constexpr int kCheckWidth = 12;
constexpr int kArrowWidth = 10;
constexpr double kRadius = 3;
constexpr double kFieldRadius = 2.5;

// The check mark and the arrow of a sub-menu where no bitmap is given.
void drawCheck(CDrawContext* context, const CRect& row)
{
    const double x = row.left + 4.0;
    const double y = (row.top + row.bottom) / 2.0;
    context->setLineWidth(1.5);
    context->drawPolygon({{x - 2.5, y}, {x - 0.5, y + 2.5}, {x + 3.5, y - 3}}, kDrawStroked);
    context->setLineWidth(1);
}

void drawArrow(CDrawContext* context, const CRect& row)
{
    const double x = row.right - 7.0;
    const double y = (row.top + row.bottom) / 2.0;
    context->setLineWidth(1.5);
    context->drawPolygon({{x, y - 3}, {x + 3, y}, {x, y + 3}}, kDrawStroked);
    context->setLineWidth(1);
}
// An arrow bitmap may hold two frames: the mark of a sub-menu, and of a field that drops down.
int arrowHeight(const CBitmap& bitmap)
{
    return bitmap.getHeight() == 2 * bitmap.getWidth() ? bitmap.getWidth() : bitmap.getHeight();
}

void drawArrowBitmap(CDrawContext* context, CBitmap* bitmap, const CRect& place, bool dropDown)
{
    const int height = arrowHeight(*bitmap);
    const int y = place.top + (place.height() - height) / 2;
    const bool isStrip = bitmap->getHeight() >= 2 * height;
    bitmap->drawTransparent(context, {place.left, y, place.left + bitmap->getWidth(), y + height},
        {0, dropDown && isStrip ? height : 0});
}
} // namespace

void KWOptionMenu::draw(CDrawContext* context)
{
    if (!isLive() || size.isEmpty())
        return;
    if (CBitmap* const bitmap = getBackground()) {
        drawFrameOf(context, bitmap, size, 0);
    } else {
        context->setFillColor(hasStyle(kAlternateBack) ? alternateBackColor : backColor);
        context->drawRect(size, kDrawFilled);
    }
    drawHover(context);
    CRect rect = size;
    rect.inset(kRestInset, 0);
    if (hasStyle(kTextAfterArrow) && arrowBitmap) {
        drawArrowBitmap(context, arrowBitmap, rect, true);
        rect.left += arrowBitmap->getWidth();
    }
    rect.left += textOffset;
    rect.right -= restRight;
    context->setFont(font, restFontSize > 0 ? restFontSize : textHeight(), restFontStyle);
    context->setFontColor(textColor);
    drawRestText(context, rect);
    if (!alternateText.empty()) {
        context->setFontColor(look::kTextDim);
        context->drawString(alternateText, rect, false, kRightText);
    }
    KWControl::draw(context);
}

void KWOptionMenu::drawHover(CDrawContext* context) const
{
    if (!hovered && !open)
        return;
    context->setFrameColor(look::kFrameHover);
    context->drawRoundRect(size, kFieldRadius, kDrawStroked);
}

// A text that is a little too long is set closer before it is abbreviated.
void KWOptionMenu::drawRestText(CDrawContext* context, const CRect& rect) const
{
    constexpr double kClosest = -0.3; // pixels; closer, letters touch
    const std::string text = restText();
    if (context->getStringWidth(text) > rect.width())
        context->setTracking(kClosest);
    context->drawString(fittedText(text, rect.width(),
                            [&](std::string_view part) { return context->getStringWidth(part); }),
        rect, false, textAlignment());
    context->setTracking(0);
}

std::string KWOptionMenu::restText() const
{
    if (hasStyle(kShowCurrent) && isIndex(currentEntry)) {
        const KWOptionMenuEntryInfo& entry = entries[static_cast<size_t>(currentEntry)];
        return entry.subMenu && !selectedText.empty() ? selectedText : entry.text;
    }
    if (hasStyle(kStepFiles) && !selectedText.empty())
        return selectedText;
    if (hasStyle(kNoText))
        return {};
    return title.empty() ? "MENU" : title;
}

CHoriTxtAlign KWOptionMenu::textAlignment() const
{
    if (hasStyle(kAlignRight))
        return kRightText;
    return hasStyle(kAlignLeft) ? kLeftText : kCenterText;
}

int KWOptionMenu::checkColumn() const
{
    const bool marks = hasStyle(kCheckCurrent)
        || std::any_of(entries.begin(), entries.end(),
            [](const KWOptionMenuEntryInfo& entry) { return entry.checked; });
    return marks ? kCheckWidth : 0;
}

void KWOptionMenu::drawList(CDrawContext* context)
{
    if (!open)
        return;
    CRect shadow = menuRect;
    context->setFillColor(CColor(0, 0, 0, look::kMenuShadowAlpha));
    context->drawRoundRect(shadow.offset(0, look::kMenuShadow), kRadius, kDrawFilled);
    context->setFillColor(listBackColor);
    context->setFrameColor(frameColor);
    context->drawRoundRect(menuRect, kRadius, kDrawFilledAndStroked);
    context->setFont(font, textHeight());
    const int last = std::min(firstRow() + visibleRows(), getEntryCount());
    for (int i = firstRow(); i < last; ++i)
        drawRow(context, i, rowRect(i));
    if (scrollbar->isLive())
        scrollbar->draw(context);
    if (openSubMenu)
        openSubMenu->drawList(context);
}

void KWOptionMenu::drawRow(CDrawContext* context, int index, const CRect& row)
{
    const KWOptionMenuEntryInfo& entry = entries[static_cast<size_t>(index)];
    const bool lit = index == hoverEntry && entry.enabled && !entry.isTitle;
    CColor ink = lit ? selectedTextColor : listTextColor;
    if (entry.isTitle)
        ink = look::kTextDim;
    else if (!entry.enabled)
        ink = look::kTextDisabled;
    if (listBitmap)
        listBitmap->draw(context, row);
    if (lit) {
        CRect fill = row; // inside the sheet's frame
        fill.inset(2, 0);
        context->setFillColor(selectedBackColor);
        context->drawRoundRect(fill, 2, kDrawFilled);
    }
    if (entry.isTitle && index > 0) {
        context->setFrameColor(separatorColor);
        context->moveTo({row.left + leftMargin, row.top});
        context->lineTo({row.right - leftMargin, row.top});
    }
    context->setFrameColor(ink);
    if (entry.checked) {
        const CRect mark(row.left + leftMargin, row.top, row.left + kCheckWidth, row.bottom);
        if (checkBitmap)
            checkBitmap->drawTransparent(context,
                {mark.left, row.top + (row.height() - checkBitmap->getHeight()) / 2,
                    mark.left + checkBitmap->getWidth(), row.bottom});
        else
            drawCheck(context, mark);
    }
    CRect text(row.left + leftMargin + checkColumn() + textOffset, row.top,
        row.right - rightMargin - leftMargin, row.bottom);
    if (entry.subMenu) {
        const int width = arrowBitmap ? arrowBitmap->getWidth() : kArrowWidth;
        text.right -= width;
        if (arrowBitmap)
            drawArrowBitmap(
                context, arrowBitmap, {row.right - width, row.top, row.right, row.bottom}, false);
        else
            drawArrow(context, row);
    }
    context->setFontColor(ink);
    context->drawString(entry.text, text, false, textAlignment());
}

} // namespace ormund
