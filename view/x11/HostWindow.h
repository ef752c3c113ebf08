// A window on the desktop for a program of our own to put an editor into: the part that a host
// plays otherwise. Has its own connection.
#pragma once

#include <cstdint>
#include <string>
#include <xcb/xcb.h>

class HostWindow {
public:
    // `width` and `height` are in device pixels. It shows at once.
    HostWindow(const std::string& title, int width, int height);
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    // False when there is no X server.
    bool isOpen() const { return window != 0; }
    // What an editor's open takes as its parent.
    void* handle() const { return reinterpret_cast<void*>(static_cast<uintptr_t>(window)); }
    void setSize(int width, int height);
    // Takes in what happened, waiting at most this long for it. False once the user closed it.
    bool wait(int milliseconds);
    // Closes the window under its editor, as hosts do.
    void destroy();

private:
    void fixSize(int width, int height);

    xcb_connection_t* connection = nullptr;
    xcb_window_t window = 0;
    xcb_atom_t deleteAtom = 0;
    bool isClosed = false;
};
