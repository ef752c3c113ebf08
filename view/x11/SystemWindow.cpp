#include "view/x11/SystemWindow.h"

#include "view/CFrame.h"
#include "view/x11/Desktop.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace ormund {

namespace {

// A flood of events does not keep the host from its own work.
constexpr int kMaxEventsPerPoll = 2000;
// As long as the server may take to read the image before it is asked.
constexpr int kMaxBusyPolls = 50;
constexpr std::chrono::milliseconds kFocusPatience{250};
constexpr int kAnyButton = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;

// In the order of CCursor; the arrow is whatever the host shows.
const char* const kCursorNames[] = {
    nullptr, "hand2", "sb_h_double_arrow", "sb_v_double_arrow", "crosshair", "fleur", "watch"};

template <typename Event>
const Event& as(const xcb_generic_event_t* event)
{
    return *reinterpret_cast<const Event*>(event);
}

CPoint panelPoint(int x, int y, const CFrame& frame)
{
    const double scale = frame.getScale();
    return {static_cast<int>(std::floor(x / scale)), static_cast<int>(std::floor(y / scale))};
}

int buttonOf(xcb_button_t number)
{
    switch (number) {
    case 1:
        return kLButton;
    case 2:
        return kMButton;
    case 3:
        return kRButton;
    case 8:
        return kButton4;
    case 9:
        return kButton5;
    default:
        return 0;
    }
}

xcb_atom_t intern(xcb_connection_t* connection, const char* name)
{
    auto* reply = xcb_intern_atom_reply(connection,
        xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr);
    const xcb_atom_t atom = reply ? reply->atom : 0;
    std::free(reply);
    return atom;
}

} // namespace

std::unique_ptr<FrameWindow> openSystemWindow(void* parent)
{
    const auto id = static_cast<xcb_window_t>(reinterpret_cast<uintptr_t>(parent));
    return id != 0 ? SystemWindow::open(id) : nullptr;
}

std::unique_ptr<SystemWindow> SystemWindow::open(xcb_window_t parentWindow, bool mayShare)
{
    std::unique_ptr<SystemWindow> made(new SystemWindow);
    if (!made->create(parentWindow, mayShare))
        return nullptr;
    return made;
}

SystemWindow::~SystemWindow()
{
    if (!connection)
        return;
    if (drag)
        drag->cancel();
    picture.reset();
    cursors.reset();
    if (isWindowThere)
        xcb_destroy_window(connection, window);
    xcb_flush(connection);
    xcb_disconnect(connection);
}

bool SystemWindow::findVisual(xcb_visualid_t& visual) const
{
    const xcb_setup_t* setup = xcb_get_setup(connection);
    if (setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST)
        return false;
    for (auto format = xcb_setup_pixmap_formats_iterator(setup); format.rem;
         xcb_format_next(&format))
        if (format.data->depth == 24 && format.data->bits_per_pixel != 32)
            return false;
    bool isFound = false;
    for (auto depth = xcb_screen_allowed_depths_iterator(screen); depth.rem;
         xcb_depth_next(&depth)) {
        if (depth.data->depth != 24)
            continue;
        for (auto type = xcb_depth_visuals_iterator(depth.data); type.rem;
             xcb_visualtype_next(&type)) {
            const bool fits = type.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR
                && type.data->red_mask == 0xFF0000 && type.data->blue_mask == 0xFF;
            // The root's own needs no colour map.
            if (fits && (!isFound || type.data->visual_id == screen->root_visual)) {
                visual = type.data->visual_id;
                isFound = true;
            }
        }
    }
    return isFound;
}

