#include "data/state/MidiMap.h"
#include "data/parameters/ParameterSink.h"

#include <gmock/gmock.h>

#include <chrono>
#include <thread>
#include <tuple>
#include <vector>

namespace ormund {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Recorder final : ParameterSink {
    using Move = std::tuple<int, int, float>; // tag, step, value
    void setParameter(int tag, float value) override
    {
        moves.emplace_back(tag, remoteStep.load(), value);
    }
    std::vector<Move> moves;
    Crossing<int32_t> remoteStep = 0;
};

} // namespace

TEST(MidiMap, ALearnedControllerMovesItsParametersInOrderAndInTheSameMessage)
{
    MidiMap map;
    Recorder sink;
    map.controllerMoved(74, 0.5f, sink, sink.remoteStep);
    EXPECT_THAT(sink.moves, IsEmpty());
    EXPECT_EQ(map.controllerValue(74), 0.5f);

    map.setLearnTarget(25, 0);
    map.controllerMoved(74, 0.25f, sink, sink.remoteStep);
    EXPECT_EQ(map.learnTag(), -1);
    map.setLearnTarget(339, 7);
    map.controllerMoved(74, 1.0f, sink, sink.remoteStep);
    EXPECT_THAT(sink.moves,
        ElementsAre(Recorder::Move{25, 0, 0.25f}, Recorder::Move{25, 0, 1.0f},
            Recorder::Move{339, 7, 1.0f}));
    sink.moves.clear();
    map.controllerMoved(73, 1.0f, sink, sink.remoteStep);
    map.controllerMoved(-1, 1.0f, sink, sink.remoteStep);
    map.controllerMoved(128, 1.0f, sink, sink.remoteStep);
    EXPECT_THAT(sink.moves, IsEmpty());
}

TEST(MidiMap, PressureTakesAWaitingTargetToo)
{
    MidiMap map;
    Recorder sink;
    map.setLearnTarget(430, 31);
    map.pressureMoved(0.75f, sink, sink.remoteStep);
    map.controllerMoved(1, 0.5f, sink, sink.remoteStep);
    EXPECT_THAT(sink.moves, ElementsAre(Recorder::Move{430, 31, 0.75f}));
    EXPECT_EQ(map.pressure(), 0.75f);
    map.clearMap();
    EXPECT_TRUE(map.isAssigned(430, 31));
    map.clearPressure();
    EXPECT_FALSE(map.isAssigned(430));
}

TEST(MidiMap, RemovingFindsTheStepOrTheWholeParameterOnEveryController)
{
    MidiMap map;
    for (const int controller : {1, 64, MidiMap::kPressure}) {
        map.addAssignment(controller, 397, 0);
        map.addAssignment(controller, 4, 0);
        map.addAssignment(controller, 397, 5);
    }
    map.removeAssignment(397, 5);
    EXPECT_FALSE(map.isAssigned(397, 5));
    EXPECT_TRUE(map.isAssigned(397, 0));
    map.removeParameter(397);
    EXPECT_FALSE(map.isAssigned(397));
    for (const int controller : {1, 64, MidiMap::kPressure}) {
        ASSERT_EQ(map.count(controller), 1);
        EXPECT_EQ(map.at(controller, 0), (CcAssignment{4, 0}));
    }
}

TEST(MidiMap, AFullListDropsWhatComesAndRepeatsNothing)
{
    MidiMap map;
    for (int step = 0; step < 2 * MidiMap::kRoom; ++step) {
        map.addAssignment(3, 89, step);
        map.addAssignment(3, 89, step);
    }
    ASSERT_EQ(map.count(3), MidiMap::kRoom);
    EXPECT_EQ(map.at(3, MidiMap::kRoom - 1).step, MidiMap::kRoom - 1);
}

TEST(MidiMap, ABusyMapDropsMessagesAndKeepsTheTarget)
{
    MidiMap map;
    Recorder sink;
    map.addAssignment(1, 4, 0);
    map.setLearnTarget(6, 0);
    {
        const FlagScope busy(map.mapBusy);
        map.controllerMoved(1, 1.0f, sink, sink.remoteStep);
        map.pressureMoved(1.0f, sink, sink.remoteStep);
    }
    EXPECT_THAT(sink.moves, IsEmpty());
    EXPECT_EQ(map.learnTag(), 6);
    EXPECT_EQ(map.controllerValue(1), 0.0f);
}

TEST(MidiMap, AChangeWaitsForTheMessageInFlight)
{
    struct Slow final : ParameterSink {
        void setParameter(int tag, float) override
        {
            tags.push_back(tag);
            started = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            sawChange = sawChange || changed;
        }
        std::vector<int> tags;
        Crossing<bool> started = false;
        Crossing<bool> changed = false;
        bool sawChange = false;
        Crossing<int32_t> remoteStep = 0;
    } sink;
    MidiMap map;
    map.addAssignment(1, 4, 0);
    map.addAssignment(1, 6, 0);
    std::thread other([&] {
        while (!sink.started)
            std::this_thread::yield();
        map.clearMap();
        sink.changed = true;
    });
    map.controllerMoved(1, 0.5f, sink, sink.remoteStep);
    other.join();
    EXPECT_THAT(sink.tags, ElementsAre(4, 6));
    EXPECT_FALSE(sink.sawChange);
    EXPECT_EQ(map.count(1), 0);
}

// For the thread sanitizer, and that no message ever meets half a list.
TEST(MidiMap, ItIsChangedWhileControllersMove)
{
    struct Checker final : ParameterSink {
        void setParameter(int tag, float) override
        {
            if (tag != 10 + remoteStep)
                torn = true;
        }
        Crossing<int32_t> remoteStep = 0;
        bool torn = false;
    } sink;
    MidiMap map;
    Crossing<bool> done = false;
    std::thread audio([&] {
        for (int i = 0; !done; ++i) {
            map.controllerMoved(i % 4, 0.5f, sink, sink.remoteStep);
            if (i % 64 == 0)
                map.setLearnTarget(12, 2);
        }
    });
    for (int round = 0; round < 2000; ++round) {
        map.addAssignment(round % 4, 10 + round % 20, round % 20);
        if (round % 50 == 49)
            map.removeParameter(10 + round % 20);
        if (round % 500 == 499)
            map.clearMap();
    }
    done = true;
    audio.join();
    EXPECT_FALSE(sink.torn);
}

} // namespace ormund
