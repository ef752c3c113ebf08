#include "editor/RollArea.h"

#include "view/CBitmap.h"

namespace ormund {

void RollArea::draw(CDrawContext* context)
{
    if (isLive() && strip)
        strip->drawTransparent(context, size, {0, isTracking() ? size.height() : 0});
    setDirty(false);
}

} // namespace ormund
