// A rotary or a slider that shows its value as a frame of a strip.
#pragma once

#include "controls/KWControl.h"
#include "view/CDrawContext.h"

namespace ormund {

class KWKnob : public KWControl {
public:
    enum Mode { kRelative = 0, kAbsolute = 1, kSliderHandle = 2 };
    enum MarkerMode { kNoMarker = 0, kMarkerX = 1, kMarkerY = 2, kMarkerFrame = 3 };

    KWKnob(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame,
        CBitmap* stripBitmap, int heightOfFrame, int countOfFrames, float dragSensitivity);

    void draw(CDrawContext* context) override;
    void drawRect(CDrawContext* context, const CRect& updateRect) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseEntered(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseExited(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    void updateControl(void* context) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    void setSizeAndArea(const CRect& rect) override;
    void setPopupControl(KWControl* popup) override { popupControl = popup; }
    bool stepValue(int steps, bool fine) override;

    // Which frame of the strip a position of 0 to 1 shows.
    int frameAt(float position) const;

    CBitmap* strip = nullptr;
    CBitmap* backBitmap = nullptr;
    CBitmap* markerBitmap = nullptr;
    const Crossing<float>* valueSource = nullptr;
    const Crossing<float>* markerSource = nullptr; // below 0: no mark
    Crossing<float>* pressFlag = nullptr;          // 1 during a drag
    int frameHeight = 0;
    int frameCount = 0;
    int firstFrame = 0; // of the strip: where the frames of this knob begin
    // The cap of a round knob, from the corner of the control; it lightens under the mouse. Without
    // one the frame of the control does.
    CDrawPoint capCentre;
    double capRadius = 0;
    int markerMode = kNoMarker;
    float markerValue = -1.0f;
    float sourceMax = 1.0f;
    float sourceMin = 0.0f;
    float sensitivity = 1.0f;
    int mode = kRelative;
    bool noWheel = false;
    bool horizontal = false;
    bool hidden = false;
    bool roundFrame = false;
    int padding = 0;
    // A list: rows of this height, counted from `rowsEnd` (from the top) upward, a frame each. A
    // click without motion takes the row under the pointer. 0: no list.
    int rowHeight = 0;
    int rowsEnd = 0;

private:
    float position() const;
    float sourceAsValue() const;
    void drawMarker(CDrawContext* context);
    void drawHover(CDrawContext* context);
    void followPoint(const CPoint& where);
    void beginDrag(const CPoint& where);
    void takeRow(const CPoint& where);
    void chooseFrame(int index);

    KWControl* popupControl = nullptr;
    int lastX = 0;
    int lastY = 0;
    CPoint pressPoint;
    bool mouseDown = false;
    bool moved = false; // since the press, by more than a hand's tremor
    bool hovered = false;
};

} // namespace ormund
