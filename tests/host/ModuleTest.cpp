// The built module as a host meets it: loaded, asked, played and mistreated through the C
// interface alone.
#include "tests/host/ModuleRig.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace ormund {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

TEST(ModuleFile, ExportsItsEntryPointAlone)
{
    FILE* pipe = popen(("nm -D --defined-only --format=just-symbols " + kModule).c_str(), "r");
    ASSERT_TRUE(pipe);
    std::string names;
    char line[256];
    while (std::fgets(line, sizeof line, pipe))
        names += line;
    EXPECT_EQ(pclose(pipe), 0);
    EXPECT_EQ(names, "VSTPluginMain\n");
}

TEST_F(Module, SaysWhoItIs)
{
    const AEffect& effect = *host.effect();
    EXPECT_EQ(effect.magic, kEffectMagic);
    EXPECT_EQ(effect.uniqueID, fourCharacters('K', 'W', 'O', 'R'));
    EXPECT_EQ(effect.numPrograms, 128);
    EXPECT_EQ(effect.numParams, 46);
    EXPECT_EQ(effect.numInputs, 2);
    EXPECT_EQ(effect.numOutputs, 2);
    EXPECT_EQ(effect.initialDelay, 0);
    EXPECT_EQ(effect.flags & (effFlagsCanReplacing | effFlagsProgramChunks | effFlagsIsSynth),
        effFlagsCanReplacing | effFlagsProgramChunks | effFlagsIsSynth);
    EXPECT_EQ(effect.flags & effFlagsCanDoubleReplacing, 0);
    EXPECT_EQ(host.text(effGetEffectName), "Ormund");
    EXPECT_EQ(host.text(effGetProductString), "Ormund");
    EXPECT_EQ(host.text(effGetVendorString), "Kelda Works");
    EXPECT_EQ(host.dispatch(effGetVendorVersion), 1061);
    EXPECT_EQ(host.dispatch(effGetPlugCategory), kPlugCategSynth);
    EXPECT_EQ(host.dispatch(effGetVstVersion), 2400);
    EXPECT_EQ(host.dispatch(effGetTailSize), 44100);
    EXPECT_EQ(host.dispatch(effSetBypass, 0, 1), 0);
    EXPECT_EQ(host.wantMidiCalls, 1);
    for (int pin = 0; pin < 2; ++pin) {
        VstPinProperties properties{};
        EXPECT_EQ(host.dispatch(effGetOutputProperties, pin, 0, &properties), 1);
        EXPECT_EQ(properties.flags, 3);
    }
}

TEST_F(Module, AnswersWhatItCanDo)
{
    const struct {
        const char* asked;
        int answer;
    } rows[] = {{"receiveVstEvents", 1}, {"receiveVstMidiEvent", 1}, {"sendVstMidiEvent", 1},
        {"sendVstEvent", 1}, {"receiveVstTimeInfo", 1}, {"hasAboutScreen", 1}, {"offline", -1},
        {"bypass", -1}, {"", -1}, {"receiveVstEventsX", -1}};
    for (const auto& row : rows)
        EXPECT_EQ(host.dispatch(effCanDo, 0, 0, const_cast<char*>(row.asked)), row.answer)
            << row.asked;
}

TEST_F(Module, ParametersHaveNamesTextsAndProperties)
{
    EXPECT_EQ(host.text(effGetParamName, kRootKey), "Root_Key");
    EXPECT_EQ(host.text(effGetParamLabel, 38), "Modtrack_1_on_of_");
    constexpr int kOwn = 330; // takes values, but gives none
    set(kOwn, 0.75f);
    for (const int outside : {-1, 46, kOwn, 585, 100000}) {
        EXPECT_EQ(host.text(effGetParamName, outside), "empty") << outside;
        EXPECT_EQ(host.text(effGetParamLabel, outside), "empty") << outside;
        EXPECT_EQ(host.text(effGetParamDisplay, outside), "empty") << outside;
        EXPECT_EQ(host.effect()->getParameter(host.effect(), outside), 0) << outside;
        EXPECT_EQ(host.dispatch(effCanBeAutomated, outside), 0) << outside;
    }
    set(kScale, 0.25f);
    EXPECT_EQ(host.effect()->getParameter(host.effect(), kScale), 0.25f);
    EXPECT_THAT(host.text(effGetParamDisplay, 12), StartsWith("0.179322"));

    for (int index = 0; index < 46; ++index) {
        EXPECT_EQ(host.dispatch(effCanBeAutomated, index), 1);
        EXPECT_NE(host.text(effGetParamName, index), "empty") << index;
        VstParameterProperties properties{};
        EXPECT_EQ(host.dispatch(effGetParameterProperties, index, 0, &properties), 1);
        EXPECT_EQ(properties.label, host.text(effGetParamName, index));
    }
    VstParameterProperties button{};
    host.dispatch(effGetParameterProperties, kPlayButton, 0, &button);
    EXPECT_NE(button.flags & kVstParameterIsSwitch, 0);
    VstParameterProperties none{};
    EXPECT_EQ(host.dispatch(effGetParameterProperties, 46, 0, &none), 0);
}

