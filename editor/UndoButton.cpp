#include "editor/UndoButton.h"

#include "panel/Look.h"
#include "view/CDrawContext.h"

#include <cairo.h>

namespace ormund {

UndoButton::UndoButton(const CRect& place, CControlListener* ownListener, long ownTag,
    KWFrame* ownFrame, bool isForward)
    : KWButton(place, ownListener, ownTag, ownFrame, "", false, kMomentary), forward(isForward)
{
    editBrackets = false;
}

void UndoButton::setUsable(bool can)
{
    if (usable != can)
        setDirty(true);
    usable = can;
}

CMouseEventResult UndoButton::onMouseEntered(const CPoint& where, int buttons)
{
    over = true;
    setDirty(true);
    return KWButton::onMouseEntered(where, buttons);
}

CMouseEventResult UndoButton::onMouseExited(const CPoint& where, int buttons)
{
    over = false;
    setDirty(true);
    return KWButton::onMouseExited(where, buttons);
}

void UndoButton::draw(CDrawContext* context)
{
    setDirty(false);
    if (!isLive())
        return;
    const bool down = getValue() != 0.0f;
    if (usable && (over || down)) {
        context->setFillColor(down ? look::kPressed : look::kRaisedHover);
        context->drawRoundRect(size, 2.5, kDrawFilled);
    }
    const CColor ink = !usable ? look::kTextDisabled : over || down ? look::kText : look::kTextDim;

    // An arc over the top with a head at its end, drawn for redo and mirrored for undo.
    cairo_t* cairo = context->cairo();
    cairo_save(cairo);
    cairo_translate(
        cairo, (size.left + size.right) / 2.0, (size.top + size.bottom) / 2.0 + (down ? 1 : 0));
    if (!forward)
        cairo_scale(cairo, -1, 1);
    cairo_set_source_rgb(cairo, ink.red / 255.0, ink.green / 255.0, ink.blue / 255.0);
    cairo_set_line_width(cairo, 1.25);
    cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
    cairo_move_to(cairo, 3.6, -1.6);
    cairo_line_to(cairo, -1.4, -1.6);
    cairo_arc_negative(cairo, -1.4, 1.2, 2.8, -1.5708, -4.7124);
    cairo_line_to(cairo, 2.2, 4.0);
    cairo_stroke(cairo);
    cairo_move_to(cairo, 1.4, -4.0);
    cairo_line_to(cairo, 3.9, -1.6);
    cairo_line_to(cairo, 1.4, 0.8);
    cairo_stroke(cairo);
    cairo_restore(cairo);
}

} // namespace ormund
