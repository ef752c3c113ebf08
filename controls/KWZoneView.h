// A bar of columns that shows a track's playback loop and is the way to set it.
#pragma once

#include "controls/KWControl.h"

namespace ormund {

class KWZoneHandlerContainer;

class KWZoneView : public KWControl, public CControlListener {
public:
    enum Gesture { kNone, kDragStart, kDragEnd, kMoveZone, kDrawZone };

    KWZoneView(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame,
        KWZoneHandlerContainer* zoneHandler);

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    void updateControl(void* context) override;
    void setPopupControl(KWControl* popup) override { popupControl = popup; }
    bool stepValue(int steps, bool fine) override;
    // From its buttons: whole track, one step back, one step on.
    void valueChanged(CControl* sender) override;

    int columnAt(int x) const;
    Gesture getGesture() const { return gesture; }

    KWZoneHandlerContainer* handler;
    const Crossing<float>* firstZone = nullptr; // index of the first column; null for 0
    CBitmap* strip = nullptr;                   // outside, left cap, inside, right cap
    int firstFrame = 0;                         // where those four begin: a set for each hue
    CColor cellColor;
    CColor zoneColor;
    int headerHeight = 48; // the bar's height at most; a higher view shows grey cells below it
    int columns;           // steps shown
    bool canEdit = true;

private:
    float columnWidth() const;
    int columnLeft(int column) const;
    int firstColumn() const;
    void drawColumn(CDrawContext* context, int column, int start, int end);
    void drawBar(CDrawContext* context, int start, int end);
    void setZone(int start, int end);
    void shiftZone(int steps);
    bool readsMouse(const CPoint& where) const;

    KWControl* popupControl = nullptr;
    Gesture gesture = kNone;
    int grabbed = 0; // the column of the press
    int grabbedStart = 0;
    int grabbedEnd = 0;
    int lastCount = -1;
    uint32_t lastRevision = 0;
    int lastRow = -1;
};

} // namespace ormund
