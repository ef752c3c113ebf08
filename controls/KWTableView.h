// The step grid: shows one KWTable as a row of cells and lets a hand paint, ramp, tilt and toggle.
#pragma once

#include "controls/KWControl.h"
#include "data/tracks/KWTable.h"

#include <vector>

namespace ormund {

// Holds no step data: every read and write goes through the table, so that the engine's thread
// and the screen see the same numbers. Before it reads or paints it raises kTableReading and waits
// a bounded time for kTableLocked to fall; where that fails it leaves out this draw or this move.
class KWTableView : public KWControl, public CControlListener {
public:
    enum ButtonTag { kCopy = 10057, kPaste = 10058, kRandomise = 10059, kReset = 10060 };
    static constexpr int kChildButtons = 4;

    KWTableView(
        const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame, bool stamp);

    void draw(CDrawContext* context) override;
    void drawRect(CDrawContext* context, const CRect& updateRect) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseExited(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    void updateControl(void* context) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    void setPopupControl(KWControl* popup) override { popupControl = popup; }
    bool takesKeys() const override { return false; }
    virtual void setTable(KWTable* newTable);
    void valueChanged(CControl* sender) override;

    // `frames` pictures, stacked, each as high as the view.
    void setStrip(CBitmap* strip, int frames);
    // A step, whole in cell mode, else with a fraction; outside the grid the first or last one.
    float screenToStep(int x) const;
    // 0 at the grid's bottom to 1 at its top.
    float screenToValue(int y) const;

    KWTable* getTable() const { return table; }

    // Pixel heights by raw value, for the connecting lines of a raw table. Not owned.
    const std::vector<int>* noteHeights = nullptr;
    CControl* childButtons[kChildButtons] = {};
    CColor colorBack;
    CColor colorBar;   // bars; the running step's bar
    CColor colorGrid;  // grid lines
    CColor colorOther; // bars of steps that do not run, loop bar, cursor
    CColor colorLine;  // connecting lines and outlines
    CBitmap* backBitmap = nullptr;
    CBitmap* cellBitmap = nullptr;
    CBitmap* stripBitmap = nullptr;
    KWTable* overlayTable = nullptr;      // a second curve behind the bars
    Crossing<float>* pressFlag = nullptr; // 1 from a press to its release
    float zoomX = 0.0f;
    float zoomY = 0.0f;
    float scrollX = 0.0f;
    float scrollY = 0.5f;
    int stripFrames = 16;
    bool drawZeroLine = false;
    bool drawDefaultLine = false;
    bool showExtra = false;

    CRect gridRect;
    CRect rulerRect;
    CRect extraRect;
    CRect loopRect;

private:
    // Read access to the table for as long as it lives.
    class Access {
    public:
        explicit Access(KWTable* heldTable);
        ~Access();
        Access(const Access&) = delete;
        Access& operator=(const Access&) = delete;
        bool isGranted() const { return granted; }

    private:
        KWTable* table;
        bool granted = false;
    };

    bool has(TableFlag flag) const;
    int stepCount() const;
    float valueRange() const;
    float normalised(int step) const;
    void setNormalised(int step, float value);
    float raw(int step) const;
    bool takesMouse(const CPoint& where) const;
    void layOut();
    void watchRunningStep();
    bool watchValues();

    // KWTableViewDraw.cpp
    void drawStrip(CDrawContext* context);
    void drawConnection(CDrawContext* context, int x, int previous, int current) const;
    void drawNoteLines(CDrawContext* context);
    void drawColours(CDrawContext* context);
    void drawBackdrop(CDrawContext* context);
    void drawColumns(CDrawContext* context, const KWTable& shownTable, float perPixel);
    void drawOverlay(CDrawContext* context);
    void drawBars(CDrawContext* context);
    void drawCurve(CDrawContext* context);
    void drawBeatLines(CDrawContext* context);
    void drawRuler(CDrawContext* context);
    void drawLoopBar(CDrawContext* context);
    int pixelOfStep(float step) const;
    int pixelOfValue(float value) const;

    // KWTableViewMouse.cpp
    CMouseEventResult openPopup(const CPoint& where);
    void pressLoopBar(const CPoint& where);
    CMouseEventResult pressToggle(const CPoint& where);
    void beginStepEdit(const CPoint& where, int buttons);
    void takeSnapshot();
    void dragTilt(int dy);
    void dragFine(int dy);
    void dragLoop(const CPoint& where, int buttons);
    void dragPaint(int dx, int dy, int buttons);
    void paintSpan(int dx, int dy);
    void paintRamp();
    void clearLoopFlags();
    void endStepEdit();

    KWTable* table = nullptr;
    std::vector<float> snapshot; // normalised, from the press of a tilt
    std::vector<float> stepCache;
    KWControl* popupControl = nullptr;
    CControl* pressedButton = nullptr; // the child button that has the press
    CPoint mouseDownPoint;             // last position seen
    CPoint mousePoint;                 // position at the press plus all motion since
    float pressValue = 0;
    float dragValue = 0;
    float lastRunningValue = -1;
    uint32_t lastGeneration = 0;
    int minDragX = 0;
    int maxDragX = 0;
    int loopMoveStep = 0;
    int pressStep = 0;
    bool layoutStamp;
    bool loopDrag = false;
    bool dragLoopStart = false;
    bool dragLoopMove = false;
    bool dragLoopEnd = false;
    bool mouseIsDown = false;

    bool firstDraw = true;
    bool shiftDrag = false;
    bool altDrag = false;
    bool ctrlDrag = false;
};

} // namespace ormund
