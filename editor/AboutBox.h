#pragma once

#include "controls/KWViewContainer.h"

// Product, version and licence on a sheet above the panel. Any click closes it.
class AboutBox : public KWViewContainer, public CControlListener {
public:
    AboutBox(const CRect& size, long tag, KWFrame* ownFrame, CBitmap* sheet, CBitmap* cross);

    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    // From its cross.
    void valueChanged(CControl* sender) override;
    void show();
};
