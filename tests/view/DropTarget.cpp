#include "tests/view/DropTarget.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

namespace ormund {

DropTarget::DropTarget(bool willAccept, int x)
    : accepts(willAccept)
    , display(XOpenDisplay(nullptr))
    , window(
          XCreateSimpleWindow(display, DefaultRootWindow(display), x, 0, 300, 300, 0, 0, 0xFFFFFF))
{
    const unsigned long version = 5;
    XChangeProperty(display, window, atom("XdndAware"), XA_ATOM, 32, PropModeReplace,
        reinterpret_cast<const unsigned char*>(&version), 1);
    XMapWindow(display, window);
    XSync(display, False);
}

unsigned long DropTarget::atom(const char* name) const { return XInternAtom(display, name, False); }

DropTarget::~DropTarget() { XCloseDisplay(display); }

void DropTarget::poll()
{
    while (XPending(display)) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == ClientMessage)
            handle(event);
        else if (event.type == SelectionNotify)
            take(event);
    }
}

void DropTarget::handle(const XEvent& event)
{
    const XClientMessageEvent& message = event.xclient;
    source = static_cast<Window>(message.data.l[0]);
    char* const name = XGetAtomName(display, message.message_type);
    if (log.empty() || log.back() != name)
        log.push_back(name);
    XFree(name);
    if (message.message_type == atom("XdndPosition")) {
        reply("XdndStatus", accepts ? 1 : 0);
    } else if (message.message_type == atom("XdndDrop")) {
        XConvertSelection(display, atom("XdndSelection"), atom("text/uri-list"),
            atom("ORMUND_DROP"), window, static_cast<Time>(message.data.l[2]));
    }
    XSync(display, False);
}

void DropTarget::take(const XEvent& event)
{
    Atom type;
    int format;
    unsigned long count;
    unsigned long rest;
    unsigned char* data = nullptr;
    XGetWindowProperty(display, window, event.xselection.property, 0, 10000, True, AnyPropertyType,
        &type, &format, &count, &rest, &data);
    if (data) {
        dropped.assign(reinterpret_cast<char*>(data), count);
        XFree(data);
    }
    reply("XdndFinished", 1);
    XSync(display, False);
}

void DropTarget::reply(const char* type, long flag)
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = source;
    event.xclient.message_type = atom(type);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(window);
    event.xclient.data.l[1] = flag;
    event.xclient.data.l[4] = static_cast<long>(atom("XdndActionCopy"));
    XSendEvent(display, source, False, 0, &event);
}

} // namespace ormund
