// The child window of the host's that an editor shows in, with a connection of its own to the X
// server. The one place that knows the window. It keeps no state in the process, sets no error
// handler and has no loop or thread: a host that destroys its window first, or a server that goes
// away, leaves a window that is not alive and does nothing.
//
// The server holds a copy of the picture as the window's background, and so paints uncovered
// parts by itself, even when the host never calls idle.
#pragma once

#include "view/FrameWindow.h"
#include "view/x11/CursorTheme.h"
#include "view/x11/FileDrag.h"
#include "view/x11/KeyMap.h"
#include "view/x11/ScreenImage.h"

#include <array>
#include <chrono>
#include <memory>
#include <optional>

namespace ormund {

class SystemWindow : public FrameWindow {
public:
    // Null when there is no server, no such parent, or no screen of 24 bits.
    static std::unique_ptr<SystemWindow> open(xcb_window_t parentWindow, bool mayShare = true);
    ~SystemWindow() override;

    cairo_surface_t* image() override;
    void present(std::span<const CRect> parts) override;
    void poll(CFrame& frame) override;
    void resize(int width, int height) override;
    double desktopScale() const override;
    void setCursor(CCursor cursor) override;
    bool hasFocus() const override { return isFocused; }
    void takeFocus() override;
    bool dragFiles(const std::vector<std::string>& paths) override;
    unsigned long systemHandle() const override { return window; }
    bool isAlive() const override { return isWindowThere; }
    bool isShared() const { return picture->isShared(); }

private:
    SystemWindow() = default;
    bool create(xcb_window_t parentWindow, bool mayShare);
    bool findVisual(xcb_visualid_t& visual) const;
    void announceEmbedding();

    void handle(const xcb_generic_event_t* event, CFrame& frame);
    void handleButton(const xcb_button_press_event_t& event, bool isPress, CFrame& frame);
    void handleCrossing(const xcb_enter_notify_event_t& event, bool isEnter, CFrame& frame);
    void handleKey(const xcb_key_press_event_t& event, bool isPress, CFrame& frame);
    void handleFocus(const xcb_focus_in_event_t& event, bool isIn, CFrame& frame);
    void handleMessage(const xcb_client_message_event_t& event, CFrame& frame);
    void flushMotion(CFrame& frame);
    void setFocused(bool on, CFrame& frame);
    void loseFocusLate(CFrame& frame);
    int buttonsOf(uint16_t state) const;

    xcb_connection_t* connection = nullptr;
    xcb_screen_t* screen = nullptr;
    xcb_window_t parent = 0;
    xcb_window_t window = 0;
    xcb_colormap_t ownColormap = 0;
    std::unique_ptr<ScreenImage> picture;
    std::unique_ptr<FileDrag> drag;
    KeyMap keys;
    std::optional<CursorTheme> cursors{std::in_place};
    std::array<xcb_cursor_t, 7> loadedCursors{};
    xcb_atom_t embedAtom = 0;
    xcb_timestamp_t lastTime = XCB_CURRENT_TIME;
    xcb_motion_notify_event_t motion{};
    bool hasMotion = false;
    int extraButtons = 0; // those that the server's state word has no bit for
    int busyPolls = 0;
    bool isFocused = false;
    // When the focus went to a window around this one, until it is back or given up.
    std::optional<std::chrono::steady_clock::time_point> focusWentUp;
    bool isWindowThere = false;
};

} // namespace ormund
