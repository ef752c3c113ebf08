// The mapping between the C interface and the classes, on an effect that only notes what it is
// asked, with a host that only notes what it hears.
#include "host/effect/AEffGUIEditor.h"
#include "host/effect/KWPluginBase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace ormund {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class NotingEffect : public KWPluginBase {
public:
    explicit NotingEffect(audioMasterCallback host, bool* deletedFlag = nullptr)
        : KWPluginBase(host, 4, 2), deleted(deletedFlag)
    {
        setNumInputs(2);
        setNumOutputs(2);
    }
    ~NotingEffect() override
    {
        if (deleted)
            *deleted = true;
    }
    void open() override { calls.push_back("open"); }
    void resume() override { calls.push_back("resume"); }
    void suspend() override { calls.push_back("suspend"); }
    void setSampleRate(float rate) override
    {
        AudioEffectX::setSampleRate(rate);
        calls.push_back("rate " + std::to_string(static_cast<int>(rate)));
    }
    void setBlockSize(VstInt32 samples) override
    {
        calls.push_back("block " + std::to_string(samples));
    }
    void processReplacing(float**, float**, VstInt32 frames) override
    {
        calls.push_back("process " + std::to_string(frames));
    }
    void setProgram(VstInt32 program) override
    {
        calls.push_back("program " + std::to_string(program));
    }
    void getProgramName(char* name) override { std::strcpy(name, longText.c_str()); }
    bool getProgramNameIndexed(VstInt32, VstInt32, char* text) override
    {
        std::strcpy(text, longText.c_str());
        return true;
    }
    void getParameterName(VstInt32, char* text) override { std::strcpy(text, longText.c_str()); }
    VstInt32 getChunk(void** data, bool) override
    {
        *data = longText.data();
        return static_cast<VstInt32>(longText.size());
    }
    VstInt32 setChunk(void*, VstInt32 bytes, bool isPreset) override
    {
        calls.push_back((isPreset ? "preset " : "bank ") + std::to_string(bytes));
        return 1;
    }
    VstInt32 processEvents(VstEvents* events) override
    {
        calls.push_back("events " + std::to_string(events->numEvents));
        return 1;
    }
    bool getOutputProperties(VstInt32 index, VstPinProperties* pin) override
    {
        calls.push_back("pin " + std::to_string(index));
        pin->flags = kVstPinIsActive | kVstPinIsStereo;
        return true;
    }
    bool getParameterProperties(VstInt32, VstParameterProperties*) override { return true; }
    VstIntPtr vendorSpecific(VstInt32 index, VstIntPtr value, void*, float) override
    {
        return index ^ value;
    }

    std::vector<std::string> calls;
    std::string longText = std::string(200, 'x');

private:
    bool* deleted;
};

class NotingEditor : public AEffGUIEditor {
public:
    explicit NotingEditor(bool* deletedFlag) : AEffGUIEditor(nullptr), deleted(deletedFlag)
    {
        rect = {0, 0, 30, 40};
    }
    ~NotingEditor() override { *deleted = true; }
    bool onKeyDown(VstKeyCode& key) override
    {
        seen = key;
        return true;
    }
    VstKeyCode seen{};

private:
    bool* deleted;
};

struct HostCall {
    VstInt32 opcode;
    VstInt32 index;
    VstIntPtr value;
    float opt;
    bool operator==(const HostCall&) const = default;
};
std::vector<HostCall> hostCalls;
VstTimeInfo hostTime{};

VstIntPtr notingHost(
    AEffect*, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    hostCalls.push_back({opcode, index, value, opt});
    if (opcode == audioMasterGetTime)
        return reinterpret_cast<VstIntPtr>(&hostTime);
    if (opcode == audioMasterGetProductString) {
        std::memset(ptr, 'p', 100); // more than the interface allows
        return 1;
    }
    return opcode == audioMasterProcessEvents ? 1 : 0;
}

VstIntPtr ask(NotingEffect& effect, VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
    void* ptr = nullptr, float opt = 0)
{
    AEffect* record = effect.getAeffect();
    return record->dispatcher(record, opcode, index, value, ptr, opt);
}

