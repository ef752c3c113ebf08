#include "presets/BankSource.h"

#include "data/music/ScaleTable.h"
#include "data/parameters/ChoiceLists.h"
#include "data/parameters/Tags.h"
#include "tests/platform/TestFolder.h"

#include <fstream>
#include <gmock/gmock.h>

namespace ormund {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

// A song from a text, and its first pattern as a reader of notes sees it.
class BankSourceTest : public testing::Test {
protected:
    std::string read(const std::string& text)
    {
        const std::string path = folder / "x.txt";
        std::ofstream(path) << text;
        std::string error;
        readBankSource(path, folder.path(), song, error, &about);
        return error;
    }

    // MIDI notes over the key, a rest as -99.
    std::vector<int> semitones(int pattern, int count)
    {
        const int scale =
            std::min(static_cast<int>(song.patterns.at(pattern, patternSlot(Tag::Scale)) * kScales),
                kScales - 1);
        std::vector<int> notes;
        for (int i = 0; i < count; ++i) {
            const auto octave = static_cast<size_t>(song.tracks.octave.stepAt(pattern, i));
            const int degree = static_cast<int>(song.tracks.pitch.getRowAtIndex(pattern, i));
            notes.push_back(song.tracks.velocity.getRowAtIndex(pattern, i) > 0
                    ? scaleNote(scale, 24 + degree) + 12 * kOctaveOffsets[octave]
                    : -99);
        }
        return notes;
    }

    const TestFolder folder;
    DetachedSong song;
    BankAbout about;
};

} // namespace

TEST_F(BankSourceTest, AMistakeNamesItsFileLineAndReason)
{
    struct Case {
        const char* text;
        const char* reason;
    };
    for (const Case& wrong :
        {Case{"set swing 0.1\nset swung 0.1\n", ":2: no parameter is called swung"},
            Case{"set scale \"Major\"\nset scale \"No such\"\n", ":2: scale has no choice"},
            Case{"set swing 1.5\n", ":1: a value must be from 0 to 1"},
            Case{"pattern\nvelocity 9x\n", ":2: a step is a digit or a dot"},
            Case{"pitch 0\n", ":1: no word is called pitch before the first pattern"},
            Case{"synth Nowhere/Nothing\n", "cannot be read"},
            Case{"key\n", ":1: key needs a value"},
            Case{"key C3\nscale Dorian\npattern\nnotes C3 E3\n", ":4: E3 is no note of Dorian"},
            Case{"key C3\npattern\nnotes H3\n", ":3: H3 is no note"},
            Case{"key C3\npattern\nat 31 C3 C3 C3\n", ":3: a pattern has 32 steps"},
            Case{"pattern\ntranspose 2\n", ":2: there are no notes yet"},
            Case{"pattern a\npattern b from c\n", ":2: no pattern is called c"},
            Case{"pattern a\nchain a 4 b 4\n", "no pattern is called b"},
            Case{"pattern a\nchain a\n", "a chain is up to eight patterns"}})
        EXPECT_THAT(read(wrong.text), HasSubstr(wrong.reason)) << wrong.text;
}

TEST_F(BankSourceTest, AScoreBecomesPitchesOctavesAndVelocities)
{
    ASSERT_EQ(read("key C3\nscale Major\npattern\naccents 85\n"
                   "notes C3 E3! . C5? | - A1 B2:m7 C3'\n"),
        "");
    EXPECT_THAT(semitones(0, 8), ElementsAre(0, 4, -99, 24, -99, -15, -1, 0));
    const KWTableXY& loud = song.tracks.velocity;
    EXPECT_FLOAT_EQ(loud.getRowAtIndex(0, 0), 0.8f);
    EXPECT_FLOAT_EQ(loud.getRowAtIndex(0, 1), 0.95f);
    EXPECT_FLOAT_EQ(loud.getRowAtIndex(0, 3), 0.4f);
    EXPECT_FLOAT_EQ(loud.getRowAtIndex(0, 5), 0.5f);
    // Four bars of one: the text repeats over the 32 steps.
    EXPECT_FLOAT_EQ(loud.getRowAtIndex(0, 25), 0.95f);
    EXPECT_GT(song.tracks.chord.stepAt(0, 6), 0.0f);
    // Two steps of a tied note are the whole gate, a short one is a fraction.
    const KWTableXY& gate = song.tracks.gateTime;
    EXPECT_NEAR(gate.getRowAtIndex(0, 3), 0.94f, 0.001f);
    EXPECT_NEAR(gate.getRowAtIndex(0, 0), 0.47f, 0.001f);
    EXPECT_NEAR(gate.getRowAtIndex(0, 7), 0.2f, 0.001f);
}

