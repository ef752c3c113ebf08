// One row a parameter. A row gives the file key, the mapping, the reset value and where the value
// is kept; everything that lists, names, saves or maps parameters is derived from here.
#include "data/music/ScaleTable.h"
#include "data/parameters/ChoiceLists.h"
#include "data/parameters/ControllerNames.h"
#include "data/parameters/Parameters.h"

namespace ormund {

namespace {

constexpr Saved kNone = Saved::None;
constexpr Saved kPreset = Saved::Preset;
constexpr Saved kBoth = Saved::PresetAndSynth; // in synth presets too
constexpr Saved kSetting = Saved::Setting;

// The columns "mapping": for a track or a loop it names what backs the parameter instead.
struct Form {
    Mapping mapping;
    Backing backing = Backing::Value;
};
constexpr Form plain() { return {{Mapping::Plain}}; }
constexpr Form button() { return {{Mapping::Button}}; }
constexpr Form powerSwitch() { return {{Mapping::Switch}}; }
constexpr Form choice(int count) { return {{Mapping::Choice, static_cast<float>(count)}}; }
constexpr Form offset(float scale, float last, float times, float plus)
{
    return {{Mapping::Offset, scale, last, times, plus}};
}
constexpr Form linear(float times, float plus) { return {{Mapping::Linear, times, plus}}; }
constexpr Form whole(float scale, float plus, float last)
{
    return {{Mapping::Whole, scale, plus, last}};
}
constexpr Form stepped(float scale, float times) { return {{Mapping::Stepped, scale, times}}; }
constexpr Form cubed(float times) { return {{Mapping::Cubed, times}}; }
constexpr Form squared(float times, float plus) { return {{Mapping::Squared, times, plus}}; }
constexpr Form tableXY() { return {{Mapping::Track}, Backing::TableXY}; }
constexpr Form btnLine() { return {{Mapping::Track}, Backing::BtnLine}; }
constexpr Form listLine() { return {{Mapping::Track}, Backing::ListLine}; }
constexpr Form zones() { return {{Mapping::Track}, Backing::Zones}; }

struct Row {
    int tag;
    int fileKey;
    std::string_view name;
    Form form;
    float defaultRaw;
    Saved saved;
    int patternSlot;
    std::string_view unit = {};
};

// clang-format off
//   tag  key  name                   mapping                    default     saved      pattern slot, unit
constexpr Row kRows[] = {
    // Host parameters
    {  0,   59, "Root_Key",            offset(49, 48, 1, 36),     0.5f,       kPreset,     0},
    {  1,   60, "Scale",               choice(kScales),           0.0233644f, kPreset,     2},
    {  2,  100, "Midi_Out_Octave",     offset(5, 4, 12, -36),     0.499998f,  kPreset,    -1, "semitones"},
    {  3,  101, "Midi_Out_Transpo_",   offset(25, 24, 1, -12),    0.5f,       kPreset,    -1, "semitones"},
    {  4,   43, "Swingfactor",         stepped(100.0f, 0.01f),    0,          kPreset,     9},
    {  5,   -1, "Gate_Time_Button_",   button(),                  0,          kNone,      -1},
    {  6,   65, "MasterGateTime",      stepped(3999.9998f, 0.00025f), 0.1847f,    kPreset,    -1},
    {  7,   -1, "VeloGate_Button",     button(),                  0,          kNone,      -1},
    {  8,   69, "Velocity_Thresho_",   linear(0.79999995f, 0.1f), 0.919375f,  kPreset,    -1},
    {  9,   -1, "Looper_Button",       button(),                  0,          kNone,      -1},
    { 10,   47, "Looper_Steps",        offset(7, 6, 1, 2),        0.166667f,  kPreset,    -1, "steps"},
    { 11,   -1, "Slowdown_Button",     button(),                  0,          kNone,      -1},
    { 12,   46, "Slowdown_Rate",       linear(0.29500002f, 0.005f), 0.179322f,  kPreset,    -1},
    { 13,   -1, "Retrigger_Button_",   button(),                  0,          kNone,      -1},
    { 14,   -1, "HalfSpeed_Button_",   button(),                  0,          kNone,      -1},
    { 15,   -1, "StepPlay_Button",     button(),                  0,          kNone,      -1},
    { 16,   -1, "Mute_Button",         button(),                  0,          kNone,      -1},
    { 17,   72, "Synth_Level",         plain(),                   0.5299f,    kBoth,      -1},
    { 18,   73, "Synth_Pan",           stepped(999.99994f, 0.001f), 0.4879f,    kBoth,      -1},
    { 19,   74, "Synth_Wave",          stepped(100.0f, 0.01f),    0.89f,      kBoth,      -1},
    { 20,   75, "Synth_Detune",        linear(0.5f, 0),           0.4698f,    kBoth,      -1, "semitones"},
    { 21,   76, "SynthAttack",         cubed(1000.0f),            0,          kBoth,      -1, "ms"},
    { 22,   77, "SynthDecay",          cubed(1000.0f),            1,          kBoth,      -1, "ms"},
    { 23,   78, "SynthSustain",        plain(),                   0.3299f,    kBoth,      -1},
    { 24,   79, "SynthRelease",        cubed(1000.0f),            0,          kBoth,      -1, "ms"},
    { 25,   80, "Filter_Cutoff",       squared(16000.0f, 45.0f),  0.5499f,    kBoth,      -1, "Hz"},
    { 26,   81, "Synth_Reso",          linear(0.98f, 0),          0.5898f,    kBoth,      -1},
    { 27,   82, "Synth_Peak",          squared(16000.0f, 45.0f),  0.6599f,    kBoth,      -1, "Hz"},
    { 28,   83, "Synth_F_Attack",      cubed(1000.0f),            0,          kBoth,      -1, "ms"},
    { 29,   84, "Synth_F_Decay",       cubed(1000.0f),            0.9799f,    kBoth,      -1, "ms"},
    { 30,   85, "Synth_F_Sustain",     plain(),                   0,          kBoth,      -1},
    { 31,   86, "Synth_F_Release",     cubed(1000.0f),            0,          kBoth,      -1, "ms"},
    { 32,   87, "Delay_Left",          whole(15.0f, 1.5f, 16),    0.4398f,    kBoth,      -1, "/16 notes"},
    { 33,   88, "Delay_Right",         whole(15.0f, 1.5f, 16),    0.5298f,    kBoth,      -1, "/16 notes"},
    { 34,   89, "Delay_Feed",          linear(0.9f, 0),           0.433f,     kBoth,      -1},
    { 35,   90, "Delay_Mix",           linear(0.5f, 0),           0.3488f,    kBoth,      -1},
    { 36,  114, "GateTimeMultiply_",   whole(14.0f, 0, 14),       0.5f,       kPreset,    25},
    { 37,  120, "All_Mods_Off",        button(),                  0,          kPreset,    -1},
    { 38,  106, "Modtrack_1_on_of_",   button(),                  0,          kPreset,    26},
    { 39,  107, "Modtrack2_on_off_",   button(),                  0.5f,       kPreset,    27},
    { 40,  108, "Modtrack3_on_off_",   button(),                  0.5f,       kPreset,    28},
    { 41,  109, "Modtrack4_on_off_",   button(),                  0.5f,       kPreset,    29},
    { 42,  110, "Modtrack5_on_off_",   button(),                  0.5f,       kPreset,    30},
    { 43,  111, "Modtrack6_on_off_",   button(),                  0.5f,       kPreset,    31},
    { 44,  112, "Modtrack7_on_off_",   button(),                  0.5f,       kPreset,    32},
    { 45,  113, "Modtrack8_on_off_",   button(),                  0.5f,       kPreset,    33},
    // Modulation targets, their arrow buttons, and the track shown
    { 46,   -1, "modtrcks",            whole(16.0f, 0.001f, 15),  0,          kNone,      -1},
    { 48,    0, "cc_list",             choice(kModTargets),       0,          kPreset,    10},
    { 49,    1, "cc_list_c",           choice(kModTargets),       0,          kPreset,    11},
    { 50,    2, "cc_list_c",           choice(kModTargets),       0,          kPreset,    12},
    { 51,    3, "cc_list_c_c",         choice(kModTargets),       0,          kPreset,    13},
    { 52,    4, "cc_list_c",           choice(kModTargets),       0,          kPreset,    14},
    { 53,    5, "textedit",            choice(kModTargets),       0,          kPreset,    15},
    { 54,    6, "cc_list_c_c",         choice(kModTargets),       0,          kPreset,    16},
    { 55,    7, "cc_list_c_c_c",       choice(kModTargets),       0,          kPreset,     3},
    { 56,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    { 57,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    { 58,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    { 59,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    { 60,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    { 61,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 62,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 63,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 64,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 65,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 66,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 67,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 68,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 69,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 70,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 71,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 80,   -1, "modselect",           offset(8, 7, 1, 0),        0,          kNone,      -1},
    // Modulation tracks: nine edit buttons and the steps each
    { 82,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    { 83,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    { 84,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    { 85,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    { 86,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    { 87,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    { 88,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    { 89,   19, "Modulation",          tableXY(),                 0,          kPreset,    -1},
    { 98,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    { 99,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {104,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {105,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {106,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {107,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {108,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {109,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {110,   20, "Modulation",          tableXY(),                 0,          kPreset,    -1},
    {118,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {120,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {121,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {126,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {127,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {128,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {129,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {130,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {131,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {132,   21, "Modulation",          tableXY(),                 0,          kPreset,    -1},
    {140,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {142,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {143,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {148,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {149,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {150,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {151,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {152,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {153,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {154,   22, "Modulation",          tableXY(),                 0,          kPreset,    -1},
    {162,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {164,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {165,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {170,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {171,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {172,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {173,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {174,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {175,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {176,   23, "Modulation",          tableXY(),                 0,          kPreset,    -1},
    {184,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {186,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {187,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {192,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {193,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {194,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {195,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {196,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {197,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {198,   24, "Modulation",          tableXY(),                 0,          kPreset,    -1},
    {206,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {208,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {209,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {214,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {215,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {216,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {217,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {218,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {219,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {220,   25, "Modulation",          tableXY(),                 0,          kPreset,    -1},
    {228,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {230,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {231,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {236,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {237,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {238,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {239,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {240,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {241,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {242,   26, "Modulation",          tableXY(),                 0,          kPreset,    -1},
    {250,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {252,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {253,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    // Modulation lanes
    {258,   -1, "EventTableXY",        tableXY(),                 0,          kNone,      -1},
    {262,   27, "List",                choice(kPlaybackModes),    0,          kPreset,     7},
    {264,   28, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    {267,   29, "List",                choice(kPlaybackModes),    0,          kPreset,    17},
    {269,   30, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    {272,   31, "List",                choice(kPlaybackModes),    0,          kPreset,    18},
    {274,   32, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    {277,   33, "List",                choice(kPlaybackModes),    0,          kPreset,    19},
    {279,   34, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    {282,   35, "List",                choice(kPlaybackModes),    0,          kPreset,    20},
    {284,   36, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    {287,   37, "List",                choice(kPlaybackModes),    0,          kPreset,    21},
    {289,   38, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    {292,   39, "List",                choice(kPlaybackModes),    0,          kPreset,    22},
    {294,   40, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    {297,   41, "List",                choice(kPlaybackModes),    0,          kPreset,    23},
    {299,   42, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    // Modulation of our own synth
    {302,    8, "Button",              button(),                  0,          kPreset,    -1},
    {303,    9, "Button_c",            button(),                  0,          kPreset,    -1},
    {304,   10, "Button_c",            button(),                  0,          kPreset,    -1},
    {305,   11, "Button_c_c",          button(),                  0,          kPreset,    -1},
    {306,   12, "Button_c",            button(),                  0,          kPreset,    -1},
    {307,   13, "Button_c_c",          button(),                  0,          kPreset,    -1},
    {308,   14, "Button_c_c",          button(),                  0,          kPreset,    -1},
    {309,   15, "Button_c_c_c",        button(),                  0,          kPreset,    -1},
    // Clock and pattern sequencer
    {319,   -1, "Play_Button",         button(),                  0,          kNone,      -1},
    {325,   48, "triggermode",         choice(kTriggerModes),     1,          kPreset,    -1},
    {330,   44, "tempo",               choice(kSpeeds),           0.7f,       kPreset,     8},
    {332,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {333,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {336,   -1, "EventTableXY",        tableXY(),                 0,          kNone,      -1},
    {337,   49, "pb",                  listLine(),                0,          kPreset,    -1},
    {339,   50, "chord",               listLine(),                0,          kPreset,    -1},
    {341,   51, "octave",              listLine(),                0,          kPreset,    -1},
    {344,   -1, "poff",                button(),                  0,          kNone,      -1},
    {346,   52, "Repeat",              listLine(),                0,          kPreset,    -1},
    {347,   53, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    {349,   54, "Pattern",             listLine(),                0,          kPreset,    -1},
    {353,   55, "temposong",           choice(kSongSpeeds),       0.0277778f, kPreset,    -1},
    {355,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {356,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {357,   56, "Patternseq_OnOff_",   button(),                  0,          kPreset,    -1},
    {358,   -1, "MouseArea",           whole(15.99f, 0, 15),      0,          kNone,      -1},
    // Main lane and settings
    {363,   57, "PitchDir",            choice(kPlaybackModes),    0,          kPreset,     1},
    {365,   58, "Zonepitch",           zones(),                   0,          kPreset,    -1},
    {367,   18, "loopbar_mode",        button(),                  0.5f,       kPreset,    -1},
    {369,   -1, "Button",              button(),                  0,          kNone,      -1},
    {373,   -1, "audriver",            button(),                  0.5f,       kNone,      -1},
    {374,   -1, "load_cc",             button(),                  0,          kNone,      -1},
    {375,   -1, "save_cc",             button(),                  0,          kNone,      -1},
    {378,  115, "Ignore",              button(),                  1,          kSetting,   -1},
    {379,  116, "LOCK_ASSIGN",         button(),                  0,          kSetting,   -1},
    // Pitch track
    {382,   -1, "EventTableXY",        tableXY(),                 0,          kNone,      -1},
    {385,   -1, "Button_c",            button(),                  0,          kNone,      -1},
    {386,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {387,   61, "transmode",           button(),                  0,          kPreset,    -1},
    {388,   62, "lock",                btnLine(),                 0,          kPreset,    -1},
    {389,   -1, "Button",              button(),                  0,          kNone,      -1},
    {390,   -1, "Button_c",            button(),                  0,          kNone,      -1},
    {391,   -1, "Button_c",            button(),                  0,          kNone,      -1},
    {392,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {393,   -1, "Button_c",            button(),                  0,          kNone,      -1},
    {394,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {395,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {396,   63, "recmode",             button(),                  0.25f,      kPreset,    -1},
    {397,   64, "EventTableXY_c",      tableXY(),                 0.5f,       kPreset,    -1},
    {409,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {410,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    // Velocity and gate tracks
    {413,   66, "ButtonList",          btnLine(),                 0,          kPreset,    -1},
    {414,   -1, "Button_c",            button(),                  0,          kNone,      -1},
    {415,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {416,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {417,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {418,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {419,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {420,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {421,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {422,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {423,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {424,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {425,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {426,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {427,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {428,   -1, "EventTableXY",        tableXY(),                 0,          kNone,      -1},
    {430,   67, "GATE_c_c_c",          tableXY(),                 0,          kPreset,    -1},
    {431,   68, "Hold_c_c",            tableXY(),                 0.5f,       kPreset,    -1},
    {451,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {452,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {455,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {456,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    // Performance lines and keyboard input
    {462,   -1, "EventTableXY",        tableXY(),                 0,          kNone,      -1},
    {463,   70, "break",               listLine(),                0,          kPreset,    -1},
    {464,   71, "random",              listLine(),                0,          kPreset,    -1},
    {486,   91, "trigger",             button(),                  0,          kPreset,    -1},
    {487,   92, "Master_Oct_c",        offset(5, 4, 12, -24),     0.5f,       kPreset,    -1, "semitones"},
    {493,   45, "tempo",               choice(kKeySyncs),         0,          kPreset,    -1},
    {495,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {496,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    // Other lanes
    {499,   93, "List",                choice(kPlaybackModes),    0,          kPreset,     4},
    {501,   94, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    {504,   95, "List",                choice(kPlaybackModes),    0,          kPreset,     5},
    {506,   96, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    {509,   97, "List",                choice(kPlaybackModes),    0,          kPreset,     6},
    {511,   98, "Zonepitch_c",         zones(),                   0,          kPreset,    -1},
    // Synth and page switches
    {513,   99, "synthswitch",         powerSwitch(),             0.5f,       kBoth,      -1},
    {517,   16, "Button",              button(),                  0.5f,       kBoth,      -1},
    {518,   17, "fliplayer",           button(),                  0.5f,       kBoth,      -1},
    // Edit buttons of the performance lines and of all tracks
    {522,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {523,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {524,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {525,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {526,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {532,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {533,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {536,   -1, "Button_c_c_c",        button(),                  0,          kNone,      -1},
    {537,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {538,   -1, "Button_c_c_c_c",      button(),                  0,          kNone,      -1},
    {539,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    {544,   -1, "Button_c_c_c_c_c_",   button(),                  0,          kNone,      -1},
    // About, recording, presets, keyboard
    {547,   -1, "about",               button(),                  0,          kNone,      -1},
    {548,   -1, "MouseArea",           plain(),                   0,          kNone,      -1},
    {555,   -1, "rec_c",               button(),                  0,          kNone,      -1},
    {557,   -1, "Button",              button(),                  0,          kNone,      -1},
    {558,   -1, "Button_c",            button(),                  0,          kNone,      -1},
    {559,   -1, "Button_c",            button(),                  0,          kNone,      -1},
    {560,   -1, "Button_c_c",          button(),                  0,          kNone,      -1},
    {563,   -1, "MidiLearn",           plain(),                   0,          kNone,      10},
    {565,   -1, "about_c",             button(),                  0,          kNone,      -1},
    {571,  117, "SynthSwitch",         button(),                  0.5f,       kBoth,      -1},
    {572,  102, "random_min",          plain(),                   0.22f,      kPreset,    -1},
    {575,  103, "random_max",          plain(),                   0.68f,      kPreset,    -1},
    {578,   -1, "Keyboard_Mode",       button(),                  0,          kNone,      -1},
    {579,   -1, "Button",              button(),                  0,          kNone,      -1},
    {581,  104, "idx",                 offset(14, 13, 1, 0),      0.076923f,  kPreset,    -1, "bars"},
    {585,  105, "Keyboard_Mode",       button(),                  0,          kPreset,    -1},
    // Saved only where they differ from their default
    {586, 10001, "StepChance",         listLine(),                0,          kPreset,    -1},
    {587, 10002, "StepCondition",      listLine(),                0,          kPreset,    -1},
    {588, 10003, "StepRatchet",        listLine(),                0,          kPreset,    -1},
    {589, 10004, "StepLate",           listLine(),                0,          kPreset,    -1},
    {590, 10005, "StepStrum",          listLine(),                0,          kPreset,    -1},
    {591, 10006, "Chance_Seed",        plain(),                   0,          kPreset,    -1},
    {592,   -1, "Fill_Button",         button(),                  0,          kNone,      -1},
    {593,   -1, "Performance_Page",    button(),                  0,          kNone,      -1},
    {601, 10007, "Melody_Channel",     offset(16, 15, 1, 1),      0,          kPreset,    -1},
    {602, 10008, "Pattern_Launch",       choice(kLaunches),         0,          kPreset,    -1},
    {603, 10009, "Pads_On_Step",         button(),                  0,          kPreset,    -1},
    {604, 10010, "Play_Through",         button(),                  0,          kPreset,    -1},
    {605, 10011, "Drum_Row_1",         button(),                  0,          kPreset,    -1},
    {606, 10012, "Drum_Row_2",         button(),                  0,          kPreset,    -1},
    {607, 10013, "Drum_Row_3",         button(),                  0,          kPreset,    -1},
    {608, 10014, "Drum_Row_4",         button(),                  0,          kPreset,    -1},
    {609, 10015, "Drum_Row_5",         button(),                  0,          kPreset,    -1},
    {610, 10016, "Drum_Row_6",         button(),                  0,          kPreset,    -1},
    {611, 10017, "Drum_Row_7",         button(),                  0,          kPreset,    -1},
    {612, 10018, "Drum_Row_8",         button(),                  0,          kPreset,    -1},
    {613, 10019, "Drum_Note_1",        choice(128),               0.285156f,  kPreset,    -1},
    {614, 10020, "Drum_Note_2",        choice(128),               0.300781f,  kPreset,    -1},
    {615, 10021, "Drum_Note_3",        choice(128),               0.332031f,  kPreset,    -1},
    {616, 10022, "Drum_Note_4",        choice(128),               0.363281f,  kPreset,    -1},
    {617, 10023, "Drum_Note_5",        choice(128),               0.308594f,  kPreset,    -1},
    {618, 10024, "Drum_Note_6",        choice(128),               0.355469f,  kPreset,    -1},
    {619, 10025, "Drum_Note_7",        choice(128),               0.386719f,  kPreset,    -1},
    {620, 10026, "Drum_Note_8",        choice(128),               0.402344f,  kPreset,    -1},
    {621, 10027, "Drum_Gate_1",        offset(100, 99, 1, 1),     0.495f,     kPreset,    -1, "%"},
    {622, 10028, "Drum_Gate_2",        offset(100, 99, 1, 1),     0.495f,     kPreset,    -1, "%"},
    {623, 10029, "Drum_Gate_3",        offset(100, 99, 1, 1),     0.495f,     kPreset,    -1, "%"},
    {624, 10030, "Drum_Gate_4",        offset(100, 99, 1, 1),     0.495f,     kPreset,    -1, "%"},
    {625, 10031, "Drum_Gate_5",        offset(100, 99, 1, 1),     0.495f,     kPreset,    -1, "%"},
    {626, 10032, "Drum_Gate_6",        offset(100, 99, 1, 1),     0.495f,     kPreset,    -1, "%"},
    {627, 10033, "Drum_Gate_7",        offset(100, 99, 1, 1),     0.495f,     kPreset,    -1, "%"},
    {628, 10034, "Drum_Gate_8",        offset(100, 99, 1, 1),     0.495f,     kPreset,    -1, "%"},
    {629, 10035, "Track_Channel_1",    offset(16, 15, 1, 1),      0,          kPreset,    -1},
    {630, 10036, "Track_Channel_2",    offset(16, 15, 1, 1),      0,          kPreset,    -1},
    {631, 10037, "Track_Channel_3",    offset(16, 15, 1, 1),      0,          kPreset,    -1},
    {632, 10038, "Track_Channel_4",    offset(16, 15, 1, 1),      0,          kPreset,    -1},
    {633, 10039, "Track_Channel_5",    offset(16, 15, 1, 1),      0,          kPreset,    -1},
    {634, 10040, "Track_Channel_6",    offset(16, 15, 1, 1),      0,          kPreset,    -1},
    {635, 10041, "Track_Channel_7",    offset(16, 15, 1, 1),      0,          kPreset,    -1},
    {636, 10042, "Track_Channel_8",    offset(16, 15, 1, 1),      0,          kPreset,    -1},
    {637, 10043, "Pitch_Speed",        choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {638, 10044, "Performance_Speed",  choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {639, 10045, "Velocity_Speed",     choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {640, 10046, "Gate_Speed",         choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {641, 10047, "Track_1_Speed",      choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {642, 10048, "Track_2_Speed",      choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {643, 10049, "Track_3_Speed",      choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {644, 10050, "Track_4_Speed",      choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {645, 10051, "Track_5_Speed",      choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {646, 10052, "Track_6_Speed",      choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {647, 10053, "Track_7_Speed",      choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {648, 10054, "Track_8_Speed",      choice(kLaneSpeeds),       0.625f,     kPreset,    -1},
    {760,   -1, "Edit_Tool",            choice(kEditTools),        0,          kNone,      -1},
    {761,   -1, "Tool_Hits",            offset(16, 15, 1, 1),      0.21875f,   kNone,      -1},
    {762,   -1, "Pitch_Tool",           button(),                  0,          kNone,      -1},
    {763,   -1, "Performance_Tool",     button(),                  0,          kNone,      -1},
    {764,   -1, "Velocity_Tool",        button(),                  0,          kNone,      -1},
    {765,   -1, "Gate_Tool",            button(),                  0,          kNone,      -1},
    {766,   -1, "Track_1_Tool",         button(),                  0,          kNone,      -1},
    {767,   -1, "Track_2_Tool",         button(),                  0,          kNone,      -1},
    {768,   -1, "Track_3_Tool",         button(),                  0,          kNone,      -1},
    {769,   -1, "Track_4_Tool",         button(),                  0,          kNone,      -1},
    {770,   -1, "Track_5_Tool",         button(),                  0,          kNone,      -1},
    {771,   -1, "Track_6_Tool",         button(),                  0,          kNone,      -1},
    {772,   -1, "Track_7_Tool",         button(),                  0,          kNone,      -1},
    {773,   -1, "Track_8_Tool",         button(),                  0,          kNone,      -1},
};
// clang-format on
template <size_t Count>
constexpr std::array<ParameterEntry, Count> entriesOf(const Row (&rows)[Count])
{
    std::array<ParameterEntry, Count> entries{};
    for (size_t i = 0; i < entries.size(); ++i) {
        const Row& row = rows[i];
        entries[i] = {row.tag, row.fileKey, row.name, row.form.mapping, row.defaultRaw, row.saved,
            row.form.backing, row.patternSlot, row.unit};
    }
    return entries;
}

constexpr auto kEntries = entriesOf(kRows);

constexpr size_t countOf(Saved list)
{
    size_t count = 0;
    for (const ParameterEntry& entry : kEntries)
        count += entry.isIn(list) ? 1 : 0;
    return count;
}

constexpr bool tagsRise()
{
    for (size_t i = 1; i < kEntries.size(); ++i)
        if (kEntries[i - 1].tag >= kEntries[i].tag)
            return false;
    return kEntries.back().tag == kTagCount - 1;
}

constexpr bool hostTagsComeFirst()
{
    for (size_t i = 0; i < kHostParameters; ++i)
        if (kEntries[i].tag != static_cast<int>(i))
            return false;
    return true;
}

// A key and being saved go together, and no key is given twice.
constexpr bool keysAreUnique()
{
    for (size_t i = 0; i < kEntries.size(); ++i) {
        if ((kEntries[i].fileKey < 0) != (kEntries[i].saved == Saved::None))
            return false;
        for (size_t j = 0; j < i; ++j)
            if (kEntries[i].fileKey >= 0 && kEntries[i].fileKey == kEntries[j].fileKey)
                return false;
    }
    return true;
}

static_assert(tagsRise());
static_assert(hostTagsComeFirst());
static_assert(keysAreUnique());

template <Saved List>
constexpr auto listOf()
{
    std::array<const ParameterEntry*, countOf(List)> pointers{};
    size_t next = 0;
    for (const ParameterEntry& entry : kEntries)
        if (entry.isIn(List))
            pointers[next++] = &entry;
    return pointers;
}

constexpr auto kPresetList = listOf<Saved::Preset>();
constexpr auto kSynthList = listOf<Saved::PresetAndSynth>();
constexpr auto kSettingList = listOf<Saved::Setting>();

constexpr auto kHostList = [] {
    std::array<const ParameterEntry*, kHostParameters> pointers{};
    for (size_t i = 0; i < pointers.size(); ++i)
        pointers[i] = &kEntries[i];
    return pointers;
}();

constexpr auto kPlaces = [] {
    std::array<int16_t, kTagCount> places{};
    places.fill(-1);
    for (size_t i = 0; i < kEntries.size(); ++i)
        places[static_cast<size_t>(kEntries[i].tag)] = static_cast<int16_t>(i);
    return places;
}();

// Later rows win, so place 10 goes to the learn menu's tag and not to the first target list. A
// replay thereby leaves the first target as it is. Deliberate: old songs count on it.
constexpr auto kPatternTags = [] {
    std::array<int, kPatternValues> tags{};
    tags.fill(-1);
    for (const ParameterEntry& entry : kEntries)
        if (entry.patternSlot >= 0)
            tags[static_cast<size_t>(entry.patternSlot)] = entry.tag;
    return tags;
}();
static_assert(kPatternTags[10] == Tag::MidiLearn && kPatternTags[24] == -1);

} // namespace

std::span<const ParameterEntry> allParameters() { return kEntries; }
std::span<const ParameterEntry* const> presetParameters() { return kPresetList; }
std::span<const ParameterEntry* const> synthParameters() { return kSynthList; }
std::span<const ParameterEntry* const> settingParameters() { return kSettingList; }
std::span<const ParameterEntry* const> hostParameters() { return kHostList; }
std::span<const int, kPatternValues> patternParameterTags() { return kPatternTags; }

const ParameterEntry* parameterEntry(int tag)
{
    const int place = tag < 0 || tag >= kTagCount ? -1 : kPlaces[static_cast<size_t>(tag)];
    return place < 0 ? nullptr : &kEntries[static_cast<size_t>(place)];
}

const ParameterEntry* parameterOfKey(int fileKey)
{
    if (fileKey < 0)
        return nullptr;
    for (const ParameterEntry& entry : kEntries)
        if (entry.fileKey == fileKey)
            return &entry;
    return nullptr;
}

int patternSlot(int tag)
{
    const ParameterEntry* entry = parameterEntry(tag);
    return entry ? entry->patternSlot : -1;
}

} // namespace ormund
