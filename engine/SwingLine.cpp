#include "engine/SwingLine.h"

#include "data/music/KWSystemInfo.h"

namespace ormund {

namespace {
constexpr float kEntriesAt44100 = 4096.0f;
constexpr auto kMostEntries = static_cast<size_t>(kEntriesAt44100 * kMaxSampleRate / 44100.0f) + 1;
} // namespace

SwingRing::SwingRing()
    : pairs{ZeroedArray<Pair>(kMostEntries), ZeroedArray<Pair>(kMostEntries)}
    , length(static_cast<size_t>(kEntriesAt44100))
{
}

void SwingRing::setRateRatio(float rateRatio)
{
    const auto wanted = static_cast<size_t>(std::max(rateRatio * kEntriesAt44100, 1.0f));
    length = std::min(wanted, kMostEntries);
    if (now >= length)
        now = 0;
}

} // namespace ormund
