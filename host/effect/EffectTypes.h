// The binary interface between a plug-in module and its host: records, opcodes and flags of the
// VST 2.4 convention, laid out for x86-64 as every host lays them out. The names are the ones that
// plug-in programmers know.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ormund {

using VstInt16 = int16_t;
using VstInt32 = int32_t;
using VstIntPtr = intptr_t;

struct AEffect;

using audioMasterCallback = VstIntPtr (*)(
    AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);
using AEffectDispatcherProc = audioMasterCallback;
using AEffectProcessProc = void (*)(
    AEffect* effect, float** inputs, float** outputs, VstInt32 sampleFrames);
using AEffectProcessDoubleProc = void (*)(
    AEffect* effect, double** inputs, double** outputs, VstInt32 sampleFrames);
using AEffectSetParameterProc = void (*)(AEffect* effect, VstInt32 index, float value);
using AEffectGetParameterProc = float (*)(AEffect* effect, VstInt32 index);

// "KWOR" as a number is fourCharacters('K', 'W', 'O', 'R'): the first letter is the highest byte.
constexpr VstInt32 fourCharacters(char a, char b, char c, char d)
{
    return static_cast<VstInt32>(static_cast<uint32_t>(static_cast<unsigned char>(a)) << 24
        | static_cast<uint32_t>(static_cast<unsigned char>(b)) << 16
        | static_cast<uint32_t>(static_cast<unsigned char>(c)) << 8
        | static_cast<uint32_t>(static_cast<unsigned char>(d)));
}

constexpr VstInt32 kEffectMagic = fourCharacters('V', 's', 't', 'P');
constexpr VstInt32 kVstVersion = 2400;

// Room for a text with its closing zero, as hosts reserve it at least.
constexpr int kVstMaxProgNameLen = 24;
constexpr int kVstMaxParamStrLen = 24;
constexpr int kVstMaxVendorStrLen = 64;
constexpr int kVstMaxProductStrLen = 64;
constexpr int kVstMaxEffectNameLen = 32;
constexpr int kVstMaxLabelLen = 64;
constexpr int kVstMaxShortLabelLen = 8;
constexpr int kVstMaxCategLabelLen = 24;

enum VstAEffectFlags : VstInt32 {
    effFlagsHasEditor = 1 << 0,
    effFlagsCanReplacing = 1 << 4,
    effFlagsProgramChunks = 1 << 5,
    effFlagsIsSynth = 1 << 8,
    effFlagsNoSoundInStop = 1 << 9,
    effFlagsCanDoubleReplacing = 1 << 12,
};

// One plug-in instance as the host sees it. The host reads the numbers and calls the functions;
// only the plug-in writes, and `user` belongs to the host.
struct AEffect {
    VstInt32 magic; // kEffectMagic
    AEffectDispatcherProc dispatcher;
    AEffectProcessProc process; // the old accumulating form; ours replaces
    AEffectSetParameterProc setParameter;
    AEffectGetParameterProc getParameter;
    VstInt32 numPrograms;
    VstInt32 numParams;
    VstInt32 numInputs;
    VstInt32 numOutputs;
    VstInt32 flags;
    VstIntPtr resvd1; // hosts keep things here
    VstIntPtr resvd2;
    VstInt32 initialDelay; // latency, samples
    VstInt32 realQualities;
    VstInt32 offQualities;
    float ioRatio;
    void* object; // the AudioEffect
    void* user;
    VstInt32 uniqueID;
    VstInt32 version;
    AEffectProcessProc processReplacing;
    AEffectProcessDoubleProc processDoubleReplacing;
    char future[56];
};

enum VstTimeInfoFlags : VstInt32 {
    kVstTransportChanged = 1 << 0,
    kVstTransportPlaying = 1 << 1,
    kVstTransportCycleActive = 1 << 2,
    kVstTransportRecording = 1 << 3,
    kVstAutomationWriting = 1 << 6,
    kVstAutomationReading = 1 << 7,
    kVstNanosValid = 1 << 8,
    kVstPpqPosValid = 1 << 9,
    kVstTempoValid = 1 << 10,
    kVstBarsValid = 1 << 11,
    kVstCyclePosValid = 1 << 12,
    kVstTimeSigValid = 1 << 13,
    kVstSmpteValid = 1 << 14,
    kVstClockValid = 1 << 15,
};

