// Plays messages alone, by the clock, where there is no sound.
#pragma once

#include "apps/ormund/AudioDriver.h"
#include "apps/ormund/ClockedBlocks.h"

#include <thread>
#include <vector>

namespace ormund {

class SilentDriver final : public AudioDriver {
public:
    static OpenedDriver open(LiveHost& host, const SoundWishes& wishes, const BeforeBlocks& before);
    ~SilentDriver() override;
    std::string describe() const override;

private:
    SilentDriver(LiveHost& host, const SoundWishes& wishes, int rate, int block);
    void keepTime(int rate, int block);

    std::unique_ptr<ClockedBlocks> blocks;
    OneWayFlag over;
    std::thread thread;
};

} // namespace ormund
