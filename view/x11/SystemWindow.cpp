#include "view/offscreen/OffscreenWindow.h"

std::unique_ptr<FrameWindow> makeSystemWindow(void*)
{
    return std::make_unique<OffscreenWindow>(1, 1);
}