// Where the host's transport stands at the first sample of a block. Positions are quarter notes.
struct VstTimeInfo {
    double samplePos;
    double sampleRate;
    double nanoSeconds;
    double ppqPos;
    double tempo; // beats per minute
    double barStartPos;
    double cycleStartPos;
    double cycleEndPos;
    VstInt32 timeSigNumerator;
    VstInt32 timeSigDenominator;
    VstInt32 smpteOffset;
    VstInt32 smpteFrameRate;
    VstInt32 samplesToNextClock;
    VstInt32 flags; // VstTimeInfoFlags
};

enum VstEventTypes : VstInt32 { kVstMidiType = 1, kVstSysExType = 6 };

// The head that every event has.
struct VstEvent {
    VstInt32 type;
    VstInt32 byteSize;
    VstInt32 deltaFrames; // samples from the block's start
    VstInt32 flags;
    char data[16];
};

struct VstMidiEvent {
    VstInt32 type;     // kVstMidiType
    VstInt32 byteSize; // 32
    VstInt32 deltaFrames;
    VstInt32 flags;
    VstInt32 noteLength;
    VstInt32 noteOffset;
    unsigned char midiData[4]; // one to three bytes, then zeros
    char detune;
    char noteOffVelocity;
    char reserved1;
    char reserved2;
};

struct VstMidiSysexEvent {
    VstInt32 type; // kVstSysExType
    VstInt32 byteSize;
    VstInt32 deltaFrames;
    VstInt32 flags;
    VstInt32 dumpBytes;
    VstIntPtr resvd1;
    char* sysexDump;
    VstIntPtr resvd2;
};

// A list of events. The array goes on for `numEvents` pointers, whatever its declared length.
struct VstEvents {
    VstInt32 numEvents;
    VstIntPtr reserved;
    VstEvent* events[2];
};

// The same list with room for `Room` events; `list()` is what is passed on.
template <int Room>
struct VstEventList {
    static_assert(Room >= 2);
    VstInt32 numEvents = 0;
    VstIntPtr reserved = 0;
    VstEvent* events[Room] = {};

    VstEvents* list() { return reinterpret_cast<VstEvents*>(this); }
};

struct ERect {
    VstInt16 top;
    VstInt16 left;
    VstInt16 bottom;
    VstInt16 right;
};

enum VstParameterFlags : VstInt32 {
    kVstParameterIsSwitch = 1 << 0,
    kVstParameterUsesIntegerMinMax = 1 << 1,
    kVstParameterUsesFloatStep = 1 << 2,
    kVstParameterUsesIntStep = 1 << 3,
    kVstParameterSupportsDisplayIndex = 1 << 4,
    kVstParameterSupportsDisplayCategory = 1 << 5,
    kVstParameterCanRamp = 1 << 6,
};

struct VstParameterProperties {
    float stepFloat;
    float smallStepFloat;
    float largeStepFloat;
    char label[kVstMaxLabelLen];
    VstInt32 flags; // VstParameterFlags
    VstInt32 minInteger;
    VstInt32 maxInteger;
    VstInt32 stepInteger;
    VstInt32 largeStepInteger;
    char shortLabel[kVstMaxShortLabelLen];
    VstInt16 displayIndex;
    VstInt16 category;
    VstInt16 numParametersInCategory;
    VstInt16 reserved;
    char categoryLabel[kVstMaxCategLabelLen];
    char future[16];
};

enum VstPinPropertiesFlags : VstInt32 {
    kVstPinIsActive = 1 << 0,
    kVstPinIsStereo = 1 << 1,
    kVstPinUseSpeaker = 1 << 2,
};

struct VstPinProperties {
    char label[kVstMaxLabelLen];
    VstInt32 flags; // VstPinPropertiesFlags
    VstInt32 arrangementType;
    char shortLabel[kVstMaxShortLabelLen];
    char future[48];
};

enum VstPlugCategory : VstInt32 { kPlugCategUnknown = 0, kPlugCategEffect, kPlugCategSynth };

