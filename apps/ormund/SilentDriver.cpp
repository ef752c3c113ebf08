#include "apps/ormund/SilentDriver.h"

#include <ctime>

namespace ormund {

namespace {
constexpr int kUsualRate = 48000;
constexpr int kUsualBlock = 256;
constexpr int64_t kNanosPerSecond = 1000000000;
} // namespace

OpenedDriver SilentDriver::open(
    LiveHost& host, const SoundWishes& wishes, const BeforeBlocks& before)
{
    const int rate = wishes.rate != 0 ? wishes.rate : kUsualRate;
    const int block = wishes.block != 0 ? wishes.block : kUsualBlock;
    before();
    host.setFormat(static_cast<float>(rate), block);
    std::unique_ptr<SilentDriver> made(new SilentDriver(host, wishes, rate, block));
    if (!made->blocks->problem().empty())
        return {nullptr, made->blocks->problem()};
    return {std::move(made), {}};
}

SilentDriver::SilentDriver(LiveHost& host, const SoundWishes& wishes, int rate, int block)
    : blocks(
        std::make_unique<ClockedBlocks>(host, rate, block, block, wishes.midiIn, wishes.midiOut))
    , thread([this, rate, block] { keepTime(rate, block); })
{
}

SilentDriver::~SilentDriver()
{
    over.raise();
    thread.join();
}

std::string SilentDriver::describe() const
{
    return blocks->hasOutput() ? "no sound, MIDI alone" : "no sound, no MIDI";
}

void SilentDriver::keepTime(int rate, int block)
{
    const auto size = static_cast<size_t>(block);
    std::vector<float> sides(2 * size);
    const int64_t start = ClockedBlocks::now();
    for (int64_t played = 1; !over.isRaised(); ++played) {
        blocks->run(sides.data(), sides.data() + size);
        const int64_t next = start + played * block * kNanosPerSecond / rate;
        const timespec until{next / kNanosPerSecond, next % kNanosPerSecond};
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr);
    }
}

} // namespace ormund
