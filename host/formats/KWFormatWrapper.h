// The host's side of the effect interface, for formats that are not this interface.
#pragma once

#include "host/formats/DeferredWork.h"
#include "host/formats/FrameQueue.h"
#include "host/formats/SongPlace.h"
#include "host/plugin/KWUniClient.h"
#include "host/plugin/WrapperPort.h"

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace ormund {

// Owns one engine and its editor, and answers their calls. run, queueMidi on the audio thread;
// setBypass, setParameter on any; the rest on the host's thread for the user interface. What a
// block has left to be done is done beside that thread, so `screen` keeps the two apart; the audio
// thread never takes it.
class KWFormatWrapper final : private WrapperPort, private DeferredWork::Client {
public:
    // Where the notes go.
    class Format {
    public:
        // Audio thread, inside run(), frames in rising order.
        virtual void midiOut(const VstMidiEvent& event) = 0;
        // takeReload or takeEdit has something to say. Any thread but the audio thread.
        virtual void changedByItself() { }

    protected:
        ~Format() = default;
    };
    // What shows the editor, and notifies the host of what happens there. Index 0 to 45.
    class Window {
    public:
        virtual void parameterMoved(int index, float value) = 0;
        virtual void editBegins(int index) = 0;
        virtual void editEnds(int index) = 0;
        // Device pixels. False where the host keeps its size.
        virtual bool sizeWanted(int width, int height) = 0;

    protected:
        ~Window() = default;
    };

    KWFormatWrapper(Format& format, double rate); // Hz
    ~KWFormatWrapper();
    KWFormatWrapper(const KWFormatWrapper&) = delete;
    KWFormatWrapper& operator=(const KWFormatWrapper&) = delete;

    KWUniClient& client() { return *engine; }
    void setSampleRate(double hertz);
    void resume();
    void suspend();

    // Silent, and nothing is sent but the ends of the notes that sound; the clock runs on.
    void setBypass(bool on) { bypass = on ? 1 : 0; }
    bool isBypassed() const { return bypass != 0; }
    // Index 0 to 45. A button is 0 or 1 here: formats cut its value to a whole number.
    float parameter(int index) const;
    // Whether two values are one for a host that keeps them as text.
    static bool isSameValue(float a, float b);
    // A value that the host has read, kept as text and gives back is not taken for a new one.
    void setParameter(int index, float value);

    // What the host last set or was notified of; after a load the engine's own may be others.
    float hostValue(int index) const { return hostValues[static_cast<size_t>(index)]; }
    void hostKnows(int index, float value) { hostValues[static_cast<size_t>(index)] = value; }

    // By its place in the formats' list of parameters, the bypass among them.
    float value(int number) const;
    void setValue(int number, float value);

    // For the block to come, in any order; those of one frame keep theirs. A message has `size`
    // bytes, of which more than three are ignored.
    void queueMidi(int frame, const uint8_t* bytes, int size);
    void queueParameter(int frame, int index, float value);
    // `place` null: the host has no transport. With no frames what is queued happens, no more.
    void run(const SongPlace* place, float** outputs, int frames);

    // The engine's chunk as text.
    std::string state();
    bool setState(std::string_view text);
    // Whether a preset or a state was loaded since the last call, and any parameter may have moved.
    bool takeReload() { return reloaded.exchange(0, std::memory_order_acq_rel) != 0; }
    // Whether the song was edited here since the last call, and the host does not know it.
    bool takeEdit() { return edited.exchange(0, std::memory_order_acq_rel) != 0; }

    // The editor, made when it is first asked for. It shows in one window at a time.
    ERect editorRect(); // device pixels; empty where there is no editor
    // `parent` is an X11 window number. False when it shows elsewhere already or cannot be opened.
    // As AEffEditor::fitInto.
    bool fitEditor(int& width, int& height, bool takes);
    bool openEditor(Window& window, void* parent);
    void idleEditor();
    void closeEditor();
    unsigned long editorHandle(); // of its own window, 0 when it has none

private:
    AEffEditor* editor();
    void doDeferredWork() override;
    const VstTimeInfo* timeRecord() override { return hasTime ? &time : nullptr; }
    bool hasMidiOutput() const override { return !silent; }
    void midiOut(const VstMidiEvent& event, double songPosition) override;
    void endSoundingNotes();
    void applyChanges(int until);
    void sendMessages(int from, int until);
    int nextCut(int from, int frames) const;
    void runPart(const SongPlace* place, float** outputs, int from, int frames);
    void fillTime(const SongPlace* place);
    VstIntPtr answer(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);
    static VstIntPtr callback(AEffect*, VstInt32, VstInt32, VstIntPtr, void*, float);

    Format& outside;
    Window* window = nullptr;    // while it shows the editor
    std::recursive_mutex screen; // a host may ask for the state while it is notified of a move
    std::atomic<int32_t> reloaded{0};
    std::atomic<int32_t> edited{0};
    bool hostLoads = false; // under `screen`
    Crossing<int32_t> bypass = 0;
    std::array<Crossing<float>, kHostParameters> hostValues{};
    double sampleRate;
    // Audio thread.
    VstTimeInfo time{};
    bool hasTime = false;
    bool silent = false;
    int partStart = 0; // frames into the host's block
    struct Message {
        int frame;
        std::array<uint8_t, 3> bytes;
    };
    struct Change {
        int frame;
        int index;
        float value;
    };
    FrameQueue<Message> messages;
    FrameQueue<Change> changes;
    std::array<uint8_t, 128> sounding{}; // note ons without their end

    std::unique_ptr<KWUniClient> engine;
};

} // namespace ormund
