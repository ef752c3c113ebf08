// ormund-midi-examples FOLDER: writes the example MIDI files there.
#include "tests/support/MidiExamples.h"

#include <cstdio>
#include <fstream>

using namespace ormund;

int main(int count, char** arguments)
{
    if (count != 2) {
        std::fputs("usage: ormund-midi-examples FOLDER\n", stderr);
        return 2;
    }
    for (const MidiExample& example : midiExamples()) {
        const std::vector<uint8_t> bytes = example.file.write();
        std::ofstream file(std::string(arguments[1]) + "/" + example.fileName, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
        if (!file.flush()) {
            std::fprintf(stderr, "cannot write %s\n", example.fileName.c_str());
            return 1;
        }
    }
    return 0;
}
