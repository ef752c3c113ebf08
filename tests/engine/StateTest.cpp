#include "data/state/ChunkFormat.h"
#include "platform/KWFileio.h"
#include "platform/Messages.h"
#include "tests/platform/TestFolder.h"
#include "tests/support/Player.h"

#include <atomic>
#include <cstring>
#include <gmock/gmock.h>
#include <limits>
#include <thread>
#include <utility>

namespace ormund {

using testing::ElementsAre;
using testing::StartsWith;

namespace {

using Bytes = std::vector<char>;

Bytes chunkOf(KWUniClient& engine)
{
    void* data = nullptr;
    const VstInt32 size = engine.getChunk(&data, false);
    return {static_cast<char*>(data), static_cast<char*>(data) + size};
}

bool give(KWUniClient& engine, Bytes bytes)
{
    return engine.setChunk(bytes.data(), static_cast<VstInt32>(bytes.size()), false) != 0;
}

VstIntPtr script(KWUniClient& engine, int code, const std::string& path = {}, float opt = 0)
{
    std::string room = path;
    return engine.dispatcher(effVendorSpecific, KWUniClient::kUniqueId, code, room.data(), opt);
}

VstIntPtr learn(KWUniClient& engine, int tag, int step)
{
    int32_t target[2] = {tag, step};
    return engine.dispatcher(effVendorSpecific, KWUniClient::kUniqueId, 7, target, 0);
}

std::string message(KWUniClient& engine)
{
    char text[8192] = {};
    const VstIntPtr length =
        engine.dispatcher(effVendorSpecific, KWUniClient::kUniqueId, 8, text, 0);
    EXPECT_EQ(static_cast<size_t>(length), std::strlen(text));
    return text;
}

// Preset folders of its own; what is left of a test goes with it.
class PresetFiles : public testing::Test {
protected:
    PresetFiles()
    {
        forgetMessage();
        Settings settings;
        settings.startUp();
        settings.setPresetPath(PresetKind::Global, folder / "Global/Factory");
        settings.setPresetSavePath(PresetKind::Global, folder / "Global/User");
        settings.setPresetPath(PresetKind::Synth, folder / "Synth/Factory");
        settings.setPresetSavePath(PresetKind::Synth, folder / "Synth/User");
        settings.setOption(Settings::kIgnoreProgramChange, false);
        settings.setOption(Settings::kKeepMidiMap, false);
    }
    // A preset whose swing shows which one it is.
    void preset(const std::string& name, float swing, PresetKind kind = PresetKind::Global)
    {
        const std::string path = folder / name;
        KWFileio::makeFolder(KWFileio::folderOf(path));
        KWUniClient maker(nullptr);
        maker.setParameter(kind == PresetKind::Global ? Tag::Swing : Tag::SynthPan, swing);
        for (int p = 0; p < kPatterns; ++p)
            maker.patternStore.write(Tag::Swing, p, swing);
        maker.presets.setName(PresetKind::Synth, "lead"); // what it was made with
        ASSERT_EQ(maker.library.save(kind, path), LoadResult::Done);
    }
    void presetTree()
    {
        preset("Global/Factory/b.kwe", 0.2f);
        preset("Global/Factory/a.kwe", 0.1f);
        preset("Global/Factory/More/c.kwe", 0.3f);
        preset("Global/User/Midi Programs/0.kwe", 0.4f);
        preset("Global/User/Midi Programs/1.kwe", 0.5f);
    }
    static float swing(KWUniClient& engine) { return engine.parameters.raw(Tag::Swing); }

