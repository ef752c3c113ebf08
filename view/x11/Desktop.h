// What a desktop has set up for its windows.
#pragma once

#include <xcb/xcb.h>

namespace ormund {

// Device pixels to a panel pixel, by the toolkits' settings; at least 1.
double desktopScale(xcb_connection_t* connection, xcb_window_t root);

} // namespace ormund
