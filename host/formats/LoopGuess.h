// Finds out what a host loops that does not report the range, from the jumps that it makes.
#pragma once

#include "host/formats/SongPlace.h"

namespace ormund {

// Audio thread. A host that turns inside a block goes on as if nothing were until that block's end,
// and only the next one shows how far it went back. Where both ends of such a jump lie on the grid
// of sixteenths it is a loop, and from its second pass on the song can turn with it.
class LoopGuess {
public:
    explicit LoopGuess(double hertz) : rate(hertz) { }
    // The range that the block at `place` may reach the end of; the place itself is as reported.
    SongPlace follow(SongPlace place, int frames);

private:
    void learn(const SongPlace& place);

    double rate;
    SongPlace last; // of the block before
    double lastEnd = 0;
    double loopStart = 0;
    double loopEnd = 0;  // no loop where this is no range
    bool turned = false; // the block before was expected to turn
};

} // namespace ormund
