#include "controls/KWScrollbarY.h"

#include "panel/Look.h"
#include "view/CDrawContext.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr int kInset = 2;
constexpr int kLeastThumb = 12;
constexpr double kThumbRadius = 2.5;
} // namespace

KWScrollbarY::KWScrollbarY(const CRect& viewSize, CControlListener* controlListener,
    long controlTag, KWFrame* ownFrame, float* scrollPosition, float* visibleShare)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
    , barColor(look::kMenuFrame)
    , position(scrollPosition)
    , viewFraction(visibleShare)
{
    backColor = look::kMenu;
}

int KWScrollbarY::innerHeight() const { return std::max(size.height() - 2 * kInset, 0); }

int KWScrollbarY::thumbHeight() const
{
    const float share = viewFraction ? std::clamp(*viewFraction, 0.0f, 1.0f) : 1.0f;
    const int wanted = static_cast<int>(share * static_cast<float>(innerHeight()));
    return std::min(std::max(wanted, kLeastThumb), innerHeight());
}

CRect KWScrollbarY::thumbRect() const
{
    const float at = position ? std::clamp(*position, 0.0f, 1.0f) : 0.0f;
    const int height = thumbHeight();
    const int top =
        size.top + kInset + static_cast<int>(static_cast<float>(innerHeight() - height) * at);
    return {size.left + kInset, top, size.right - kInset, top + height};
}

void KWScrollbarY::draw(CDrawContext* context)
{
    if (!isLive())
        return;
    context->setFillColor(backColor);
    context->drawRect(size, kDrawFilled);
    context->setFrameColor(barColor);
    context->drawRect(size, kDrawStroked);
    context->setFillColor(barColor);
    context->drawRoundRect(thumbRect(), kThumbRadius, kDrawFilled);
    setDirty(false);
}

CMouseEventResult KWScrollbarY::onMouseDown(const CPoint& where, int)
{
    if (!isLive() || !position || !size.pointInside(where))
        return kMouseEventNotHandled;
    lastY = where.y;
    dragging = true;
    return kMouseEventHandled;
}

CMouseEventResult KWScrollbarY::onMouseMoved(const CPoint& where, int)
{
    if (!dragging)
        return kMouseEventNotHandled;
    const int freeLength = innerHeight() - thumbHeight();
    const float before = *position;
    if (freeLength > 0)
        *position += static_cast<float>(where.y - lastY) / static_cast<float>(freeLength);
    *position = std::clamp(*position, 0.0f, 1.0f);
    if (viewFraction)
        *viewFraction = std::clamp(*viewFraction, 0.0f, 1.0f);
    lastY = where.y;
    if (*position != before) {
        setValue(*position);
        tellListener();
    }
    setDirty(true);
    return kMouseEventHandled;
}

CMouseEventResult KWScrollbarY::onMouseUp(const CPoint&, int)
{
    if (!dragging)
        return kMouseEventNotHandled;
    dragging = false;
    setDirty(true);
    return kMouseEventHandled;
}

} // namespace ormund
