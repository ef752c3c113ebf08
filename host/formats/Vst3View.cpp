#include "host/formats/Vst3View.h"

#include "host/formats/Vst3Plugin.h"

#include <algorithm>
#include <cstring>

namespace ormund {

namespace {
constexpr uint64_t kIdleMs = 16;
}

Vst3View::Vst3View(Vst3Plugin& shown)
    : plugin(shown), window(shown.shown(), static_cast<FormatWindow::Host&>(*this))
{
    plugin.addRef();
}

Vst3View::~Vst3View()
{
    remove();
    plugin.release();
}

uint32_t Vst3View::release()
{
    const uint32_t left = --refs;
    if (left == 0)
        delete this;
    return left;
}

void* Vst3View::query(const v3_tuid iid)
{
    void* found = nullptr;
    if (v3_tuid_match(iid, v3_funknown_iid) || v3_tuid_match(iid, v3_plugin_view_iid))
        found = &view;
    else if (v3_tuid_match(iid, v3_timer_handler_iid))
        found = &timer;
    if (found)
        addRef();
    return found;
}

v3_plugin_view_cpp Vst3View::viewTable()
{
    using This = Facet<v3_plugin_view_cpp>;
    v3_plugin_view_cpp all{};
    This::addUnknown(all);
    all.view.is_platform_type_supported = [](void*, const char* type) -> v3_result {
        return type && std::strcmp(type, V3_VIEW_PLATFORM_TYPE_X11) == 0 ? V3_TRUE : V3_FALSE;
    };
    all.view.attached = [](void* self, void* parent, const char* type) -> v3_result {
        if (!type || std::strcmp(type, V3_VIEW_PLATFORM_TYPE_X11) != 0)
            return V3_INVALID_ARG;
        return This::of(self).attach(reinterpret_cast<unsigned long>(parent)) ? V3_OK : V3_FALSE;
    };
    all.view.removed = [](void* self) -> v3_result {
        This::of(self).remove();
        return V3_OK;
    };
    // The window takes its keys and its wheel from the X server.
    all.view.on_wheel = [](void*, float) -> v3_result { return V3_FALSE; };
    all.view.on_key_down =
        all.view.on_key_up = [](void*, int16_t, int16_t, int16_t) -> v3_result { return V3_FALSE; };
    all.view.get_size = [](void* self, v3_view_rect* size) -> v3_result {
        *size = This::of(self).rect();
        return V3_OK;
    };
    all.view.on_size = [](void* self, v3_view_rect* size) -> v3_result {
        return This::of(self).fit(*size, true) ? V3_OK : V3_FALSE;
    };
    all.view.on_focus = [](void*, v3_bool) -> v3_result { return V3_OK; };
    all.view.set_frame = [](void* self, v3_plugin_frame** given) -> v3_result {
        This::of(self).frame.reset(given);
        return V3_OK;
    };
    all.view.can_resize = [](void*) -> v3_result { return V3_TRUE; };
    all.view.check_size_constraint = [](void* self, v3_view_rect* size) -> v3_result {
        return This::of(self).fit(*size, false) ? V3_OK : V3_FALSE;
    };
    return all;
}

v3_timer_handler_cpp Vst3View::timerTable()
{
    using This = Facet<v3_timer_handler_cpp>;
    v3_timer_handler_cpp all{};
    This::addUnknown(all);
    all.timer.on_timer = [](void* self) { This::of(self).idle(); };
    return all;
}

const v3_plugin_view_cpp Vst3View::kView = viewTable();
const v3_timer_handler_cpp Vst3View::kTimer = timerTable();

bool Vst3View::fit(v3_view_rect& size, bool takes)
{
    const auto length = [](int32_t from, int32_t to) {
        constexpr int64_t kMost = 1 << 16; // so that any number of a host's is one of ours
        return static_cast<int>(std::clamp<int64_t>(int64_t{to} - from, 0, kMost));
    };
    int width = length(size.left, size.right);
    int height = length(size.top, size.bottom);
    if (!window.fitInto(width, height, takes))
        return false;
    size.right = size.left + width;
    size.bottom = size.top + height;
    return true;
}

// A host gives its loop with the frame, or there is no window: nothing would ever move in it.
bool Vst3View::attach(unsigned long parent)
{
    remove();
    loop.query(frame.get(), v3_run_loop_iid);
    auto** const handler = reinterpret_cast<v3_timer_handler**>(&timer);
    if (!loop || loop->register_timer(loop.get(), handler, kIdleMs) != V3_OK) {
        loop.reset();
        return false;
    }
    if (!window.openIn(parent))
        remove();
    return window.isOpen();
}

void Vst3View::remove()
{
    window.close();
    if (loop)
        loop->unregister_timer(loop.get(), reinterpret_cast<v3_timer_handler**>(&timer));
    loop.reset();
}

void Vst3View::idle()
{
    window.idle();
    if (plugin.shown().takeReload())
        window.reportMoved();
    plugin.reportEdit();
}

void Vst3View::edited(const HostEdit& edit)
{
    v3_component_handler** const host = plugin.host();
    const v3_param_id id = vst3::idOf(edit.number);
    if (!host)
        return;
    if (edit.kind == HostEdit::Begin)
        v3_cpp_obj(host)->begin_edit(host, id);
    else if (edit.kind == HostEdit::End)
        v3_cpp_obj(host)->end_edit(host, id);
    else
        v3_cpp_obj(host)->perform_edit(host, id, static_cast<double>(edit.value));
}

v3_view_rect Vst3View::rect() const
{
    const ERect size = window.size();
    return {0, 0, size.right, size.bottom};
}

bool Vst3View::sizeWanted(int width, int height)
{
    v3_view_rect wanted{0, 0, width, height};
    return frame && frame->resize_view(frame.get(), facet(), &wanted) == V3_OK;
}

} // namespace ormund
