// Every control of the panel is moved by a mouse, and the parameter or track that its row names
// must move with it, and nothing else.

#include "tests/editor/EditorRig.h"

#include "controls/KWOptionMenu.h"

#include <gmock/gmock.h>

namespace ormund {

namespace {

using testing::IsSubsetOf;

// What one control may move besides its own tag.
std::set<int> allowedFor(const ControlRow& row)
{
    std::set<int> tags{row.tag};
    switch (row.tag) {
    case Tag::SynthOn:
        tags.insert(Tag::SynthOnSecond);
        break;
    case Tag::SynthOnSecond:
        tags.insert(Tag::SynthOn);
        break;
    case Tag::LoopbarMode:
        tags.insert(Tag::LoopbarModeSecond);
        break;
    case Tag::LoopbarModeSecond:
    case Tag::PageSecond:
    case Tag::KeyboardModeSecond:
        tags.insert(firstControlOf(row.tag));
        break;
    case Tag::ModSelect:
        tags.insert(Tag::ModTrackPage);
        break;
    default:
        break;
    }
    return tags;
}

std::set<int> tracksOf(const EditButton& edit)
{
    switch (edit.target) {
    case EditTarget::Mod:
        return {edit.track == 0 ? 89 : 110 + 22 * (edit.track - 1)};
    case EditTarget::Pitch:
        return {397, 388};
    case EditTarget::Velocity:
        return {430, 413};
    case EditTarget::Gate:
        return {431};
    case EditTarget::Performance:
        return {464, 463, 339, 341, 337, 586, 587, 588, 589, 590};
    case EditTarget::All:
        break;
    }
    std::set<int> all;
    for (const TrackRow& track : kTrackTable)
        all.insert(track.tag);
    return all;
}

class CatalogueWalk : public testing::Test {
protected:
    // Steps that every operation changes: no two neighbours alike.
    void fillTracks()
    {
        for (const TrackRow& track : kTrackTable)
            for (int step = 0; step < track.steps; ++step) {
                if (KWTableXY* table = rig.engine.tracks.tableAt(track.tag))
                    table->setValue(step,
                        track.least + (track.most - track.least) * 0.04f * float(step % 9 + 3));
                else if (StepLine* line = rig.engine.tracks.lineAt(track.tag))
                    line->setStep(step, float((step * 7 + step / 3) % int(track.maximum + 1)));
            }
    }

    std::set<int> changes(const std::function<void()>& gesture)
    {
        const StateImage before(rig.engine);
        gesture();
        return StateImage(rig.engine).changedSince(before);
    }

    void expectMoved(const ControlRow& row, const std::set<int>& changed)
    {
        EXPECT_TRUE(changed.contains(firstControlOf(row.tag)))
            << "tag " << row.tag << " did not move";
        EXPECT_THAT(changed, IsSubsetOf(allowedFor(row))) << "tag " << row.tag;
    }

