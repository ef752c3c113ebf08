// The same script through every format and through the engine itself.
#include "tests/formats/FormatHost.h"

#include "data/Tags.h"
#include "host/formats/Base64.h"
#include "host/formats/SongPlace.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace {
struct Format {
    const char* name;
    std::unique_ptr<FormatHost> (*make)();
};
constexpr Format kFormats[] = {{"CLAP", makeClapHost}, {"LV2", makeLv2Host}};
void PrintTo(const Format& format, std::ostream* out) { *out << format.name; }

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
    host->setBypass(true);
    host->play(6 * kBeat - 4000);
    for (size_t i = before; i < host->events.size(); ++i)
        EXPECT_TRUE(host->events[i].isNoteOff());
    EXPECT_EQ(host->events.size() - before, static_cast<size_t>(sounding));
    EXPECT_EQ(host->left[static_cast<size_t>(6 * kBeat)], 0.0f);
    host->setBypass(false);
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

TEST(SongFollower, BarThatTurnsOneBlockEarlyIsCountedBack)
{
    SongFollower follower(BarRule::Meter);
    const double step = 512 / 44100.0 * 2; // beats
    BarPlace place{.playing = true, .valid = true, .beat = 3.5};
    double last = follower.follow(place, 512, 44100).quarters;
    for (int block = 1; block < 60; ++block) {
        place.frame += 512;
        place.beat += step;
        if (place.beat >= 4) {
            place.beat -= 4;
        } else if (place.beat + step >= 4) {
            ++place.bar;
        }
        const double now = follower.follow(place, 512, 44100).quarters;
        EXPECT_NEAR(now - last, step, 1e-9) << block;
        last = now;
    }
    place.bar += 1; // a locate
    EXPECT_NEAR(follower.follow(place, 512, 44100).quarters - last, 4, 0.1);
}

TEST(SongFollower, PutsTheBarTogetherAsItWasCut)
{
    const BarPlace seven{
        .playing = true, .valid = true, .bar = 3, .beat = 3.5, .beatsPerBar = 7, .beatType = 8};
    const auto quarters = [&](BarRule rule) {
        return SongFollower(rule).follow(seven, 64, 44100).quarters;
    };
    EXPECT_DOUBLE_EQ(quarters(BarRule::Meter), 8.75);
    EXPECT_DOUBLE_EQ(quarters(BarRule::WholeQuarters), 7.5);
    EXPECT_DOUBLE_EQ(quarters(BarRule::Numerator), 17.5);
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
