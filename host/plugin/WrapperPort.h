// The host's side as a wrapper for another plug-in format plays it.
#pragma once

#include "host/effect/EffectTypes.h"

namespace ormund {

// Called on the audio thread, inside the block function; must not allocate or block.
class WrapperPort {
public:
    virtual const VstTimeInfo* timeRecord() = 0; // null: none for this block
    virtual bool hasMidiOutput() const = 0;
    // `songPosition` is the record's, quarter notes.
    virtual void midiOut(const VstMidiEvent& event, double songPosition) = 0;

protected:
    ~WrapperPort() = default;
};

} // namespace ormund
