// What the wrapper answers as the engine's host, each call by itself.
#include "host/formats/KWFormatWrapper.h"

#include "data/parameters/Tags.h"
#include "host/formats/DeferredWork.h"
#include "tests/formats/Formats.h"

#include <atomic>
#include <chrono>
#include <cstring>
#include <gmock/gmock.h>
#include <thread>

namespace ormund {

namespace {
struct Notes final : KWFormatWrapper::Format {
    std::vector<VstMidiEvent> events;
    void midiOut(const VstMidiEvent& event) override { events.push_back(event); }
};

class Wrapper : public testing::Test {
protected:
    static constexpr double kRate = 48000;
    static constexpr int kBlock = 256;

    void run(const SongPlace* now)
    {
        float* outputs[] = {left, right};
        wrapper.run(now, outputs, kBlock);
    }
    void roll(int blocks)
    {
        for (int i = 0; i < blocks; ++i) {
            run(&place);
            place.quarters += kBlock / kRate * place.tempo / 60;
        }
    }

    Notes notes;
    KWFormatWrapper wrapper{notes, kRate};
    KWUniClient& engine = wrapper.client();
    SongPlace place{.playing = true, .valid = true};
    float left[kBlock]{};
    float right[kBlock]{};
};
} // namespace

TEST_F(Wrapper, AnswersAsAHost)
{
    char text[kVstMaxVendorStrLen] = {};
    EXPECT_TRUE(engine.getHostVendorString(text));
    EXPECT_STREQ(text, "Ormund");
    EXPECT_TRUE(engine.getHostProductString(text));
    EXPECT_STREQ(text, "Ormund");
    EXPECT_EQ(engine.getHostSampleRate(), 48000.0f);
    // Offline too: an export is to sound.
    EXPECT_EQ(engine.getCurrentProcessLevel(), kVstProcessLevelRealtime);
    for (const char* can : {"sendVstMidiEvent", "receiveVstMidiEvent", "sizeWindow"})
        EXPECT_EQ(engine.canHostDo(can), 1) << can;
    EXPECT_EQ(engine.canHostDo("sendVstTimeInfo"), 0);
    // What it does not know, and without a window.
    EXPECT_FALSE(engine.sizeWindow(100, 100));
    EXPECT_EQ(engine.getHostBlockSize(), 0);
    EXPECT_EQ(engine.getHostVendorVersion(), 0);
    EXPECT_EQ(engine.getAutomationState(), 0);
    EXPECT_FALSE(engine.ioChanged());
    engine.beginEdit(0);
    engine.setParameterAutomated(0, 0.25f);
    engine.endEdit(0);
    EXPECT_EQ(wrapper.parameter(0), 0.25f);
}

TEST_F(Wrapper, HandsOnTheTimeOfItsBlock)
{
    EXPECT_EQ(engine.getTimeInfo(0), nullptr); // before any block
    place = {.playing = true,
        .valid = true,
        .quarters = 5.5,
        .barStart = 3.5,
        .tempo = 90,
        .numerator = 7,
        .denominator = 8};
    run(&place);
    const VstTimeInfo* time = engine.getTimeInfo(0);
    ASSERT_NE(time, nullptr);
    EXPECT_EQ(time->ppqPos, 5.5);
    EXPECT_EQ(time->barStartPos, 3.5);
    EXPECT_EQ(time->tempo, 90);
    EXPECT_EQ(time->sampleRate, kRate);
    EXPECT_EQ(time->samplePos, 5.5 * 60 / 90 * kRate);
    EXPECT_EQ(time->timeSigNumerator, 7);
    EXPECT_EQ(time->timeSigDenominator, 8);
    EXPECT_EQ(time->flags,
        kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstTimeSigValid);
    place.playing = false;
    run(&place);
    EXPECT_EQ(engine.getTimeInfo(0)->flags & kVstTransportPlaying, 0);
    run(nullptr);
    EXPECT_EQ(engine.getTimeInfo(0), nullptr);
}

TEST_F(Wrapper, SendsEventsOnAndNoneWhileBypassed)
{
    VstMidiEvent event{};
    event.type = kVstMidiType;
    event.byteSize = sizeof event;
    event.deltaFrames = 17;
    event.midiData[0] = 0xB0;
    VstEventList<2> list;
    list.numEvents = 1;
    list.events[0] = reinterpret_cast<VstEvent*>(&event);
    EXPECT_TRUE(engine.sendVstEventsToHost(list.list()));
    ASSERT_EQ(notes.events.size(), 1u);
    EXPECT_EQ(notes.events[0].deltaFrames, 17);
    EXPECT_TRUE(engine.sendVstEventsToHost(nullptr));
    wrapper.setBypass(true);
    run(&place);
    engine.sendVstEventsToHost(list.list());
    EXPECT_EQ(notes.events.size(), 1u);
}

TEST_F(Wrapper, TellsOfALoadOnceAndCutsNoValueOfAButton)
{
    EXPECT_FALSE(wrapper.takeReload());
    ASSERT_TRUE(wrapper.setState(wrapper.state()));
    EXPECT_TRUE(wrapper.takeReload());
    EXPECT_FALSE(wrapper.takeReload());
    EXPECT_FALSE(wrapper.setState("?"));
    EXPECT_FALSE(wrapper.setState(""));
    EXPECT_FALSE(wrapper.takeReload());
    // A value that went through a text of six digits is the same value.
    wrapper.setParameter(Tag::Swing, 0.1234567f);
    wrapper.setParameter(Tag::Swing, 0.123457f);
    EXPECT_EQ(wrapper.parameter(Tag::Swing), 0.1234567f);
}

TEST_F(Wrapper, BypassIsSilentWithinTheBlockAndEndsWhatSounds)
{
    Player player;
    player.writePlainNotes();
    player.engine().setParameter(Tag::SynthOn, 1.0f);
    void* data = nullptr;
    const VstInt32 bytes = player.engine().getChunk(&data, false);
    ASSERT_EQ(engine.setChunk(data, bytes, false), 1);
    const auto sounding = [this] {
        int count = 0;
        for (const VstMidiEvent& event : notes.events)
            count += event.midiData[2] > 0 ? 1 : -1;
        return count;
    };
    roll(1);
    while (sounding() == 0)
        roll(1);
    roll(1);
    EXPECT_THAT(left, testing::Contains(testing::Ne(0.0f)));
    wrapper.setBypass(true);
    roll(1);
    EXPECT_EQ(sounding(), 0);
    EXPECT_THAT(left, testing::Each(0.0f));
    EXPECT_THAT(right, testing::Each(0.0f));
    const size_t before = notes.events.size();
    roll(200);
    EXPECT_EQ(notes.events.size(), before);
    EXPECT_GT(engine.screen.mainStep, 1.0f); // the clock has gone on
    wrapper.setBypass(false);
    roll(200);
    EXPECT_GT(notes.events.size(), before);
}

TEST(DeferredWork, CallsEveryClientUntilItIsRemoved)
{
    struct Counter final : DeferredWork::Client {
        std::atomic<int> calls{0};
        void doDeferredWork() override { ++calls; }
    };
    const auto waitFor = [](const Counter& counter, int calls) {
        for (int i = 0; i < 500 && counter.calls < calls; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return counter.calls >= calls;
    };
    Counter first;
    Counter second;
    for (int round = 0; round < 3; ++round) {
        DeferredWork::add(first);
        DeferredWork::add(second);
        DeferredWork::add(second);
        const int before = first.calls;
        EXPECT_TRUE(waitFor(first, before + 2));
        EXPECT_TRUE(waitFor(second, 1));
        DeferredWork::remove(first);
        const int after = first.calls;
        EXPECT_TRUE(waitFor(second, second.calls + 2));
        EXPECT_EQ(first.calls, after);
        DeferredWork::remove(second);
        DeferredWork::remove(second);
    }
}

} // namespace ormund
