#include "view/x11/Desktop.h"

#include "view/FrameWindow.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace ormund {

double desktopScale(xcb_connection_t* connection, xcb_window_t root)
{
    double scale = 1;
    if (const char* setting = std::getenv("GDK_SCALE"))
        scale = std::max(scale, std::atof(setting));
    auto* reply = xcb_get_property_reply(connection,
        xcb_get_property(
            connection, 0, root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, 1 << 16),
        nullptr);
    if (!reply)
        return scale;
    const std::string resources(static_cast<const char*>(xcb_get_property_value(reply)),
        static_cast<size_t>(xcb_get_property_value_length(reply)));
    std::free(reply);
    constexpr char kDpi[] = "Xft.dpi:";
    constexpr double kUnscaledDpi = 96;
    const size_t at = resources.find(kDpi);
    if (at != std::string::npos && (at == 0 || resources[at - 1] == '\n'))
        scale = std::max(scale, std::atof(resources.c_str() + at + sizeof kDpi - 1) / kUnscaledDpi);
    return scale;
}

Desktop askDesktop()
{
    Desktop desktop;
    int number = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &number);
    if (!xcb_connection_has_error(connection)) {
        auto each = xcb_setup_roots_iterator(xcb_get_setup(connection));
        for (; each.rem && number > 0; --number)
            xcb_screen_next(&each);
        if (each.rem)
            desktop = {each.data->width_in_pixels, each.data->height_in_pixels,
                desktopScale(connection, each.data->root)};
    }
    xcb_disconnect(connection);
    return desktop;
}

} // namespace ormund
