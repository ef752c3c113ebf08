#include "view/CFrame.h"

#include "view/DrawnScales.h"

#include "view/CDrawContext.h"
#include "view/offscreen/OffscreenWindow.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace ormund {

namespace {

constexpr uint32_t kDoubleClickMs = 400;
constexpr int kDoubleClickDistance = 4;
constexpr CPoint kNowhere{-10000, -10000};

std::unique_ptr<FrameWindow> windowFor(void* systemWindow)
{
    if (auto window = openSystemWindow(systemWindow))
        return window;
    return std::make_unique<OffscreenWindow>(1, 1);
}

bool isNear(const CPoint& one, const CPoint& other)
{
    return std::abs(one.x - other.x) <= kDoubleClickDistance
        && std::abs(one.y - other.y) <= kDoubleClickDistance;
}

} // namespace

double CFrame::nearestScale(double wanted)
{
    double best = kDrawnScales[0];
    for (const double candidate : kDrawnScales)
        if (std::abs(candidate - wanted) < std::abs(best - wanted))
            best = candidate;
    return best;
}

CFrame::CFrame(const CRect& frameSize, void* systemWindow, VSTGUIEditorInterface* frameEditor)
    : CFrame(frameSize, windowFor(systemWindow), frameEditor)
{
    if (systemWindow)
        setScale(window->desktopScale());
}

CFrame::CFrame(const CRect& frameSize, std::unique_ptr<FrameWindow> frameWindow,
    VSTGUIEditorInterface* frameEditor)
    : CViewContainer(CRect{0, 0, frameSize.width(), frameSize.height()})
    , window(std::move(frameWindow))
    , editor(frameEditor)
{
    CViewContainer::setParentFrame(this);
    applyWindowSize();
}

CFrame::~CFrame()
{
    focusView = nullptr;
    CViewContainer::removeAll(true);
}

void CFrame::idle()
{
    window->poll(*this);
    repaint();
}

// A dirty container covers its children, and whatever lies in a dirty rectangle is painted, so the
// flags come down here, before anything is drawn.
void CFrame::collectDirty()
{
    if (CView::isDirty()) {
        region.add(size);
        setDirty(false);
        return;
    }
    for (CView* child : children) {
        if (!child->isDirty())
            continue;
        CRect part = child->getViewSize();
        region.add(part.bound(size));
        child->setDirty(false);
    }
}

void CFrame::repaint()
{
    collectDirty();
    if (region.isEmpty())
        return;
    cairo_surface_t* image = window->image();
    if (!image)
        return;
    // What a view marks while it is drawn waits for the next time.
    const DirtyRegion painted = region;
    region.clear();
    std::array<CRect, DirtyRegion::kMaxRects> parts;
    size_t count = 0;
    {
        CDrawContext context(image, scale);
        for (const CRect& rect : painted.rects()) {
            context.setClipRect(rect);
            drawRect(&context, rect);
            context.resetClipRect();
            parts[count++] = {static_cast<int>(std::floor(rect.left * scale)),
                static_cast<int>(std::floor(rect.top * scale)),
                static_cast<int>(std::ceil(rect.right * scale)),
                static_cast<int>(std::ceil(rect.bottom * scale))};
        }
    }
    window->present({parts.data(), count});
}

void CFrame::invalidRect(const CRect& rect)
{
    CRect part = rect;
    region.add(part.bound(size));
}

bool CFrame::setSize(int width, int height)
{
    if (width <= 0 || height <= 0)
        return false;
    CFrame::setViewSize({0, 0, width, height});
    return true;
}

void CFrame::setViewSize(const CRect& rect, bool invalidate)
{
    if (rect.width() != size.width() || rect.height() != size.height()) {
        size = {0, 0, rect.width(), rect.height()};
        setMouseableArea(size);
        applyWindowSize();
    } else if (invalidate) {
        invalidAll();
    }
}

void CFrame::setScale(double newScale)
{
    newScale = nearestScale(newScale);
    if (newScale == scale)
        return;
    scale = newScale;
    applyWindowSize();
}

void CFrame::applyWindowSize()
{
    window->resize(static_cast<int>(std::lround(size.width() * scale)),
        static_cast<int>(std::lround(size.height() * scale)));
    region.clear();
    invalidAll();
}

bool CFrame::getCurrentMouseLocation(CPoint& where) const
{
    where = mouseAt;
    return size.pointInside(mouseAt);
}

