// The same script through every format and through the engine itself.
#include "tests/formats/Formats.h"

#include "apps/host/ScriptedHost.h"
#include "data/parameters/Tags.h"
#include "host/formats/Base64.h"

#include <algorithm>
#include <chrono>
#include <gmock/gmock.h>
#include <thread>

namespace ormund {

namespace {
class Formats : public testing::TestWithParam<Format> { };
INSTANTIATE_TEST_SUITE_P(
    All, Formats, testing::ValuesIn(kFormats), [](const auto& made) { return made.param.name; });

std::string chunkOf(KWUniClient& client)
{
    void* data = nullptr;
    const auto bytes = static_cast<size_t>(client.getChunk(&data, false));
    return toBase64({static_cast<const uint8_t*>(data), bytes});
}

std::vector<int64_t> noteFrames(const std::vector<MidiOut>& events, int64_t from, int64_t to)
{
    std::vector<int64_t> frames;
    for (const MidiOut& event : events)
        if (event.isNoteOn() && event.frame >= from && event.frame < to)
            frames.push_back(event.frame - from);
    return frames;
}
constexpr int kBeat = 22050; // frames
} // namespace

TEST_P(Formats, PlayTheNotesAndTheSoundOfTheEngine)
{
    Player player({.empty = false});
    player.engine().setParameter(Tag::SynthOn, 1.0f);
    player.keepAudio(true);
    const auto host = GetParam().make();
    host->restoreChunk(chunkOf(player.engine()));
    player.start();
    host->start(0);
    player.play(5 * kBeat);
    host->play(5 * kBeat);
    player.send(0x90, 64, 100, 17); // a key in the middle of a block
    host->send(0x90, 64, 100, 17);
    player.play(7 * kBeat);
    host->play(7 * kBeat);
    ASSERT_GT(player.events().size(), 20u);
    EXPECT_EQ(host->events, player.events());
    EXPECT_GT(*std::max_element(host->left.begin(), host->left.end()), 0.01f);
    EXPECT_EQ(host->left, player.left());
    EXPECT_EQ(host->right, player.right());
}

// In VST3 they go out as controllers with numbers past those of MIDI.
TEST_P(Formats, SendPressureAndProgramChanges)
{
    Player player;
    for (int track = 0; track < 2; ++track) {
        const float target = 128.5f + static_cast<float>(track);
        player.engine().setParameter(Tag::ModTarget + track, target / 130);
        player.engine().setParameter(Tag::ModTrackOn + track, 1);
        for (int step = 0; step < 32; ++step)
            player.engine().tracks.mods[static_cast<size_t>(track)].setValue(step, 0.3f);
    }
    const auto host = GetParam().make();
    host->restoreChunk(chunkOf(player.engine()));
    host->start(0);
    host->play(kBeat);
    const auto sent = [&host](int status) {
        for (const MidiOut& event : host->events)
            if ((event.status & 0xF0) == status)
                return event.data1;
        return -1;
    };
    EXPECT_EQ(sent(0xD0), 38);
    EXPECT_EQ(sent(0xC0), 38);
}

TEST_P(Formats, RestoreTheStateOfAnyOther)
{
    Player player;
    player.writePlainNotes();
    player.engine().setParameter(4, 0.37f);
    const std::string text = chunkOf(player.engine());
    for (const Format& other : kFormats) {
        const auto from = other.make();
        from->restoreChunk(text);
        const auto to = GetParam().make();
        ASSERT_NE(to->chunkText(), text);
        to->restoreChunk(from->chunkText());
        EXPECT_EQ(to->chunkText(), text) << other.name;
        to->restoreChunk("no state");
        EXPECT_EQ(to->chunkText(), text);
    }
}

TEST_P(Formats, SwapTheirStateWithTheVst2Module)
{
    Player player({.empty = false});
    player.engine().setParameter(4, 0.37f);
    const std::string text = chunkOf(player.engine());
    const auto host = GetParam().make();
    ScriptedHost vst;
    ASSERT_TRUE(vst.load(ORMUND_BIN_DIR "/ormund-vst2.so", {})) << vst.error();
    const auto chunkOfVst = [&vst] {
        void* data = nullptr;
        const auto bytes = static_cast<size_t>(vst.dispatch(effGetChunk, 0, 0, &data));
        return toBase64({static_cast<const uint8_t*>(data), bytes});
    };
    host->restoreChunk(text);
    auto bytes = fromBase64(host->chunkText()).value();
    vst.dispatch(effSetChunk, 0, static_cast<VstIntPtr>(bytes.size()), bytes.data());
    EXPECT_EQ(chunkOfVst(), text);
    vst.effect()->setParameter(vst.effect(), 4, 0.75f);
    host->restoreChunk(chunkOfVst());
    EXPECT_EQ(host->chunkText(), chunkOfVst());
    EXPECT_NE(host->chunkText(), text);
}

// An LV2 host sets its control values after the state, and they may be older.
TEST(Lv2Format, StateRulesOverControlValuesThatComeWithIt)
{
    Player player;
    player.engine().setParameter(4, 0.37f);
    const std::string text = chunkOf(player.engine());
    const auto host = makeLv2Host();
    host->restoreChunk(text);
    host->setParameter(5, 0.11f); // the host's own number for parameter 4
    host->play(64);
    EXPECT_EQ(host->chunkText(), text);
    host->setParameter(5, 0.12f);
    host->play(64);
    EXPECT_NE(host->chunkText(), text);
}

TEST_P(Formats, TellASecondOfTail)
{
    const std::string name = GetParam().name;
    EXPECT_EQ(GetParam().make()->tail(), name == "LV2" ? 0 : 44100);
}

// Nothing but a block runs: no window shows, and the host asks for nothing.
TEST_P(Formats, NameTheirMidiPortsByTheProduct)
{
    const auto host = GetParam().make();
    EXPECT_EQ(host->midiPortName(true), "Ormund MIDI");
    EXPECT_EQ(host->midiPortName(false), "Ormund MIDI");
}

TEST_P(Formats, ControllerStepsThroughPresetsWithoutAWindow)
{
    const TwoPresets tree;
    Player player; // no note
    player.engine().midiMap.addAssignment(20, Tag::NextPreset, 0);
    const auto host = GetParam().make();
    host->restoreChunk(chunkOf(player.engine()));
    host->start(0);
    host->play(2 * kBeat);
    EXPECT_TRUE(host->events.empty());
    host->send(0xB0, 20, 0, 0);
    host->play(512);
    for (int wait = 0; wait < 100 && host->events.empty(); ++wait) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        host->play(kBeat / 4);
    }
    EXPECT_FALSE(host->events.empty());
}

