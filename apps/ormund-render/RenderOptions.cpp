#include "apps/ormund-render/RenderOptions.h"

#include <charconv>
#include <CLI/CLI.hpp>
#include <cstdio>

namespace {

constexpr int kLastTag = 585;
constexpr int kUsageError = 2;

constexpr char kExamples[] = R"(Examples:
  ormund-render --wav demo.wav --midi demo.mid --png demo.png
      sixteen bars of the factory content as sound, notes and picture
  ormund-render --preset bass.kwe --bars 8 --tempo 96 --wav bass.flac
      eight bars of a preset, as FLAC
  ormund-render --set 4=0.6 --set 330=0.75 --midi swung.mid
      more swing and another step length (tags as --list prints them)
  ormund-render --midi-in keys.mid --png keys.png
      plays a MIDI file into the plug-in
  ormund-render --describe bass.kwe
      prints what a preset holds
)";

// "TAG=VALUE" with a tag of 0 to 585 and a value of 0 to 1.
bool parseSetting(const std::string& text, RenderOptions::Setting& setting)
{
    const char* const end = text.data() + text.size();
    const auto tag = std::from_chars(text.data(), end, setting.tag);
    if (tag.ec != std::errc() || tag.ptr == end || *tag.ptr != '=')
        return false;
    const auto value = std::from_chars(tag.ptr + 1, end, setting.value);
    return value.ec == std::errc() && value.ptr == end && setting.tag >= 0
        && setting.tag <= kLastTag && setting.value >= 0 && setting.value <= 1;
}

} // namespace

std::optional<int> parseRenderOptions(int count, char** arguments, RenderOptions& options)
{
    CLI::App app("Plays Ormund without a host and writes what it plays.", "ormund-render");
    app.footer(kExamples);
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    std::vector<std::string> settings;

    app.add_option("--preset", options.preset, "Load a preset first (kwe or kws)")
        ->type_name("FILE");
    app.add_option("--cc-map", options.map, "Load a controller map first (kwm)")->type_name("FILE");
    app.add_option(
           "--set", settings, "Set a parameter, after the preset: tag 0 to 585, value 0 to 1")
        ->type_name("TAG=VALUE")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->allow_extra_args(false);
    app.add_option("--midi-in", options.midiIn, "Play a standard MIDI file into the plug-in")
        ->type_name("FILE");
    auto* bars = app.add_option("--bars", options.bars, "Length in bars (16, or the MIDI file's)")
                     ->type_name("N")
                     ->check(CLI::Range(0.25, 100000.0));
    app.add_option("--seconds", options.seconds, "Length in seconds")
        ->type_name("S")
        ->check(CLI::Range(0.001, 86400.0))
        ->excludes(bars);
    app.add_option("--tempo", options.tempo, "Beats per minute (120, or the MIDI file's)")
        ->type_name("BPM")
        ->check(CLI::Range(45.0, 499.0));
    app.add_option("--rate", options.rate, "Sample rate (44100)")
        ->type_name("HZ")
        ->check(CLI::Range(11050.0, 196000.0));
    app.add_option("--block", options.block, "Frames in a block (512)")
        ->type_name("N")
        ->check(CLI::Range(1, 65536));
    app.add_option("--wav", options.wav, "Write the sound: .wav, .flac or .ogg")->type_name("FILE");
    app.add_option("--midi", options.midi, "Write the notes as a standard MIDI file")
        ->type_name("FILE");
    app.add_option("--png", options.png, "Draw notes, controllers and sound")->type_name("FILE");
    app.add_option("--save", options.save, "Save the state at the end (kwe or kws)")
        ->type_name("FILE");
    app.add_option("--plugin", options.plugin, "Play this module, not the installed one")
        ->type_name("FILE");
    app.add_flag("--list", options.list, "Print all parameters and end");
    auto* describe =
        app.add_option("--describe", options.describe, "Print what a kwe, kws or kwm holds")
            ->type_name("FILE");
    app.add_flag("--json", options.json, "Print it as JSON")->needs(describe);

    const auto refuse = [](const std::string& why) {
        std::fprintf(stderr, "ormund-render: %s\n", why.c_str());
        return kUsageError;
    };
    try {
        app.parse(count, arguments);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& mistake) {
        return refuse(mistake.what());
    }
    for (const std::string& text : settings) {
        RenderOptions::Setting setting{};
        if (!parseSetting(text, setting))
            return refuse(
                "--set takes TAG=VALUE, a tag of 0 to 585 and a value of 0 to 1, not " + text);
        options.settings.push_back(setting);
    }
    if (!options.list && options.describe.empty() && !options.rendersAnything())
        return refuse("nothing to write: give --wav, --midi, --png or --save (--help tells more)");
    return {};
}
