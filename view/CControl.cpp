#include "view/CControl.h"

#include <cstring>

namespace ormund {

void CControlListener::controlBeginEdit(CControl*) { }
void CControlListener::controlEndEdit(CControl*) { }

CControl::CControl(const CRect& viewSize, CControlListener* controlListener, long controlTag,
    CBitmap* backgroundBitmap)
    : CView(viewSize), listener(controlListener), tag(controlTag)
{
    if (backgroundBitmap)
        setBackground(backgroundBitmap);
}

void CControl::bounceValue()
{
    if (value > max)
        value = max;
    if (value < min)
        value = min;
}

bool CControl::checkDefaultValue(int buttons)
{
    if (!(buttons & kControl) || !(buttons & kLButton))
        return false;
    beginEdit();
    setValue(defaultValue);
    tellListener();
    endEdit();
    setDirty();
    return true;
}

void CControl::beginEdit()
{
    if (editDepth++ == 0 && listener)
        listener->controlBeginEdit(this);
}

void CControl::endEdit()
{
    if (editDepth == 0)
        return;
    if (--editDepth == 0 && listener)
        listener->controlEndEdit(this);
}

void CControl::removed(CView* parent)
{
    while (isEditing())
        endEdit();
    CView::removed(parent);
}

void CControl::tellListener()
{
    if (listener)
        listener->valueChanged(this);
}

bool CControl::isTypeOf(const char* className) const
{
    return std::strcmp(className, "CControl") == 0 || CView::isTypeOf(className);
}

} // namespace ormund
