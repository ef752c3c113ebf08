// The editor in an LV2 host's window, or in one of its own. It reads the engine itself, so it lives
// in the host's process, and the host gives it the instance.
#include "base/Product.h"
#include "host/formats/FormatWindow.h"
#include "host/formats/Lv2Plugin.h"

#include <cstring>
#include <lv2/instance-access/instance-access.h>
#include <lv2/ui/ui.h>

namespace ormund {

namespace {

template <class Data>
Data* feature(const LV2_Feature* const* features, const char* uri)
{
    for (; features && *features; ++features)
        if (std::strcmp((*features)->URI, uri) == 0)
            return static_cast<Data*>((*features)->data);
    return nullptr;
}

class Lv2Window final : private FormatWindow::Host {
public:
    Lv2Window(Lv2Plugin& plugin, LV2UI_Write_Function writes, LV2UI_Controller itsController,
        const LV2_Feature* const* features)
        : wrapper(plugin.shown())
        , window(wrapper, *this)
        , write(writes)
        , controller(itsController)
        , resize(feature<LV2UI_Resize>(features, LV2_UI__resize))
        , touch(feature<LV2UI_Touch>(features, LV2_UI__touch))
    {
    }

    bool openIn(unsigned long parent)
    {
        const ERect rect = window.size();
        return window.openIn(parent) && (sizeWanted(rect.right, rect.bottom), true);
    }
    unsigned long handle() const { return window.handle(); }
    bool show() { return window.isOpen() || window.openOwn(product::kName); }
    void hide() { window.close(); }
    bool idle()
    {
        const bool goesOn = window.idle();
        if (wrapper.takeReload())
            window.reportMoved();
        return goesOn;
    }
    void portMoved(uint32_t port, uint32_t size, uint32_t protocol, const void* value)
    {
        float moved = 0;
        if (!lv2::isControl(port) || protocol != 0 || size != sizeof moved)
            return;
        std::memcpy(&moved, value, sizeof moved);
        if (lv2::numberOf(port) != kBypassNumber)
            wrapper.hostKnows(tagOfNumber(lv2::numberOf(port)), moved);
    }

private:
    void edited(const HostEdit& edit) override
    {
        const uint32_t port = lv2::portOf(edit.number);
        if (edit.kind == HostEdit::Value) {
            const float value = lv2::swapped(edit.number, edit.value);
            write(controller, port, sizeof value, 0, &value);
        } else if (touch) {
            touch->touch(touch->handle, port, edit.kind == HostEdit::Begin);
        }
    }
    bool sizeWanted(int width, int height) override
    {
        return resize && resize->ui_resize(resize->handle, width, height) == 0;
    }

    KWFormatWrapper& wrapper;
    FormatWindow window;
    LV2UI_Write_Function write;
    LV2UI_Controller controller;
    LV2UI_Resize* resize;
    LV2UI_Touch* touch;
};

Lv2Window& windowOf(LV2UI_Handle handle) { return *static_cast<Lv2Window*>(handle); }

LV2UI_Handle instantiate(const LV2UI_Descriptor*, const char* pluginUri, const char*,
    LV2UI_Write_Function write, LV2UI_Controller controller, LV2UI_Widget* widget,
    const LV2_Feature* const* features)
{
    auto* plugin = feature<Lv2Plugin>(features, LV2_INSTANCE_ACCESS_URI);
    if (!plugin || !write || std::strcmp(pluginUri, lv2::kLv2Uri) != 0)
        return nullptr;
    auto window = std::make_unique<Lv2Window>(*plugin, write, controller, features);
    const auto parent = reinterpret_cast<unsigned long>(feature<void>(features, LV2_UI__parent));
    if (parent != 0 && !window->openIn(parent))
        return nullptr;
    if (widget)
        *widget = reinterpret_cast<LV2UI_Widget>(window->handle());
    return window.release();
}

const void* extensionOf(const char* uri)
{
    static const LV2UI_Idle_Interface idle{
        [](LV2UI_Handle self) { return windowOf(self).idle() ? 0 : 1; }};
    static const LV2UI_Show_Interface show{
        [](LV2UI_Handle self) { return windowOf(self).show() ? 0 : 1; },
        [](LV2UI_Handle self) {
            windowOf(self).hide();
            return 0;
        }};
    if (std::strcmp(uri, LV2_UI__idleInterface) == 0)
        return &idle;
    return std::strcmp(uri, LV2_UI__showInterface) == 0 ? &show : nullptr;
}

const LV2UI_Descriptor kDescriptor = {
    .URI = lv2::kLv2UiUri,
    .instantiate = instantiate,
    .cleanup = [](LV2UI_Handle self) { delete &windowOf(self); },
    .port_event = [](LV2UI_Handle self, uint32_t port, uint32_t size, uint32_t protocol,
                      const void* value) { windowOf(self).portMoved(port, size, protocol, value); },
    .extension_data = extensionOf,
};
} // namespace

} // namespace ormund

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(uint32_t index)
{
    return index == 0 ? &ormund::kDescriptor : nullptr;
}
