#include "data/parameters/Parameters.h"
#include "data/music/ScaleTable.h"
#include "data/parameters/ChoiceLists.h"
#include "data/parameters/ControllerNames.h"
#include "data/tracks/EditButtons.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <map>
#include <numeric>
#include <set>
#include <string>

namespace ormund {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::FloatEq;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

float mapped(int tag, float v) { return mapValue(parameterEntry(tag)->mapping, v); }

std::string textOf(int tag, float raw, size_t room = 64)
{
    std::string text(room, '?');
    text.resize(parameterText(tag, raw, text));
    return text;
}

} // namespace

// The numbers in files must never change, or old songs lose what they saved.
TEST(Parameters, FileKeysAreForEver)
{
    std::map<int, int> tagOfKey;
    for (const ParameterEntry& entry : allParameters())
        if (entry.fileKey >= 0) {
            EXPECT_TRUE(tagOfKey.emplace(entry.fileKey, entry.tag).second) << entry.fileKey;
        }
    // In the order of their keys: 0 to 120 without 118 and 119, then from 10001 on.
    std::vector<int> tags = {48, 49, 50, 51, 52, 53, 54, 55, 302, 303, 304, 305, 306, 307, 308, 309,
        517, 518, 367, 89, 110, 132, 154, 176, 198, 220, 242, 262, 264, 267, 269, 272, 274, 277,
        279, 282, 284, 287, 289, 292, 294, 297, 299, 4, 330, 493, 12, 10, 325, 337, 339, 341, 346,
        347, 349, 353, 357, 363, 365, 0, 1, 387, 388, 396, 397, 6, 413, 430, 431, 8, 463, 464, 17,
        18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 486, 487, 499, 501,
        504, 506, 509, 511, 513, 2, 3, 572, 575, 581, 585, 38, 39, 40, 41, 42, 43, 44, 45, 36, 378,
        379, 571, 37, 586, 587, 588, 589, 590, 591, 601, 602, 603, 604};
    tags.resize(tags.size() + 44);
    std::iota(tags.end() - 44, tags.end(), 605);
    std::vector<int> actual;
    for (const auto& [key, tag] : tagOfKey)
        actual.push_back(tag);
    EXPECT_EQ(actual, tags);
    EXPECT_EQ(tagOfKey.begin()->first, 0);
    EXPECT_EQ(tagOfKey.rbegin()->first, 10054);
    EXPECT_EQ(tagOfKey.at(10001), 586);
    EXPECT_EQ(tagOfKey.at(10011), 605);
    EXPECT_FALSE(tagOfKey.contains(118) || tagOfKey.contains(119));
    EXPECT_EQ(parameterOfKey(65), parameterEntry(Tag::MasterGateTime));
    EXPECT_EQ(parameterOfKey(-1), nullptr);
    EXPECT_EQ(parameterOfKey(1000), nullptr);
}

TEST(Parameters, ListsHoldWhatTheyPromise)
{
    EXPECT_EQ(allParameters().size(), 357u);
    EXPECT_EQ(presetParameters().size(), 171u);
    EXPECT_EQ(settingParameters().size(), 2u);
    // A synth preset is a part of a global one.
    const std::set<const ParameterEntry*> preset(
        presetParameters().begin(), presetParameters().end());
    EXPECT_EQ(synthParameters().size(), 23u);
    for (const ParameterEntry* entry : synthParameters())
        EXPECT_TRUE(preset.contains(entry)) << entry->tag;
    for (int tag = 0; tag < kHostParameters; ++tag)
        EXPECT_EQ(hostParameters()[static_cast<size_t>(tag)]->tag, tag);
    for (const ParameterEntry& entry : allParameters())
        EXPECT_EQ(entry.isolated(),
            entry.tag == Tag::IgnoreProgramChange || entry.tag == Tag::LockAssign);
}

TEST(Parameters, HolesAndForeignTagsAreNoParameters)
{
    for (const int tag : {-2147483647, -1, 47, 72, 466, 515, 584, 594, 1000000})
        EXPECT_EQ(parameterEntry(tag), nullptr) << tag;
    Parameters parameters;
    const auto stored = parameters.store(47, 1.0f);
    EXPECT_FALSE(stored.changed);
    EXPECT_EQ(parameters.raw(-5), 0.0f);
    // A track has steps and no value.
    parameters.store(Tag::Pitch, 1.0f);
    EXPECT_EQ(parameters.raw(Tag::Pitch), 0.0f);
}

TEST(Parameters, AButtonIsOnFromTheMiddle)
{
    for (const int tag : {Tag::GateTimeButton, Tag::Play, Tag::SynthOnSecond, Tag::GlobalCopy}) {
        EXPECT_EQ(mapped(tag, 0.49f), 0.0f) << tag;
        EXPECT_EQ(mapped(tag, 0.5f), 1.0f) << tag;
        EXPECT_EQ(mapped(tag, 4.0f), 1.0f) << tag;
    }
}

