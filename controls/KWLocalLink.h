// Opens a document of this machine, such as the manual.
#pragma once

#include "controls/KWControl.h"

#include <string>

namespace ormund {

class KWLocalLink : public KWControl {
public:
    KWLocalLink(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame,
        const char* documentPath);

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;

    CMouseEventResult onMouseEntered(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseExited(const CPoint& where, int buttons) override;

    // Opens `path`: the desktop's way at first.
    using Opener = bool (*)(const std::string& target);
    Opener opener;
    std::string path;
    std::string text = "Manual";

private:
    bool pressed = false;
    bool hovered = false;
};

} // namespace ormund
