#include "tests/support/BusySong.h"

#include "data/parameters/Tags.h"
#include "host/plugin/KWUniClient.h"

namespace ormund {

void writeBusySong(KWUniClient& client)
{
    Tracks& tracks = client.tracks;
    client.setParameter(Tag::SongOn, 1);
    for (int k = 0; k < kModTracks; ++k)
        client.setParameter(Tag::ModTrackOn + k, 1);
    client.setParameter(Tag::Swing, 0.3f);
    client.setParameter(Tag::GateTimeMultiply, 1);
    for (int pattern = 0; pattern < kPatterns; ++pattern) {
        tracks.selectRow(pattern);
        for (int i = 0; i < kTrackSteps; ++i) {
            tracks.pitch.setValue(i, static_cast<float>((i * 5 + pattern) % 12 - 6));
            tracks.velocity.setValue(i, 0.8f);
            tracks.velocityOn.setStep(i, 1);
            tracks.gateTime.setValue(i, 1);
            tracks.chord.setStep(i, static_cast<float>(1 + i % 20));
            for (int k = 0; k < kModTracks; ++k)
                tracks.mods[static_cast<size_t>(k)].setValue(
                    i, static_cast<float>((i * (k + 3)) % kTrackSteps) / kTrackSteps);
        }
        for (int i = 0; i < kPatternValues; ++i)
            client.patternStore.setAt(pattern, i, client.patternStore.at(0, i));
    }
    for (int i = 0; i < kSongSteps; ++i)
        tracks.patternNumbers.setStep(i, static_cast<float>(i));
    tracks.selectRow(0);
}

} // namespace ormund
