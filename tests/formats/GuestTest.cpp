// What a host may do at any time: keep states in pieces, loop, count in, automate, read texts.
#include "tests/formats/Formats.h"

#include "data/parameters/Tags.h"
#include "host/formats/Base64.h"

#include <cmath>
#include <gmock/gmock.h>

namespace ormund {

namespace {
constexpr int kBeat = 22050; // frames

std::string chunkOf(KWUniClient& client)
{
    void* data = nullptr;
    const auto bytes = static_cast<size_t>(client.getChunk(&data, false));
    return toBase64({static_cast<const uint8_t*>(data), bytes});
}

int numberOf(int tag) { return tag + 1; }

std::vector<MidiOut> noteOns(const std::vector<MidiOut>& events)
{
    std::vector<MidiOut> notes;
    for (const MidiOut& event : events)
        if (event.isNoteOn())
            notes.push_back(event);
    return notes;
}

class Guest : public testing::TestWithParam<Format> {
protected:
    Guest() { player.writePlainNotes(); }
    std::unique_ptr<FormatHost> makeHost()
    {
        auto host = GetParam().make();
        host->restoreChunk(chunkOf(player.engine()));
        return host;
    }
    Player player;
};
// What a format has no word for: LV2 hosts keep controls, write texts and loop by themselves.
class TellingGuest : public Guest { };
INSTANTIATE_TEST_SUITE_P(All, TellingGuest,
    testing::Values(Format{"CLAP", makeClapHost}, Format{"VST3", makeVst3Host}),
    [](const auto& made) { return made.param.name; });
INSTANTIATE_TEST_SUITE_P(
    All, Guest, testing::ValuesIn(kFormats), [](const auto& made) { return made.param.name; });
} // namespace

TEST_P(Guest, KeepsItsSongInPiecesOfAnySize)
{
    const std::string text = chunkOf(player.engine());
    const auto host = makeHost();
    const std::string whole = host->saveBytes();
    ASSERT_FALSE(whole.empty());
    for (const size_t piece : {size_t{1}, size_t{13}, size_t{700}}) {
        host->piece = piece;
        EXPECT_EQ(host->saveBytes(), whole) << piece;
        const auto other = GetParam().make();
        other->piece = piece;
        ASSERT_NE(other->chunkText(), text);
        EXPECT_TRUE(other->loadBytes(whole)) << piece;
        EXPECT_EQ(other->chunkText(), text) << piece;
    }
}

TEST_P(Guest, RefusesJunkAndKeepsTheSong)
{
    const auto host = makeHost();
    const std::string whole = host->saveBytes();
    std::string corrupted = whole;
    corrupted[whole.size() / 3] = '?';
    for (const std::string& junk :
        {std::string(), std::string("no state"), whole.substr(0, whole.size() / 2),
            whole.substr(0, 40), corrupted, std::string(5000, '\0'), std::string(5000, '\xfe')}) {
        EXPECT_FALSE(host->loadBytes(junk)) << junk.size();
        EXPECT_EQ(host->saveBytes(), whole) << junk.size();
    }
}

// A host that stands still asks for changes with a call of no frames.
TEST_P(TellingGuest, TakesChangesWithoutFrames)
{
    const auto host = makeHost();
    const std::string before = host->chunkText();
    host->setParameter(numberOf(Tag::Swing), 0.37f);
    host->setParameter(0, 1);
    host->call();
    EXPECT_NE(host->chunkText(), before);
    EXPECT_NE(host->saveBytes().find("dpf_bypass" + std::string(1, '\0') + "1"), std::string::npos);
}

TEST_P(TellingGuest, BypassAndButtonsComeBackWithTheSong)
{
    const auto host = makeHost();
    host->setParameter(0, 1);
    host->setParameter(numberOf(9), 1); // a button that no preset holds
    host->play(64);
    const auto other = GetParam().make();
    EXPECT_TRUE(other->loadBytes(host->saveBytes()));
    EXPECT_EQ(other->saveBytes(), host->saveBytes());
}

// The host cuts no block at the loop's end; the engine in the VST 2 module gets the same range.
TEST_P(TellingGuest, LoopsToTheSampleWhereTheHostReportsTheRange)
{
    for (const double end : {3.0, 4.0}) {
        for (const int block : {64, 441, 1024, 2048, 4096}) {
            const auto host = makeHost();
            Player other;
            other.writePlainNotes();
            host->loop(0, end);
            host->start(0);
            host->playLoop(12 * kBeat, block);
            other.cycle(0, end);
            other.setBlock(block);
            other.start();
            for (int64_t at = 0; at < 12 * kBeat; at += block) {
                other.play(std::min<int64_t>(block, 12 * kBeat - at));
                if (other.position() >= end - 1e-9)
                    other.start(other.position() - end);
            }
            EXPECT_EQ(host->events, other.events()) << end << " " << block;
            EXPECT_NEAR(static_cast<double>(noteOns(host->events).size()), 48, 1);
        }
    }
}

TEST_P(Guest, CountsInAndPlaysTheFirstStepAtItsTick)
{
    for (const int block : {64, 500, 2048, 4096}) {
        const auto host = makeHost();
        host->start(-2);
        host->play(4 * kBeat, block);
        const auto notes = noteOns(host->events);
        ASSERT_EQ(notes.size(), 8u) << block;
        for (size_t i = 0; i < notes.size(); ++i)
            EXPECT_NEAR(static_cast<double>(notes[i].frame),
                2.0 * kBeat + static_cast<double>(i) * kBeat / 4, 33)
                << block;
    }
}

// LV2 reports no range, so the first turn is heard as a jump; every later one is exact.
TEST(Lv2Guest, TurnsWithALoopFromTheSecondPassOn)
{
    Player player;
    player.writePlainNotes();
    for (const double end : {3.0, 4.0}) {
        for (const int block : {64, 441, 1024, 2048, 4096}) {
            const auto host = makeLv2Host();
            host->restoreChunk(chunkOf(player.engine()));
            host->loop(0, end);
            host->start(0);
            const auto pass = static_cast<int64_t>(end * kBeat);
            host->playLoop(4 * pass, block);
            std::vector<MidiOut> later;
            for (const MidiOut& event : noteOns(host->events))
                if (event.frame >= 2 * pass - 40)
                    later.push_back(event);
            ASSERT_EQ(later.size(), static_cast<size_t>(8 * end)) << end << " " << block;
            for (size_t i = 0; i < later.size(); ++i)
                EXPECT_NEAR(static_cast<double>(later[i].frame),
                    static_cast<double>(2 * pass) + static_cast<double>(i) * kBeat / 4, 33);
        }
    }
}

TEST_P(TellingGuest, AutomationActsAtItsPlaceInTheBlock)
{
    // A change just before a step plays it in the other octave; one just behind it does not.
    for (const int distance : {-100, 100}) {
        const auto host = makeHost();
        host->start(0);
        const int before = 8192;
        host->play(before, 4096);
        host->automate(numberOf(Tag::RootKey), 1.0f, kBeat / 2 - before + distance);
        host->play(4096, 4096);
        const auto notes = noteOns(host->events);
        ASSERT_EQ(notes.size(), 3u);
        EXPECT_EQ(notes[1].data1, notes[0].data1);
        EXPECT_EQ(notes[2].data1 == notes[0].data1, distance > 0);
    }
}

TEST_P(TellingGuest, TextsGoThereAndBackAndNonsenseIsRefused)
{
    const auto host = GetParam().make();
    const int cutoff = numberOf(25);
    const int scale = numberOf(Tag::Scale);
    EXPECT_THAT(host->textOf(cutoff, 0.55f), testing::EndsWith(" Hz"));
    EXPECT_EQ(host->textOf(scale, 0.001f), "Chromatic");
    EXPECT_EQ(host->textOf(numberOf(16), 0), "off");
    const auto tuned = host->valueOf(cutoff, "4000 Hz");
    ASSERT_TRUE(tuned);
    EXPECT_NEAR(*tuned, std::sqrt((4000 - 45) / 16000.0), 1e-4);
    EXPECT_EQ(host->valueOf(cutoff, "4000"), tuned);
    const auto dorian = host->valueOf(scale, "dorian");
    ASSERT_TRUE(dorian);
    EXPECT_EQ(host->textOf(scale, *dorian), "Dorian");
    EXPECT_EQ(host->valueOf(numberOf(16), "on"), 1.0f);
    for (const char* nonsense : {"", "Hz", "4000 bananas", "nan", "on"})
        EXPECT_FALSE(host->valueOf(cutoff, nonsense)) << nonsense;
    EXPECT_FALSE(host->valueOf(scale, "of the fish"));
}

} // namespace ormund