    EditorRig rig;
};

} // namespace

TEST_F(CatalogueWalk, Knobs)
{
    for (const ControlRow& row : controlCatalogue()) {
        if (row.kind != ControlClass::Knob)
            continue;
        rig.show(row);
        rig.engine.setParameter(row.tag, 0.4f);
        rig.idle();
        const CPoint from = EditorRig::middle(row);
        const CPoint to{from.x + (row.flags & kHorizontal ? 33 : 0),
            from.y - (row.flags & kHorizontal ? 0 : 33)};
        expectMoved(row, changes([&] { rig.user->drag(from, to); }));
        EXPECT_NEAR(rig.engine.parameters.raw(row.tag), 0.73f, 0.02f) << row.tag;
    }
}

TEST_F(CatalogueWalk, SwitchesStayAndComeBack)
{
    for (const ControlRow& row : controlCatalogue()) {
        if (row.kind != ControlClass::Button || row.buttonType != 1)
            continue;
        if (row.tag == Tag::KeyboardMode)
            continue; // lies below the second control of its value
        rig.show(row);
        const float first = rig.engine.parameters.mapped(firstControlOf(row.tag));
        for (int press = 0; press < row.states; ++press)
            expectMoved(row, changes([&] { rig.click(EditorRig::middle(row)); }));
        EXPECT_EQ(rig.engine.parameters.mapped(firstControlOf(row.tag)), first) << row.tag;
    }
}

TEST_F(CatalogueWalk, EditButtonsReachTheirTracksOnly)
{
    for (const ControlRow& row : controlCatalogue()) {
        const EditButton* edit = editButton(row.tag);
        if (row.kind != ControlClass::Button || !edit)
            continue;
        rig.show(row);
        fillTracks();
        std::set<int> changed = changes([&] { rig.click(EditorRig::middle(row)); });
        changed.erase(row.tag);
        EXPECT_THAT(changed, IsSubsetOf(tracksOf(*edit))) << "tag " << row.tag;
        if (edit->operation != EditOperation::Copy && edit->operation != EditOperation::Paste) {
            EXPECT_FALSE(changed.empty()) << "tag " << row.tag;
        }
    }
}

TEST_F(CatalogueWalk, MenusSetTheItemThatIsClicked)
{
    for (const ControlRow& row : controlCatalogue()) {
        if (row.kind != ControlClass::Menu || row.place.empty()
            || row.action != Action::SetParameter || row.items == MenuItems::Targets)
            continue;
        rig.show(row);
        rig.engine.setParameter(row.tag, 0.0f);
        rig.idle();
        auto& menu = static_cast<KWOptionMenu&>(*rig.editor.getControl(row.tag));
        const std::set<int> changed = changes([&] {
            rig.click({row.place.left + 8, EditorRig::middle(row).y});
            ASSERT_TRUE(menu.isOpen()) << row.tag;
            const CRect line = menu.rowRect(3);
            rig.click({line.left + 20, line.top + 8});
        });
        expectMoved(row, changed);
        EXPECT_EQ(rig.engine.parameters.index(row.tag), 3) << row.tag;
        EXPECT_FALSE(menu.isOpen());
    }
}

TEST_F(CatalogueWalk, StepViewsWriteTheirTrack)
{
    for (const ControlRow& row : controlCatalogue()) {
        const bool line =
            row.kind == ControlClass::ListLine || row.kind == ControlClass::SwitchLine;
        if (row.kind != ControlClass::Table && !line)
            continue;
        rig.show(row);
        const CPoint cell{row.place.left + 3 * 18 + 9, row.place.top + row.place.height() / 3};
        const std::set<int> changed = changes([&] {
            rig.user->wait(2000);
            if (row.kind == ControlClass::ListLine)
                rig.user->wheel(cell, 1.0f);
            else
                rig.click(cell);
        });
        const KWTableXY* table = rig.engine.tracks.tableAt(row.tag);
        if (table && !table->hasFlag(kTableEditable)) {
            EXPECT_TRUE(changed.empty()) << row.tag; // shows only
        } else
            EXPECT_THAT(changed, testing::ElementsAre(row.tag));
    }
}

TEST_F(CatalogueWalk, ZonesSetTheirLoop)
{
    for (const ControlRow& row : controlCatalogue()) {
        if (row.kind != ControlClass::Zone)
            continue;
        rig.show(row);
        const int y = EditorRig::middle(row).y;
        const std::set<int> changed = changes([&] {
            rig.user->wait(2000);
            rig.user->drag({row.place.right - 9, y}, {row.place.left + 2 * 18 + 9, y});
        });
        EXPECT_THAT(changed, testing::ElementsAre(row.tag));
        EXPECT_EQ(rig.engine.tracks.zonesAt(row.tag)->current().end, 2) << row.tag;
    }
}

TEST_F(CatalogueWalk, TargetMenusReachEveryController)
{
    for (int track = 1; track <= kModTracks; ++track) {
        const ControlRow& row = *findControl(48 + track - 1);
        rig.show(row);
        rig.engine.setParameter(row.tag, 0.0f);
        rig.idle();
        auto& menu = static_cast<KWOptionMenu&>(*rig.editor.getControl(row.tag));
        rig.click({row.place.left + 8, EditorRig::middle(row).y});
        ASSERT_TRUE(menu.isOpen());
        const CRect group = menu.rowRect(7);
        rig.user->move({group.left + 20, group.top + 8});
        rig.idle();
        KWOptionMenu* sub = menu.getSubMenu(7);
        ASSERT_TRUE(sub && sub->isOpen());
        const CRect line = sub->rowRect(3);
        rig.click({line.left + 20, line.top + 8});
        EXPECT_EQ(rig.engine.parameters.index(row.tag), 74) << row.tag; // "Cutoff"
    }
}

TEST_F(CatalogueWalk, ThePartsThatOnlyShowChangeNothing)
{
    for (const ControlRow& row : controlCatalogue()) {
        const bool shows = row.kind == ControlClass::Display;
        if (!shows || row.place.empty() || row.tag == 359 || row.track > 0)
            continue; // 359 and the values lie over parts that take the mouse
        rig.show(row);
        EXPECT_TRUE(changes([&] { rig.user->wheel(EditorRig::middle(row), 1.0f); }).empty())
            << row.tag;
    }
}

} // namespace ormund
