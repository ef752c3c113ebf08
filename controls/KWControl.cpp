#include "controls/KWControl.h"

#include "controls/KWFrame.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <cmath>

namespace ormund {

namespace {
constexpr CColor kLabelColor{200, 200, 200};
constexpr int kLabelHeight = 12;
constexpr float kKeyStep = 0.01f;
constexpr float kFineKeyStep = 0.001f;
} // namespace

KWControl::KWControl(const CRect& viewSize, CControlListener* controlListener, long controlTag,
    KWFrame* ownFrame, CBitmap* backgroundBitmap)
    : CControl(viewSize, controlListener, controlTag, backgroundBitmap)
    , backColor(kBlueCColor)
    , textColor(kBlackCColor)
    , frame(ownFrame)
{
    if (frame) {
        font = frame->font;
        fontSize = frame->fontSize;
        CView::setParentFrame(frame);
    }
}

KWControl::~KWControl()
{
    if (frame)
        frame->controlGone(this);
}

void KWControl::draw(CDrawContext* context)
{
    setDirty(false);
    if (!isLive() || label.empty())
        return;
    context->setFont(font, kLabelHeight);
    const int width = static_cast<int>(std::ceil(context->getStringWidth(label)));
    const int left = size.left + (size.width() - width) / 2;
    context->setFrameColor(kLabelColor);
    context->setFontColor(kLabelColor);
    context->drawString(
        label, {left, size.top - kLabelHeight, left + width, size.top}, false, kCenterText);
}

bool KWControl::isDirty() const { return isLive() && CControl::isDirty(); }

void KWControl::setVisible(bool nowShown)
{
    if (shown != nowShown)
        invalid();
    shown = nowShown;
    setDirty(true);
}

CMouseEventResult KWControl::onMouseDown(const CPoint& where, int)
{
    return isLive() && size.pointInside(where) ? kMouseEventHandled : kMouseEventNotHandled;
}

CMouseEventResult KWControl::onMouseUp(const CPoint&, int) { return kMouseEventNotHandled; }

CMouseEventResult KWControl::onMouseMoved(const CPoint&, int) { return kMouseEventNotHandled; }

CMouseEventResult KWControl::onMouseEntered(const CPoint&, int)
{
    if (frame)
        hoverShowTimer = frame->hoverShowDelay;
    hoverHideTimer = kStopped;
    return kMouseEventHandled;
}

CMouseEventResult KWControl::onMouseExited(const CPoint&, int)
{
    startHideTimer();
    return kMouseEventHandled;
}

bool KWControl::hitTest(const CPoint& where, int)
{
    return isLive() && getMouseEnabled() && mouseableArea.pointInside(where);
}

void KWControl::beginModal(int, const CPoint*, long)
{
    if (!frame)
        return;
    // Nothing may stand in its own chain, or endModal would restore it for ever.
    if (frame->modalControl != this) {
        previousModal = frame->modalControl;
        frame->modalControl = this;
    }
    if (frame->removeView(this, false))
        frame->addView(this); // now the last one, and so on top
    CRect covered;
    getViewRect(covered);
    if (style & kDropShadow) {
        covered.right += shadowSize;
        covered.bottom += shadowSize;
    }
    frame->invalidRect(covered);
    setDirty(true);
    onModalStart();
}

void KWControl::endModal(int)
{
    if (!frame)
        return;
    if (frame->modalControl == this)
        frame->modalControl = previousModal;
    previousModal = nullptr;
    frame->setDirty(true);
    CRect covered;
    getViewRect(covered);
    if (style & kDropShadow) {
        covered.right += shadowSize;
        covered.bottom += shadowSize;
    }
    frame->invalidRect(covered);
}

void KWControl::getViewRect(CRect& rect) const { rect = size; }

// The timers are read and then decremented: a delay of 2 fires at the third idle, and a stopped
// timer runs down through the negatives and never fires.
void KWControl::updateControl(void*)
{
    if (!isLive()) {
        if (hoverShown)
            hideHoverViews();
        return;
    }
    if (hoverShown) {
        if (hoverHideTimer-- == 0)
            hideHoverViews();
        if (hoverShown)
            return;
    }
    if (hoverShowTimer-- == 0)
        showHoverViews();
}

void KWControl::setSizeAndArea(const CRect& rect)
{
    setMouseableArea(rect);
    setViewSize(rect, true);
}

void KWControl::addHoverView(CView* view)
{
    hoverViews.push_back(view);
    view->setVisible(false);
}

void KWControl::addHoverViewAlt(CView* view)
{
    hoverViewsAlt.push_back(view);
    view->setVisible(false);
}

bool KWControl::stepValue(int steps, bool fine)
{
    const float range = getMax() - getMin();
    const float wanted = clampedToRange(
        getValue() + static_cast<float>(steps) * range * (fine ? kFineKeyStep : kKeyStep));
    if (wanted == getValue())
        return true;
    setValue(wanted);
    notify();
    setDirty(true);
    return true;
}

bool KWControl::onKeyDown(const CKeyEvent& event)
{
    const bool modalElsewhere = frame && frame->modalControl && frame->modalControl != this;
    if (!takesKeys() || !isLive() || !getMouseEnabled() || modalElsewhere
        || (event.modifiers & ~kShift))
        return false;
    const bool up = event.key == CKey::Up || event.key == CKey::Right;
    const bool down = event.key == CKey::Down || event.key == CKey::Left;
    if (!up && !down)
        return false;
    const bool taken = stepValue(up ? 1 : -1, (event.modifiers & kShift) != 0);
    if (taken && frame)
        frame->showFocusRing(true);
    return taken;
}

void KWControl::notify()
{
    openBracket();
    tellListener();
    closeBracket();
}

void KWControl::openBracket()
{
    if (editBrackets)
        beginEdit();
}

void KWControl::closeBracket()
{
    if (editBrackets && isEditing())
        endEdit();
}

void KWControl::wheelValue(float distance, float perNotch)
{
    setValue(clampedToRange(getValue() - distance * perNotch));
}

// To the maximum first, so that a range turned upside down ends at its minimum.
float KWControl::clampedToRange(float wanted) const
{
    if (wanted > getMax())
        wanted = getMax();
    return wanted < getMin() ? getMin() : wanted;
}

void KWControl::showHoverViews()
{
    if (hoverEnabled == 0)
        return;
    for (const std::vector<CView*>* list : {&hoverViews, &hoverViewsAlt}) {
        for (CView* view : *list) {
            view->setVisible(true);
            view->setDirty(true);
            view->invalid();
        }
    }
    hoverShowTimer = kStopped;
    hoverHideTimer = kStopped;
    hoverShown = true;
}

void KWControl::hideHoverViews()
{
    for (const std::vector<CView*>* list : {&hoverViewsAlt, &hoverViews}) {
        for (CView* view : *list) {
            if (!view->isVisible())
                continue;
            view->setVisible(false);
            view->invalid();
        }
    }
    hoverShown = false;
}

void KWControl::startHideTimer()
{
    if (frame)
        hoverHideTimer = frame->hoverHideDelay;
    hoverShowTimer = kStopped;
}

// Along the right and the bottom edge, one-pixel columns and rows that fade outward.
void KWControl::drawShadow(CDrawContext* context, const CRect& rect) const
{
    int alpha = shadowAlpha;
    for (int ring = 0; ring < shadowSize && alpha > 0; ++ring, alpha += shadowAlphaStep) {
        const int right = rect.right + ring;
        const int bottom = rect.bottom + ring;
        context->setFillColor(kBlackCColor.withAlpha(std::min(alpha, 255)));
        context->drawRect({right, rect.top + shadowSize, right + 1, bottom}, kDrawFilled);
        context->drawRect({rect.left + shadowSize, bottom, right + 1, bottom + 1}, kDrawFilled);
    }
}

void KWControl::drawFrameOf(
    CDrawContext* context, CBitmap* bitmap, const CRect& rect, int offsetY) const
{
    if (getTransparency())
        bitmap->drawTransparent(context, rect, {0, offsetY});
    else
        bitmap->draw(context, rect, {0, offsetY});
}

void KWControl::takeKeyboard()
{
    if (frame && isAttached())
        frame->setFocusView(this);
}

} // namespace ormund
