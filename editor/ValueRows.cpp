#include "editor/ValueRows.h"

#include "data/music/ScaleTable.h"
#include "host/plugin/KWUniClient.h"

#include <cmath>

namespace ormund {

namespace {

constexpr int kRootDegree = (kScaleDegrees - 1) / 2;
constexpr int kGateValues = 40;
constexpr int kControllerValues = 127;

// What the bars of `source` stand for, in whole numbers.
template <typename Value>
void fill(KWTableXY& row, const KWTableXY& source, Value&& valueOf)
{
    for (int i = 0; i < kTrackSteps; ++i) {
        const auto value = static_cast<float>(valueOf(source, i));
        if (row.getAtIndex(i) != value)
            row.setValue(i, value);
    }
}

int scaled(const KWTableXY& source, int step, int most)
{
    return static_cast<int>(std::floor(
        source.getNormalized(static_cast<float>(step)) * static_cast<float>(most) + 0.5f));
}

} // namespace

void fillValueRows(KWUniClient& engine)
{
    Tracks& tracks = engine.tracks;
    const int root = engine.parameters.index(Tag::RootKey); // notes above a C
    const int scale = engine.parameters.index(Tag::Scale);
    const int mod = engine.parameters.index(Tag::ModTrackPage) % kModTracks;

    fill(tracks.scaleDisplay, tracks.pitch, [&](const KWTableXY& pitch, int step) {
        const int degree = static_cast<int>(pitch.getAtIndex(step)) + kRootDegree;
        return ((root + scaleNote(scale, degree)) % 12 + 12) % 12;
    });
    fill(tracks.gateDisplay, tracks.gateTime,
        [](const KWTableXY& gate, int step) { return scaled(gate, step, kGateValues); });
    fill(tracks.modDisplay, tracks.mods[static_cast<size_t>(mod)],
        [](const KWTableXY& track, int step) { return scaled(track, step, kControllerValues); });
}

} // namespace ormund
