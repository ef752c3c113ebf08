#include "engine/EventQueues.h"
#include "engine/KWNoteSchedule.h"
#include "synth/KWSimpleMidiManager.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace ormund {

namespace {
InternalEvent event(EventCode code, int data1)
{
    InternalEvent made;
    made.code = code;
    made.data1 = data1;
    return made;
}

// Runs the schedule and keeps (tick, note, velocity).
class ScheduleRun {
public:
    void tick(int count = 1)
    {
        for (; count > 0; --count, ++now) {
            const int before = outgoing.count();
            schedule.drain(outgoing, voices);
            for (int i = before; i < outgoing.count(); ++i)
                heard.push_back({now, outgoing.at(i).bytes[1], outgoing.at(i).bytes[2]});
            if (resets)
                outgoing.clear();
        }
    }
    struct Heard {
        int tick;
        int note;
        int velocity;
        bool operator==(const Heard&) const = default;
    };
    KWNoteSchedule schedule;
    OutgoingList outgoing;
    KWSimpleMidiManager<float, 8> voices;
    std::vector<Heard> heard;
    int now = 0;
    bool resets = true;
};
} // namespace

TEST(InputQueue, KeepsTimeOrderAndWaits)
{
    InputQueue queue;
    queue.insert(event(EventCode::NoteOn, 2), 40);
    queue.insert(event(EventCode::NoteOn, 3), 90);
    queue.insert(event(EventCode::NoteOn, 1), -5);
    std::vector<std::pair<int, int>> popped;
    for (int tick = 0; tick < 5; ++tick) {
        while (const InternalEvent* due = queue.popDue())
            popped.emplace_back(tick, due->data1);
        queue.advance(32);
    }
    const std::vector<std::pair<int, int>> expected = {{0, 1}, {2, 2}, {3, 3}};
    EXPECT_EQ(popped, expected);
    EXPECT_TRUE(queue.isEmpty());
}

TEST(InputQueue, EventsInAnyOrderComeOutInTimeOrder)
{
    std::mt19937 random(7);
    InputQueue queue;
    std::vector<int> times;
    for (int i = 0; i < 200; ++i) {
        times.push_back(static_cast<int>(random() % 1000));
        queue.insert(event(EventCode::Controller, times.back() % 128), times.back());
    }
    int seen = 0;
    for (int now = 0; now <= 1024; now += 32) {
        while (const InternalEvent* due = queue.popDue()) {
            ++seen;
            EXPECT_TRUE(std::any_of(times.begin(), times.end(), [&](int time) {
                return time % 128 == due->data1 && time <= now && time > now - 32;
            })) << now;
        }
        queue.advance(32);
    }
    EXPECT_EQ(seen, 200);
}

TEST(InputQueue, AFullQueueStillTakesReleasesAndReportsALostOne)
{
    InputQueue queue;
    for (int i = 0; i < 2000; ++i)
        queue.insert(event(EventCode::NoteOn, 60), i);
    queue.insert(event(EventCode::NoteOff, 61), 5000);
    EXPECT_FALSE(queue.takeLostRelease());
    for (int i = 0; i < 2000; ++i)
        queue.insert(event(EventCode::NoteOff, 61), i);
    EXPECT_TRUE(queue.takeLostRelease());
    EXPECT_FALSE(queue.takeLostRelease());
}

TEST(NoteSchedule, AnEndOnThePeriodsEdgeGoesInTheNextTick)
{
    ScheduleRun run;
    run.schedule.addNote(0, 60, 100, 31, 0);
    run.schedule.addNote(0, 61, 100, 32, 0);
    run.schedule.addNote(0, 62, 100, 95, 0);
    run.tick(5);
    const std::vector<ScheduleRun::Heard> expected = {
        {0, 60, 100}, {0, 61, 100}, {0, 62, 100}, {0, 60, 0}, {1, 61, 0}, {2, 62, 0}};
    EXPECT_EQ(run.heard, expected);
}

TEST(NoteSchedule, ASoundingNoteEndsBeforeItsSuccessorStarts)
{
    ScheduleRun run;
    run.schedule.addNote(0, 60, 100, 1000, 0);
    run.tick(3);
    run.schedule.addNote(0, 60, 90, 64, 0);
    // A chord may hold its root twice.
    run.schedule.addNote(0, 60, 80, 64, 0);
    run.tick(40);
    const std::vector<ScheduleRun::Heard> expected = {
        {0, 60, 100}, {3, 60, 0}, {3, 60, 80}, {5, 60, 0}};
    EXPECT_EQ(run.heard, expected);
    EXPECT_TRUE(run.schedule.isEmpty());
}

TEST(NoteSchedule, EveryStartHasOneEndWhateverIsAdded)
{
    std::mt19937 generator(11);
    const auto random = [&] { return static_cast<unsigned>(generator()); };
    ScheduleRun run;
    run.resets = false;
    int fullTicks = 0;
    for (int step = 0; step < 20000; ++step) {
        for (unsigned i = random() % 5; i > 0; --i) {
            const int note = 40 + static_cast<int>(random() % 30);
            run.schedule.addNote(0, note, 1 + static_cast<int>(random() % 127),
                random() % 3 == 0 ? random() % 40 : random() % 20000, 0);
            EXPECT_LE(run.schedule.pendingOffs(note), 2);
        }
        run.tick();
        fullTicks += run.outgoing.isFull();
        if (random() % 100 == 0)
            run.outgoing.clear(); // until then the list runs full
    }
    for (int i = 0; i < 2000; ++i) {
        run.outgoing.clear();
        run.tick();
    }
    EXPECT_GT(fullTicks, 1000);
    EXPECT_TRUE(run.schedule.isEmpty());
    int sounding[128] = {};
    for (const ScheduleRun::Heard& heard : run.heard) {
        int& count = sounding[heard.note];
        count += heard.velocity > 0 ? 1 : -1;
        ASSERT_GE(count, 0);
        ASSERT_LE(count, 1);
    }
    for (const int count : sounding)
        EXPECT_EQ(count, 0);
    for (int voice = 0; voice < 8; ++voice)
        EXPECT_EQ(run.voices.velocities()[voice], 0.0f);
}

} // namespace ormund
