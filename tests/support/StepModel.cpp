#include "tests/support/StepModel.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {
constexpr int kTick = 32; // samples
// A place is read nearly half a sample ahead, because hosts round theirs to whole samples.
constexpr long double kAhead = 0.499996L;
} // namespace

void StepModel::add(PlayedStretch stretch)
{
    if (stretch.continues)
        stretch.place = static_cast<double>(placeIn(all.back(), all.back().frames));
    all.push_back(stretch);
}

long double StepModel::placeIn(const PlayedStretch& stretch, int64_t frame, long double ahead) const
{
    const long double perFrame =
        static_cast<long double>(stretch.tempo) / 60 / static_cast<long double>(rate);
    long double place = static_cast<long double>(stretch.place)
        + (static_cast<long double>(frame) + ahead) * perFrame;
    const long double start = stretch.loopStart;
    const long double end = stretch.loopEnd;
    if (stretch.loopOn && stretch.place < stretch.loopEnd && place >= end)
        place = start + std::fmod(place - start, end - start);
    return place;
}

std::vector<SoundedStep> StepModel::steps() const
{
    std::vector<SoundedStep> found;
    int64_t begin = 0;
    int last = -1;
    for (const PlayedStretch& stretch : all) {
        const int64_t end = begin + stretch.frames;
        for (int64_t tick = (begin + kTick - 1) / kTick * kTick; tick < end; tick += kTick) {
            const long double place = placeIn(stretch, tick - begin, kAhead);
            if (!stretch.playing || place < 0) {
                last = -1;
                continue;
            }
            const auto count =
                static_cast<int64_t>(std::floor(place * static_cast<long double>(speed)));
            const int step = static_cast<int>(count % kTrackLength);
            if (step != last)
                found.push_back({tick, step});
            last = step;
        }
        begin = end;
    }
    return found;
}

StepFaults compareSteps(const std::vector<SoundedStep>& wanted,
    const std::vector<SoundedStep>& heard, int64_t tolerance)
{
    StepFaults faults;
    size_t w = 0;
    size_t h = 0;
    while (w < wanted.size() && h < heard.size()) {
        const int64_t off = heard[h].frame - wanted[w].frame;
        if (heard[h].step == wanted[w].step && std::abs(off) <= tolerance) {
            faults.late += off != 0;
            faults.furthest = std::max(faults.furthest, std::abs(off));
            ++w;
            ++h;
        } else if (wanted[w].frame <= heard[h].frame) {
            ++faults.lost;
            ++w;
        } else {
            ++faults.added;
            ++h;
        }
    }
    faults.lost += static_cast<int>(wanted.size() - w);
    faults.added += static_cast<int>(heard.size() - h);
    return faults;
}

} // namespace ormund
