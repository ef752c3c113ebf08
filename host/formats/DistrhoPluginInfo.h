// What the framework is told about the plug-in; it looks for this file by this name.
#pragma once

#define DISTRHO_PLUGIN_BRAND "Kelda Works"
#define DISTRHO_PLUGIN_NAME "Ormund"
#define DISTRHO_PLUGIN_URI "urn:kelda-works:ormund"

// The editor is a window of our own, in one binary with the engine that it reads.
#define DISTRHO_PLUGIN_HAS_UI 1
#define DISTRHO_PLUGIN_HAS_EXTERNAL_UI 1
#define DISTRHO_PLUGIN_HAS_EMBED_UI 1
#define DISTRHO_PLUGIN_WANT_DIRECT_ACCESS 1
#define DISTRHO_PLUGIN_IS_RT_SAFE 1
#define DISTRHO_PLUGIN_IS_SYNTH 1
// The engine's two inputs are never read, and hosts place an instrument by what it takes in.
#define DISTRHO_PLUGIN_NUM_INPUTS 0
#define DISTRHO_PLUGIN_NUM_OUTPUTS 2
#define DISTRHO_PLUGIN_WANT_MIDI_INPUT 1
#define DISTRHO_PLUGIN_WANT_MIDI_OUTPUT 1
#define DISTRHO_PLUGIN_WANT_TIMEPOS 1
#define DISTRHO_PLUGIN_WANT_STATE 1
#define DISTRHO_PLUGIN_WANT_FULL_STATE 1
// Room for 256 messages in a block, and a position beside them.
#define DISTRHO_PLUGIN_MINIMUM_BUFFER_SIZE 8192

#define DISTRHO_PLUGIN_LV2_CATEGORY "lv2:InstrumentPlugin"
#define DISTRHO_PLUGIN_VST3_CATEGORIES "Instrument|Synth"
