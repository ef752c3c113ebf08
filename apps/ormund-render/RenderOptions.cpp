#include "apps/ormund-render/RenderOptions.h"

#include "apps/options/CommandLine.h"
#include "data/library/PresetAbout.h"
#include "data/parameters/Tags.h"

#include <charconv>

namespace ormund {

namespace {

constexpr int kLastTag = kTagCount - 1;

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
    CommandLine line(
        "Plays Ormund without a host and writes what it plays.", "ormund-render", kExamples);
    std::vector<std::string> settings;
    line.text("--preset", options.preset, "Load a preset first (kwe or kws)", "FILE");
    line.text("--cc-map", options.map, "Load a controller map first (kwm)", "FILE");
    line.texts("--set", settings, "Set a parameter, after the preset: tag 0 to 585, value 0 to 1",
        "TAG=VALUE");
    line.text("--midi-in", options.midiIn, "Play a standard MIDI file into the plug-in", "FILE");
    line.number(
        "--bars", options.bars, "Length in bars (16, or the MIDI file's)", "N", {0.25, 100000});
    line.number("--seconds", options.seconds, "Length in seconds", "S", {0.001, 86400});
    line.excludes("--seconds", "--bars");
    line.number("--tempo", options.tempo,
        "Beats per minute (the MIDI file's, the preset's, else 120)", "BPM", {45, 499});
    line.number("--rate", options.rate, "Sample rate (44100)", "HZ", {11050, 196000});
    line.number("--block", options.block, "Frames in a block (512)", "N", {1, 65536});
    line.text("--wav", options.wav, "Write the sound: .wav, .flac or .ogg", "FILE");
    line.text("--midi", options.midi, "Write the notes as a standard MIDI file", "FILE");
    line.text("--png", options.png, "Draw notes, controllers and sound", "FILE");
    line.text("--save", options.save, "Save the state at the end (kwe or kws)", "FILE");
    line.text("--plugin", options.plugin, "Play this module, not the installed one", "FILE");
    line.flag("--list", options.list, "Print all parameters and end");
    line.text("--describe", options.describe, "Print what a kwe, kws or kwm holds", "FILE");
    line.flag("--json", options.json, "Print it as JSON");
    line.needs("--json", "--describe");
    if (const auto end = line.parse(count, arguments))
        return end;
    for (const std::string& text : settings) {
        RenderOptions::Setting setting{};
        if (!parseSetting(text, setting))
            return line.refuse(
                "--set takes TAG=VALUE, a tag of 0 to 585 and a value of 0 to 1, not " + text);
        options.settings.push_back(setting);
    }
    if (const float tempo = summaryOfFile(options.preset).about.tempo; tempo > 0)
        options.presetTempo = static_cast<double>(tempo);
    if (!options.list && options.describe.empty() && !options.rendersAnything())
        return line.refuse("nothing to write: give --wav, --midi, --png or --save");
    return {};
}

} // namespace ormund
