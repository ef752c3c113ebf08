#pragma once

#include <cstdint>
#include <vector>

namespace ormund {

class KWUniClient;

// The bytes of a standard MIDI file with what the present state plays in so many bars of 4/4 from
// its start. A copy of the state plays it, here and now, so the audio thread notices nothing.
// Screen thread; takes some milliseconds.
std::vector<uint8_t> exportMidi(KWUniClient& source, int bars);

} // namespace ormund
