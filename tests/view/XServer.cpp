#include "tests/view/XServer.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <X11/extensions/XTest.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace ormund {

bool XServer::isInstalled()
{
    for (const char* path : {"/usr/bin/Xvfb", "/usr/local/bin/Xvfb", "/usr/bin/X11/Xvfb"})
        if (access(path, X_OK) == 0)
            return true;
    return false;
}

XServer::XServer()
{
    if (const char* display = std::getenv("DISPLAY")) {
        hadDisplay = true;
        displayBefore = display;
    }
    int ends[2];
    if (pipe(ends) != 0)
        return;
    // The server picks a free display number and writes it to the pipe.
    const std::string target = std::to_string(ends[1]);
    // It ends with the test even when that crashes, and holds no pipe that somebody waits for.
    const char* arguments[] = {"setpriv", "--pdeathsig", "TERM", "Xvfb", "-displayfd",
        target.c_str(), "-screen", "0", "2400x1500x24", "-nolisten", "tcp", "-noreset", nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int output : {1, 2})
        posix_spawn_file_actions_addopen(&actions, output, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    if (posix_spawnp(
            &process, arguments[0], &actions, nullptr, const_cast<char**>(arguments), environ)
        != 0)
        process = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    constexpr int kStartMs = 20000;
    std::string number;
    pollfd waiting{ends[0], POLLIN, 0};
    while (process > 0 && poll(&waiting, 1, kStartMs) > 0) {
        char c = 0;
        if (read(ends[0], &c, 1) != 1 || c == '\n')
            break;
        number += c;
    }
    close(ends[0]);
    setenv("DISPLAY", (":" + number).c_str(), 1);
}

XServer::~XServer()
{
    if (process > 0) {
        kill(process, SIGTERM);
        waitpid(process, nullptr, 0);
    }
    if (hadDisplay)
        setenv("DISPLAY", displayBefore.c_str(), 1);
    else
        unsetenv("DISPLAY");
}

XUser::XUser() : display(XOpenDisplay(nullptr))
{
    // A window of the plug-in's may go while it is being looked at; the call then fails by itself.
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
}
XUser::~XUser() { XCloseDisplay(display); }

void XUser::move(int x, int y)
{
    XTestFakeMotionEvent(display, -1, x, y, 0);
    XSync(display, False);
}

void XUser::press(unsigned button)
{
    XTestFakeButtonEvent(display, button, True, 0);
    XSync(display, False);
}

void XUser::release(unsigned button)
{
    XTestFakeButtonEvent(display, button, False, 0);
    XSync(display, False);
}

void XUser::click(int x, int y, unsigned button)
{
    move(x, y);
    press(button);
    release(button);
}

void XUser::key(unsigned long symbol, bool isDown)
{
    XTestFakeKeyEvent(display, XKeysymToKeycode(display, symbol), isDown, 0);
    XSync(display, False);
}

void XUser::tapKey(unsigned long symbol)
{
    key(symbol, true);
    key(symbol, false);
}

unsigned long XUser::screenPixel(int x, int y)
{
    XImage* image = XGetImage(display, DefaultRootWindow(display), x, y, 1, 1, AllPlanes, ZPixmap);
    if (!image)
        return 0;
    const unsigned long pixel = XGetPixel(image, 0, 0) & 0xFFFFFFu;
    XDestroyImage(image);
    return pixel;
}

void XUser::setResources(const std::string& text)
{
    XChangeProperty(display, DefaultRootWindow(display), XA_RESOURCE_MANAGER, XA_STRING, 8,
        PropModeReplace, reinterpret_cast<const unsigned char*>(text.data()),
        static_cast<int>(text.size()));
    XSync(display, False);
}

namespace {

int countBelow(Display* display, Window window)
{
    Window root;
    Window parent;
    Window* children = nullptr;
    unsigned count = 0;
    if (!XQueryTree(display, window, &root, &parent, &children, &count))
        return 0;
    int all = static_cast<int>(count);
    for (unsigned i = 0; i < count; ++i)
        all += countBelow(display, children[i]);
    if (children)
        XFree(children);
    return all;
}

} // namespace

int XUser::countWindows() { return countBelow(display, DefaultRootWindow(display)); }

unsigned long XUser::focusWindow()
{
    Window window;
    int revert;
    XGetInputFocus(display, &window, &revert);
    return window;
}

void XUser::setFocus(unsigned long window)
{
    constexpr int kTries = 200; // a window that is not shown yet takes no focus
    XWindowAttributes now{};
    for (int i = 0; i < kTries && XGetWindowAttributes(display, window, &now) != 0
         && now.map_state != IsViewable;
         ++i)
        usleep(10000);
    XSetInputFocus(display, window, RevertToParent, CurrentTime);
    XSync(display, False);
}

bool XUser::waitForPixel(int x, int y, unsigned long rgb)
{
    constexpr int kTries = 200;
    for (int i = 0; i < kTries && screenPixel(x, y) != rgb; ++i)
        usleep(10000);
    return screenPixel(x, y) == rgb;
}

void XUser::listenForKeys(unsigned long window)
{
    XSelectInput(display, window, KeyPressMask);
    XSync(display, False);
}

int XUser::heardKeys()
{
    XSync(display, False);
    int presses = 0;
    XEvent event;
    while (XCheckTypedEvent(display, KeyPress, &event))
        ++presses;
    return presses;
}

} // namespace ormund
