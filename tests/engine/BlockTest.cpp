#include "data/parameters/Tags.h"
#include "host/plugin/WrapperPort.h"
#include "tests/support/Player.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ormund {

using testing::Each;
using testing::ElementsAre;

namespace {
std::string traceInBlocksOf(int block, double beats)
{
    Player player({.tempo = 123.4, .block = block, .empty = false});
    player.engine().setParameter(Tag::SongOn, 1.0f);
    player.engine().setParameter(Tag::Swing, 0.4f);
    player.start();
    player.playBeats(beats);
    return player.trace();
}
} // namespace

TEST(Block, TheFirstSampleRunsATick)
{
    Player player;
    player.writePlainNotes();
    player.start();
    player.play(1);
    ASSERT_EQ(player.noteOns().size(), 1u);
    EXPECT_EQ(player.noteOns()[0].frame, 0);
}

TEST(Block, TicksCrossBlocks)
{
    Player player({.block = 16});
    player.writePlainNotes();
    player.start();
    player.play(22050);
    for (const MidiOut& event : player.events())
        EXPECT_EQ(event.frame % kTickSamples, 0) << event.frame;
    EXPECT_EQ(player.noteOns().size(), 4u);
}

TEST(Block, SameMidiForEveryBlockSize)
{
    const std::string expected = traceInBlocksOf(512, 64);
    EXPECT_GT(expected.size(), 2000u);
    for (const int block : {1, 7, 32, 100, 333, 1024, 4096})
        EXPECT_TRUE(traceInBlocksOf(block, 64) == expected) << "blocks of " << block;
}

TEST(Block, ASongOfAllPatternsIsTheSameForEveryBlockSize)
{
    const auto song = [](int block) {
        Player player({.tempo = 131, .block = block, .empty = false});
        KWUniClient& engine = player.engine();
        Tracks& tracks = engine.tracks;
        tracks.sequenceLoop.setZone(0, {0, 7});
        for (int i = 0; i < 8; ++i)
            tracks.patternRepeats.setStep(i, static_cast<float>(i % 3));
        engine.setParameter(Tag::SongSpeed, 2.5f / 6.0f); // four steps
        engine.setParameter(Tag::SongOn, 1);
        player.start();
        for (int half = 0; half < 2; ++half) {
            for (int i = 0; i < 8; ++i)
                tracks.patternNumbers.setStep(i, static_cast<float>(half * 8 + i));
            player.playBeats(17);
            engine.setParameter(Tag::LockArea, 0.3f);
            engine.sequencer.setLockButton(true);
            player.play(320);
            engine.sequencer.setLockButton(false);
            player.playBeats(3);
            engine.sequencer.setLockButton(true);
            player.play(320);
            engine.sequencer.setLockButton(false);
        }
        return player.trace();
    };
    const std::string expected = song(512);
    EXPECT_GT(expected.size(), 4000u);
    for (const int block : {1, 2, 31, 32, 33, 100, 1024, 4096})
        EXPECT_TRUE(song(block) == expected) << "blocks of " << block;
}

TEST(Block, OfflineLevelLeavesTheBuffersAlone)
{
    Player player({.empty = false});
    player.processLevel = kVstProcessLevelOffline;
    player.keepAudio(true);
    float left[64];
    float right[64];
    std::fill_n(left, 64, 0.25f);
    std::fill_n(right, 64, 0.25f);
    float* outputs[] = {left, right};
    player.start();
    player.play(64); // makes the player current
    player.engine().processReplacing(nullptr, outputs, 64);
    EXPECT_THAT(left, Each(0.25f));
    EXPECT_TRUE(player.events().empty());
}

TEST(Block, SynthOffIsSilentAndOnSounds)
{
    Player player;
    player.writePlainNotes();
    player.keepAudio(true);
    player.start();
    player.play(8000);
    EXPECT_THAT(player.left(), Each(0.0f));
    player.engine().setParameter(Tag::SynthOn, 1.0f);
    player.play(16000);
    float peak = 0;
    for (const float sample : player.left())
        peak = std::max(peak, std::abs(sample));
    EXPECT_GT(peak, 0.01f);
    EXPECT_LT(peak, 1.5f);
}

TEST(Block, AudioIsTheSameForEveryBlockSize)
{
    const auto render = [](int block) {
        Player player({.block = block, .empty = false});
        player.keepAudio(true);
        player.start();
        player.play(40000);
        return player.left();
    };
    const std::vector<float> expected = render(512);
    for (const int block : {1, 33, 700})
        EXPECT_TRUE(render(block) == expected) << "blocks of " << block;
}

