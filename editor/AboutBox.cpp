#include "editor/AboutBox.h"

#include "controls/KWButton.h"
#include "controls/KWFrame.h"
#include "view/CBitmap.h"

namespace {
constexpr long kCloseTag = 1;
}

AboutBox::AboutBox(
    const CRect& boxSize, long boxTag, KWFrame* ownFrame, CBitmap* sheet, CBitmap* cross)
    : KWViewContainer(boxSize, nullptr, boxTag, ownFrame, sheet)
{
    style = kDrawBitmap | kDropShadow;
    setTransparency(true);
    const CRect place{boxSize.width() - 24, 9, boxSize.width() - 9, 24};
    auto* close = new KWButton(place, this, kCloseTag, ownFrame, "", false, KWButton::kMomentary);
    close->setBackground(cross);
    close->frameMask = KWButton::kPressedFrame | KWButton::kHoverFrame;
    close->setTransparency(true);
    close->editBrackets = false;
    addItem(close, place.left, place.top);
    KWControl::setVisible(false);
}

void AboutBox::valueChanged(CControl* sender)
{
    if (sender->getTag() == kCloseTag && sender->getValue() == 0.0f)
        endModal(0);
}

void AboutBox::show()
{
    if (isOpen)
        return;
    const CPoint corner{size.left, size.top};
    beginModal(3, &corner, 0);
}

CMouseEventResult AboutBox::onMouseDown(const CPoint& where, int buttons)
{
    if (isOpen && size.pointInside(where) && !getItems().front().view->hitTest(where)) {
        endModal(0);
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    return KWViewContainer::onMouseDown(where, buttons);
}
