#include "editor/ScreenState.h"

#include "panel/ControlCatalogue.h"

namespace ormund {

ScreenLane laneOf(const ControlRow& row)
{
    if (row.track > 0)
        return ScreenLane(int(ScreenLane::Mod1) + row.track - 1);
    switch (row.tag) {
    case 346:
    case 347:
    case 349:
    case 350:
        return ScreenLane::Song;
    case 413:
    case 430:
    case 498:
    case 501:
        return ScreenLane::Velocity;
    case 428:
    case 431:
    case 503:
    case 506:
        return ScreenLane::Gate;
    case 586:
    case 587:
    case 588:
    case 589:
    case 590:
    case 337:
    case 339:
    case 341:
    case 463:
    case 464:
    case 508:
    case 511:
        return ScreenLane::Performance;
    default:
        break;
    }
    if (row.group >= kTrackPages && row.group < kTrackPages + kModTracks)
        return ScreenLane(
            int(ScreenLane::Mod1) + row.group - kTrackPages); // the markers of the mod tracks
    return ScreenLane::Pitch;
}

} // namespace ormund
