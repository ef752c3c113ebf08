#include "data/parameters/Parameters.h"
#include "editor/PageGates.h"
#include "editor/PassiveControls.h"
#include "editor/ValueDispatch.h"
#include "panel/ControlCatalogue.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace ormund {

namespace {

bool takesMouse(const ControlRow& row)
{
    return !row.place.empty() && row.kind != ControlClass::Hint && row.kind != ControlClass::Image
        && row.kind != ControlClass::Container && !(row.flags & kNoMouse);
}

bool onOnePage(const ControlRow& a, const ControlRow& b)
{
    const auto isIn = [](const ControlRow& row, int first) {
        return row.group >= first && row.group < first + kModTracks;
    };
    if ((isIn(a, kTrackControllers) && isIn(b, kTrackDrums))
        || (isIn(a, kTrackDrums) && isIn(b, kTrackControllers)))
        return false;
    return a.group == b.group || a.group == kAlways || b.group == kAlways
        || (a.track > 0 && a.track == b.track) // a track's steps and its loop
        || a.group == kSeparateLoops || b.group == kSeparateLoops;
}

bool overlap(const Place& a, const Place& b)
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// The engine's index after a menu's item went through its scale.
int indexOfItem(const ControlRow& row, int item)
{
    const ParameterEntry* entry = parameterEntry(row.tag);
    return int(mapValue(entry->mapping, ValueDispatch::parameterValue(row, float(item))));
}

} // namespace

TEST(Catalogue, EveryControlThatSetsAParameterNamesOne)
{
    for (const ControlRow& row : controlCatalogue())
        if (row.tag < kTagCount && row.kind != ControlClass::Hint
            && row.action == Action::SetParameter) {
            EXPECT_TRUE(parameterEntry(row.tag)) << row.tag;
        }
}

TEST(Catalogue, OnlyTheKnownPairsShareTheMouse)
{
    std::vector<std::pair<int, int>> found;
    const auto rows = controlCatalogue();
    for (size_t i = 0; i < rows.size(); ++i)
        for (size_t j = i + 1; j < rows.size(); ++j)
            if (takesMouse(rows[i]) && takesMouse(rows[j]) && onOnePage(rows[i], rows[j])
                && overlap(rows[i].place, rows[j].place))
                found.emplace_back(rows[i].tag, rows[j].tag);
    EXPECT_THAT(found,
        testing::UnorderedElementsAre(
            std::pair(466, 558), std::pair(515, 560), std::pair(578, 585)));
}

TEST(Catalogue, AMenusItemComesBackAsItsIndex)
{
    for (const ControlRow& row : controlCatalogue()) {
        const bool targets = row.items == MenuItems::Targets;
        const int items = targets ? kModTargets : int(menuTexts(row).size());
        if (row.kind != ControlClass::Menu || row.action != Action::SetParameter || items < 3)
            continue;
        for (int item = 0; item < items; ++item) {
            EXPECT_EQ(indexOfItem(row, item), item) << "tag " << row.tag;
        }
    }
    // The button of three states is a menu of its own kind.
    const ControlRow& mode = *findControl(325);
    for (int state = 0; state < 3; ++state) {
        EXPECT_EQ(indexOfItem(mode, state), state);
    }
}

TEST(Catalogue, TargetSubMenusHoldEveryControllerOnce)
{
    int next = 0;
    for (const ControllerMenu& menu : kControllerMenuTable) {
        EXPECT_EQ(menu.first, next);
        next = menu.last + 1;
    }
    EXPECT_EQ(next, kModTargets);
}

TEST(Catalogue, EveryHintBelongsToAControlOfItsPage)
{
    for (const ControlRow& row : controlCatalogue()) {
        if (row.kind != ControlClass::Hint || !row.text)
            continue;
        const ControlRow* owner = findControl(row.owner);
        ASSERT_TRUE(owner) << row.tag;
        EXPECT_EQ(owner->track, row.track) << row.tag;
    }
}

TEST(Catalogue, WhatNoMouseCanMoveIsListedAsStill)
{
    const auto isStill = [](const ControlRow& row) {
        switch (row.kind) {
        case ControlClass::Hint:
            return (row.flags & kHidden) != 0;
        case ControlClass::Container:
            return true;
        case ControlClass::Table:
            return parameterEntry(row.tag)->saved == Saved::None; // follows what is edited
        case ControlClass::Menu: // those that open at the pointer are opened by somebody
            return row.place.empty() && row.items != MenuItems::Learn
                && row.items != MenuItems::LearnSteps && row.items != MenuItems::TargetGroup;
        default:
            return !takesMouse(row) || row.tag == Tag::KeyboardMode;
        }
    };
    std::vector<int> still, listed;
    for (const ControlRow& row : controlCatalogue())
        if (isStill(row))
            still.push_back(row.tag);
    for (const PassiveControl& each : passiveControls())
        listed.push_back(each.tag);
    EXPECT_TRUE(std::ranges::is_sorted(listed));
    EXPECT_THAT(listed, testing::UnorderedElementsAreArray(still));
}

TEST(PageGates, ShowOnePageOfEachKind)
{
    PageGates gates;
    const KWBitSet128& gate = gates.gate();
    EXPECT_TRUE(gate.test(kAlways));
    EXPECT_TRUE(gate.test(kSettingsPage));
    EXPECT_FALSE(gate.test(kSynthPage));
    EXPECT_TRUE(gate.test(kStepsPage));
    EXPECT_FALSE(gate.test(kRulesPage));
    EXPECT_FALSE(gates.show({}));
    EXPECT_TRUE(gates.show({.rules = true}));
    EXPECT_FALSE(gate.test(kStepsPage));
    EXPECT_TRUE(gate.test(kRulesPage));

    EXPECT_TRUE(gates.show({.synth = true, .separateLoops = false, .modTrack = 5, .keyMode = 1}));
    EXPECT_TRUE(gate.test(kSynthPage));
    EXPECT_FALSE(gate.test(kSettingsPage));
    EXPECT_FALSE(gate.test(kKeyMode0));
    EXPECT_TRUE(gate.test(kKeyMode1));
    for (int track = 0; track < kModTracks; ++track) {
        EXPECT_EQ(gate.test(kTrackPages + track), track == 5);
        EXPECT_FALSE(gate.test(kTrackLoops + track)); // one loop for all
    }
    gates.show({.synth = true, .separateLoops = true, .modTrack = 5, .keyMode = 1});
    EXPECT_TRUE(gate.test(kSeparateLoops));
    for (int track = 0; track < kModTracks; ++track) {
        EXPECT_EQ(gate.test(kTrackLoops + track), track == 5);
    }
}

} // namespace ormund
