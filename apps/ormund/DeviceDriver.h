// Plays on a sound device, by PulseAudio (PipeWire's too) or ALSA.
#pragma once

#include "apps/ormund/AudioDriver.h"
#include "apps/ormund/ClockedBlocks.h"

#include <RtAudio.h>

namespace ormund {

class DeviceDriver final : public AudioDriver {
public:
    static OpenedDriver open(LiveHost& host, const SoundWishes& wishes, const BeforeBlocks& before,
        RtAudio::Api api, const std::string& part);
    static std::vector<SoundDevice> devices(RtAudio::Api api);
    static const char* nameOf(RtAudio::Api api);  // as --device takes it
    static const char* titleOf(RtAudio::Api api); // as it is called

    ~DeviceDriver() override;
    std::string describe() const override;
    bool isAlive() const override { return audio.isStreamRunning(); }

private:
    enum Answer { kGoOn = 0, kAbort = 2 }; // of a block, to the library

    DeviceDriver(LiveHost& ownHost, RtAudio::Api api);
    std::string begin(
        const SoundWishes& wishes, const BeforeBlocks& before, const std::string& part);
    Answer run(float* left, float* right);
    static void blockFailed(RtAudioError::Type type, const std::string& text);

    LiveHost& host;
    RtAudio audio;
    std::string title;
    std::unique_ptr<ClockedBlocks> blocks;

    // The audio thread.
    static thread_local DeviceDriver* running;
    bool hasFailed = false; // the block before
    int failures = 0;       // in a row
};

} // namespace ormund
