#pragma once

#include "controls/KWOptionMenu.h"

namespace ormund {

// A menu that shows its choice as a picture: its bitmap holds a frame for each entry.
class ModeMenu : public KWOptionMenu {
public:
    using KWOptionMenu::KWOptionMenu;

    void draw(CDrawContext* context) override;
};

} // namespace ormund
