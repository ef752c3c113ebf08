// What a CLAP host may ask for beside blocks: parameters, state, ports, pages of controls.
#include "base/Product.h"
#include "host/formats/ClapMore.h"
#include "host/formats/ClapPlugin.h"
#include "host/formats/SavedState.h"
#include "synth/KWSynth.h"

#include <clap/ext/audio-ports.h>
#include <clap/ext/latency.h>

#include <cmath>
#include <cstdio>
#include <cstring>

namespace ormund {

namespace {
template <size_t Size>
void copyText(char (&to)[Size], std::string_view from)
{
    std::snprintf(to, Size, "%.*s", static_cast<int>(from.size()), from.data());
}

bool isNumber(clap_id id) { return id < kFormatParameters; }

// --- ports --------------------------------------------------------------------------------------

const clap_plugin_audio_ports_t kAudioPorts{
    [](const clap_plugin_t*, bool isInput) -> uint32_t { return isInput ? 0 : 1; },
    [](const clap_plugin_t*, uint32_t index, bool isInput, clap_audio_port_info_t* info) {
        if (isInput || index > 0)
            return false;
        *info = {};
        copyText(info->name, product::kName);
        info->flags = CLAP_AUDIO_PORT_IS_MAIN;
        info->channel_count = 2;
        info->port_type = CLAP_PORT_STEREO;
        info->in_place_pair = CLAP_INVALID_ID;
        return true;
    }};

const clap_plugin_note_ports_t kNotePorts{[](const clap_plugin_t*, bool) -> uint32_t { return 1; },
    [](const clap_plugin_t*, uint32_t index, bool, clap_note_port_info_t* info) {
        if (index > 0)
            return false;
        *info = {};
        copyText(info->name, product::kMidiName);
        info->supported_dialects = CLAP_NOTE_DIALECT_MIDI | CLAP_NOTE_DIALECT_CLAP;
        info->preferred_dialect = CLAP_NOTE_DIALECT_MIDI;
        return true;
    }};

const clap_plugin_latency_t kLatency{[](const clap_plugin_t*) -> uint32_t { return 0; }};

const clap_plugin_voice_info_t kVoiceInfo{[](const clap_plugin_t*, clap_voice_info_t* info) {
    *info = {kVoices, kVoices, 0};
    return true;
}};

// --- pages of eight controls, by the panel's sections --------------------------------------------

int firstOfPage(uint32_t page)
{
    uint32_t pages = 0;
    int onPage = 0;
    for (int number = kFirstNumber; number < kFormatParameters; ++number) {
        const bool sectionBegins =
            number == kFirstNumber || formatSection(number) != formatSection(number - 1);
        if (sectionBegins || onPage == CLAP_REMOTE_CONTROLS_COUNT) {
            onPage = 0;
            if (pages++ == page)
                return number;
        }
        ++onPage;
    }
    return kFormatParameters;
}

const clap_plugin_remote_controls_t kRemoteControls{[](const clap_plugin_t*) -> uint32_t {
                                                        uint32_t pages = 0;
                                                        while (
                                                            firstOfPage(pages) < kFormatParameters)
                                                            ++pages;
                                                        return pages;
                                                    },
    [](const clap_plugin_t*, uint32_t index, clap_remote_controls_page_t* page) {
        const int first = firstOfPage(index);
        if (first == kFormatParameters)
            return false;
        const int end = firstOfPage(index + 1);
        *page = {};
        copyText(page->section_name, formatSection(first));
        page->page_id = static_cast<clap_id>(first);
        copyText(page->page_name, formatSection(first));
        for (int i = 0; i < CLAP_REMOTE_CONTROLS_COUNT; ++i)
            page->param_ids[i] =
                first + i < end ? static_cast<clap_id>(first + i) : CLAP_INVALID_ID;
        return true;
    }};
} // namespace

// --- parameters and state
// -------------------------------------------------------------------------

bool ClapPlugin::save(const clap_ostream_t* stream)
{
    const std::string bytes = SavedState::of(*wrapper).pack();
    for (size_t at = 0; at < bytes.size();) {
        const int64_t count = stream->write(stream, bytes.data() + at, bytes.size() - at);
        if (count <= 0 || static_cast<uint64_t>(count) > bytes.size() - at)
            return false;
        at += static_cast<size_t>(count);
    }
    return true;
}

bool ClapPlugin::load(const clap_istream_t* stream)
{
    std::string bytes;
    char piece[4096];
    for (;;) {
        const int64_t count = stream->read(stream, piece, sizeof piece);
        if (count == 0)
            break;
        if (count < 0 || count > static_cast<int64_t>(sizeof piece)
            || bytes.size() > SavedState::kMostBytes)
            return false;
        bytes.append(piece, static_cast<size_t>(count));
    }
    const auto saved = SavedState::unpack(bytes);
    if (!saved || !saved->restore(*wrapper))
        return false;
    static_cast<void>(wrapper->takeReload()); // the host asks for the values itself
    for (int tag = 0; tag < kHostParameters; ++tag)
        wrapper->hostKnows(tag, wrapper->parameter(tag));
    if (hostParams)
        hostParams->rescan(host, CLAP_PARAM_RESCAN_VALUES | CLAP_PARAM_RESCAN_TEXT);
    return true;
}

const void* ClapPlugin::extension(const char* wanted)
{
    static const clap_plugin_params_t params{
        .count = [](const clap_plugin_t*) -> uint32_t { return kFormatParameters; },
        .get_info =
            [](const clap_plugin_t*, uint32_t index, clap_param_info_t* info) {
                if (!isNumber(index))
                    return false;
                const auto number = static_cast<int>(index);
                *info = {};
                info->id = index;
                info->flags = CLAP_PARAM_IS_AUTOMATABLE;
                if (isSwitch(number))
                    info->flags |= CLAP_PARAM_IS_STEPPED;
                if (number == kBypassNumber)
                    info->flags |= CLAP_PARAM_IS_BYPASS;
                copyText(info->name, formatName(number));
                copyText(info->module, formatSection(number));
                info->max_value = 1;
                info->default_value = static_cast<double>(formatDefault(number));
                return true;
            },
        .get_value =
            [](const clap_plugin_t* self, clap_id id, double* value) {
                if (!isNumber(id))
                    return false;
                *value = static_cast<double>(of(self).wrapper->value(static_cast<int>(id)));
                return true;
            },
        .value_to_text =
            [](const clap_plugin_t*, clap_id id, double value, char* text, uint32_t size) {
                if (!isNumber(id) || !text || size == 0 || !std::isfinite(value))
                    return false;
                const auto shown = formatText(static_cast<int>(id), static_cast<float>(value));
                std::snprintf(text, size, "%s", shown.c_str());
                return true;
            },
        .text_to_value =
            [](const clap_plugin_t*, clap_id id, const char* text, double* value) {
                const auto meant =
                    isNumber(id) && text ? formatValue(static_cast<int>(id), text) : std::nullopt;
                if (meant)
                    *value = static_cast<double>(*meant);
                return meant.has_value();
            },
        .flush = [](const clap_plugin_t* self, const clap_input_events_t* in,
                     const clap_output_events_t* to) { of(self).flush(in, to); },
    };
    static const clap_plugin_state_t state{
        [](const clap_plugin_t* self, const clap_ostream_t* to) { return of(self).save(to); },
        [](const clap_plugin_t* self, const clap_istream_t* from) { return of(self).load(from); }};
    // A preset and a song are the same: there is nothing here that belongs to a session alone.
    static const clap_plugin_state_context_t stateContext{
        [](const clap_plugin_t* self, const clap_ostream_t* to, uint32_t) {
            return of(self).save(to);
        },
        [](const clap_plugin_t* self, const clap_istream_t* from, uint32_t) {
            return of(self).load(from);
        }};
    static const clap_plugin_tail_t tail{
        [](const clap_plugin_t* self) { return static_cast<uint32_t>(of(self).rate); }};
    struct Row {
        const char* id;
        const void* functions;
    };
    static const Row rows[] = {{CLAP_EXT_PARAMS, &params}, {CLAP_EXT_STATE, &state},
        {CLAP_EXT_STATE_CONTEXT, &stateContext}, {CLAP_EXT_AUDIO_PORTS, &kAudioPorts},
        {CLAP_EXT_NOTE_PORTS, &kNotePorts}, {CLAP_EXT_LATENCY, &kLatency}, {CLAP_EXT_TAIL, &tail},
        {CLAP_EXT_VOICE_INFO, &kVoiceInfo}, {CLAP_EXT_REMOTE_CONTROLS, &kRemoteControls},
        {CLAP_EXT_REMOTE_CONTROLS_COMPAT, &kRemoteControls}, {CLAP_EXT_GUI, &gui},
        {CLAP_EXT_TIMER_SUPPORT, &timers}};
    for (const Row& row : rows)
        if (std::strcmp(wanted, row.id) == 0)
            return row.functions;
    return nullptr;
}

} // namespace ormund
