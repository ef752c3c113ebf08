#include "host/formats/ClapPlugin.h"

#include "base/Product.h"

#include <clap/plugin-factory.h>

#include <cstring>

namespace ormund {

namespace {
constexpr const char* kFeatures[] = {CLAP_PLUGIN_FEATURE_INSTRUMENT,
    CLAP_PLUGIN_FEATURE_SYNTHESIZER, CLAP_PLUGIN_FEATURE_NOTE_EFFECT, CLAP_PLUGIN_FEATURE_STEREO,
    nullptr};
}

const clap_plugin_descriptor_t ClapPlugin::descriptor = {CLAP_VERSION, product::kClapId,
    product::kName, product::kMaker, "", "", "", ORMUND_VERSION, product::kSummary,
    const_cast<const char**>(kFeatures)};

ClapPlugin::ClapPlugin(const clap_host_t* itsHost) : functions(makeFunctions()), host(itsHost)
{
    functions.plugin_data = this;
}

ClapPlugin::~ClapPlugin() { destroyGui(); }

bool ClapPlugin::init()
{
    hostState = hostExtension<clap_host_state_t>(CLAP_EXT_STATE);
    hostParams = hostExtension<clap_host_params_t>(CLAP_EXT_PARAMS);
    hostGui = hostExtension<clap_host_gui_t>(CLAP_EXT_GUI);
    hostTimers = hostExtension<clap_host_timer_support_t>(CLAP_EXT_TIMER_SUPPORT);
    const auto* notes = hostExtension<clap_host_note_ports_t>(CLAP_EXT_NOTE_PORTS);
    // MIDI alone has all that we send: controllers, the wheel, pressure.
    sendsClapNotes = notes && notes->supported_dialects
        && (notes->supported_dialects(host) & CLAP_NOTE_DIALECT_MIDI) == 0;
    wrapper.emplace(static_cast<KWFormatWrapper::Format&>(*this), rate);
    window.emplace(*wrapper, static_cast<FormatWindow::Host&>(*this));
    return true;
}

bool ClapPlugin::activate(double hertz)
{
    rate = hertz;
    wrapper->setSampleRate(hertz);
    wrapper->resume();
    isActive = true;
    return true;
}

void ClapPlugin::deactivate()
{
    if (isActive)
        wrapper->suspend();
    isActive = false;
}

clap_plugin_t ClapPlugin::makeFunctions()
{
    clap_plugin_t all{};
    all.desc = &descriptor;
    all.init = [](const clap_plugin_t* self) { return of(self).init(); };
    all.destroy = [](const clap_plugin_t* self) { delete &of(self); };
    all.activate = [](const clap_plugin_t* self, double hertz, uint32_t, uint32_t) {
        return of(self).activate(hertz);
    };
    all.deactivate = [](const clap_plugin_t* self) { of(self).deactivate(); };
    all.start_processing = [](const clap_plugin_t*) { return true; };
    all.stop_processing = [](const clap_plugin_t*) {};
    all.reset = [](const clap_plugin_t* self) { of(self).wrapper->client().suspend(); };
    all.process = [](const clap_plugin_t* self,
                      const clap_process_t* block) -> clap_process_status {
        of(self).process(*block);
        return CLAP_PROCESS_CONTINUE;
    };
    all.get_extension = [](const clap_plugin_t*, const char* id) { return extension(id); };
    all.on_main_thread = [](const clap_plugin_t* self) { of(self).onMainThread(); };
    return all;
}

void ClapPlugin::onMainThread()
{
    if (wrapper->takeReload())
        window->reportMoved();
    if (wrapper->takeEdit() && hostState)
        hostState->mark_dirty(host);
}

namespace {
const clap_plugin_factory_t kFactory{[](const clap_plugin_factory_t*) -> uint32_t { return 1; },
    [](const clap_plugin_factory_t*, uint32_t index) {
        return index == 0 ? &ClapPlugin::descriptor : nullptr;
    },
    [](const clap_plugin_factory_t*, const clap_host_t* host,
        const char* id) -> const clap_plugin_t* {
        if (!host || !id || !clap_version_is_compatible(host->clap_version)
            || std::strcmp(id, ClapPlugin::descriptor.id) != 0)
            return nullptr;
        return (new ClapPlugin(host))->table();
    }};
} // namespace

} // namespace ormund

extern "C" CLAP_EXPORT const clap_plugin_entry_t clap_entry = {CLAP_VERSION,
    [](const char*) { return true; }, [] {},
    [](const char* id) -> const void* {
        return std::strcmp(id, CLAP_PLUGIN_FACTORY_ID) == 0 ? &ormund::kFactory : nullptr;
    }};
