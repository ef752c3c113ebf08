#include "host/effect/AEffGUIEditor.h"

namespace ormund {

bool AEffGUIEditor::getRect(ERect** answer)
{
    *answer = &rect;
    return true;
}

bool AEffGUIEditor::open(void* parent)
{
    systemWindow = parent;
    opened = true;
    return true;
}

void AEffGUIEditor::close()
{
    systemWindow = nullptr;
    opened = false;
}

bool AEffGUIEditor::setKnobMode(VstInt32 mode)
{
    if (mode < 0 || mode > 2)
        return false;
    knobMode = mode;
    return true;
}

} // namespace ormund