TEST(Parameters, ListsStayInsideAtBothEnds)
{
    Parameters parameters;
    for (const ParameterEntry& entry : allParameters()) {
        if (entry.mapping.kind != Mapping::Choice)
            continue;
        const int count = static_cast<int>(entry.mapping.a);
        EXPECT_EQ(parameters.store(entry.tag, 1.0f).index, count - 1) << entry.tag;
        EXPECT_EQ(parameters.store(entry.tag, kInfinity).index, count - 1) << entry.tag;
        EXPECT_EQ(parameters.store(entry.tag, -3.0f).index, 0) << entry.tag;
        EXPECT_EQ(parameters.store(entry.tag, kNaN).index, 0) << entry.tag;
    }
    EXPECT_EQ(parameters.store(Tag::Scale, 1.0f).index, 33);
    EXPECT_EQ(parameters.store(Tag::ModTarget + 7, 1.0f).index, 129);
}

// A menu sends its item times a scale that is rounded up a little.
TEST(Parameters, MenusGetTheirItemBack)
{
    const struct {
        int tag;
        float scale;
        int items;
    } menus[] = {{Tag::Scale, 0.029421765f, 34}, {Tag::ModTarget, 0.007702308f, 130},
        {Tag::PitchMode, 0.16667667f, 6}, {Tag::StepSpeed, 0.10001f, 10},
        {Tag::TriggerMode, 0.33333334f, 3}, {Tag::ModTrackPage, 0.0625f, 16}};
    Parameters parameters;
    for (const auto& menu : menus)
        for (int item = 0; item < menu.items; ++item)
            EXPECT_EQ(parameters.store(menu.tag, static_cast<float>(item) * menu.scale).index, item)
                << menu.tag;
}

TEST(Parameters, TheOtherMappingsHitTheirEnds)
{
    const struct {
        int tag;
        float low;
        float high;
    } ends[] = {
        {Tag::RootKey, 36, 84},
        {Tag::MidiOutOctave, -36, 12},
        {Tag::MidiOutTranspose, -12, 12},
        {Tag::Swing, 0, 1},
        {Tag::MasterGateTime, 0, 3999 * 0.00025f},
        {Tag::VelocityThreshold, 0.1f, 0.89999995f},
        {Tag::LooperSteps, 2, 8},
        {Tag::SlowdownRate, 0.005f, 0.30000002f},
        {Tag::SynthPan, 0, 999 * 0.001f},
        {Tag::SynthAttack, 0, 1000},
        {Tag::FilterCutoff, 45, 16045},
        {Tag::DelayLeft, 1, 16},
        {Tag::GateTimeMultiply, 0, 14},
        {Tag::ModTrackPage, 0, 15},
        {Tag::ModSelect, 0, 7},
        {Tag::LockArea, 0, 15},
        {Tag::InputOctave, -24, 24},
        {Tag::FileBars, 0, 13},
    };
    for (const auto& end : ends) {
        EXPECT_FLOAT_EQ(mapped(end.tag, 0.0f), end.low) << end.tag;
        EXPECT_FLOAT_EQ(mapped(end.tag, 1.0f), end.high) << end.tag;
        EXPECT_FLOAT_EQ(mapped(end.tag, kInfinity), end.high) << end.tag;
        EXPECT_FLOAT_EQ(mapped(end.tag, kNaN), end.low) << end.tag;
    }
}

TEST(Parameters, ANewInstanceStartsFromTheDefaults)
{
    const Parameters parameters;
    EXPECT_EQ(parameters.index(Tag::RootKey), 60);
    EXPECT_EQ(parameters.index(Tag::Scale), 0);
    EXPECT_EQ(parameters.index(Tag::MidiOutOctave), -12);
    EXPECT_EQ(parameters.index(Tag::StepSpeed), 7);
    EXPECT_EQ(parameters.index(Tag::TriggerMode), 2);
    EXPECT_EQ(parameters.index(Tag::SynthOn), 1);
    EXPECT_EQ(parameters.index(Tag::InputOctave), 0);
    EXPECT_EQ(parameters.index(Tag::GateTimeMultiply), 7);
    EXPECT_FLOAT_EQ(parameters.raw(Tag::RandomMin), 0.22f);
}

TEST(Parameters, StoringTellsWhetherTheValueIsNew)
{
    Parameters parameters;
    EXPECT_TRUE(parameters.store(Tag::Swing, 0.25f).changed);
    EXPECT_FALSE(parameters.store(Tag::Swing, 0.25f).changed);
    EXPECT_TRUE(parameters.store(Tag::Swing, kNaN).changed);
    EXPECT_FALSE(parameters.store(Tag::Swing, -1.0f).changed);
    parameters.reset();
    EXPECT_EQ(parameters.raw(Tag::Swing), 0.0f);
}

TEST(Parameters, APatternKnowsItsPlaces)
{
    const auto tags = patternParameterTags();
    EXPECT_THAT(std::vector<int>(tags.begin(), tags.end()),
        ElementsAre(0, 363, 1, 55, 499, 504, 509, 262, 330, 4, 563, 49, 50, 51, 52, 53, 54, 267,
            272, 277, 282, 287, 292, 297, -1, 36, 38, 39, 40, 41, 42, 43, 44, 45));
    for (int place = 0; place < kPatternValues; ++place)
        if (tags[static_cast<size_t>(place)] >= 0) {
            EXPECT_EQ(patternSlot(tags[static_cast<size_t>(place)]), place);
        }
    EXPECT_EQ(patternSlot(48), 10);
    EXPECT_EQ(patternSlot(Tag::AllModsOff), -1);
    EXPECT_EQ(patternSlot(-1), -1);
}

