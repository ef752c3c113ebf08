// Extensions of CLAP that are newer than the headers that Debian has: records and names alone.
#pragma once

#include <clap/plugin.h>
#include <clap/stream.h>
#include <clap/string-sizes.h>

constexpr char CLAP_EXT_TAIL[] = "clap.tail";
struct clap_plugin_tail_t {
    uint32_t (*get)(const clap_plugin_t*);
};

constexpr char CLAP_EXT_VOICE_INFO[] = "clap.voice-info";
struct clap_voice_info_t {
    uint32_t voice_count;
    uint32_t voice_capacity;
    uint64_t flags;
};
struct clap_plugin_voice_info_t {
    bool (*get)(const clap_plugin_t*, clap_voice_info_t*);
};

constexpr char CLAP_EXT_REMOTE_CONTROLS[] = "clap.remote-controls/2";
constexpr char CLAP_EXT_REMOTE_CONTROLS_COMPAT[] = "clap.remote-controls.draft/2";
constexpr int CLAP_REMOTE_CONTROLS_COUNT = 8;
struct clap_remote_controls_page_t {
    char section_name[CLAP_NAME_SIZE];
    clap_id page_id;
    char page_name[CLAP_NAME_SIZE];
    clap_id param_ids[CLAP_REMOTE_CONTROLS_COUNT];
    bool is_for_preset;
};
struct clap_plugin_remote_controls_t {
    uint32_t (*count)(const clap_plugin_t*);
    bool (*get)(const clap_plugin_t*, uint32_t, clap_remote_controls_page_t*);
};

constexpr char CLAP_EXT_STATE_CONTEXT[] = "clap.state-context/2";
struct clap_plugin_state_context_t {
    bool (*save)(const clap_plugin_t*, const clap_ostream_t*, uint32_t context);
    bool (*load)(const clap_plugin_t*, const clap_istream_t*, uint32_t context);
};
