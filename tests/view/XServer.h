// An X server without a screen, started for one test, and a user with a real mouse and keyboard
// on it. Tests never touch the display of the one who runs them.
#pragma once

#include <string>
#include <sys/types.h>

typedef struct _XDisplay Display;

namespace ormund {

class XServer {
public:
    XServer();
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    bool isRunning() const { return process > 0; }
    static bool isInstalled();

private:
    pid_t process = -1;
    std::string displayBefore;
    bool hadDisplay = false;
};

// Root coordinates, in device pixels. Each call waits until the server has done it.
class XUser {
public:
    XUser();
    ~XUser();
    XUser(const XUser&) = delete;
    XUser& operator=(const XUser&) = delete;

    void move(int x, int y);
    void press(unsigned button = 1);
    void release(unsigned button = 1);
    void click(int x, int y, unsigned button = 1);
    void key(unsigned long symbol, bool isDown);
    void tapKey(unsigned long symbol);
    // 0xRRGGBB of what the screen shows.
    unsigned long screenPixel(int x, int y);
    void setResources(const std::string& text);
    // Windows below the root, at any depth.
    int countWindows();
    unsigned long focusWindow();
    void setFocus(unsigned long window);
    // Waits up to two seconds.
    bool waitForPixel(int x, int y, unsigned long rgb);
    // Plays the host that listens for keys in its own window; the presses it heard so far.
    void listenForKeys(unsigned long window);
    int heardKeys();

    Display* display;
};

} // namespace ormund