TEST(Parameters, ActionsAreNeverAppliedAgain)
{
    for (const EditButton& button : editButtons())
        EXPECT_TRUE(isAction(button.tag)) << button.tag;
    for (const int tag : {374, 375, 466, 515, 557, 558, 559, 560, 563, 579})
        EXPECT_TRUE(isAction(tag)) << tag;
    for (const int tag : {Tag::Scale, Tag::StepSpeed, Tag::PitchMode, Tag::ModTarget, Tag::Play,
             Tag::Pitch, Tag::SynthOn, -1, 47})
        EXPECT_FALSE(isAction(tag)) << tag;
}

TEST(ParameterText, ChoicesReadAsTheirTextAndNumbersAsNumbers)
{
    EXPECT_EQ(textOf(Tag::Scale, 1.0f), "Spanish 8 tone");
    EXPECT_EQ(textOf(Tag::StepSpeed, 0.7f), "1 / 16");
    EXPECT_EQ(textOf(Tag::ModTarget, 1.0f), "program change");
    EXPECT_EQ(textOf(Tag::modMode(3), 0.4f), "random");
    EXPECT_EQ(textOf(Tag::Mute, 1.0f), "on");
    EXPECT_EQ(textOf(Tag::SynthLevel, 0.5299f), "0.529900 ");
    EXPECT_EQ(textOf(Tag::SynthAttack, 0.5f), "125.000000 ms");
    EXPECT_EQ(textOf(Tag::LooperSteps, 1.0f), "8.000000 steps");
    EXPECT_EQ(textOf(47, 0.5f), "");
    // Hosts give as little as eight characters.
    EXPECT_EQ(textOf(Tag::SynthAttack, 0.5f, 8), "125.000");
    EXPECT_EQ(textOf(Tag::SynthAttack, 0.5f, 1), "");
    EXPECT_EQ(parameterText(Tag::SynthAttack, 0.5f, {}), 0u);
}

TEST(ParameterText, WhatIsShownCanBeTypedIn)
{
    Parameters parameters;
    for (const ParameterEntry& entry : allParameters()) {
        if (!entry.hasValue())
            continue;
        for (const float raw : {0.0f, 0.13f, 0.5f, 0.87f, 1.0f}) {
            const std::string shown = textOf(entry.tag, raw);
            const auto back = parameterFromText(entry.tag, shown);
            ASSERT_TRUE(back) << entry.tag << shown;
            EXPECT_EQ(textOf(entry.tag, *back), shown) << entry.tag;
        }
    }
    EXPECT_THAT(*parameterFromText(Tag::SynthLevel, " 0,25 "), FloatEq(0.25f));
    EXPECT_EQ(*parameterFromText(Tag::Scale, "dorian"), 2.5f / 34.0f);
    EXPECT_EQ(*parameterFromText(Tag::SynthLevel, "-7"), 0.0f);
    for (const char* text : {"", "   ", "nan", "inf", "loud", "-"})
        EXPECT_FALSE(parameterFromText(Tag::SynthLevel, text)) << text;
    EXPECT_FALSE(parameterFromText(Tag::Pitch, "1"));
    EXPECT_FALSE(parameterFromText(47, "1"));
    EXPECT_FALSE(parameterFromText(Tag::SynthLevel, std::string(5000, '?')));
}

TEST(Parameters, DelayTimesAreWholeSixteenths)
{
    const Mapping& times = parameterEntry(Tag::DelayLeft)->mapping;
    for (const auto& [raw, sixteenths] : {std::pair{0.0f, 1.0f}, {0.4398f, 8.0f}, {1.0f, 16.0f}})
        EXPECT_EQ(mapValue(times, raw), sixteenths) << raw;
}

TEST(ControllerNames, StandAtTheirNumbers)
{
    EXPECT_EQ(controllerName(1), "Modulation");
    EXPECT_EQ(controllerName(21), "ctrl 21");
    EXPECT_EQ(controllerName(74), "Cutoff");
    EXPECT_EQ(controllerName(101), "rpn MSB");
    EXPECT_EQ(controllerName(127), "Poly ON");
    EXPECT_EQ(controllerName(kTargetAftertouch), "aftertouch");
    EXPECT_EQ(controllerName(kTargetProgramChange), "program change");
    EXPECT_EQ(controllerName(130), "");
    EXPECT_EQ(controllerName(-1), "");
    // The sub-menus hold all of them once.
    int next = 0;
    for (const ControllerMenu& menu : kControllerMenuTable) {
        EXPECT_EQ(menu.first, next) << menu.title;
        next = menu.last + 1;
    }
    EXPECT_EQ(next, kModTargets);
}

} // namespace ormund
