#include "apps/ormund/PlayerOptions.h"

#include <CLI/CLI.hpp>
#include <cstdio>

namespace {

constexpr int kUsageError = 2;
constexpr int kLowestRate = 11050; // what the plug-in takes
constexpr int kHighestRate = 196000;
constexpr int kLargestBlock = 8192;

constexpr char kExamples[] =
    R"(Without --device the first that answers plays: JACK, PulseAudio, ALSA.
On JACK the transport, its tempo and its position are shared with JACK's other programs.

Examples:
  ormund                              opens the window
  ormund bass.kwe --play              opens a preset and plays it
  ormund --device pulse --block 256   plays on PulseAudio with short blocks
  ormund --device none --no-window --play --midi-out Synth
                                      sends notes to the port "Synth", without sound or window
  ormund --list-devices               prints what --device, --midi-in and --midi-out take
)";

} // namespace

std::optional<int> parsePlayerOptions(int count, char** arguments, PlayerOptions& options)
{
    CLI::App app("Plays Ormund as a program of its own.", "ormund");
    app.footer(kExamples);
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    std::string preset;
    auto* file = app.add_option(
        "FILE", options.file, "A preset or a controller map to open (kwe, kws or kwm)");
    app.add_option("--preset", preset, "The same, named")->type_name("FILE")->excludes(file);
    app.add_flag("--list-devices", options.listDevices, "Print devices and MIDI ports and end");
    app.add_option("--device", options.sound.device,
           "jack, pulse, alsa, none, or a listed device or a part of its name")
        ->type_name("NAME");
    app.add_option("--rate", options.sound.rate, "Sample rate (the device's)")
        ->type_name("HZ")
        ->check(CLI::Range(kLowestRate, kHighestRate));
    app.add_option("--block", options.sound.block, "Frames in a block (512; JACK's are JACK's)")
        ->type_name("N")
        ->check(CLI::Range(16, kLargestBlock));
    app.add_option("--midi-in", options.sound.midiIn, "Connect the MIDI input to this port")
        ->type_name("NAME");
    app.add_option("--midi-out", options.sound.midiOut, "Connect the MIDI output to this port")
        ->type_name("NAME");
    app.add_option("--tempo", options.tempo, "Beats per minute (120)")
        ->type_name("BPM")
        ->check(CLI::Range(LiveHost::kLowestTempo, LiveHost::kHighestTempo));
    app.add_flag("--play", options.play, "Start to play at once");
    bool noWindow = false;
    app.add_flag("--no-window", noWindow, "Show no window; Ctrl+C ends");
    app.set_version_flag("--version", "ormund " ORMUND_VERSION, "Print the version and end");
    try {
        app.parse(count, arguments);
    } catch (const CLI::Success& asked) {
        return app.exit(asked);
    } catch (const CLI::ParseError& mistake) {
        std::fprintf(stderr, "ormund: %s (--help tells more)\n", mistake.what());
        return kUsageError;
    }
    if (options.file.empty())
        options.file = preset;
    options.hasWindow = !noWindow;
    return {};
}
