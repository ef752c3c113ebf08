#include "controls/KWMenuHelper.h"

#include "controls/KWOptionMenu.h"

namespace ormund {

KWMenuHelper::KWMenuHelper(KWOptionMenu* owner, KWFrame* ownFrame)
    : KWControl(CRect(), nullptr, 0, ownFrame), menu(owner)
{
}

void KWMenuHelper::draw(CDrawContext* context)
{
    menu->drawList(context);
    setDirty(false);
}

CMouseEventResult KWMenuHelper::onMouseDown(const CPoint& where, int buttons)
{
    return menu->listMouseDown(where, buttons);
}

CMouseEventResult KWMenuHelper::onMouseUp(const CPoint& where, int buttons)
{
    return menu->listMouseUp(where, buttons);
}

CMouseEventResult KWMenuHelper::onMouseMoved(const CPoint& where, int buttons)
{
    return menu->listMouseMoved(where, buttons);
}

bool KWMenuHelper::onWheel(const CPoint& where, float distance, int)
{
    return menu->listWheel(where, distance);
}

bool KWMenuHelper::onKeyDown(const CKeyEvent& event) { return menu->onKeyDown(event); }

void KWMenuHelper::endModal(int result) { menu->endModal(result); }

void KWMenuHelper::getViewRect(CRect& rect) const { rect = menu->openArea(); }

} // namespace ormund
