// A control with children of its own, which move with it and share its modal display.
#pragma once

#include "controls/KWControl.h"

#include <vector>

namespace ormund {

// Takes over one reference to each child. Screen thread only.
class KWViewContainer : public KWControl {
public:
    static constexpr int kKeepPlace = -10000;

    struct Item {
        CView* view = nullptr;
        int x = 0; // from the container's corner
        int y = 0;
        bool active = true;
        bool placed = false; // follows the container
        KWControl* control = nullptr;
    };

    KWViewContainer(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame,
        CBitmap* background = nullptr);
    ~KWViewContainer() override;

    void draw(CDrawContext* context) override;
    void drawRect(CDrawContext* context, const CRect& updateRect) override;
    bool isDirty() const override;
    void setDirty(bool nowDirty = true) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseEntered(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseExited(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    void beginModal(int mode, const CPoint* where, long forTag) override;
    void endModal(int result) override;
    void updateControl(void* context) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;

    // The view's corner goes to the container's plus (x, y); with x = kKeepPlace it stays.
    virtual void addItem(CView* view, int x, int y);
    virtual void setChildrenVisible(bool visible);
    virtual void setChildrenDirty(bool dirty);

    const std::vector<Item>& getItems() const { return children; }

    int modalResult = 0;
    bool isOpen = false;

protected:
    // What lies below the children, whichever part of the container is painted.
    virtual void drawBackground(CDrawContext* context);

private:
    CView* childAt(const CPoint& where) const;

    std::vector<Item> children;
    CView* mouseChild = nullptr;
    CView* hoverChild = nullptr;
    bool joinedFrame = false; // by beginModal, to leave at endModal
};

} // namespace ormund
