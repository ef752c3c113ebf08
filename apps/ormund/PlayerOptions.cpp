#include "apps/ormund/PlayerOptions.h"

#include "apps/options/CommandLine.h"

#include <cstdio>

namespace ormund {

namespace {

constexpr int kLowestRate = 11050; // what the plug-in takes
constexpr int kHighestRate = 196000;
constexpr int kLargestBlock = 8192;
constexpr int kUsageError = 2;

constexpr char kExamples[] =
    R"(Without --device the first that answers plays: JACK, PulseAudio, ALSA.
On JACK the transport, its tempo and its position are shared with JACK's other programs.

Examples:
  ormund                              opens the window
  ormund bass.kwe --play              opens a preset and plays it
  ormund --device pulse --block 256   plays on PulseAudio with short blocks
  ormund --device none --no-window --play --midi-out Synth
                                      sends notes to the port "Synth", without sound or window
  ormund --sync clock --midi-in Drums follows the MIDI clock that comes from "Drums"
  ormund --list-devices               prints what --device, --midi-in and --midi-out take
)";

} // namespace

std::optional<int> parsePlayerOptions(int count, char** arguments, PlayerOptions& options)
{
    CommandLine line("Plays Ormund as a program of its own.", "ormund", kExamples);
    std::string preset;
    line.text("FILE", options.file, "A preset or a controller map to open (kwe, kws or kwm)");
    line.text("--preset", preset, "The same, named", "FILE");
    line.excludes("--preset", "FILE");
    line.flag("--list-devices", options.listDevices, "Print devices and MIDI ports and end");
    line.text("--device", options.sound.device,
        "jack, pulse, alsa, none, or a listed device or a part of its name", "NAME");
    line.number("--rate", options.sound.rate, "Sample rate (the device's)", "HZ",
        {kLowestRate, kHighestRate});
    line.number("--block", options.sound.block, "Frames in a block (512; JACK's are JACK's)", "N",
        {16, kLargestBlock});
    line.text("--midi-in", options.sound.midiIn, "Connect the MIDI input to this port", "NAME");
    line.text("--midi-out", options.sound.midiOut, "Connect the MIDI output to this port", "NAME");
    std::string leader;
    line.text("--sync", leader,
        "What leads the song: own, jack (the default, where JACK plays) or clock", "NAME");
    line.flag("--send-clock", options.sendClock, "Send MIDI clock");
    line.number("--tempo", options.tempo, "Beats per minute (the preset's, else 120)", "BPM",
        {LiveHost::kLowestTempo, LiveHost::kHighestTempo});
    line.flag("--fresh", options.isFresh, "Begin without the last song");
    line.flag("--play", options.play, "Start to play at once");
    bool noWindow = false;
    line.flag("--no-window", noWindow, "Show no window; Ctrl+C ends");
    line.version("ormund " ORMUND_VERSION);
    if (const auto end = line.parse(count, arguments))
        return end;
    if (leader == "own")
        options.leader = Leader::Own;
    else if (leader == "clock")
        options.leader = Leader::MidiClock;
    else if (!leader.empty() && leader != "jack") {
        std::fprintf(stderr, "ormund: --sync takes own, jack or clock\n");
        return kUsageError;
    }
    if (options.file.empty())
        options.file = preset;
    options.hasWindow = !noWindow;
    return {};
}

} // namespace ormund
