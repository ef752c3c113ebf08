#include "apps/ormund/SharedSong.h"

#include <cmath>

namespace ormund {

double SharedSong::beatAt(int64_t frame, double ownTempo, int frames)
{
    const bool goesOn = frame == lastFrame || frame == lastFrame + lastFrames;
    if (!goesOn) {
        anchorFrame = 0;
        anchorBeat = 0;
        anchorTempo = ownTempo;
    } else if (ownTempo != anchorTempo) {
        anchorBeat += static_cast<double>(frame - anchorFrame) * beatsPerFrame(anchorTempo);
        anchorFrame = frame;
        anchorTempo = ownTempo;
    }
    lastFrame = frame;
    lastFrames = frames;
    return anchorBeat + static_cast<double>(frame - anchorFrame) * beatsPerFrame(ownTempo);
}

LiveHost::SharedPlace SharedSong::follow(const Report& report, double ownTempo, int frames)
{
    LiveHost::SharedPlace place;
    place.playing = report.rolling;
    if (!report.hasBars) {
        followedFrame = -1;
        place.tempo = ownTempo;
        place.beat = beatAt(report.frame, ownTempo, frames);
        return place;
    }
    place.tempo = report.tempo;
    place.beat = report.quarters;
    // Ticks are whole numbers, and a place that is off by a part of one may move a step: while the
    // song goes on, the frames say where it stands.
    if (report.frame == followedFrame
        && std::abs(report.quarters - followedBeat) <= 2 * report.resolution)
        place.beat = followedBeat;
    followedFrame = report.frame + frames;
    followedBeat = place.beat + frames * beatsPerFrame(report.tempo);
    // The own count goes on from here should the others leave.
    anchorFrame = report.frame;
    anchorBeat = place.beat;
    anchorTempo = report.tempo;
    lastFrame = report.frame;
    lastFrames = frames;
    return place;
}

} // namespace ormund
