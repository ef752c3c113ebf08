// The CLAP plug-in: the format's calls on one side, the wrapper on the other.
#pragma once

#include "host/formats/EditQueue.h"
#include "host/formats/FormatWindow.h"
#include "host/formats/KWFormatWrapper.h"

#include <clap/entry.h>
#include <clap/ext/gui.h>
#include <clap/ext/note-ports.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>

#include <optional>

namespace ormund {

// Threads are CLAP's: process, flush while active and reset on the audio thread, all else on the
// main one.
class ClapPlugin final : private KWFormatWrapper::Format, private FormatWindow::Host {
public:
    static const clap_plugin_descriptor_t descriptor;

    explicit ClapPlugin(const clap_host_t* itsHost);
    ~ClapPlugin();
    ClapPlugin(const ClapPlugin&) = delete;
    ClapPlugin& operator=(const ClapPlugin&) = delete;
    const clap_plugin_t* table() const { return &functions; }

private:
    static ClapPlugin& of(const clap_plugin_t* plugin)
    {
        return *static_cast<ClapPlugin*>(plugin->plugin_data);
    }
    static clap_plugin_t makeFunctions();
    bool init();
    bool activate(double rate);
    void deactivate();
    void onMainThread();

    // ClapEvents.cpp
    void process(const clap_process_t& block);
    void flush(const clap_input_events_t* in, const clap_output_events_t* out);
    void takeEvents(const clap_input_events_t* in, uint32_t frames);
    void takeEvent(const clap_event_header_t& header, int frame);
    void sendEdits(const clap_output_events_t* out);
    SongPlace placeOf(const clap_event_transport_t* transport, uint32_t frames);
    void midiOut(const VstMidiEvent& event) override;
    void changedByItself() override;

    // ClapExtensions.cpp
    static const void* extension(const char* id);
    bool save(const clap_ostream_t* stream);
    bool load(const clap_istream_t* stream);

    // ClapGui.cpp
    static const clap_plugin_gui_t gui;
    static const clap_plugin_timer_support_t timers;
    bool createGui(bool floating);
    bool fit(uint32_t& width, uint32_t& height, bool takes); // as AEffEditor::fitInto
    void destroyGui();
    bool showGui();
    void idle();
    void edited(const HostEdit& edit) override;
    bool sizeWanted(int width, int height) override;

    template <class Extension>
    const Extension* hostExtension(const char* id) const
    {
        return static_cast<const Extension*>(host->get_extension(host, id));
    }

    clap_plugin_t functions;
    const clap_host_t* host;
    const clap_host_state_t* hostState = nullptr;
    const clap_host_params_t* hostParams = nullptr;
    const clap_host_gui_t* hostGui = nullptr;
    const clap_host_timer_support_t* hostTimers = nullptr;
    std::optional<KWFormatWrapper> wrapper;
    std::optional<FormatWindow> window;
    bool isActive = false;
    double rate = 44100;
    EditQueue edits;

    // Of the window.
    bool hasGui = false;
    bool isFloating = false;
    unsigned long parent = 0;
    clap_id timer = CLAP_INVALID_ID;

    // Audio thread.
    bool sendsClapNotes = false;
    const clap_output_events_t* out = nullptr; // of the block that runs
    double tempo = 120;
    double freeQuarters = 0; // where a host that gives no place stands
};

} // namespace ormund
