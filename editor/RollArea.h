#pragma once

#include "controls/KWMouseArea.h"

namespace ormund {

class CBitmap;

// The roll area at the keyboard's right end: a mouse area that shows when it is held.
class RollArea : public KWMouseArea {
public:
    using KWMouseArea::KWMouseArea;

    void draw(CDrawContext* context) override;

    CBitmap* strip = nullptr; // idle, held
};

} // namespace ormund