TEST_F(Module, TheDoorReadsAnyParameter)
{
    const auto read = [&](float tag, float* to) {
        return host.dispatch(effVendorSpecific, kDoor, 12, to, tag);
    };
    set(330, 0.75f);
    float value = -1;
    EXPECT_EQ(read(330, &value), 1);
    EXPECT_EQ(value, 0.75f);
    for (const float none : {-1.0f, 47.0f, 594.0f, 1e20f, std::nanf("")})
        EXPECT_EQ(read(none, &value), 0) << none;
    EXPECT_EQ(read(330, nullptr), 0);
    EXPECT_EQ(value, 0.75f);
}

TEST_F(Module, TypedTextSetsAParameter)
{
    set(kScale, 0);
    EXPECT_EQ(host.dispatch(effString2Parameter, kScale, 0, const_cast<char*>("Dorian")), 1);
    EXPECT_THAT(host.effect()->getParameter(host.effect(), kScale),
        testing::AllOf(testing::Ge(2.0f / 34), testing::Lt(3.0f / 34)));
    EXPECT_EQ(host.dispatch(effString2Parameter, kScale, 0, const_cast<char*>("no scale")), 0);
    EXPECT_EQ(host.dispatch(effString2Parameter, 46, 0, const_cast<char*>("1")), 0);
}

TEST_F(Module, PlaysWithTheTransportAndFallsSilentWithIt)
{
    host.run(44100);
    EXPECT_THAT(noteOns(host.events), IsEmpty());
    EXPECT_LT(loudest(host.left), 1e-9f); // the synth's guard against denormals is all there is
    host.start();
    host.run(8 * 44100);
    EXPECT_GE(noteOns(host.events).size(), 32u);
    EXPECT_GT(loudest(host.left), 0.05f);
    EXPECT_LE(loudest(host.left), 1.0f);
    host.stop();
    host.run(8 * 44100);
    EXPECT_THAT(soundingAfter(host.events), IsEmpty());
    EXPECT_THAT(host.faults, IsEmpty());
    EXPECT_EQ(host.timeFilter, 0x1e02);
}

TEST_F(Module, MidiDoesNotDependOnTheBlocks)
{
    const auto played = [&](int block) {
        ScriptedHost one;
        start(one, {.blockSize = block});
        one.start();
        one.run(4 * 44100);
        EXPECT_THAT(one.faults, IsEmpty());
        std::vector<std::pair<int64_t, std::array<uint8_t, 3>>> list;
        for (const auto& event : one.events)
            list.push_back({event.frame, event.bytes});
        return list;
    };
    const auto reference = played(512);
    EXPECT_GE(reference.size(), 16u);
    for (const int block : {1, 32, 100, 4096})
        EXPECT_EQ(played(block), reference) << "blocks of " << block;
}

TEST_F(Module, OfflineLevelLeavesTheBlockUntouched)
{
    host.start();
    host.run(1024);
    host.events.clear();
    host.left.clear();
    host.processLevel = kVstProcessLevelOffline;
    host.run(44100);
    EXPECT_THAT(host.events, IsEmpty());
    ASSERT_FALSE(host.left.empty());
    EXPECT_EQ(host.left.front(), host.left.back()); // the host's own fill
    EXPECT_NE(host.left.front(), 0);
}

TEST_F(Module, OddBlocksAreHarmless)
{
    host.start();
    for (int round = 0; round < 200; ++round)
        for (const int frames : {0, -1, -100000, 1, 31, 33, 512})
            host.runBlock(frames, round % 2 == 0);
    EXPECT_THAT(host.faults, IsEmpty());
    EXPECT_TRUE(allFinite(host.left));
    float* none[2] = {};
    host.effect()->processReplacing(host.effect(), nullptr, nullptr, 512);
    host.effect()->processReplacing(host.effect(), none, none, 0);
}

