// The live host against the scripted one: the same moves of the transport give the same messages.
#include "apps/ormund/LiveHost.h"
#include "apps/host/ScriptedHost.h"

#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

namespace ormund {

extern "C" AEffect* VSTPluginMain(audioMasterCallback host);

namespace {

constexpr float kRate = 48000;
constexpr int kBlock = 256;

struct Event {
    int64_t frame;
    std::array<uint8_t, 3> bytes;
    friend bool operator==(const Event&, const Event&) = default;
};

class Live : public LiveHost::MidiOut {
public:
    Live()
    {
        EXPECT_TRUE(host.start(VSTPluginMain, 120));
        host.setFormat(kRate, kBlock);
    }
    void midiOut(int frame, const LiveHost::Message& message) override
    {
        EXPECT_GE(frame, 0);
        EXPECT_LT(frame, kBlock);
        events.push_back({framesRun + frame, message.bytes});
    }
    void run(int blocks, const LiveHost::SharedPlace* place = nullptr)
    {
        for (int i = 0; i < blocks; ++i, framesRun += kBlock)
            host.run(left.data(), right.data(), kBlock, *this, place);
    }
    LiveHost host;
    std::vector<Event> events;
    std::array<float, kBlock> left{};
    std::array<float, kBlock> right{};
    int64_t framesRun = 0;
};

class Scripted {
public:
    Scripted() { EXPECT_TRUE(host.attach(VSTPluginMain, {kRate, kBlock, 120})); }
    void run(int blocks) { host.run(blocks * kBlock); }
    std::vector<Event> events() const
    {
        std::vector<Event> all;
        for (const ScriptedHost::Event& each : host.events)
            all.push_back({each.frame, each.bytes});
        return all;
    }
    ScriptedHost host;
};

TEST(LiveHost, MovesOfTheTransportAreThoseOfTheScriptedHost)
{
    Live live;
    Scripted scripted;
    const auto both = [&](auto move, int blocks) {
        move(live.host, scripted.host);
        live.run(blocks);
        scripted.run(blocks);
    };
    both([](auto&, auto&) {}, 10);
    both([](auto& one, auto& two) { one.play(true), two.start(); }, 300);
    both([](auto& one, auto& two) { one.setTempo(171), two.setTempo(171); }, 200);
    both([](auto& one, auto& two) { one.locate(9.5), two.locate(9.5); }, 200);
    both([](auto& one, auto& two) { one.setCycle(8, 12), two.setCycle(8, 12); }, 900);
    EXPECT_LT(live.host.position(), 12);
    EXPECT_GE(live.host.position(), 8);
    both([](auto& one, auto& two) { one.setCycle(0, 0), two.clearCycle(); }, 300);
    both([](auto& one, auto& two) { one.play(false), two.stop(); }, 300);
    EXPECT_FALSE(live.host.isPlaying());
    EXPECT_GT(live.events.size(), 100u);
    EXPECT_EQ(live.events, scripted.events());
    EXPECT_TRUE(scripted.host.faults.empty());
}

TEST(LiveHost, ASharedTransportOverrulesTheOwnAndIsFoldedIntoTheCycle)
{
    Live live;
    Scripted scripted;
    live.host.play(false);
    live.host.setCycle(0, 4);
    scripted.host.setCycle(0, 4);
    scripted.host.start();
    const double perFrame = 120.0 / 60 / static_cast<double>(kRate);
    for (int block = 0; block < 1200; ++block) { // three times round
        const LiveHost::SharedPlace place{
            true, static_cast<double>(live.framesRun) * perFrame, 120};
        live.run(1, &place);
        scripted.run(1);
    }
    EXPECT_TRUE(live.host.isPlaying());
    EXPECT_GT(live.events.size(), 50u);
    EXPECT_EQ(live.events, scripted.events());
}

TEST(LiveHost, HandsInTheChannelMessagesAlone)
{
    Live live;
    Scripted scripted;
    live.host.play(true);
    scripted.host.start();
    // The lowest octaves transpose; a clock byte, a system message and a cut one are not the
    // engine's.
    const uint8_t key[] = {0x90, 48, 100};
    const uint8_t clock[] = {0xF8};
    const uint8_t cut[] = {0x90};
    const uint8_t program[] = {0xC0, 3};
    live.host.send(clock, sizeof clock, 0);
    live.host.send(cut, sizeof cut, 0);
    live.host.send(key, sizeof key, 17);
    live.host.send(program, sizeof program, 40);
    scripted.host.send({0x90, 48, 100}, 17);
    scripted.host.send({0xC0, 3, 0}, 40);
    live.run(400);
    scripted.run(400);
    EXPECT_EQ(live.events, scripted.events());
    // More than a block takes is dropped, not overrun.
    for (int i = 0; i < 5000; ++i)
        live.host.send(key, sizeof key, i % kBlock);
    live.run(1);
}

TEST(LiveHost, EndsItsNotesAndIsSilentFromThenOn)
{
    Live live;
    live.host.play(true);
    int sounding = 0;
    for (int block = 0; block < 4000 && sounding == 0; ++block) {
        live.run(1);
        for (const Event& each : live.events) {
            const int kind = each.bytes[0] & 0xF0;
            if (kind == 0x90 || kind == 0x80)
                sounding += kind == 0x90 && each.bytes[2] > 0 ? 1 : -1;
        }
        live.events.clear();
    }
    ASSERT_GT(sounding, 0);
    live.host.endNotes();
    EXPECT_FALSE(live.host.hasEndedNotes());
    live.run(1);
    EXPECT_TRUE(live.host.hasEndedNotes());
    EXPECT_EQ(live.events.size(), static_cast<size_t>(sounding));
    for (const Event& each : live.events)
        EXPECT_EQ(each.bytes[0] & 0xF0, 0x80);
    live.events.clear();
    live.run(200);
    EXPECT_THAT(live.events, testing::IsEmpty());
    EXPECT_THAT(live.left, testing::Each(0.0f));
}

TEST(LiveHost, TheScreenMovesItWhileItPlays)
{
    Live live;
    std::atomic<bool> over = false;
    std::thread audio([&] {
        while (!over)
            live.run(1);
    });
    for (int i = 0; i < 3000; ++i) {
        live.host.play(i % 7 != 0);
        live.host.locate(i % 32);
        live.host.setTempo(60 + i % 200);
        live.host.setCycle(0, i % 3 ? 8 : 0);
        AEffect* effect = live.host.effect();
        effect->setParameter(effect, i % 46, static_cast<float>(i % 10) / 10);
        EXPECT_GE(live.host.position(), 0);
        EXPECT_GE(live.host.tempo(), LiveHost::kLowestTempo);
        std::this_thread::yield();
    }
    over = true;
    audio.join();
    EXPECT_GT(live.host.blocksRun(), 0);
}

TEST(LiveHost, AnswersTheSizeOfTheWindowOnlyWhereThereIsOne)
{
    Live live;
    int width = 0;
    live.host.sizeWindow = [&width](int wanted, int) { width = wanted; };
    ERect* rect = nullptr;
    ASSERT_EQ(live.host.dispatch(effEditGetRect, 0, 0, &rect), 1);
    // Without an open editor nothing asks for a size.
    live.host.dispatch(effEditIdle);
    EXPECT_EQ(width, 0);
}

} // namespace

} // namespace ormund
