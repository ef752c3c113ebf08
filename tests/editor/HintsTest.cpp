// The texts under the mouse, and those of the line that learning writes.
#include "controls/KWDisplay.h"
#include "tests/editor/EditorRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ormund {

namespace {

constexpr int kHeadLine = 380;
constexpr int kController = 20;

TEST(Hints, EachControlUnderTheMouseHasOne)
{
    EditorRig rig;
    std::vector<int> silent;
    int walked = 0;
    for (const ControlRow& row : controlCatalogue()) {
        if (row.place.empty() || (row.flags & (kNoMouse | kHidden)) || row.track > 1
            || row.kind == ControlClass::Hint || row.kind == ControlClass::Image
            || row.kind == ControlClass::Container)
            continue;
        rig.show(row);
        CPoint where = EditorRig::middle(row);
        const KWControl* control = rig.editor.getControl(row.tag);
        if (!control || rig.editor.getFrame()->getViewAt(where) != control)
            continue; // on another page, or below a second control of its value
        rig.user->move({600, 10});
        rig.idle(8);
        rig.user->move(where);
        rig.idle(4);
        ++walked;
        const ControlRow* hint = hintRowOf(row.tag);
        if (!hint || !static_cast<KWControl*>(rig.editor.getControl(hint->tag))->isLive())
            silent.push_back(row.tag);
    }
    EXPECT_GT(walked, 120);
    EXPECT_THAT(silent, testing::IsEmpty());
}

TEST(Hints, LearningNamesTheParameterAndThenTheController)
{
    EditorRig rig;
    const auto& line = *static_cast<KWDisplay*>(rig.editor.getControl(kHeadLine));
    EXPECT_EQ(line.title, "");
    rig.engine.midiMap.setLearnTarget(Tag::MasterGateTime, 0);
    rig.idle();
    EXPECT_EQ(line.title, "move a controller for Gate Time");
    Crossing<int32_t> step = 0;
    rig.engine.midiMap.controllerMoved(kController, 0.5f, rig.engine, step);
    rig.idle();
    EXPECT_EQ(line.title, "CC 20 \u2192 Gate Time");
    rig.idle(120);
    EXPECT_EQ(line.title, "") << "for a while only";
    // What is called off leaves no line.
    rig.engine.midiMap.setLearnTarget(Tag::Scale, 0);
    rig.idle();
    rig.engine.midiMap.setLearnTarget(-1, 0);
    rig.idle();
    EXPECT_EQ(line.title, "");
}

} // namespace

} // namespace ormund
