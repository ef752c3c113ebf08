// A window on the desktop for a program of our own to put an editor into: the part that a host
// plays otherwise. Has its own connection.
#pragma once

#include "platform/Png.h"
#include "view/Events.h"
#include "view/Geometry.h"
#include "view/x11/KeyMap.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <xcb/xcb.h>

namespace ormund {

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
    void setTitle(const std::string& title); // UTF-8
    // By which desktops find the program's entry and its icon.
    void setClass(const std::string& instance, const std::string& className);
    void setIcon(std::span<const PixelImage> sizes);

    // A part of the window that an editor can be opened in. It lies above those made before it.
    // All in device pixels.
    void* addPane(const CRect& place);
    void placePane(void* pane, const CRect& place);
    // Only these parts of the pane, in its own coordinates, show and take the mouse.
    void shapePane(void* pane, std::span<const CRect> parts);

    // Keys that came to the window itself or that nobody in a pane wanted.
    std::function<void(const CKeyEvent& key, bool isPress)> onKey;

    // Takes in what happened, waiting at most this long for it. False once the user closed it.
    bool wait(int milliseconds);
    // The answer to that is no. False where the window has gone already.
    bool stayOpen();
    // Closes the window under its editor, as hosts do.
    void destroy();

private:
    void fixSize(int width, int height);
    void handle(const xcb_generic_event_t* event);
    void setText(xcb_atom_t property, xcb_atom_t type, const std::string& text);

    xcb_connection_t* connection = nullptr;
    xcb_window_t window = 0;
    xcb_atom_t deleteAtom = 0;
    KeyMap keys;
    bool isClosed = false; // wished by the user
    bool isGone = false;
};

} // namespace ormund