    TestFolder folder;
};

} // namespace

TEST(HostState, ComesBackByteForByteAndEqualsAPresetFile)
{
    KWUniClient first(nullptr);
    first.setParameter(Tag::FilterCutoff, 0.123f);
    first.setParameter(Tag::Scale, 0.5f);
    first.tracks.chord.setStepAt(3, 7, 12.0f);
    learn(first, Tag::FilterCutoff, 0);
    const Bytes state = chunkOf(first);

    KWUniClient second(nullptr);
    EXPECT_NE(chunkOf(second), state);
    ASSERT_TRUE(give(second, state));
    EXPECT_EQ(chunkOf(second), state);
    EXPECT_EQ(second.parameters.raw(Tag::FilterCutoff), 0.123f);

    const TestFolder folder;
    ASSERT_EQ(script(second, 3, folder / "song.kwe"), 1);
    Bytes file(static_cast<size_t>(KWFileio::size(folder / "song.kwe")));
    ASSERT_TRUE(KWFileio::read(folder / "song.kwe", file.data(), file.size()));
    EXPECT_EQ(file, chunkOf(second));

    second.setParameter(Tag::FilterCutoff, 0.9f);
    ASSERT_TRUE(second.library.restoreSnapshot());
    EXPECT_EQ(second.parameters.raw(Tag::FilterCutoff), 0.123f);
}

TEST(HostState, DamageIsRefusedWithAMessageAndChangesNothing)
{
    forgetMessage();
    KWUniClient engine(nullptr);
    const Bytes before = chunkOf(engine);
    Bytes bytes = before;
    bytes.resize(bytes.size() / 2);
    EXPECT_FALSE(give(engine, bytes));
    EXPECT_EQ(message(engine), "\t This is no valid Ormund format!");
    bytes = before;
    bytes[6 * 4] = 2;
    EXPECT_FALSE(give(engine, bytes));
    EXPECT_EQ(message(engine), "wrong plugin version");
    bytes = before;
    bytes[8 * 4] = 0;
    EXPECT_FALSE(give(engine, bytes));
    EXPECT_EQ(message(engine), "This is not a Ormund file");
    EXPECT_EQ(chunkOf(engine), before);
    EXPECT_EQ(message(engine), "");
}

TEST(HostState, LoadsWhileBlocksRunAndNoNoteHangs)
{
    Player player({.block = 64, .empty = false});
    KWUniClient& engine = player.engine();
    Bytes state = chunkOf(engine);
    std::atomic<bool> done{false};
    std::thread loader([&] {
        for (int i = 0; i < 30; ++i) {
            give(engine, state);
            state = chunkOf(engine);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        done = true;
    });
    player.start();
    do
        player.play(640);
    while (!done);
    loader.join();
    player.play(4410);
    EXPECT_FALSE(player.noteOns().empty());
    player.stop();
    player.play(44100 * 4);
    EXPECT_EQ(player.soundingNotes(), 0);
}

// Some hosts ask on one thread and give on another.
TEST(HostState, AStateThatIsAskedForBesideALoadIsOneOfTheTwo)
{
    KWUniClient engine(nullptr);
    const Bytes first = chunkOf(engine);
    for (int step = 0; step < kTrackSteps; ++step)
        engine.tracks.velocity.setValue(step, 0.25f);
    const Bytes second = chunkOf(engine);
    ASSERT_NE(first, second);
    std::atomic<bool> done{false};
    std::thread loader([&] {
        for (int i = 0; i < 200; ++i)
            give(engine, i % 2 == 0 ? first : second);
        done = true;
    });
    int asked = 0;
    int mixed = 0;
    do {
        const Bytes state = chunkOf(engine);
        mixed += state == first || state == second ? 0 : 1;
        ++asked;
    } while (!done);
    loader.join();
    EXPECT_GT(asked, 5);
    EXPECT_EQ(mixed, 0);
}

// The undefined-behaviour checker sees an overflow here.
TEST(HostEvents, AFrameFarBeyondTheBlockIsNoPlaceInIt)
{
    Player player({.block = 64, .empty = false});
    for (const VstInt32 frame : {std::numeric_limits<VstInt32>::max(),
             std::numeric_limits<VstInt32>::min(), std::numeric_limits<VstInt32>::max() - 16}) {
        VstMidiEvent note{};
        note.type = kVstMidiType;
        note.byteSize = sizeof note;
        note.deltaFrames = frame;
        note.midiData[0] = 0x90;
        note.midiData[1] = 60;
        note.midiData[2] = 100;
        VstEvents list{};
        list.numEvents = 1;
        list.events[0] = reinterpret_cast<VstEvent*>(&note);
        player.engine().processEvents(&list);
        player.play(44100);
    }
    player.start();
    player.play(44100);
    EXPECT_FALSE(player.noteOns().empty());
}

TEST_F(PresetFiles, ANewerFileIsRefusedAndAMissingOneSaysNothing)
{
    KWUniClient engine(nullptr);
    Bytes file = chunkOf(engine);
    const int32_t newer = kProgramVersion + 1;
    std::memcpy(file.data() + 4, &newer, sizeof newer);
    ASSERT_TRUE(KWFileio::write(folder / "newer.kwe", file.data(), file.size()));
    EXPECT_EQ(script(engine, 1, folder / "newer.kwe"), 0);
    EXPECT_EQ(message(engine), "preset was written with a newer version of Ormund");
    EXPECT_EQ(script(engine, 5, folder / "newer.kwe"), 0);
    EXPECT_EQ(message(engine), "midi map was written with a newer version of Ormund");
    EXPECT_EQ(script(engine, 1, folder / "nothing.kwe"), 0);
    EXPECT_EQ(message(engine), "");
    EXPECT_EQ(script(engine, 6, folder / "missing/map.kwm"), 0);
    EXPECT_THAT(message(engine), StartsWith("saving cc map to "));
}

TEST_F(PresetFiles, ProgramsGoThroughTheTreeAndRoundItsEnds)
{
    presetTree();
    KWUniClient engine(nullptr);
    EXPECT_EQ(engine.presets.tree(PresetKind::Global).folderCount(), 3);
    char text[kVstMaxProgNameLen + 1] = {};
    ASSERT_TRUE(engine.getProgramNameIndexed(-1, 1, text));
    EXPECT_STREQ(text, "b");
    EXPECT_EQ(engine.presets.programName(2), "c"); // past the folder's end: what it brings
    const std::pair<int, float> ways[] = {{Tag::NextPreset, 0.1f}, {Tag::NextPreset, 0.2f},
        {Tag::NextPreset, 0.3f}, {Tag::NextPreset, 0.4f}, {Tag::NextPreset, 0.5f},
        {Tag::NextPreset, 0.1f}, {Tag::PreviousPreset, 0.5f}, {Tag::PreviousPreset, 0.4f},
        {Tag::PreviousPreset, 0.3f}};
    for (const auto& [tag, expected] : ways) {
        const float before = swing(engine);
        engine.setParameter(tag, 1.0f); // a press does nothing
        EXPECT_EQ(swing(engine), before);
        engine.setParameter(tag, 0.0f);
        EXPECT_EQ(swing(engine), expected);
    }
    EXPECT_EQ(engine.presets.folder(), 1);
    EXPECT_EQ(engine.presets.name(PresetKind::Global), "c");
    engine.setParameter(Tag::RandomPreset, 0.0f);
    EXPECT_NE(engine.presets.name(PresetKind::Global), "");
}

TEST_F(PresetFiles, SynthPresetsStepInTheirFolder)
{
    preset("Synth/Factory/one.kws", 0.25f, PresetKind::Synth);
    preset("Synth/Factory/two.kws", 0.75f, PresetKind::Synth);
    KWUniClient engine(nullptr);
    engine.setParameter(Tag::Swing, 0.6f);
    const auto pan = [&] { return engine.parameters.raw(Tag::SynthPan); };
    engine.setParameter(Tag::PreviousSynthPreset, 0.0f);
    EXPECT_EQ(pan(), 0.75f);
    engine.setParameter(Tag::NextSynthPreset, 0.0f);
    EXPECT_EQ(pan(), 0.25f);
    engine.setParameter(Tag::PreviousSynthPreset, 0.0f);
    EXPECT_EQ(pan(), 0.75f);
    EXPECT_EQ(swing(engine), 0.6f);
    EXPECT_EQ(engine.presets.folderName(PresetKind::Synth), "Factory");
}

TEST_F(PresetFiles, ASynthPresetLeavesASongThatPlaysItsPlace)
{
    preset("Synth/Factory/one.kws", 0.25f, PresetKind::Synth);
    Player player;
    KWUniClient& engine = player.engine();
    engine.setParameter(Tag::SongOn, 1.0f);
    engine.setParameter(Tag::SongSpeed, 0.0f); // another place at each step
    player.start();
    player.playBeats(1.1);
    const float place = engine.screen.songStep;
    ASSERT_GT(place, 0.0f);
    ASSERT_EQ(script(engine, 2, folder / "Synth/Factory/one.kws"), 1);
    player.playBeats(0.05); // still in the same step
    EXPECT_EQ(engine.parameters.raw(Tag::SynthPan), 0.25f);
    EXPECT_EQ(engine.screen.songStep, place);
}

TEST_F(PresetFiles, AMidiProgramIsTakenInTheTickAndTheSettingStopsIt)
{
    presetTree();
    Player player({.empty = false});
    KWUniClient& engine = player.engine();
    engine.setParameter(Tag::Swing, 0.9f);
    engine.library.setSetting(Settings::kIgnoreProgramChange, true, false);
    player.send(0xC0, 1, 0);
    player.play(512);
    EXPECT_EQ(swing(engine), 0.9f);
    EXPECT_EQ(engine.parameters.raw(Tag::IgnoreProgramChange), 1.0f);
    engine.library.setSetting(Settings::kIgnoreProgramChange, false, false);
    player.send(0xC0, 1, 0);
    player.play(512);
    EXPECT_EQ(swing(engine), 0.5f);
    EXPECT_EQ(engine.presets.name(PresetKind::Global), "1");
    EXPECT_EQ(engine.presets.path(PresetKind::Global), folder / "Global/User/Midi Programs/1.kwe");
    EXPECT_EQ(engine.presets.name(PresetKind::Synth), "lead");
    EXPECT_EQ(engine.presets.path(PresetKind::Synth), folder / "Synth/Factory/lead.kws");
    player.send(0xC0, 99, 0);
    player.play(512);
    EXPECT_EQ(swing(engine), 0.5f);
    // Loaded from its file, the same program gives the same state.
    const Bytes taken = chunkOf(engine);
    ASSERT_EQ(script(engine, 1, folder / "Global/User/Midi Programs/1.kwe"), 1);
    const Bytes loaded = chunkOf(engine);
    ASSERT_EQ(taken.size(), loaded.size());
    // But for the place in the tree, which only a load of a file gives.
    size_t different = 0;
    for (size_t i = 0; i < taken.size(); ++i)
        different += taken[i] != loaded[i];
    EXPECT_LE(different, 8u);
}

TEST_F(PresetFiles, ProgramsAreTakenWhileFoldersAreScannedAndStatesSaved)
{
    presetTree();
    Player player({.block = 64, .empty = false});
    KWUniClient& engine = player.engine();
    learn(engine, Tag::FilterCutoff, 0);
    std::atomic<bool> done{false};
    std::thread screen([&] {
        for (int i = 0; i < 20; ++i) {
            engine.presets.scan();
            EXPECT_GT(chunkOf(engine).size(), 40000u);
            engine.midiMap.addAssignment(i, Tag::SynthPan, 0);
            engine.library.runDeferred();
        }
        done = true;
    });
    player.start();
    for (int i = 0; !done || i < 100; ++i) {
        player.send(0xC0, i % 3, 0);
        player.send(0xB0, i % 20, i % 128, 32);
        player.play(64);
    }
    screen.join();
    EXPECT_THAT(engine.presets.name(PresetKind::Global), testing::AnyOf("0", "1"));
    player.stop();
    player.play(44100 * 4);
    EXPECT_EQ(player.soundingNotes(), 0);
}

TEST_F(PresetFiles, AControllerThatStepsPresetsWaitsForTheScreensThread)
{
    presetTree();
    Player player;
    KWUniClient& engine = player.engine();
    learn(engine, Tag::NextPreset, 0);
    player.send(0xB0, 20, 0);
    player.play(512);
    EXPECT_NE(swing(engine), 0.1f);
    engine.library.runDeferred();
    EXPECT_EQ(swing(engine), 0.1f);
    // A host without the window: its own idle, or the state that it asks for.
    learn(engine, Tag::NextPreset, 0);
    player.send(0xB0, 20, 0);
    player.play(512);
    EXPECT_EQ(engine.dispatcher(effIdle, 0, 0, nullptr, 0), 1);
    EXPECT_EQ(swing(engine), 0.2f);
    learn(engine, Tag::NextPreset, 0);
    player.send(0xB0, 20, 0);
    player.play(512);
    void* state = nullptr;
    engine.getChunk(&state, false);
    EXPECT_EQ(swing(engine), 0.3f);
}

TEST_F(PresetFiles, TheDefaultPresetOpensANewInstance)
{
    preset("Global/User/default.kwe", 0.35f);
    KWUniClient engine(nullptr);
    EXPECT_EQ(swing(engine), 0.35f);
    EXPECT_EQ(engine.presets.name(PresetKind::Global), "default");
}

TEST_F(PresetFiles, AMapIsLearnedSavedLoadedAndKeptOverAPreset)
{
    presetTree();
    Player player;
    KWUniClient& engine = player.engine();
    engine.setParameter(Tag::MidiLearn, 1.0f);
    EXPECT_EQ(learn(engine, Tag::FilterCutoff, 0), 1);
    player.send(0xB0, 74, 127);
    player.play(64);
    EXPECT_EQ(learn(engine, Tag::SynthReso, 0), 1);
    player.send(0xB0, 74, 64);
    player.play(64);
    EXPECT_EQ(engine.parameters.raw(Tag::FilterCutoff), 64 * 0.007874016f);
    EXPECT_EQ(engine.parameters.raw(Tag::SynthReso), 64 * 0.007874016f);
    EXPECT_EQ(learn(engine, Tag::Chord, 5), 1);
    player.send(0xB0, 20, 127);
    player.play(64);
    EXPECT_EQ(engine.tracks.chord.step(5), 53.0f);
    EXPECT_EQ(learn(engine, Tag::Swing, 0), 1);
    player.send(0xD0, 127, 0);
    player.play(64);
    EXPECT_NEAR(swing(engine), 1.0f, 1e-5f);

    ASSERT_EQ(script(engine, 6, folder / "map"), 1);
    script(engine, 9, {}, static_cast<float>(Tag::FilterCutoff));
    EXPECT_FALSE(engine.midiMap.isAssigned(Tag::FilterCutoff));
    ASSERT_EQ(script(engine, 5, folder / "map.kwm"), 1);
    EXPECT_TRUE(engine.midiMap.isAssigned(Tag::FilterCutoff, 0));
    EXPECT_TRUE(engine.midiMap.isAssigned(Tag::Chord, 5));

    engine.library.setSetting(Settings::kKeepMidiMap, true, false);
    ASSERT_EQ(script(engine, 1, folder / "Global/Factory/a.kwe"), 1);
    EXPECT_TRUE(engine.midiMap.isAssigned(Tag::Chord, 5));
    EXPECT_TRUE(engine.midiMap.isAssigned(Tag::Swing, 0));
    engine.library.setSetting(Settings::kKeepMidiMap, false, false);
    ASSERT_EQ(script(engine, 1, folder / "Global/Factory/a.kwe"), 1);
    EXPECT_FALSE(engine.midiMap.isAssigned(Tag::Chord));
    EXPECT_FALSE(engine.midiMap.isAssigned(Tag::Swing));
}

TEST(ScriptDoor, RefusesWhatItDoesNotKnow)
{
    KWUniClient engine(nullptr);
    char nothing[8] = {};
    EXPECT_EQ(engine.dispatcher(effVendorSpecific, 0, 1, nothing, 0), 0);
    for (const int code : {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 12, 14}) {
        const auto answer =
            engine.dispatcher(effVendorSpecific, KWUniClient::kUniqueId, code, nullptr, -1);
        EXPECT_EQ(answer, 0) << code;
    }
    EXPECT_EQ(learn(engine, 47, 0), 0);
    EXPECT_EQ(learn(engine, 4, 1 << 30), 1);
    EXPECT_EQ(engine.midiMap.learnStep(), 31);
}

TEST(ScriptDoor, TheOfflineRuleCanBeSwitched)
{
    Player player({.empty = false});
    player.processLevel = 4;
    player.start();
    player.play(22050);
    EXPECT_TRUE(player.noteOns().empty());
    script(player.engine(), 11, {}, 1.0f);
    player.play(22050);
    EXPECT_FALSE(player.noteOns().empty());
    EXPECT_TRUE(Settings().rendersOffline());
    script(player.engine(), 11, {}, 0.0f);
    EXPECT_FALSE(Settings().rendersOffline());
}

} // namespace ormund
