#include "host/formats/KWFormatWrapper.h"

#include "base/Product.h"
#include "host/effect/AEffEditor.h"
#include "host/formats/Base64.h"
#include "host/formats/FormatParameters.h"
#include "host/vst2/EditorFactory.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace ormund {

namespace {
constexpr const char* kCapabilities[] = {"sendVstMidiEvent", "receiveVstMidiEvent", "sizeWindow"};
constexpr float kSameValue = 2e-6f; // texts of six digits
constexpr int kAnyFrame = std::numeric_limits<int>::max();
constexpr int kNoteOn = 0x90;
constexpr int kNoteOff = 0x80;

// An engine calls its host from its constructor, before anyone can know it by its handle.
thread_local KWFormatWrapper* underConstruction = nullptr;

VstMidiEvent midiEvent(int frame)
{
    VstMidiEvent event{};
    event.type = kVstMidiType;
    event.byteSize = sizeof(VstMidiEvent);
    event.deltaFrames = frame;
    return event;
}
} // namespace

KWFormatWrapper::KWFormatWrapper(Format& format, double rate) : outside(format), sampleRate(rate)
{
    underConstruction = this;
    engine = std::make_unique<KWUniClient>(callback);
    engine->getAeffect()->resvd1 = reinterpret_cast<VstIntPtr>(this);
    underConstruction = nullptr;
    engine->setWrapperPort(this);
    setSampleRate(rate);
    for (int index = 0; index < kHostParameters; ++index)
        hostKnows(index, parameter(index));
}

KWFormatWrapper::~KWFormatWrapper()
{
    DeferredWork::remove(*this);
    closeEditor();
    engine->setEditor(nullptr); // it reads the engine to its end
}

void KWFormatWrapper::resume()
{
    engine->resume();
    DeferredWork::add(*this);
}

void KWFormatWrapper::suspend()
{
    DeferredWork::remove(*this);
    engine->suspend();
}

// While the editor shows, its idle does it.
void KWFormatWrapper::doDeferredWork()
{
    const std::unique_lock hold(screen, std::try_to_lock);
    if (hold && !window)
        engine->library.runDeferred();
}

void KWFormatWrapper::setSampleRate(double hertz)
{
    const std::lock_guard hold(screen);
    sampleRate = hertz;
    engine->setSampleRate(static_cast<float>(hertz));
}

float KWFormatWrapper::parameter(int index) const
{
    const float raw = engine->getParameter(index);
    const ParameterEntry* entry = parameterEntry(index);
    return entry && entry->isButton() ? (raw >= kOnFrom ? 1.0f : 0.0f) : raw;
}

bool KWFormatWrapper::isSameValue(float a, float b) { return std::abs(a - b) <= kSameValue; }

void KWFormatWrapper::setParameter(int index, float value)
{
    const ParameterEntry* entry = parameterEntry(index);
    if (entry && entry->isButton())
        value = value >= kOnFrom ? 1.0f : 0.0f;
    hostKnows(index, value);
    if (!isSameValue(parameter(index), value))
        engine->setParameter(index, value);
}

float KWFormatWrapper::value(int number) const
{
    return number == kBypassNumber ? (isBypassed() ? 1.0f : 0.0f) : parameter(tagOfNumber(number));
}

void KWFormatWrapper::setValue(int number, float value)
{
    if (number == kBypassNumber)
        setBypass(value >= kOnFrom);
    else if (isFormatParameter(number))
        setParameter(tagOfNumber(number), value);
}

void KWFormatWrapper::queueMidi(int frame, const uint8_t* bytes, int size)
{
    if (size < 1 || size > 3)
        return;
    Message message{frame, {}};
    std::copy_n(bytes, size, message.bytes.begin());
    messages.add(message);
}

void KWFormatWrapper::queueParameter(int frame, int index, float value)
{
    if (!changes.add({frame, index, value}))
        setParameter(index, value); // the last one of many still stands
}

