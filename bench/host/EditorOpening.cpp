#include "bench/host/EditorOpening.h"

#include "apps/host/ScriptedHost.h"
#include "bench/host/InChild.h"

#include <chrono>
#include <cstdlib>
#include <xcb/xcb.h>

namespace {
std::optional<EditorOpening> open(const std::string& module, int scale)
{
    setenv("GDK_SCALE", std::to_string(scale).c_str(), 1);
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    ScriptedHost host;
    if (xcb_connection_has_error(connection) || !host.load(module, {}))
        return std::nullopt;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto start = std::chrono::steady_clock::now();
    host.dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(uintptr_t{root}));
    host.dispatch(effEditIdle);
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    const ERect* rect = nullptr;
    host.dispatch(effEditGetRect, 0, 0, &rect);
    const EditorOpening opening{time.count(), rect ? rect->right - rect->left : 0};
    host.dispatch(effEditClose);
    return opening;
}
} // namespace

std::optional<EditorOpening> firstOpening(const std::string& module, int scale)
{
    return inChild([&] { return open(module, scale); });
}
