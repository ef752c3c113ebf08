// A set of rectangles with a picture each. It reports gestures; its listener moves the objects.
#pragma once

#include "controls/KWControl.h"

#include <vector>

namespace ormund {

// Not owned by the view. `bottom` counts upward from the view's lower edge.
struct KWPolyObjectSet {
    struct Object {
        int left = 0;
        int bottom = 0;
        int width = 0;
        int height = 0;
        int frameX = 0; // of its picture in the strip
        int frameY = 0;
    };
    std::vector<Object> objects;
    std::vector<uint8_t> alpha; // one per object, or empty for none
    int revision = 0;           // raised with each change of the set
};

class KWPolyObjectView : public KWControl {
public:
    // What the listener reads during valueChanged; the deltas are pixels since the last move.
    struct Gesture {
        float pressed = 0;
        float rightPressed = 0;
        float objectIndex = 0;
        float deltaX = 0;
        float deltaY = 0;
    };

    KWPolyObjectView(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame);

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    void updateControl(void* context) override;
    bool takesKeys() const override { return false; }

    CRect objectRect(int index) const;
    // The topmost object at a point, -1 for none.
    int objectAt(const CPoint& where) const;
    const Gesture& getGesture() const { return gesture; }

    const KWPolyObjectSet* objectSet = nullptr;
    CBitmap* background = nullptr;
    CBitmap* strip = nullptr;
    bool solidFill = false;
    bool enabled = true;

private:
    CPoint lastPoint;
    Gesture gesture;
    int currentObject = -1;
    int lastRevision = 0;
};

} // namespace ormund
