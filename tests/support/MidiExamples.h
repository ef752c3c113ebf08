// The MIDI files in tests/data, made here.
#pragma once

#include "data/music/MidiFile.h"

#include <string>
#include <vector>

namespace ormund {

struct MidiExample {
    std::string fileName;
    MidiFile file;
};

std::vector<MidiExample> midiExamples();

} // namespace ormund
