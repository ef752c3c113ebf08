#include "view/x11/HostWindow.h"

#include <cstdlib>
#include <cstring>
#include <poll.h>

namespace {

xcb_atom_t intern(xcb_connection_t* connection, const char* name)
{
    auto* reply = xcb_intern_atom_reply(connection,
        xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr);
    const xcb_atom_t atom = reply ? reply->atom : 0;
    std::free(reply);
    return atom;
}

} // namespace

HostWindow::HostWindow(const std::string& title, int width, int height)
{
    int number = 0;
    connection = xcb_connect(nullptr, &number);
    if (xcb_connection_has_error(connection))
        return;
    auto each = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; number > 0 && each.rem > 1; --number)
        xcb_screen_next(&each);
    const xcb_screen_t* screen = each.data;
    window = xcb_generate_id(connection);
    const uint32_t values[] = {screen->black_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0,
        static_cast<uint16_t>(width), static_cast<uint16_t>(height), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK,
        values);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
        XCB_ATOM_STRING, 8, static_cast<uint32_t>(title.size()), title.data());
    deleteAtom = intern(connection, "WM_DELETE_WINDOW");
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window,
        intern(connection, "WM_PROTOCOLS"), XCB_ATOM_ATOM, 32, 1, &deleteAtom);
    fixSize(width, height);
    xcb_map_window(connection, window);
    xcb_flush(connection);
}

HostWindow::~HostWindow()
{
    destroy();
    xcb_disconnect(connection);
}

// The panel has one size, so the frame around it offers no other.
void HostWindow::fixSize(int width, int height)
{
    constexpr uint32_t kMinAndMaxSize = 16 | 32;
    uint32_t hints[18] = {kMinAndMaxSize};
    hints[5] = hints[7] = static_cast<uint32_t>(width);
    hints[6] = hints[8] = static_cast<uint32_t>(height);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
        XCB_ATOM_WM_SIZE_HINTS, 32, 18, hints);
}

void HostWindow::setSize(int width, int height)
{
    if (!window)
        return;
    fixSize(width, height);
    const uint32_t size[] = {static_cast<uint32_t>(width), static_cast<uint32_t>(height)};
    xcb_configure_window(
        connection, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    xcb_flush(connection);
}

bool HostWindow::wait(int milliseconds)
{
    if (!window || xcb_connection_has_error(connection))
        return false;
    pollfd descriptor{xcb_get_file_descriptor(connection), POLLIN, 0};
    ::poll(&descriptor, 1, milliseconds);
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
        const int type = event->response_type & 0x7F;
        if (type == XCB_CLIENT_MESSAGE) {
            const auto* message = reinterpret_cast<xcb_client_message_event_t*>(event);
            isClosed = isClosed || message->data.data32[0] == deleteAtom;
        } else if (type == XCB_DESTROY_NOTIFY) {
            const auto* gone = reinterpret_cast<xcb_destroy_notify_event_t*>(event);
            isClosed = isClosed || gone->window == window;
        }
        std::free(event);
    }
    return !isClosed && !xcb_connection_has_error(connection);
}

void HostWindow::destroy()
{
    if (!window)
        return;
    xcb_destroy_window(connection, window);
    xcb_flush(connection);
    window = 0;
}
