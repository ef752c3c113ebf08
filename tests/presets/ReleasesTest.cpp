// What somebody saved with a released version opens for ever, and is saved again byte for byte.
#include "platform/KWFileio.h"
#include "tests/platform/TestFolder.h"
#include "tests/support/BusySong.h"
#include "tests/support/Player.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace ormund {

namespace fs = std::filesystem;

namespace {

std::string bytesOf(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void loadAndSave(const fs::path& file, const std::string& saved)
{
    Player player;
    KWUniClient& engine = player.engine();
    if (file.extension() == ".kwm") {
        ASSERT_EQ(engine.presets.loadMap(file), LoadResult::Done);
        ASSERT_EQ(engine.presets.saveMap(saved), LoadResult::Done);
        return;
    }
    // A sound is saved with the patterns' values of the song that it was saved from.
    if (file.extension() == ".kws") {
        ASSERT_EQ(engine.library.load(PresetKind::Global, file.parent_path() / "Everything.kwe"),
            LoadResult::Done);
    }
    const PresetKind kind = file.extension() == ".kws" ? PresetKind::Synth : PresetKind::Global;
    ASSERT_EQ(engine.library.load(kind, file), LoadResult::Done);
    ASSERT_EQ(engine.library.save(kind, saved), LoadResult::Done);
}

} // namespace

TEST(Releases, EveryFileOfAReleasedVersionOpensAndIsSavedAlike)
{
    const TestFolder folder;
    int files = 0;
    for (const auto& entry :
        fs::recursive_directory_iterator(ORMUND_SOURCE_DIR "/tests/releases")) {
        if (!entry.is_regular_file())
            continue;
        SCOPED_TRACE(entry.path());
        const std::string saved = folder / entry.path().filename().string();
        loadAndSave(entry.path(), saved);
        EXPECT_TRUE(bytesOf(saved) == bytesOf(entry.path()));
        ++files;
    }
    EXPECT_GE(files, 4);
}

// Not a check: writes what the present version adds to tests/releases, into the folder that
// ORMUND_RELEASE names. A file's own name is part of it, so they are not renamed later.
TEST(Releases, DISABLED_WriteTheFilesOfThisVersion)
{
    const char* folder = std::getenv("ORMUND_RELEASE");
    ASSERT_TRUE(folder);
    fs::create_directories(folder);
    Player player({.empty = false});
    KWUniClient& engine = player.engine();
    writeBusySong(engine);
    for (int controller = 1; controller < 120; controller += 7)
        engine.midiMap.addAssignment(controller, controller * 4, controller % 32);
    engine.midiMap.addAssignment(MidiMap::kPressure, 9, 0);
    const fs::path out(folder);
    ASSERT_EQ(engine.library.save(PresetKind::Global, out / "Everything.kwe"), LoadResult::Done);
    ASSERT_EQ(engine.library.save(PresetKind::Synth, out / "Sound.kws"), LoadResult::Done);
    ASSERT_EQ(engine.presets.saveMap(out / "Controllers.kwm"), LoadResult::Done);
    Player fresh({.empty = false});
    ASSERT_EQ(
        fresh.engine().library.save(PresetKind::Global, out / "Factory.kwe"), LoadResult::Done);
}

} // namespace ormund
