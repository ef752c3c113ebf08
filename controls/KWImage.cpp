#include "controls/KWImage.h"

#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr int kImageKind = 8;
const Crossing<float> kZero{0.0f};
} // namespace

KWImage::KWImage(const CRect& viewSize, CControlListener* controlListener, long controlTag,
    KWFrame* ownFrame, CBitmap* image, CBitmap* imageWhenHovered)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
    , bitmap(image ? image : imageWhenHovered)
    , hoverBitmap(imageWhenHovered)
    , xSource(&kZero)
    , ySource(&kZero)
    , widthSource(&kZero)
    , heightSource(&kZero)
    , offsetXSource(&kZero)
    , offsetYSource(&kZero)
    , baseRect(viewSize)
{
    controlKind = kImageKind;
    hoverEnabled = 0;
}

void KWImage::draw(CDrawContext* context)
{
    if (!isLive())
        return;
    CBitmap* const shownBitmap = hovering && hoverBitmap ? hoverBitmap : bitmap;
    const CPoint offset(bitmapOffsetX, bitmapOffsetY);
    if (shownBitmap) {
        if (alphaSource) {
            const int alpha = std::clamp(static_cast<int>(alphaSource->load()), 0, 255);
            shownBitmap->drawAlphaBlend(context, size, offset, static_cast<uint8_t>(alpha));
        } else if (getTransparency()) {
            shownBitmap->drawTransparent(context, size, offset);
        } else {
            shownBitmap->draw(context, size, offset);
        }
    }
    KWControl::draw(context);
}

void KWImage::drawRect(CDrawContext* context, const CRect& updateRect)
{
    context->setClipRect(updateRect);
    draw(context);
    context->resetClipRect();
}

CMouseEventResult KWImage::onMouseDown(const CPoint& where, int buttons)
{
    return mouseEnabledImage ? KWControl::onMouseDown(where, buttons) : kMouseEventNotHandled;
}

CMouseEventResult KWImage::onMouseEntered(const CPoint& where, int buttons)
{
    hovering = true;
    if (hoverBitmap && hoverBitmap != bitmap)
        setDirty(true);
    return KWControl::onMouseEntered(where, buttons);
}

CMouseEventResult KWImage::onMouseExited(const CPoint& where, int buttons)
{
    hovering = false;
    if (hoverBitmap && hoverBitmap != bitmap)
        setDirty(true);
    return KWControl::onMouseExited(where, buttons);
}

bool KWImage::hitTest(const CPoint& where, int buttons)
{
    return mouseEnabledImage && KWControl::hitTest(where, buttons);
}

void KWImage::updateControl(void* context)
{
    const float x = xSource->load();
    const float y = ySource->load();
    const float width = widthSource->load();
    const float height = heightSource->load();
    const int offsetX = static_cast<int>(offsetXSource->load());
    const int offsetY = static_cast<int>(offsetYSource->load());
    const CRect now(static_cast<int>(static_cast<float>(baseRect.left) + x),
        static_cast<int>(static_cast<float>(baseRect.top) + y),
        static_cast<int>(static_cast<float>(baseRect.right) + x + width),
        static_cast<int>(static_cast<float>(baseRect.bottom) + y + height));
    if (!(now == size)) {
        CRect covered = size;
        setViewSize(now, false);
        if (isLive())
            invalidRect(covered.unite(now));
    }
    if (offsetX != bitmapOffsetX || offsetY != bitmapOffsetY) {
        bitmapOffsetX = offsetX;
        bitmapOffsetY = offsetY;
        setDirty(true);
    }
    KWControl::updateControl(context);
}

} // namespace ormund
