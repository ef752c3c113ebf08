// Where a frame shows: a child window of the host's, or memory. The frame paints into the image
// and presents the painted parts; poll brings what the user did. Screen thread alone.
#pragma once

#include "view/Events.h"
#include "view/Geometry.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

typedef struct _cairo_surface cairo_surface_t;

namespace ormund {

class CFrame;

class FrameWindow {
public:
    virtual ~FrameWindow() = default;

    // The image to paint on, in device pixels; null while nothing can be painted, which leaves
    // the parts dirty until the next idle.
    virtual cairo_surface_t* image() = 0;
    // Shows parts of the image; the rectangles are in device pixels.
    virtual void present(std::span<const CRect> parts) = 0;
    // Hands everything that happened since the last call to the frame.
    virtual void poll(CFrame& frame) = 0;
    // In device pixels. The image's content is lost.
    virtual void resize(int width, int height) = 0;
    virtual double desktopScale() const { return 1; }

    virtual void setCursor(CCursor cursor) = 0;
    virtual bool hasFocus() const = 0;
    virtual void takeFocus() = 0;
    // Begins a drag of files out of the window, while a button is down. False when it cannot.
    virtual bool dragFiles(const std::vector<std::string>& paths) = 0;
    // The window system's name for it, 0 for memory.
    virtual unsigned long systemHandle() const { return 0; }
    // False once the window or the connection is gone.
    virtual bool isAlive() const { return true; }
};

// What the desktop says about the room for windows.
struct Desktop {
    int width = 0; // of the screen, device pixels; 0: unknown
    int height = 0;
    double scale = 1; // device pixels to a panel pixel, as its other programs are shown
};
// Asks the window system; unknown where there is none.
Desktop askDesktop();

// A child window of `parent`, the host's window; null when there is no display or no such window.
std::unique_ptr<FrameWindow> openSystemWindow(void* parent);

} // namespace ormund
