// The program's window, as the desktop sees it.
#pragma once

#include "tests/view/XServer.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace ormund {

// 0 until it is there.
inline Window programWindow(const XUser& user)
{
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    XQueryTree(user.display, DefaultRootWindow(user.display), &root, &parent, &children, &count);
    const Window first = count > 0 ? children[0] : 0;
    if (children)
        XFree(children);
    return first;
}

inline void askToClose(const XUser& user)
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = programWindow(user);
    event.xclient.message_type = XInternAtom(user.display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] =
        static_cast<long>(XInternAtom(user.display, "WM_DELETE_WINDOW", False));
    XSendEvent(user.display, event.xclient.window, False, NoEventMask, &event);
    XSync(user.display, False);
}

} // namespace ormund