void KWFormatWrapper::run(const SongPlace* place, float** outputs, int frames)
{
    const bool bypassed = isBypassed();
    if (bypassed && !silent)
        endSoundingNotes();
    silent = bypassed;
    for (int from = 0; from < frames;) {
        applyChanges(from);
        const int to = nextCut(from, frames);
        runPart(place, outputs, from, to - from);
        from = to;
    }
    // What was meant for a place behind the block's end.
    applyChanges(kAnyFrame);
    sendMessages(0, kAnyFrame);
    for (int channel = 0; silent && channel < 2; ++channel)
        if (outputs[channel])
            std::fill_n(outputs[channel], frames, 0.0f);
}

void KWFormatWrapper::applyChanges(int until)
{
    while (const Change* change = changes.takeUntil(until))
        setParameter(change->index, change->value);
}

// The block is cut at the tick that a change acts at: nothing between two ticks reads a parameter.
int KWFormatWrapper::nextCut(int from, int frames) const
{
    int to = frames;
    if (const Change* change = changes.next()) {
        const int tick = from + kTickSamples - engine->info.controlCounter;
        const int ticks = std::max(change->frame - tick + kTickSamples - 1, 0) / kTickSamples;
        to = std::min(to, tick + ticks * kTickSamples);
    }
    return std::max(to, from + 1);
}

void KWFormatWrapper::sendMessages(int from, int until)
{
    while (const Message* message = messages.takeUntil(until)) {
        VstMidiEvent event = midiEvent(until == kAnyFrame ? 0 : std::max(message->frame - from, 0));
        std::copy(message->bytes.begin(), message->bytes.end(), event.midiData);
        VstEventList<2> list;
        list.numEvents = 1;
        list.events[0] = reinterpret_cast<VstEvent*>(&event);
        engine->queueEvents(list.list());
    }
}

void KWFormatWrapper::runPart(const SongPlace* place, float** outputs, int from, int frames)
{
    partStart = from;
    sendMessages(from, from + frames - 1);
    const SongPlace here = place ? place->after(from, sampleRate) : SongPlace();
    fillTime(place ? &here : nullptr);
    float* parts[2] = {};
    for (int channel = 0; channel < 2; ++channel)
        parts[channel] = outputs[channel] ? outputs[channel] + from : nullptr;
    engine->processBlock(parts, frames);
    partStart = 0;
}

void KWFormatWrapper::fillTime(const SongPlace* place)
{
    hasTime = place != nullptr;
    if (!hasTime)
        return;
    time = {};
    time.sampleRate = sampleRate;
    time.ppqPos = place->quarters;
    time.samplePos = place->quarters * 60.0 / place->tempo * sampleRate;
    time.barStartPos = place->barStart;
    time.tempo = place->tempo;
    time.timeSigNumerator = place->numerator;
    time.timeSigDenominator = place->denominator;
    time.flags = kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstTimeSigValid;
    if (place->playing)
        time.flags |= kVstTransportPlaying;
    if (place->loopOn) {
        time.cycleStartPos = place->loopStart;
        time.cycleEndPos = place->loopEnd;
        time.flags |= kVstCyclePosValid | kVstTransportCycleActive;
    }
}

void KWFormatWrapper::midiOut(const VstMidiEvent& event, double /*songPosition*/)
{
    const int kind = event.midiData[0] & 0xF0;
    uint8_t& count = sounding[event.midiData[1] & 127];
    if (kind == kNoteOn && event.midiData[2] > 0)
        ++count;
    else if ((kind == kNoteOn || kind == kNoteOff) && count > 0)
        --count;
    VstMidiEvent placed = event;
    placed.deltaFrames += partStart;
    outside.midiOut(placed);
}

void KWFormatWrapper::endSoundingNotes()
{
    for (size_t note = 0; note < sounding.size(); ++note) {
        for (; sounding[note] > 0; --sounding[note]) {
            VstMidiEvent event = midiEvent(0);
            event.midiData[0] = kNoteOn;
            event.midiData[1] = static_cast<unsigned char>(note);
            outside.midiOut(event);
        }
    }
}

std::string KWFormatWrapper::state()
{
    const std::lock_guard hold(screen);
    void* data = nullptr;
    const VstInt32 bytes = engine->getChunk(&data, false);
    return toBase64({static_cast<const uint8_t*>(data), static_cast<size_t>(bytes)});
}

