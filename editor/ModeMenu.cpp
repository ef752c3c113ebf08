#include "editor/ModeMenu.h"

#include "view/CBitmap.h"

#include <algorithm>

namespace ormund {

void ModeMenu::draw(CDrawContext* context)
{
    CBitmap* pictures = getBackground();
    if (isLive() && pictures)
        pictures->drawTransparent(context, size, {0, std::max(currentEntry, 0) * size.height()});
    if (isLive())
        drawHover(context);
    setDirty(false);
}

} // namespace ormund
