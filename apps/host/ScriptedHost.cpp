#include "apps/host/ScriptedHost.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <dlfcn.h>

namespace {

// The instance that is being made calls its host before it can be told apart from others.
thread_local ScriptedHost* hostInConstruction = nullptr;

#if defined(__SANITIZE_ADDRESS__)
// What libraries keep for good would count as lost once they are unloaded.
constexpr int kStaysLoaded = RTLD_NODELETE;
#else
constexpr int kStaysLoaded = 0;
#endif

constexpr char kHostVendor[] = "Kelda Works";
constexpr char kHostProduct[] = "Scripted Host";
constexpr int kMostFaults = 20;
constexpr size_t kPointer = sizeof(void*); // a place in a list of events
constexpr float kGuard = 12345.0f;         // behind every output buffer

} // namespace

ScriptedHost::~ScriptedHost()
{
    close();
    if (module)
        dlclose(module);
}

bool ScriptedHost::load(const std::string& path, const Setup& wanted)
{
    module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | kStaysLoaded);
    if (!module) {
        problem = dlerror();
        return false;
    }
    void* entry = dlsym(module, "VSTPluginMain");
    if (!entry) {
        problem = path + " is no plug-in: it exports no VSTPluginMain";
        return false;
    }
    return begin(reinterpret_cast<AEffect* (*)(audioMasterCallback)>(entry), wanted);
}

bool ScriptedHost::attach(AEffect* (*entry)(audioMasterCallback), const Setup& wanted)
{
    return begin(entry, wanted);
}

bool ScriptedHost::begin(AEffect* (*entry)(audioMasterCallback), const Setup& wanted)
{
    setup = wanted;
    time.sampleRate = setup.sampleRate;
    time.tempo = setup.tempo;
    time.timeSigNumerator = setup.beatsPerBar;
    time.timeSigDenominator = 4;

    hostInConstruction = this;
    instance = entry(callback);
    hostInConstruction = nullptr;
    if (!instance || instance->magic != kEffectMagic) {
        problem = "the module made no instance";
        instance = nullptr;
        return false;
    }
    instance->resvd1 = reinterpret_cast<VstIntPtr>(this);
    dispatch(effOpen);
    dispatch(effSetSampleRate, 0, 0, nullptr, setup.sampleRate);
    dispatch(effSetBlockSize, 0, setup.blockSize);
    dispatch(effMainsChanged, 0, 1);
    dispatch(effStartProcess);
    return true;
}

void ScriptedHost::close()
{
    if (!instance)
        return;
    dispatch(effStopProcess);
    dispatch(effMainsChanged, 0, 0);
    dispatch(effClose);
    instance = nullptr;
}

VstIntPtr ScriptedHost::dispatch(
    VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    return instance->dispatcher(instance, opcode, index, value, ptr, opt);
}

std::string ScriptedHost::text(VstInt32 opcode, VstInt32 index, VstIntPtr value)
{
    char answered[256] = {};
    dispatch(opcode, index, value, answered);
    answered[255] = 0;
    return answered;
}

void ScriptedHost::setSampleRate(float hertz)
{
    setup.sampleRate = hertz;
    time.sampleRate = hertz;
    dispatch(effStopProcess);
    dispatch(effMainsChanged, 0, 0);
    dispatch(effSetSampleRate, 0, 0, nullptr, hertz);
    dispatch(effMainsChanged, 0, 1);
    dispatch(effStartProcess);
}

void ScriptedHost::setCycle(double startBeat, double endBeat)
{
    time.cycleStartPos = startBeat;
    time.cycleEndPos = endBeat;
    cycling = endBeat > startBeat;
}

void ScriptedHost::send(std::array<uint8_t, 3> bytes, int frame)
{
    VstMidiEvent event{};
    event.type = kVstMidiType;
    event.byteSize = sizeof event;
    event.deltaFrames = frame;
    std::copy(bytes.begin(), bytes.end(), event.midiData);
    pending.push_back(event);
}

void ScriptedHost::run(int64_t frames)
{
    while (frames > 0) {
        const int block = static_cast<int>(std::min<int64_t>(frames, setup.blockSize));
        runBlock(block);
        frames -= block;
    }
}

void ScriptedHost::runBlock(int frames, bool withRightOutput)
{
    const auto size = static_cast<size_t>(std::max(frames, 0));
    leftBlock.assign(size + 1, kGuard);
    rightBlock.assign(size + 1, kGuard);
    float* outputs[2] = {leftBlock.data(), withRightOutput ? rightBlock.data() : nullptr};
    float* inputs[2] = {nullptr, nullptr}; // an instrument reads none

    blockFrames = frames;
    refreshTime();
    deliverEvents();
    inBlock = true;
    instance->processReplacing(instance, inputs, outputs, frames);
    inBlock = false;

    if (leftBlock.back() != kGuard || rightBlock.back() != kGuard)
        fault("wrote behind an output buffer");
    leftBlock.pop_back();
    rightBlock.pop_back();
    if (!keepOutput) {
        left.clear();
        right.clear();
    }
    left.insert(left.end(), leftBlock.begin(), leftBlock.end());
    right.insert(right.end(), rightBlock.begin(), rightBlock.end());
    rollOn(std::max(frames, 0));
}

