#include "editor/LearnMenu.h"

#include "panel/ControlCatalogue.h"

#include <cstdio>

namespace ormund {

void LearnMenu::beginModal(int mode, const CPoint* where, long forTag)
{
    for (const ControlRow& row : controlCatalogue()) {
        if (row.kind != ControlClass::Hint || row.owner != int(getMenuTag()) || !row.text)
            continue;
        char text[64];
        std::snprintf(text, sizeof text, row.text, int(row.track));
        setEntryText(0, text);
        break;
    }
    setEntryText(1, ("step " + std::to_string(getMenuStep() + 1)).c_str());
    KWOptionMenu::beginModal(mode, where, forTag);
}

} // namespace ormund
