// What the user asks of the renderer.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ormund {

struct RenderOptions {
    struct Setting {
        int tag;     // 0 to 585
        float value; // 0 to 1
    };
    std::string plugin; // empty: the module that belongs to this program
    std::string preset; // kwe or kws
    std::string map;    // kwm
    std::string midiIn;
    std::vector<Setting> settings;

    std::optional<double> bars;
    std::optional<double> seconds;
    std::optional<double> tempo; // beats per minute; else the MIDI file's, the preset's, else 120
    double presetTempo = 120;
    double rate = 44100;
    int block = 512;

    std::string wav;
    std::string midi;
    std::string png;
    std::string save; // kwe or kws

    bool list = false;
    std::string describe; // kwe, kws or kwm
    bool json = false;
    bool rendersAnything() const
    {
        return !(wav.empty() && midi.empty() && png.empty() && save.empty());
    }
};

// Fills `options`. Answers the exit code when the program is to end at once (help or a mistake,
// both printed), nothing when it is to go on.
std::optional<int> parseRenderOptions(int count, char** arguments, RenderOptions& options);

} // namespace ormund
