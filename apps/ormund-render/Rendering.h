// One run of the plug-in from start to tail, as heard from outside.
#pragma once

#include "apps/host/ScriptedHost.h"
#include "apps/ormund-render/RenderOptions.h"
#include "data/music/MidiFile.h"

#include <string>
#include <vector>

namespace ormund {

// The lowest and highest sample of a short stretch, both channels together.
struct WavePeak {
    float low = 0;
    float high = 0;
};

struct Rendering {
    static constexpr int kPeakFrames = 128; // what one WavePeak covers

    std::string title;   // the preset, else the plug-in
    double rate = 44100; // Hz
    double tempo = 120;  // at the start
    int beatsPerBar = 4;
    double beats = 0;                          // quarter notes until the transport stopped
    double allBeats = 0;                       // with the tail
    std::vector<ScriptedHost::Event> events;   // from the plug-in
    std::vector<ScriptedHost::Event> incoming; // to the plug-in
    std::vector<MidiFileTempo> tempos;         // in ticks of 960
    std::vector<WavePeak> peaks;
    float highest = 0; // of all samples, linear
};

// Plays and writes the sound file while it plays. Empty, or what went wrong, in one line.
std::string render(const RenderOptions& options, Rendering& result);

MidiFile midiOf(const Rendering& rendering);

// Whole files. Empty, or what went wrong.
std::string readFile(const std::string& path, std::vector<uint8_t>& bytes);
std::string writeFile(const std::string& path, const std::vector<uint8_t>& bytes);

} // namespace ormund
