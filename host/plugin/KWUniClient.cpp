#include "host/plugin/KWUniClient.h"

#include "data/parameters/Tags.h"
#include "host/plugin/ScriptInterface.h"
#include "host/plugin/WrapperPort.h"

#include <algorithm>
#include <cstring>
#include <pthread.h>

namespace ormund {

namespace {
constexpr VstInt32 kTimeRequest =
    kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstCyclePosValid;
constexpr int kInputs = 2;
constexpr int kOutputs = 2;

void clearOutputs(float** outputs, int frames)
{
    if (!outputs || frames <= 0)
        return;
    for (int channel = 0; channel < kOutputs; ++channel)
        if (outputs[channel])
            std::fill_n(outputs[channel], frames, 0.0f);
}

bool isPresetButton(int tag)
{
    return tag == Tag::PreviousPreset || tag == Tag::NextPreset || tag == Tag::PreviousSynthPreset
        || tag == Tag::NextSynthPreset || tag == Tag::RandomPreset;
}

// Names the thread that runs a block, for as long as it does.
class ThreadScope {
public:
    explicit ThreadScope(Crossing<uintptr_t>& place) : cell(place)
    {
        cell = static_cast<uintptr_t>(pthread_self());
    }
    ~ThreadScope() { cell = uintptr_t{0}; }
    ThreadScope(const ThreadScope&) = delete;
    ThreadScope& operator=(const ThreadScope&) = delete;

private:
    Crossing<uintptr_t>& cell;
};
} // namespace

KWUniClient::KWUniClient(audioMasterCallback master, const AudioLoops& loops)
    : DescribedEffect(master, kPrograms, kHostParameters)
    , sequencer(loops)
    , library(sequencer, [this] { updateDisplay(); })
{
    setNumInputs(kInputs);
    setNumOutputs(kOutputs);
    setUniqueID(kUniqueId);
    programsAreChunks();
    canProcessReplacing();
    isSynth();
}

KWUniClient::~KWUniClient() = default;

void KWUniClient::open() { needIdle(); }

VstInt32 KWUniClient::fxIdle()
{
    library.runDeferred();
    return 1;
}

// Some hosts suspend beside a running block.
void KWUniClient::suspend() { sequencer.dropEvents(); }

void KWUniClient::resume() { wantEvents(); }

void KWUniClient::setSampleRate(float rate)
{
    if (sequencer.setSampleRate(rate))
        DescribedEffect::setSampleRate(rate);
}

void KWUniClient::setParameter(VstInt32 index, float value)
{
    sequencer.setParameter(index, value);
    // A preset button acts at once, but files are never read inside a block.
    if (isPresetButton(index) && blockThread != static_cast<uintptr_t>(pthread_self()))
        library.runDeferred();
}

float KWUniClient::getParameter(VstInt32 index)
{
    if (index < 0 || index >= kHostParameters)
        return 0.0f;
    return parameters.raw(index);
}

void KWUniClient::processReplacing(float** /*inputs*/, float** outputs, VstInt32 sampleFrames)
{
    if (wrapper)
        clearOutputs(outputs, sampleFrames);
    else
        processBlock(outputs, sampleFrames);
}

void KWUniClient::processBlock(float** outputs, int sampleFrames) noexcept ORMUND_NONBLOCKING
{
    const ThreadScope blockRuns(blockThread);
    if (!wrapper && !library.rendersOffline()
        && getCurrentProcessLevel() == kVstProcessLevelOffline)
        return;

    const VstTimeInfo* record = wrapper ? wrapper->timeRecord() : getTimeInfo(kTimeRequest);
    if (record)
        blockSong = blockTransport(*record);
    const auto events = sequencer.process(record ? &blockSong : nullptr, {},
        outputs ? outputs[0] : nullptr, outputs ? outputs[1] : nullptr, sampleFrames);
    if (!events.empty())
        sendOutgoing(events, record ? blockSong.position : 0);
}

void KWUniClient::sendOutgoing(std::span<const MidiEvent> events, double songPosition)
{
    if (!wrapper) {
        sendVstEventsToHost(sent.fill(events));
    } else if (wrapper->hasMidiOutput()) {
        for (const MidiEvent& event : events)
            wrapper->midiOut(effectEvent(event), songPosition);
    }
}

VstInt32 KWUniClient::processEvents(VstEvents* events)
{
    if (!wrapper)
        queueEvents(events);
    return 1;
}

void KWUniClient::queueEvents(const VstEvents* events) noexcept ORMUND_NONBLOCKING
{
    if (!events)
        return;
    // As many as it says, whatever the record's own two places.
    const VstEvent* const* list = events->events;
    for (VstInt32 i = 0; i < events->numEvents; ++i) {
        const VstEvent* event = list[i];
        if (!event || event->type != kVstMidiType)
            continue;
        const MidiEvent midi = midiEvent(*reinterpret_cast<const VstMidiEvent*>(event));
        sequencer.queue({&midi, 1});
    }
}

// --- the host's state --------------------------------------------------------------------------

VstInt32 KWUniClient::getChunk(void** data, bool /*isPreset*/)
{
    library.runDeferred();
    // One form for a bank and for a program: the present state.
    const KWChunk& chunk = presets.state();
    *data = const_cast<void*>(chunk.bytes());
    return static_cast<VstInt32>(chunk.byteCount());
}

VstInt32 KWUniClient::setChunk(void* data, VstInt32 byteSize, bool /*isPreset*/)
{
    if (!data || byteSize <= 0)
        return 0;
    return library.loadState(data, static_cast<size_t>(byteSize)) ? 1 : 0;
}

// --- programs: places in the tree of presets ----------------------------------------------------

VstInt32 KWUniClient::getProgram() { return presets.program(); }

void KWUniClient::setProgram(VstInt32 program) { library.setProgram(program); }

void KWUniClient::setProgramName(char* name)
{
    if (name)
        library.setName({name, strnlen(name, kVstMaxProgNameLen)});
}

void KWUniClient::getProgramName(char* name)
{
    copyEffectText(name, presets.name(PresetKind::Global).c_str(), kVstMaxProgNameLen);
}

bool KWUniClient::getProgramNameIndexed(VstInt32 /*category*/, VstInt32 index, char* text)
{
    const std::string name = presets.programName(index);
    copyEffectText(text, name.c_str(), kVstMaxProgNameLen);
    return !name.empty();
}

VstIntPtr KWUniClient::vendorSpecific(VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    return index == kUniqueId ? runScript(sequencer, library, value, ptr, opt) : 0;
}

} // namespace ormund
