#include "tests/support/MidiExamples.h"

#include <algorithm>

namespace ormund {

namespace {

struct Key {
    double beat;
    double length; // quarter notes
    uint8_t pitch;
};

MidiFile pieceOf(const char* name, double tempo, double beats, std::initializer_list<Key> keys)
{
    MidiFile file;
    file.name = name;
    file.tempos = {{0, tempo}};
    for (const Key& key : keys) {
        file.events.push_back({file.tickOf(key.beat), {0x90, key.pitch, 96}, 3});
        file.events.push_back({file.tickOf(key.beat + key.length), {0x90, key.pitch, 0}, 3});
    }
    // Where keys meet, the old one is released first.
    std::stable_sort(file.events.begin(), file.events.end(), [](const auto& a, const auto& b) {
        return a.tick != b.tick ? a.tick < b.tick : a.bytes[2] < b.bytes[2];
    });
    file.endTick = file.tickOf(beats);
    return file;
}

} // namespace

std::vector<MidiExample> midiExamples()
{
    return {
        // One key a bar in the upper zone, 72 is no change; the pattern keys 38 and 41 below it.
        {"transpose-keys.mid",
            pieceOf("Transpose and pattern keys", 110, 32,
                {{0, 4, 72}, {4, 4, 79}, {8, 4, 76}, {12, 4, 67}, {16, 8, 38}, {16, 4, 72},
                    {20, 4, 77}, {24, 8, 41}, {24, 4, 74}, {28, 3.5, 72}})},
        // The eight keys from 52 on, each for half a bar, two of them together at the end.
        {"performance-keys.mid",
            pieceOf("Performance keys", 120, 16,
                {{0.5, 1.5, 52}, {2, 2, 53}, {4, 2, 54}, {6, 2, 55}, {8, 2, 56}, {10, 2, 57},
                    {12, 1, 58}, {13, 1, 59}, {14, 1.75, 54}, {14, 1.75, 57}})},
    };
}

} // namespace ormund
