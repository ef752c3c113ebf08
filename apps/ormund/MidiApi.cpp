#include "apps/ormund/MidiApi.h"

#include "apps/ormund/JackDriver.h"

#include <alsa/asoundlib.h>

namespace ormund {

// Both are asked here first, because the MIDI library prints what it misses.
RtMidi::Api midiApi()
{
    snd_seq_t* sequencer = nullptr;
    if (snd_seq_open(&sequencer, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK) == 0) {
        snd_seq_close(sequencer);
        return RtMidi::LINUX_ALSA;
    }
    return JackDriver::serverRate() > 0 ? RtMidi::UNIX_JACK : RtMidi::RTMIDI_DUMMY;
}

} // namespace ormund
