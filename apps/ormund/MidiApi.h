// By which way messages go where the sound does not carry them.
#pragma once

#include <RtMidi.h>

namespace ormund {

// ALSA's sequencer; without it a JACK server; RTMIDI_DUMMY where there is neither.
RtMidi::Api midiApi();

} // namespace ormund