bool KWFormatWrapper::setState(std::string_view text)
{
    const std::lock_guard hold(screen);
    auto bytes = fromBase64(text);
    if (!bytes || bytes->empty())
        return false;
    hostLoads = true;
    const VstInt32 loaded =
        engine->setChunk(bytes->data(), static_cast<VstInt32>(bytes->size()), false);
    hostLoads = false;
    return loaded != 0;
}

// --- the editor ---------------------------------------------------------------------------------

AEffEditor* KWFormatWrapper::editor()
{
    if (!engine->getEditor())
        engine->setEditor(makeEditor(*engine));
    return engine->getEditor();
}

ERect KWFormatWrapper::editorRect()
{
    const std::lock_guard hold(screen);
    ERect* rect = nullptr;
    return editor() && editor()->getRect(&rect) && rect ? *rect : ERect{};
}

bool KWFormatWrapper::fitEditor(int& width, int& height, bool takes)
{
    const std::lock_guard hold(screen);
    return editor() && editor()->fitInto(width, height, takes);
}

bool KWFormatWrapper::openEditor(Window& shown, void* parent)
{
    const std::lock_guard hold(screen);
    if (window || !editor())
        return false;
    window = &shown;
    if (!editor()->open(parent))
        window = nullptr;
    return window != nullptr;
}

void KWFormatWrapper::idleEditor()
{
    const std::lock_guard hold(screen);
    if (window)
        editor()->idle();
}

void KWFormatWrapper::closeEditor()
{
    const std::lock_guard hold(screen);
    if (!window)
        return;
    editor()->close();
    window = nullptr;
}

unsigned long KWFormatWrapper::editorHandle()
{
    const std::lock_guard hold(screen);
    return window ? editor()->systemHandle() : 0;
}

// --- the host's side ----------------------------------------------------------------------------

VstIntPtr KWFormatWrapper::callback(
    AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    auto* wrapper = effect && effect->resvd1 ? reinterpret_cast<KWFormatWrapper*>(effect->resvd1)
                                             : underConstruction;
    return wrapper ? wrapper->answer(opcode, index, value, ptr, opt) : 0;
}

VstIntPtr KWFormatWrapper::answer(
    VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    switch (opcode) {
    case audioMasterAutomate:
        if (window)
            window->parameterMoved(index, opt);
        return 0;
    case audioMasterVersion:
        return kVstVersion;
    case audioMasterGetTime:
        return reinterpret_cast<VstIntPtr>(timeRecord());
    case audioMasterProcessEvents: {
        const auto* list = static_cast<const VstEvents*>(ptr);
        const VstEvent* const* events = list ? list->events : nullptr;
        for (VstInt32 i = 0; events && !silent && i < list->numEvents; ++i)
            if (events[i]->type == kVstMidiType)
                midiOut(*reinterpret_cast<const VstMidiEvent*>(events[i]), time.ppqPos);
        return 1;
    }
    case audioMasterGetSampleRate:
        return static_cast<VstIntPtr>(sampleRate);
    case audioMasterGetCurrentProcessLevel:
        // Deliberate: an offline export too is to sound.
        return kVstProcessLevelRealtime;
    case audioMasterGetVendorString:
    case audioMasterGetProductString:
        std::memcpy(ptr, product::kName, sizeof(product::kName));
        return 1;
    case audioMasterCanDo:
        return std::any_of(
            std::begin(kCapabilities), std::end(kCapabilities), [ptr](const char* can) {
                return std::strcmp(static_cast<const char*>(ptr), can) == 0;
            });
    case audioMasterBeginEdit:
        if (window)
            window->editBegins(index);
        return 0;
    case audioMasterEndEdit:
        if (window)
            window->editEnds(index);
        return 0;
    case audioMasterSizeWindow:
        return window && window->sizeWanted(index, static_cast<int>(value)) ? 1 : 0;
    case audioMasterUpdateDisplay:
        reloaded.store(1, std::memory_order_release);
        if (!hostLoads) {
            edited.store(1, std::memory_order_release);
            outside.changedByItself();
        }
        return 0;
    default:
        return 0;
    }
}

} // namespace ormund