TEST_P(Formats, FollowBarsThatAreShorterThanAQuarterNote)
{
    Player player({.empty = false});
    const auto host = GetParam().make();
    host->beatsPerBar = 3;
    host->beatType = 16;
    host->restoreChunk(chunkOf(player.engine()));
    player.start();
    host->start(0);
    player.play(8 * kBeat);
    host->play(8 * kBeat);
    EXPECT_EQ(host->events, player.events());
}

TEST_P(Formats, BypassEndsNotesAndTheClockRunsOn)
{
    Player player({.empty = false});
    const auto host = GetParam().make();
    host->restoreChunk(chunkOf(player.engine()));
    player.start();
    host->start(0);
    player.play(12 * kBeat);
    host->play(2 * kBeat + 4000);
    const size_t before = host->events.size();
    int sounding = 0;
    for (const MidiOut& event : host->events)
        sounding += event.isNoteOn() ? 1 : event.isNoteOff() ? -1 : 0;
    host->setParameter(0, 1);
    host->play(6 * kBeat - 4000);
    for (size_t i = before; i < host->events.size(); ++i)
        EXPECT_TRUE(host->events[i].isNoteOff());
    EXPECT_EQ(host->events.size() - before, static_cast<size_t>(sounding));
    EXPECT_EQ(host->left[static_cast<size_t>(6 * kBeat)], 0.0f);
    host->setParameter(0, 0);
    host->play(4 * kBeat);
    const auto expected = noteFrames(player.events(), 9 * kBeat, 12 * kBeat);
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(noteFrames(host->events, 9 * kBeat, 12 * kBeat), expected);
}

TEST_P(Formats, LoopThatJumpsAtABlockLosesNoStep)
{
    Player player;
    player.writePlainNotes();
    const auto host = GetParam().make();
    host->restoreChunk(chunkOf(player.engine()));
    host->start(0);
    host->play(16 * kBeat, 441, 4.0);
    const auto first = noteFrames(host->events, 0, 4 * kBeat);
    EXPECT_EQ(first.size(), 16u);
    for (int pass = 1; pass < 4; ++pass) {
        const auto now = noteFrames(host->events, pass * 4 * kBeat, (pass + 1) * 4 * kBeat);
        ASSERT_EQ(now.size(), first.size());
        for (size_t i = 0; i < now.size(); ++i)
            EXPECT_NEAR(static_cast<double>(now[i]), static_cast<double>(first[i]), 32.0);
    }
}

TEST(Base64, GoesThereAndBackAndRefusesWhatItIsNot)
{
    std::vector<uint8_t> bytes;
    for (int length = 0; length < 9; ++length) {
        const auto back = fromBase64(toBase64(bytes));
        ASSERT_TRUE(back);
        EXPECT_EQ(*back, bytes);
        bytes.push_back(static_cast<uint8_t>(251 - 37 * length));
    }
    EXPECT_EQ(toBase64(std::vector<uint8_t>{'M', 'a'}), "TWE=");
    EXPECT_TRUE(fromBase64("TW\nE="));
    for (const char* text : {"T", "TWE", "T=WE", "TWE?", "TQ=", "TWE=="})
        EXPECT_FALSE(fromBase64(text)) << text;
}

} // namespace ormund
