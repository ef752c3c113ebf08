#include "view/x11/CursorTheme.h"

#include <dlfcn.h>

namespace ormund {

namespace {

// The library's own declarations, with its context as an opaque pointer.
struct CursorLibrary {
    int (*newContext)(xcb_connection_t*, xcb_screen_t*, void**) = nullptr;
    xcb_cursor_t (*loadCursor)(void*, const char*) = nullptr;
    void (*freeContext)(void*) = nullptr;

    CursorLibrary()
    {
        // Stays loaded: a host may close the last window and open another.
        void* library = ::dlopen("libxcb-cursor.so.0", RTLD_NOW | RTLD_LOCAL);
        if (!library)
            return;
        bind(newContext, library, "xcb_cursor_context_new");
        bind(loadCursor, library, "xcb_cursor_load_cursor");
        bind(freeContext, library, "xcb_cursor_context_free");
    }
    bool isComplete() const { return newContext && loadCursor && freeContext; }

private:
    template <typename Function>
    static void bind(Function& function, void* library, const char* name)
    {
        function = reinterpret_cast<Function>(::dlsym(library, name));
    }
};

const CursorLibrary& cursorLibrary()
{
    static const CursorLibrary library;
    return library;
}

} // namespace

CursorTheme::~CursorTheme()
{
    if (context)
        cursorLibrary().freeContext(context);
}

xcb_cursor_t CursorTheme::load(xcb_connection_t* connection, xcb_screen_t* screen, const char* name)
{
    const CursorLibrary& library = cursorLibrary();
    if (!isTried && library.isComplete() && library.newContext(connection, screen, &context) < 0)
        context = nullptr;
    isTried = true;
    return context ? library.loadCursor(context, name) : xcb_cursor_t{XCB_NONE};
}

} // namespace ormund
