// Hosts that call in an order of their own.
#include "tests/host/ModuleRig.h"
#include "tests/support/Checked.h"

#include <atomic>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <thread>

namespace ormund {

using testing::IsEmpty;

namespace {

// An instance of which nobody has asked anything yet.
class RawInstance {
public:
    RawInstance() : module(dlopen(kModule.c_str(), RTLD_NOW))
    {
        const auto entry = reinterpret_cast<AEffect* (*)(audioMasterCallback)>(
            module ? dlsym(module, "VSTPluginMain") : nullptr);
        current = this;
        effect = entry ? entry(callback) : nullptr;
        time.tempo = 120;
        time.flags = kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid;
    }
    ~RawInstance()
    {
        if (effect)
            dispatch(effClose);
        current = nullptr;
        if (module)
            dlclose(module);
    }
    VstIntPtr dispatch(
        VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr)
    {
        return effect->dispatcher(effect, opcode, index, value, ptr, 0);
    }
    // The loudest sample; what is no number counts as loud.
    float block(int frames)
    {
        std::vector<float> left(static_cast<size_t>(frames) + 1);
        std::vector<float> right(left.size());
        float* outputs[2] = {left.data(), right.data()};
        effect->processReplacing(effect, nullptr, outputs, frames);
        time.ppqPos += frames * time.tempo / (60.0 * 44100);
        return allFinite(left) && allFinite(right) ? std::max(loudest(left), loudest(right)) : 1e9f;
    }
    std::vector<char> state()
    {
        void* data = nullptr;
        const auto bytes = dispatch(effGetChunk, 0, 0, &data);
        return {static_cast<char*>(data), static_cast<char*>(data) + bytes};
    }

    AEffect* effect = nullptr;
    VstTimeInfo time{};
    int messages = 0;
    std::function<void()> inTimeRequest;
    std::function<void()> inEvents;

private:
    static VstIntPtr callback(AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void* ptr, float)
    {
        if (!current)
            return 0;
        if (opcode == audioMasterGetTime) {
            if (current->inTimeRequest)
                current->inTimeRequest();
            return reinterpret_cast<VstIntPtr>(&current->time);
        }
        if (opcode == audioMasterProcessEvents) {
            current->messages += static_cast<VstEvents*>(ptr)->numEvents;
            if (current->inEvents)
                current->inEvents();
        }
        return 0;
    }
    static inline RawInstance* current = nullptr;
    void* module;
};

TEST(WrongOrder, BlocksBeforeItIsOpenedAndAfterItIsStopped)
{
    const OwnHome home;
    RawInstance raw;
    ASSERT_TRUE(raw.effect);
    float peak = 0;
    for (int i = 0; i < 200; ++i)
        peak = std::max(peak, raw.block(512));
    EXPECT_GT(peak, 0.01f);
    EXPECT_LT(peak, 4.0f);
    EXPECT_GT(raw.messages, 0);
    raw.dispatch(effMainsChanged, 0, 0);
    raw.dispatch(effStopProcess);
    raw.dispatch(effMainsChanged, 0, 0);
    EXPECT_LT(raw.block(4096), 4.0f);
    raw.dispatch(effOpen);
    raw.dispatch(effOpen);
    raw.dispatch(effMainsChanged, 0, 1);
    EXPECT_LT(raw.block(4096), 4.0f);
}

TEST(WrongOrder, AStateAndARateFromInsideTheOwnBlock)
{
    const OwnHome home;
    RawInstance raw;
    ASSERT_TRUE(raw.effect);
    std::vector<char> state = raw.state();
    int round = 0;
    const auto disturb = [&] {
        const float rates[] = {44100, 96000, 22050};
        raw.effect->dispatcher(raw.effect, effSetSampleRate, 0, 0, nullptr, rates[round++ % 3]);
        raw.dispatch(effSetChunk, 0, static_cast<VstIntPtr>(state.size()), state.data());
        raw.dispatch(effMainsChanged, 0, round % 2);
    };
    raw.inTimeRequest = disturb;
    for (int i = 0; i < 100; ++i)
        EXPECT_LT(raw.block(300), 4.0f);
    raw.inTimeRequest = nullptr;
    raw.inEvents = disturb;
    for (int i = 0; i < 400; ++i)
        EXPECT_LT(raw.block(300), 4.0f);
    EXPECT_GT(round, 100);
}

TEST_F(Module, StatesRatesAndStopsBesideARunningBlock)
{
    const std::vector<char> state = stateOf(host);
    std::atomic<bool> plays{true};
    std::thread other([&] {
        for (int i = 0; plays && i < rounds(400); ++i) {
            give(host, state);
            const float rates[] = {44100, 192000, 11050, 48000};
            host.dispatch(effSetSampleRate, 0, 0, nullptr, rates[i % 4]);
            host.dispatch(effMainsChanged, 0, i % 2);
            host.dispatch(effSetBlockSize, 0, 1 + i % 100);
            set(i % 46, static_cast<float>(i % 11) / 10);
        }
        plays = false;
    });
    host.start();
    for (int i = 0; plays || i < 200; ++i) {
        host.send({0x90, static_cast<uint8_t>(30 + i % 60), 100});
        host.send({0x80, static_cast<uint8_t>(30 + i % 60), 0}, 100);
        host.runBlock(256);
        EXPECT_LT(loudest(host.left), 8.0f);
        host.left.clear();
        host.right.clear();
    }
    other.join();
    host.setSampleRate(11050);
    host.stop();
    host.send({0xb0, 123, 0});
    // A note that was given its length at 192 kHz is as many samples long at 11.
    host.run(11050 * 200LL * 18);
    EXPECT_THAT(soundingAfter(host.events), IsEmpty());
    EXPECT_TRUE(allFinite(host.left));
}

TEST_F(Module, BlocksBeyondWhatWasAnnounced)
{
    host.dispatch(effSetBlockSize, 0, 64);
    host.start();
    for (const int frames : {64, 1, 8192, 0, 65536, 8193, 1, 262144}) {
        host.runBlock(frames);
        EXPECT_LT(loudest(host.left), 4.0f) << frames;
    }
    EXPECT_THAT(host.faults, IsEmpty());
    EXPECT_TRUE(allFinite(host.left));
    EXPECT_FALSE(noteOns(host.events).empty());
}

TEST_F(Module, TwiceOfEverything)
{
    // Opened, stopped and started again and again; a state of nothing, a program that is none.
    for (int i = 0; i < 3; ++i) {
        host.dispatch(effOpen);
        host.dispatch(effMainsChanged, 0, 1);
        host.dispatch(effStartProcess);
        host.dispatch(effStartProcess);
        host.dispatch(effEditClose);
        host.dispatch(effEditIdle);
        host.dispatch(effSetChunk, 0, 0, &host);
        host.dispatch(effSetProgram, 0, 127);
    }
    host.start();
    host.run(44100);
    EXPECT_THAT(host.faults, IsEmpty());
    EXPECT_FALSE(noteOns(host.events).empty());
}

} // namespace

} // namespace ormund
