#include "view/x11/ScreenImage.h"

#include <cairo.h>
#include <cstdlib>
#include <cstring>
#include <sys/ipc.h>
#include <sys/shm.h>

namespace ormund {

namespace {

constexpr uint8_t kDepth = 24;

uint16_t word(int value) { return static_cast<uint16_t>(value); }
int16_t place(int value) { return static_cast<int16_t>(value); }

} // namespace

ScreenImage::ScreenImage(xcb_connection_t* xConnection, xcb_window_t xWindow, bool mayShare)
    : connection(xConnection), window(xWindow), canShare(mayShare)
{
    gc = xcb_generate_id(connection);
    const uint32_t noExposures = 0;
    xcb_create_gc(connection, gc, window, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    const xcb_query_extension_reply_t* shm = xcb_get_extension_data(connection, &xcb_shm_id);
    if (!shm || !shm->present)
        canShare = false;
    else
        completionEvent = static_cast<uint8_t>(shm->first_event + XCB_SHM_COMPLETION);
}

ScreenImage::~ScreenImage()
{
    release();
    xcb_free_gc(connection, gc);
}

void ScreenImage::release()
{
    if (image)
        cairo_surface_destroy(image);
    image = nullptr;
    if (copy)
        xcb_free_pixmap(connection, copy);
    copy = 0;
    if (segment)
        xcb_shm_detach(connection, segment);
    segment = 0;
    if (memory)
        shmdt(memory);
    memory = nullptr;
    busy = false;
}

bool ScreenImage::share(size_t bytes)
{
    const int id = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    if (id < 0)
        return false;
    void* const mapped = shmat(id, nullptr, 0);
    bool isAttached = false;
    if (mapped != reinterpret_cast<void*>(-1)) {
        segment = xcb_generate_id(connection);
        // A server on another machine, or in another name space, cannot attach.
        xcb_generic_error_t* error = xcb_request_check(
            connection, xcb_shm_attach_checked(connection, segment, static_cast<uint32_t>(id), 1));
        isAttached = !error && !xcb_connection_has_error(connection);
        std::free(error);
        if (isAttached) {
            memory = mapped;
        } else {
            segment = 0;
            shmdt(mapped);
        }
    }
    // Marked now, it goes with its last user, however the process ends.
    shmctl(id, IPC_RMID, nullptr);
    return isAttached;
}

void ScreenImage::resize(int newWidth, int newHeight)
{
    release();
    width = newWidth;
    height = newHeight;
}

cairo_surface_t* ScreenImage::surface()
{
    if (!image)
        make();
    return image;
}

void ScreenImage::make()
{
    const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_RGB24, width);
    if (canShare)
        canShare = share(static_cast<size_t>(stride) * static_cast<size_t>(height));
    if (memory)
        image = cairo_image_surface_create_for_data(
            static_cast<unsigned char*>(memory), CAIRO_FORMAT_RGB24, width, height, stride);
    else
        image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
    copy = xcb_generate_id(connection);
    xcb_create_pixmap(connection, kDepth, copy, window, word(width), word(height));
    // New pixmaps hold whatever was there. The server touches all this memory for the first time
    // while we paint, as nothing asks it for an answer before the picture is there.
    const uint32_t black = 0;
    xcb_change_gc(connection, gc, XCB_GC_FOREGROUND, &black);
    const xcb_rectangle_t all{0, 0, word(width), word(height)};
    xcb_poly_fill_rectangle(connection, copy, gc, 1, &all);
    xcb_flush(connection);
}

void ScreenImage::put(std::span<const CRect> parts)
{
    if (!image)
        return;
    cairo_surface_flush(image);
    const CRect bounds{
        0, 0, cairo_image_surface_get_width(image), cairo_image_surface_get_height(image)};
    for (size_t i = 0; i < parts.size(); ++i) {
        CRect part = parts[i];
        if (part.bound(bounds).isEmpty())
            continue;
        if (!segment) {
            send(part);
            continue;
        }
        // The server reads in order, so its word on any part that is put last covers all.
        const bool isLast = i + 1 == parts.size();
        xcb_shm_put_image(connection, copy, gc, word(bounds.right), word(bounds.bottom),
            word(part.left), word(part.top), word(part.width()), word(part.height()),
            place(part.left), place(part.top), kDepth, XCB_IMAGE_FORMAT_Z_PIXMAP, isLast, segment,
            0);
        busy = busy || isLast;
    }
}

void ScreenImage::send(const CRect& part)
{
    const auto* pixels = reinterpret_cast<const uint32_t*>(cairo_image_surface_get_data(image));
    const int rowPixels = cairo_image_surface_get_stride(image) / 4;
    const int bytesPerRow = part.width() * 4;
    const auto limit =
        static_cast<int>(std::min<uint64_t>(
            uint64_t{xcb_get_maximum_request_length(connection)} * 4, uint64_t{1} << 20))
        - static_cast<int>(sizeof(xcb_put_image_request_t)) - 8;
    const int rowsAtOnce = std::max(1, limit / bytesPerRow);
    for (int y = part.top; y < part.bottom; y += rowsAtOnce) {
        const int count = std::min(rowsAtOnce, part.bottom - y);
        rows.resize(static_cast<size_t>(part.width()) * static_cast<size_t>(count));
        for (int row = 0; row < count; ++row)
            std::memcpy(&rows[static_cast<size_t>(row) * static_cast<size_t>(part.width())],
                pixels + static_cast<long>(y + row) * rowPixels + part.left,
                static_cast<size_t>(bytesPerRow));
        xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, copy, gc, word(part.width()),
            word(count), place(part.left), place(y), 0, kDepth,
            static_cast<uint32_t>(rows.size() * 4), reinterpret_cast<const uint8_t*>(rows.data()));
    }
}

bool ScreenImage::takeEvent(const xcb_generic_event_t* event)
{
    if (!completionEvent || (event->response_type & 0x7F) != completionEvent)
        return false;
    // Word on an image from before a resize says nothing about this one.
    if (reinterpret_cast<const xcb_shm_completion_event_t*>(event)->shmseg == segment)
        busy = false;
    return true;
}

void ScreenImage::sync()
{
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    busy = false;
}

} // namespace ormund