bool SystemWindow::create(xcb_window_t parentWindow, bool mayShare)
{
    int screenNumber = 0;
    connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection))
        return false;
    // The screen is the one that the parent is on, which need not be the first.
    auto* geometry =
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, parentWindow), nullptr);
    if (!geometry)
        return false;
    for (auto each = xcb_setup_roots_iterator(xcb_get_setup(connection)); each.rem;
         xcb_screen_next(&each))
        if (each.data->root == geometry->root)
            screen = each.data;
    std::free(geometry);
    xcb_visualid_t visual = 0;
    if (!screen || !findVisual(visual))
        return false;
    xcb_colormap_t colormap = screen->default_colormap;
    if (visual != screen->root_visual) {
        ownColormap = colormap = xcb_generate_id(connection);
        xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, colormap, screen->root, visual);
    }
    parent = parentWindow;
    window = xcb_generate_id(connection);
    constexpr uint32_t kEvents = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE
        | XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW
        | XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE
        | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    // The parent may have another depth, so border and colour map are named.
    const uint32_t values[] = {0, 0, XCB_GRAVITY_NORTH_WEST, kEvents, colormap};
    auto* error = xcb_request_check(connection,
        xcb_create_window_checked(connection, 24, window, parent, 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
            XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_EVENT_MASK
                | XCB_CW_COLORMAP,
            values));
    if (error) {
        std::free(error);
        return false;
    }
    isWindowThere = true;
    announceEmbedding();
    picture = std::make_unique<ScreenImage>(connection, window, mayShare);
    xcb_map_window(connection, window);
    xcb_flush(connection);
    return true;
}

// Hosts that embed by the XEMBED protocol look for its word; others do not see it.
void SystemWindow::announceEmbedding()
{
    embedAtom = intern(connection, "_XEMBED");
    const xcb_atom_t info = intern(connection, "_XEMBED_INFO");
    const uint32_t versionAndMapped[] = {0, 1};
    xcb_change_property(
        connection, XCB_PROP_MODE_REPLACE, window, info, info, 32, 2, versionAndMapped);
}

cairo_surface_t* SystemWindow::image()
{
    if (!picture->isBusy())
        return picture->surface();
    if (++busyPolls < kMaxBusyPolls)
        return nullptr;
    busyPolls = 0;
    picture->sync();
    return picture->surface();
}

void SystemWindow::present(std::span<const CRect> parts)
{
    if (!isWindowThere)
        return;
    busyPolls = 0;
    picture->put(parts);
    // A server may have taken a copy of the background, so it is set again after each change.
    const uint32_t background = picture->pixmap();
    xcb_change_window_attributes(connection, window, XCB_CW_BACK_PIXMAP, &background);
    for (const CRect& part : parts)
        xcb_clear_area(connection, 0, window, static_cast<int16_t>(part.left),
            static_cast<int16_t>(part.top), static_cast<uint16_t>(part.width()),
            static_cast<uint16_t>(part.height()));
    xcb_flush(connection);
}

