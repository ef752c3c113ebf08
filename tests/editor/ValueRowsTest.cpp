#include "tests/editor/EditorRig.h"

#include <gtest/gtest.h>

namespace ormund {

namespace {

float shown(EditorRig& rig, int tag, int step)
{
    return rig.engine.tracks.tableAt(tag)->getAtIndex(step);
}

} // namespace

TEST(ValueRows, NotesFollowTheDegreeTheScaleAndTheRoot)
{
    EditorRig rig;
    KWTableXY& pitch = rig.engine.tracks.pitch;
    rig.engine.setParameter(Tag::Scale, 1.5f / 34);   // major
    rig.engine.setParameter(Tag::RootKey, 2.5f / 49); // a D
    pitch.setValue(0, 0);
    pitch.setValue(1, 2);
    pitch.setValue(2, -1);
    pitch.setValue(3, 7);
    rig.idle();
    EXPECT_EQ(shown(rig, 382, 0), 2); // D
    EXPECT_EQ(shown(rig, 382, 1), 6); // F#
    EXPECT_EQ(shown(rig, 382, 2), 1); // C# below it
    EXPECT_EQ(shown(rig, 382, 3), 2); // D again
    rig.engine.setParameter(Tag::RootKey, 0);
    rig.idle();
    EXPECT_EQ(shown(rig, 382, 1), 4); // E
}

TEST(ValueRows, LengthsAndControllerValuesAreThoseOfTheBars)
{
    EditorRig rig;
    rig.engine.tracks.gateTime.setNormalized(0, 1);
    rig.engine.tracks.gateTime.setNormalized(1, 0.25f);
    rig.engine.tracks.mods[0].setNormalized(5, 1);
    rig.engine.tracks.mods[4].setNormalized(5, 0.5f);
    rig.engine.setParameter(Tag::ModSelect, 0);
    rig.idle();
    EXPECT_EQ(shown(rig, 428, 0), 40);
    EXPECT_EQ(shown(rig, 428, 1), 10);
    EXPECT_EQ(shown(rig, 258, 5), 127);
    rig.engine.setParameter(Tag::ModSelect, 4.5f / 8);
    rig.idle();
    EXPECT_EQ(shown(rig, 258, 5), 64);
}

TEST(ValueRows, AnIdleWithoutAChangePaintsNothing)
{
    EditorRig rig;
    rig.idle(4);
    const int before = rig.window->presents;
    rig.idle(5);
    EXPECT_EQ(rig.window->presents, before);
}

} // namespace ormund
