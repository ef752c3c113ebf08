// The few controls of the transport strip that the panel has none of.
#pragma once

#include "controls/KWButton.h"
#include "controls/KWControl.h"
#include "panel/Palette.h"
#include "skin/draw/Icons.h"

#include <string>

namespace ormund {

// A button with an icon, lit in a hue while it is on.
class IconButton : public KWButton {
public:
    IconButton(const CRect& place, CControlListener* listener, long tag, KWFrame* ownFrame,
        Icon shownIcon, const Ink& litHue, int type);
    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseEntered(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseExited(const CPoint& where, int buttons) override;

    void show(bool isLit, Icon wanted);

    bool isToEnd = false; // a line before the arrow: as far as it goes

private:
    Icon icon;
    Ink hue;
    bool isHovered = false;
};

// A line of text on the strip's ground.
class StripText : public KWControl {
public:
    StripText(const CRect& place, KWFrame* ownFrame, CHoriTxtAlign align, const CColor& colour);
    void draw(CDrawContext* context) override;
    void setText(const std::string& wanted);

private:
    std::string text;
    CHoriTxtAlign alignment;
};

// A number to drag, to turn by the wheel or to type: Return takes it, Escape leaves it.
class NumberField : public KWControl {
public:
    struct Range {
        double low;
        double high;
        double step; // of a notch or of a few pixels; a tenth of it with Shift
        int decimals;
    };
    NumberField(const CRect& place, CControlListener* listener, long tag, KWFrame* ownFrame,
        const Range& numberRange, double start);
    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    bool stepValue(int steps, bool fine) override;
    bool onKeyDown(const CKeyEvent& event) override;
    void looseFocus() override;

    double number() const { return current; }
    // From outside; leaves a number that is being typed alone.
    void show(double wanted);

private:
    void change(double wanted); // by the user
    void takeTyped();

    Range range;
    double current;
    std::string typed;
    bool isTyping = false;
    bool isDragging = false;
    int dragFrom = 0; // y
    double dragStart = 0;
};

} // namespace ormund