TEST_F(Module, BadNumbersAreHarmless)
{
    host.start();
    const float values[] = {kNaN, kInfinity, -kInfinity, -1, 2, 1e30f, 0};
    for (const float value : values) {
        for (int tag = -10; tag < 620; ++tag)
            if (tag < 355 || tag > 375) // no file dialogues here
                set(tag, value);
        host.run(4096);
    }
    for (const int tag : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        set(tag, 0.5f);
        EXPECT_EQ(host.effect()->getParameter(host.effect(), tag), 0);
    }
    const double badTimes[] = {
        std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL, -1, 1e300};
    for (const double bad : badTimes) {
        host.transport.time.tempo = bad;
        host.run(4096);
        host.transport.time.tempo = 120;
        host.transport.time.ppqPos = bad;
        host.run(4096);
        host.transport.time.ppqPos = 0;
        host.setCycle(-1e9, bad);
        host.run(4096);
        host.clearCycle();
    }
    EXPECT_TRUE(allFinite(host.left));
    EXPECT_TRUE(allFinite(host.right));
    EXPECT_THAT(host.faults, IsEmpty());
    host.stop();
    host.run(120 * 44100);
    EXPECT_THAT(soundingAfter(host.events), IsEmpty());
}

TEST_F(Module, OpcodesWithNothingBehindThemAreHarmless)
{
    for (VstInt32 opcode = -3; opcode < 120; ++opcode) {
        if (opcode == effClose)
            continue;
        for (const VstInt32 index : {-1, 0, 46, std::numeric_limits<VstInt32>::max()})
            for (const VstIntPtr value : {VstIntPtr{-1}, VstIntPtr{0}, VstIntPtr{1} << 40})
                host.dispatch(opcode, index, value, nullptr, kNaN);
    }
    host.dispatch(effMainsChanged, 0, 1);
    host.start();
    host.run(44100);
    EXPECT_FALSE(host.events.empty());
}

TEST_F(Module, TenThousandEventsInOneBlockHangNothing)
{
    host.start();
    for (int i = 0; i < 10000; ++i) {
        const auto pitch = static_cast<uint8_t>(i * 7 % 128);
        const auto status = static_cast<uint8_t>(0x80 + 0x10 * (i % 7));
        host.send({status, pitch, static_cast<uint8_t>(i % 128)}, i % 700 - 50);
    }
    host.runBlock(512);
    host.send({0xb0, 123, 0});
    host.run(44100);
    host.stop();
    host.run(60 * 44100);
    EXPECT_THAT(host.faults, IsEmpty());
    EXPECT_THAT(soundingAfter(host.events), IsEmpty());
    EXPECT_TRUE(allFinite(host.left));
}

TEST_F(Module, BrokenEventListsAreSkipped)
{
    VstMidiEvent sysex{};
    sysex.type = kVstSysExType;
    VstEventList<2> list;
    list.numEvents = 2;
    list.events[1] = reinterpret_cast<VstEvent*>(&sysex);
    EXPECT_EQ(host.dispatch(effProcessEvents, 0, 0, list.list()), 1);
    list.numEvents = -5;
    EXPECT_EQ(host.dispatch(effProcessEvents, 0, 0, list.list()), 1);
    host.start();
    host.run(4096);
}

TEST_F(Module, ARateChangeKeepsItPlaying)
{
    host.start();
    for (const float rate : {48000.0f, 11050.0f, 96000.0f, 196000.0f, 0.0f, -1.0f, kNaN, 44100.0f})
        host.dispatch(effSetSampleRate, 0, 0, nullptr, rate);
    host.setSampleRate(96000);
    EXPECT_EQ(host.dispatch(effGetTailSize), 96000);
    host.run(4 * 96000);
    EXPECT_FALSE(host.events.empty());
    EXPECT_TRUE(allFinite(host.left));
}

TEST_F(Module, InstancesDoNotHearEachOther)
{
    ScriptedHost other;
    start(other, {});
    set(kRootKey, 0.9f);
    set(kSynthSwitch, 0);
    host.start();
    other.start();
    for (int block = 0; block < 200; ++block) {
        host.runBlock(512);
        other.runBlock(512);
    }
    ASSERT_FALSE(noteOns(other.events).empty());
    ASSERT_FALSE(noteOns(host.events).empty());
    EXPECT_NE(noteOns(host.events).front().bytes[1], noteOns(other.events).front().bytes[1]);
    EXPECT_THAT(host.left, Each(0.0f));
    EXPECT_NE(other.effect()->getParameter(other.effect(), kRootKey), 0.9f);
}