void CFrame::windowMouseDown(const CPoint& where, int buttons, int button, uint32_t time)
{
    if (pressButton && pressButton != button && (buttons & pressButton))
        return;
    endPress(); // of a press whose release got lost
    const bool isSecond = button == lastPressButton && time - lastPressTime <= kDoubleClickMs
        && isNear(where, lastPressAt);
    // A third press within the time is a first one again.
    lastPressButton = isSecond ? 0 : button;
    lastPressTime = time;
    lastPressAt = where;
    mouseAt = where;
    pressButton = button;
    mouseButtons = heardOf(buttons);
    if (editor)
        editor->frameActivity(this);
    onMouseDown(where, isSecond ? mouseButtons | kDoubleClick : mouseButtons);
}

void CFrame::windowMouseUp(const CPoint& where, int buttons)
{
    mouseAt = where;
    if (buttons & pressButton)
        return;
    const bool wasPress = std::exchange(pressButton, 0) != 0;
    mouseButtons = heardOf(buttons);
    if (wasPress)
        onMouseUp(where, mouseButtons);
    // A drag that ended elsewhere leaves the pointer over another view, or over none.
    if (size.pointInside(where))
        onMouseMoved(where, mouseButtons);
    else
        onMouseExited(where, mouseButtons);
}

void CFrame::windowMouseMoved(const CPoint& where, int buttons)
{
    mouseAt = where;
    mouseButtons = heardOf(buttons);
    // A release that got lost: the views see a move without buttons.
    if (!(buttons & pressButton))
        pressButton = 0;
    // Two presses with a motion between them are two single clicks, also where the second one is
    // at the place of the first.
    if (!isNear(where, lastPressAt))
        lastPressButton = 0;
    onMouseMoved(where, mouseButtons);
}

void CFrame::windowMouseLeft(const CPoint& where, int buttons)
{
    mouseAt = size.pointInside(where) ? kNowhere : where;
    mouseButtons = heardOf(buttons);
    if (!mouseDownView)
        onMouseExited(mouseAt, mouseButtons);
}

void CFrame::windowWheel(const CPoint& where, CMouseWheelAxis axis, float distance, int buttons)
{
    mouseAt = where;
    mouseButtons = heardOf(buttons);
    if (!pressButton)
        onWheel(where, axis, distance, mouseButtons);
}

bool CFrame::windowKeyDown(const CKeyEvent& event)
{
    return onKeyDown(event) || (editor && editor->frameKeyDown(event));
}

bool CFrame::windowKeyUp(const CKeyEvent& event)
{
    return onKeyUp(event) || (editor && editor->frameKeyUp(event));
}

bool CFrame::onKeyDown(const CKeyEvent& event)
{
    if (!focusView)
        return false;
    const CShared<CView> keep(focusView);
    return keep->onKeyDown(event);
}

bool CFrame::onKeyUp(const CKeyEvent& event)
{
    if (!focusView)
        return false;
    const CShared<CView> keep(focusView);
    return keep->onKeyUp(event);
}

void CFrame::windowLostFocus() { looseFocus(); }

void CFrame::endPress()
{
    if (!pressButton && !mouseDownView)
        return;
    pressButton = 0;
    mouseButtons = heardOf(mouseButtons);
    onMouseUp(kNowhere, mouseButtons);
}

CMouseEventResult CFrame::onMouseDown(const CPoint& where, int buttons)
{
    const CMouseEventResult result = CViewContainer::onMouseDown(where, buttons);
    // A press beside the view with the focus takes the focus from it.
    if (focusView && !focusView->getViewSize().pointInside(where))
        setFocusView(nullptr);
    return result;
}

CMouseEventResult CFrame::onMouseMoved(const CPoint& where, int buttons)
{
    return CViewContainer::onMouseMoved(where, buttons);
}

void CFrame::looseFocus() { setFocusView(nullptr); }

void CFrame::setFocusView(CView* view)
{
    if (view == focusView)
        return;
    const CShared<CView> before(focusView);
    focusView = view;
    if (before)
        before->looseFocus();
    if (focusView == view && view)
        view->takeFocus();
}

void CFrame::setCursor(CCursor cursor)
{
    if (cursor == cursorShown)
        return;
    cursorShown = cursor;
    window->setCursor(cursor);
}

bool CFrame::isTypeOf(const char* className) const
{
    return std::strcmp(className, "CFrame") == 0 || CViewContainer::isTypeOf(className);
}

void CFrame::dropMouseViews(const CView* view)
{
    if (mouseDownView == view)
        endPress();
    CViewContainer::dropMouseViews(view);
    if (focusView == view)
        setFocusView(nullptr);
}

void CFrame::viewGone(const CView* view)
{
    CViewContainer::dropMouseViews(view);
    if (focusView == view)
        focusView = nullptr;
}

} // namespace ormund
