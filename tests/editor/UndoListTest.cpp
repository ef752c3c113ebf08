#include "editor/UndoList.h"
#include "tests/editor/EditorRig.h"

#include <gmock/gmock.h>

namespace ormund {

TEST(UndoList, NamesTheLevelsAndGoesToOneOfThem)
{
    EditorRig rig;
    const auto recordNote = [&rig](int step, float pitch) {
        rig.engine.tracks.pitch.setValue(step, pitch);
        rig.idle();
    };
    const StateImage first(rig.engine);
    rig.click(EditorRig::middle(*findControl(Tag::ScaleUp)));
    const StateImage second(rig.engine);
    rig.engine.setParameter(Tag::Record, 1.0f);
    recordNote(1, -5);
    recordNote(2, -6);
    rig.engine.setParameter(Tag::Record, 0.0f);
    rig.idle(3);
    rig.engine.sequencer.remoteStep = 3;
    rig.engine.setParameter(Tag::Velocity, 0.2f);
    rig.idle(60);
    rig.click(EditorRig::middle(*findControl(Tag::PitchShiftBackward)));
    const StateImage last(rig.engine);

    rig.click(EditorRig::middle(*findControl(kRedoTag)), kRButton);
    auto& list = dynamic_cast<UndoList&>(*rig.editor.getFrame()->modalControl);
    const auto texts = [&] {
        std::vector<std::string> all;
        for (int row = 0; row < list.rowCount(); ++row)
            all.push_back(list.rowText(row));
        return all;
    };
    ASSERT_TRUE(list.isOpen());
    EXPECT_THAT(texts(),
        testing::ElementsAre("Shift left, pitch", "Controlled 1 step, velocity",
            "Recorded 2 notes, pitch", testing::StartsWith("Scale"), "As it was before"));
    const auto press = [&](int row) {
        const CRect place = list.rowRect(row);
        rig.click({place.left + 20, place.top + 10});
    };
    press(3);
    EXPECT_FALSE(list.isOpen());
    EXPECT_TRUE(StateImage(rig.engine) == second);
    rig.click(EditorRig::middle(*findControl(kUndoTag)), kRButton);
    press(0);
    EXPECT_TRUE(StateImage(rig.engine) == last);
    rig.click(EditorRig::middle(*findControl(kUndoTag)), kRButton);
    for (int i = 0; i < 4; ++i)
        rig.user->key({.character = 0, .key = CKey::Down, .modifiers = 0});
    rig.user->key({.character = 0, .key = CKey::Return, .modifiers = 0});
    EXPECT_TRUE(StateImage(rig.engine) == first);
}

} // namespace ormund
