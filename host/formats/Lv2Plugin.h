// The LV2 plug-in: the format's calls on one side, the wrapper on the other.
#pragma once

#include "host/formats/KWFormatWrapper.h"
#include "host/formats/LoopGuess.h"
#include "host/formats/Lv2Ports.h"
#include "host/formats/Lv2Time.h"

#include <array>
#include <lv2/atom/atom.h>
#include <lv2/atom/forge.h>
#include <lv2/core/lv2.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

namespace ormund {

// Threads are LV2's: run on the audio thread; save and restore beside it, which the engine's own
// interlock allows.
class Lv2Plugin final : private KWFormatWrapper::Format {
public:
    static const LV2_Descriptor descriptor;

    Lv2Plugin(double rate, const LV2_URID_Map& map);
    // What the window shows.
    KWFormatWrapper& shown() { return wrapper; }

private:
    static Lv2Plugin& of(LV2_Handle handle) { return *static_cast<Lv2Plugin*>(handle); }
    static const void* extension(const char* uri);
    void connect(uint32_t port, void* data);
    void run(int frames);
    void takeControls();
    // Plays up to the next place that the host reports inside the block.
    void playPart(int from, int to);
    void beginOutput();
    void sendStateChanged();
    void midiOut(const VstMidiEvent& event) override;
    bool hasRoom(uint32_t bytes) const;
    LV2_State_Status save(LV2_State_Store_Function store, LV2_State_Handle handle);
    LV2_State_Status restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle);

    struct Urids {
        explicit Urids(const LV2_URID_Map& map);
        LV2_URID midi, string, stateChanged, chunk;
    };
    const Urids urids;
    KWFormatWrapper wrapper;
    Lv2Time time;
    LoopGuess loops;
    // A host keeps the values of controls beside the state and sets them after it; those of the
    // state are the newer ones then, for a preset may have moved them unseen by the host.
    Crossing<int32_t> stateRules = 0;

    float* outputs[2] = {};
    const LV2_Atom_Sequence* in = nullptr;
    LV2_Atom_Sequence* out = nullptr;
    std::array<const float*, kFormatParameters> controls{};
    std::array<float, kFormatParameters> seen{}; // as the host's ports had them last
    // Of the block that runs.
    LV2_Atom_Forge forge{};
    LV2_Atom_Forge_Frame sequence{};
    bool isForging = false;
    int partStart = 0;
};

} // namespace ormund
