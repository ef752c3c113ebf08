// Plays on a sound device, by PulseAudio (PipeWire's too) or ALSA.
#pragma once

#include "apps/ormund/AudioDriver.h"
#include "apps/ormund/ClockedBlocks.h"

#include <RtAudio.h>

class DeviceDriver final : public AudioDriver {
public:
    static OpenedDriver open(
        LiveHost& host, const SoundWishes& wishes, RtAudio::Api api, const std::string& part);
    static std::vector<SoundDevice> devices(RtAudio::Api api);
    static const char* nameOf(RtAudio::Api api);  // as --device takes it
    static const char* titleOf(RtAudio::Api api); // as it is called

    ~DeviceDriver() override;
    std::string describe() const override;
    bool isAlive() const override { return audio.isStreamRunning(); }

private:
    DeviceDriver(LiveHost& ownHost, RtAudio::Api api);
    std::string begin(const SoundWishes& wishes, const std::string& part);

    LiveHost& host;
    RtAudio audio;
    std::string title;
    std::unique_ptr<ClockedBlocks> blocks;
};
