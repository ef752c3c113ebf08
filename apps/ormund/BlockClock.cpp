#include "apps/ormund/BlockClock.h"

#include <cmath>
#include <numbers>

namespace ormund {

namespace {
constexpr double kNanos = 1e9;
constexpr double kBandwidth = 0.5; // Hz; slower jitter than this is followed
constexpr double kMostBlocksOff = 4;
} // namespace

BlockClock::BlockClock(double sampleRate, int frames)
    : frameCount(frames), nominal(kNanos * frames / sampleRate), period(nominal)
{
}

int64_t BlockClock::blockStart(int64_t now)
{
    const auto real = static_cast<double>(now);
    if (!isRunning || std::abs(real - next) > kMostBlocksOff * nominal) {
        isRunning = true;
        period = nominal;
        next = real + period;
        return now;
    }
    const double omega = 2 * std::numbers::pi * kBandwidth * nominal / kNanos;
    const double error = real - next;
    const double start = next;
    next += std::numbers::sqrt2 * omega * error + period;
    period += omega * omega * error;
    return static_cast<int64_t>(start);
}

} // namespace ormund
