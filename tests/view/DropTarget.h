// Another program's window that takes drops: it answers as a file manager does and keeps what it
// was given.
#pragma once

#include <string>
#include <vector>

union _XEvent;

typedef struct _XDisplay Display;

namespace ormund {

// Xlib itself stays out: its macros take names that others need.

class DropTarget {
public:
    // At `x`, 0 on the display of DISPLAY, 300 pixels wide and high.
    explicit DropTarget(bool willAccept, int x = 500);
    ~DropTarget();
    DropTarget(const DropTarget&) = delete;
    DropTarget& operator=(const DropTarget&) = delete;

    void poll();

    std::vector<std::string> log; // the kinds of message, each once in a row
    std::string dropped;          // a list of URIs

private:
    unsigned long atom(const char* name) const;
    void handle(const _XEvent& event);
    void take(const _XEvent& event);
    void reply(const char* type, long flag);

    bool accepts;
    Display* display;
    unsigned long window;
    unsigned long source = 0; // the window that drags
};

} // namespace ormund
