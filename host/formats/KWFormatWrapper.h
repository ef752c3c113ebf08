// The host's side of the effect interface, for formats that are not this interface.
#pragma once

#include "engine/KWUniClient.h"
#include "engine/WrapperPort.h"
#include "host/formats/SongPlace.h"

#include <array>
#include <memory>
#include <string>
#include <string_view>

// Owns one engine and answers its calls. run, queueMidi on the audio thread; setBypass on any; the
// rest on the host's thread for the user interface.
class KWFormatWrapper final : private WrapperPort {
public:
    // What the format's own side does with what comes out.
    class Format {
    public:
        // Audio thread, inside run(), frames in rising order.
        virtual void midiOut(const VstMidiEvent& event) = 0;
        // The user moved a parameter in the editor. Index 0 to 45.
        virtual void parameterMoved(int /*index*/, float /*value*/) { }
        virtual void editBegins(int /*index*/) { }
        virtual void editEnds(int /*index*/) { }

    protected:
        ~Format() = default;
    };

    KWFormatWrapper(Format& format, double rate); // Hz
    ~KWFormatWrapper();
    KWFormatWrapper(const KWFormatWrapper&) = delete;
    KWFormatWrapper& operator=(const KWFormatWrapper&) = delete;

    KWUniClient& client() { return *engine; }
    void setSampleRate(double hertz);
    void resume() { engine->resume(); }
    void suspend() { engine->suspend(); }

    // Silent, and nothing is sent but the ends of the notes that sound; the clock runs on.
    void setBypass(bool on) { bypass = on ? 1 : 0; }
    bool isBypassed() const { return bypass != 0; }
    // Index 0 to 45. A button is 0 or 1 here: formats cut its value to a whole number.
    float parameter(int index) const;
    // A value that the host has read, kept as text and gives back is not taken for a new one.
    void setParameter(int index, float value);

    // For the block to come; `size` bytes, of which more than three are ignored.
    void queueMidi(int frame, const uint8_t* bytes, int size);
    // `place` null: the host has no transport.
    void run(const SongPlace* place, float** outputs, int frames);

    // The engine's chunk as text.
    std::string state();
    bool setState(std::string_view text);

private:
    const VstTimeInfo* timeRecord() override { return hasTime ? &time : nullptr; }
    bool hasMidiOutput() const override { return !silent; }
    void midiOut(const VstMidiEvent& event, double songPosition) override;
    void endSoundingNotes();
    void fillTime(const SongPlace* place);
    VstIntPtr answer(VstInt32 opcode, VstInt32 index, void* ptr, float opt);
    static VstIntPtr callback(AEffect*, VstInt32, VstInt32, VstIntPtr, void*, float);

    Format& outside;
    Crossing<int32_t> bypass = 0;
    double sampleRate;
    // Audio thread.
    VstTimeInfo time{};
    bool hasTime = false;
    bool silent = false;
    std::array<uint8_t, 128> sounding{}; // note ons without their end

    std::unique_ptr<KWUniClient> engine;
};