TEST(Block, AnEventWaitsForTheTickAtOrAfterItsFrame)
{
    // In mode 0 a held key plays, and the first note shows the tick.
    const auto noteTick = [](int frame, int block) {
        Player player({.block = block});
        player.writePlainNotes();
        player.engine().setParameter(Tag::TriggerMode, 0.0f);
        player.start();
        player.send(0x90, 72, 100, frame);
        player.play(1024);
        return player.noteOns().empty() ? -1 : static_cast<int>(player.noteOns()[0].frame);
    };
    EXPECT_EQ(noteTick(0, 512), 0);
    EXPECT_EQ(noteTick(1, 512), 32);
    EXPECT_EQ(noteTick(32, 512), 32);
    EXPECT_EQ(noteTick(64, 512), 64);
    EXPECT_EQ(noteTick(65, 512), 96);
    EXPECT_EQ(noteTick(10, 100), 32);
}

TEST(Block, InAWrapperTheHostsOwnCallsOnlyClear)
{
    struct Port final : WrapperPort {
        const VstTimeInfo* timeRecord() override { return nullptr; }
        bool hasMidiOutput() const override { return true; }
        void midiOut(const VstMidiEvent&, double) override { ++sent; }
        int sent = 0;
    };
    Port port;
    KWUniClient engine(nullptr);
    engine.setWrapperPort(&port);
    VstMidiEvent key{};
    key.type = kVstMidiType;
    key.byteSize = sizeof key;
    key.midiData[0] = 0x90;
    key.midiData[1] = 60;
    key.midiData[2] = 100;
    VstEvents list{1, 0, {reinterpret_cast<VstEvent*>(&key), nullptr}};
    float left[256], right[256];
    float* outputs[] = {left, right};
    const auto clears = [&] {
        std::fill_n(left, 256, 1.0f);
        std::fill_n(right, 256, 1.0f);
        engine.processReplacing(nullptr, outputs, 256);
        return std::count(left, left + 256, 0.0f) == 256
            && std::count(right, right + 256, 0.0f) == 256;
    };
    EXPECT_EQ(engine.processEvents(&list), 1);
    EXPECT_TRUE(clears());
    engine.processBlock(outputs, 256);
    EXPECT_FALSE(engine.keyState.hasNote(60)) << "the wrapper hands its events over itself";
    EXPECT_GT(port.sent, 0) << "the controllers' first values";
    engine.queueEvents(&list);
    engine.processBlock(outputs, 256);
    EXPECT_TRUE(engine.keyState.hasNote(60));
}

TEST(Block, HostileCallsAreHarmless)
{
    Player player({.empty = false});
    player.start();
    player.play(512);
    KWUniClient& engine = player.engine();
    float left[32] = {};
    float* noRight[] = {left, nullptr};
    engine.processReplacing(nullptr, noRight, 32);
    engine.processReplacing(nullptr, noRight, 0);
    engine.processReplacing(nullptr, noRight, -5);
    engine.processReplacing(nullptr, nullptr, 16);
    engine.processEvents(nullptr);

    const float hostile[] = {std::numeric_limits<float>::quiet_NaN(),
        std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(), 1e30f,
        -1.0f};
    for (int tag = -3; tag < 600; ++tag)
        for (const float value : hostile)
            engine.setParameter(tag, value);
    player.keepAudio(true);
    const double oddTempos[] = {std::nan(""), 0.0, -10.0, 1e9, 30.0};
    for (const double tempo : oddTempos) {
        player.setTempo(tempo);
        player.play(700);
        player.start(std::isfinite(tempo) ? 3.0 : 0.0);
    }
    player.start(1e300);
    player.play(512);
    player.start(std::numeric_limits<double>::infinity());
    player.play(512);
    player.setTempo(120);
    player.start(0);
    player.play(4096);
    for (const float sample : player.left()) {
        ASSERT_TRUE(std::isfinite(sample));
        ASSERT_LE(std::abs(sample), 4.0f);
    }
}

TEST(Block, TenThousandEventsInOneBlockHangNothing)
{
    Player player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::TriggerMode, 0.0f);
    player.start();
    for (int i = 0; i < 5000; ++i) {
        player.send(0x90, 30 + i % 80, 100, i % 512);
        player.send(0x80, 30 + i % 80, 0, i % 512);
    }
    player.play(512);
    player.playBeats(4);
    EXPECT_EQ(player.soundingNotes(), 0);
    EXPECT_FALSE(player.engine().keyState.hasNote(60));
}

TEST(Block, NoTransportRecordHoldsStill)
{
    Player player;
    player.writePlainNotes();
    player.start();
    player.playBeats(1.1);
    player.forget();
    player.sendsRecord = false;
    player.playBeats(2);
    EXPECT_THAT(player.noteOns(), testing::IsEmpty());
    EXPECT_EQ(player.soundingNotes(), 0);
}

} // namespace ormund
