// A value as text or as a frame of a strip, editable by dragging if wanted; also every hint text.
#pragma once

#include "base/LastSeen.h"
#include "controls/KWControl.h"
#include "view/CFontDesc.h"

#include <string>

namespace ormund {

// Writes a text for a value of 0 to 1 into a buffer of kValueTextSize bytes.
using ValueToString = void (*)(float value, char* text);
constexpr int kValueTextSize = 256;

class KWDisplay : public KWControl {
public:
    // Shows the value alone.
    KWDisplay(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame);
    // Shows a title and, where wanted, the value behind it.
    KWDisplay(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame,
        const char* titleText, bool withValue);

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    void updateControl(void* context) override;
    void setPopupControl(KWControl* popup) override { popupControl = popup; }

    // The text that stands for the value, with prefix and unit.
    std::string valueText() const;

    ValueToString valueToString = nullptr;
    KWControl* textSource = nullptr;
    CBitmap* strip = nullptr;
    CHoriTxtAlign alignment = kCenterText;
    std::string title;
    std::string unit;
    std::string prefix;
    std::string belowText;
    const Crossing<float>* valueSource = nullptr;
    float sourceMax = 1.0f;
    float sourceMin = 0.0f;
    float sensitivity = 1.0f;
    float belowThreshold = -300000.0f;
    int numberWidth = 3;
    int numberPrecision = 3;
    int frameHeight = 0;
    int frameCount = -1;
    int textLeft = 0;
    int textTop = 0;
    int textRight = 0;
    int textBottom = 0;
    uint8_t alpha = 255;
    bool alphaBackground = false;
    bool showValue = true;
    bool sourceIsIndex = false;
    bool intValue = false;
    bool horizontalDrag = false;
    bool roundFrame = false;
    bool noFill = false;

private:
    float sourcePosition() const;
    float sourceAsValue() const;
    int frameOffset() const;
    void drawTexts(CDrawContext* context);

    KWControl* popupControl = nullptr;
    CPoint lastPoint;
    int lastFrameOffset = 0;
    std::string lastText;
    bool mouseDown = false;
};

} // namespace ormund
