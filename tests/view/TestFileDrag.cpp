#include "tests/view/XServer.h"
#include "view/CFrame.h"
#include "view/x11/FileDrag.h"
#include "view/x11/HostWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <chrono>
#include <thread>

namespace {

// Another program's window that takes drops: it answers as a file manager does and keeps what it
// was given.
class DropTarget {
public:
    explicit DropTarget(bool willAccept) : accepts(willAccept), display(XOpenDisplay(nullptr))
    {
        window = XCreateSimpleWindow(
            display, DefaultRootWindow(display), 500, 0, 300, 300, 0, 0, 0xFFFFFF);
        const unsigned long version = 5;
        XChangeProperty(display, window, atom("XdndAware"), XA_ATOM, 32, PropModeReplace,
            reinterpret_cast<const unsigned char*>(&version), 1);
        XMapWindow(display, window);
        XSync(display, False);
    }
    ~DropTarget() { XCloseDisplay(display); }

    void poll()
    {
        while (XPending(display)) {
            XEvent event;
            XNextEvent(display, &event);
            if (event.type == ClientMessage)
                handle(event.xclient);
            else if (event.type == SelectionNotify)
                take(event.xselection);
        }
    }

    std::vector<std::string> log;
    std::string dropped;

private:
    Atom atom(const char* name) { return XInternAtom(display, name, False); }
    void handle(const XClientMessageEvent& message)
    {
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
    void take(const XSelectionEvent& event)
    {
        Atom type;
        int format;
        unsigned long count;
        unsigned long rest;
        unsigned char* data = nullptr;
        XGetWindowProperty(display, window, event.property, 0, 10000, True, AnyPropertyType, &type,
            &format, &count, &rest, &data);
        if (data) {
            dropped.assign(reinterpret_cast<char*>(data), count);
            XFree(data);
        }
        reply("XdndFinished", 1);
        XSync(display, False);
    }
    void reply(const char* type, long flag)
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
    bool accepts;
    Display* display;
    Window window;
    Window source = 0;
};

// Begins a drag as soon as the mouse moves with the button down.
class DragView : public CView {
public:
    using CView::CView;
    CMouseEventResult onMouseDown(const CPoint&, int) override { return kMouseEventHandled; }
    CMouseEventResult onMouseMoved(const CPoint&, int buttons) override
    {
        if ((buttons & kLButton) && !hasBegun)
            hasBegun = getFrame()->dragFiles({"/tmp/two words \xC3\xA4.mid"});
        return kMouseEventHandled;
    }
    CMouseEventResult onMouseUp(const CPoint&, int) override
    {
        ++releases;
        return kMouseEventHandled;
    }
    bool hasBegun = false;
    int releases = 0;
};

class FileDragTest : public testing::Test {
protected:
    void dragTo(int x, int y, DropTarget& target)
    {
        frame.addView(view);
        run(target);
        user.move(20, 20);
        user.press();
        run(target);
        for (int i = 1; i <= 20; ++i) {
            user.move(20 + (x - 20) * i / 20, 20 + (y - 20) * i / 20);
            run(target, 2);
        }
        run(target);
        user.release();
        run(target);
    }
    void run(DropTarget& target, int rounds = 12)
    {
        for (int i = 0; i < rounds; ++i) {
            frame.idle();
            target.poll();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
    XServer server;
    XUser user;
    HostWindow host{"test", 200, 150};
    CFrame frame{{0, 0, 200, 150}, host.handle(), nullptr};
    DragView* view = new DragView({0, 0, 200, 150});
};

} // namespace

TEST_F(FileDragTest, AFileArrivesInAnotherProgram)
{
    DropTarget target(true);
    dragTo(600, 100, target);
    EXPECT_TRUE(view->hasBegun);
    EXPECT_EQ(target.dropped, "file:///tmp/two%20words%20%C3%A4.mid\r\n");
    EXPECT_THAT(target.log, testing::ElementsAre("XdndEnter", "XdndPosition", "XdndDrop"));
    EXPECT_EQ(view->releases, 1) << "the view's own drag ends too";
    EXPECT_EQ(frame.getMouseDownView(), nullptr);
}

TEST_F(FileDragTest, ATargetThatDeclinesIsLeftAndAReleaseOverNothingEndsTheDrag)
{
    DropTarget target(false);
    dragTo(600, 100, target);
    EXPECT_EQ(target.dropped, "");
    EXPECT_EQ(target.log.back(), "XdndLeave");
    view->hasBegun = false;
    dragTo(1500, 1000, target);
    EXPECT_TRUE(view->hasBegun) << "the next drag begins";
    EXPECT_EQ(view->releases, 2);
}
