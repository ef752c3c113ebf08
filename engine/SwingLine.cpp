#include "engine/SwingLine.h"

#include "data/KWSystemInfo.h"

#include <algorithm>

namespace {
constexpr float kEntriesAt44100 = 4096.0f;
constexpr auto kMostEntries = static_cast<size_t>(kEntriesAt44100 * kMaxSampleRate / 44100.0f) + 1;
} // namespace

SwingLine::SwingLine() : ring(kMostEntries), length(static_cast<int>(kEntriesAt44100)) { }

void SwingLine::setRateRatio(float rateRatio)
{
    const int wanted = static_cast<int>(rateRatio * kEntriesAt44100);
    length = std::clamp(wanted, 1, static_cast<int>(kMostEntries));
    if (write >= length)
        write = 0;
}

float SwingLine::tick(float count, float amount, int delay)
{
    const int back = std::clamp(delay, 0, length - 1);
    ring[static_cast<size_t>(write)] = count;
    const int read = write >= back ? write - back : write - back + length;
    const float late = ring[static_cast<size_t>(read)];
    if (++write == length)
        write = 0;
    const bool isOdd = static_cast<int>(count) % 2 == 1;
    return amount > 0 && isOdd ? late : count;
}
