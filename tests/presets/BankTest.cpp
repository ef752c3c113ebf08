#include "data/library/PresetAbout.h"
#include "data/library/Settings.h"
#include "platform/KWFileio.h"
#include "presets/BankSource.h"
#include "tests/presets/BankMeasure.h"
#include "tests/support/Checked.h"
#include "tests/support/Player.h"

#include <cmath>
#include <gtest/gtest.h>
#include <set>

namespace ormund {

namespace {

PresetTree bank(PresetKind kind)
{
    PresetTree tree;
    const PresetKindRow& row = presetKindRow(kind);
    tree.scan({std::string(ORMUND_BIN_DIR "/../presets/") + row.title + "/Factory"}, row.extension);
    return tree;
}

struct Heard {
    size_t notes = 0;
    size_t pitches = 0;
    size_t controllers = 0;
    float peak = 0;
    double loudness = 0; // root of the mean square
    int hanging = 0;
    bool isFinite = true;
};

Heard play(PresetKind kind, const std::string& path)
{
    Player player({.empty = false});
    EXPECT_EQ(player.engine().library.load(kind, path), LoadResult::Done) << path;
    player.keepAudio(true);
    player.start();
    player.playBeats(32);
    Heard heard;
    std::set<int> pitches;
    for (const MidiOut& event : player.events()) {
        heard.notes += event.isNoteOn();
        heard.controllers += (event.status & 0xF0) == 0xB0 || (event.status & 0xF0) == 0xD0;
        if (event.isNoteOn())
            pitches.insert(event.data1);
    }
    heard.pitches = pitches.size();
    double sum = 0;
    for (const std::vector<float>* side : {&player.left(), &player.right()})
        for (const float sample : *side) {
            heard.isFinite = heard.isFinite && std::isfinite(sample);
            heard.peak = std::max(heard.peak, std::abs(sample));
            sum += static_cast<double>(sample) * static_cast<double>(sample);
        }
    heard.loudness = std::sqrt(sum / static_cast<double>(2 * player.left().size()));
    player.stop();
    player.play(44100 * 8);
    heard.hanging = player.soundingNotes();
    return heard;
}

void checkKind(PresetKind kind, size_t leastControllers)
{
    const PresetTree tree = bank(kind);
    int files = 0;
    for (int folder = 0; folder < tree.folderCount(); ++folder)
        for (int i = 0; i < tree.fileCount(folder); ++i, ++files) {
            const PresetFile& file = *tree.fileAt(folder, i);
            const Heard heard = play(kind, file.path);
            SCOPED_TRACE(file.name);
            std::printf(
                "%-28s %4zu notes %3zu pitches %5zu controllers  peak %.3f  loudness %.3f\n",
                file.name.c_str(), heard.notes, heard.pitches, heard.controllers,
                static_cast<double>(heard.peak), heard.loudness);
            EXPECT_TRUE(heard.isFinite);
            EXPECT_GE(heard.notes, 12u);
            EXPECT_GE(heard.pitches, 2u);
            EXPECT_LT(heard.peak, 1.0f);
            EXPECT_GT(heard.peak, 0.05f);
            // One preset after another, with the hand off the volume.
            EXPECT_GT(heard.loudness, 0.02);
            EXPECT_LT(heard.loudness, 0.11);
            EXPECT_EQ(heard.hanging, 0);
            if (tree.folderName(folder) == "Controller Patterns") {
                EXPECT_GE(heard.controllers, leastControllers);
            }
        }
    EXPECT_GE(files, 24);
}

} // namespace

TEST(Bank, EveryGlobalPresetPlaysWithinTheScaleOfItsLevel) { checkKind(PresetKind::Global, 30); }

TEST(Bank, EverySynthPresetSoundsAndNoneClips) { checkKind(PresetKind::Synth, 0); }

TEST(Bank, APieceSaysWhoMadeItAndAtWhichTempo)
{
    const PresetTree tree = bank(PresetKind::Global);
    const PresetSummary summary =
        summaryOfFile(tree.folderPath(tree.folderNamed("Dub")) + "/Wet cement.kwe");
    EXPECT_EQ(summary.about.author, "Kelda Works");
    EXPECT_EQ(summary.about.tags, "dub heavy bass echo");
    EXPECT_EQ(summary.about.tempo, 70);
}

TEST(Bank, ANewInstanceFindsIt)
{
    KWUniClient engine(nullptr);
    EXPECT_GE(engine.presets.tree(PresetKind::Global).folderCount(), 4);
    EXPECT_GE(engine.presets.tree(PresetKind::Synth).folderCount(), 6);
    engine.setParameter(Tag::NextPreset, 0.0f);
    EXPECT_NE(engine.presets.name(PresetKind::Global), "");
}

// Songs with a line about themselves are whole pieces: their chain is played and measured.
TEST(Bank, ThePiecesAreAsLoudAndAsVariedAsTheyShouldBe)
{
    const PresetTree tree = bank(PresetKind::Global);
    const size_t most = kChecked ? 2 : 1000; // a checker has seen all it can in two of them
    std::vector<std::pair<std::string, SongMeasure>> pieces;
    for (int folder = 0; folder < tree.folderCount(); ++folder)
        for (int i = 0; i < tree.fileCount(folder); ++i) {
            const PresetFile& file = *tree.fileAt(folder, i);
            const std::string root = ORMUND_SOURCE_DIR "/presets";
            DetachedSong song;
            BankAbout about;
            std::string error;
            ASSERT_TRUE(readBankSource(
                root + "/global/" + tree.folderName(folder) + "/" + file.name + ".txt", root, song,
                error, &about))
                << error;
            if (!about.line.empty() && pieces.size() < most)
                pieces.emplace_back(file.name, measureSong(file.path, about.tempo));
        }
    size_t wide = 0;
    for (const auto& [name, piece] : pieces) {
        std::string nearest;
        double nearestBy = 2;
        for (const auto& [otherName, other] : pieces)
            if (otherName != name && distance(piece, other) < nearestBy) {
                nearest = otherName;
                nearestBy = distance(piece, other);
            }
        std::printf("%-22s %6.1f LUFS  peak %5.1f dB  correlation %5.2f  DC %4.0f dB  "
                    "%2d of %2d bars  %2d patterns  %.2f to %s\n",
            name.c_str(), piece.loudness, piece.truePeak, piece.correlation, piece.dc,
            piece.differentBars, piece.bars, piece.patterns, nearestBy, nearest.c_str());
        SCOPED_TRACE(name);
        EXPECT_NEAR(piece.loudness, -20, 1.5);
        EXPECT_LT(piece.truePeak, -1);
        EXPECT_LT(piece.dc, -60);
        EXPECT_LT(piece.firstSound, 0.5);
        EXPECT_GE(piece.bars, 12);
        EXPECT_GE(piece.differentBars * 2, piece.bars);
        EXPECT_GE(piece.patterns, 5);
        EXPECT_EQ(piece.bankSelects, 0);
        EXPECT_GT(nearestBy, 0.3) << nearest;
        wide += piece.correlation < 0.95;
    }
    EXPECT_GE(wide * 2, pieces.size());
}

} // namespace ormund