TEST(Effect, OpcodesReachTheirOperationsWithTheirArguments)
{
    NotingEffect effect(nullptr);
    VstEventList<2> events;
    events.numEvents = 0;
    VstPinProperties pin;
    float* outputs[2] = {};

    ask(effect, effOpen);
    ask(effect, effSetSampleRate, 0, 0, nullptr, 48000);
    ask(effect, effSetBlockSize, 0, 256);
    ask(effect, effMainsChanged, 0, 1);
    ask(effect, effMainsChanged, 0, 0);
    ask(effect, effSetProgram, 0, 3);
    EXPECT_EQ(ask(effect, effSetChunk, 1, 7, outputs), 1);
    EXPECT_EQ(ask(effect, effProcessEvents, 0, 0, events.list()), 1);
    EXPECT_EQ(ask(effect, effGetOutputProperties, 1, 0, &pin), 1);
    EXPECT_EQ(ask(effect, effVendorSpecific, 5, 6), 3);
    effect.getAeffect()->processReplacing(effect.getAeffect(), nullptr, outputs, 64);
    EXPECT_THAT(effect.calls,
        ElementsAre("open", "rate 48000", "block 256", "resume", "suspend", "program 3", "preset 7",
            "events 0", "pin 1", "process 64"));
    EXPECT_EQ(pin.flags, 3);
    EXPECT_EQ(ask(effect, effGetVstVersion), 2400);
    EXPECT_EQ(ask(effect, effSetBypass, 0, 1), 0);
    EXPECT_EQ(ask(effect, effCanBeAutomated, 1), 1);
    EXPECT_EQ(ask(effect, effCanBeAutomated, 2), 0);
}

TEST(Effect, TextsNeverPassTheHostsRoom)
{
    NotingEffect effect(nullptr);
    const struct {
        VstInt32 opcode;
        size_t room;
    } rows[] = {{effGetParamName, 24}, {effGetProgramName, 24}, {effGetProgramNameIndexed, 24}};
    for (const auto& row : rows) {
        std::vector<char> text(64, '#');
        ask(effect, row.opcode, 1, 0, text.data());
        EXPECT_EQ(std::strlen(text.data()), row.room - 1) << row.opcode;
        EXPECT_EQ(text[row.room], '#') << row.opcode;
    }
}

TEST(Effect, BadArgumentsReachNoOperation)
{
    NotingEffect effect(nullptr);
    AEffect* record = effect.getAeffect();
    for (VstInt32 opcode = -2; opcode < 200; ++opcode) {
        if (opcode == effClose || opcode == effOpen || opcode == effMainsChanged)
            continue;
        ask(effect, opcode, -1, -1, nullptr, -1);
        ask(effect, opcode, std::numeric_limits<VstInt32>::max(),
            std::numeric_limits<VstIntPtr>::max(), nullptr,
            std::numeric_limits<float>::quiet_NaN());
    }
    VstPinProperties pin;
    EXPECT_EQ(ask(effect, effGetOutputProperties, 2, 0, &pin), 0);
    EXPECT_EQ(ask(effect, effSetProgram, 0, 4), 0);
    EXPECT_EQ(ask(effect, effSetSampleRate, 0, 0, nullptr, INFINITY), 0);
    char byte = 'x';
    EXPECT_EQ(ask(effect, effSetChunk, 0, 0, &byte), 0);
    EXPECT_EQ(ask(effect, effGetProgramNameIndexed, 4, 0, &byte), 0);
    EXPECT_EQ(byte, 'x');
    record->processReplacing(record, nullptr, nullptr, 64);
    EXPECT_EQ(record->dispatcher(nullptr, effOpen, 0, 0, nullptr, 0), 0);
    record->setParameter(nullptr, 0, 0);
    EXPECT_EQ(record->getParameter(nullptr, 0), 0);
    EXPECT_THAT(effect.calls, IsEmpty());
}

