// What the controls do that is more than one scaled call.

#include "tests/editor/EditorRig.h"

#include <gmock/gmock.h>

namespace ormund {

TEST(Dispatch, SettingsAreKeptForTheNextRun)
{
    EditorRig rig;
    for (const int tag : {Tag::IgnoreProgramChange, Tag::LockAssign}) {
        const auto option = tag == Tag::IgnoreProgramChange ? Settings::kIgnoreProgramChange
                                                            : Settings::kKeepMidiMap;
        const bool first = rig.engine.settings.option(option);
        rig.click(EditorRig::middle(*findControl(tag)));
        EXPECT_EQ(rig.engine.settings.option(option), !first);
        EXPECT_EQ(rig.engine.parameters.index(tag) != 0, !first);
        rig.click(EditorRig::middle(*findControl(tag)));
        EXPECT_EQ(rig.engine.settings.option(option), first);
    }
}

TEST(Dispatch, TheRollAreaLoopsWhileItIsHeld)
{
    EditorRig rig;
    const Place roll = findControl(548)->place;
    rig.user->press({roll.left + 5, roll.bottom - 2});
    EXPECT_EQ(rig.engine.parameters.index(Tag::Looper), 1);
    EXPECT_EQ(rig.engine.parameters.index(Tag::LooperSteps), 8);
    rig.user->release({roll.left + 5, roll.bottom - 2});
    EXPECT_EQ(rig.engine.parameters.index(Tag::Looper), 0);
}

TEST(Dispatch, AListsArrowsStepThroughItAndStopAtItsEnds)
{
    EditorRig rig;
    rig.engine.setParameter(Tag::Page, 0.0f);
    rig.engine.setParameter(Tag::StepSpeed, 0.0f);
    rig.idle();
    const CPoint next = EditorRig::middle(*findControl(333));
    for (int i = 0; i < 12; ++i)
        rig.click(next);
    EXPECT_EQ(rig.engine.parameters.index(Tag::StepSpeed), 9);
}

} // namespace ormund