TEST_F(BankSourceTest, APatternIsMadeFromAnotherByNamedChanges)
{
    ASSERT_EQ(read("key C3\nscale Major\npattern theme\nnotes C3 D3 E3 . G3 - . A3\n"
                   "pattern up from theme\ntranspose 7\n"
                   "pattern mirror from theme\ninvert\n"
                   "pattern back from theme\nreverse 8\n"
                   "pattern later from theme\nrotate 2 32\n"
                   "pattern less from theme\nthin 2\n"
                   "pattern end from up\nat 5 C3 D3\nrest 7 8\n"),
        "");
    EXPECT_THAT(semitones(1, 8), ElementsAre(12, 14, 16, -99, 19, -99, -99, 21));
    EXPECT_THAT(semitones(2, 5), ElementsAre(0, -1, -3, -99, -7));
    EXPECT_THAT(semitones(3, 8), ElementsAre(9, -99, 7, -99, -99, 4, 2, 0));
    EXPECT_THAT(semitones(4, 8), ElementsAre(-99, 9, 0, 2, 4, -99, 7, -99));
    EXPECT_THAT(semitones(5, 8), ElementsAre(0, -99, 4, -99, -99, -99, -99, 9));
    EXPECT_THAT(semitones(6, 8), ElementsAre(12, 14, 16, -99, 0, 2, -99, -99));
}

TEST_F(BankSourceTest, APatternMayDifferInScaleSpeedSwingWalkAndLoops)
{
    ASSERT_EQ(read("key C3\nscale Major\nspeed 1/16\nswing 0.1\npattern a\nnotes C3\n"
                   "pattern b\nscale Dorian\nspeed 1/8 T\nswing 0.5\nwalk backward\nsteps 24\n"
                   "loop gate 2 6\nnotes Eb3\n"),
        "");
    for (const int tag : {Tag::Scale, Tag::StepSpeed, Tag::Swing, Tag::PitchMode})
        EXPECT_NE(song.patterns.at(0, patternSlot(tag)), song.patterns.at(1, patternSlot(tag)));
    EXPECT_EQ(song.tracks.pitchLoop.zone(1).end, 23);
    EXPECT_EQ(song.tracks.gateLoop.zone(1).start, 2);
    EXPECT_EQ(song.tracks.pitchLoop.zone(0).end, 31);
}

TEST_F(BankSourceTest, OnlyModulationTracksThatASongWritesAreOn)
{
    ASSERT_EQ(read("set cutoff 0.25\npattern a\nmod cutoff 0 127\npattern b\npattern c from b\n"
                   "mod pan wave 2\n"),
        "");
    const auto isOn = [&](int track, int pattern) {
        return song.patterns.at(pattern, patternSlot(Tag::ModTrackOn + track)) >= 0.5f;
    };
    for (int track = 0; track < kModTracks; ++track)
        EXPECT_EQ(isOn(track, 0), track == 4 || track == 1) << track;
    // A pattern that does not write the track leaves the pan where the sound has it.
    EXPECT_FLOAT_EQ(song.tracks.mods[1].getRowAtIndex(0, 9), song.parameters.raw(Tag::SynthPan));
}

TEST_F(BankSourceTest, AChainNamesPatternsAndBars)
{
    ASSERT_EQ(read("about A line\ntags dark slow\ntempo 93\nspeed 1/16\npattern a\npattern b\n"
                   "speed 1/8\nchain a 4 b 2 a 6\n"),
        "");
    EXPECT_THAT(about.line, "A line");
    EXPECT_EQ(about.tempo, 93);
    EXPECT_THAT(song.tracks.patternNumbers.stepAt(0, 1), 1);
    // Bars at each pattern's own speed, counted in the longest unit that fits all: 16 steps.
    EXPECT_EQ(song.tracks.patternRepeats.stepAt(0, 0), 3);
    EXPECT_EQ(song.tracks.patternRepeats.stepAt(0, 1), 0);
    EXPECT_EQ(song.tracks.patternRepeats.stepAt(0, 2), 5);
    EXPECT_EQ(song.tracks.sequenceLoop.zone(0).end, 2);
    EXPECT_GE(song.parameters.raw(Tag::SongOn), 0.5f);
}

} // namespace ormund
