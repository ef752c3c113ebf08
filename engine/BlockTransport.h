// Where the song is at the start of a block, as the sequencer's surroundings report it.
#pragma once

namespace ormund {

struct BlockTransport {
    double position = 0; // quarter notes, below 0 in a count-in; not finite counts as stopped
    double tempo = 120;  // quarter notes a minute, used where `tempoValid`
    bool playing = false;
    bool tempoValid = false;
    bool loopOn = false;  // with the range below
    double loopStart = 0; // quarter notes
    double loopEnd = 0;
};

} // namespace ormund
