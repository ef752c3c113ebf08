// The stand-alone program and other machines' MIDI clock, by JACK's own clock programs and by a
// second one of its kind.
#include "tests/apps/StandaloneRig.h"

#include <algorithm>
#include <cmath>
#include <future>
#include <gmock/gmock.h>

namespace ormund {

namespace {

constexpr double kTick = 32; // frames; the engine's
constexpr double kLength = JackServer::kRate * 60 / 132.0 / 24;

std::vector<int64_t> framesOf(const std::vector<JackClient::Message>& heard, uint8_t status)
{
    std::vector<int64_t> frames;
    for (const JackClient::Message& each : heard)
        if (each.bytes[0] == status && each.frame >= 0)
            frames.push_back(each.frame);
    return frames;
}

// Starts of notes, in rising order.
std::vector<int64_t> notesOf(const std::vector<JackClient::Message>& heard)
{
    std::vector<int64_t> frames;
    for (const JackClient::Message& each : heard)
        if ((each.bytes[0] & 0xF0) == 0x90 && each.bytes[2] > 0 && each.frame >= 0)
            frames.push_back(each.frame);
    return frames;
}

bool hasProgram(const char* name)
{
    return runCommand(std::string("command -v ") + name).code == 0;
}

TEST_F(OnJack, SendsAClockOnTheFrameOfTheSong)
{
    Running program(home, {"--device", "jack", "--no-window", "--send-clock", "--tempo", "132"});
    ASSERT_TRUE(listener->connectFrom(kMidiOut)) << program.said();
    usleep(300000);
    listener->take();
    listener->play(true);
    ASSERT_TRUE(listener->waitFrame(3 * JackServer::kRate));
    listener->play(false);
    const auto heard = listener->take();
    const auto clocks = framesOf(heard, 0xF8);
    ASSERT_GT(clocks.size(), 150u);
    double worst = 0;
    for (const int64_t frame : clocks) {
        const double place = double(frame) / kLength;
        worst = std::max(worst, std::abs(place - std::round(place)) * kLength);
    }
    EXPECT_LE(worst, kTick);
    RecordProperty("jitter_frames", std::to_string(worst));
    EXPECT_THAT(framesOf(heard, 0xFA), testing::ElementsAre(0));
}

// Whatever JACK's transport says, its clock program says by messages, and Ormund hears these alone.
TEST_F(OnJack, FollowsTheClockOfAnotherProgram)
{
    if (!hasProgram("jack_midi_clock"))
        GTEST_SKIP() << "jack-midi-clock is not installed";
    Running program(home, {"--device", "jack", "--no-window", "--sync", "clock"});
    ASSERT_TRUE(listener->connectFrom(kMidiOut)) << program.said();
    JackClient leader;
    leader.lead(132);
    const auto ended = std::async(std::launch::async, [] {
        return runCommand("timeout -s INT 9 jack_midi_clock -b 132 'Ormund:Ormund MIDI in'");
    });
    sleep(1);
    listener->play(true);
    ASSERT_TRUE(listener->waitFrame(5 * JackServer::kRate));
    listener->play(false);
    const auto notes = notesOf(listener->take());
    ASSERT_GT(notes.size(), 20u);
    // From the second bar on every step is where the transport has it.
    const double step = kLength * 6;
    std::vector<double> off;
    for (const int64_t frame : notes)
        if (double(frame) > 4 * 24 * kLength)
            off.push_back(std::remainder(double(frame), step));
    ASSERT_FALSE(off.empty());
    const auto [least, most] = std::minmax_element(off.begin(), off.end());
    EXPECT_LE(*most - *least, 2 * kTick) << *least << " to " << *most;
    EXPECT_LE(std::abs(*most), JackServer::kBlock + kTick) << "late by a block at most";
}

TEST_F(OnJack, ItsClockIsUnderstoodByJacksDump)
{
    if (!hasProgram("jack_mclk_dump"))
        GTEST_SKIP() << "jack-midi-clock is not installed";
    Running program(home,
        {"--device", "jack", "--no-window", "--send-clock", "--tempo", "132", "--sync", "own"});
    ASSERT_TRUE(listener->connectFrom(kMidiOut)) << program.said();
    const Outcome dumped =
        runCommand("timeout -s INT 3 stdbuf -o0 jack_mclk_dump 'Ormund:Ormund MIDI out'");
    EXPECT_THAT(dumped.text, testing::HasSubstr("132.0")) << dumped.text;
}

// The first one's notes and the second one's, at the same frames but for JACK's way from one
// program to the next, and evenly so.
TEST_F(OnJack, TwoProgramsPlayAsOne)
{
    Running first(home, {"--device", "jack", "--no-window", "--send-clock", "--tempo", "132"});
    JackClient other;
    ASSERT_TRUE(listener->connectFrom(kMidiOut)) << first.said();
    const OwnHome secondHome;
    Running second(
        secondHome, {"--device", "jack", "--no-window", "--sync", "clock", "--midi-in", kMidiOut});
    ASSERT_TRUE(other.connectFrom("Ormund-01:Ormund MIDI out")) << second.said();
    usleep(500000);
    listener->take();
    listener->play(true);
    ASSERT_TRUE(listener->waitFrame(4 * JackServer::kRate));
    const auto led = notesOf(listener->take());
    const auto following = notesOf(other.take());
    first.signal(SIGTERM);
    EXPECT_TRUE(second.says("MIDI clock lost")) << second.said();
    listener->play(false);
    ASSERT_GT(led.size(), 20u);
    ASSERT_GE(following.size(), led.size());
    // From the third beat on. The second one plays more: the first one's notes are its keys.
    std::vector<double> off;
    for (const int64_t frame : led) {
        if (double(frame) < 3 * 24 * kLength)
            continue;
        const auto closest = std::min_element(following.begin(), following.end(),
            [frame](int64_t a, int64_t b) { return std::abs(a - frame) < std::abs(b - frame); });
        off.push_back(double(*closest - frame));
    }
    ASSERT_GT(off.size(), 10u);
    const auto [least, most] = std::minmax_element(off.begin(), off.end());
    EXPECT_LE(*most - *least, 2 * kTick) << *least << " to " << *most;
    EXPECT_LE(std::max(std::abs(*least), *most), JackServer::kBlock + kTick);
}

} // namespace

} // namespace ormund
