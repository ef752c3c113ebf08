// The editor in a VST3 host's window.
#pragma once

#include "host/formats/FormatWindow.h"
#include "host/formats/Vst3Facet.h"

#include <atomic>

namespace ormund {

class Vst3Plugin;

// Screen thread. Lives as long as the host holds it, and holds the plug-in.
class Vst3View final : private FormatWindow::Host {
public:
    explicit Vst3View(Vst3Plugin& shown);
    v3_plugin_view** facet() { return reinterpret_cast<v3_plugin_view**>(&view); }

    void* query(const v3_tuid iid);
    uint32_t addRef() { return ++refs; }
    uint32_t release();

private:
    template <class Table>
    using Facet = Vst3Facet<Table, Vst3View>;
    static v3_plugin_view_cpp viewTable();
    static v3_timer_handler_cpp timerTable();

    ~Vst3View();
    bool attach(unsigned long parent);
    void remove();
    void idle();
    void edited(const HostEdit& edit) override;
    bool sizeWanted(int width, int height) override;
    v3_view_rect rect() const;
    bool fit(v3_view_rect& size, bool takes); // as AEffEditor::fitInto

    static const v3_plugin_view_cpp kView;
    static const v3_timer_handler_cpp kTimer;

    std::atomic<uint32_t> refs{1};
    Facet<v3_plugin_view_cpp> view{&kView, this};
    Facet<v3_timer_handler_cpp> timer{&kTimer, this};
    Vst3Plugin& plugin;
    FormatWindow window;
    Vst3Ref<v3_plugin_frame> frame;
    Vst3Ref<v3_run_loop> loop; // while the timer runs
};

} // namespace ormund
