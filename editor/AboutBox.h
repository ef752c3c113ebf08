#pragma once

#include "controls/KWViewContainer.h"

#include <functional>

namespace ormund {

class KWButton;

// Product, version and licence on a sheet above the panel, and the switch of the offline rendering.
// Any click beside the switch closes it.
class AboutBox : public KWViewContainer, public CControlListener {
public:
    AboutBox(const CRect& size, long tag, KWFrame* ownFrame, CBitmap* sheet, CBitmap* cross,
        CBitmap* checkBox);

    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    // From its cross and its switch.
    void valueChanged(CControl* sender) override;
    void show();
    CRect switchRect() const;

    // How the setting stands, and what changes it.
    std::function<bool()> rendersOffline;
    std::function<void(bool)> setRendersOffline;

private:
    KWButton* offline;
};

} // namespace ormund
