#include "host/plugin/KWUniClient.h"

#include "data/parameters/Tags.h"
#include "host/plugin/WrapperPort.h"

#include <algorithm>
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
    : KWPluginBase(master, kPrograms, kHostParameters), sequencer(loops)
{
    setNumInputs(kInputs);
    setNumOutputs(kOutputs);
    setUniqueID(kUniqueId);
    programsAreChunks();
    canProcessReplacing();
    isSynth();
    startSettings();
    sequencer.setPrograms(&presets.programs());
}

KWUniClient::~KWUniClient() = default;

void KWUniClient::open() { needIdle(); }

VstInt32 KWUniClient::fxIdle()
{
    runDeferred();
    return 1;
}

// Some hosts suspend beside a running block.
void KWUniClient::suspend() { sequencer.dropEvents(); }

void KWUniClient::resume() { wantEvents(); }

void KWUniClient::setSampleRate(float rate)
{
    if (sequencer.setSampleRate(rate))
        KWPluginBase::setSampleRate(rate);
}

void KWUniClient::setParameter(VstInt32 index, float value)
{
    sequencer.setParameter(index, value);
    // A preset button acts at once, but files are never read inside a block.
    if (isPresetButton(index) && !isAudioThread())
        runDeferred();
}

void KWUniClient::setParameterAutomated(VstInt32 index, float value)
{
    if (index >= 0 && index < kHostParameters)
        KWPluginBase::setParameterAutomated(index, value);
}

float KWUniClient::getParameter(VstInt32 index)
{
    if (index < 0 || index >= kHostParameters)
        return 0.0f;
    return parameters.raw(index);
}

void KWUniClient::processReplacing(float** /*inputs*/, float** outputs, VstInt32 sampleFrames)
{
    if (wrapperMode())
        clearOutputs(outputs, sampleFrames);
    else
        processBlock(outputs, sampleFrames);
}

void KWUniClient::processBlock(float** outputs, int sampleFrames) noexcept ORMUND_NONBLOCKING
{
    const ThreadScope blockRuns(blockThread);
    if (!wrapperMode() && rendersOffline == 0
        && getCurrentProcessLevel() == kVstProcessLevelOffline)
        return;

    const VstTimeInfo* record = wrapperMode() ? wrapper->timeRecord() : getTimeInfo(kTimeRequest);
    if (record)
        blockSong = blockTransport(*record);
    const auto events = sequencer.process(record ? &blockSong : nullptr, {},
        outputs ? outputs[0] : nullptr, outputs ? outputs[1] : nullptr, sampleFrames);
    if (!events.empty())
        sendOutgoing(events, record ? blockSong.position : 0);
}

void KWUniClient::sendOutgoing(std::span<const MidiEvent> events, double songPosition)
{
    if (!wrapperMode()) {
        sendVstEventsToHost(sent.fill(events));
    } else if (wrapper->hasMidiOutput()) {
        for (const MidiEvent& event : events)
            wrapper->midiOut(effectEvent(event), songPosition);
    }
}

VstInt32 KWUniClient::processEvents(VstEvents* events)
{
    if (!wrapperMode())
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

} // namespace ormund
