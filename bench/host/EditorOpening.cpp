#include "bench/host/EditorOpening.h"

#include "apps/host/ScriptedHost.h"
#include "bench/host/InChild.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <xcb/xcb.h>

namespace ormund {

namespace {
double processorMilliseconds()
{
    timespec spent{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &spent);
    return double(spent.tv_sec) * 1e3 + double(spent.tv_nsec) / 1e6;
}

OpeningCost openOnce(ScriptedHost& host, xcb_window_t parent)
{
    const auto start = std::chrono::steady_clock::now();
    const double spent = processorMilliseconds();
    host.dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(uintptr_t{parent}));
    host.dispatch(effEditIdle);
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    return {time.count(), processorMilliseconds() - spent};
}

std::optional<EditorOpening> open(const std::string& module, double scale)
{
    setenv("GDK_SCALE", std::to_string(scale).c_str(), 1);
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    ScriptedHost host;
    if (xcb_connection_has_error(connection) || !host.load(module, {}))
        return std::nullopt;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    EditorOpening opening;
    opening.first = openOnce(host, root);
    const ERect* rect = nullptr;
    host.dispatch(effEditGetRect, 0, 0, &rect);
    opening.width = rect ? rect->right - rect->left : 0;
    host.dispatch(effEditClose);
    opening.second = openOnce(host, root);
    host.dispatch(effEditClose);
    return opening;
}
} // namespace

std::optional<EditorOpening> openingOfEditor(const std::string& module, double scale)
{
    return inChild([&] { return open(module, scale); });
}

} // namespace ormund
