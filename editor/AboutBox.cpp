#include "editor/AboutBox.h"

#include "controls/KWButton.h"
#include "controls/KWFrame.h"
#include "view/CBitmap.h"

#include <algorithm>

namespace ormund {

namespace {

constexpr long kCloseTag = 1;
constexpr long kOfflineTag = 2;

KWButton* makeButton(const CRect& place, CControlListener* listener, long tag, KWFrame* frame,
    CBitmap* strip, int type)
{
    auto* button = new KWButton(place, listener, tag, frame, "", false, type);
    button->setBackground(strip);
    button->frameMask = KWButton::kPressedFrame | KWButton::kHoverFrame;
    button->setTransparency(true);
    button->editBrackets = false;
    return button;
}

} // namespace

AboutBox::AboutBox(const CRect& boxSize, long boxTag, KWFrame* ownFrame, CBitmap* sheet,
    CBitmap* cross, CBitmap* checkBox)
    : KWViewContainer(boxSize, nullptr, boxTag, ownFrame, sheet)
    , offline(
          makeButton({36, 262, 50, 275}, this, kOfflineTag, ownFrame, checkBox, KWButton::kCycle))
{
    style = kDrawBitmap | kDropShadow;
    setTransparency(true);
    const CRect corner{boxSize.width() - 24, 9, boxSize.width() - 9, 24};
    addItem(makeButton(corner, this, kCloseTag, ownFrame, cross, KWButton::kMomentary), corner.left,
        corner.top);
    addItem(offline, offline->getViewSize().left, offline->getViewSize().top);
    KWControl::setVisible(false);
}

CRect AboutBox::switchRect() const { return offline->getViewSize(); }

void AboutBox::valueChanged(CControl* sender)
{
    if (sender->getTag() == kCloseTag && sender->getValue() == 0.0f)
        endModal(0);
    else if (sender->getTag() == kOfflineTag && setRendersOffline)
        setRendersOffline(sender->getValue() > 0.0f);
}

void AboutBox::show()
{
    if (isOpen)
        return;
    if (rendersOffline)
        offline->setValue(rendersOffline() ? 1.0f : 0.0f);
    const CPoint corner{size.left, size.top};
    beginModal(3, &corner, 0);
}

CMouseEventResult AboutBox::onMouseDown(const CPoint& where, int buttons)
{
    const bool onButton = std::ranges::any_of(
        getItems(), [&](const Item& item) { return item.view->hitTest(where); });
    if (isOpen && size.pointInside(where) && !onButton) {
        endModal(0);
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    return KWViewContainer::onMouseDown(where, buttons);
}

} // namespace ormund
