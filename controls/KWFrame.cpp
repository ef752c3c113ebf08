#include "controls/KWFrame.h"

#include "controls/KWControl.h"
#include "view/CDrawContext.h"

#include <algorithm>
#include <tuple>

namespace ormund {

namespace {
constexpr double kRingWidth = 1.5;
constexpr double kRingRadius = 4;
constexpr int kRingDistance = 1;
} // namespace

KWFrame::KWFrame(const CRect& frameSize, void* systemWindow, VSTGUIEditorInterface* frameEditor,
    void* frameOwner)
    : CFrame(frameSize, systemWindow, frameEditor), owner(frameOwner)
{
    useOffscreen(true);
}

KWFrame::KWFrame(const CRect& frameSize, std::unique_ptr<FrameWindow> frameWindow,
    VSTGUIEditorInterface* frameEditor, void* frameOwner)
    : CFrame(frameSize, std::move(frameWindow), frameEditor), owner(frameOwner)
{
    useOffscreen(true);
}

KWFrame::~KWFrame()
{
    while (modalControl)
        modalControl->endModal(0);
    // The views go first: each takes itself out of what still points at it here.
    removeAll(true);
}

bool KWFrame::addView(CView* view)
{
    if (!CFrame::addView(view))
        return false;
    if (auto* control = dynamic_cast<KWControl*>(view))
        controls.push_back(control);
    return true;
}

bool KWFrame::removeView(CView* view, bool withForget)
{
    std::erase_if(controls, [view](const KWControl* control) { return control == view; });
    return CFrame::removeView(view, withForget);
}

void KWFrame::removeAll(bool withForget)
{
    controls.clear();
    CFrame::removeAll(withForget);
}

bool KWFrame::isModalAttached() const { return modalControl && isChild(modalControl); }

// A modal control that is no child lies above everything all the same.
void KWFrame::drawRect(CDrawContext* context, const CRect& updateRect)
{
    CFrame::drawRect(context, updateRect);
    drawFocusRing(context);
    if (!modalControl || isModalAttached())
        return;
    CRect covered;
    modalControl->getViewRect(covered);
    covered.right += modalControl->shadowSize;
    covered.bottom += modalControl->shadowSize;
    if (covered.rectOverlap(updateRect))
        modalControl->draw(context);
}

void KWFrame::drawFocusRing(CDrawContext* context)
{
    const auto* focused = dynamic_cast<KWControl*>(getFocusView());
    if (!focusRingShown || !focused || !focused->isLive())
        return;
    CRect ring = focused->focusRect();
    if (ring.isEmpty())
        return;
    ring.inset(-kRingDistance - 1, -kRingDistance - 1);
    context->setFrameColor(kWhiteCColor);
    context->setLineWidth(kRingWidth);
    context->drawRoundRect(ring, kRingRadius, kDrawStroked);
    context->setLineWidth(1);
}

CMouseEventResult KWFrame::onMouseDown(const CPoint& where, int buttons)
{
    if (!hasSystemFocus())
        takeSystemFocus();
    showFocusRing(false);
    if (!modalControl)
        return CFrame::onMouseDown(where, buttons);
    return modalControl->onMouseDown(where, buttons);
}

CMouseEventResult KWFrame::onMouseUp(const CPoint& where, int buttons)
{
    if (!modalControl)
        return CFrame::onMouseUp(where, buttons);
    // Who opened the modal control by a press still learns of the release.
    if (mouseDownView && mouseDownView != modalControl)
        CFrame::onMouseUp(where, buttons);
    return modalControl ? modalControl->onMouseUp(where, buttons) : kMouseEventHandled;
}

CMouseEventResult KWFrame::onMouseMoved(const CPoint& where, int buttons)
{
    return modalControl ? modalControl->onMouseMoved(where, buttons)
                        : CFrame::onMouseMoved(where, buttons);
}

bool KWFrame::onWheel(const CPoint& where, float distance, int buttons)
{
    return modalControl ? modalControl->onWheel(where, distance, buttons)
                        : CFrame::onWheel(where, distance, buttons);
}

bool KWFrame::onWheel(const CPoint& where, CMouseWheelAxis axis, float distance, int buttons)
{
    return modalControl ? modalControl->onWheel(where, axis, distance, buttons)
                        : CFrame::onWheel(where, axis, distance, buttons);
}

void KWFrame::looseFocus()
{
    if (!modalControl)
        CFrame::looseFocus();
    while (modalControl && modalControl->closesWithFocus())
        modalControl->endModal(0);
    endPress();
}

void KWFrame::letGo()
{
    while (modalControl)
        modalControl->endModal(0);
    endPress();
}

CView* KWFrame::getViewAt(const CPoint& where) const
{
    for (auto view = views().rbegin(); view != views().rend(); ++view) {
        if ((*view)->isVisible() && (*view)->getMouseEnabled()
            && (*view)->getMouseableArea().pointInside(where))
            return *view;
    }
    return nullptr;
}

void KWFrame::idle()
{
    if (invalidateAll != 0) {
        invalidAll();
        invalidateAll = 0;
    }
    // A page that turns away during a drag takes the drag along.
    const auto* pressed = dynamic_cast<KWControl*>(mouseDownView);
    if (pressed && pressed->isEditing() && !pressed->isLive())
        endPress();
    // By index: an update may add or remove a view.
    for (size_t i = 0; i < controls.size(); ++i)
        controls[i]->updateControl(nullptr);
    if (modalControl && !isModalAttached()) {
        modalControl->updateControl(nullptr);
        if (modalControl && modalControl->isDirty()) {
            CRect covered;
            modalControl->getViewRect(covered);
            invalidRect(covered);
        }
    }
    CFrame::idle();
}

// Keys that the focused view left. A modal control hears them all, since no other takes a key then.
bool KWFrame::onKeyDown(const CKeyEvent& event)
{
    if (!modalControl) {
        if (event.key == CKey::Tab && (event.modifiers & ~kShift) == 0)
            return moveFocus((event.modifiers & kShift) != 0);
        return CFrame::onKeyDown(event);
    }
    if (event.key == CKey::Escape) {
        modalControl->endModal(0);
        return true;
    }
    return modalControl->onKeyDown(event);
}

bool KWFrame::moveFocus(bool backward)
{
    std::vector<KWControl*> reachable;
    for (KWControl* control : controls)
        if (control->takesKeys() && control->isLive() && control->getMouseEnabled()
            && !control->focusRect().isEmpty())
            reachable.push_back(control);
    if (reachable.empty())
        return false;
    std::stable_sort(
        reachable.begin(), reachable.end(), [](const KWControl* one, const KWControl* other) {
            const CRect& a = one->getViewSize();
            const CRect& b = other->getViewSize();
            return std::tie(a.top, a.left) < std::tie(b.top, b.left);
        });
    const auto here = std::find(reachable.begin(), reachable.end(), getFocusView());
    const size_t count = reachable.size();
    size_t index = backward ? count - 1 : 0; // without a focus, at the near end
    if (here != reachable.end())
        index = (size_t(here - reachable.begin()) + (backward ? count - 1 : 1)) % count;
    setFocusView(reachable[index]);
    showFocusRing(true);
    return true;
}

void KWFrame::setFocusView(CView* view)
{
    if (view == getFocusView())
        return;
    invalidFocusRing();
    CFrame::setFocusView(view);
    invalidFocusRing();
}

void KWFrame::showFocusRing(bool nowShown)
{
    if (focusRingShown == nowShown)
        return;
    focusRingShown = true; // for the ring that goes as well
    invalidFocusRing();
    focusRingShown = nowShown;
}

void KWFrame::invalidFocusRing()
{
    const auto* focused = dynamic_cast<KWControl*>(getFocusView());
    if (!focusRingShown || !focused)
        return;
    CRect ring = focused->focusRect();
    invalidRect(ring.inset(-4, -4));
}

void KWFrame::controlGone(const KWControl* control)
{
    if (modalControl == control)
        modalControl = control->previousModal;
    for (KWControl* link = modalControl; link; link = link->previousModal) {
        if (link->previousModal == control)
            link->previousModal = control->previousModal;
    }
}

} // namespace ormund