TEST(Effect, ClosingDeletesTheEffectAndItsEditor)
{
    bool effectGone = false;
    bool editorGone = false;
    auto* effect = new NotingEffect(nullptr, &effectGone);
    effect->setEditor(new NotingEditor(&editorGone));
    AEffect* record = effect->getAeffect();
    EXPECT_EQ(record->dispatcher(record, effClose, 0, 0, nullptr, 0), 1);
    EXPECT_TRUE(effectGone);
    EXPECT_TRUE(editorGone);
}

TEST(Effect, TheEditorIsReachedWhenThereIsOne)
{
    bool gone = false; // outlives the effect, which takes its editor along
    NotingEffect effect(nullptr);
    ERect* rect = nullptr;
    EXPECT_EQ(ask(effect, effEditGetRect, 0, 0, &rect), 0);
    EXPECT_EQ(ask(effect, effEditOpen, 0, 0, &rect), 0);
    EXPECT_EQ(effect.getAeffect()->flags & effFlagsHasEditor, 0);

    auto* editor = new NotingEditor(&gone);
    effect.setEditor(editor);
    EXPECT_NE(effect.getAeffect()->flags & effFlagsHasEditor, 0);
    EXPECT_EQ(ask(effect, effEditGetRect, 0, 0, &rect), 1);
    ASSERT_TRUE(rect);
    EXPECT_EQ(rect->right, 40);
    EXPECT_EQ(ask(effect, effEditOpen, 0, 0, &effect), 1);
    EXPECT_EQ(editor->getSystemWindow(), &effect);
    EXPECT_EQ(ask(effect, effEditKeyDown, 'a', VKEY_F2, nullptr, MODIFIER_SHIFT), 1);
    EXPECT_EQ(editor->seen.character, 'a');
    EXPECT_EQ(editor->seen.virt, 41);
    EXPECT_EQ(editor->seen.modifier, MODIFIER_SHIFT);
    EXPECT_EQ(ask(effect, effSetEditKnobMode, 0, 1), 1);
    EXPECT_EQ(ask(effect, effSetEditKnobMode, 0, 3), 0);
    EXPECT_EQ(editor->getKnobMode(), 1);
    ask(effect, effEditClose);
    EXPECT_FALSE(editor->isOpen());
}

TEST(Effect, HostCallsGoOutByTheirNumbers)
{
    hostCalls.clear();
    NotingEffect effect(notingHost);
    effect.setParameterAutomated(1, 0.25f);
    effect.beginEdit(1);
    effect.endEdit(1);
    effect.wantEvents();
    EXPECT_EQ(effect.getTimeInfo(0x1e02), &hostTime);
    EXPECT_EQ(effect.getCurrentProcessLevel(), 0);
    VstEventList<2> events;
    EXPECT_TRUE(effect.sendVstEventsToHost(events.list()));
    EXPECT_THAT(hostCalls,
        ElementsAre(HostCall{0, 1, 0, 0.25f}, HostCall{43, 1, 0, 0}, HostCall{44, 1, 0, 0},
            HostCall{6, 0, 1, 0}, HostCall{7, 0, 0x1e02, 0}, HostCall{23, 0, 0, 0},
            HostCall{8, 0, 0, 0}));
    char text[kVstMaxProductStrLen];
    EXPECT_TRUE(effect.getHostProductString(text));
    EXPECT_EQ(std::strlen(text), 63u);
}

TEST(Effect, WithoutAHostEveryCallAnswersNothing)
{
    NotingEffect effect(nullptr);
    effect.setParameterAutomated(0, 1);
    effect.beginEdit(0);
    effect.endEdit(0);
    effect.wantEvents();
    VstEventList<2> events;
    char text[kVstMaxVendorStrLen] = "old";
    EXPECT_EQ(effect.getTimeInfo(0x1e02), nullptr);
    EXPECT_FALSE(effect.sendVstEventsToHost(events.list()));
    EXPECT_EQ(effect.getCurrentProcessLevel(), 0);
    EXPECT_FALSE(effect.getHostVendorString(text));
    EXPECT_STREQ(text, "");
    EXPECT_EQ(effect.canHostDo("sizeWindow"), 0);
    EXPECT_FALSE(effect.sizeWindow(10, 10));
}

} // namespace

} // namespace ormund
