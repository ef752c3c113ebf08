// The desktop's cursors by name.
#pragma once

#include <xcb/xcb.h>

namespace ormund {

// Reads theme files when the first cursor is wanted. The library that does it is loaded then too,
// so the window also opens on a desktop that has none: the arrow stays. Screen thread.
class CursorTheme {
public:
    CursorTheme() = default;
    ~CursorTheme();
    CursorTheme(const CursorTheme&) = delete;
    CursorTheme& operator=(const CursorTheme&) = delete;

    // XCB_NONE when there is no such cursor. The connection must outlive this object.
    xcb_cursor_t load(xcb_connection_t* connection, xcb_screen_t* screen, const char* name);

private:
    void* context = nullptr;
    bool isTried = false;
};

} // namespace ormund