TEST_F(Module, RunsWithoutAHostAndComesAndGoes)
{
    for (int round = 0; round < 20; ++round) {
        ScriptedHost one;
        start(one, {});
        one.start();
        one.run(2048);
    }
    ScriptedHost mute; // gives no transport record at all
    start(mute, {});
    mute.givesTime = false;
    mute.start();
    mute.run(44100);
    EXPECT_THAT(noteOns(mute.events), IsEmpty());
}

TEST_F(Module, TheChunkOfOneInstanceMakesAnotherPlayTheSame)
{
    set(kRootKey, 0.75f);
    set(kScale, 0.5f);
    void* data = nullptr;
    const auto bytes = host.dispatch(effGetChunk, 0, 0, &data);
    ASSERT_GT(bytes, 0);
    std::vector<char> copy(static_cast<char*>(data), static_cast<char*>(data) + bytes);

    ScriptedHost other;
    start(other, {});
    EXPECT_EQ(other.dispatch(effSetChunk, 0, bytes, copy.data()), 1);
    EXPECT_EQ(other.effect()->getParameter(other.effect(), kRootKey), 0.75f);
    void* again = nullptr;
    ASSERT_EQ(other.dispatch(effGetChunk, 0, 0, &again), bytes);
    EXPECT_EQ(std::memcmp(again, copy.data(), copy.size()), 0);
}

TEST_F(Module, ProgramsAreThePresetsOfTheCurrentFolder)
{
    const std::string folder = home.file("Kelda Works/Ormund/Global Presets/User/");
    std::string first = folder + "First.kwe";
    std::string second = folder + "Second.kwe";
    set(kRootKey, 0.1f);
    ASSERT_EQ(host.dispatch(effVendorSpecific, kDoor, 3, first.data()), 1);
    set(kRootKey, 0.9f);
    ASSERT_EQ(host.dispatch(effVendorSpecific, kDoor, 3, second.data()), 1);

    ScriptedHost other;
    start(other, {});
    ASSERT_EQ(other.dispatch(effVendorSpecific, kDoor, 1, first.data()), 1);
    EXPECT_EQ(other.dispatch(effGetProgram), 0);
    EXPECT_EQ(other.text(effGetProgramName), "First");
    EXPECT_EQ(other.text(effGetProgramNameIndexed, 1), "Second");
    for (const int outside : {128, -1})
        EXPECT_EQ(other.text(effGetProgramNameIndexed, outside), "") << outside;

    for (const int program : {1, 128, -1}) // the last two exist nowhere
        other.dispatch(effSetProgram, 0, program);
    EXPECT_EQ(other.dispatch(effGetProgram), 1);
    EXPECT_EQ(other.text(effGetProgramName), "Second");
    EXPECT_EQ(other.effect()->getParameter(other.effect(), kRootKey), 0.9f);

    // A host that is refused a name sets the program to read it, and the state is gone: every
    // number has the name of what it brings.
    const std::string promised = other.text(effGetProgramNameIndexed, 127);
    EXPECT_NE(promised, "");
    other.dispatch(effSetProgram, 0, 127);
    EXPECT_EQ(other.text(effGetProgramName), promised);
}

TEST_F(Module, TheDoorSwitchesOfflineRenderingAndKeepsMessages)
{
    ASSERT_EQ(host.dispatch(effVendorSpecific, kDoor, 11, nullptr, 1), 1);
    host.processLevel = kVstProcessLevelOffline;
    host.start();
    host.run(44100);
    EXPECT_FALSE(noteOns(host.events).empty());
    // The key store keeps it for the next instance.
    ScriptedHost next;
    start(next, {});
    next.processLevel = kVstProcessLevelOffline;
    next.start();
    next.run(44100);
    EXPECT_FALSE(noteOns(next.events).empty());
    host.dispatch(effVendorSpecific, kDoor, 11, nullptr, 0);

    std::string nowhere = home.file("no/such/folder/a.kwe");
    EXPECT_EQ(host.dispatch(effVendorSpecific, kDoor, 3, nowhere.data()), 0);
    char message[8192] = {};
    EXPECT_GT(host.dispatch(effVendorSpecific, kDoor, 8, message), 0);
    EXPECT_THAT(message, testing::HasSubstr("a.kwe"));
    EXPECT_EQ(host.dispatch(effVendorSpecific, kDoor, 8, message), 0);
    EXPECT_EQ(host.dispatch(effVendorSpecific, kDoor + 1, 3, nowhere.data()), 0);
    EXPECT_EQ(host.dispatch(effVendorSpecific, kDoor, 99, nowhere.data()), 0);
}

} // namespace

} // namespace ormund
