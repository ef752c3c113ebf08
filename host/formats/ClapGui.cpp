// The editor in a CLAP host's window, or in one of its own.
#include "host/formats/ClapPlugin.h"

#include "base/Product.h"

#include <algorithm>
#include <cstring>

namespace ormund {

namespace {
constexpr uint32_t kIdleMs = 16;
} // namespace

const clap_plugin_gui_t ClapPlugin::gui = {
    .is_api_supported = [](const clap_plugin_t*, const char* api,
                            bool) { return api && std::strcmp(api, CLAP_WINDOW_API_X11) == 0; },
    .get_preferred_api =
        [](const clap_plugin_t*, const char** api, bool* floating) {
            *api = CLAP_WINDOW_API_X11;
            *floating = false;
            return true;
        },
    .create =
        [](const clap_plugin_t* self, const char* api, bool floating) {
            return gui.is_api_supported(self, api, floating) && of(self).createGui(floating);
        },
    .destroy = [](const clap_plugin_t* self) { of(self).destroyGui(); },
    // Its scales are the user's choice; sizes are device pixels already.
    .set_scale = [](const clap_plugin_t*, double) { return false; },
    .get_size =
        [](const clap_plugin_t* self, uint32_t* width, uint32_t* height) {
            const ERect rect = of(self).window->size();
            *width = static_cast<uint32_t>(rect.right);
            *height = static_cast<uint32_t>(rect.bottom);
            return rect.right > 0;
        },
    .can_resize = [](const clap_plugin_t*) { return true; },
    .get_resize_hints =
        [](const clap_plugin_t* self, clap_gui_resize_hints_t* hints) {
            *hints = {true, true, true, 0, 0};
            return gui.get_size(self, &hints->aspect_ratio_width, &hints->aspect_ratio_height);
        },
    .adjust_size = [](const clap_plugin_t* self, uint32_t* width,
                       uint32_t* height) { return of(self).fit(*width, *height, false); },
    .set_size = [](const clap_plugin_t* self, uint32_t width,
                    uint32_t height) { return of(self).fit(width, height, true); },
    .set_parent =
        [](const clap_plugin_t* self, const clap_window_t* given) {
            ClapPlugin& plugin = of(self);
            if (!plugin.hasGui || plugin.isFloating || !given)
                return false;
            plugin.parent = given->x11;
            return plugin.window->openIn(plugin.parent);
        },
    .set_transient = [](const clap_plugin_t* self,
                         const clap_window_t*) { return of(self).isFloating; },
    .suggest_title = [](const clap_plugin_t* self,
                         const char* title) { of(self).window->setTitle(title); },
    .show = [](const clap_plugin_t* self) { return of(self).showGui(); },
    .hide =
        [](const clap_plugin_t* self) {
            of(self).window->close();
            return of(self).hasGui;
        },
};

const clap_plugin_timer_support_t ClapPlugin::timers = {
    [](const clap_plugin_t* self, clap_id id) {
        if (id == of(self).timer)
            of(self).idle();
    },
};

bool ClapPlugin::fit(uint32_t& width, uint32_t& height, bool takes)
{
    constexpr uint32_t kMost = 1 << 16; // of a side, so that any number of a host's is one of ours
    int fitted[2] = {
        static_cast<int>(std::min(width, kMost)), static_cast<int>(std::min(height, kMost))};
    const bool fits = window->fitInto(fitted[0], fitted[1], takes);
    width = static_cast<uint32_t>(fitted[0]);
    height = static_cast<uint32_t>(fitted[1]);
    return fits;
}

bool ClapPlugin::createGui(bool floating)
{
    if (hasGui || !hostTimers || !hostTimers->register_timer(host, kIdleMs, &timer))
        return false;
    isFloating = floating;
    return hasGui = true;
}

void ClapPlugin::destroyGui()
{
    if (!hasGui)
        return;
    window->close();
    hostTimers->unregister_timer(host, timer);
    timer = CLAP_INVALID_ID;
    parent = 0;
    hasGui = false;
}

bool ClapPlugin::showGui()
{
    if (!hasGui || window->isOpen())
        return hasGui;
    if (isFloating)
        return window->openOwn(product::kName);
    return parent != 0 && window->openIn(parent);
}

void ClapPlugin::idle()
{
    if (!window->idle() && hostGui)
        hostGui->closed(host, false);
    onMainThread();
}

void ClapPlugin::edited(const HostEdit& edit)
{
    edits.put(edit);
    if (hostParams)
        hostParams->request_flush(host);
}

bool ClapPlugin::sizeWanted(int width, int height)
{
    return hostGui
        && hostGui->request_resize(
            host, static_cast<uint32_t>(width), static_cast<uint32_t>(height));
}

} // namespace ormund