enum VstProcessLevels : VstInt32 {
    kVstProcessLevelUnknown = 0,
    kVstProcessLevelUser,
    kVstProcessLevelRealtime,
    kVstProcessLevelPrefetch,
    kVstProcessLevelOffline,
};

enum VstVirtualKey : unsigned char {
    VKEY_BACK = 1,
    VKEY_TAB,
    VKEY_CLEAR,
    VKEY_RETURN,
    VKEY_PAUSE,
    VKEY_ESCAPE,
    VKEY_SPACE,
    VKEY_NEXT,
    VKEY_END,
    VKEY_HOME,
    VKEY_LEFT,
    VKEY_UP,
    VKEY_RIGHT,
    VKEY_DOWN,
    VKEY_PAGEUP,
    VKEY_PAGEDOWN,
    VKEY_SELECT,
    VKEY_PRINT,
    VKEY_ENTER,
    VKEY_SNAPSHOT,
    VKEY_INSERT,
    VKEY_DELETE,
    VKEY_HELP,
    VKEY_NUMPAD0,
    VKEY_F1 = 40,
    VKEY_F2,
    VKEY_F12 = 51,
    VKEY_NUMLOCK,
    VKEY_SCROLL,
    VKEY_SHIFT,
    VKEY_CONTROL,
    VKEY_ALT,
    VKEY_EQUALS,
};

enum VstModifierKey : unsigned char {
    MODIFIER_SHIFT = 1 << 0,
    MODIFIER_ALTERNATE = 1 << 1,
    MODIFIER_COMMAND = 1 << 2,
    MODIFIER_CONTROL = 1 << 3,
};

struct VstKeyCode {
    VstInt32 character;     // the character, or 0
    unsigned char virt;     // VstVirtualKey, or 0
    unsigned char modifier; // VstModifierKey bits
};

// What the host asks of the plug-in, with the arguments that carry something.
enum AEffectOpcodes : VstInt32 {
    effOpen = 0,
    effClose,           // the last call
    effSetProgram,      // value
    effGetProgram,      // answers
    effSetProgramName,  // ptr: text
    effGetProgramName,  // ptr: kVstMaxProgNameLen
    effGetParamLabel,   // index, ptr: kVstMaxParamStrLen
    effGetParamDisplay, // index, ptr: kVstMaxParamStrLen
    effGetParamName,    // index, ptr: kVstMaxParamStrLen
    effGetVu,
    effSetSampleRate, // opt: hertz
    effSetBlockSize,  // value: samples
    effMainsChanged,  // value: 1 resume, 0 suspend
    effEditGetRect,   // ptr: ERect**
    effEditOpen,      // ptr: the parent window
    effEditClose,
    effEditDraw,
    effEditMouse,
    effEditKey,
    effEditIdle,
    effEditTop,
    effEditSleep,
    effIdentify,
    effGetChunk,         // index: 1 program, 0 bank; ptr: void**; answers bytes
    effSetChunk,         // index, value: bytes, ptr
    effProcessEvents,    // ptr: VstEvents*
    effCanBeAutomated,   // index
    effString2Parameter, // index, ptr: text, or null to ask whether it could
    effGetNumProgramCategories,
    effGetProgramNameIndexed, // index, ptr: kVstMaxProgNameLen
    effCopyProgram,
    effConnectInput,
    effConnectOutput,
    effGetInputProperties,  // index, ptr: VstPinProperties*
    effGetOutputProperties, // index, ptr: VstPinProperties*
    effGetPlugCategory,
    effGetCurrentPosition,
    effGetDestinationBuffer,
    effOfflineNotify,
    effOfflinePrepare,
    effOfflineRun,
    effProcessVarIo,
    effSetSpeakerArrangement,
    effSetBlockSizeAndSampleRate, // value, opt
    effSetBypass,                 // value
    effGetEffectName,             // ptr: kVstMaxEffectNameLen
    effGetErrorText,
    effGetVendorString,  // ptr: kVstMaxVendorStrLen
    effGetProductString, // ptr: kVstMaxProductStrLen
    effGetVendorVersion,
    effVendorSpecific, // index, value, ptr, opt
    effCanDo,          // ptr: text; answers 1, 0 (don't know) or -1
    effGetTailSize,
    effIdle,
    effGetIcon,
    effSetViewPosition,
    effGetParameterProperties, // index, ptr: VstParameterProperties*
    effKeysRequired,
    effGetVstVersion,
    effEditKeyDown, // index: character, value: VstVirtualKey, opt: modifiers
    effEditKeyUp,
    effSetEditKnobMode, // value: 0 circular, 1 relative circular, 2 linear
    effGetMidiProgramName,
    effGetCurrentMidiProgram,
    effGetMidiProgramCategory,
    effHasMidiProgramsChanged,
    effGetMidiKeyName,
    effBeginSetProgram,
    effEndSetProgram,
    effGetSpeakerArrangement,
    effShellGetNextPlugin,
    effStartProcess,
    effStopProcess,
    effSetTotalSampleToProcess,
    effSetPanLaw,
    effBeginLoadBank,
    effBeginLoadProgram,
    effSetProcessPrecision,
    effGetNumMidiInputChannels,
    effGetNumMidiOutputChannels,
};

