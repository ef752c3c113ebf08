// The plug-in as the framework sees it.
#pragma once

#include "host/formats/KWFormatWrapper.h"

#include <DistrhoPlugin.hpp>

START_NAMESPACE_DISTRHO

using namespace ormund;

class FormatPlugin final : public Plugin, private KWFormatWrapper::Format {
public:
    static constexpr uint32_t kBypass = 0; // the parameter before the engine's
    static constexpr uint32_t kFirst = 1;  // where the engine's begin

    FormatPlugin();
    KWFormatWrapper& wrapper() { return wrapped; }

protected:
    const char* getLabel() const override { return "Ormund"; }
    const char* getDescription() const override
    {
        return "Performance step sequencer with an eight-voice synth";
    }
    const char* getMaker() const override { return "Kelda Works"; }
    const char* getLicense() const override { return "https://spdx.org/licenses/ISC"; }
    uint32_t getVersion() const override { return d_version(1, 0, 6); }
    int64_t getUniqueId() const override { return KWUniClient::kUniqueId; }

    void initAudioPort(bool input, uint32_t index, AudioPort& port) override;
    void initParameter(uint32_t index, Parameter& parameter) override;
    void initState(uint32_t index, State& state) override;
    float getParameterValue(uint32_t index) const override;
    void setParameterValue(uint32_t index, float value) override;
    String getState(const char* key) const override;
    void setState(const char* key, const char* value) override;

    void sampleRateChanged(double rate) override { wrapped.setSampleRate(rate); }
    void activate() override { wrapped.resume(); }
    void deactivate() override { wrapped.suspend(); }
    void run(const float**, float** outputs, uint32_t frames, const MidiEvent* events,
        uint32_t count) override;

private:
    BarPlace barPlace() const;
    void midiOut(const VstMidiEvent& event) override;

    // Asking for the state changes nothing, but the effect interface does not say so.
    mutable KWFormatWrapper wrapped;
    SongFollower follower;

    DISTRHO_DECLARE_NON_COPYABLE(FormatPlugin)
};

END_NAMESPACE_DISTRHO
