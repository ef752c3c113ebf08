// What a preset says about itself: who made it, what it is like, and at which tempo. A record for
// each, which every program carries along with the song, whether it knows them or not.
#pragma once

#include "data/state/KeptRecords.h"

#include <array>
#include <string>

namespace ormund {

class KWChunk;

struct PresetAbout {
    std::string author;
    std::string tags;        // words with a blank between
    std::string description; // a line or a few
    float tempo = 0;         // beats a minute that it is made for; 0: any
    friend bool operator==(const PresetAbout&, const PresetAbout&) = default;
};

// Of one of its records; null for another key.
const char* aboutName(int32_t key);
// What is no text, too long or no tempo counts as missing.
PresetAbout aboutOf(const KeptRecords& kept);
// Only what is there makes a record. False, and nothing changed, when there is no room.
bool setAbout(KeptRecords& kept, const PresetAbout& about);

// What a list of presets shows of a file without loading it.
struct PresetSummary {
    static constexpr int kSketchSteps = 8;
    PresetAbout about;
    // The first steps of the first pattern, 0 to 1 by height; below 0 for a rest.
    std::array<float, kSketchSteps> sketch{};
    bool isReadable = false;
};
// Of a preset's or a host's state; not readable where it is none.
PresetSummary summaryOf(KWChunk& chunk);
PresetSummary summaryOfFile(const std::string& path);

} // namespace ormund