// What the plug-in asks of the host.
enum AudioMasterOpcodes : VstInt32 {
    audioMasterAutomate = 0, // index, opt: value
    audioMasterVersion,      // answers 2400
    audioMasterCurrentId,
    audioMasterIdle,
    audioMasterPinConnected,
    audioMasterWantMidi = 6,
    audioMasterGetTime,       // value: wanted VstTimeInfoFlags; answers a VstTimeInfo*
    audioMasterProcessEvents, // ptr: VstEvents*
    audioMasterSetTime,
    audioMasterTempoAt,
    audioMasterGetNumAutomatableParameters,
    audioMasterGetParameterQuantization,
    audioMasterIOChanged,
    audioMasterNeedIdle,
    audioMasterSizeWindow, // index: width, value: height
    audioMasterGetSampleRate,
    audioMasterGetBlockSize,
    audioMasterGetInputLatency,
    audioMasterGetOutputLatency,
    audioMasterGetPreviousPlug,
    audioMasterGetNextPlug,
    audioMasterWillReplaceOrAccumulate,
    audioMasterGetCurrentProcessLevel, // answers VstProcessLevels
    audioMasterGetAutomationState,
    audioMasterOfflineStart,
    audioMasterOfflineRead,
    audioMasterOfflineWrite,
    audioMasterOfflineGetCurrentPass,
    audioMasterOfflineGetCurrentMetaPass,
    audioMasterSetOutputSampleRate,
    audioMasterGetOutputSpeakerArrangement,
    audioMasterGetVendorString,  // ptr: kVstMaxVendorStrLen
    audioMasterGetProductString, // ptr: kVstMaxProductStrLen
    audioMasterGetVendorVersion,
    audioMasterVendorSpecific,
    audioMasterSetIcon,
    audioMasterCanDo, // ptr: text
    audioMasterGetLanguage,
    audioMasterOpenWindow,
    audioMasterCloseWindow,
    audioMasterGetDirectory,
    audioMasterUpdateDisplay,
    audioMasterBeginEdit, // index
    audioMasterEndEdit,   // index
    audioMasterOpenFileSelector,
    audioMasterCloseFileSelector,
    audioMasterEditFile,
    audioMasterGetChunkFile,
    audioMasterGetInputSpeakerArrangement,
};

static_assert(effGetNumMidiOutputChannels == 79 && audioMasterGetInputSpeakerArrangement == 49);
#if defined(__x86_64__)
static_assert(sizeof(AEffect) == 192 && offsetof(AEffect, uniqueID) == 112
    && offsetof(AEffect, processReplacing) == 120);
static_assert(sizeof(VstTimeInfo) == 88 && offsetof(VstTimeInfo, flags) == 84);
static_assert(sizeof(VstEvents) == 32 && offsetof(VstEvents, events) == 16);
static_assert(sizeof(VstMidiSysexEvent) == 48);
#endif
static_assert(sizeof(VstMidiEvent) == 32 && offsetof(VstMidiEvent, midiData) == 24);
static_assert(sizeof(VstEvent) == sizeof(VstMidiEvent));
static_assert(sizeof(VstParameterProperties) == 152 && sizeof(VstPinProperties) == 128);
static_assert(sizeof(ERect) == 8);

} // namespace ormund
