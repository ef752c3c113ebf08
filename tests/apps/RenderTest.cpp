// The renderer as a user runs it: arguments in, files and exit code out.
#include "data/music/MidiFile.h"
#include "tests/support/Command.h"
#include "tests/support/MidiExamples.h"
#include "tests/support/OwnHome.h"

#include <cairo.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

namespace ormund {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

const std::string kExamples = ORMUND_SOURCE_DIR "/tests/data/";

class Renderer : public testing::Test {
protected:
    void SetUp() override
    {
        // The font library keeps its tables for good; under a leak checker that is no fault of
        // ours.
        setenv("LSAN_OPTIONS",
            "print_suppressions=0:suppressions=" ORMUND_SOURCE_DIR "/tests/support/lsan.supp", 0);
    }
    Outcome run(const std::string& arguments)
    {
        return runCommand(ORMUND_BIN_DIR "/ormund-render " + arguments);
    }
    std::vector<uint8_t> bytesOf(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    MidiFile midiOf(const std::string& arguments)
    {
        const std::string path = home.file("out.mid");
        const Outcome outcome = run("--midi " + path + " " + arguments);
        EXPECT_EQ(outcome.code, 0) << outcome.text;
        MidiFile midi;
        EXPECT_EQ(midi.read(bytesOf(path)), MidiFile::ReadResult::Ok);
        return midi;
    }
    OwnHome home;
};

std::vector<MidiFileEvent> noteOnsOf(const MidiFile& midi)
{
    std::vector<MidiFileEvent> notes;
    for (const MidiFileEvent& event : midi.events)
        if ((event.bytes[0] & 0xf0) == 0x90 && event.bytes[2] > 0)
            notes.push_back(event);
    return notes;
}

TEST_F(Renderer, ASongIsPlayedAtItsOwnTempoUnlessTheUserNamesOne)
{
    const std::string song = "--bars 1 --preset '" ORMUND_BIN_DIR
                             "/../presets/Global Presets/Factory/Dub/Wet cement.kwe'";
    EXPECT_NEAR(midiOf(song).tempos.at(0).beatsPerMinute, 70, 0.01);
    EXPECT_NEAR(midiOf(song + " --tempo 100").tempos.at(0).beatsPerMinute, 100, 0.01);
}

TEST_F(Renderer, WritesSoundInEveryFormat)
{
    for (const char* name : {"a.wav", "a.flac", "a.OGG"}) {
        const std::string path = home.file(name);
        const Outcome outcome = run("--bars 2 --rate 48000 --wav " + path);
        ASSERT_EQ(outcome.code, 0) << outcome.text;
        EXPECT_THAT(outcome.text, IsEmpty()); // no progress bar in a pipe
        SF_INFO info{};
        SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
        ASSERT_TRUE(file) << name;
        EXPECT_EQ(info.channels, 2);
        EXPECT_EQ(info.samplerate, 48000);
        EXPECT_EQ(info.frames, 4 * 48000 + 48000) << name; // two bars and the tail
        std::vector<float> samples(static_cast<size_t>(2 * info.frames));
        EXPECT_EQ(sf_readf_float(file, samples.data(), info.frames), info.frames);
        sf_close(file);
        const float peak = *std::max_element(samples.begin(), samples.end());
        EXPECT_GT(peak, 0.05f) << name;
    }
}

TEST_F(Renderer, WritesMidiWithTempoAndEveryNoteEnds)
{
    const MidiFile midi = midiOf("--bars 4 --tempo 96");
    EXPECT_NEAR(midi.tempoAt(0), 96, 1e-3);
    EXPECT_EQ(midi.name, "Ormund");
    EXPECT_GE(noteOnsOf(midi).size(), 16u);
    std::map<int, int> open;
    for (const MidiFileEvent& event : midi.events) {
        if ((event.bytes[0] & 0xf0) == 0x90 && event.bytes[2] > 0)
            open[event.bytes[1]] = 1;
        else if ((event.bytes[0] & 0xe0) == 0x80)
            open.erase(event.bytes[1]);
    }
    EXPECT_THAT(open, IsEmpty());
    // The first step sounds on the first beat.
    EXPECT_LT(midi.beatOf(noteOnsOf(midi).front().tick), 0.01);
}

TEST_F(Renderer, TheFactoryChainHasVariety)
{
    const MidiFile midi = midiOf("");
    std::set<int> pitches;
    std::set<int> velocities;
    for (const MidiFileEvent& note : noteOnsOf(midi)) {
        pitches.insert(note.bytes[1]);
        velocities.insert(note.bytes[2]);
    }
    EXPECT_GE(pitches.size(), 7u);
    EXPECT_GE(velocities.size(), 3u);
}

TEST_F(Renderer, BytesDoNotDependOnTheBlockSize)
{
    midiOf("--bars 16 --set 357=1 --block 512");
    const auto reference = bytesOf(home.file("out.mid"));
    for (const char* block : {"1", "64", "1000", "4096"}) {
        midiOf(std::string("--bars 16 --set 357=1 --block ") + block);
        EXPECT_EQ(bytesOf(home.file("out.mid")), reference) << block;
    }
}

TEST_F(Renderer, ExamplesAreWhatTheProjectMakes)
{
    for (const MidiExample& example : midiExamples())
        EXPECT_EQ(bytesOf(kExamples + example.fileName), example.file.write())
            << example.fileName << " is stale: build and run ormund-midi-examples";
}

TEST_F(Renderer, KeysFromAFileTranspose)
{
    const MidiFile plain = midiOf("--bars 8 --tempo 110");
    const MidiFile played = midiOf("--midi-in " + kExamples + "transpose-keys.mid");
    EXPECT_NEAR(played.tempoAt(0), 110, 0.01);
    const auto first = [](const MidiFile& midi, double from) {
        std::vector<int> pitches;
        for (const MidiFileEvent& note : noteOnsOf(midi))
            if (midi.beatOf(note.tick) >= from && midi.beatOf(note.tick) < from + 1.9)
                pitches.push_back(note.bytes[1]);
        return pitches;
    };
    EXPECT_NE(first(plain, 5), first(played, 5)); // the second bar's key is seven degrees up
    EXPECT_FALSE(first(played, 5).empty());
}

TEST_F(Renderer, PerformanceKeysAreHeard)
{
    const std::string keys = "--midi-in " + kExamples + "performance-keys.mid --bars 4 --set ";
    // In the first keyboard mode these keys are between the zones and do nothing.
    EXPECT_NE(noteOnsOf(midiOf(keys + "585=0")), noteOnsOf(midiOf(keys + "585=1")));
    EXPECT_EQ(noteOnsOf(midiOf(keys + "585=0")), noteOnsOf(midiOf("--bars 4")));
}

TEST_F(Renderer, SettingsReachTheParameters)
{
    const auto low = noteOnsOf(midiOf("--bars 1 --set 0=0"));
    const auto high = noteOnsOf(midiOf("--bars 1 --set 0=1"));
    ASSERT_FALSE(low.empty());
    ASSERT_EQ(low.size(), high.size());
    EXPECT_EQ(high.front().bytes[1] - low.front().bytes[1], 48);
}

TEST_F(Renderer, SavesWhatItPlaysAndPlaysWhatItSaved)
{
    const std::string preset = home.file("song.kwe");
    const std::string settings = "--set 0=0.8 --set 1=0.3 --set 330=0.55 ";
    const auto saved = noteOnsOf(midiOf("--bars 4 --save " + preset + " " + settings));
    EXPECT_EQ(noteOnsOf(midiOf("--bars 4 --preset " + preset)), saved);
    EXPECT_NE(noteOnsOf(midiOf("--bars 4")), saved);
    // Saving what was loaded changes no byte; the name is in there too.
    std::filesystem::create_directory(home.file("again"));
    const std::string again = home.file("again/song.kwe");
    ASSERT_EQ(run("--bars 0.25 --preset " + preset + " --save " + again).code, 0);
    EXPECT_EQ(bytesOf(again), bytesOf(preset));
}

TEST_F(Renderer, DescribesAPresetAndWhereADamagedOneBreaks)
{
    const std::string preset = home.file("song.kwe");
    ASSERT_EQ(run("--bars 0.25 --set 1=0.09 --save " + preset).code, 0);
    const Outcome text = run("--describe " + preset);
    EXPECT_EQ(text.code, 0);
    EXPECT_THAT(text.text, HasSubstr("name=Scale"));
    EXPECT_THAT(text.text, HasSubstr("Phrygian"));
    const Outcome json = run("--describe " + preset + " --json");
    EXPECT_EQ(json.code, 0);
    EXPECT_THAT(json.text, StartsWith("{"));
    EXPECT_THAT(json.text, HasSubstr("\"what\": \"pitch\""));

    const auto whole = bytesOf(preset);
    for (const size_t words : {0u, 3u, 8u, 9u, 40u, 1000u}) {
        const std::string cut = home.file("cut.kwe");
        std::ofstream(cut, std::ios::binary)
            .write(reinterpret_cast<const char*>(whole.data()), static_cast<long>(4 * words));
        const Outcome broken = run("--describe " + cut);
        EXPECT_EQ(broken.code, 1) << words;
        EXPECT_THAT(broken.text, HasSubstr("damaged at word " + std::to_string(words)));
    }
    const std::string other = home.file("other.kwe");
    std::ofstream(other) << "twenty bytes of text";
    EXPECT_THAT(run("--describe " + other).text, HasSubstr("no file of Ormund's at word 4"));
}

TEST_F(Renderer, DrawsWhatWasPlayed)
{
    const std::string path = home.file("a.png");
    ASSERT_EQ(run("--bars 4 --png " + path).code, 0);
    cairo_surface_t* picture = cairo_image_surface_create_from_png(path.c_str());
    ASSERT_EQ(cairo_surface_status(picture), CAIRO_STATUS_SUCCESS);
    const int width = cairo_image_surface_get_width(picture);
    const int height = cairo_image_surface_get_height(picture);
    std::map<uint32_t, int> hues;
    for (int y = 0; y < height; ++y) {
        const auto* row = reinterpret_cast<const uint32_t*>(
            cairo_image_surface_get_data(picture) + y * cairo_image_surface_get_stride(picture));
        for (int x = 0; x < width; ++x)
            ++hues[row[x] & 0xffffff];
    }
    cairo_surface_destroy(picture);
    EXPECT_GT(hues[0x16181C], width * height / 5); // the ground
    for (const uint32_t hue : {0xF2A541u, 0xE4572Eu, 0x4EA5D9u})
        EXPECT_GT(hues[hue], 50) << std::hex << hue;
}

TEST_F(Renderer, MistakesGiveOneClearLine)
{
    const std::string noMidi = home.file("no.mid");
    const std::string noPreset = home.file("no.kwe");
    std::ofstream(noMidi) << "no MIDI at all";
    std::ofstream(noPreset) << "no preset at all";
    const struct {
        std::string arguments;
        int code;
        std::string words;
    } rows[] = {
        {"", 2, "nothing to write"},
        {"--wav a.mp3", 1, ".wav, .flac or .ogg"},
        {"--wav /no/such/folder/a.wav", 1, "No such file or directory"},
        {"--bars 1 --midi /no/such/folder/a.mid", 1, "No such file or directory"},
        {"--bars 1 --png /no/such/folder/a.png", 1, "No such file or directory"},
        {"--midi a.mid --midi-in " + noMidi, 1, "is no standard MIDI file"},
        {"--midi a.mid --midi-in /no/such.mid", 1, "No such file or directory"},
        {"--midi a.mid --preset /no/such.kwe", 1, "No such file or directory"},
        {"--midi a.mid --preset " + noMidi, 1, "ends in .kwe or .kws"},
        {"--midi a.mid --preset " + noPreset, 1, "cannot load " + noPreset + ": "},
        {"--bars 1 --save /no/such/folder/a.kwe", 1, "cannot save /no/such/folder/a.kwe"},
        {"--midi a.mid --plugin /no/such.so", 1, "/no/such.so"},
        {"--midi a.mid --set 774=0", 2, "TAG=VALUE"},
        {"--midi a.mid --set 0=1.5", 2, "TAG=VALUE"},
        {"--midi a.mid --set tempo", 2, "TAG=VALUE"},
        {"--midi a.mid --tempo 20", 2, "--tempo"},
        {"--midi a.mid --bars 1 --seconds 1", 2, "--seconds"},
        {"--midi a.mid --bars", 2, "--bars"},
        {"--surprise", 2, "--surprise"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = run(row.arguments);
        EXPECT_EQ(outcome.code, row.code) << row.arguments << "\n" << outcome.text;
        EXPECT_EQ(outcome.lines(), 1) << outcome.text;
        EXPECT_THAT(outcome.text, StartsWith("ormund-render: "));
        EXPECT_THAT(outcome.text, HasSubstr(row.words)) << row.arguments;
    }
}

TEST_F(Renderer, ListsEveryParameterAndHelpsItself)
{
    const Outcome list = run("--list");
    EXPECT_EQ(list.code, 0);
    EXPECT_EQ(list.lines(), 357 + 1);
    EXPECT_THAT(list.text, HasSubstr("Root_Key"));
    const Outcome help = run("--help");
    EXPECT_EQ(help.code, 0);
    for (const char* word : {"--preset", "--midi-in", "--set", "Examples:"})
        EXPECT_THAT(help.text, HasSubstr(word));
}

} // namespace

} // namespace ormund