void ScriptedHost::refreshTime()
{
    if (time.tempo != anchor.tempo || time.ppqPos != anchor.expected || playing != wasPlaying)
        anchor = {framesRun, rolledBeats, time.ppqPos, time.tempo, time.ppqPos};
    const double beatsPerBar = setup.beatsPerBar;
    time.samplePos = static_cast<double>(framesRun);
    time.barStartPos = std::floor(time.ppqPos / beatsPerBar) * beatsPerBar;
    time.flags = kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstTimeSigValid;
    if (playing)
        time.flags |= kVstTransportPlaying;
    if (cycling)
        time.flags |= kVstTransportCycleActive | kVstCyclePosValid;
    if (playing != wasPlaying)
        time.flags |= kVstTransportChanged;
    wasPlaying = playing;
}

void ScriptedHost::deliverEvents()
{
    if (pending.empty())
        return;
    std::stable_sort(pending.begin(), pending.end(),
        [](const auto& a, const auto& b) { return a.deltaFrames < b.deltaFrames; });
    pendingList.assign(sizeof(VstEvents) + pending.size() * kPointer, 0);
    auto* list = reinterpret_cast<VstEvents*>(pendingList.data());
    list->numEvents = static_cast<VstInt32>(pending.size());
    unsigned char* places = pendingList.data() + offsetof(VstEvents, events);
    for (size_t i = 0; i < pending.size(); ++i) {
        const VstMidiEvent* event = &pending[i];
        std::memcpy(places + i * kPointer, &event, kPointer);
    }
    dispatch(effProcessEvents, 0, 0, list);
    pending.clear();
}

void ScriptedHost::rollOn(int frames)
{
    framesRun += frames;
    ++blocks;
    const double beats = static_cast<double>(framesRun - anchor.frame) * beatsPerFrame();
    rolledBeats = anchor.rolled + beats;
    if (!playing)
        return;
    time.ppqPos = anchor.expected = anchor.position + beats;
    if (cycling && time.ppqPos >= time.cycleEndPos)
        time.ppqPos = time.cycleStartPos + (time.ppqPos - time.cycleEndPos);
}

void ScriptedHost::takeEvents(const VstEvents* list)
{
    if (!list || list->numEvents < 0) {
        fault("sent no list of events");
        return;
    }
    if (!inBlock)
        fault("sent events outside a block");
    VstInt32 earliest = 0;
    const unsigned char* places =
        reinterpret_cast<const unsigned char*>(list) + offsetof(VstEvents, events);
    for (VstInt32 i = 0; i < list->numEvents; ++i) {
        const VstMidiEvent* event = nullptr;
        std::memcpy(&event, places + static_cast<size_t>(i) * kPointer, kPointer);
        if (!event || event->type != kVstMidiType || event->byteSize != sizeof(VstMidiEvent)) {
            fault("sent an event that is no MIDI message");
            continue;
        }
        const VstInt32 delta = event->deltaFrames;
        if (delta < earliest || delta >= blockFrames)
            fault("sent an event at frame " + std::to_string(delta) + " of a block of "
                + std::to_string(blockFrames));
        earliest = std::max(earliest, delta);
        const unsigned char* bytes = event->midiData;
        if (bytes[0] < 0x80 || bytes[1] > 127 || bytes[2] > 127)
            fault("sent bytes that are no MIDI message");
        events.push_back({framesRun + delta, rolledBeats + delta * beatsPerFrame(),
            {bytes[0], bytes[1], bytes[2]}, blocks});
    }
}

VstIntPtr ScriptedHost::callback(
    AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    ScriptedHost* host = effect ? reinterpret_cast<ScriptedHost*>(effect->resvd1) : nullptr;
    if (!host)
        host = hostInConstruction;
    return host ? host->answer(opcode, index, value, ptr, opt) : 0;
}

VstIntPtr ScriptedHost::answer(
    VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    switch (opcode) {
    case audioMasterAutomate:
    case audioMasterBeginEdit:
    case audioMasterEndEdit:
        automation.push_back({opcode, index, opt});
        return 0;
    case audioMasterVersion:
        return kVstVersion;
    case audioMasterWantMidi:
        ++wantMidiCalls;
        return 1;
    case audioMasterGetTime:
        timeFilter = static_cast<VstInt32>(value);
        return givesTime ? reinterpret_cast<VstIntPtr>(&time) : 0;
    case audioMasterProcessEvents:
        takeEvents(static_cast<const VstEvents*>(ptr));
        return 1;
    case audioMasterGetSampleRate:
        return static_cast<VstIntPtr>(setup.sampleRate);
    case audioMasterGetBlockSize:
        return setup.blockSize;
    case audioMasterGetCurrentProcessLevel:
        return processLevel;
    case audioMasterGetVendorString:
    case audioMasterGetProductString:
        if (!ptr)
            return 0;
        std::strcpy(static_cast<char*>(ptr),
            opcode == audioMasterGetVendorString ? kHostVendor : kHostProduct);
        return 1;
    case audioMasterCanDo: {
        const std::string_view asked = ptr ? static_cast<const char*>(ptr) : "";
        return asked == "sendVstEvents" || asked == "sendVstMidiEvent"
            || asked == "receiveVstEvents" || asked == "receiveVstMidiEvent"
            || asked == "sendVstTimeInfo";
    }
    default:
        return 0;
    }
}

void ScriptedHost::fault(std::string line)
{
    if (faults.size() < kMostFaults)
        faults.push_back(std::move(line));
}