void SystemWindow::resize(int width, int height)
{
    picture->resize(width, height);
    if (!isWindowThere)
        return;
    const uint32_t size[] = {static_cast<uint32_t>(width), static_cast<uint32_t>(height)};
    xcb_configure_window(
        connection, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    xcb_flush(connection);
}

double SystemWindow::desktopScale() const { return ormund::desktopScale(connection, screen->root); }

void SystemWindow::setCursor(CCursor cursor)
{
    static_assert(std::size(kCursorNames) == std::tuple_size_v<decltype(loadedCursors)>);
    if (!isWindowThere)
        return;
    const auto index = static_cast<size_t>(cursor);
    if (cursor != CCursor::Arrow && !loadedCursors[index]) {
        loadedCursors[index] = cursors->load(connection, screen, kCursorNames[index]);
        if (!loadedCursors[index])
            return;
    }
    const uint32_t value = loadedCursors[index];
    xcb_change_window_attributes(connection, window, XCB_CW_CURSOR, &value);
    xcb_flush(connection);
}

void SystemWindow::takeFocus()
{
    if (!isWindowThere || isFocused)
        return;
    xcb_set_input_focus(connection, XCB_INPUT_FOCUS_PARENT, window, lastTime);
    xcb_flush(connection);
}

bool SystemWindow::dragFiles(const std::vector<std::string>& paths)
{
    if (!isWindowThere)
        return false;
    if (!drag)
        drag = std::make_unique<FileDrag>(connection, screen->root, window);
    return drag->start(paths, lastTime);
}

void SystemWindow::poll(CFrame& frame)
{
    if (!connection || xcb_connection_has_error(connection)) {
        isWindowThere = false;
        return;
    }
    for (int i = 0; i < kMaxEventsPerPoll; ++i) {
        xcb_generic_event_t* event = xcb_poll_for_event(connection);
        if (!event)
            break;
        // An error is an event of type 0. It is about a window that the host has destroyed.
        if (event->response_type != 0)
            handle(event, frame);
        std::free(event);
    }
    flushMotion(frame);
    loseFocusLate(frame);
    if (drag)
        drag->idle();
}

void SystemWindow::handle(const xcb_generic_event_t* event, CFrame& frame)
{
    const int type = event->response_type & 0x7F;
    // Only the last of several moves in a row counts, except while a button is down: a line that is
    // drawn has all its points. Painting waits for the end of the poll either way.
    if (type == XCB_MOTION_NOTIFY) {
        const auto& next = as<xcb_motion_notify_event_t>(event);
        if (hasMotion && (motion.state != next.state || (next.state & kAnyButton)))
            flushMotion(frame);
        motion = next;
        hasMotion = true;
        return;
    }
    if (picture->takeEvent(event))
        return;
    flushMotion(frame);
    if (drag && drag->takeEvent(event))
        return;
    switch (type) {
    case XCB_BUTTON_PRESS:
        handleButton(as<xcb_button_press_event_t>(event), true, frame);
        break;
    case XCB_BUTTON_RELEASE:
        handleButton(as<xcb_button_press_event_t>(event), false, frame);
        break;
    case XCB_ENTER_NOTIFY:
        handleCrossing(as<xcb_enter_notify_event_t>(event), true, frame);
        break;
    case XCB_LEAVE_NOTIFY:
        handleCrossing(as<xcb_enter_notify_event_t>(event), false, frame);
        break;
    case XCB_KEY_PRESS:
        handleKey(as<xcb_key_press_event_t>(event), true, frame);
        break;
    case XCB_KEY_RELEASE:
        handleKey(as<xcb_key_press_event_t>(event), false, frame);
        break;
    case XCB_FOCUS_IN:
        handleFocus(as<xcb_focus_in_event_t>(event), true, frame);
        break;
    case XCB_FOCUS_OUT:
        handleFocus(as<xcb_focus_in_event_t>(event), false, frame);
        break;
    case XCB_CLIENT_MESSAGE:
        handleMessage(as<xcb_client_message_event_t>(event), frame);
        break;
    case XCB_MAPPING_NOTIFY:
        if (keys.isLoaded())
            keys.load(connection);
        break;
    case XCB_REPARENT_NOTIFY:
        parent = as<xcb_reparent_notify_event_t>(event).parent;
        break;
    case XCB_DESTROY_NOTIFY:
        if (as<xcb_destroy_notify_event_t>(event).window == window)
            isWindowThere = false;
        break;
    default:
        break;
    }
}

int SystemWindow::buttonsOf(uint16_t state) const
{
    int buttons = KeyMap::modifiers(state) | extraButtons;
    if (state & XCB_BUTTON_MASK_1)
        buttons |= kLButton;
    if (state & XCB_BUTTON_MASK_2)
        buttons |= kMButton;
    if (state & XCB_BUTTON_MASK_3)
        buttons |= kRButton;
    return buttons;
}

void SystemWindow::flushMotion(CFrame& frame)
{
    if (!hasMotion)
        return;
    hasMotion = false;
    lastTime = motion.time;
    if (drag && drag->isDragging())
        drag->moved(motion);
    frame.windowMouseMoved(
        panelPoint(motion.event_x, motion.event_y, frame), buttonsOf(motion.state));
}

void SystemWindow::handleButton(const xcb_button_press_event_t& event, bool isPress, CFrame& frame)
{
    lastTime = event.time;
    const CPoint where = panelPoint(event.event_x, event.event_y, frame);
    constexpr int kFirstWheel = 4;
    constexpr int kLastWheel = 7;
    if (event.detail >= kFirstWheel && event.detail <= kLastWheel) {
        const bool isForward = event.detail == 4 || event.detail == 7;
        if (isPress)
            frame.windowWheel(where, event.detail <= 5 ? kMouseWheelAxisY : kMouseWheelAxisX,
                isForward ? 1.0f : -1.0f, buttonsOf(event.state));
        return;
    }
    const int button = buttonOf(event.detail);
    if (!button)
        return;
    if (button & (kButton4 | kButton5))
        extraButtons = isPress ? extraButtons | button : extraButtons & ~button;
    if (isPress) {
        frame.windowMouseDown(where, buttonsOf(event.state) | button, button, event.time);
        return;
    }
    const int left = buttonsOf(event.state) & ~button;
    if (drag && drag->isDragging() && !(left & kMouseButtons))
        drag->released(event.time);
    frame.windowMouseUp(where, left);
}

void SystemWindow::handleCrossing(
    const xcb_enter_notify_event_t& event, bool isEnter, CFrame& frame)
{
    // Grabs of a window manager's come and go without the pointer's moving.
    if (event.mode != XCB_NOTIFY_MODE_NORMAL)
        return;
    lastTime = event.time;
    const CPoint where = panelPoint(event.event_x, event.event_y, frame);
    if (isEnter)
        frame.windowMouseMoved(where, buttonsOf(event.state));
    else
        frame.windowMouseLeft(where, buttonsOf(event.state));
}

void SystemWindow::handleKey(const xcb_key_press_event_t& event, bool isPress, CFrame& frame)
{
    lastTime = event.time;
    if (!keys.isLoaded())
        keys.load(connection);
    const CKeyEvent key = keys.take(event, isPress);
    if (isPress && key.key == CKey::Escape && drag && drag->isDragging()) {
        drag->cancel();
        return;
    }
    if (isPress ? frame.windowKeyDown(key) : frame.windowKeyUp(key))
        return;
    // The host has the keys that nobody here wants, or its shortcuts would die in this window.
    xcb_key_press_event_t passed = event;
    passed.event = parent;
    xcb_send_event(connection, 1, parent,
        isPress ? XCB_EVENT_MASK_KEY_PRESS : XCB_EVENT_MASK_KEY_RELEASE,
        reinterpret_cast<const char*>(&passed));
    xcb_flush(connection);
}

void SystemWindow::handleFocus(const xcb_focus_in_event_t& event, bool isIn, CFrame& frame)
{
    const bool isOurs = event.detail != XCB_NOTIFY_DETAIL_POINTER
        && event.mode != XCB_NOTIFY_MODE_GRAB && event.mode != XCB_NOTIFY_MODE_UNGRAB;
    if (!isOurs)
        return;
    if (!isIn && isFocused && event.detail == XCB_NOTIFY_DETAIL_ANCESTOR) {
        isFocused = false;
        focusWentUp = std::chrono::steady_clock::now();
    } else {
        setFocused(isIn, frame);
    }
}

// Some window managers give the focus to the outermost window at every click, before the press
// comes here. A menu that is open must live to see that press.
void SystemWindow::loseFocusLate(CFrame& frame)
{
    if (!focusWentUp || std::chrono::steady_clock::now() - *focusWentUp < kFocusPatience)
        return;
    focusWentUp.reset();
    frame.windowLostFocus();
}

void SystemWindow::handleMessage(const xcb_client_message_event_t& event, CFrame& frame)
{
    constexpr uint32_t kEmbedFocusIn = 4;
    constexpr uint32_t kEmbedFocusOut = 5;
    if (event.type != embedAtom || event.format != 32)
        return;
    if (event.data.data32[1] == kEmbedFocusIn)
        setFocused(true, frame);
    else if (event.data.data32[1] == kEmbedFocusOut)
        setFocused(false, frame);
}

void SystemWindow::setFocused(bool on, CFrame& frame)
{
    const bool wasOurs = isFocused || focusWentUp;
    focusWentUp.reset();
    isFocused = on;
    if (wasOurs && !on)
        frame.windowLostFocus();
}

} // namespace ormund
