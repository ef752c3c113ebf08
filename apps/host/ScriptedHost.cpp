#include "apps/host/ScriptedHost.h"

#include <algorithm>

namespace ormund {

namespace {

constexpr int kMostFaults = 20;
constexpr float kGuard = 12345.0f; // behind every output buffer

} // namespace

bool ScriptedHost::load(const std::string& path, const Setup& setup)
{
    Entry entry = loadModule(path);
    return entry && attach(entry, setup);
}

bool ScriptedHost::attach(Entry entry, const Setup& setup)
{
    transport.setUp(setup.sampleRate, setup.tempo, setup.beatsPerBar);
    return open(entry, setup.sampleRate, setup.blockSize);
}

void ScriptedHost::setSampleRate(float hertz)
{
    transport.setSampleRate(hertz);
    changeSampleRate(hertz);
}

void ScriptedHost::send(std::array<uint8_t, 3> bytes, int frame)
{
    if (pending.count() == pending.room())
        pending.reserve(2 * pending.room() + 16);
    pending.add(bytes, frame);
}

void ScriptedHost::run(int64_t frames)
{
    while (frames > 0) {
        const int next = static_cast<int>(std::min<int64_t>(frames, block));
        runBlock(next);
        frames -= next;
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
    transport.beginBlock();
    if (VstEvents* list = pending.list())
        dispatch(effProcessEvents, 0, 0, list);
    pending.clear();
    inBlock = true;
    effect()->processReplacing(effect(), inputs, outputs, frames);
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
    transport.endBlock(std::max(frames, 0));
    ++blocks;
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
    for (VstInt32 i = 0; i < list->numEvents; ++i) {
        const auto* event = reinterpret_cast<const VstMidiEvent*>(eventAt(*list, i));
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
        events.push_back({transport.frames() + delta, rolled() + delta * beatsPerFrame(),
            {bytes[0], bytes[1], bytes[2]}, blocks});
    }
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
    case audioMasterWantMidi:
        ++wantMidiCalls;
        return 1;
    case audioMasterGetTime:
        timeFilter = static_cast<VstInt32>(value);
        return givesTime ? reinterpret_cast<VstIntPtr>(&transport.time) : 0;
    case audioMasterProcessEvents:
        takeEvents(static_cast<const VstEvents*>(ptr));
        return 1;
    case audioMasterGetCurrentProcessLevel:
        return processLevel;
    case audioMasterSizeWindow:
        wantedWidth = index;
        wantedHeight = static_cast<int>(value);
        return sizesWindows;
    default:
        return HostedEffect::answer(opcode, index, value, ptr, opt);
    }
}

void ScriptedHost::fault(std::string line)
{
    if (faults.size() < kMostFaults)
        faults.push_back(std::move(line));
}

} // namespace ormund
