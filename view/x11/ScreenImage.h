// An image in memory and its copy in the X server: shared memory where the server can attach it,
// sent over the connection where not. Screen thread alone.
#pragma once

#include "view/Geometry.h"

#include <cstdint>
#include <span>
#include <vector>
#include <xcb/shm.h>
#include <xcb/xcb.h>

typedef struct _cairo_surface cairo_surface_t;

namespace ormund {

class ScreenImage {
public:
    // The pictures go to pixmaps of `depth` 24 that lie on `window`'s screen.
    ScreenImage(xcb_connection_t* xConnection, xcb_window_t xWindow, bool mayShare = true);
    ~ScreenImage();
    ScreenImage(const ScreenImage&) = delete;
    ScreenImage& operator=(const ScreenImage&) = delete;

    // Image and copy of the new size are made when the image is next asked for, so a window that is
    // still finding its size costs nothing.
    void resize(int newWidth, int newHeight);
    cairo_surface_t* surface();
    // The server's copy, in the state of the last put.
    xcb_pixmap_t pixmap() const { return copy; }
    void put(std::span<const CRect> parts);

    // The server still reads the image, so it must not be painted on.
    bool isBusy() const { return busy; }
    // Takes the server's word that it has read the image. False for another event.
    bool takeEvent(const xcb_generic_event_t* event);
    // Waits for the server; for when its word got lost.
    void sync();
    bool isShared() const { return segment != 0; }

private:
    void make();
    bool share(size_t bytes);
    void release();
    void send(const CRect& part);

    xcb_connection_t* connection;
    xcb_window_t window;
    xcb_gcontext_t gc = 0;
    xcb_pixmap_t copy = 0;
    int width = 0;
    int height = 0;
    cairo_surface_t* image = nullptr;
    xcb_shm_seg_t segment = 0;
    void* memory = nullptr;
    uint8_t completionEvent = 0;
    bool canShare;
    bool busy = false;
    std::vector<uint32_t> rows;
};

} // namespace ormund
