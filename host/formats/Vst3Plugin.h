// The VST3 plug-in: one object that is component, processor and controller.
#pragma once

#include "host/formats/FormatParameters.h"
#include "host/formats/KWFormatWrapper.h"
#include "host/formats/Vst3Facet.h"

#include <array>
#include <atomic>

namespace ormund {

// The numbers of parameters that sessions know: MIDI's controllers first, as the format wants them
// for a parameter each; then the bypass and the engine's.
namespace vst3 {
constexpr int kChannels = 16;
constexpr int kPressure = 128; // the format's numbers behind MIDI's controllers
constexpr int kBend = 129;
constexpr int kProgram = 130; // outgoing only
constexpr int kControllers = 130;
constexpr uint32_t kMidiIds = kChannels * kControllers;
constexpr uint32_t kIds = kMidiIds + kFormatParameters;

constexpr uint32_t idOf(int number) { return kMidiIds + static_cast<uint32_t>(number); }
constexpr int numberOf(uint32_t id) { return static_cast<int>(id - kMidiIds); }
constexpr bool isMidi(uint32_t id) { return id < kMidiIds; }
} // namespace vst3

// Threads are VST3's: process on the audio thread, all else on the screen's.
class Vst3Plugin final : private KWFormatWrapper::Format {
public:
    static const v3_tuid kClass;

    Vst3Plugin();
    KWFormatWrapper& shown() { return wrapper; }
    v3_component_handler** host() const { return handler.get(); }
    // What a window found at its idle.
    void reportEdit();

    void* query(const v3_tuid iid);
    uint32_t addRef() { return ++refs; }
    uint32_t release();

private:
    template <class Table>
    using Facet = Vst3Facet<Table, Vst3Plugin>;

    // Vst3Component.cpp
    static v3_component_cpp componentTable();
    static v3_audio_processor_cpp processorTable();
    static v3_process_context_requirements_cpp requirementsTable();
    void setActive(bool on);
    v3_result setState(v3_bstream** stream);
    v3_result getState(v3_bstream** stream);

    // Vst3Process.cpp
    void process(const v3_process_data& data);
    void takeChanges(v3_param_changes** changes, int frames);
    void takeChange(uint32_t id, int frame, double value);
    void takeEvents(v3_event_list** events, int frames);
    SongPlace placeOf(const v3_process_context* context, int frames);
    void midiOut(const VstMidiEvent& event) override;

    // Vst3Controller.cpp
    static v3_edit_controller_cpp controllerTable();
    static v3_midi_mapping_cpp mappingTable();
    static v3_unit_information_cpp unitsTable();
    double value(uint32_t id) const;
    v3_result setValue(uint32_t id, double value);
    void setHandler(v3_component_handler** given);

    static const v3_component_cpp kComponent;
    static const v3_audio_processor_cpp kProcessor;
    static const v3_process_context_requirements_cpp kRequirements;
    static const v3_edit_controller_cpp kController;
    static const v3_midi_mapping_cpp kMapping;
    static const v3_unit_information_cpp kUnits;

    std::atomic<uint32_t> refs{1};
    Facet<v3_component_cpp> component{&kComponent, this};
    Facet<v3_audio_processor_cpp> processor{&kProcessor, this};
    Facet<v3_process_context_requirements_cpp> requirements{&kRequirements, this};
    Facet<v3_edit_controller_cpp> controller{&kController, this};
    Facet<v3_midi_mapping_cpp> mapping{&kMapping, this};
    Facet<v3_unit_information_cpp> units{&kUnits, this};

    Vst3Ref<v3_component_handler> handler;
    Vst3Ref<v3_component_handler2> handler2;
    std::array<Crossing<float>, vst3::kMidiIds> controllers{};
    double rate = 44100;
    Crossing<int32_t> isActive = 0;
    // Audio thread.
    v3_event_list** out = nullptr; // of the block that runs
    double tempo = 120;
    double freeQuarters = 0; // where a host that gives no place stands

    KWFormatWrapper wrapper;
};

} // namespace ormund
