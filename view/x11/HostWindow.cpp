#include "view/x11/HostWindow.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <vector>
#include <xcb/shape.h>

namespace ormund {

namespace {

xcb_atom_t intern(xcb_connection_t* connection, const char* name)
{
    auto* reply = xcb_intern_atom_reply(connection,
        xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr);
    const xcb_atom_t atom = reply ? reply->atom : 0;
    std::free(reply);
    return atom;
}

xcb_window_t windowOf(void* handle)
{
    return static_cast<xcb_window_t>(reinterpret_cast<uintptr_t>(handle));
}

// Colours as they are without the alpha that the image has multiplied them by.
uint32_t plainColour(uint32_t pixel)
{
    const uint32_t alpha = pixel >> 24;
    if (alpha == 0)
        return 0;
    uint32_t plain = alpha << 24;
    for (const int shift : {16, 8, 0})
        plain |= std::min<uint32_t>((pixel >> shift & 255) * 255 / alpha, 255) << shift;
    return plain;
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
    const uint32_t values[] = {screen->black_pixel,
        XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0,
        static_cast<uint16_t>(width), static_cast<uint16_t>(height), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK,
        values);
    setTitle(title);
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
        handle(event);
        std::free(event);
    }
    return !isClosed && !isGone && !xcb_connection_has_error(connection);
}

bool HostWindow::stayOpen()
{
    isClosed = false;
    return window && !isGone && !xcb_connection_has_error(connection);
}

void HostWindow::handle(const xcb_generic_event_t* event)
{
    switch (event->response_type & 0x7F) {
    case XCB_CLIENT_MESSAGE: {
        const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event);
        isClosed = isClosed || message->data.data32[0] == deleteAtom;
        break;
    }
    case XCB_DESTROY_NOTIFY: {
        const auto* gone = reinterpret_cast<const xcb_destroy_notify_event_t*>(event);
        isGone = isGone || gone->window == window;
        break;
    }
    case XCB_MAPPING_NOTIFY:
        if (keys.isLoaded())
            keys.load(connection);
        break;
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE: {
        const auto* key = reinterpret_cast<const xcb_key_press_event_t*>(event);
        if (!keys.isLoaded())
            keys.load(connection);
        const bool isPress = (event->response_type & 0x7F) == XCB_KEY_PRESS;
        const CKeyEvent taken = keys.take(*key, isPress);
        if (onKey)
            onKey(taken, isPress);
        break;
    }
    default:
        break;
    }
}

void HostWindow::setText(xcb_atom_t property, xcb_atom_t type, const std::string& text)
{
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, type, 8,
        static_cast<uint32_t>(text.size()), text.data());
}

void HostWindow::setTitle(const std::string& title)
{
    if (!window)
        return;
    setText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, title);
    setText(intern(connection, "_NET_WM_NAME"), intern(connection, "UTF8_STRING"), title);
    xcb_flush(connection);
}

void HostWindow::setClass(const std::string& instance, const std::string& className)
{
    if (window)
        setText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, instance + '\0' + className + '\0');
}

void HostWindow::setIcon(std::span<const PixelImage> sizes)
{
    if (!window)
        return;
    std::vector<uint32_t> words;
    for (const PixelImage& image : sizes) {
        words.push_back(static_cast<uint32_t>(image.width));
        words.push_back(static_cast<uint32_t>(image.height));
        std::transform(
            image.pixels.begin(), image.pixels.end(), std::back_inserter(words), plainColour);
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window,
        intern(connection, "_NET_WM_ICON"), XCB_ATOM_CARDINAL, 32,
        static_cast<uint32_t>(words.size()), words.data());
    xcb_flush(connection);
}

void* HostWindow::addPane(const CRect& place)
{
    if (!window)
        return nullptr;
    const xcb_window_t pane = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, pane, window,
        static_cast<int16_t>(place.left), static_cast<int16_t>(place.top),
        static_cast<uint16_t>(place.width()), static_cast<uint16_t>(place.height()), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(connection, pane);
    // The one who opens in it has another connection, which must find it there.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return reinterpret_cast<void*>(static_cast<uintptr_t>(pane));
}

void HostWindow::placePane(void* pane, const CRect& place)
{
    if (!window)
        return;
    const uint32_t values[] = {static_cast<uint32_t>(place.left), static_cast<uint32_t>(place.top),
        static_cast<uint32_t>(place.width()), static_cast<uint32_t>(place.height())};
    xcb_configure_window(connection, windowOf(pane),
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
            | XCB_CONFIG_WINDOW_HEIGHT,
        values);
    xcb_flush(connection);
}

void HostWindow::shapePane(void* pane, std::span<const CRect> parts)
{
    const auto* extension = xcb_get_extension_data(connection, &xcb_shape_id);
    if (!window || !extension || !extension->present)
        return;
    std::vector<xcb_rectangle_t> rects;
    for (const CRect& part : parts)
        rects.push_back({static_cast<int16_t>(part.left), static_cast<int16_t>(part.top),
            static_cast<uint16_t>(part.width()), static_cast<uint16_t>(part.height())});
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
        XCB_CLIP_ORDERING_UNSORTED, windowOf(pane), 0, 0, static_cast<uint32_t>(rects.size()),
        rects.data());
    xcb_flush(connection);
}

void HostWindow::destroy()
{
    if (!window)
        return;
    xcb_destroy_window(connection, window);
    xcb_flush(connection);
    window = 0;
}

} // namespace ormund
