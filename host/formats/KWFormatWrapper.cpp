#include "host/formats/KWFormatWrapper.h"

#include "host/effect/AEffEditor.h"
#include "host/formats/Base64.h"
#include "host/vst2/EditorFactory.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ormund {

namespace {
constexpr char kName[] = "Ormund";
constexpr const char* kCapabilities[] = {"sendVstMidiEvent", "receiveVstMidiEvent", "sizeWindow"};
constexpr float kSameValue = 2e-6f; // texts of six digits
constexpr float kOnFrom = 0.5f;
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
}

KWFormatWrapper::~KWFormatWrapper()
{
    LateWork::remove(*this);
    closeEditor();
    engine->setEditor(nullptr); // it reads the engine to its end
}

void KWFormatWrapper::resume()
{
    engine->resume();
    LateWork::add(*this);
}

void KWFormatWrapper::suspend()
{
    LateWork::remove(*this);
    engine->suspend();
}

// While the editor shows, its idle does it.
void KWFormatWrapper::doLateWork()
{
    const std::unique_lock hold(screen, std::try_to_lock);
    if (hold && !window)
        engine->runDeferred();
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
    if (!isSameValue(parameter(index), value))
        engine->setParameter(index, value);
}

void KWFormatWrapper::queueMidi(int frame, const uint8_t* bytes, int size)
{
    if (size < 1 || size > 3)
        return;
    VstMidiEvent event = midiEvent(frame);
    std::copy_n(bytes, size, event.midiData);
    VstEventList<2> list;
    list.numEvents = 1;
    list.events[0] = reinterpret_cast<VstEvent*>(&event);
    engine->queueEvents(list.list());
}

void KWFormatWrapper::run(const SongPlace* place, float** outputs, int frames)
{
    const bool bypassed = isBypassed();
    if (bypassed && !silent)
        endSoundingNotes();
    silent = bypassed;
    fillTime(place);
    engine->processBlock(outputs, frames);
    for (int channel = 0; silent && channel < 2; ++channel)
        if (outputs[channel])
            std::fill_n(outputs[channel], frames, 0.0f);
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
}

void KWFormatWrapper::midiOut(const VstMidiEvent& event, double /*songPosition*/)
{
    const int kind = event.midiData[0] & 0xF0;
    uint8_t& count = sounding[event.midiData[1] & 127];
    if (kind == kNoteOn && event.midiData[2] > 0)
        ++count;
    else if ((kind == kNoteOn || kind == kNoteOff) && count > 0)
        --count;
    outside.midiOut(event);
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
    return bytes && !bytes->empty()
        && engine->setChunk(bytes->data(), static_cast<VstInt32>(bytes->size()), false) != 0;
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
        std::memcpy(ptr, kName, sizeof(kName));
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
        return 0;
    default:
        return 0;
    }
}

} // namespace ormund
