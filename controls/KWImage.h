// A picture whose place, size, offset and opacity follow numbers: markers, pages, backdrops.
#pragma once

#include "controls/KWControl.h"

namespace ormund {

class KWImage : public KWControl {
public:
    // With a hover bitmap alone, it serves as the bitmap too.
    KWImage(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame,
        CBitmap* image, CBitmap* imageWhenHovered);

    void draw(CDrawContext* context) override;
    void drawRect(CDrawContext* context, const CRect& updateRect) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseEntered(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseExited(const CPoint& where, int buttons) override;
    bool hitTest(const CPoint& where, int buttons = -1) override;
    void updateControl(void* context) override;

    CBitmap* bitmap = nullptr;
    CBitmap* hoverBitmap = nullptr;
    // In pixels from the rectangle at construction. Never null: a shared zero stands in.
    const Crossing<float>* xSource;
    const Crossing<float>* ySource;
    const Crossing<float>* widthSource;
    const Crossing<float>* heightSource;
    const Crossing<float>* offsetXSource;
    const Crossing<float>* offsetYSource;
    const Crossing<float>* alphaSource = nullptr; // 0 to 255
    int bitmapOffsetX = 0;
    int bitmapOffsetY = 0;
    bool mouseEnabledImage = false;

private:
    CRect baseRect;
    bool hovering = false;
};

} // namespace ormund
