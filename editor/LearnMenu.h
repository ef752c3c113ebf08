#pragma once

#include "controls/KWOptionMenu.h"

namespace ormund {

// The popup of the step views: two titles that name the track and the step under the mouse, then
// "midi Learn" and "clear".
class LearnMenu : public KWOptionMenu {
public:
    static constexpr int kTitles = 2;

    using KWOptionMenu::KWOptionMenu;

    void beginModal(int mode, const CPoint* where, long forTag) override;
};

} // namespace ormund
